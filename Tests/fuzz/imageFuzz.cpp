// Any bytes as a firmware image: the pure steps keep to their ranges, and the functions over files agree with them.
#include "Fuzz.hpp"
#include "MemoryFile.hpp"

#include <mox/Firmware.h>
#include <mox/ImageTrailer.hpp>

#include <cstdlib>
#include <string>

namespace image = ps::hwapi::common::image;

namespace {

constexpr std::uint32_t ownHwSwId = 0x00505000;

void checkIdentifiers(const AaGpuXmlNode& trailer) {
    const auto ids = image::readHwSwIds(trailer);
    if (!ids) {
        return;
    }
    const image::ListedHwSwId listed = image::findHwSwId(*ids, ownHwSwId);
    switch (listed.match) {
    case image::HwSwIdMatch::none:
        break;
    case image::HwSwIdMatch::minor:
        expect(((*ids).at(listed.index) & ~0xFFU) == ownHwSwId);
        break;
    case image::HwSwIdMatch::exact:
        expect((*ids).at(listed.index) == ownHwSwId);
        break;
    }
}

/// @return whether the bytes have a trailer
bool checkSteps(std::string_view bytes) {
    if (bytes.size() < image::constant::offsetWordSize) {
        return false;
    }
    const auto size = static_cast<std::uint32_t>(bytes.size());
    const auto* word = reinterpret_cast<const unsigned char*>(bytes.data()) + size - image::constant::offsetWordSize;
    const std::uint32_t offset = image::trailerOffset(word);
    if (!image::isTrailerOffset(offset, size)) {
        return false;
    }
    expect(offset > 0 && offset < size);
    const std::string_view text = image::trailerText(bytes.substr(offset));
    expect(text.find('\0') == std::string_view::npos && text.size() <= size - offset);
    const image::ParsedTrailer parsed = image::parseTrailer(std::string(text));
    if (parsed.trailer != nullptr) {
        image::readFields(*parsed.trailer);
        checkIdentifiers(*parsed.trailer);
    }
    return true;
}

void checkFunctions(std::string_view bytes, bool hasTrailer) {
    const MemoryFile file(bytes);
    std::uint32_t offset = 0;
    char* text = nullptr;
    const int result = get_trailer(file.path(), &offset, &text);
    expect((result == IMAGE_OK) == hasTrailer && (text != nullptr) == hasTrailer);
    std::free(text);
    const int fits = binary_validate(file.path(), ownHwSwId);
    if (fits == IMAGE_OK) {
        std::uint32_t version = 0;
        expect(binary_crc(file.path()) == IMAGE_OK);
        expect(binary_version(file.path(), ownHwSwId, 1, &version) == 0);
    }
    const MemoryFile copy("");
    if (binary_copy_without_trailer(file.path(), copy.path()) == 0) {
        const std::string payload = copy.content();
        expect(payload == bytes.substr(0, payload.size()));
    }
}

} // namespace

void fuzz(std::string_view bytes) {
    checkFunctions(bytes, checkSteps(bytes));
}
