#pragma once
/// What every command has at hand: the global options, the run that they name, and where results go.
#include "Output.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace mox::host {
class Run;
}

namespace mox::tools {

/// The options that every level takes.
struct GlobalOptions {
    std::string run;  ///< directory; empty: MOX_RUN
    std::string node; ///< node id; empty: MOX_NODE, else the run's first node
    bool json = false;
    bool quiet = false;
    bool verbose = false;
};

/// First thread.
class Session {
public:
    explicit Session(const GlobalOptions& options);
    /// Ends what startPlatform() has started.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Output& output() const { return m_output; }

    /// A run that a command names beside the options. Before run().
    void useRun(const std::string& directory);

    /// Makes this process a part of the node: faults that are planned for the node's processes are its own, too. Before
    /// run(). Otherwise moxctl looks into the run from outside.
    void takePart() { m_takesPart = true; }

    /// The run, joined on the first call. Throws Failure: noRun, notFound (no such node), usage (no node id).
    const host::Run& run() const;

    /// The node that was named by option or environment; nothing: a command that can looks at all nodes.
    /// Throws Failure (usage).
    std::optional<std::uint16_t> namedNode() const;

    /// Joins the run and starts the platform: messages, tags and R&D values can be used. Throws Failure as run().
    void startPlatform();

private:
    GlobalOptions m_options;
    Output m_output;
    bool m_started = false;
    bool m_takesPart = false;
};

} // namespace mox::tools
