#include "Fw.hpp"

#include "CommandLine.hpp"
#include "FwComponent.hpp"

#include <memory>

namespace mox::tools {

namespace {

using Shared = std::shared_ptr<FwOptions>;

constexpr const char* componentText = "uboot, bmu or fpga";

void addComponent(CLI::App& verb, const Shared& options) {
    addArgument(verb, "COMPONENT", options->component, componentText).required();
}

void addDirectory(CLI::App& verb, const Shared& options) {
    options->directory = defaultImageDirectory;
    verb.add_option("--dir", options->directory,
                    std::string("Where images lie; the node's, if it has such a directory (default: ") +
                        defaultImageDirectory + ")")
        ->type_name(placeholder::directory);
}

void addCheck(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "check", "Asks the library whether an update is needed.",
                                  [options](Session& session) { checkFirmware(session, *options); });
    addComponent(verb, options);
    addDirectory(verb, options);
    verb.add_flag("--explain", options->explain, "Show each file and rule behind the answer");
    verb.add_flag("--force", options->force, "Ask as for a forced update, which only the boot loader knows");
}

void addUpdate(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "update", "Updates a component if that is needed.",
                                  [options](Session& session) { updateFirmware(session, *options); });
    addComponent(verb, options);
    addArgument(verb, "FILE", options->file, "Image to write whatever its version is (default: as 'check' finds it)");
    addDirectory(verb, options);
    verb.add_flag("--force", options->force, "Write an image also when that is not needed");
}

void addForce(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& verb = line.addVerb(group, "force", "Has the next updates made whatever the versions are.",
                                  [options](Session& session) { forceFirmware(session, *options); });
    addComponent(verb, options);
    addArgument(verb, "COUNT", options->count, "How many; 0: none").required();
}

} // namespace

void addFwVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("fw", "Firmware of a node: decide, update, markers, versions");
    addCheck(line, group, std::make_shared<FwOptions>());
    addUpdate(line, group, std::make_shared<FwOptions>());
    const auto options = std::make_shared<FwOptions>();
    CLI::App& disable = line.addVerb(group, "disable", "Switches updates off, by the marker file.",
                                     [options](Session& session) { disableFirmware(session, *options); });
    disable.add_option("--unit-type", options->unitType, "For units of this type only, such as KOR")
        ->type_name("UNITTYPE");
    line.addVerb(group, "enable", "Removes the marker files that switch updates off for the node.",
                 [options](Session& session) { enableFirmware(session, *options); });
    addForce(line, group, std::make_shared<FwOptions>());
    line.addVerb(group, "status", "Shows versions, flash areas, markers and temporary files.", showFirmware);
}

} // namespace mox::tools
