#pragma once
/// The run that this process belongs to: a directory that holds everything a simulated board remembers.
///
///     board.json                the description it was made from
///     store/                    one LMDB environment (public tags, mailboxes, device state, registrations)
///     faults                    planned faults, mapped by every process of the run
///     nodes/<nid>/<cpid>.sock   a registered endpoint; nid and cpid are four lower-case hexadecimal digits
///     nodes/<nid>/p<pid>.sock   a process of the node (see bus/Process.hpp)
///     nodes/<nid>/lock          held while an endpoint is registered
///     nodes/<nid>/rad           R&D values, mapped by every process of the node
///     nodes/<nid>/log/          a file a service, and what it printed (<name>.out)
///     sim.lock                  held while services of the run are started or stopped
///     nodes/<nid>/fs/           the node's own /ffs, /ram, /rpram, /tmp, ...
#include <cstdint>
#include <memory>
#include <string>

namespace mox::host {

class Store;

/// One run, as a process of one node sees it. Built by attach() on the first thread, lives until the process ends;
/// all members are const and may be called by any thread.
class Run {
public:
    /// Why a process is in no run.
    enum class Attach { done = 0, noVariable = 1, noDirectory = 2, noSuchNode = 3, storeFailed = 4 };

    /// Joins the run that the environment names: MOX_RUN (directory), MOX_NODE (node id in hexadecimal; the run's
    /// first node when absent). The second call answers as the first.
    /// @param[out] why  one line for a person; empty when the result is done
    static Attach attach(std::string& why);

    /// The run, or null while the process stands alone.
    static const Run* current();

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run();

    const std::string& path() const { return m_path; }
    std::uint16_t node() const { return m_node; }
    /// Open directory nodes/<nid>, for names that would be too long for a socket address.
    int nodeFd() const { return m_nodeFd; }
    /// Directory of any node of the run.
    std::string nodePath(std::uint16_t nid) const;
    std::string nodePath() const { return nodePath(m_node); }
    Store& store() const { return *m_store; }

private:
    Run(std::string path, std::uint16_t node, int nodeFd, std::unique_ptr<Store> store);

    std::string m_path;
    std::uint16_t m_node;
    int m_nodeFd;
    std::unique_ptr<Store> m_store;
};

/// Four lower-case hexadecimal digits, as node ids and CPIDs are written in a run.
std::string hex4(std::uint16_t value);

} // namespace mox::host
