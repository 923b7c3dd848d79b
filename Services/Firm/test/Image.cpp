#include "Image.hpp"

#include <zlib.h>

#include <fstream>

namespace mox::firm {

namespace {

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
}

std::string trailerOf(const Image& image) {
    const auto* const data = reinterpret_cast<const Bytef*>(image.payload.data());
    const auto crc = crc32(0, data, static_cast<uInt>(image.payload.size()));
    std::string ids;
    for (const std::string& id : image.hwSwIds) {
        ids += element("HwSwId", id);
    }
    return element("trailer", element("Version", "1") + element("Crc32", std::to_string(crc)) +
                                  element("Length", std::to_string(image.payload.size())) +
                                  element("TargetUnit", "test") + element("SwId", "FIRM") +
                                  element("SwVersion", image.version) + element("BuildTime", "2016-01-15") +
                                  element("HwSwIdList", ids));
}

} // namespace

std::string Image::bytes() const {
    std::string file = payload + trailerOf(*this);
    file += '\0'; // else the word behind it would belong to the text
    for (unsigned shift = 0; shift < 32; shift += 8) {
        file += static_cast<char>(payload.size() >> shift);
    }
    if (damaged) {
        file[0] = static_cast<char>(file[0] ^ 1);
    }
    return file;
}

void Image::write(const std::string& path) const {
    std::ofstream(path, std::ios::binary) << bytes();
}

} // namespace mox::firm
