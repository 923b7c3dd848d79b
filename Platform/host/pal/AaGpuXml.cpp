#include "Xml.hpp"

#include <pal/AaGpuXml.hpp>

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

using mox::host::XmlResult;

/// What a node shows: a node or an attribute of the parsed document. Names, values and children are made when they are
/// first asked for, because most readers look at a few nodes of a document; the children of a node in one piece.
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
    std::vector<Content> children;
    AaGpuXmlNode handle{*this}; ///< of a child; the caller has a root's

    const std::string& getName();
    const std::string& getValue();
    AaGpuXmlNode* firstChild();
    bool anyChild() const;

private:
    void makeChildren();
    template <typename OnAttribute, typename OnElement>
    void forEachChild(const OnAttribute& onAttribute, const OnElement& onElement) const {
        for (pugi::xml_attribute of = node.first_attribute(); of; of = of.next_attribute()) {
            onAttribute(of);
        }
        for (pugi::xml_node of = node.first_child(); of; of = of.next_sibling()) {
            if (of.type() == pugi::node_element) {
                onElement(of);
            }
        }
    }
};

namespace {

bool isElement(const pugi::xml_node& node) {
    return node.type() == pugi::node_element;
}

std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isText(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

std::string ownText(const pugi::xml_node& element) {
    const pugi::xml_node first = element.first_child();
    if (isText(first) && !first.next_sibling()) {
        return std::string(trimmed(first.value()));
    }
    std::string text;
    for (pugi::xml_node child = first; child; child = child.next_sibling()) {
        if (isText(child)) {
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

void AaGpuXmlNode::Content::makeChildren() {
    std::size_t count = 0;
    forEachChild([&count](pugi::xml_attribute) { ++count; }, [&count](pugi::xml_node) { ++count; });
    if (count == 0) {
        return;
    }
    children = std::vector<Content>(count);
    Content* child = children.data();
    forEachChild(
        [&child](pugi::xml_attribute of) {
            child->type = EAaGpuXmlNodeType_Attribute;
            (child++)->attribute = of;
        },
        [&child](pugi::xml_node of) {
            child->type = EAaGpuXmlNodeType_Element;
            (child++)->node = of;
        });
    for (std::size_t i = 1; i < count; ++i) {
        children[i - 1].next = &children[i].handle;
    }
}

AaGpuXmlNode* AaGpuXmlNode::Content::firstChild() {
    if (!hasChildren) {
        makeChildren();
        hasChildren = true;
    }
    return children.empty() ? nullptr : &children.front().handle;
}

bool AaGpuXmlNode::Content::anyChild() const {
    return node.first_attribute() || node.find_child(isElement);
}

AaGpuXmlNode::AaGpuXmlNode(Content& content) : m_content(content) {}

/// A child's content goes with its parent's.
AaGpuXmlNode::~AaGpuXmlNode() {
    if (this != &m_content.handle) {
        delete &m_content;
    }
}

bool AaGpuXmlNode::AaGpuXmlHasChildren() const {
    return m_content.anyChild();
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetFirstChildren() const {
    return m_content.firstChild();
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetNext() const {
    return m_content.next;
}

int AaGpuXmlNode::AaGpuXmlGetType() const {
    return m_content.type;
}

const std::string& AaGpuXmlNode::AaGpuXmlGetName() const {
    return m_content.getName();
}

const std::string& AaGpuXmlNode::AaGpuXmlGetValue() const {
    return m_content.getValue();
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
    auto* const root = new AaGpuXmlNode(*content);
    static_cast<void>(content.release()); // the root's now
    return root;
}

int AaGpuXmlParser::AaGpuXmlGetLastResult() const {
    return m_lastResult;
}
