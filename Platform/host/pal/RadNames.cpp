#include "RadNames.hpp"

#include "../store/Keys.hpp"
#include "../store/Store.hpp"

#include <cstring>
#include <string_view>

namespace mox::host::rad {
namespace {

// Beside the parameters of a domain, the domain itself: an index that no parameter can have.
constexpr std::uint32_t domainIndex = 0xFFFF;

constexpr std::size_t nodeBytes = 2;
constexpr std::size_t idBytes = 4;

std::string keyOf(std::uint16_t node, std::uint32_t id) {
    std::string key;
    appendBigEndian(key, node, nodeBytes);
    appendBigEndian(key, id, idBytes);
    return key;
}

std::uint32_t idIn(std::string_view key) {
    return bigEndian(key.substr(nodeBytes, idBytes));
}

std::string record(std::uint32_t number, const std::string& name) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes + name;
}

std::map<std::string, std::string> recordsOf(std::uint16_t node, std::uint32_t number, const Domain& domain) {
    std::map<std::string, std::string> records;
    records.emplace(keyOf(node, number << 16 | domainIndex), record(domain.room, domain.name));
    for (const auto& [id, parameter] : domain.parameters) {
        records.emplace(keyOf(node, id), record(parameter.defaultValue, parameter.name));
    }
    return records;
}

} // namespace

bool rememberDomain(Store& store, std::uint16_t node, std::uint32_t number, const Domain& domain) {
    auto missing = recordsOf(node, number, domain);
    const auto prefix = keyOf(node, number << 16).substr(0, nodeBytes + 2);
    store.forEach(Table::radNames, prefix, [&](std::string_view key, std::string_view value) {
        const auto known = missing.find(std::string(key));
        if (known != missing.end() && known->second == value) {
            missing.erase(known);
        }
        return true;
    });
    if (missing.empty()) {
        return true;
    }
    Store::Write write(store);
    for (const auto& [key, value] : missing) {
        write.put(Table::radNames, key, value);
    }
    return write.commit();
}

std::map<std::uint32_t, Domain> rememberedDomains(const Store& store, std::uint16_t node) {
    std::map<std::uint32_t, Domain> domains;
    store.forEach(Table::radNames, keyOf(node, 0).substr(0, nodeBytes), [&](auto key, auto value) {
        std::uint32_t number = 0;
        if (key.size() != nodeBytes + idBytes || value.size() < sizeof number) {
            return true;
        }
        std::memcpy(&number, value.data(), sizeof number);
        const std::string name(value.substr(sizeof number));
        const std::uint32_t id = idIn(key);
        Domain& domain = domains[id >> 16];
        if ((id & 0xFFFF) == domainIndex) {
            domain.room = number;
            domain.name = name;
        } else {
            domain.parameters[id] = {number, name};
        }
        return true;
    });
    return domains;
}

} // namespace mox::host::rad
