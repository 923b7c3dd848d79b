#pragma once
/// The functions of the platform that can be faulted, by name: all of the family lists and the print functions of the
/// log.
#include "Result.hpp"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host::faults {

struct Function {
    std::string_view name;
    ResultShape result;
    std::string_view resultType; ///< as the family lists spell it
    bool handsOut = false;       ///< memory or handles: such an answer must not be given twice
    bool canGarble = false;      ///< has outputs that can be overwritten
    bool hasOutputs = false;     ///< that can be repeated
};

/// By name.
const std::map<std::string_view, Function>& functions();

/// @return null: the platform has no such function
const Function* findFunction(std::string_view name);

/// Names like the given one, nearest first. @param most  how many
std::vector<std::string> functionsLike(const std::string& name, std::size_t most);

/// How many letters must be added, dropped or changed to make one text of the other.
std::size_t editDistance(std::string_view a, std::string_view b);

/// Whether a function tells something, by an output or by a result that is more than success or failure.
bool isReading(const Function& function);

/// Whether a result means that the call was carried out. @param bits  see ResultShape
bool isSuccess(const Function& function, std::uint64_t bits);

/// Reads what a call is to answer: a number, an enumerator of the function's results, "null", "true" or "false".
/// @param[out] why  when there is no result: what was expected
std::optional<std::uint64_t> parseResult(const Function& function, const std::string& text, std::string& why);

/// "-5", "null", "true"; empty for a function without result.
std::string showResult(const Function& function, std::uint64_t bits);

/// The name of a result: "DDAL_IO_ERROR"; empty: it has none.
std::string_view nameOfResult(const Function& function, std::uint64_t bits);

} // namespace mox::host::faults
