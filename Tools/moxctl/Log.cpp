#include "CommandLine.hpp"
#include "Failure.hpp"
#include "Interruption.hpp"
#include "LogFiles.hpp"
#include "LogRecord.hpp"
#include "Numbers.hpp"
#include "RadAccess.hpp"
#include "RunView.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace mox::tools {

namespace {

struct LogOptions {
    std::string service;
    bool follow = false;
    std::size_t count = 20;
    std::string level = "debug";
    std::string feature;
};

/// Which lines are wanted.
struct LogFilter {
    int lowestLevel = 1;
    std::optional<std::uint32_t> feature;

    bool takes(const LogRecord& record) const {
        return record.level >= lowestLevel && (!feature || *feature == record.feature);
    }
};

LogFilter filterOf(const host::Run& run, const LogOptions& options) {
    LogFilter filter;
    filter.lowestLevel = levelOf(options.level);
    if (options.feature == "0") {
        filter.feature = 0; // the platform's own lines; it is no parameter
    } else if (!options.feature.empty()) {
        filter.feature = findParameter(*openRad(run, run.node()), options.feature).id;
    }
    return filter;
}

struct Line {
    std::string text;
    LogRecord record;
};

std::vector<Line> wantedLines(LogFiles& files, const LogFilter& filter) {
    std::vector<Line> wanted;
    for (std::string& text : files.takeNew()) {
        auto record = readLogLine(text);
        if (record && filter.takes(*record)) {
            wanted.push_back({std::move(text), std::move(*record)});
        }
    }
    return wanted;
}

Json jsonOf(const LogRecord& record) {
    return {{"time", record.time},
            {"level", levelName(record.level)},
            {"node", record.node},
            {"process", record.process},
            {"pid", record.pid},
            {"feature", showHex(record.feature, 1)},
            {"domain", record.domain == "-" ? "" : record.domain},
            {"text", plainText(record.text)}};
}

void print(const Output& output, const std::vector<Line>& lines) {
    for (const Line& line : lines) {
        output.object(jsonOf(line.record));
        output.line(line.text);
    }
}

void printAsList(const Output& output, const std::vector<Line>& lines) {
    Json items = Json::array();
    for (const Line& line : lines) {
        items.push_back(jsonOf(line.record));
        output.line(line.text);
    }
    output.object({{"schema", "moxctl.log.1"}, {"lines", items}});
}

/// A service that has not logged yet may be waited for; a name that nobody has is a mistake.
void checkService(const host::Run& run, const LogFiles& files, const std::string& service) {
    if (service.empty() || files.any()) {
        return;
    }
    for (const host::NodeDescription& node : nodesOf(run, run.node())) {
        for (const host::ServiceDescription& known : node.services) {
            if (known.name == service) {
                return;
            }
        }
    }
    throw Failure(ExitStatus::notFound, "no log of '" + service + "' on node " + host::hex4(run.node()));
}

void tail(Session& session, const LogOptions& options) {
    const host::Run& run = session.run();
    LogFiles files(run.nodePath() + "/log", options.service);
    checkService(run, files, options.service);
    const LogFilter filter = filterOf(run, options);
    std::vector<Line> lines = wantedLines(files, filter);
    if (lines.size() > options.count) {
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(options.count));
    }
    if (!options.follow) {
        printAsList(session.output(), lines);
        return;
    }
    for (;;) {
        print(session.output(), lines);
        interruption::wait(files.changeFd(), -1);
        files.clearChanges();
        lines = wantedLines(files, filter);
    }
}

} // namespace

void addLogVerbs(CommandLine& line) {
    const auto options = std::make_shared<LogOptions>();
    CLI::App& group = line.addGroup("log", "Logs of the services");
    CLI::App& verb = line.addVerb(group, "tail", "Prints the last lines of a node's log, by time.",
                                  [options](Session& session) { tail(session, *options); });
    addArgument(verb, "SERVICE", options->service, "Whose lines (default: all processes of the node)");
    verb.add_flag("-f,--follow", options->follow, "Go on with what is added, until interrupted");
    takesNumber(*verb.add_option("-n,--lines", options->count, "How many"), 0, UINT32_MAX).capture_default_str();
    verb.add_option("--level", options->level, "Lowest severity: debug, info, warning, error")
        ->type_name("LEVEL")
        ->check(CLI::IsMember({"debug", "info", "warning", "error"}).description(""));
    verb.add_option("--feature", options->feature, "Only lines of this R&D parameter (number or name; 0: the platform)")
        ->type_name(placeholder::parameter);
}

} // namespace mox::tools
