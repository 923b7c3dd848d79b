#pragma once
/// Configuration as tools see it: public tags of a run, R&D values of any of its nodes. For a process that has joined
/// the run (Run::attach) and has started its part of the bus (startProcess) when it sets or watches tags.
///
///     listTags(store, "app.");                              // moxctl tag list app.
///     setTag("app.x", {ValueType::text, "on"});             // moxctl tag set app.x on
///     const auto rad = RadOfNode::open(run, 0x1011, why);
///     for (const auto& parameter : rad->list()) ...         // moxctl rad list
#include "Rad.hpp"
#include "TypedValue.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

class Run;
class Store;

struct PublicTag {
    std::string name;
    TypedValue value;
};

/// The public tags whose names begin with `prefix`, by name.
std::vector<PublicTag> listTags(const Store& store, std::string_view prefix);

std::optional<TypedValue> getTag(const Store& store, std::string_view name);

/// Publishes a tag as AaConfigTagPublicSet does: every observer of the run is told.
/// @return false: no name of a tag, value too long, or the store is full
bool setTag(const std::string& name, const TypedValue& value);

/// Removes a public tag. Nobody is told. @return false: there is none
bool removeTag(Store& store, std::string_view name);

/// One publication that a watch has seen.
struct TagPublication {
    std::string name;
    TypedValue value;
};

/// Reports publications from its construction to its destruction.
class TagWatch {
public:
    using Report = std::function<void(const TagPublication&)>;

    /// @param prefix  of the names; "" reports every publication of the run
    /// @param report  called on the notice thread, one call at a time, also for unchanged values
    TagWatch(std::string prefix, Report report);
    /// A report that runs has returned, or is the caller.
    ~TagWatch();
    TagWatch(const TagWatch&) = delete;
    TagWatch& operator=(const TagWatch&) = delete;
    /// False when the store is full: nothing will be reported.
    bool works() const { return m_works; }

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
    bool m_works;
};

/// One R&D parameter. What nobody named has no name; what nobody set has its default.
struct RadParameter {
    std::uint32_t id = 0;
    std::string name;
    std::optional<std::uint32_t> defaultValue;
    std::uint32_t value = 0;
    rad::State state = rad::State::unset;
};

struct RadDomain {
    std::uint32_t number = 0;
    std::string name;
    std::uint32_t room = 0; ///< number of indices
};

/// The R&D values of one node of the run. Any thread.
class RadOfNode {
public:
    /// @param[out] why  one line for a person when the result is null: no such node, or its words cannot be mapped
    static std::unique_ptr<RadOfNode> open(const Run& run, std::uint16_t node, std::string& why);

    std::vector<RadDomain> domains() const;
    /// What has a name or was set, by number.
    std::vector<RadParameter> list() const;
    /// Any parameter, also one that nobody named; nothing for an id out of range.
    std::optional<RadParameter> get(std::uint32_t id) const;
    /// All parameters with that name. A name may belong to several: the caller then asks for the number.
    std::vector<RadParameter> find(std::string_view name) const;
    /// All processes of the node read the new value at once. @return false: id out of range
    bool set(std::uint32_t id, std::uint32_t value);
    /// Gives the parameter its default again. @return false: id out of range
    bool reset(std::uint32_t id);

private:
    RadOfNode(const Run& run, std::uint16_t node, std::unique_ptr<rad::Words> words);
    const Run& m_run;
    std::uint16_t m_node;
    std::unique_ptr<rad::Words> m_words;
};

/// How a parameter was asked for.
struct RadRequest {
    std::optional<RadParameter> parameter;
    std::string why; ///< one line for a person when there is no parameter
    bool ambiguous = false;
};

/// Finds the parameter that a person means: a number, decimal or 0x..., or a name. A name that several parameters have
/// is refused with their numbers.
RadRequest findRad(const RadOfNode& rad, const std::string& numberOrName);

} // namespace mox::host
