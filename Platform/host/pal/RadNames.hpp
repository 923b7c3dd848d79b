#pragma once
/// Names, defaults and domains of R&D parameters, as a run remembers them for tools. By node: each node's services may
/// be of another build.
#include <cstdint>
#include <map>
#include <string>

namespace mox::host {

class Store;

namespace rad {

struct ParameterName {
    std::uint32_t defaultValue = 0;
    std::string name;
};

struct Domain {
    std::string name;
    std::uint32_t room = 0;                            ///< number of indices
    std::map<std::uint32_t, ParameterName> parameters; ///< by parameter id
};

/// Writes what the store does not hold yet, in one transaction; without one when it holds everything.
/// @return false: the store is full
bool rememberDomain(Store& store, std::uint16_t node, std::uint32_t number, const Domain& domain);

/// All domains of a node by their number.
std::map<std::uint32_t, Domain> rememberedDomains(const Store& store, std::uint16_t node);

} // namespace rad
} // namespace mox::host
