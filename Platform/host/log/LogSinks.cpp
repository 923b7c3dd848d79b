#include "LogSinks.hpp"

#include "LogLine.hpp"

// The sinks' library stays inside this file: it is slow to compile, and nothing else needs it.
#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

namespace mox::host::log {

namespace {

constexpr std::size_t fileLimit = std::size_t{32} << 20;
constexpr std::size_t oldFiles = 1;
constexpr int nothing = 5;

struct LevelName {
    const char* name;
    int level;
};
constexpr LevelName levelNames[] = {
    {"off", nothing}, {"error", error}, {"warning", warning}, {"info", information}, {"debug", debug},
};

SinkSettings readSettings() {
    SinkSettings settings;
    if (const char* wanted = std::getenv("MOX_LOG")) {
        for (const LevelName& known : levelNames)
            if (std::strcmp(known.name, wanted) == 0)
                settings.terminalLevel = known.level;
    }
    if (const char* journal = std::getenv("MOX_LOG_JOURNAL"); journal && *journal != '\0')
        settings.journalSocket = std::strcmp(journal, "1") == 0 ? "/run/systemd/journal/socket" : journal;
    return settings;
}

LogLine banner(const LogLine& first) {
    LogLine line = first;
    line.level = information;
    line.feature = 0;
    line.text = "this process runs on the simulated board of the workstation platform";
    return line;
}

spdlog::details::log_msg record(std::string_view formatted) {
    return {spdlog::string_view_t(), spdlog::level::info, spdlog::string_view_t(formatted.data(), formatted.size())};
}

void write(spdlog::sinks::sink& sink, std::string_view formatted) {
    sink.log(record(formatted));
    sink.flush();
}

class Terminal {
public:
    Terminal() { m_sink.set_pattern("%v"); }
    void log(const LogLine& line, std::string_view formatted) {
        std::call_once(m_begun, [&] { write(m_sink, format(banner(line))); });
        write(m_sink, formatted);
    }

private:
    spdlog::sinks::stderr_sink_mt m_sink;
    std::once_flag m_begun;
};

Terminal& terminal() {
    static auto& instance = *new Terminal;
    return instance;
}

void closeOnExec(const spdlog::filename_t&, std::FILE* file) {
    fcntl(fileno(file), F_SETFD, FD_CLOEXEC);
}

class File {
public:
    void log(const std::string& directory, const LogLine& line, std::string_view formatted) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        try {
            open(directory, line);
            write(*m_sink, formatted);
            m_failed = false;
        } catch (const std::exception& failure) {
            giveUp(line, failure.what());
        }
    }

private:
    void open(const std::string& directory, const LogLine& line) {
        std::string path = directory + "/" + std::string(line.process) + ".log";
        if (m_sink && path == m_path)
            return;
        m_sink.reset();
        spdlog::file_event_handlers events;
        events.after_open = closeOnExec;
        m_sink = std::make_unique<spdlog::sinks::rotating_file_sink_mt>(path, fileLimit, oldFiles, false, events);
        m_sink->set_pattern("%v");
        m_path = std::move(path);
        write(*m_sink, format(banner(line)));
    }

    void giveUp(const LogLine& line, const char* why) {
        m_sink.reset();
        if (m_failed)
            return;
        m_failed = true;
        LogLine complaint = line;
        complaint.level = error;
        complaint.feature = 0;
        complaint.text = why;
        toTerminal(complaint, format(complaint));
    }

    std::mutex m_mutex;
    std::unique_ptr<spdlog::sinks::rotating_file_sink_mt> m_sink;
    std::string m_path;
    bool m_failed = false;
};

File& file() {
    static auto& instance = *new File;
    return instance;
}

/// The journal's datagrams: one field a line; the text has no line feed left.
std::string journalRecord(const LogLine& line) {
    constexpr int priorities[] = {7, 7, 6, 4, 3};
    std::string text;
    appendVisible(text, line.text);
    char fields[96];
    std::snprintf(fields, sizeof fields, "PRIORITY=%d\nMOX_NODE=%04x\nMOX_FEATURE=%08x\n", priorities[line.level],
                  static_cast<unsigned>(line.node), line.feature);
    return fields + ("SYSLOG_IDENTIFIER=" + std::string(line.process)) + "\nMESSAGE=" + text + "\n";
}

class Journal {
public:
    explicit Journal(const std::string& path) : m_fd(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        m_address.sun_family = AF_UNIX;
        if (path.size() < sizeof m_address.sun_path)
            std::memcpy(m_address.sun_path, path.c_str(), path.size() + 1);
    }
    void log(const LogLine& line) {
        std::call_once(m_begun, [&] { send(journalRecord(banner(line))); });
        send(journalRecord(line));
    }

private:
    void send(const std::string& datagram) {
        sendto(m_fd, datagram.data(), datagram.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&m_address),
               sizeof m_address);
    }
    int m_fd;
    sockaddr_un m_address{};
    std::once_flag m_begun;
};

} // namespace

const SinkSettings& sinkSettings() {
    static const auto& settings = *new SinkSettings(readSettings());
    return settings;
}

void toTerminal(const LogLine& line, std::string_view formatted) {
    if (line.level < sinkSettings().terminalLevel)
        return;
    try {
        terminal().log(line, formatted);
    } catch (const std::exception&) {
        // A standard error that is gone leaves nobody to tell.
    }
}

void toFile(const std::string& directory, const LogLine& line, std::string_view formatted) {
    file().log(directory, line, formatted);
}

void toJournal(const LogLine& line) {
    if (sinkSettings().journalSocket.empty())
        return;
    static auto& journal = *new Journal(sinkSettings().journalSocket);
    journal.log(line);
}

} // namespace mox::host::log
