#pragma once
/// A board of two nodes with everything that the device functions of identity and firmware ask for.
#include <ddal/ddal.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>

#include <host/ddal/Flash.hpp>
#include <host/run/Run.hpp>
#include <host/store/Store.hpp>
#include <support/CommandRun.hpp>
#include <sys/resource.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace mox::testing {

constexpr std::uint16_t firstNode = 0x1011;
constexpr std::uint16_t secondNode = 0x1021;
constexpr std::uint32_t bmu = 1;
constexpr std::uint32_t mainFpga = 0x10001;
constexpr std::uint32_t primary = 1;
constexpr std::uint32_t secondary = 2;

/// Bytes of the areas and blocks of mainFpga and of the boot loader.
constexpr std::size_t areaSize = 1024;
constexpr std::size_t blockSize = 100;

/// The description; its second node is the first one again, with fewer devices.
extern const char* const unitBoard;

/// Another process of the node: what the functions answer there (see peer.cpp).
using Environment = std::vector<std::pair<std::string, std::optional<std::string>>>;
CommandResult runPeer(std::vector<std::string> words, Environment environment = {});

/// While it lives, files of this process take no bytes any more. What a test expects is to be checked behind it: also
/// the test's own messages would get lost.
class FullDisk {
public:
    /// The line about each change of the store that is lost.
    static constexpr const char* line = "store: commit failed: File too large";

    FullDisk();
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_limit{};
};

/// On the first node of unitBoard; a suite that derives from it needs its row of BoardOf.
class OnUnit : public testkit::BoardTest {
protected:
    static const host::Run& run() { return *host::Run::current(); }
    static host::Flash flash(std::uint16_t node = firstNode) { return {run(), node}; }

    /// Writes a file in the node's /tmp. @return its path
    static std::string file(const std::string& content, const std::string& name = "image");
    /// An image of so many bytes that says it has the version.
    static std::string image(std::uint32_t version, std::size_t size, const std::string& name = "image");
    static std::string contentOf(const std::string& path);
    /// The version that an FPGA runs; a failure of the test when it cannot be read.
    static std::uint32_t versionOf(std::uint32_t fpgaId);
    /// How many operations an image of so many bytes takes.
    static std::uint64_t operationsFor(std::size_t size) { return 2 * ((size + blockSize - 1) / blockSize) + 1; }
};

} // namespace mox::testing
