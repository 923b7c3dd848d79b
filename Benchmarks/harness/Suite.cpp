#include "Suite.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <sstream>

namespace mox::bench {

namespace {

constexpr std::uint64_t caseLimitNs = 60'000'000'000;

int repetitions() {
    const char* wanted = std::getenv("MOX_BENCH_REPETITIONS");
    return wanted != nullptr ? std::max(1, std::atoi(wanted)) : 7;
}

double medianOf(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Everything that a child writes until it closes the pipe or the time is up.
std::string readAll(int fd) {
    std::string text;
    const std::uint64_t end = nowNs() + caseLimitNs;
    std::array<char, 4096> buffer{};
    for (;;) {
        pollfd readable{fd, POLLIN, 0};
        const std::uint64_t now = nowNs();
        if (now >= end || poll(&readable, 1, static_cast<int>((end - now) / 1'000'000)) <= 0) {
            return text;
        }
        const ssize_t got = read(fd, buffer.data(), buffer.size());
        if (got <= 0) {
            return text;
        }
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

} // namespace

std::uint64_t nowNs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<std::uint64_t>(t.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(t.tv_nsec);
}

void pin(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int i = 0; i < CPU_SETSIZE; ++i) {
        if (cpu < 0 || i == cpu) {
            CPU_SET(static_cast<std::size_t>(i), &set);
        }
    }
    sched_setaffinity(0, sizeof(set), &set);
}

Samples percentiles(std::vector<double>& ns, const std::string& metric) {
    if (ns.empty()) {
        return {};
    }
    std::sort(ns.begin(), ns.end());
    const auto at = [&ns](std::size_t percent) { return ns[(ns.size() - 1) * percent / 100] / 1000; };
    return {{metric + " p50 [us]", at(50)}, {metric + " p99 [us]", at(99)}};
}

Samples operator+(Samples a, const Samples& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

void die(const char* what) {
    std::fprintf(stderr, "benchmark: %s: %s\n", what, std::strerror(errno));
    _exit(3);
}

pid_t spawn(const std::function<void()>& body) {
    const pid_t pid = fork();
    if (pid < 0) {
        die("fork");
    }
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        body();
        _exit(0);
    }
    return pid;
}

void reap(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
}

Suite::Suite(std::string title) : m_title(std::move(title)) {}

void Suite::add(const std::string& name, std::function<Samples()> body, int cpu) {
    const char* only = std::getenv("MOX_BENCH_CASE");
    if (only != nullptr && name != only) {
        return;
    }
    m_cases.push_back({name, std::move(body), cpu, {}});
}

void Suite::goal(const std::string& metric, const std::string& name, Goal direction, double limit,
                 const std::string& peer) {
    m_goals.push_back({metric, name, direction, limit, peer});
}

bool Suite::run() {
    const int count = repetitions();
    for (int i = 0; i < count; ++i) {
        for (Case& one : m_cases) {
            runOnce(one);
        }
    }
    std::printf("\n## %s (median of %d interleaved runs)\n", m_title.c_str(), count);
    printTable();
    const bool held = printGoals();
    std::fflush(stdout);
    return held;
}

void Suite::runInChild(const Case& one, int result) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0); // a case that takes too long is ended with all its helpers
    if (one.cpu >= 0) {
        pin(one.cpu);
    }
    std::ostringstream lines;
    for (const auto& [metric, value] : one.body()) {
        lines << value << ' ' << metric << '\n';
    }
    const std::string text = lines.str();
    if (write(result, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        die("result");
    }
}

void Suite::runOnce(Case& one) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        die("pipe");
    }
    std::fflush(nullptr);
    const pid_t child = spawn([&] {
        close(ends[0]);
        runInChild(one, ends[1]);
    });
    close(ends[1]);
    std::istringstream lines(readAll(ends[0]));
    close(ends[0]);
    kill(-child, SIGKILL);
    reap(child);
    double value = 0;
    std::string metric;
    bool any = false;
    while (lines >> value && std::getline(lines >> std::ws, metric)) {
        one.values[metric].push_back(value);
        if (std::find(m_metrics.begin(), m_metrics.end(), metric) == m_metrics.end()) {
            m_metrics.push_back(metric);
        }
        any = true;
    }
    if (!any) {
        std::fprintf(stderr, "benchmark: %s, %s: no result\n", m_title.c_str(), one.name.c_str());
    }
}

double Suite::median(const std::string& name, const std::string& metric) const {
    for (const Case& one : m_cases) {
        const auto values = one.values.find(metric);
        if (one.name == name && values != one.values.end()) {
            return medianOf(values->second);
        }
    }
    return 0;
}

void Suite::printTable() const {
    for (const std::string& metric : m_metrics) {
        for (const Case& one : m_cases) {
            const auto values = one.values.find(metric);
            if (values == one.values.end()) {
                continue;
            }
            const auto [least, most] = std::minmax_element(values->second.begin(), values->second.end());
            std::printf("%-28s %-34s %12.4g   (%.4g .. %.4g)\n", metric.c_str(), one.name.c_str(),
                        medianOf(values->second), *least, *most);
        }
    }
}

bool Suite::printGoals() const {
    bool all = true;
    for (const Limit& goal : m_goals) {
        const double own = median(goal.name, goal.metric);
        const double peer = goal.peer.empty() ? 1 : median(goal.peer, goal.metric);
        const double ratio = peer > 0 ? own / peer : 0;
        const bool measured = own > 0 && peer > 0;
        const bool held = measured && (goal.direction == Goal::atMost ? ratio <= goal.limit : ratio >= goal.limit);
        std::printf("goal: %s, %s: %s %g%s%s: %.3g %s\n", m_title.c_str(), goal.metric.c_str(),
                    goal.direction == Goal::atMost ? "at most" : "at least", goal.limit, goal.peer.empty() ? "" : " x ",
                    goal.peer.c_str(), ratio,
                    !measured ? "NOT MEASURED"
                    : held    ? "held"
                              : "MISSED");
        all = all && held;
    }
    return all;
}

} // namespace mox::bench
