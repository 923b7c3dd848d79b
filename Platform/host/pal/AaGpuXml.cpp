#include "Xml.hpp"

#include <pal/AaGpuXml.hpp>

#include <string_view>
#include <utility>
#include <vector>

using mox::host::XmlResult;

/// A node over a node or an attribute of the parsed document. Names, values and children are made when they are first
/// asked for: most readers look at a few nodes of a document.
struct AaGpuXmlNode::Content {
    int type = EAaGpuXmlNodeType_Document;
    pugi::xml_node node; ///< the document's or the element's
    pugi::xml_attribute attribute;
    std::unique_ptr<pugi::xml_document> document; ///< of a root: what everything else points into
    AaGpuXmlNode* next = nullptr;
    bool hasName = false;
    bool hasValue = false;
    bool hasChildren = false;
    std::string name;
    std::string value;
    std::vector<std::unique_ptr<AaGpuXmlNode>> children;

    const std::string& getName();
    const std::string& getValue();
    AaGpuXmlNode* firstChild();
    bool anyChild() const;

private:
    AaGpuXmlNode& addChild(int childType, pugi::xml_node childNode, pugi::xml_attribute childAttribute);
};

namespace {

bool isElement(const pugi::xml_node& node) {
    return node.type() == pugi::node_element;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

std::string ownText(const pugi::xml_node& element) {
    std::string text;
    for (const auto& child : element.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += child.value();
        }
    }
    return std::string(trimmed(text));
}

int resultOf(XmlResult result) {
    return result == XmlResult::noMemory ? EAaGpuXmlResult_OutOfResources : EAaGpuXmlResult_SyntaxError;
}

} // namespace

const std::string& AaGpuXmlNode::Content::getName() {
    if (!std::exchange(hasName, true)) {
        name = type == EAaGpuXmlNodeType_Attribute ? attribute.name() : node.name();
    }
    return name;
}

const std::string& AaGpuXmlNode::Content::getValue() {
    if (!std::exchange(hasValue, true)) {
        if (type == EAaGpuXmlNodeType_Attribute) {
            value = attribute.value();
        } else if (type == EAaGpuXmlNodeType_Element) {
            value = ownText(node);
        }
    }
    return value;
}

AaGpuXmlNode& AaGpuXmlNode::Content::addChild(int childType, pugi::xml_node childNode,
                                              pugi::xml_attribute childAttribute) {
    auto content = std::make_unique<Content>();
    content->type = childType;
    content->node = childNode;
    content->attribute = childAttribute;
    AaGpuXmlNode* const before = children.empty() ? nullptr : children.back().get();
    children.push_back(std::unique_ptr<AaGpuXmlNode>(new AaGpuXmlNode(std::move(content))));
    if (before != nullptr) {
        before->m_content->next = children.back().get();
    }
    return *children.back();
}

AaGpuXmlNode* AaGpuXmlNode::Content::firstChild() {
    if (type != EAaGpuXmlNodeType_Attribute && !std::exchange(hasChildren, true)) {
        for (const auto& child : node.attributes()) {
            addChild(EAaGpuXmlNodeType_Attribute, {}, child);
        }
        for (const auto& child : node.children()) {
            if (isElement(child)) {
                addChild(EAaGpuXmlNodeType_Element, child, {});
            }
        }
    }
    return children.empty() ? nullptr : children.front().get();
}

bool AaGpuXmlNode::Content::anyChild() const {
    return node.first_attribute() || node.find_child(isElement);
}

AaGpuXmlNode::AaGpuXmlNode(std::unique_ptr<Content> content) : m_content(std::move(content)) {}

AaGpuXmlNode::~AaGpuXmlNode() = default;

bool AaGpuXmlNode::AaGpuXmlHasChildren() const {
    return m_content->anyChild();
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetFirstChildren() const {
    return m_content->firstChild();
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetNext() const {
    return m_content->next;
}

int AaGpuXmlNode::AaGpuXmlGetType() const {
    return m_content->type;
}

const std::string& AaGpuXmlNode::AaGpuXmlGetName() const {
    return m_content->getName();
}

const std::string& AaGpuXmlNode::AaGpuXmlGetValue() const {
    return m_content->getValue();
}

AaGpuXmlParser::AaGpuXmlParser(int) {}

AaGpuXmlParser::~AaGpuXmlParser() = default;

AaGpuXmlNode* AaGpuXmlParser::AaGpuXmlParse(const std::string& text) {
    const auto end = text.find_last_not_of('\0');
    const std::string_view used(text.data(), end == std::string::npos ? 0 : end + 1);
    auto content = std::make_unique<AaGpuXmlNode::Content>();
    content->document = std::make_unique<pugi::xml_document>();
    mox::host::XmlError error;
    if (!mox::host::parseXml(used, *content->document, error)) {
        m_lastResult = resultOf(error.result);
        return nullptr;
    }
    content->node = *content->document;
    m_lastResult = EAaGpuXmlResult_NoError;
    return new AaGpuXmlNode(std::move(content));
}

int AaGpuXmlParser::AaGpuXmlGetLastResult() const {
    return m_lastResult;
}
