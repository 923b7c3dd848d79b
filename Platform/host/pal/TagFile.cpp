#include "TagFile.hpp"

#include "Tags.hpp"
#include "Xml.hpp"

namespace mox::host {
namespace {

constexpr const char* rootName = "tags";
constexpr const char* tagName = "tag";
constexpr const char* typeNames = "\"bytes\", \"text\", \"u8\", \"u16\", \"u32\" or \"u64\"";

/// Why a file is refused.
struct Refusal {
    std::size_t offset = 0;
    std::string text;
};

bool refuse(Refusal& refusal, const pugi::xml_node& node, std::string text) {
    refusal = {static_cast<std::size_t>(node.offset_debug()), std::move(text)};
    return false;
}

bool checkAttributes(const pugi::xml_node& node, Refusal& refusal) {
    for (const auto& attribute : node.attributes()) {
        const std::string_view name = attribute.name();
        if (name != "name" && name != "type") {
            return refuse(refusal, node,
                          "unknown attribute \"" + std::string(name) + "\", known are \"name\" and \"type\"");
        }
    }
    return true;
}

bool readTag(const pugi::xml_node& node, std::vector<NamedValue>& tags, Refusal& refusal) {
    if (std::string_view(node.name()) != tagName) {
        return refuse(refusal, node, std::string("expected <tag>, got <") + node.name() + ">");
    }
    if (!checkAttributes(node, refusal)) {
        return false;
    }
    const char* name = node.attribute("name").value();
    if (!tags::isName(name)) {
        return refuse(refusal, node, "expected an attribute \"name\" of 1 to 480 characters");
    }
    const char* typeName = node.attribute("type").as_string("text");
    const auto type = valueTypeOf(typeName);
    if (!type) {
        return refuse(refusal, node, std::string("type: expected ") + typeNames + ", got \"" + typeName + "\"");
    }
    if (node.find_child([](auto child) { return child.type() == pugi::node_element; })) {
        return refuse(refusal, node, std::string(name) + ": expected a value, got an element");
    }
    const auto value = parseValue(*type, node.child_value());
    if (!value) {
        return refuse(refusal, node,
                      std::string(name) + ": expected " + expectedText(*type) + ", got \"" + node.child_value() + "\"");
    }
    tags.push_back({name, *value});
    return true;
}

bool readTags(const pugi::xml_document& document, std::vector<NamedValue>& tags, Refusal& refusal) {
    const auto root = document.document_element();
    if (std::string_view(root.name()) != rootName) {
        return refuse(refusal, root, std::string("expected <tags>, got <") + root.name() + ">");
    }
    for (const auto& node : root.children()) {
        if (node.type() == pugi::node_element && !readTag(node, tags, refusal)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::vector<NamedValue>> parseTagFile(std::string_view text, const std::string& fileName,
                                                    std::string& why) {
    pugi::xml_document document;
    XmlError error;
    Refusal refusal;
    std::vector<NamedValue> tags;
    if (!parseXml(text, document, error)) {
        refusal = {error.offset, error.text};
    } else if (readTags(document, tags, refusal)) {
        return tags;
    }
    why = fileName + ":" + std::to_string(lineOf(text, refusal.offset)) + ": " + refusal.text;
    return std::nullopt;
}

} // namespace mox::host
