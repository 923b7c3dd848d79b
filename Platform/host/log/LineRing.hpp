#pragma once
/// Lines in a fixed number of bytes. The owner locks.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host::log {

/// Keeps either the newest lines (the oldest make room) or the first ones (later ones are turned away).
///
///     LineRing ring(4096, LineRing::Keep::newest);
///     ring.add("a line");
///     write(fd, ring.lines());
class LineRing {
public:
    enum class Keep { newest, first };

    /// @param bytes  room; a line takes its length and one byte. Throws std::bad_alloc.
    LineRing(std::size_t bytes, Keep keep) : m_bytes(bytes), m_keep(keep) {}

    /// Adds a line, cut to the room; makes its line feed itself.
    void add(std::string_view line);

    /// All lines, oldest first, each ended by a line feed.
    /// @param maxBytes  most bytes; the oldest lines are left out. 0: no limit
    std::string lines(std::size_t maxBytes = 0) const;

private:
    void dropOldest();
    void put(std::string_view bytes);
    std::string whole() const;

    std::vector<char> m_bytes;
    Keep m_keep;
    std::size_t m_begin = 0; ///< index of the oldest line's first byte
    std::size_t m_used = 0;
    bool m_closed = false; ///< a first line has been turned away
};

} // namespace mox::host::log
