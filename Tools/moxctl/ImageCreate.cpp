#include "ImageCreate.hpp"

#include "Failure.hpp"
#include "ImageShow.hpp"
#include "Interruption.hpp"
#include "Numbers.hpp"
#include "OutputFile.hpp"
#include "Progress.hpp"

#include <mox/ImageNumbers.hpp>

#include <fcntl.h>
#include <host/ddal/VersionMarker.hpp>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace mox::tools {

namespace {

/// A board reads sizes of files as signed 32-bit numbers.
constexpr std::uint64_t largestImage = 0x7FFFFFFF;
constexpr std::size_t blockSize = 1024 * 1024;

[[noreturn]] void refuse(const std::string& what, const std::string& expected, const std::string& got) {
    throw Failure(ExitStatus::usage, what + ": expected " + expected + ", got '" + got + "'");
}

/// Boards take "0x" in lower case only for a hexadecimal version; "0X12" would be version 0.
void checkVersion(const std::string& version) {
    const bool isHex = version.rfind("0x", 0) == 0;
    const std::string digits = version.substr(isHex ? 2 : 0);
    const char* const allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
    const bool isNumber = !digits.empty() && digits.find_first_not_of(allowed) == std::string::npos;
    errno = 0;
    const unsigned long long number = isNumber ? std::strtoull(digits.c_str(), nullptr, isHex ? 16 : 10) : 0;
    if (!isNumber || errno == ERANGE || number > UINT32_MAX) {
        refuse("version", "a decimal or 0x... hexadecimal number (with a small x) of 32 bits", version);
    }
}

/// What XML keeps as it is: blanks at the ends would be lost on reading.
void checkText(const char* what, const std::string& text) {
    const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
    const bool hasBlankEnd = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (hasBlankEnd || !std::all_of(text.begin(), text.end(), isPrintable)) {
        refuse(what, "printable ASCII characters without blanks at the ends", text);
    }
}

std::vector<std::uint32_t> identifiersOf(const CreateOptions& options) {
    std::vector<std::uint32_t> all;
    for (const std::string& text : options.hwSwIds) {
        const std::uint32_t id = readHwSwId(text);
        if (std::find(all.begin(), all.end(), id) != all.end()) {
            refuse("--hwswid", "each identifier once", text);
        }
        all.push_back(id);
    }
    return all;
}

void checkOptions(const CreateOptions& options) {
    checkVersion(options.version);
    checkText("--target-unit", options.targetUnit);
    checkText("--sw-id", options.softwareId);
    checkText("--build-time", options.buildTime);
    identifiersOf(options);
}

/// The time of the build: what was given, what builders that want the same bytes each time set, or now.
std::string buildTimeOf(const CreateOptions& options) {
    if (!options.buildTime.empty()) {
        return options.buildTime;
    }
    const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
    const std::time_t time = epoch != nullptr ? std::strtol(epoch, nullptr, 10) : std::time(nullptr);
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

std::string escaped(const std::string& text) {
    std::string xml;
    for (const char c : text) {
        switch (c) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        default:
            xml += c;
        }
    }
    return xml;
}

std::string element(const char* name, const std::string& text) {
    return std::string("  <") + name + ">" + escaped(text) + "</" + name + ">\n";
}

/// Everything behind the payload.
std::string trailerOf(const CreateOptions& options, std::uint32_t length, std::uint32_t crc) {
    std::string text = "<?xml version=\"1.0\"?>\n<trailer>\n";
    text += element("Version", std::to_string(options.formatVersion));
    text += element("Crc32", showHex(crc, 8));
    text += element("Length", std::to_string(length));
    text += element("TargetUnit", options.targetUnit);
    text += element("SwId", options.softwareId);
    text += element("SwVersion", options.version);
    text += element("BuildTime", buildTimeOf(options));
    text += "  <HwSwIdList>\n";
    for (const std::uint32_t id : identifiersOf(options)) {
        text += "  " + element("HwSwId", showHex(id, 8));
    }
    text += "  </HwSwIdList>\n</trailer>\n";
    text += '\0'; // ends the text for whoever reads it as one: the offset word is no XML
    for (unsigned shift = 0; shift < 32; shift += 8) {
        text += static_cast<char>(length >> shift & 0xFFU);
    }
    return text;
}

/// The payload's file, open for reading.
class Payload {
public:
    explicit Payload(const std::string& path)
        : m_path(path), m_fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        if (m_fd < 0) {
            throw Failure(errno == ENOENT ? ExitStatus::notFound : ExitStatus::usage,
                          path + ": " + std::strerror(errno));
        }
        struct stat file {};
        if (fstat(m_fd, &file) != 0 || !S_ISREG(file.st_mode)) {
            close(m_fd);
            throw Failure(ExitStatus::usage, path + ": expected a regular file");
        }
        m_size = static_cast<std::uint64_t>(file.st_size);
    }
    ~Payload() { close(m_fd); }
    Payload(const Payload&) = delete;
    Payload& operator=(const Payload&) = delete;

    std::uint64_t size() const { return m_size; }

    /// @return bytes read; 0 at the end
    std::size_t read(std::string& block) const {
        const ssize_t got = ::read(m_fd, block.data(), block.size());
        if (got < 0) {
            throw Failure(ExitStatus::failed, m_path + ": " + std::strerror(errno));
        }
        return static_cast<std::size_t>(got);
    }

private:
    std::string m_path;
    int m_fd;
    std::uint64_t m_size = 0;
};

/// Payload bytes on their way into the image.
class Copied {
public:
    explicit Copied(OutputFile& file) : m_file(file) {}

    void add(const char* bytes, std::size_t size) {
        m_length += size;
        if (m_length > largestImage) {
            throw Failure(ExitStatus::usage, "payload: expected less than 2 GiB, which is what boards can read");
        }
        m_file.write(bytes, size);
        m_crc = crc32_z(m_crc, reinterpret_cast<const Bytef*>(bytes), size);
    }
    std::uint32_t length() const { return static_cast<std::uint32_t>(m_length); }
    std::uint32_t crc() const { return static_cast<std::uint32_t>(m_crc); }

private:
    OutputFile& m_file;
    std::uint64_t m_length = 0;
    uLong m_crc = crc32(0, nullptr, 0);
};

/// The number is written so that no reader takes a leading zero for octal.
std::string markOf(const std::string& version) {
    const bool isHex = version.rfind("0x", 0) == 0;
    const std::uint32_t number = ps::hwapi::common::image::swVersionNumber(version);
    return host::versionMarker + (isHex ? showHex(number, 1) : std::to_string(number));
}

void copyPayload(const Output& output, const CreateOptions& options, const Payload& payload, Copied& copied) {
    Progress progress(output, "writing " + options.image, payload.size());
    host::VersionMarker marker;
    std::string block(blockSize, '\0');
    while (const std::size_t got = payload.read(block)) {
        copied.add(block.data(), got);
        marker.take(std::string_view(block).substr(0, got));
        progress.show(copied.length());
        interruption::check();
    }
    if (copied.length() == 0) {
        throw Failure(ExitStatus::usage, options.payload + ": expected at least one byte");
    }
    if (options.mark && marker.version()) {
        throw Failure(ExitStatus::usage, options.payload + ": expected no '" + host::versionMarker +
                                             "' in a payload that gets one: the first one counts");
    }
    if (options.mark) {
        const std::string text = markOf(options.version);
        copied.add(text.data(), text.size());
    }
}

/// What a board would not read is no image, whatever this program meant to write.
void checkResult(const CreateOptions& options, const std::string& written) {
    const ImageVerdict verdict = verifyImage(written, std::nullopt);
    const bool isGood = verdict.problem == ImageProblem::none && verdict.notes.empty();
    if (!isGood || verdict.image->hwSwIds != identifiersOf(options)) {
        throw Failure(ExitStatus::failed, options.image + ": boards would not take what was written: " +
                                              (verdict.notes.empty() ? verdict.message : verdict.notes.front()));
    }
}

void remarkOnName(const Output& output, const std::string& image) {
    const std::string name = image.substr(image.rfind('/') + 1);
    if (name.find(".bin") != name.size() - 4 || name.size() < 4) {
        output.note("remark: boards find only images whose name ends in its first '.bin', unlike '" + name + "'");
    }
}

} // namespace

void createImage(const Output& output, const CreateOptions& options) {
    checkOptions(options);
    const Payload payload(options.payload);
    OutputFile file(options.image, options.force, {options.payload});
    Copied copied(file);
    copyPayload(output, options, payload, copied);
    const std::string trailer = trailerOf(options, copied.length(), copied.crc());
    if (copied.length() + trailer.size() > largestImage) {
        throw Failure(ExitStatus::usage, "payload: expected less than 2 GiB, which is what boards can read");
    }
    file.write(trailer.data(), trailer.size());
    checkResult(options, file.temporaryPath());
    file.commit();
    remarkOnName(output, options.image);
    output.object(jsonOf(readImage(options.image)));
    output.detail("wrote " + options.image + ": payload " + std::to_string(copied.length()) + " bytes, CRC-32 " +
                  showHex(copied.crc(), 8));
}

} // namespace mox::tools
