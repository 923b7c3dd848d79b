#include <mox/ImageNumbers.hpp>
#include <mox/XmlValues.hpp>

AaGpuXmlNode* FindXmlTag(const AaGpuXmlNode* node, const char* name) {
    if (!node->AaGpuXmlHasChildren()) {
        return nullptr;
    }
    AaGpuXmlNode* child = node->AaGpuXmlGetFirstChildren();
    while (child != nullptr && child->AaGpuXmlGetName() != name) {
        child = child->AaGpuXmlGetNext();
    }
    return child;
}

std::string getStringValueFromNode(const AaGpuXmlNode* node, const char* name) {
    const AaGpuXmlNode* const child = FindXmlTag(node, name);
    return child == nullptr ? std::string() : child->AaGpuXmlGetValue();
}

std::uint32_t getU32ValueFromNode(const AaGpuXmlNode* node, const char* name) {
    const AaGpuXmlNode* const child = FindXmlTag(node, name);
    return child == nullptr ? 0 : ps::hwapi::common::image::elementNumber(child->AaGpuXmlGetValue());
}
