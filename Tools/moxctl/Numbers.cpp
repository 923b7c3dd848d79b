#include "Numbers.hpp"

#include "Failure.hpp"

#include <host/pal/TypedValue.hpp>

#include <algorithm>
#include <cstdio>

namespace mox::tools {

std::uint64_t readNumber(const std::string& text, const char* what, std::uint64_t most) {
    const auto number = host::parseNumber(text);
    if (!number || *number > most) {
        throw Failure(ExitStatus::usage, std::string(what) + ": expected a decimal or 0x... hexadecimal number up to " +
                                             showHex(most, 1) + ", got '" + text + "'");
    }
    return *number;
}

std::uint16_t readId(const std::string& text, const char* what) {
    const bool beginsWithZero = text.size() > 1 && text[0] == '0' && text[1] != 'x' && text[1] != 'X';
    const auto number = host::parseNumber(beginsWithZero ? "0x" + text : text);
    if (!number || *number > 0xFFFF) {
        throw Failure(ExitStatus::usage, std::string(what) +
                                             ": expected a number up to 0xFFFF, decimal or hexadecimal as 0x601 or "
                                             "0601, got '" +
                                             text + "'");
    }
    return static_cast<std::uint16_t>(*number);
}

std::uint16_t readNodeId(const std::string& text) {
    const bool prefixed = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const auto number = host::parseNumber(prefixed ? text : "0x" + text);
    if (!number || *number == 0 || *number > 0xFFFF) {
        throw Failure(ExitStatus::usage, "node id: expected 1 to 4 hexadecimal digits, not 0, got '" + text + "'");
    }
    return static_cast<std::uint16_t>(*number);
}

std::uint32_t readHwSwId(const std::string& text) {
    const bool isPrefixed = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const auto number = host::parseNumber(isPrefixed ? text : "0x" + text);
    if (!number || *number > UINT32_MAX) {
        throw Failure(ExitStatus::usage, "hardware/software identifier: expected a hexadecimal number of 32 bits, with "
                                         "or without 0x, got '" +
                                             text + "'");
    }
    return static_cast<std::uint32_t>(*number);
}

std::string showAddress(std::uint32_t sicad) {
    char text[16];
    std::snprintf(text, sizeof text, "%04x:%04x", sicad >> 16U, sicad & 0xFFFFU);
    return text;
}

std::string showHex(std::uint64_t number, int digits) {
    char text[32];
    std::snprintf(text, sizeof text, "0x%0*llX", digits, static_cast<unsigned long long>(number));
    return text;
}

std::string hexOf(const void* bytes, std::size_t size) {
    static constexpr char digits[] = "0123456789abcdef";
    const auto* from = static_cast<const unsigned char*>(bytes);
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += digits[from[i] >> 4U];
        text += digits[from[i] & 15U];
    }
    return text;
}

std::string hexDump(const void* bytes, std::size_t size) {
    const auto* from = static_cast<const unsigned char*>(bytes);
    std::string text;
    for (std::size_t begin = 0; begin < size; begin += 16) {
        char cell[32];
        std::snprintf(cell, sizeof cell, "  %04zx ", begin);
        text += cell;
        std::string shown;
        for (std::size_t i = begin; i < begin + 16; ++i) {
            if (i >= size) {
                text += "   ";
                continue;
            }
            std::snprintf(cell, sizeof cell, " %02x", from[i]);
            text += cell;
            shown += from[i] >= 0x20 && from[i] < 0x7F ? static_cast<char>(from[i]) : '.';
        }
        text += "  " + shown + "\n";
    }
    return text;
}

} // namespace mox::tools
