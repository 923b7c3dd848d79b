#include "RadAccess.hpp"

#include "Failure.hpp"

namespace mox::tools {

std::unique_ptr<host::RadOfNode> openRad(const host::Run& run, std::uint16_t node) {
    std::string why;
    auto rad = host::RadOfNode::open(run, node, why);
    if (!rad) {
        throw Failure(ExitStatus::failed, why);
    }
    return rad;
}

host::RadParameter findParameter(const host::RadOfNode& rad, const std::string& numberOrName) {
    host::RadRequest request = host::findRad(rad, numberOrName);
    if (!request.parameter) {
        const bool isWrong = request.ambiguous || host::parseNumber(numberOrName).has_value();
        throw Failure(isWrong ? ExitStatus::usage : ExitStatus::notFound,
                      request.why +
                          (isWrong ? "" : " ('moxctl rad list' shows them; services add theirs at their start)"));
    }
    return std::move(*request.parameter);
}

} // namespace mox::tools
