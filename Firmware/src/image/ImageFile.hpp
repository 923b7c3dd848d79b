#pragma once
/// Files that images are read from and payloads are written to. Their streams have no buffers: what is read goes where
/// it is wanted at once, and a write that fails is seen when it is made.
#include <cstdint>
#include <cstdio>
#include <memory>

namespace ps::hwapi::common::image {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a regular file for reading; one of another kind does not open. Waits for nobody.
/// @return null on failure
File openImage(const char* path);

/// Creates a file that only its owner may use, or empties an existing one. Neither a link nor another kind of file
/// opens, nor does one that has a second name or is the image itself, and none of these is changed.
/// @param image  where the payload comes from
/// @return null on failure
File createPayload(const char* path, std::FILE* image);

/// A size or position in a file as the 32-bit board sees it.
/// @param position  bytes; negative: a failure
/// @return constant::unknownSize on failure, and where long has no room for it on the board
std::uint32_t boardSize(long position);

/// A block to read into: large where there is memory for it, so that few reads are made.
class Block {
public:
    Block();
    unsigned char* data() { return m_large ? m_large.get() : m_small; }
    std::size_t size() const { return m_large ? largeSize : sizeof(m_small); }

private:
    static constexpr std::size_t largeSize = 65536;
    // On the caller's stack, which may be one of 4096 bytes.
    unsigned char m_small[1024] = {};
    std::unique_ptr<unsigned char[]> m_large;
};

} // namespace ps::hwapi::common::image
