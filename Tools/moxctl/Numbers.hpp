#pragma once
/// Numbers and addresses as people write them.
#include <cstdint>
#include <string>

namespace mox::tools {

/// Reads a decimal or 0x... hexadecimal number.
/// @param what  for the message: "message id"
/// @param most  greatest value that is taken
/// Throws Failure (usage).
std::uint64_t readNumber(const std::string& text, const char* what, std::uint64_t most);

/// Reads a message id or CPID: as readNumber, and hexadecimal also without 0x when it begins with 0 ("0601"), as
/// addresses are written. Throws Failure (usage).
std::uint16_t readId(const std::string& text, const char* what);

/// Reads a node id: hexadecimal with or without 0x, as everywhere in a run. Throws Failure (usage).
std::uint16_t readNodeId(const std::string& text);

/// Reads a hardware/software identifier: hexadecimal with or without 0x, as images list them. Throws Failure (usage).
std::uint32_t readHwSwId(const std::string& text);

/// "1011:0600".
std::string showAddress(std::uint32_t sicad);

/// "0x" and `digits` hexadecimal digits.
std::string showHex(std::uint64_t number, int digits);

/// Pairs of hexadecimal digits.
std::string hexOf(const void* bytes, std::size_t size);

/// The usual view of bytes: offset, 16 bytes in hexadecimal, printable characters; a line feed after each line.
std::string hexDump(const void* bytes, std::size_t size);

} // namespace mox::tools
