#pragma once
/// Which simulated board the tests of an executable run on.
///
///     const mox::testkit::BoardOf s_boards[] = {
///         {"FanOnKora", mox::testkit::Board::named("kora")},
///         {"FanOnStrangeUnit", mox::testkit::Board::text(R"({"name": "x", "nodes": [{"id": "0x1011"}]})")},
///     };
///     TEST_F(FanOnKora, ...) // a run of its own on a Kora
///
/// A suite without a row runs on a board with one node, 0x1011, that has nothing in particular.
#include <cstdint>
#include <string>
#include <vector>

namespace mox::testkit {

/// A board description.
class Board {
public:
    /// One that is shipped: "kora", "wim", ...; the file lies in the directory that MOX_BOARDS names, or in the source
    /// tree's Platform/host/board/descriptions.
    static Board named(const std::string& name);
    /// A file of one's own.
    static Board file(std::string path);
    /// The JSON text itself.
    static Board text(std::string json);
    /// One node, 0x1011.
    static Board plain();

    /// Sets which of the board's nodes the test is a process of. 0: the one with the lowest id, as without this.
    Board at(std::uint16_t node) const;

    /// @param[out] json  the description
    /// @param[out] name  of the file, for messages
    /// @return whether it could be read
    bool read(std::string& json, std::string& name) const;
    std::uint16_t node() const { return m_node; }

private:
    std::string m_path; ///< empty: the text
    std::string m_text;
    std::uint16_t m_node = 0;
};

/// Gives a test suite its board. Objects of namespace scope; the last one for a suite counts. The executable refuses to
/// run while one names a suite that it does not have.
class BoardOf {
public:
    /// @param suite  as GoogleTest prints it; with parameters that is "Prefix/Suite"
    BoardOf(const char* suite, Board board);
    /// The board of a suite. @return plain() when it has none
    static Board find(const std::string& suite);
    /// The suites that have been given a board.
    static std::vector<std::string> suites();
};

} // namespace mox::testkit
