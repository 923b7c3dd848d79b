#include "Sandbox.hpp"

#include "Run.hpp"
#include "SandboxPaths.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace mox::host {
namespace {

namespace fs = std::filesystem;

/// Collects the words of one bubblewrap command.
class Command {
public:
    explicit Command(std::string bubblewrap) { add({std::move(bubblewrap)}); }
    void add(std::initializer_list<std::string> more) { m_words.insert(m_words.end(), more); }
    void addAll(const std::vector<std::string>& more) { m_words.insert(m_words.end(), more.begin(), more.end()); }

    /// Shows what is in a directory of the workstation, entry by entry, so that others can be put beside them.
    void showEntries(const fs::path& directory, const std::vector<std::string>& except);
    void keep(const std::string& path, bool writable);

    std::vector<std::string> take() { return std::move(m_words); }

private:
    std::vector<std::string> m_words;
    std::vector<std::string> m_kept; ///< directories that are shown already, with what lies below them
};

void Command::showEntries(const fs::path& directory, const std::vector<std::string>& except) {
    std::error_code ignored; // what cannot be listed cannot be shown
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
        const std::string path = entry.path().string();
        if (std::find(except.begin(), except.end(), path) != except.end())
            continue;
        if (entry.is_symlink(ignored))
            add({"--symlink", fs::read_symlink(entry.path(), ignored).string(), path});
        else if (entry.is_directory(ignored))
            add({"--ro-bind-try", path, path});
    }
}

void Command::keep(const std::string& path, bool writable) {
    if (wouldUncover(path) || !fs::exists(path))
        return;
    add({writable ? "--bind" : "--ro-bind", path, path});
}

void showWorkstation(Command& command) {
    command.showEntries("/", {"/dev", "/proc", "/sys", "/run", "/var", "/opt", "/tmp", "/ffs", "/ram", "/rpram"});
    command.add({"--dev-bind", "/dev", "/dev", "--bind", "/proc", "/proc"});
    command.showEntries("/run", {sandboxRunPath});
    command.showEntries("/var", {"/var/tmp"});
    command.showEntries("/opt", {"/opt/mox"});
    // sysfs takes no new directories: the node's own goes over the workstation's
    if (fs::is_directory("/sys/devices/platform"))
        command.add({"--ro-bind", "/sys", "/sys"});
}

bool showNode(Command& command, const std::string& nodePath, std::string& why) {
    for (const PrivateDirectory& own : privateDirectories()) {
        const std::string storage = nodePath + "/fs/" + own.storage;
        std::error_code failure;
        fs::create_directories(storage, failure);
        if (failure) {
            why = storage + ": " + failure.message();
            return false;
        }
        command.add({"--bind", storage, own.inside});
    }
    return true;
}

std::vector<std::string> split(const char* paths) {
    std::istringstream stream(paths == nullptr ? "" : paths);
    std::vector<std::string> all;
    for (std::string path; std::getline(stream, path, ':');)
        if (!path.empty())
            all.push_back(path);
    return all;
}

/// A program needs what lies beside it too: scripts call each other, services read files next to them.
void keepProgram(Command& command, const std::string& program) {
    for (const std::string& name : {program, fs::canonical(program).string()}) {
        const std::string directory = fs::path(name).parent_path().string();
        if (isHidden(name))
            command.keep(wouldUncover(directory) ? name : directory, false);
    }
}

void keepWorkstationParts(Command& command, const std::vector<std::string>& program, const std::string& directory,
                          const SandboxOptions& options) {
    for (const std::string& word : program)
        if (word.front() == '/' && fs::exists(word)) {
            if (fs::is_directory(word))
                command.keep(word, false);
            else
                keepProgram(command, word);
        }
    for (const std::string& path : options.reachable)
        command.keep(absolutePath(path), false);
    for (const std::string& path : split(std::getenv("MOX_SANDBOX_READABLE")))
        command.keep(absolutePath(path), false);
    if (isHidden(directory))
        command.keep(directory, true);
    for (const std::string& path : split(std::getenv("MOX_SANDBOX_WRITABLE")))
        command.keep(absolutePath(path), true);
    for (const std::string& path : options.writable)
        command.keep(absolutePath(path), true);
}

/// The program's path, behind the emulator that it needs.
std::vector<std::string> programWords(const std::string& name, const std::string& bubblewrap, std::string& why) {
    const std::string program = findProgram(name);
    if (program.empty()) {
        why = name + ": no such program";
        return {};
    }
    std::vector<std::string> all;
    const char* emulator = std::getenv("MOX_EMULATOR");
    if (emulator != nullptr && isForeign(program, bubblewrap))
        all = words(emulator);
    all.push_back(program);
    return all;
}

void setEnvironment(Command& command, std::uint16_t node, const SandboxOptions& options) {
    command.add(
        {"--setenv", "MOX_RUN", sandboxRunPath, "--setenv", "MOX_NODE", hex4(node), "--setenv", "TMPDIR", "/tmp"});
    for (const auto& [name, value] : options.environment)
        command.add({"--setenv", name, value});
}

std::string workingDirectory() {
    std::error_code gone; // the directory may have been removed
    const fs::path current = fs::current_path(gone);
    return gone ? "/" : current.string();
}

} // namespace

std::vector<std::string> sandboxCommand(const std::string& runPath, std::uint16_t node,
                                        const std::vector<std::string>& argv, const SandboxOptions& options,
                                        std::string& why) {
    why.clear();
    const std::string bubblewrap = findProgram("bwrap");
    if (bubblewrap.empty())
        why = "bwrap (package bubblewrap) is not installed";
    else if (argv.empty())
        why = "no program given";
    const std::string run = absolutePath(runPath);
    const std::string nodePath = run + "/nodes/" + hex4(node);
    if (why.empty() && !fs::is_directory(nodePath))
        why = nodePath + ": no such node";
    if (!why.empty())
        return {};
    const std::vector<std::string> program = programWords(argv.front(), bubblewrap, why);
    if (program.empty())
        return {};

    Command command(bubblewrap);
    showWorkstation(command);
    if (!showNode(command, nodePath, why))
        return {};
    command.add({"--bind", run, sandboxRunPath});
    const std::string directory = workingDirectory();
    keepWorkstationParts(command, program, directory, options);
    setEnvironment(command, node, options);
    command.add({"--chdir", directory});
    if (options.dieWithParent)
        command.add({"--die-with-parent"});
    command.add({"--"});
    command.addAll(program);
    command.addAll({argv.begin() + 1, argv.end()});
    return command.take();
}

} // namespace mox::host
