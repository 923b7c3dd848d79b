#include "FirmwareCases.hpp"

#include <mox/Firmware.h>
#include <mox/ImageNumbers.hpp>
#include <mox/ImageTrailer.hpp>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pugixml.hpp>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace mox::bench {
namespace {

using namespace ps::hwapi::common;

constexpr int rounds = 3000;

template <typename Body>
Samples microseconds(const char* metric, int times, const Body& body) {
    for (int i = 0; i < times / 10; ++i) {
        body();
    }
    const std::uint64_t began = cpuNs();
    for (int i = 0; i < times; ++i) {
        body();
    }
    return {{metric, static_cast<double>(cpuNs() - began) / times / 1000}};
}

Samples libraryTrailer(const std::string& path, const char* metric) {
    return microseconds(metric, rounds, [&] {
        std::uint32_t offset = 0;
        char* text = nullptr;
        if (get_trailer(path.c_str(), &offset, &text) != IMAGE_OK) {
            die("no trailer");
        }
        std::free(text);
    });
}

/// The least that a reader of a trailer does.
Samples bareTrailer(const std::string& path) {
    return microseconds("trailer [us]", rounds, [&] {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const off_t end = lseek(file, -4, SEEK_END);
        std::uint32_t offset = 0;
        if (end < 0 || read(file, &offset, sizeof(offset)) != sizeof(offset)) {
            die("no word");
        }
        const auto length = static_cast<std::size_t>(end) + sizeof(offset) - offset;
        auto* const text = static_cast<char*>(std::malloc(length + 1));
        if (lseek(file, static_cast<off_t>(offset), SEEK_SET) < 0 ||
            read(file, text, length) != static_cast<ssize_t>(length)) {
            die("no text");
        }
        text[length] = '\0';
        close(file);
        keep(text[0]);
        std::free(text);
    });
}

/// The same by the C library's streams, which the library uses too.
Samples stdioTrailer(const std::string& path) {
    return microseconds("trailer [us]", rounds, [&] {
        std::FILE* const file = std::fopen(path.c_str(), "re");
        std::uint32_t offset = 0;
        if (std::fseek(file, -4, SEEK_END) != 0) {
            die("no end");
        }
        const auto end = static_cast<std::size_t>(std::ftell(file));
        if (std::fread(&offset, sizeof(offset), 1, file) != 1) {
            die("no word");
        }
        const std::size_t length = end + sizeof(offset) - offset;
        auto* const text = static_cast<char*>(std::malloc(length + 1));
        if (std::fseek(file, static_cast<long>(offset), SEEK_SET) != 0 || std::fread(text, 1, length, file) != length) {
            die("no text");
        }
        text[length] = '\0';
        std::fclose(file);
        keep(text[0]);
        std::free(text);
    });
}

Samples libraryParse() {
    const std::string text = trailerText(1, 4096);
    return microseconds("parse and match [us]", rounds, [&] {
        const image::ParsedTrailer parsed = image::parseTrailer(text);
        const image::TrailerFields fields = image::readFields(*parsed.trailer);
        const auto ids = image::readHwSwIds(*parsed.trailer);
        if (image::swVersionNumber(fields.swVersion) != 0x0102 ||
            image::findHwSwId(*ids, ownHwSwId).match != image::HwSwIdMatch::exact) {
            die("wrong values");
        }
    });
}

/// The same values by the parser itself.
Samples pugixmlParse() {
    const std::string text = trailerText(1, 4096);
    return microseconds("parse and match [us]", rounds, [&] {
        pugi::xml_document document;
        document.load_buffer(text.data(), text.size());
        const auto trailer = document.child("trailer");
        for (const char* const number : {"Version", "Crc32", "Length"}) {
            keep(std::strtoul(trailer.child_value(number), nullptr, 10));
        }
        for (const char* const name : {"TargetUnit", "SwId", "BuildTime"}) {
            keep(std::string(trailer.child_value(name)).size());
        }
        bool found = false;
        for (const auto& id : trailer.child("HwSwIdList").children("HwSwId")) {
            found = std::strtoul(id.child_value(), nullptr, 16) == ownHwSwId;
        }
        if (!found || std::strtoul(trailer.child_value("SwVersion"), nullptr, 16) != 0x0102) {
            die("wrong values");
        }
    });
}

/// The C library's own, past that of the workstation platform.
Samples lineWithoutDaemon() {
    void* const library = dlopen("libc.so.6", RTLD_NOW);
    const auto own = reinterpret_cast<void (*)(int, const char*, ...)>(dlsym(library, "syslog"));
    if (own == nullptr) {
        die("no syslog()");
    }
    setlogmask(LOG_UPTO(LOG_DEBUG));
    return microseconds("debug line [us]", rounds,
                        [&] { own(LOG_DEBUG, "%s(): Trailer length: %d, 0x%x", "get_trailer", 1000, 1000U); });
}

Samples maskedLine() {
    return microseconds("debug line [us]", 100 * rounds,
                        [] { syslog(LOG_DEBUG, "%s(): Trailer length: %d, 0x%x", "get_trailer", 1000, 1000U); });
}

Samples librarySearch(const std::string& directory) {
    char rows[10][FIND_BINARY_ROW_SIZE] = {};
    return microseconds("search of 10000 files [us]", 5, [&] {
        if (find_binary_multiple(directory.c_str(), "KOR", "TIRVO2-QE", rows, 10) != 2) {
            die("not two files");
        }
    });
}

Samples bareSearch(const std::string& directory) {
    return microseconds("search of 10000 files [us]", 5, [&] {
        DIR* const open = opendir(directory.c_str());
        int count = 0;
        while (const dirent* const entry = readdir(open)) {
            count += std::strstr(entry->d_name, "KOR-TIRVO2-QE") != nullptr ? 1 : 0;
        }
        closedir(open);
        if (count != 2) {
            die("not two files");
        }
    });
}

} // namespace

void addTrailerCases(Suite& suite, const ImageFiles& files) {
    suite.add(
        "libMOX: get_trailer", [&] { return libraryTrailer(files.small(), "trailer [us]"); }, 1);
    suite.add(
        "stdio: open, seek, read, close", [&] { return stdioTrailer(files.small()); }, 1);
    suite.add(
        "system calls: open, seek, read, close", [&] { return bareTrailer(files.small()); }, 1);
    suite.add("libMOX: parse and match", libraryParse, 1);
    suite.add("pugixml", pugixmlParse, 1);
    suite.add("libMOX: masked line", maskedLine, 1);
    suite.add("C library, no daemon", lineWithoutDaemon, 1);
    suite.add(
        "libMOX: find_binary_multiple", [&] { return librarySearch(files.many()); }, 1);
    suite.add(
        "readdir", [&] { return bareSearch(files.many()); }, 1);
    suite.goal("trailer [us]", "libMOX: get_trailer", Goal::atMost, 1.3, "stdio: open, seek, read, close");
    suite.goal("parse and match [us]", "libMOX: parse and match", Goal::atMost, 1.5, "pugixml");
    suite.goal("search of 10000 files [us]", "libMOX: find_binary_multiple", Goal::atMost, 2, "readdir");
}

} // namespace mox::bench
