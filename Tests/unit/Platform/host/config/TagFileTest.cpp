#include <gmock/gmock.h>
#include <host/pal/TagFile.hpp>

#include <ostream>

namespace {

using namespace mox::host;
using testing::SizeIs;

TEST(ATagFile, GivesItsTagsInOrder) {
    std::string why;
    const auto sut = parseTagFile("<?xml version=\"1.0\"?>\n<tags>\n"
                                  "  <!-- sizes -->\n"
                                  "  <tag name=\"a.size\" type=\"u32\">65536</tag>\n"
                                  "  <tag name=\"a.text\">on &amp; off</tag>\n"
                                  "  <tag name=\"a.empty\"/>\n"
                                  "  <tag type=\"bytes\" name=\"a.bytes\">00 ff</tag>\n"
                                  "</tags>",
                                  "mox.xml", why);
    ASSERT_TRUE(sut) << why;
    ASSERT_THAT(*sut, SizeIs(4));
    EXPECT_EQ((*sut)[0].name, "a.size");
    EXPECT_EQ((*sut)[0].value, numberValue(ValueType::u32, 65536));
    EXPECT_EQ((*sut)[1].value, (TypedValue{ValueType::text, "on & off"}));
    EXPECT_EQ((*sut)[2].value, (TypedValue{ValueType::text, ""}));
    EXPECT_EQ((*sut)[3].value, (TypedValue{ValueType::bytes, std::string("\0\xFF", 2)}));
}

struct Wrong {
    const char* text;
    const char* why;
};

std::ostream& operator<<(std::ostream& out, const Wrong& wrong) {
    return out << wrong.why;
}

class AWrongTagFile : public testing::TestWithParam<Wrong> {};

TEST_P(AWrongTagFile, IsRefusedWithItsLineAndWhatWasExpected) {
    std::string why;
    EXPECT_FALSE(parseTagFile(GetParam().text, "mox.xml", why));
    EXPECT_EQ(why, GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    TagFile, AWrongTagFile,
    testing::Values(
        Wrong{"", "mox.xml:1: No document element found"},
        Wrong{"<tags>\n<tag>\n</tags>", "mox.xml:3: Start-end tags mismatch"},
        Wrong{"\n<config/>", "mox.xml:2: expected <tags>, got <config>"},
        Wrong{"<tags>\n<set/></tags>", "mox.xml:2: expected <tag>, got <set>"},
        Wrong{"<tags>\n\n<tag/></tags>", "mox.xml:3: expected an attribute \"name\" of 1 to 480 characters"},
        Wrong{"<tags><tag name=\"a\" typ=\"u8\"/></tags>",
              "mox.xml:1: unknown attribute \"typ\", known are \"name\" and \"type\""},
        Wrong{"<tags><tag name=\"a\" type=\"int\"/></tags>",
              "mox.xml:1: type: expected \"bytes\", \"text\", \"u8\", \"u16\", \"u32\" or \"u64\", got \"int\""},
        Wrong{"<tags>\n<tag name=\"a\" type=\"u8\">256</tag></tags>",
              "mox.xml:2: a: expected a decimal or 0x... hexadecimal number of 8 bits, got \"256\""},
        Wrong{"<tags><tag name=\"a\"><b/></tag></tags>", "mox.xml:1: a: expected a value, got an element"},
        Wrong{"<!DOCTYPE tags>\n<tags/>", "mox.xml:1: expected no document type declaration"}));

} // namespace
