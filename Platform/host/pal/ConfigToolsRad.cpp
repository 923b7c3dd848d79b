#include "../run/Run.hpp"
#include "ConfigTools.hpp"
#include "RadNames.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace mox::host {
namespace {

std::string numbers(const std::vector<RadParameter>& parameters) {
    std::string text;
    for (const auto& parameter : parameters) {
        char number[16];
        std::snprintf(number, sizeof number, "0x%X", parameter.id);
        text += (text.empty() ? "" : ", ") + std::string(number);
    }
    return text;
}

RadRequest byNumber(const RadOfNode& rad, const std::string& text, std::uint64_t number) {
    auto parameter = number <= UINT32_MAX ? rad.get(static_cast<std::uint32_t>(number)) : std::nullopt;
    if (!parameter) {
        return {std::nullopt, text + ": expected a number with domain 1 to 1023 and index 0 to 4095", false};
    }
    return {std::move(parameter), "", false};
}

} // namespace

RadOfNode::RadOfNode(const Run& run, std::uint16_t node, std::unique_ptr<rad::Words> words)
    : m_run(run), m_node(node), m_words(std::move(words)) {}

std::unique_ptr<RadOfNode> RadOfNode::open(const Run& run, std::uint16_t node, std::string& why) {
    const int directory = ::open(run.nodePath(node).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) {
        why = "no node 0x" + hex4(node) + " in run " + run.path() + ": " + std::strerror(errno);
        return nullptr;
    }
    auto words = rad::Words::open(directory, why);
    ::close(directory);
    return words ? std::unique_ptr<RadOfNode>(new RadOfNode(run, node, std::move(words))) : nullptr;
}

std::vector<RadDomain> RadOfNode::domains() const {
    std::vector<RadDomain> result;
    for (const auto& [number, domain] : rad::rememberedDomains(m_run.store(), m_node)) {
        result.push_back({number, domain.name, domain.room});
    }
    return result;
}

std::vector<RadParameter> RadOfNode::list() const {
    std::vector<RadParameter> result;
    const auto domains = rad::rememberedDomains(m_run.store(), m_node);
    const auto addUnnamed = [&](std::uint32_t id) {
        const auto [value, state] = m_words->read(id);
        if (state == rad::State::set) {
            result.push_back({id, "", std::nullopt, value, state});
        }
    };
    m_words->forEachTouched([&](std::uint32_t id) {
        const auto domain = domains.find(id >> 16);
        if (domain == domains.end() || domain->second.parameters.count(id) == 0) {
            addUnnamed(id);
        }
    });
    for (const auto& [number, domain] : domains) {
        for (const auto& [id, parameter] : domain.parameters) {
            const auto [value, state] = m_words->read(id);
            result.push_back({id, parameter.name, parameter.defaultValue, value, state});
        }
    }
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return result;
}

std::optional<RadParameter> RadOfNode::get(std::uint32_t id) const {
    if (!rad::inRange(id)) {
        return std::nullopt;
    }
    const auto [value, state] = m_words->read(id);
    RadParameter result{id, "", std::nullopt, value, state};
    const auto domains = rad::rememberedDomains(m_run.store(), m_node);
    const auto domain = domains.find(id >> 16);
    if (domain == domains.end()) {
        return result;
    }
    const auto parameter = domain->second.parameters.find(id);
    if (parameter != domain->second.parameters.end()) {
        result.name = parameter->second.name;
        result.defaultValue = parameter->second.defaultValue;
    }
    return result;
}

std::vector<RadParameter> RadOfNode::find(std::string_view name) const {
    auto all = list();
    std::vector<RadParameter> result;
    std::copy_if(std::make_move_iterator(all.begin()), std::make_move_iterator(all.end()), std::back_inserter(result),
                 [name](const RadParameter& parameter) { return parameter.name == name; });
    return result;
}

bool RadOfNode::set(std::uint32_t id, std::uint32_t value) {
    return m_words->set(id, value);
}

bool RadOfNode::reset(std::uint32_t id) {
    const auto parameter = get(id);
    return parameter && m_words->reset(id, parameter->defaultValue.value_or(0));
}

RadRequest findRad(const RadOfNode& rad, const std::string& numberOrName) {
    if (const auto number = parseNumber(numberOrName)) {
        return byNumber(rad, numberOrName, *number);
    }
    auto found = rad.find(numberOrName);
    if (found.size() == 1) {
        return {std::move(found.front()), "", false};
    }
    if (found.empty()) {
        return {std::nullopt, "no R&D parameter has the name '" + numberOrName + "'", false};
    }
    return {std::nullopt,
            "'" + numberOrName + "' is the name of several R&D parameters, give a number: " + numbers(found), true};
}

} // namespace mox::host
