#include "FlashWriter.hpp"

#include "../run/PlatformLog.hpp"
#include "FlashOperations.hpp"

#include <unistd.h>
#include <zlib.h>

#include <algorithm>

namespace mox::host {

namespace {

constexpr int debug = 1;
constexpr char erased = '\xFF';

bool writeAll(int file, const char* bytes, std::size_t size, std::uint64_t offset) {
    while (size > 0) {
        const ssize_t done = ::pwrite(file, bytes, size, static_cast<off_t>(offset));
        if (done <= 0)
            return false;
        bytes += done;
        size -= static_cast<std::size_t>(done);
        offset += static_cast<std::uint64_t>(done);
    }
    return true;
}

bool readAll(int file, char* bytes, std::size_t size, std::uint64_t offset) {
    while (size > 0) {
        const ssize_t done = ::pread(file, bytes, size, static_cast<off_t>(offset));
        if (done <= 0)
            return false;
        bytes += done;
        size -= static_cast<std::size_t>(done);
        offset += static_cast<std::uint64_t>(done);
    }
    return true;
}

} // namespace

FlashWriter::FlashWriter(const FlashArea& area, int file, int source, std::uint64_t length)
    : m_area(area), m_file(file), m_source(source), m_length(length), m_block(area.blockSize) {
    m_image.length = length;
}

bool FlashWriter::erase() {
    std::fill(m_block.begin(), m_block.end(), erased);
    for (std::uint64_t offset = 0; offset < m_length; offset += m_block.size())
        if (!write(offset, static_cast<std::size_t>(std::min<std::uint64_t>(m_block.size(), m_area.size - offset))))
            return false;
    return true;
}

bool FlashWriter::program() {
    for (std::uint64_t offset = 0; offset < m_length; offset += m_block.size()) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(m_block.size(), m_length - offset));
        if (!readSource(offset, size) || !write(offset, size))
            return false;
    }
    m_image.version = m_marker.version().value_or(0);
    return ::ftruncate(m_file, static_cast<off_t>(m_length)) == 0;
}

bool FlashWriter::readSource(std::uint64_t offset, std::size_t size) {
    if (!readAll(m_source, m_block.data(), size, offset))
        return false;
    const auto* bytes = reinterpret_cast<const Bytef*>(m_block.data());
    m_image.crc = static_cast<std::uint32_t>(crc32(m_image.crc, bytes, static_cast<uInt>(size)));
    m_marker.take({m_block.data(), size});
    return true;
}

bool FlashWriter::write(std::uint64_t offset, std::size_t size) {
    const FlashPlan::Kind planned = beginFlashOperation();
    const bool written = writeAll(m_file, m_block.data(), planned == FlashPlan::Kind::none ? size : size / 2, offset);
    if (!endFlashOperation(planned) || !written)
        return false;
    ++m_blocksDone;
    noteProgress();
    return true;
}

void FlashWriter::noteProgress() {
    const std::uint64_t blocks = 2 * ((m_length + m_block.size() - 1) / m_block.size());
    const auto tenths = static_cast<unsigned>(m_blocksDone * 10 / blocks);
    if (tenths == m_tenths)
        return;
    m_tenths = tenths;
    logPlatform(debug, "flash %s: %u %%", m_area.name.c_str(), tenths * 10);
}

} // namespace mox::host
