#pragma once
/// Building firmware images.
#include <cstdint>
#include <string>
#include <vector>

namespace mox::tools {

class Output;

struct CreateOptions {
    std::string payload;
    std::string image;
    std::string version;
    std::vector<std::string> hwSwIds; ///< hexadecimal, with or without 0x
    std::string targetUnit;
    std::string softwareId;
    std::string buildTime; ///< empty: now
    std::uint32_t formatVersion = 1;
    bool mark = false;
    bool force = false;
};

/// Writes an image: a copy of the payload, the trailer that describes it, a zero byte and the offset word. The result
/// is read back with the functions that a board uses before it gets its name. Throws Failure; then there is no image.
void createImage(const Output& output, const CreateOptions& options);

} // namespace mox::tools
