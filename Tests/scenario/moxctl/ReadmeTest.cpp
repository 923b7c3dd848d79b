#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;

/// A page whose commands a newcomer types one after the other.
struct Page {
    const char* path;
    std::vector<std::string> shows; ///< what they print
};

void PrintTo(const Page& page, std::ostream* stream) {
    *stream << page.path;
}

/// The commands of a page, which are indented by four blanks, with another directory in the place of /tmp. Those that
/// install and build are left out.
std::string commandsOf(const std::string& path, const std::string& directory) {
    std::ifstream page(path);
    std::string commands;
    bool isCode = false; // of a program
    for (std::string line; std::getline(page, line);) {
        isCode = isCode != (line.rfind("```", 0) == 0);
        if (!isCode && line.rfind("    ", 0) == 0 && line.rfind("    scripts/", 0) != 0) {
            commands += line + "\n";
        }
    }
    const std::string temporary = "/tmp/";
    for (std::size_t at = 0; (at = commands.find(temporary, at)) != std::string::npos; at += directory.size()) {
        commands.replace(at, temporary.size(), directory + "/");
    }
    return commands;
}

class CommandsOfAPage : public ::testing::TestWithParam<Page> {};

TEST_P(CommandsOfAPage, WorkAsTheyAreWrittenThere) {
    const TemporaryDirectory directory;
    const std::string commands = commandsOf(std::string(MOX_SOURCE) + "/" + GetParam().path, directory.path());
    ASSERT_THAT(commands, HasSubstr("moxctl sim up"));
    const std::string programs = std::filesystem::path(MOXCTL_PATH).parent_path().string();
    CommandSetting setting = settingFor({{"PATH", programs + ":/usr/bin:/bin"}});
    setting.limit = std::chrono::seconds(120); // for emulated processors, too
    const CommandResult result =
        runCommand({"bash", "-e", "-c", "trap 'moxctl --quiet sim down 2>/dev/null || :' EXIT\n" + commands}, setting);
    EXPECT_EQ(result.status, 0);
    for (const std::string& text : GetParam().shows) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
    EXPECT_FALSE(HasFailure()) << commands << result.out << result.err;
}

INSTANTIATE_TEST_SUITE_P(Moxctl, CommandsOfAPage,
                         ::testing::Values(Page{"README.md",
                                                {"hello", "echo of 5 bytes for", "fpga: update needed",
                                                 "0x0624 from 1011:0620", "fpga       11 "}},
                                           Page{"Services/Echo/README.md", {"hello", "0x0604 from 1011:0600"}},
                                           Page{"Services/Firm/README.md", {"0x0622 from 1011:0620"}}));

} // namespace
} // namespace mox::testing
