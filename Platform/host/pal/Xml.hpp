#pragma once
/// The one way in which this platform reads XML: no document type declarations, so no entities of a document's own; at
/// most 64 levels of elements; at most 1 MiB.
#include <pugixml.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace mox::host {

constexpr std::size_t maxXmlSize = 1024 * 1024;
constexpr unsigned maxXmlDepth = 64;

enum class XmlResult { done, malformed, refused, noMemory };

/// Where and why a text was not read.
struct XmlError {
    XmlResult result = XmlResult::done;
    std::size_t offset = 0; ///< in bytes
    std::string text;
};

/// Reads a document. Text before an element's first child is the element's value, other text is a child.
/// @return whether `document` holds it; `error` is set otherwise
bool parseXml(std::string_view text, pugi::xml_document& document, XmlError& error);

/// The line of an offset, from 1.
unsigned lineOf(std::string_view text, std::size_t offset);

} // namespace mox::host
