#pragma once
/// Erases and programs the blocks of one area.
#include "Flash.hpp"
#include "VersionMarker.hpp"

#include <string>
#include <vector>

namespace mox::host {

/// One update of one area: erase(), program(), and the image that the area then holds. One thread.
class FlashWriter {
public:
    /// @param file    of the area, open for writing
    /// @param source  image file, open for reading
    /// @param length  of the image, in bytes
    FlashWriter(const FlashArea& area, int file, int source, std::uint64_t length);

    /// Erases every block that the image needs. @return false: an operation failed
    bool erase();
    /// Programs every block, and leaves nothing behind the image. @return false: an operation failed, or the image file
    /// has become shorter
    bool program();
    const FlashImage& image() const { return m_image; }
    /// Whether a version was found in the image.
    bool hasVersion() const { return m_marker.version().has_value(); }

private:
    bool write(std::uint64_t offset, std::size_t size);
    bool readSource(std::uint64_t offset, std::size_t size);
    void noteProgress();

    const FlashArea& m_area;
    const int m_file;
    const int m_source;
    const std::uint64_t m_length;
    std::vector<char> m_block;
    VersionMarker m_marker;
    FlashImage m_image;
    std::uint64_t m_blocksDone = 0; ///< erased and programmed ones
    unsigned m_tenths = 0;          ///< of the whole update that were logged
};

} // namespace mox::host
