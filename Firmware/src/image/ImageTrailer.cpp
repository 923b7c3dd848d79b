#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>
#include <pal/AaCpuBit.h>

#include <cstring>

namespace ps::hwapi::common::image {

std::uint32_t payloadLength(const unsigned char* word) {
    std::uint32_t value = 0;
    std::memcpy(&value, word, sizeof(value));
    return value;
}

std::uint32_t trailerOffset(const unsigned char* word) {
    std::uint32_t value = payloadLength(word);
    AaCpuBitSwapByteOrder32(&value);
    return value;
}

bool isTrailerOffset(std::uint32_t offset, std::uint32_t imageSize) {
    return offset != 0 && offset < imageSize && imageSize != constant::unknownSize;
}

bool isPayloadLength(std::uint32_t length, std::uint32_t imageSize) {
    return length < imageSize;
}

std::string_view trailerText(std::string_view region) {
    return region.substr(0, region.find('\0'));
}

ParsedTrailer parseTrailer(std::string_view text) {
    AaGpuXmlParser parser(0);
    ParsedTrailer parsed;
    parsed.document.reset(parser.AaGpuXmlParse(std::string(text)));
    parsed.parserResult = parser.AaGpuXmlGetLastResult();
    if (parsed.document) {
        parsed.trailer = FindXmlTag(parsed.document.get(), "trailer");
    }
    return parsed;
}

TrailerFields readFields(const AaGpuXmlNode& trailer) {
    TrailerFields fields;
    fields.version = getU32ValueFromNode(&trailer, "Version");
    fields.crc32 = getU32ValueFromNode(&trailer, "Crc32");
    fields.length = getU32ValueFromNode(&trailer, "Length");
    fields.targetUnit = getStringValueFromNode(&trailer, "TargetUnit");
    fields.swId = getStringValueFromNode(&trailer, "SwId");
    fields.swVersion = getStringValueFromNode(&trailer, "SwVersion");
    fields.buildTime = getStringValueFromNode(&trailer, "BuildTime");
    return fields;
}

} // namespace ps::hwapi::common::image
