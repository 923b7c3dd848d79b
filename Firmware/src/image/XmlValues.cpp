#include <mox/ImageNumbers.hpp>
#include <mox/XmlValues.hpp>

#include <string_view>

AaGpuXmlNode* FindXmlTag(const AaGpuXmlNode* node, const char* name) {
    if (!node->AaGpuXmlHasChildren()) {
        return nullptr;
    }
    const std::string_view wanted = name;
    AaGpuXmlNode* child = node->AaGpuXmlGetFirstChildren();
    while (child != nullptr && child->AaGpuXmlGetName() != wanted) {
        child = child->AaGpuXmlGetNext();
    }
    return child;
}

std::string getStringValueFromNode(const AaGpuXmlNode* node, const char* name) {
    const AaGpuXmlNode* const child = FindXmlTag(node, name);
    return child == nullptr ? std::string() : std::string(child->AaGpuXmlGetValue());
}

std::uint32_t getU32ValueFromNode(const AaGpuXmlNode* node, const char* name) {
    const AaGpuXmlNode* const child = FindXmlTag(node, name);
    return child == nullptr ? 0 : ps::hwapi::common::image::elementNumber(child->AaGpuXmlGetValue());
}
