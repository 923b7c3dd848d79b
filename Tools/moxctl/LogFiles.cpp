#include "LogFiles.hpp"

#include "Failure.hpp"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace mox::tools {

namespace {

namespace fs = std::filesystem;

constexpr const char* ending = ".log";
constexpr const char* oldEnding = ".1.log";

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

/// One file, and how far it has been read.
class LogFiles::File {
public:
    explicit File(std::string path) : m_path(std::move(path)) {}
    ~File() { close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void takeLines(std::vector<std::string>& lines) {
        if (!m_begun) {
            m_begun = true;
            // What was renamed before this program came belongs to the same log.
            readWhole(m_path.substr(0, m_path.size() - std::strlen(ending)) + oldEnding, lines);
            open();
        }
        readMore(lines);
        if (wasReplaced()) {
            open();
            readMore(lines);
        }
    }

private:
    void close() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
        m_fd = -1;
    }

    void open() {
        close();
        m_fd = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    }

    bool wasReplaced() const {
        struct stat opened {};
        struct stat named {};
        return stat(m_path.c_str(), &named) == 0 && (m_fd < 0 || fstat(m_fd, &opened) != 0 ||
                                                     opened.st_ino != named.st_ino || opened.st_dev != named.st_dev);
    }

    void readMore(std::vector<std::string>& lines) {
        std::array<char, 65536> part{};
        ssize_t got = 0;
        while (m_fd >= 0 && (got = read(m_fd, part.data(), part.size())) > 0) {
            m_partial.append(part.data(), static_cast<std::size_t>(got));
            splitPartial(lines);
        }
    }

    void splitPartial(std::vector<std::string>& lines) {
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = m_partial.find('\n', begin)) != std::string::npos; begin = end + 1) {
            lines.push_back(m_partial.substr(begin, end - begin));
        }
        m_partial.erase(0, begin);
    }

    static void readWhole(const std::string& path, std::vector<std::string>& lines) {
        File old(path);
        old.open();
        old.readMore(lines);
    }

    std::string m_path;
    int m_fd = -1;
    bool m_begun = false;
    std::string m_partial; ///< the beginning of a line whose end is not written yet
};

LogFiles::LogFiles(std::string directory, std::string service)
    : m_directory(std::move(directory)),
      m_service(std::move(service)),
      m_changes(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    constexpr std::uint32_t changes = IN_MODIFY | IN_CREATE | IN_MOVED_TO;
    if (m_changes < 0 || inotify_add_watch(m_changes, m_directory.c_str(), changes) < 0) {
        throw Failure(ExitStatus::failed, m_directory + ": " + std::strerror(errno));
    }
}

LogFiles::~LogFiles() {
    close(m_changes);
}

std::vector<std::string> LogFiles::names() const {
    if (!m_service.empty()) {
        return {m_service + ending};
    }
    std::vector<std::string> names;
    std::error_code gone; // a run that is being removed has no logs
    for (const fs::directory_entry& entry : fs::directory_iterator(m_directory, gone)) {
        const std::string name = entry.path().filename().string();
        if (endsWith(name, ending) && !endsWith(name, oldEnding)) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> LogFiles::takeNew() {
    std::vector<std::string> lines;
    for (const std::string& name : names()) {
        std::unique_ptr<File>& file = m_files[name];
        if (!file) {
            file = std::make_unique<File>(m_directory + "/" + name);
        }
        file->takeLines(lines);
    }
    // A line begins with its time, in a form whose order is that of its characters.
    const auto timeOf = [](const std::string& line) { return std::string_view(line).substr(0, line.find(' ')); };
    std::stable_sort(lines.begin(), lines.end(),
                     [timeOf](const std::string& a, const std::string& b) { return timeOf(a) < timeOf(b); });
    return lines;
}

void LogFiles::clearChanges() const {
    std::array<char, 4096> events{};
    while (read(m_changes, events.data(), events.size()) > 0) {
    }
}

bool LogFiles::any() const {
    const auto all = names();
    return std::any_of(all.begin(), all.end(),
                       [this](const auto& name) { return fs::exists(m_directory + "/" + name); });
}

} // namespace mox::tools
