#include <pal/AaGpuXml.hpp>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

std::string nested(int levels, const std::string& inside = "") {
    std::string open;
    std::string close;
    for (int i = 0; i < levels; ++i) {
        open += "<a>";
        close += "</a>";
    }
    return open + inside + close;
}

class TheXmlParser : public testing::Test {
protected:
    std::unique_ptr<AaGpuXmlNode> parse(const std::string& text) {
        return std::unique_ptr<AaGpuXmlNode>(sut.AaGpuXmlParse(text));
    }

    static std::vector<std::string> children(const AaGpuXmlNode& parent) {
        std::vector<std::string> shown;
        for (auto* node = parent.AaGpuXmlGetFirstChildren(); node != nullptr; node = node->AaGpuXmlGetNext()) {
            shown.push_back(std::to_string(node->AaGpuXmlGetType()) + " " + std::string(node->AaGpuXmlGetName()) + "=" +
                            std::string(node->AaGpuXmlGetValue()));
        }
        return shown;
    }

    AaGpuXmlParser sut{0};
};

TEST_F(TheXmlParser, HasParsedNothingAtFirst) {
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_NotParsed);
}

TEST_F(TheXmlParser, GivesADocumentWhoseChildrenAreTheOutermostElements) {
    const auto root = parse("<?xml version=\"1.0\"?><!-- c --><trailer><Version>1</Version></trailer>");
    ASSERT_THAT(root, NotNull());
    EXPECT_EQ(root->AaGpuXmlGetType(), EAaGpuXmlNodeType_Document);
    EXPECT_EQ(root->AaGpuXmlGetName(), "");
    EXPECT_EQ(root->AaGpuXmlGetValue(), "");
    EXPECT_TRUE(root->AaGpuXmlHasChildren());
    EXPECT_THAT(root->AaGpuXmlGetNext(), IsNull());
    EXPECT_THAT(children(*root), ElementsAre("1 trailer="));
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_NoError);
}

TEST_F(TheXmlParser, GivesAttributesBeforeElementsEachInTheirOrder) {
    const auto root = parse("<a z=\"1\" b='2'><y>3</y>t<x/><y>4</y></a>");
    ASSERT_THAT(root, NotNull());
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_THAT(children(*a), ElementsAre("2 z=1", "2 b=2", "1 y=3", "1 x=", "1 y=4"));
}

TEST_F(TheXmlParser, GivesAnElementsOwnTextWithoutSurroundingBlanks) {
    const auto root = parse("<a>\n  one <b>inner</b> two <![CDATA[<3>]]>\r\n</a>");
    ASSERT_THAT(root, NotNull());
    EXPECT_EQ(root->AaGpuXmlGetFirstChildren()->AaGpuXmlGetValue(), "one  two <3>");
}

TEST_F(TheXmlParser, JoinsThePiecesOfEachElementsText) {
    const auto root = parse("<a>1<b/>2<!-- c -->3<c>4<![CDATA[5]]>6<d/>7</c><![CDATA[8]]>9</a>");
    ASSERT_THAT(root, NotNull());
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_EQ(a->AaGpuXmlGetValue(), "12389");
    EXPECT_THAT(children(*a), ElementsAre("1 b=", "1 c=4567"));
}

TEST_F(TheXmlParser, GivesTextBehindAnElementOrAloneInACdataSection) {
    const auto root = parse("<a><b/> 1 <c><![CDATA[ 2 ]]></c></a>");
    ASSERT_THAT(root, NotNull());
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_EQ(a->AaGpuXmlGetValue(), "1");
    EXPECT_THAT(children(*a), ElementsAre("1 b=", "1 c=2"));
}

TEST_F(TheXmlParser, TakesNoTextBesideTheOutermostElements) {
    const auto root = parse("<a>1</a><![CDATA[2]]>");
    ASSERT_THAT(root, NotNull());
    EXPECT_EQ(root->AaGpuXmlGetValue(), "");
    EXPECT_THAT(children(*root), ElementsAre("1 a=1"));
}

TEST_F(TheXmlParser, KeepsTheBlanksOfAnAttribute) {
    const auto root = parse("<a b=' 1 '/>");
    ASSERT_THAT(root, NotNull());
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_TRUE(a->AaGpuXmlHasChildren());
    EXPECT_THAT(children(*a), ElementsAre("2 b= 1 "));
    EXPECT_TRUE(a->AaGpuXmlHasChildren());
}

TEST_F(TheXmlParser, GivesTheTextOfTheDeepestElement) {
    const auto root = parse(nested(63, "<b>1<![CDATA[2]]></b>"));
    ASSERT_THAT(root, NotNull());
    const AaGpuXmlNode* node = root.get();
    while (node->AaGpuXmlHasChildren()) {
        node = node->AaGpuXmlGetFirstChildren();
    }
    EXPECT_EQ(node->AaGpuXmlGetName(), "b");
    EXPECT_EQ(node->AaGpuXmlGetValue(), "12");
}

TEST_F(TheXmlParser, TellsThatALeafHasNoChildren) {
    const auto root = parse("<a>text</a>");
    const auto* leaf = root->AaGpuXmlGetFirstChildren();
    EXPECT_FALSE(leaf->AaGpuXmlHasChildren());
    EXPECT_THAT(leaf->AaGpuXmlGetFirstChildren(), IsNull());
}

TEST_F(TheXmlParser, GivesNoChildrenOfAnAttribute) {
    const auto root = parse("<a b=\"1\"><c/></a>");
    const auto* attribute = root->AaGpuXmlGetFirstChildren()->AaGpuXmlGetFirstChildren();
    ASSERT_EQ(attribute->AaGpuXmlGetType(), EAaGpuXmlNodeType_Attribute);
    EXPECT_FALSE(attribute->AaGpuXmlHasChildren());
    EXPECT_THAT(attribute->AaGpuXmlGetFirstChildren(), IsNull());
}

TEST_F(TheXmlParser, GivesTheSameNodesAgain) {
    const auto root = parse("<a c='1'><b/></a>");
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_EQ(a, root->AaGpuXmlGetFirstChildren());
    EXPECT_EQ(a->AaGpuXmlGetFirstChildren(), a->AaGpuXmlGetFirstChildren());
    EXPECT_THAT(children(*a), ElementsAre("2 c=1", "1 b="));
}

TEST_F(TheXmlParser, ExpandsThePredefinedEntitiesAndCharacterReferencesOnly) {
    const auto root = parse("<a v=\"&lt;&#65;&unknown;\">&amp;&#x42;&bomb;</a>");
    ASSERT_THAT(root, NotNull());
    const auto* a = root->AaGpuXmlGetFirstChildren();
    EXPECT_EQ(a->AaGpuXmlGetValue(), "&B&bomb;");
    EXPECT_EQ(a->AaGpuXmlGetFirstChildren()->AaGpuXmlGetValue(), "<A&unknown;");
}

TEST_F(TheXmlParser, IgnoresZeroBytesAtTheEnd) {
    EXPECT_THAT(parse(std::string("<a/>\0\0", 6)), NotNull());
}

TEST_F(TheXmlParser, GivesDocumentsThatOutliveIt) {
    std::unique_ptr<AaGpuXmlNode> root;
    {
        AaGpuXmlParser parser(0);
        root.reset(parser.AaGpuXmlParse("<a>1</a>"));
    }
    EXPECT_EQ(root->AaGpuXmlGetFirstChildren()->AaGpuXmlGetValue(), "1");
}

TEST_F(TheXmlParser, ParsesOnAfterAFailure) {
    EXPECT_THAT(parse("<a>"), IsNull());
    EXPECT_THAT(parse("<a/>"), NotNull());
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_NoError);
}

TEST_F(TheXmlParser, TakesSiblingsByTheTenThousand) {
    std::string text = "<a>";
    for (int i = 0; i < 20000; ++i) {
        text += "<b/>";
    }
    const auto root = parse(text + "</a>");
    ASSERT_THAT(root, NotNull());
    EXPECT_EQ(children(*root->AaGpuXmlGetFirstChildren()).size(), 20000u);
}

TEST_F(TheXmlParser, TakesSixtyFourLevelsAndNoMore) {
    EXPECT_THAT(parse(nested(64)), NotNull());
    EXPECT_THAT(parse(nested(65)), IsNull());
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_SyntaxError);
    EXPECT_THAT(parse(nested(100000)), IsNull());
}

TEST_F(TheXmlParser, TakesOneMebibyteAndNoMore) {
    const std::string text = "<a>" + std::string((1 << 20) - 7, 'x') + "</a>";
    EXPECT_THAT(parse(text), NotNull());
    EXPECT_THAT(parse(text + "\n"), IsNull());
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_SyntaxError);
}

class BadXml : public TheXmlParser, public testing::WithParamInterface<std::string> {};

TEST_P(BadXml, GivesNoDocument) {
    EXPECT_THAT(parse(GetParam()), IsNull());
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_SyntaxError);
}

INSTANTIATE_TEST_SUITE_P(AaGpuXml, BadXml,
                         testing::Values("", " \n", "text", "<", "<a", "<a>", "<a></b>", "<a><b></a></b>", "<a b></a>",
                                         "<a b=1/>", "<!-- only a comment -->", "<!DOCTYPE a><a/>",
                                         "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
                                         "<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a/>", "<a/><!DOCTYPE a>",
                                         "<a><!DOCTYPE a></a>", std::string("<a>\0</a>", 8), "</a>", "<a><![CDATA[</a>",
                                         "<a><!-- </a>", "\xFF\xFE<\0a"));

} // namespace
