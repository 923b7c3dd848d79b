#pragma once
/// The way of a message to its receiver.
#include "Message.hpp"

namespace mox::host {

/// Sends a message whose header is complete; takes it over in every case.
EAaSysComRetVal sendMessage(Message* message);

/// The node that stands for the own one in addresses of services that every node has.
constexpr std::uint16_t localNode = 0x0F01;

/// Next hop of messages to a node: the SIC address that relays them, 0 for none. Any thread.
void setHop(std::uint16_t node, std::uint32_t via);

} // namespace mox::host
