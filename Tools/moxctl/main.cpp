#include "CommandLine.hpp"
#include "Failure.hpp"
#include "Interruption.hpp"
#include "NodeProcess.hpp"

#include <algorithm>
#include <exception>
#include <iostream>
#include <string>

namespace {

using namespace mox::tools;

/// A command line that cannot be read has said what it wants nevertheless.
bool wantsJson(int argc, char** argv) {
    return std::find(argv, argv + argc, std::string("--json")) != argv + argc;
}

int fail(const Output& output, const Failure& failure) {
    output.failure(failure);
    return static_cast<int>(failure.status());
}

int fail(const Output& output, ExitStatus status, const std::string& text) {
    return fail(output, Failure(status, text));
}

/// Help and version end the parsing like failures.
int endParsing(CommandLine& line, const CLI::ParseError& ended, const Output& output) {
    if (ended.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        const int status = line.app().exit(ended);
        return std::cout.flush() ? status : fail(output, ExitStatus::failed, "standard output cannot be written");
    }
    const std::string level = line.reachedLevel();
    const bool isVerbMissing = dynamic_cast<const CLI::RequiredError*>(&ended) != nullptr;
    const std::string missing = isVerbMissing ? line.missingVerb() : "";
    return fail(output, ExitStatus::usage, (missing.empty() ? ended.what() : missing) + " (see '" + level + " -h')");
}

int runCommand(const CommandLine& line) {
    Session session(line.globals());
    try {
        interruption::begin();
        line.chosen()(session);
        return static_cast<int>(ExitStatus::done);
    } catch (const DoneElsewhere& done) {
        return done.status;
    } catch (const Failure& failure) {
        return fail(session.output(), failure);
    } catch (const std::exception& failure) {
        return fail(session.output(), ExitStatus::failed, failure.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    CommandLine line;
    addSimVerbs(line);
    addPsVerbs(line);
    addMsgVerbs(line);
    addTagVerbs(line);
    addRadVerbs(line);
    addLogVerbs(line);
    addImageVerbs(line);
    addFwVerbs(line);
    addIdVerbs(line);
    addDdalVerbs(line);
    addFlashVerbs(line);
    addCompletionVerbs(line);
    try {
        line.app().parse(argc, argv);
    } catch (const CLI::ParseError& ended) {
        return endParsing(line, ended, Output(wantsJson(argc, argv), false, false));
    }
    return runCommand(line);
}
