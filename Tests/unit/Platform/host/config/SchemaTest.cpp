// The parser's tables, written as a JSON schema, must be the published one.
#include <gmock/gmock.h>
#include <host/board/Rules.hpp>
#include <nlohmann/json.hpp>

#include <fstream>
#include <regex>
#include <set>

namespace {

using namespace mox::host;
using Json = nlohmann::ordered_json;

constexpr const char* published = MOX_BOARD_DIRECTORY "/board.schema.json";

Json schemaOf(const ObjectRule& rule, Json& definitions);

Json numberSchema(std::uint64_t least, std::uint64_t most) {
    return {{"anyOf", Json::array({{{"type", "integer"}, {"minimum", least}, {"maximum", most}},
                                   {{"type", "string"}, {"pattern", "^0x[0-9A-Fa-f]{1,16}$"}}})}};
}

Json reference(const ObjectRule& rule, Json& definitions) {
    if (!definitions.contains(rule.name)) {
        definitions[rule.name] = nullptr; // one that refers to itself would not end
        definitions[rule.name] = schemaOf(rule, definitions);
    }
    return {{"$ref", std::string("#/definitions/") + rule.name}};
}

Json listSchema(const FieldRule& field, Json& definitions) {
    Json schema{{"type", "array"}};
    if (field.kind == FieldKind::list) {
        schema["items"] = reference(*field.object, definitions);
        schema["minItems"] = field.least;
        schema["maxItems"] = field.most;
    } else if (field.kind == FieldKind::texts) {
        schema["items"] = {{"type", "string"}};
        schema["maxItems"] = field.most;
    } else {
        schema["items"] = numberSchema(field.least, field.most);
    }
    return schema;
}

Json valueSchema(const FieldRule& field, Json& definitions) {
    switch (field.kind) {
    case FieldKind::text:
        return {{"type", "string"},
                {"minLength", field.least},
                {"maxLength", field.most},
                {"pattern", field.form->pattern}};
    case FieldKind::number:
        return numberSchema(field.least, field.most);
    case FieldKind::flag:
        return {{"type", "boolean"}};
    case FieldKind::choice:
        return {{"enum", field.choices}};
    case FieldKind::scalar:
        return {{"type", Json::array({"string", "integer"})}};
    case FieldKind::object:
        return reference(*field.object, definitions);
    default:
        return listSchema(field, definitions);
    }
}

Json schemaOf(const ObjectRule& rule, Json& definitions) {
    Json schema{{"type", "object"}, {"additionalProperties", false}};
    for (const auto& field : rule.fields) {
        Json described{{"description", field.expected}};
        described.update(valueSchema(field, definitions));
        schema["properties"][field.key] = described;
        if (field.required) {
            schema["required"].push_back(field.key);
        }
    }
    return schema;
}

Json wholeSchema() {
    Json definitions = Json::object();
    Json schema{{"$schema", "http://json-schema.org/draft-07/schema#"},
                {"title", "Board description"},
                {"description", "What a simulated board is made from. Comments as in C++ are allowed."}};
    schema.update(schemaOf(descriptionRule(), definitions));
    schema["definitions"] = definitions;
    return schema;
}

void collect(const ObjectRule& rule, std::set<const ObjectRule*>& all) {
    if (!all.insert(&rule).second) {
        return;
    }
    for (const auto& field : rule.fields) {
        if (field.object != nullptr) {
            collect(*field.object, all);
        }
    }
}

std::set<const ObjectRule*> allRules() {
    std::set<const ObjectRule*> all;
    collect(descriptionRule(), all);
    return all;
}

TEST(BoardSchema, SaysWhatTheParserChecks) {
    std::ifstream file(published);
    const Json found = Json::parse(file, nullptr, false);
    const Json expected = wholeSchema();
    if (!(found == expected)) { // a discarded value is neither equal nor unequal
        std::ofstream("board.schema.json") << expected.dump(2) << "\n";
    }
    EXPECT_TRUE(found == expected) << published
                                   << " is not what the tables say; the schema that they give was written to "
                                   << "board.schema.json in the directory of this run";
}

TEST(BoardSchema, HasAnExpectationAPersonCanReadForEveryKey) {
    for (const auto* rule : allRules()) {
        for (const auto& field : rule->fields) {
            EXPECT_GT(std::string(field.expected).size(), 3u) << rule->name << "." << field.key;
        }
    }
}

TEST(BoardSchema, HasPatternsThatAcceptWhatTheParserAccepts) {
    const char* samples[] = {"",      "a",        "a b",        "KORA",         "v1.2-3_x",        "123",
                             "12a",   "/ffs/fs1", "/ffs/",      "/ffs/../etc",  "/ffs/fs1/a",      "/ffs/.a",
                             "local", "nats://",  "nats://h:1", "nats://h:a",   "nats://h:123456", "nats://:1",
                             "\x7F",  "\xC3\xA4", "tab\t",      "nats://a_b:1", "nats://a:1:2",    "/ffs/a b"};
    std::set<const TextForm*> forms;
    for (const auto* rule : allRules()) {
        for (const auto& field : rule->fields) {
            if (field.form != nullptr) {
                forms.insert(field.form);
            }
        }
    }
    ASSERT_EQ(forms.size(), 6u);
    for (const auto* form : forms) {
        const std::regex pattern(form->pattern);
        for (const char* sample : samples) {
            EXPECT_EQ(form->accepts(sample), std::regex_match(sample, pattern)) << form->pattern << " on " << sample;
        }
    }
}

} // namespace
