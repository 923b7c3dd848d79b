#include <mox/ImageNumbers.hpp>
#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>
#include <pal/AaCpuBit.h>

#include <algorithm>
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

ParsedTrailer parseTrailer(const std::string& text) {
    AaGpuXmlParser parser(0);
    ParsedTrailer parsed;
    parsed.document.reset(parser.AaGpuXmlParse(text));
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

std::optional<std::vector<std::uint32_t>> readHwSwIds(const AaGpuXmlNode& trailer) {
    const AaGpuXmlNode* const list = FindXmlTag(&trailer, "HwSwIdList");
    if (list == nullptr) {
        return std::nullopt;
    }
    constexpr std::size_t usualLength = 32;
    std::vector<std::uint32_t> ids;
    ids.reserve(usualLength);
    const AaGpuXmlNode* child = list->AaGpuXmlHasChildren() ? list->AaGpuXmlGetFirstChildren() : nullptr;
    for (; child != nullptr; child = child->AaGpuXmlGetNext()) {
        if (child->AaGpuXmlGetName() == "HwSwId") {
            ids.push_back(hwSwIdNumber(child->AaGpuXmlGetValue()));
        }
    }
    return ids;
}

ListedHwSwId findHwSwId(const std::vector<std::uint32_t>& ids, std::uint32_t own) {
    const auto indexOf = [&ids](auto found) { return static_cast<std::size_t>(found - ids.begin()); };
    if (const auto same = std::find(ids.begin(), ids.end(), own); same != ids.end()) {
        return {HwSwIdMatch::exact, indexOf(same)};
    }
    const auto near = std::find_if(ids.begin(), ids.end(), [own](auto id) { return isSameButForMinor(id, own); });
    if (near != ids.end()) {
        return {HwSwIdMatch::minor, indexOf(near)};
    }
    return {};
}

} // namespace ps::hwapi::common::image
