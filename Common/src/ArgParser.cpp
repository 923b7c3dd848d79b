#include <mox/ArgParser.hpp>

#include <algorithm>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr const char* argOff = "arg off";
constexpr const char* argOn = "arg on";
constexpr const char* whiteSpace = " \t\n\v\f\r";
constexpr std::size_t descriptionLimit = 256;
} // namespace constant

bool isShortOption(std::string_view word) {
    return word.size() >= 2 && word[0] == '-' && word[1] != '-';
}

bool isLongOption(std::string_view word) {
    return word.size() >= 4 && word[0] == '-' && word[1] == '-' && word[2] != '-';
}

std::string_view longOptionName(std::string_view word) {
    const std::string_view option = word.substr(2);
    return option.substr(0, option.find('='));
}

/// @return the name that a word of an option declaration declares; empty if it declares nothing
std::string_view declaredName(std::string_view word) {
    if (isShortOption(word)) {
        return word.substr(1, 1);
    }
    return isLongOption(word) ? longOptionName(word) : std::string_view();
}

/// Takes the text up to a position off its front; a position behind the end takes all.
std::string_view takeFront(std::string_view& text, std::size_t end) {
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(front.size());
    return front;
}

std::string_view takeWord(std::string_view& text) {
    takeFront(text, text.find_first_not_of(constant::whiteSpace));
    return takeFront(text, text.find_first_of(constant::whiteSpace));
}

} // namespace

ArgParser::ArgParser() {
    ArgParser::SetArgumentInfo("-h\n--help Print usage information\n\n");
}

ArgParser::~ArgParser() = default;

void ArgParser::SetArgumentInfo(const std::string& info) {
    std::string_view text = info;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        const std::string_view name = declaredName(word);
        if (name.empty()) {
            continue;
        }
        m_arguments.insert_or_assign(std::string(name), constant::argOff);
        appendHelp(word, takeFront(text, text.find('\n')).substr(0, constant::descriptionLimit));
    }
}

std::string ArgParser::Parse(int argc, char** argv) {
    std::string error;
    if (argv == nullptr) {
        return error;
    }
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (isShortOption(word)) {
            parseGroup(word.substr(1), error);
        } else if (isLongOption(word)) {
            parseLongOption(word.substr(2), error);
        } else {
            error.append(" ").append(word);
        }
    }
    return error;
}

std::string ArgParser::ReadArgument(const std::string& name) {
    const auto entry = m_arguments.find(name);
    return entry == m_arguments.end() ? std::string() : entry->second;
}

std::string ArgParser::GetHelp() {
    return m_help;
}

void ArgParser::appendHelp(std::string_view word, std::string_view description) {
    m_help.append("\t").append(word);
    if (!description.empty()) {
        m_help.append("\n\t\t").append(description);
    }
    m_help.append("\n");
}

void ArgParser::parseGroup(std::string_view letters, std::string& error) {
    for (const char letter : letters) {
        const auto entry = m_arguments.find(std::string(1, letter));
        if (entry == m_arguments.end()) {
            error.append(" -").append(1, letter);
        } else {
            entry->second = constant::argOn;
        }
    }
}

void ArgParser::parseLongOption(std::string_view option, std::string& error) {
    const std::string_view name = option.substr(0, option.find('='));
    const auto entry = m_arguments.find(std::string(name));
    if (entry != m_arguments.end() && name.size() == option.size()) {
        entry->second = constant::argOn;
    } else if (entry != m_arguments.end() && name.size() + 1 < option.size()) {
        entry->second = option.substr(name.size() + 1);
    } else {
        error.append(" --").append(name);
    }
}

} // namespace ps::hwapi::common
