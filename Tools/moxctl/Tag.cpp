#include "CommandLine.hpp"
#include "Deadline.hpp"
#include "Failure.hpp"
#include "Interruption.hpp"
#include "Numbers.hpp"

#include <host/pal/ConfigTools.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>
#include <sys/eventfd.h>
#include <unistd.h>

#include <deque>
#include <memory>
#include <mutex>

namespace mox::tools {

namespace {

const Listing tagListing{"moxctl.tags.1", "tags", {{"NAME", "name"}, {"TYPE", "type"}, {"VALUE", "value"}}};

struct TagOptions {
    std::string prefix;
    std::string name;
    std::string value;
    std::string type;
    std::optional<double> seconds;
    unsigned count = 0;
};

Json valueOf(const host::TypedValue& value) {
    const auto number = host::widthOf(value.type) != 0 ? host::numberIn(value.bytes) : std::nullopt;
    return number ? Json(*number) : Json(host::showValue(value));
}

Json jsonOf(const std::string& name, const host::TypedValue& value) {
    return {{"name", name}, {"type", host::nameOf(value.type)}, {"value", valueOf(value)}};
}

void listTags(Session& session, const TagOptions& options) {
    Json items = Json::array();
    for (const host::PublicTag& tag : host::listTags(session.run().store(), options.prefix)) {
        items.push_back(jsonOf(tag.name, tag.value));
    }
    session.output().list(tagListing, items);
}

void getTag(Session& session, const TagOptions& options) {
    const auto value = host::getTag(session.run().store(), options.name);
    if (!value) {
        throw Failure(ExitStatus::notFound, "no public tag '" + options.name + "'");
    }
    session.output().object(jsonOf(options.name, *value));
    session.output().line(host::showValue(*value));
}

/// The type that was asked for; else the one that the tag has; else text.
host::ValueType typeFor(Session& session, const TagOptions& options) {
    if (!options.type.empty()) {
        return *host::valueTypeOf(options.type); // the option takes nothing else
    }
    const auto present = host::getTag(session.run().store(), options.name);
    return present ? present->type : host::ValueType::text;
}

void setTag(Session& session, const TagOptions& options) {
    session.startPlatform();
    const host::ValueType type = typeFor(session, options);
    const auto value = host::parseValue(type, options.value);
    if (!value) {
        throw Failure(ExitStatus::usage, "tag '" + options.name + "' of type " + host::nameOf(type) + ": expected " +
                                             host::expectedText(type) + ", got '" + options.value + "'");
    }
    if (options.name.empty() || options.name.size() > host::maxTagName) {
        throw Failure(ExitStatus::usage,
                      "tag name: expected 1 to 480 characters, got " + std::to_string(options.name.size()));
    }
    if (!host::setTag(options.name, *value)) {
        throw Failure(ExitStatus::failed, "tag '" + options.name + "' cannot be stored");
    }
    session.output().object(jsonOf(options.name, *value));
    session.output().detail(options.name + " = " + host::showValue(*value));
}

/// Publications on their way from the thread that hears of them to the one that prints.
class Publications {
public:
    Publications() : m_fd(eventfd(0, EFD_CLOEXEC)) {}
    ~Publications() { close(m_fd); }
    Publications(const Publications&) = delete;
    Publications& operator=(const Publications&) = delete;

    int fd() const { return m_fd; }

    void add(const host::TagPublication& publication) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.push_back(publication);
        eventfd_write(m_fd, 1);
    }

    std::deque<host::TagPublication> take() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        eventfd_t count = 0;
        eventfd_read(m_fd, &count);
        return std::exchange(m_waiting, {});
    }

private:
    int m_fd;
    std::mutex m_mutex;
    std::deque<host::TagPublication> m_waiting;
};

/// @return whether that was all that was asked for
bool printPublications(const Output& output, Publications& publications, const TagOptions& options, unsigned& seen) {
    for (const host::TagPublication& publication : publications.take()) {
        output.object(jsonOf(publication.name, publication.value));
        output.line(publication.name + " = " + host::showValue(publication.value));
        if (++seen == options.count) {
            return true;
        }
    }
    return false;
}

void watchTags(Session& session, const TagOptions& options) {
    session.startPlatform();
    Publications publications;
    const host::TagWatch watch(options.prefix, [&](const host::TagPublication& tag) { publications.add(tag); });
    if (!watch.works()) {
        throw Failure(ExitStatus::failed, "the run takes no more watches");
    }
    session.output().note("watching tags '" + options.prefix + "*'");
    const Deadline deadline(options.seconds);
    unsigned seen = 0;
    while (!deadline.passed()) {
        const bool some = interruption::wait(publications.fd(), deadline.leftMs(60'000));
        if (some && printPublications(session.output(), publications, options, seen)) {
            return;
        }
    }
    if (options.count != 0) {
        throw Failure(ExitStatus::timeLimit, "time limit reached after " + std::to_string(seen) + " of " +
                                                 std::to_string(options.count) + " publications");
    }
}

using Shared = std::shared_ptr<TagOptions>;

void addSet(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& set = line.addVerb(group, "set", "Publishes a tag; every observer is told.",
                                 [options](Session& session) { setTag(session, *options); });
    addArgument(set, "TAG", options->name, "Name").required();
    addArgument(set, "VALUE", options->value, "A number decimal or 0x..., bytes as pairs of hexadecimal digits")
        .required();
    set.add_option("--type", options->type, "bytes, text, u8, u16, u32 or u64 (default: as the tag is, else text)")
        ->type_name("TYPE")
        ->check(CLI::IsMember({"bytes", "text", "u8", "u16", "u32", "u64"}).description(""));
}

void addWatch(CommandLine& line, CLI::App& group, const Shared& options) {
    CLI::App& watch = line.addVerb(group, "watch", "Prints each publication as it happens, unchanged values too.",
                                   [options](Session& session) { watchTags(session, *options); });
    addArgument(watch, "PREFIX", options->prefix, "Beginning of the names (default: all)");
    takesNumber(*watch.add_option("--count", options->count, "End after so many"), 1, UINT32_MAX);
    takesSeconds(
        *watch.add_option("--timeout", options->seconds, "End after so long; status 124 when --count is not reached"));
}

} // namespace

void addTagVerbs(CommandLine& line) {
    const auto options = std::make_shared<TagOptions>();
    CLI::App& group = line.addGroup("tag", "Public configuration tags of the run");
    CLI::App& list = line.addVerb(group, "list", "Lists tags with type and value.",
                                  [options](Session& session) { listTags(session, *options); });
    addArgument(list, "PREFIX", options->prefix, "Beginning of the names (default: all)");
    CLI::App& get =
        line.addVerb(group, "get", "Prints a tag's value.", [options](Session& session) { getTag(session, *options); });
    addArgument(get, "TAG", options->name, "Name").required();
    addSet(line, group, options);
    addWatch(line, group, options);
}

} // namespace mox::tools
