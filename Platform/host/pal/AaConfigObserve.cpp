#include "AaConfig.hpp"
#include "AaConfigState.hpp"
#include "TagObservers.hpp"
#include "Tags.hpp"

#include <optional>

namespace mox::host {
namespace {

std::optional<tags::Interest> interestOf(EAaConfigSvcRegScope scope) {
    switch (scope) {
    case EAaConfigSvcRegScope_Process:
        return tags::Interest::process;
    case EAaConfigSvcRegScope_Node:
        return tags::Interest::node;
    case EAaConfigSvcRegScope_System:
        return tags::Interest::system;
    }
    return std::nullopt;
}

int check(std::optional<tags::Interest> interest, const char* name, TAaConfigTagCb callback) {
    if (!interest || !tags::isName(name) || callback == nullptr) {
        return EAaConfigRetVal_InvalidValue;
    }
    return config::started() ? EAaConfigRetVal_NoError : EAaConfigRetVal_NotStarted;
}

tags::Registration registration(tags::Interest interest, const char* name, TAaConfigTagCb callback) {
    return {interest, name, reinterpret_cast<std::uintptr_t>(callback)};
}

void callBack(TAaConfigTagCb callback, const tags::Change& change) {
    const std::string name(change.name); // terminated
    callback(name.c_str(), change.value.bytes.data(), static_cast<unsigned int>(change.value.bytes.size()));
}

int observe(std::optional<tags::Interest> interest, const char* name, TAaConfigTagCb callback) {
    if (const int result = check(interest, name, callback)) {
        return result;
    }
    const auto done = tags::observe(registration(*interest, name, callback),
                                    [callback](const tags::Change& change) { callBack(callback, change); });
    return done == tags::Observed::storeFull ? EAaConfigRetVal_OutOfResources : EAaConfigRetVal_NoError;
}

int unobserve(std::optional<tags::Interest> interest, const char* name, TAaConfigTagCb callback) {
    if (const int result = check(interest, name, callback)) {
        return result;
    }
    const bool ended = tags::unobserve(registration(*interest, name, callback));
    return ended ? EAaConfigRetVal_NoError : EAaConfigRetVal_NotFound;
}

} // namespace

int AaConfigTagRegister(const char* tag, TAaConfigTagCb callback) {
    return observe(tags::Interest::tag, tag, callback);
}

int AaConfigTagUnregister(const char* tag, TAaConfigTagCb callback) {
    return unobserve(tags::Interest::tag, tag, callback);
}

int AaConfigSubscribeService(const char* service, EAaConfigSvcRegScope scope, TAaConfigTagCb callback) {
    return observe(interestOf(scope), service, callback);
}

int AaConfigUnSubscribeService(const char* service, EAaConfigSvcRegScope scope, TAaConfigTagCb callback) {
    return unobserve(interestOf(scope), service, callback);
}

} // namespace mox::host
