#include "LineRing.hpp"

#include <algorithm>
#include <cstring>

namespace mox::host::log {

void LineRing::add(std::string_view line) {
    const std::size_t room = m_bytes.size();
    line = line.substr(0, std::min(line.size(), room == 0 ? 0 : room - 1));
    const std::size_t need = line.size() + 1;
    if (m_keep == Keep::first) {
        // A short line behind one that was turned away would look as if nothing were missing between them.
        m_closed = m_closed || m_used + need > room;
        if (m_closed)
            return;
    }
    while (m_used != 0 && m_used + need > room)
        dropOldest();
    put(line);
    put("\n");
}

void LineRing::dropOldest() {
    const auto at = [this](std::size_t i) { return m_bytes[(m_begin + i) % m_bytes.size()]; };
    std::size_t length = 0;
    while (length < m_used && at(length) != '\n')
        ++length;
    length = std::min(length + 1, m_used);
    m_begin = (m_begin + length) % m_bytes.size();
    m_used -= length;
}

void LineRing::put(std::string_view bytes) {
    if (bytes.empty())
        return;
    const std::size_t end = (m_begin + m_used) % m_bytes.size();
    const std::size_t first = std::min(bytes.size(), m_bytes.size() - end);
    std::memcpy(m_bytes.data() + end, bytes.data(), first);
    std::memcpy(m_bytes.data(), bytes.data() + first, bytes.size() - first);
    m_used += bytes.size();
}

std::string LineRing::whole() const {
    std::string text(m_used, '\0');
    if (m_used == 0)
        return text;
    const std::size_t first = std::min(m_used, m_bytes.size() - m_begin);
    std::memcpy(text.data(), m_bytes.data() + m_begin, first);
    std::memcpy(text.data() + first, m_bytes.data(), m_used - first);
    return text;
}

std::string LineRing::lines(std::size_t maxBytes) const {
    std::string text = whole();
    if (maxBytes == 0 || text.size() <= maxBytes)
        return text;
    // Cut where a line begins: behind the first line feed at or after the last byte that is left out.
    const std::size_t lineFeed = text.find('\n', text.size() - maxBytes - 1);
    return lineFeed == std::string::npos ? std::string() : text.substr(lineFeed + 1);
}

} // namespace mox::host::log
