#include "Shell.hpp"

#include "../run/Environment.hpp"
#include "../run/Lifecycle.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/TurnThread.hpp"
#include "AaShell.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <new>
#include <system_error>

namespace mox::host {

namespace shell {

namespace {

constexpr std::size_t mostOutput = 64 * 1024;
constexpr std::size_t longestName = 63;
constexpr std::size_t headSize = 1 + sizeof(std::uint32_t);

struct Command {
    std::string help;
    TAaShellCommandCb callback = nullptr;
};

struct BuiltinCommand {
    std::string help;
    Builtin run;
};

/// Never destroyed: notices may come until the process ends.
struct State {
    std::mutex mutex; ///< guards all but the thread
    std::map<std::string, Command> commands;
    std::map<std::string, BuiltinCommand> builtins;
    bool offered = false;
    std::uint32_t lastToken = 0;
    std::map<std::uint32_t, std::optional<Answer>> asked; ///< by token
    std::condition_variable answered;
    TurnThread thread{"aashell"};
};

State& state() {
    static auto& instance = *new State;
    return instance;
}

std::string head(char kind, std::uint32_t token) {
    std::string body(1, kind);
    for (unsigned shift = 0; shift != 32; shift += 8)
        body += static_cast<char>(token >> shift & 0xFFU);
    return body;
}

std::uint32_t wordAt(std::string_view body, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = sizeof value; i != 0; --i)
        value = value << 8 | static_cast<unsigned char>(body[at + i - 1]);
    return value;
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t end = text.find('\0'); end != std::string_view::npos; end = text.find('\0')) {
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    return words;
}

Answer runCallback(TAaShellCommandCb callback, const std::vector<std::string>& words) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    std::vector<char> output(mostOutput, '\0');
    Answer answer;
    answer.status = callback(static_cast<int>(arguments.size()), arguments.data(), output.data(), output.size());
    output.back() = '\0';
    answer.text = output.data();
    return answer;
}

Answer listing() {
    const std::lock_guard<std::mutex> guard(state().mutex);
    Answer answer;
    if (state().offered)
        for (const auto& command : state().commands)
            answer.text += command.first + "  " + command.second.help + "\n";
    for (const auto& builtin : state().builtins)
        answer.text += builtin.first + "  " + builtin.second.help + "\n";
    answer.text += "@help  lists the commands of this process\n";
    return answer;
}

Answer run(const std::vector<std::string>& words) {
    TAaShellCommandCb callback = nullptr;
    Builtin builtin;
    bool known = false;
    {
        const std::lock_guard<std::mutex> guard(state().mutex);
        const auto command = state().commands.find(words.front());
        known = command != state().commands.end();
        if (known && state().offered)
            callback = command->second.callback;
        const auto common = state().builtins.find(words.front());
        if (common != state().builtins.end())
            builtin = common->second.run;
    }
    if (callback)
        return runCallback(callback, words);
    if (builtin)
        return builtin(words);
    if (words.front() == "@help")
        return listing();
    if (known)
        return {notOffered, "this process does not take commands yet\n"};
    return {unknownCommand, words.front() + ": no such command\n"};
}

void serve(ProcessAddress from, std::uint32_t token, const std::vector<std::string>& words) {
    const Answer answer = run(words);
    std::string body = head('A', token) + head('\0', static_cast<std::uint32_t>(answer.status)).substr(1);
    body += answer.text.substr(0, maxNoticeBody - body.size());
    tell(from, Topic::shellCommand, body);
}

void take(std::uint32_t token, std::string_view rest) {
    if (rest.size() < sizeof(std::uint32_t))
        return;
    const std::lock_guard<std::mutex> guard(state().mutex);
    const auto waiting = state().asked.find(token);
    if (waiting == state().asked.end())
        return;
    waiting->second = Answer{static_cast<std::int32_t>(wordAt(rest, 0)), std::string(rest.substr(4))};
    state().answered.notify_all();
}

void onShellNotice(ProcessAddress from, std::string_view body) {
    if (body.size() < headSize)
        return;
    const std::uint32_t token = wordAt(body, 1);
    if (body[0] == 'A') {
        take(token, body.substr(headSize));
        return;
    }
    const std::vector<std::string> words = wordsOf(body.substr(headSize));
    if (body[0] != 'Q' || words.empty())
        return;
    try {
        state().thread.post([from, token, words] { serve(from, token, words); });
    } catch (const std::system_error& failure) {
        logPlatform(4, "command %s cannot be run: %s", words.front().c_str(), failure.what());
    }
}

} // namespace

std::optional<Answer> ask(ProcessAddress process, const std::vector<std::string>& words, std::uint32_t timeoutMs) {
    listen();
    std::unique_lock<std::mutex> lock(state().mutex);
    const std::uint32_t token = ++state().lastToken;
    state().asked.emplace(token, std::nullopt);
    std::string body = head('Q', token);
    for (const std::string& word : words)
        body += word + '\0';
    lock.unlock();
    const bool told = body.size() <= maxNoticeBody && tell(process, Topic::shellCommand, body);
    lock.lock();
    // A person waits here, so the time is the real one.
    if (told)
        state().answered.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                  [token] { return state().asked[token].has_value(); });
    std::optional<Answer> answer = std::move(state().asked[token]);
    state().asked.erase(token);
    return answer;
}

void addBuiltin(const std::string& name, const std::string& help, Builtin builtin) {
    const std::lock_guard<std::mutex> guard(state().mutex);
    state().builtins[name] = {help, std::move(builtin)};
}

void onCommandThread(const std::function<void()>& function) {
    state().thread.run(function);
}

void listen() {
    onNotice(Topic::shellCommand, onShellNotice);
}

} // namespace shell

int AaShellAddCommand(const char* name, const char* help, TAaShellCommandCb callback) {
    if (!name || !help || !callback)
        return EAaShellRetVal_InvalidValue;
    const std::string word = name;
    const auto isBlank = [](unsigned char c) { return std::isspace(c) != 0; };
    if (word.empty() || word.size() > shell::longestName || std::any_of(word.begin(), word.end(), isBlank))
        return EAaShellRetVal_InvalidValue;
    try {
        const std::lock_guard<std::mutex> guard(shell::state().mutex);
        const bool added = shell::state().commands.emplace(word, shell::Command{help, callback}).second;
        return added ? EAaShellRetVal_NoError : EAaShellRetVal_AlreadyExists;
    } catch (const std::bad_alloc&) {
        return EAaShellRetVal_OutOfResources;
    }
}

int AaShellDeleteCommand(const char* name) {
    if (!name)
        return EAaShellRetVal_InvalidValue;
    const std::lock_guard<std::mutex> guard(shell::state().mutex);
    return shell::state().commands.erase(name) != 0 ? EAaShellRetVal_NoError : EAaShellRetVal_NotFound;
}

int AaShellApplicationStartup() {
    if (!environmentRuns())
        return EAaShellRetVal_NotStarted;
    shell::listen();
    const std::lock_guard<std::mutex> guard(shell::state().mutex);
    if (shell::state().offered)
        return EAaShellRetVal_NoError;
    shell::state().offered = true;
    atPlatformEnd([] {
        const std::lock_guard<std::mutex> ending(shell::state().mutex);
        shell::state().offered = false;
    });
    return EAaShellRetVal_NoError;
}

} // namespace mox::host
