#pragma once
/// The tag file: XML, described in docs/formats/tag-file.md.
#include "TypedValue.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

struct NamedValue {
    std::string name;
    TypedValue value;
};

/// Reads the text of a tag file. A name that stands twice counts with its last value.
/// @param fileName  for the message
/// @param[out] why  "mox.xml:3: ..." when the result is empty: what was expected, what was found
std::optional<std::vector<NamedValue>> parseTagFile(std::string_view text, const std::string& fileName,
                                                    std::string& why);

} // namespace mox::host
