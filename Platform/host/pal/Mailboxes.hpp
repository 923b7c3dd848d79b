#pragma once
/// How mailboxes and subscriptions stand in the run's store. Numbers in keys are big-endian, so that the entries of one
/// message id stand together; values are little-endian.
#include "../bus/Process.hpp"

#include <pal/AaSysMb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host::mailbox {

/// Who wants which publications.
struct Subscription {
    std::uint16_t messageId = 0;
    std::uint32_t receiver = 0;  ///< SIC address
    std::uint16_t publisher = 0; ///< node id; 0: any
    std::uint8_t modes = 0;
    ProcessAddress process; ///< that subscribed
};

/// A prepared mailbox, and what it keeps.
struct Mailbox {
    std::uint16_t messageId = 0;
    std::uint32_t publisher = 0; ///< SIC address
    std::uint8_t mode = 0;       ///< of the publication kept; 0: none yet
    ProcessAddress process;      ///< that prepared it
    bool hasTrailer = false;
    std::string body; ///< payload and, if there is one, the 8 bytes of the trailer
};

/// Where a publication comes from and how far it goes.
struct Reach {
    std::uint16_t node = 0;
    ProcessAddress process;
    unsigned int mode = 0;
};

/// Whether a publication is meant for a subscription.
bool reaches(const Reach& reach, const Subscription& subscription);

// Any thread; a change blocks while another process writes. Failures of the store throw std::exception.

void put(const Subscription& subscription);
bool erase(const Subscription& subscription);
std::vector<Subscription> subscriptionsTo(std::uint16_t messageId);
std::vector<Subscription> allSubscriptions();

void put(const Mailbox& mailbox);
bool erase(const Mailbox& mailbox);
std::optional<Mailbox> find(std::uint16_t messageId, std::uint32_t publisher);
std::vector<Mailbox> mailboxesOf(std::uint16_t messageId);
std::vector<Mailbox> allMailboxes();

} // namespace mox::host::mailbox
