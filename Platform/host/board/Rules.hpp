#pragma once
/// What a board description may contain, as tables: the parser checks by them, and a test compares them with
/// board.schema.json.
#include <cstdint>
#include <string_view>
#include <vector>

namespace mox::host {

/// A form that texts can be asked to have.
struct TextForm {
    const char* pattern; ///< the same as a regular expression, for the schema
    bool (*accepts)(std::string_view text);
};

enum class FieldKind {
    text,   ///< `least` to `most` bytes, of `form`
    number, ///< `least` to `most`; a JSON integer, or a text with 0x and hexadecimal digits
    flag,
    choice, ///< one of `choices`
    scalar, ///< a text or a number; checked by what stands beside it
    object, ///< by `object`
    list,   ///< of objects by `object`, at most `most`
    texts,  ///< a list of texts, at most `most`
    numbers ///< a list of numbers from `least` to `most`
};

struct ObjectRule;

struct FieldRule {
    const char* key;
    FieldKind kind;
    bool required;
    const char* expected; ///< for a person: "a node id from 0x0001 to 0xFFFF"
    std::uint64_t least = 0;
    std::uint64_t most = 0;
    const TextForm* form = nullptr;
    std::vector<const char*> choices = {};
    const ObjectRule* object = nullptr;
};

struct ObjectRule {
    const char* name; ///< of the definition in the schema
    std::vector<FieldRule> fields;
};

/// The whole description; everything else is reached from here.
const ObjectRule& descriptionRule();

/// One node.
const ObjectRule& nodeRule();

} // namespace mox::host
