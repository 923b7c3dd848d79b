#pragma once
#include <mox/ArgParserBase.hpp>

#include <map>
#include <string>
#include <string_view>

namespace ps::hwapi::common {

/// Parses the options that a service declared in a small text, one option a line and its description behind it:
///
///     ArgParser parser;                                        // knows -h and --help already
///     parser.SetArgumentInfo("-v Talk more\n--level=N Start at level N\n");
///     const std::string error = parser.Parse(argc, argv);      // "" or " -x --unknown word"
///     parser.ReadArgument("v");                                // "arg off", "arg on"
///     parser.ReadArgument("level");                            // "arg off", "arg on" or the value
///
/// Options of one character stand behind one dash and may be grouped (`-xv`); longer ones stand behind two dashes and
/// may carry a value (`--level=3`). There are no values in a word of their own and no positional arguments. Of two
/// occurrences of an option the later one counts.
/// One thread at a time.
class ArgParser : public ArgParserBase {
public:
    /// Declares -h and --help.
    ArgParser();
    ~ArgParser() override;

    /// Declares options; each call adds to the options and to the usage text.
    /// A word names an option if it is a dash and a character (what follows them in the word does not count), or two
    /// dashes and at least two characters, of which those before the first '=' are the name. The rest of its line is
    /// its description, blanks included; 256 characters of it are kept. Other words declare nothing and are passed
    /// over. An option that is declared again is "arg off" again.
    void SetArgumentInfo(const std::string& info) override;

    /// Reads the words from index 1 on and notes "arg on" or the value for each declared option.
    /// @param argc  number of words; 0 does nothing
    /// @param argv  words; null does nothing
    /// @return empty, or one blank and the offender for each: a character of a group that is not declared (" -x"), a
    ///         long option that is not declared or has a '=' without value (" --name"), any other word (" word")
    std::string Parse(int argc, char** argv) override;

    /// @return "arg off" (declared, not given), "arg on" (given without value) or the value; empty if never declared
    std::string ReadArgument(const std::string& name) override;

    /// @return a tab, the option as declared and a newline for each option; then, if it has a description, two tabs,
    ///         the description and a newline
    std::string GetHelp() override;

private:
    void appendHelp(std::string_view word, std::string_view description);
    void parseGroup(std::string_view letters, std::string& error);
    void parseLongOption(std::string_view option, std::string& error);

    std::map<std::string, std::string> m_arguments;
    std::string m_help;
};

} // namespace ps::hwapi::common
