#include "Xml.hpp"

#include <algorithm>

namespace mox::host {
namespace {

// Most text is alone in its element and then needs no node of its own.
constexpr unsigned parseOptions = pugi::parse_default | pugi::parse_doctype | pugi::parse_embed_pcdata;

bool refuse(XmlError& error, XmlResult result, std::size_t offset, std::string text) {
    error = {result, offset, std::move(text)};
    return false;
}

std::size_t offsetOf(const pugi::xml_node& node) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
}

/// The first element that is nested too deeply; an empty node when there is none. By hand and not by recursion: the
/// document may be as deep as it is long.
pugi::xml_node tooDeep(const pugi::xml_document& document) {
    unsigned depth = 1;
    pugi::xml_node node = document.first_child();
    while (node) {
        if (depth > maxXmlDepth && node.type() == pugi::node_element) {
            return node;
        }
        if (node.first_child()) {
            node = node.first_child();
            ++depth;
            continue;
        }
        while (node && node != document && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        node = node && node != document ? node.next_sibling() : pugi::xml_node();
    }
    return {};
}

/// How often a character is there. In pieces, whose counts fit into a byte: the processor then takes many at a time.
std::size_t countOf(char wanted, std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, 255);
        unsigned char inPiece = 0;
        for (const char c : piece) {
            inPiece = static_cast<unsigned char>(inPiece + (c == wanted ? 1 : 0));
        }
        count += inPiece;
        text.remove_prefix(piece.size());
    }
    return count;
}

/// Whether elements can be nested too deeply at all: each element around another one has an end tag. Spares most
/// documents the walk.
bool mayBeTooDeep(std::string_view text) {
    return countOf('/', text) >= maxXmlDepth;
}

bool refuseForbidden(std::string_view text, const pugi::xml_document& document, XmlError& error) {
    const auto declaration = document.find_child([](auto node) { return node.type() == pugi::node_doctype; });
    if (declaration) {
        return refuse(error, XmlResult::refused, offsetOf(declaration), "expected no document type declaration");
    }
    if (const auto node = mayBeTooDeep(text) ? tooDeep(document) : pugi::xml_node()) {
        return refuse(error, XmlResult::refused, offsetOf(node), "expected at most 64 levels of elements");
    }
    return true;
}

} // namespace

bool parseXml(std::string_view text, pugi::xml_document& document, XmlError& error) {
    if (text.size() > maxXmlSize) {
        return refuse(error, XmlResult::refused, 0, "expected at most 1 MiB");
    }
    const auto zero = text.find('\0');
    if (zero != std::string_view::npos) {
        return refuse(error, XmlResult::malformed, zero, "expected no zero bytes");
    }
    const auto parsed = document.load_buffer(text.data(), text.size(), parseOptions, pugi::encoding_utf8);
    if (parsed.status == pugi::status_out_of_memory) {
        return refuse(error, XmlResult::noMemory, 0, parsed.description());
    }
    const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(parsed.offset, 0));
    return parsed ? refuseForbidden(text, document, error)
                  : refuse(error, XmlResult::malformed, offset, parsed.description());
}

unsigned lineOf(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset);
    return 1 + static_cast<unsigned>(std::count(before.begin(), before.end(), '\n'));
}

} // namespace mox::host
