#include "Mailboxes.hpp"

#include "../run/RunTable.hpp"

#include <cstddef>

namespace mox::host::mailbox {

namespace {

constexpr RunTable subscriptions{Table::subscribers};
constexpr RunTable mailboxes{Table::mailboxes};

constexpr std::size_t subscriptionKeySize = 8;
constexpr std::size_t subscriptionValueSize = 7;
constexpr std::size_t mailboxKeySize = 6;
constexpr std::size_t mailboxHeadSize = 8;

void appendBig(std::string& out, std::uint32_t value, unsigned bytes) {
    for (unsigned shift = bytes * 8; shift != 0; shift -= 8)
        out += static_cast<char>(value >> (shift - 8) & 0xFFU);
}

void appendLittle(std::string& out, std::uint32_t value, unsigned bytes) {
    for (unsigned shift = 0; shift != bytes * 8; shift += 8)
        out += static_cast<char>(value >> shift & 0xFFU);
}

std::uint32_t big(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char c : bytes)
        value = value << 8 | static_cast<unsigned char>(c);
    return value;
}

std::uint32_t little(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i != 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[i - 1]);
    return value;
}

std::string keyOf(std::uint16_t messageId) {
    std::string key;
    appendBig(key, messageId, 2);
    return key;
}

std::string keyOf(const Subscription& subscription) {
    std::string key = keyOf(subscription.messageId);
    appendBig(key, subscription.receiver, 4);
    appendBig(key, subscription.publisher, 2);
    return key;
}

std::string keyOf(std::uint16_t messageId, std::uint32_t publisher) {
    std::string key = keyOf(messageId);
    appendBig(key, publisher, 4);
    return key;
}

void appendProcess(std::string& out, ProcessAddress process) {
    appendLittle(out, process.node, 2);
    appendLittle(out, process.pid, 4);
}

ProcessAddress processOf(std::string_view bytes) {
    return {static_cast<std::uint16_t>(little(bytes.substr(0, 2))), little(bytes.substr(2, 4))};
}

std::optional<Subscription> subscriptionOf(std::string_view key, std::string_view value) {
    if (key.size() != subscriptionKeySize || value.size() != subscriptionValueSize)
        return std::nullopt;
    Subscription subscription;
    subscription.messageId = static_cast<std::uint16_t>(big(key.substr(0, 2)));
    subscription.receiver = big(key.substr(2, 4));
    subscription.publisher = static_cast<std::uint16_t>(big(key.substr(6, 2)));
    subscription.modes = static_cast<std::uint8_t>(value[0]);
    subscription.process = processOf(value.substr(1));
    return subscription;
}

std::optional<Mailbox> mailboxOf(std::string_view key, std::string_view value) {
    if (key.size() != mailboxKeySize || value.size() < mailboxHeadSize)
        return std::nullopt;
    Mailbox mailbox;
    mailbox.messageId = static_cast<std::uint16_t>(big(key.substr(0, 2)));
    mailbox.publisher = big(key.substr(2, 4));
    mailbox.mode = static_cast<std::uint8_t>(value[0]);
    mailbox.process = processOf(value.substr(1));
    mailbox.hasTrailer = value[7] != 0;
    mailbox.body = value.substr(mailboxHeadSize);
    return mailbox;
}

template <class Entry, class Read>
std::vector<Entry> entriesOf(const RunTable& table, std::string_view prefix, Read read) {
    std::vector<Entry> found;
    for (const auto& entry : table.entries(prefix))
        if (auto one = read(entry.first, entry.second))
            found.push_back(std::move(*one));
    return found;
}

} // namespace

bool reaches(const Reach& reach, const Subscription& subscription) {
    if ((subscription.modes & reach.mode) == 0)
        return false;
    if (subscription.publisher != 0 && subscription.publisher != reach.node)
        return false;
    const auto node = static_cast<std::uint16_t>(subscription.receiver >> 16);
    switch (reach.mode) {
    case EAaSysMbPublMode_Process:
        return subscription.process == reach.process;
    case EAaSysMbPublMode_Node:
        return node == reach.node;
    case EAaSysMbPublMode_Board:
        return node >> 8 == reach.node >> 8;
    default:
        return true;
    }
}

void put(const Subscription& subscription) {
    std::string value(1, static_cast<char>(subscription.modes));
    appendProcess(value, subscription.process);
    subscriptions.put(keyOf(subscription), value);
}

bool erase(const Subscription& subscription) {
    return subscriptions.erase(keyOf(subscription));
}

std::vector<Subscription> subscriptionsTo(std::uint16_t messageId) {
    return entriesOf<Subscription>(subscriptions, keyOf(messageId), subscriptionOf);
}

std::vector<Subscription> allSubscriptions() {
    return entriesOf<Subscription>(subscriptions, {}, subscriptionOf);
}

void put(const Mailbox& mailbox) {
    std::string value(1, static_cast<char>(mailbox.mode));
    appendProcess(value, mailbox.process);
    value += mailbox.hasTrailer ? '\1' : '\0';
    value += mailbox.body;
    mailboxes.put(keyOf(mailbox.messageId, mailbox.publisher), value);
}

bool erase(const Mailbox& mailbox) {
    return mailboxes.erase(keyOf(mailbox.messageId, mailbox.publisher));
}

std::optional<Mailbox> find(std::uint16_t messageId, std::uint32_t publisher) {
    const std::string key = keyOf(messageId, publisher);
    const auto value = mailboxes.get(key);
    return value ? mailboxOf(key, *value) : std::nullopt;
}

std::vector<Mailbox> mailboxesOf(std::uint16_t messageId) {
    return entriesOf<Mailbox>(mailboxes, keyOf(messageId), mailboxOf);
}

std::vector<Mailbox> allMailboxes() {
    return entriesOf<Mailbox>(mailboxes, {}, mailboxOf);
}

} // namespace mox::host::mailbox
