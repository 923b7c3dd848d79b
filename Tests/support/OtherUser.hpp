#pragma once
/// For tests of the superuser that run a program as a user without privileges.
#include <cstdlib>
#include <string>
#include <vector>

namespace mox::testing {

/// The words that run a program as that user.
inline std::vector<std::string> asOtherUser(const std::vector<std::string>& program) {
    std::vector<std::string> words{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    words.insert(words.end(), program.begin(), program.end());
    return words;
}

/// Why that user cannot run a program of the tree; empty: nothing is in the way.
/// @param program  path without quotation marks
inline std::string whyNotAsOtherUser(const std::string& program) {
    std::string line;
    for (const std::string& word : asOtherUser({"/bin/sh", "-c"}))
        line += word + ' ';
    const auto works = [&line](const std::string& script) {
        return std::system((line + "'" + script + "' 2>/dev/null").c_str()) == 0;
    };
    if (!works("true"))
        return "there is no other user in this namespace";
    if (!works("cat \"" + program + "\" >/dev/null"))
        return "the tree lies where no other user may go";
    return {};
}

} // namespace mox::testing
