#include "CommandLine.hpp"
#include "Failure.hpp"
#include "ImageCreate.hpp"
#include "ImageShow.hpp"
#include "LibraryLog.hpp"
#include "Numbers.hpp"
#include "OutputFile.hpp"
#include "Progress.hpp"

#include <mox/Firmware.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>

namespace mox::tools {

namespace {

const Listing fieldListing{"moxctl.image.1", "fields", {{"FIELD", "field"}, {"VALUE", "value"}}};
const Listing verdictListing{"moxctl.image-verdicts.1", "images", {}};

struct ImageOptions {
    std::string image;
    std::vector<std::string> images;
    std::string output;
    std::string hwSwId;
    bool trailer = false;
    bool force = false;
};

void showInfo(Session& session, const ImageOptions& options) {
    const LibraryLog log(session.output());
    const Image image = readImage(options.image);
    session.output().object(jsonOf(image));
    if (!session.output().isJson()) {
        session.output().list(fieldListing, rowsOf(image));
    }
}

/// A file that is none ends the command before anything is judged; a bad image does not, so that all are judged.
void verify(Session& session, const ImageOptions& options) {
    const Output& output = session.output();
    const LibraryLog log(output);
    const auto hwSwId = options.hwSwId.empty() ? std::nullopt : std::optional(readHwSwId(options.hwSwId));
    std::for_each(options.images.begin(), options.images.end(), sizeOfImage);
    Json items = Json::array();
    std::size_t bad = 0;
    for (const std::string& file : options.images) {
        Progress progress(output, "checking " + file, sizeOfImage(file));
        progress.show(0);
        const ImageVerdict verdict = verifyImage(file, hwSwId);
        bad += verdict.problem == ImageProblem::none ? 0 : 1;
        items.push_back(jsonOf(verdict));
        output.line(lineOf(verdict));
        for (const std::string& note : verdict.notes) {
            output.note(std::string(file).append(": note: ").append(note));
        }
    }
    if (output.isJson()) {
        output.list(verdictListing, items);
    }
    if (bad != 0) {
        throw Failure(ExitStatus::verificationFailed,
                      std::to_string(bad) + " of " + std::to_string(items.size()) + " images failed verification");
    }
}

void extractTrailer(Session& session, const ImageOptions& options) {
    const Image image = readImage(options.image);
    if (options.output.empty()) {
        session.output().raw(image.text);
        return;
    }
    OutputFile file(options.output, options.force, {options.image});
    file.write(image.text.data(), image.text.size());
    file.commit();
}

void extractPayload(Session& session, const ImageOptions& options) {
    if (options.output.empty()) {
        throw Failure(ExitStatus::usage, "expected the file OUT for the payload (see 'moxctl image extract -h')");
    }
    const Image image = readImage(options.image);
    OutputFile file(options.output, options.force, {options.image});
    Progress progress(session.output(), "writing " + options.output, image.offset);
    progress.show(0);
    const int result = binary_copy_without_trailer(options.image.c_str(), file.temporaryPath().c_str());
    if (result != 0) {
        throw Failure(ExitStatus::failed,
                      options.output + ": binary_copy_without_trailer() failed with " + std::to_string(result));
    }
    file.commit();
}

void extract(Session& session, const ImageOptions& options) {
    const LibraryLog log(session.output());
    if (options.trailer) {
        extractTrailer(session, options);
    } else {
        extractPayload(session, options);
    }
    if (!options.output.empty()) {
        session.output().object({{"image", options.image},
                                 {"file", options.output},
                                 {"part", options.trailer ? "trailer" : "payload"},
                                 {"size", std::filesystem::file_size(options.output)}});
    }
}

void addCreate(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<CreateOptions>();
    CLI::App& verb = line.addVerb(group, "create", "Builds an image: the payload, its trailer, the offset word.",
                                  [options](Session& session) {
                                      const LibraryLog log(session.output());
                                      createImage(session.output(), *options);
                                  });
    addArgument(verb, "PAYLOAD", options->payload, "File to be flashed; stays as it is").required();
    addArgument(verb, "OUT", options->image, "Image to write").required();
    verb.add_option("--version", options->version, "Software version: decimal, or hexadecimal with 0x")
        ->type_name("VERSION")
        ->required();
    verb.add_option("--hwswid", options->hwSwIds,
                    "Hardware/software identifier of a board that may take it, hexadecimal; may be repeated")
        ->type_name("HWSWID")
        ->required()
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    verb.add_option("--target-unit", options->targetUnit, "Unit that it is built for, for the reader")
        ->type_name("TEXT");
    verb.add_option("--sw-id", options->softwareId, "Software identifier, for the reader")->type_name("TEXT");
    verb.add_option("--build-time", options->buildTime, "Default: SOURCE_DATE_EPOCH, else now; UTC")->type_name("TEXT");
    takesNumber(*verb.add_option("--format-version", options->formatVersion, "Version of the trailer's form"), 0,
                UINT32_MAX)
        .capture_default_str();
    verb.add_flag("--mark", options->mark,
                  "Append MOX-SW-VERSION:VERSION to the payload: simulated devices that are reset run that version");
    verb.add_flag("--force", options->force, "Replace OUT when it exists");
}

void addExtract(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<ImageOptions>();
    CLI::App& verb = line.addVerb(group, "extract", "Writes the payload, as it is flashed, or the trailer to a file.",
                                  [options](Session& session) { extract(session, *options); });
    addArgument(verb, "FILE", options->image, "Image").required();
    addArgument(verb, "OUT", options->output, "File to write; without it a trailer goes to standard output");
    verb.add_flag("--trailer", options->trailer, "The trailer's XML in place of the payload");
    verb.add_flag("--force", options->force, "Replace OUT when it exists");
}

void addVerify(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<ImageOptions>();
    CLI::App& verb = line.addVerb(group, "verify", "Judges images as boards do; status 4 when one is bad.",
                                  [options](Session& session) { verify(session, *options); });
    verb.add_option("FILE", options->images, "Images")->type_name("")->required();
    verb.add_option("--hwswid", options->hwSwId, "Whether the board with this identifier takes them, hexadecimal")
        ->type_name("HWSWID");
}

} // namespace

void addImageVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("image", "Firmware images: build, judge, take apart, compare");
    addCreate(line, group);
    const auto options = std::make_shared<ImageOptions>();
    CLI::App& info = line.addVerb(group, "info", "Shows what an image says about itself.",
                                  [options](Session& session) { showInfo(session, *options); });
    addArgument(info, "FILE", options->image, "Image").required();
    addVerify(line, group);
    addExtract(line, group);
    addImageDiffVerb(line, group);
}

} // namespace mox::tools
