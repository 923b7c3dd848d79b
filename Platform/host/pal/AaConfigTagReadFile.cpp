#include "../run/NoCancellation.hpp"
#include "../run/PlatformLog.hpp"
#include "AaConfig.hpp"
#include "AaConfigState.hpp"
#include "TagFile.hpp"
#include "Tags.hpp"
#include "Xml.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace mox::host {
namespace {

constexpr int warning = 3;
constexpr int debug = 1;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Reads at most one byte more than a tag file may have, so that a longer one is refused as such.
std::optional<std::string> contentOf(const char* fileName) {
    const NoCancellation whileItIsOpen;
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(fileName, "re"));
    if (!file) {
        // Most boards have no such file.
        logPlatform(errno == ENOENT ? debug : warning, "tag file %s: %s", fileName, std::strerror(errno));
        return std::nullopt;
    }
    std::string text(maxXmlSize + 1, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    if (std::ferror(file.get()) != 0) {
        logPlatform(warning, "tag file %s: cannot be read", fileName);
        return std::nullopt;
    }
    return text;
}

} // namespace

int AaConfigTagReadFile(const char* fileName) {
    if (fileName == nullptr) {
        return EAaConfigRetVal_InvalidValue;
    }
    if (!config::started()) {
        return EAaConfigRetVal_NotStarted;
    }
    const auto text = contentOf(fileName);
    if (!text) {
        return EAaConfigRetVal_FileError;
    }
    std::string why;
    const auto values = parseTagFile(*text, fileName, why);
    if (!values) {
        logPlatform(warning, "tag file %s", why.c_str());
        return EAaConfigRetVal_FileError;
    }
    for (const auto& [name, value] : *values) {
        tags::setOwn(name, value);
    }
    return EAaConfigRetVal_NoError;
}

} // namespace mox::host
