#include "Xml.hpp"

#include <pal/AaGpuXml.hpp>

#include <array>
#include <cstddef>
#include <deque>
#include <forward_list>
#include <memory>
#include <string_view>
#include <utility>

using mox::host::XmlResult;

/// What a node shows: views into the parsed document.
struct AaGpuXmlNode::Content {
    struct Document;
    class Maker;

    Content(Document& of, int what, pugi::xml_node shown, std::string_view itsName, std::string_view itsText)
        : document(of), type(what), node(shown), name(itsName), text(itsText) {}
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;

    void append(Content& child);
    void append(const char* moreText);
    void makeAttributes();

    Document& document;
    const int type;
    bool hasAttributes = false; ///< attributes are made when the children are first asked for: most elements have none
    const pugi::xml_node node;  ///< the document's or the element's
    const std::string_view name;
    std::string_view text;             ///< with surrounding white space
    std::string* joinedText = nullptr; ///< of an element whose text is in pieces
    AaGpuXmlNode* firstChild = nullptr;
    Content* lastElement = nullptr;
    AaGpuXmlNode* next = nullptr;
    AaGpuXmlNode handle{*this}; ///< of a child; the caller has a root's
};

/// A parsed document and the nodes that show it, which stay where they are when more are made.
struct AaGpuXmlNode::Content::Document {
    pugi::xml_document parsed;
    Content root{*this, EAaGpuXmlNodeType_Document, parsed, {}, {}};
    std::deque<Content> nodes;
    std::forward_list<std::string> joinedTexts;
};

void AaGpuXmlNode::Content::append(Content& child) {
    (lastElement == nullptr ? firstChild : lastElement->next) = &child.handle;
    lastElement = &child;
}

void AaGpuXmlNode::Content::append(const char* moreText) {
    if (joinedText == nullptr) {
        joinedText = &document.joinedTexts.emplace_front(text);
    }
    *joinedText += moreText;
    text = *joinedText;
}

/// Puts the attributes before the elements.
void AaGpuXmlNode::Content::makeAttributes() {
    AaGpuXmlNode* first = nullptr;
    AaGpuXmlNode** end = &first;
    for (pugi::xml_attribute of = node.first_attribute(); of; of = of.next_attribute()) {
        Content& made =
            document.nodes.emplace_back(document, EAaGpuXmlNodeType_Attribute, pugi::xml_node(), of.name(), of.value());
        *end = &made.handle;
        end = &made.next;
    }
    *end = firstChild;
    firstChild = first;
    hasAttributes = true;
}

/// Makes the nodes of a document's elements in one walk. The text before an element's first child is the element's
/// value in the parsed document, what else there is are children.
class AaGpuXmlNode::Content::Maker : public pugi::xml_tree_walker {
public:
    explicit Maker(Document& document) : m_document(document) { m_parents[0] = &document.root; }

    bool for_each(pugi::xml_node& met) override {
        const auto level = static_cast<std::size_t>(depth());
        const pugi::xml_node_type kind = met.type();
        if (kind == pugi::node_element) {
            Content& made =
                m_document.nodes.emplace_back(m_document, EAaGpuXmlNodeType_Element, met, met.name(), met.value());
            m_parents[level]->append(made);
            m_parents[level + 1] = &made;
        } else if (level > 0 && (kind == pugi::node_pcdata || kind == pugi::node_cdata)) {
            m_parents[level]->append(met.value());
        }
        return true;
    }

private:
    Document& m_document;
    std::array<Content*, mox::host::maxXmlDepth + 1> m_parents{}; ///< of the nodes of each level
};

namespace {

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

int resultOf(XmlResult result) {
    return result == XmlResult::noMemory ? EAaGpuXmlResult_OutOfResources : EAaGpuXmlResult_SyntaxError;
}

} // namespace

AaGpuXmlNode::AaGpuXmlNode(Content& content) : m_content(content) {}

/// A child's content goes with its document.
AaGpuXmlNode::~AaGpuXmlNode() {
    if (this != &m_content.handle) {
        delete &m_content.document;
    }
}

bool AaGpuXmlNode::AaGpuXmlHasChildren() const {
    return m_content.firstChild != nullptr || m_content.node.first_attribute();
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetFirstChildren() const {
    if (!m_content.hasAttributes) {
        m_content.makeAttributes();
    }
    return m_content.firstChild;
}

AaGpuXmlNode* AaGpuXmlNode::AaGpuXmlGetNext() const {
    return m_content.next;
}

int AaGpuXmlNode::AaGpuXmlGetType() const {
    return m_content.type;
}

std::string_view AaGpuXmlNode::AaGpuXmlGetName() const {
    return m_content.name;
}

std::string_view AaGpuXmlNode::AaGpuXmlGetValue() const {
    return m_content.type == EAaGpuXmlNodeType_Element ? trimmed(m_content.text) : m_content.text;
}

AaGpuXmlParser::AaGpuXmlParser(int) {}

AaGpuXmlParser::~AaGpuXmlParser() = default;

AaGpuXmlNode* AaGpuXmlParser::AaGpuXmlParse(const std::string& text) {
    const auto end = text.find_last_not_of('\0');
    const std::string_view used(text.data(), end == std::string::npos ? 0 : end + 1);
    auto document = std::make_unique<AaGpuXmlNode::Content::Document>();
    mox::host::XmlError error;
    if (!mox::host::parseXml(used, document->parsed, error)) {
        m_lastResult = resultOf(error.result);
        return nullptr;
    }
    AaGpuXmlNode::Content::Maker maker(*document);
    document->parsed.traverse(maker);
    m_lastResult = EAaGpuXmlResult_NoError;
    auto* const root = new AaGpuXmlNode(document->root);
    static_cast<void>(document.release()); // the root's now
    return root;
}

int AaGpuXmlParser::AaGpuXmlGetLastResult() const {
    return m_lastResult;
}
