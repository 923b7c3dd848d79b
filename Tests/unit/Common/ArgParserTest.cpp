#include <mox/ArgParser.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ps::hwapi::common {
namespace {

const char* const off = "arg off";
const char* const on = "arg on";
const char* const builtInHelp = "\t-h\n\t--help\n\t\t Print usage information\n";

/// Parses words as a program would get them, behind the program's name.
std::string parse(ArgParserBase& sut, std::vector<std::string> words) {
    words.insert(words.begin(), "MOXLedExe");
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    return sut.Parse(static_cast<int>(words.size()), argv.data());
}

TEST(ArgParserAfterConstruction, KnowsTheHelpOptionAsOff) {
    ArgParser sut;
    EXPECT_EQ(sut.ReadArgument("h"), off);
    EXPECT_EQ(sut.ReadArgument("help"), off);
}

TEST(ArgParserAfterConstruction, AnswersAnUndeclaredNameWithNothing) {
    ArgParser sut;
    for (const char* name : {"", "x", "-h", "--help", "hel", "Print"}) {
        EXPECT_EQ(sut.ReadArgument(name), "") << name;
    }
}

TEST(ArgParserAfterConstruction, HelpKeepsTheBlankBeforeTheDescription) {
    ArgParser sut;
    EXPECT_EQ(sut.GetHelp(), builtInHelp);
}

TEST(ArgParserAfterConstruction, HelpIsACopy) {
    ArgParser sut;
    sut.GetHelp().append("more");
    EXPECT_EQ(sut.GetHelp(), builtInHelp);
}

TEST(ArgParserAfterConstruction, ReadingAnUndeclaredNameDoesNotDeclareIt) {
    ArgParser sut;
    sut.ReadArgument("x");
    EXPECT_EQ(parse(sut, {"-x"}), " -x");
}

struct DeclarationRow {
    const char* info;
    std::vector<const char*> declared;
    std::vector<const char*> undeclared;
    std::string help;
};

void PrintTo(const DeclarationRow& row, std::ostream* out) {
    *out << testing::PrintToString(row.info);
}

class ArgParserDeclaration : public testing::TestWithParam<DeclarationRow> {};

TEST_P(ArgParserDeclaration, DeclaresTheNamesAndExtendsTheHelp) {
    const DeclarationRow& row = GetParam();
    ArgParser sut;
    sut.SetArgumentInfo(row.info);
    for (const char* name : row.declared) {
        EXPECT_EQ(sut.ReadArgument(name), off) << name;
    }
    for (const char* name : row.undeclared) {
        EXPECT_EQ(sut.ReadArgument(name), "") << name;
    }
    EXPECT_EQ(sut.GetHelp(), builtInHelp + row.help);
    EXPECT_EQ(sut.ReadArgument("h"), off);
    EXPECT_EQ(sut.ReadArgument("help"), off);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ArgParserDeclaration,
    testing::Values(
        // short options: the second character is the name, the rest of the word only help
        DeclarationRow{"-v\n", {"v"}, {}, "\t-v\n"}, DeclarationRow{"-v", {"v"}, {}, "\t-v\n"},
        DeclarationRow{"-v Talk more\n", {"v"}, {"Talk", "more"}, "\t-v\n\t\t Talk more\n"},
        DeclarationRow{"-verbose Talk\n", {"v"}, {"verbose", "e", "r"}, "\t-verbose\n\t\t Talk\n"},
        DeclarationRow{"-= sign\n", {"="}, {}, "\t-=\n\t\t sign\n"},
        // long options: the name ends at the first '='
        DeclarationRow{"--ab x\n", {"ab"}, {"a", "x"}, "\t--ab\n\t\t x\n"},
        DeclarationRow{"--level=N Start\n", {"level"}, {"level=N", "N"}, "\t--level=N\n\t\t Start\n"},
        DeclarationRow{"--a=b=c\n", {"a"}, {"a=b"}, "\t--a=b=c\n"},
        DeclarationRow{"--level=\n", {"level"}, {}, "\t--level=\n"},
        DeclarationRow{"--a-b\n", {"a-b"}, {}, "\t--a-b\n"},
        // words that declare nothing
        DeclarationRow{"-", {}, {"", "-"}, ""}, DeclarationRow{"--", {}, {"", "-"}, ""},
        DeclarationRow{"--a", {}, {"a"}, ""}, DeclarationRow{"---", {}, {"-", ""}, ""},
        DeclarationRow{"---a", {}, {"-a", "a"}, ""}, DeclarationRow{"----", {}, {"", "--"}, ""},
        DeclarationRow{"--=x", {}, {"", "x", "=x"}, ""}, DeclarationRow{"--=x --yz", {"yz"}, {"x"}, "\t--yz\n"},
        DeclarationRow{"word", {}, {"word", "w"}, ""}, DeclarationRow{"", {}, {""}, ""},
        DeclarationRow{" \t\r\n\v\f ", {}, {""}, ""},
        // a word is looked at wherever it stands, a description only behind an option
        DeclarationRow{"some --ab x -y\n-z\n", {"ab", "z"}, {"y", "x", "some"}, "\t--ab\n\t\t x -y\n\t-z\n"},
        DeclarationRow{"  \t-v\n", {"v"}, {}, "\t-v\n"}, DeclarationRow{"-v\n\n\n-w\n", {"v", "w"}, {}, "\t-v\n\t-w\n"},
        // descriptions as they stand
        DeclarationRow{"-v  two  blanks \n", {"v"}, {}, "\t-v\n\t\t  two  blanks \n"},
        DeclarationRow{"-v\ttab\n", {"v"}, {}, "\t-v\n\t\t\ttab\n"},
        DeclarationRow{"-v \n", {"v"}, {}, "\t-v\n\t\t \n"}, DeclarationRow{"-v\r\n", {"v"}, {}, "\t-v\n\t\t\r\n"},
        DeclarationRow{"-v end of text", {"v"}, {}, "\t-v\n\t\t end of text\n"},
        DeclarationRow{"-\xE4 umlaut\n", {"\xE4"}, {}, "\t-\xE4\n\t\t umlaut\n"}));

TEST(ArgParserDescription, Of256CharactersIsKeptWhole) {
    ArgParser sut;
    const std::string description = " " + std::string(255, 'd');
    sut.SetArgumentInfo("-v" + description + "\n-w\n");
    EXPECT_EQ(sut.GetHelp(), builtInHelp + ("\t-v\n\t\t" + description) + "\n\t-w\n");
}

TEST(ArgParserDescription, Beyond256CharactersIsCutAndTheRestOfTheLineDeclaresNothing) {
    ArgParser sut;
    const std::string kept = " " + std::string(255, 'd');
    sut.SetArgumentInfo("-v" + kept + "e -x\n-w\n");
    EXPECT_EQ(sut.GetHelp(), builtInHelp + ("\t-v\n\t\t" + kept) + "\n\t-w\n");
    EXPECT_EQ(sut.ReadArgument("x"), "");
    EXPECT_EQ(sut.ReadArgument("w"), off);
}

TEST(ArgParserDeclaredInSeveralCalls, AddsEachCallToOptionsAndHelp) {
    ArgParser sut;
    sut.SetArgumentInfo("-v Talk\n");
    sut.SetArgumentInfo("--level=N Start\n");
    EXPECT_EQ(sut.ReadArgument("v"), off);
    EXPECT_EQ(sut.ReadArgument("level"), off);
    EXPECT_EQ(sut.GetHelp(), std::string(builtInHelp) + "\t-v\n\t\t Talk\n\t--level=N\n\t\t Start\n");
}

TEST(ArgParserDeclaredInSeveralCalls, TurnsAnOptionOffThatIsDeclaredAgain) {
    ArgParser sut;
    ASSERT_EQ(parse(sut, {"-h"}), "");
    sut.SetArgumentInfo("-h again\n");
    EXPECT_EQ(sut.ReadArgument("h"), off);
    EXPECT_EQ(sut.GetHelp(), std::string(builtInHelp) + "\t-h\n\t\t again\n");
}

struct ParseRow {
    std::vector<std::string> words;
    std::string error;
    std::vector<std::pair<const char*, const char*>> entries;
};

void PrintTo(const ParseRow& row, std::ostream* out) {
    *out << testing::PrintToString(row.words);
}

class ArgParserParse : public testing::TestWithParam<ParseRow> {};

TEST_P(ArgParserParse, StoresStatesAndListsOffenders) {
    const ParseRow& row = GetParam();
    ArgParser sut;
    sut.SetArgumentInfo("-v\n--level=N\n--ab\n--l=N\n");
    EXPECT_EQ(parse(sut, row.words), row.error);
    for (const auto& [name, state] : row.entries) {
        EXPECT_EQ(sut.ReadArgument(name), state) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, ArgParserParse,
    testing::Values(ParseRow{{}, "", {{"h", off}, {"help", off}, {"v", off}, {"level", off}, {"ab", off}}},
                    // groups of short options
                    ParseRow{{"-h"}, "", {{"h", on}, {"v", off}, {"help", off}}},
                    ParseRow{{"-hv"}, "", {{"h", on}, {"v", on}}}, ParseRow{{"-hh"}, "", {{"h", on}}},
                    ParseRow{{"-hx"}, " -x", {{"h", on}, {"x", ""}}}, ParseRow{{"-xh"}, " -x", {{"h", on}}},
                    ParseRow{{"-xyz"}, " -x -y -z", {}}, ParseRow{{"-h-"}, " --", {{"h", on}}},
                    ParseRow{{"-h=3"}, " -= -3", {{"h", on}}},
                    ParseRow{{"-help"}, " -e -p", {{"h", on}, {"l", on}, {"help", off}}},
                    // long options
                    ParseRow{{"--help"}, "", {{"help", on}, {"h", off}}}, ParseRow{{"--ab"}, "", {{"ab", on}}},
                    ParseRow{{"--level"}, "", {{"level", on}}}, ParseRow{{"--level=3"}, "", {{"level", "3"}}},
                    ParseRow{{"--level=a=b"}, "", {{"level", "a=b"}}}, ParseRow{{"--level=="}, "", {{"level", "="}}},
                    ParseRow{{"--level=two words"}, "", {{"level", "two words"}}},
                    ParseRow{{"--level=arg off"}, "", {{"level", off}}},
                    ParseRow{{"--level="}, " --level", {{"level", off}}}, ParseRow{{"--l="}, " --l", {{"l", off}}},
                    ParseRow{{"--l=3"}, "", {{"l", "3"}}}, ParseRow{{"--v=3"}, "", {{"v", "3"}}},
                    ParseRow{{"--lev"}, " --lev", {{"level", off}}}, ParseRow{{"--nope"}, " --nope", {}},
                    ParseRow{{"--nope=3"}, " --nope", {{"nope", ""}}}, ParseRow{{"--nope="}, " --nope", {}},
                    ParseRow{{"--=3"}, " --", {{"", ""}}}, ParseRow{{"--a-"}, " --a-", {}},
                    // other words
                    ParseRow{{"value"}, " value", {}}, ParseRow{{"h"}, " h", {{"h", off}}}, ParseRow{{"-"}, " -", {}},
                    ParseRow{{"--"}, " --", {}}, ParseRow{{"--a"}, " --a", {}}, ParseRow{{"--h"}, " --h", {{"h", off}}},
                    ParseRow{{"---"}, " ---", {}}, ParseRow{{"---ab"}, " ---ab", {{"ab", off}}},
                    ParseRow{{""}, " ", {}}, ParseRow{{"--level", "3"}, " 3", {{"level", on}}},
                    // several words: offenders in order, the later occurrence counts
                    ParseRow{{"-x", "one", "-h", "--nope", "--level="}, " -x one --nope --level", {{"h", on}}},
                    ParseRow{{"--level=3", "--level=4"}, "", {{"level", "4"}}},
                    ParseRow{{"--level=3", "--level"}, "", {{"level", on}}},
                    ParseRow{{"--level", "--level=3"}, "", {{"level", "3"}}},
                    ParseRow{{"--level=3", "--level="}, " --level", {{"level", "3"}}}));

TEST(ArgParserParseOfNothing, WithoutVectorDoesNothing) {
    ArgParser sut;
    EXPECT_EQ(sut.Parse(3, nullptr), "");
    EXPECT_EQ(sut.ReadArgument("h"), off);
}

TEST(ArgParserParseOfNothing, WithACountOfZeroDoesNotLookAtTheWords) {
    ArgParser sut;
    char name[] = "MOXLedExe";
    char option[] = "-h";
    char* argv[] = {name, option, nullptr};
    EXPECT_EQ(sut.Parse(0, argv), "");
    EXPECT_EQ(sut.ReadArgument("h"), off);
}

TEST(ArgParserParseOfNothing, DoesNotLookAtTheProgramsName) {
    ArgParser sut;
    char name[] = "-h";
    char* argv[] = {name, nullptr};
    EXPECT_EQ(sut.Parse(1, argv), "");
    EXPECT_EQ(sut.ReadArgument("h"), off);
}

TEST(ArgParserParsedTwice, KeepsTheStatesOfTheFirstTime) {
    ArgParser sut;
    parse(sut, {"-h"});
    EXPECT_EQ(parse(sut, {"--help"}), "");
    EXPECT_EQ(sut.ReadArgument("h"), on);
    EXPECT_EQ(sut.ReadArgument("help"), on);
}

TEST(ArgParserThroughItsInterface, ParsesAndIsDestroyed) {
    const std::unique_ptr<ArgParserBase> sut = std::make_unique<ArgParser>();
    sut->SetArgumentInfo("-v\n");
    EXPECT_EQ(parse(*sut, {"-v"}), "");
    EXPECT_EQ(sut->ReadArgument("v"), on);
}

} // namespace
} // namespace ps::hwapi::common
