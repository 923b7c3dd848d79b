#include "FileCopy.hpp"

#include "OpenFile.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace mox::host {

namespace {

std::string reason(int error) {
    return std::strerror(error == 0 ? EIO : error);
}

/// @return 0 or an errno value
int copyContent(OpenFile& from, OpenFile& to) {
    std::vector<char> block(std::size_t{64} * 1024);
    for (;;) {
        const std::size_t got = from.read(block.data(), block.size());
        if (from.failed() || to.write({block.data(), got}) != got)
            return errno;
        if (got < block.size())
            return 0;
    }
}

} // namespace

std::string writeFile(const std::string& target, std::string_view content) {
    const auto file = OpenFile::open(target.c_str(), "w");
    if (!file)
        return reason(errno);
    if (file->write(content) != content.size())
        return reason(errno);
    const int error = file->close();
    return error == 0 ? std::string() : reason(error);
}

std::string copyFile(const std::string& source, const std::string& target, std::uint64_t maxBytes) {
    const auto from = OpenFile::open(source.c_str(), "r");
    if (!from)
        return reason(errno);
    if (maxBytes != 0 && from->size() > 0 && static_cast<std::uint64_t>(from->size()) > maxBytes)
        return "longer than " + std::to_string(maxBytes) + " bytes";
    const auto to = OpenFile::open(target.c_str(), "w");
    if (!to)
        return reason(errno);
    int error = copyContent(*from, *to);
    if (const int closing = to->close(); error == 0)
        error = closing;
    if (error == 0)
        return {};
    ::unlink(target.c_str());
    return reason(error);
}

} // namespace mox::host
