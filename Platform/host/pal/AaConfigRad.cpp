#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "AaConfig.hpp"
#include "Rad.hpp"
#include "RadNames.hpp"

#include <mutex>

namespace mox::host {
namespace {

using rad::Domain;

/// The domains that this process has registered.
struct Domains {
    std::mutex mutex;
    std::map<std::uint32_t, Domain> byNumber;
};

Domains& domains() {
    static auto& all = *new Domains;
    return all;
}

// The domain whose initialiser runs on this thread: its parameters are written together when it returns.
thread_local std::uint32_t beingFilled = 0;

int remember(std::uint32_t number) {
    const Run* run = Run::current();
    if (run == nullptr || number == beingFilled) {
        return EAaConfigRetVal_NoError;
    }
    Domain copy;
    {
        const std::lock_guard lock(domains().mutex);
        copy = domains().byNumber[number];
    }
    const bool done = rad::rememberDomain(run->store(), run->node(), number, copy);
    return done ? EAaConfigRetVal_NoError : EAaConfigRetVal_OutOfResources;
}

void fill(std::uint32_t number, TAaConfigRadInitCb initialiser) {
    const std::uint32_t outer = beingFilled;
    beingFilled = number;
    if (initialiser != nullptr) {
        initialiser();
    }
    beingFilled = outer;
}

} // namespace

int AaConfigRadRegisterDomain(unsigned int domain, const char* name, TAaConfigRadInitCb initialiser) {
    if (domain == 0 || domain > 0xFFFF || name == nullptr) {
        return EAaConfigRetVal_InvalidValue;
    }
    if (rad::ownWords() == nullptr) {
        return EAaConfigRetVal_NotStarted;
    }
    if (domain >= rad::maxDomains) {
        return EAaConfigRetVal_OutOfResources;
    }
    {
        const std::lock_guard lock(domains().mutex);
        Domain& entry = domains().byNumber.try_emplace(domain, Domain{{}, rad::maxIndices, {}}).first->second;
        entry.name = name;
    }
    fill(domain, initialiser);
    return remember(domain);
}

int AaConfigRadSetMaxTagCount(unsigned int domain, unsigned int maxTagCount) {
    if (rad::ownWords() == nullptr) {
        return EAaConfigRetVal_NotStarted;
    }
    if (domain == 0 || domain > 0xFFFF || maxTagCount >> 16 != domain) {
        return EAaConfigRetVal_InvalidValue;
    }
    {
        const std::lock_guard lock(domains().mutex);
        const auto entry = domains().byNumber.find(domain);
        if (entry == domains().byNumber.end()) {
            return EAaConfigRetVal_NotFound;
        }
        if ((maxTagCount & 0xFFFF) > rad::maxIndices) {
            return EAaConfigRetVal_OutOfResources;
        }
        entry->second.room = maxTagCount & 0xFFFF;
    }
    return remember(domain);
}

int AaConfigRadSetDefault(unsigned int id, const char* name, unsigned int defaultValue) {
    rad::Words* words = rad::ownWords();
    if (words == nullptr) {
        return EAaConfigRetVal_NotStarted;
    }
    if (name == nullptr) {
        return EAaConfigRetVal_InvalidValue;
    }
    {
        const std::lock_guard lock(domains().mutex);
        const auto entry = domains().byNumber.find(id >> 16);
        if (entry == domains().byNumber.end()) {
            return EAaConfigRetVal_NotFound;
        }
        if ((id & 0xFFFF) >= entry->second.room) {
            return EAaConfigRetVal_InvalidValue;
        }
        entry->second.parameters[id] = {defaultValue, name};
    }
    words->setDefault(id, defaultValue);
    return remember(id >> 16);
}

unsigned int AaConfigRadGetValue(unsigned int id) {
    return rad::value(id);
}

int AaConfigRadSetValue(unsigned int id, unsigned int value) {
    if (id >> 16 == 0) {
        return EAaConfigRetVal_InvalidValue;
    }
    rad::Word* const words = rad::own.load(std::memory_order_relaxed);
    if (!rad::inRange(id)) {
        return EAaConfigRetVal_OutOfResources;
    }
    if (words == nullptr) {
        return EAaConfigRetVal_NoError;
    }
    words[rad::slotOf(id)].store(rad::setWord(value), std::memory_order_relaxed);
    return EAaConfigRetVal_NoError;
}

} // namespace mox::host
