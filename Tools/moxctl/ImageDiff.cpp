#include "CommandLine.hpp"
#include "Failure.hpp"
#include "ImageShow.hpp"
#include "LibraryLog.hpp"
#include "Numbers.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <memory>

namespace mox::tools {

namespace {

constexpr std::size_t blockSize = 1024 * 1024;

const Listing differenceListing{
    "moxctl.image-differences.1", "differences", {{"FIELD", "field"}, {"FIRST", "first"}, {"SECOND", "second"}}};

struct DiffOptions {
    std::string first;
    std::string second;
};

std::string readBlock(std::ifstream& stream, std::uint64_t most) {
    std::string block(static_cast<std::size_t>(std::min<std::uint64_t>(most, blockSize)), '\0');
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    block.resize(static_cast<std::size_t>(stream.gcount()));
    return block;
}

/// Where the payloads begin to differ; nothing when they are the same. A shorter one differs at its end.
std::optional<std::uint64_t> firstDifference(const Image& first, const Image& second) {
    std::ifstream one(first.file, std::ios::binary);
    std::ifstream other(second.file, std::ios::binary);
    std::uint64_t at = 0;
    while (at < first.offset && at < second.offset) {
        const std::string left = readBlock(one, first.offset - at);
        const std::string right = readBlock(other, second.offset - at);
        const auto common = std::min(left.size(), right.size());
        const auto different =
            std::mismatch(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(common), right.begin());
        at += static_cast<std::uint64_t>(different.first - left.begin());
        if (static_cast<std::size_t>(different.first - left.begin()) < common || common == 0) {
            return at;
        }
    }
    return first.offset == second.offset ? std::nullopt : std::optional(at);
}

/// Fields that differ, the payload among them.
Json differencesOf(const Image& first, const Image& second, const std::optional<std::uint64_t>& payload) {
    Json all = Json::array();
    const Json left = rowsOf(first);
    const Json right = rowsOf(second);
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (left[i].at("value") != right[i].at("value")) {
            all.push_back({{"member", left[i].at("member")},
                           {"field", left[i].at("field")},
                           {"first", left[i].at("value")},
                           {"second", right[i].at("value")}});
        }
    }
    if (all.empty() && first.text != second.text) {
        all.push_back({{"member", "text"}, {"field", "form of the XML"}, {"first", nullptr}, {"second", nullptr}});
    }
    if (payload) {
        const auto sizeText = [](const Image& image) { return std::to_string(image.offset) + " bytes"; };
        all.push_back({{"member", "payload"},
                       {"field", "payload from " + showHex(*payload, 8) + " on"},
                       {"first", sizeText(first)},
                       {"second", sizeText(second)}});
    }
    return all;
}

void showDifferences(Session& session, const DiffOptions& options) {
    const Output& output = session.output();
    const LibraryLog log(output);
    const Image first = readImage(options.first);
    const Image second = readImage(options.second);
    const auto payload = firstDifference(first, second);
    const Json differences = differencesOf(first, second, payload);
    output.object({{"schema", differenceListing.schema},
                   {"equal", differences.empty()},
                   {"payloadEqual", !payload},
                   {"payloadDiffersFrom", payload ? Json(*payload) : Json()},
                   {"differences", differences},
                   {"first", jsonOf(first)},
                   {"second", jsonOf(second)}});
    if (!differences.empty() && !output.isJson()) {
        output.list(differenceListing, differences);
    }
    if (!differences.empty()) {
        throw Failure(ExitStatus::verificationFailed, options.first + " and " + options.second + " differ");
    }
    output.line("no difference");
}

} // namespace

void addImageDiffVerb(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App& verb = line.addVerb(group, "diff", "Compares two images; status 4 when they differ.",
                                  [options](Session& session) { showDifferences(session, *options); });
    addArgument(verb, "FILE", options->first, "Image").required();
    addArgument(verb, "FILE2", options->second, "The other image").required();
}

} // namespace mox::tools
