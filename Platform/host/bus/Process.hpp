#pragma once
/// What processes of a run tell each other beside messages: publications of tags and mailboxes, requests of tools.
/// Each process that has called startProcess() has a datagram socket nodes/<nid>/p<pid>.sock of its own.
#include <cstdint>
#include <functional>
#include <string_view>

namespace mox::host {

/// Who a process is. Written into the store beside whatever the process registers for.
struct ProcessAddress {
    std::uint16_t node = 0;
    std::uint32_t pid = 0;
    friend bool operator==(ProcessAddress a, ProcessAddress b) { return a.node == b.node && a.pid == b.pid; }
};

/// What a notice is about; the first word of the datagram. Values never change: different builds share a run.
enum class Topic : std::uint16_t {
    drain = 1,            ///< an endpoint of yours is full: read it (bus)
    tagPublished = 2,     ///< configuration tags
    radWritten = 3,       ///< R&D values
    mailboxPublished = 4, ///< mailboxes
    serviceChanged = 5,   ///< configuration services
    shellCommand = 6,     ///< a tool asks a shell command of yours
    endpointChanged = 7,  ///< an endpoint of the run appeared or went (bus)
    count = 16
};

/// Most bytes of a notice's body.
constexpr std::size_t maxNoticeBody = 128 * 1024;

/// This process; node 0 while it stands alone.
ProcessAddress ownProcess();

/// Tells a process (this one too) something. Notices from one thread to one process arrive in order.
/// @return false: the process is gone (the caller then forgets what it had registered), or stayed full for 2 s.
/// Any thread. Blocks only while the receiver is full.
bool tell(ProcessAddress to, Topic topic, std::string_view body);
/// As above. @param giveUpAt  how long to wait for a full receiver, by realMonotonicNs()
bool tell(ProcessAddress to, Topic topic, std::string_view body, std::uint64_t giveUpAt);

/// Sets who handles a topic; called on the platform's notice thread, one notice at a time. The handler of Topic::drain
/// is called on the reader thread and must not block. `body` is valid during the call. Set before startProcess(), or at
/// any time by any thread.
using NoticeHandler = std::function<void(ProcessAddress from, std::string_view body)>;
void onNotice(Topic topic, NoticeHandler handler);

/// Runs a function on the notice thread, after what was queued before. Any thread. Does not block.
void runOnNoticeThread(std::function<void()> function);

/// Opens the process's socket and starts the notice thread; AaStartupEeStartup calls it. Without a run only
/// runOnNoticeThread and notices to the own process work.
/// @return false: the socket cannot be opened, which is logged
bool startProcess();

} // namespace mox::host
