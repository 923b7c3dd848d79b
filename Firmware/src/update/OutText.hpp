#pragma once
/// Texts in buffers of callers: a null buffer or one without room is left alone.
#include <cstddef>
#include <cstring>

namespace ps::hwapi::common::update {

/// Fills a buffer with zero bytes.
inline void clearText(char* buffer, std::size_t size) {
    if (buffer != nullptr)
        std::memset(buffer, 0, size);
}

/// Copies a text, cut to the buffer and always terminated.
inline void copyText(char* buffer, std::size_t size, const char* text) {
    if (buffer == nullptr || size == 0)
        return;
    const std::size_t length = strnlen(text, size - 1);
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
}

} // namespace ps::hwapi::common::update
