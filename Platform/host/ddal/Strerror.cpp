#include "host/ddal/Ddal.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace mox::host {

namespace {

struct ResultText {
    int code;
    const char* text;
};

constexpr ResultText resultTexts[] = {
    {DDAL_OK, "success"},
    {DDAL_NOT_FOUND, "not found"},
    {DDAL_IO_ERROR, "input/output error"},
    {DDAL_BAD_HANDLE, "bad handle"},
    {DDAL_NO_RESOURCE, "out of resources"},
    {DDAL_BUSY, "busy"},
    {DDAL_ALREADY_EXISTS, "already exists"},
    {DDAL_NO_DEVICE, "no such device"},
    {DDAL_INVALID_PARAMETER, "invalid parameter"},
    {DDAL_NO_SPACE, "no space"},
    {DDAL_NOT_SUPPORTED, "not supported"},
    {DDAL_TIMEOUT, "timed out"},
};

const char* textOf(int code) {
    const auto* const found = std::find_if(std::begin(resultTexts), std::end(resultTexts),
                                           [code](const ResultText& row) { return row.code == code; });
    return found == std::end(resultTexts) ? "unknown error" : found->text;
}

} // namespace

char* ddal_strerror(int code, char* text, size_t size) {
    if (text == nullptr || size == 0)
        return text;
    const char* const source = textOf(code);
    const size_t length = std::min(std::strlen(source), size - 1);
    std::memcpy(text, source, length);
    text[length] = '\0';
    return text;
}

} // namespace mox::host
