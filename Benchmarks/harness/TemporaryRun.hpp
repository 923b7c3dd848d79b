#pragma once
#include <string>

namespace mox::bench {

/// A fresh run of one node, joined by this process and, before that, by the processes it forks; removed with the
/// object.
class TemporaryRun {
public:
    TemporaryRun();
    ~TemporaryRun();
    TemporaryRun(const TemporaryRun&) = delete;
    TemporaryRun& operator=(const TemporaryRun&) = delete;

    /// Brings the platform up in the calling process.
    static void join();

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace mox::bench
