#pragma once
#include <string>

namespace ps::hwapi::common {

/// What a service needs of its command-line parser: declare options, parse, ask for one option, print the usage.
/// A service may bring an implementation of its own; ArgParser is the usual one.
class ArgParserBase {
public:
    virtual ~ArgParserBase() = default;

    /// Declares options and extends the usage text.
    /// @param info  one option a line, followed by its description
    virtual void SetArgumentInfo(const std::string& info) = 0;

    /// Reads the command line; the word at index 0 is the program's name.
    /// @return empty when every word was understood, else an error text that lists the others
    virtual std::string Parse(int argc, char** argv) = 0;

    /// @param name  an option without its dashes
    /// @return the option's state or value; empty for an option that was never declared
    virtual std::string ReadArgument(const std::string& name) = 0;

    /// @return the usage text of all declared options
    virtual std::string GetHelp() = 0;
};

} // namespace ps::hwapi::common
