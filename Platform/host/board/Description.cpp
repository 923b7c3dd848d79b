#include "Description.hpp"

#include "Check.hpp"
#include "Consistency.hpp"
#include "Extract.hpp"

namespace mox::host {
namespace {

std::optional<JsonValue> parseChecked(std::string_view text, const ObjectRule& rule, JsonError& error) {
    if (text.size() > maxDescription) {
        error = {1,
                 "expected at most " + std::to_string(maxDescription) + " bytes, got " + std::to_string(text.size())};
        return std::nullopt;
    }
    auto tree = parseJson(text, error);
    return tree && checkObject(*tree, rule, "", error) ? std::move(tree) : std::nullopt;
}

} // namespace

std::string DescriptionError::message() const {
    return file + ":" + std::to_string(line) + ": " + text;
}

std::optional<Description> parseDescription(std::string_view text, const std::string& fileName,
                                            DescriptionError& error) {
    JsonError found;
    const auto tree = parseChecked(text, descriptionRule(), found);
    if (!tree || !checkDescription(*tree, found)) {
        error = {fileName, found.line, std::move(found.text)};
        return std::nullopt;
    }
    return extractDescription(*tree);
}

std::optional<NodeDescription> parseNode(std::string_view json, DescriptionError& error) {
    JsonError found;
    const auto tree = parseChecked(json, nodeRule(), found);
    if (!tree || !checkNode(*tree, "", found)) {
        error = {"node", found.line, std::move(found.text)};
        return std::nullopt;
    }
    return extractNode(*tree);
}

} // namespace mox::host
