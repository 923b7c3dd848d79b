#include <mox/Service.hpp>
#include <pal/AaSysLog.h>

#include <cstring>

namespace ps::hwapi::common {
namespace {

/// Holds the mutex of the waiting map. It is recursive and the platform's, so no standard lock fits.
class WaitMapLock {
public:
    explicit WaitMapLock(TAaSemReMutex mutex) : m_mutex(mutex) { AaSemReMutexTake(m_mutex); }
    WaitMapLock(const WaitMapLock&) = delete;
    WaitMapLock& operator=(const WaitMapLock&) = delete;
    ~WaitMapLock() { AaSemReMutexRelease(m_mutex); }

private:
    TAaSemReMutex m_mutex;
};

std::uint32_t asU32(const void* value) {
    std::uint32_t number = 0;
    std::memcpy(&number, value, sizeof number);
    return number;
}

} // namespace

std::set<std::string> Service::m_observedTags;
std::mutex Service::m_observedTagsMutex;
std::map<std::string, std::list<TAaSem>> Service::m_waitForConfigTagSem;
TAaSemReMutex Service::m_waitForConfigTagMutex = nullptr;

void Service::RegisterTag(const std::string& tag, TAaConfigTagCb callback) {
    const int result = AaConfigTagRegister(tag.c_str(), callback);
    if (result != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: Failed to register tag '%s' (reason %u)",
                       "RegisterTag", tag.c_str(), static_cast<unsigned int>(result));
    }
}

void Service::WaitForConfigTag(const std::string& tag, unsigned int value) {
    const std::string key = GenerateTagKey(tag.c_str(), value);
    TAaSem sem = nullptr;
    AaSemCreateC(&sem, 0);
    {
        const WaitMapLock lock(m_waitForConfigTagMutex);
        m_waitForConfigTagSem[key].push_back(sem);
        RegisterTag(tag, WaitForConfigTagObserver);
    }
    AaSemWait(sem);
    AaSemDestroy(sem);
}

void Service::SetObservedTag(const std::string& tag) {
    bool observed = false;
    {
        const std::lock_guard<std::mutex> lock(m_observedTagsMutex);
        observed = m_observedTags.count(tag) != 0;
    }
    if (observed) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: tag '%s' already observed", "SetObservedTag",
                       tag.c_str());
        return;
    }
    AddNewObservedTag(tag);
}

void Service::AddNewObservedTag(const std::string& tag) {
    {
        const std::lock_guard<std::mutex> lock(m_observedTagsMutex);
        m_observedTags.insert(tag);
    }
    RegisterTag(tag, ConfigTagObserver);
}

void Service::UnSetObservedTag(const std::string& tag) {
    bool observed = false;
    {
        const std::lock_guard<std::mutex> lock(m_observedTagsMutex);
        observed = m_observedTags.count(tag) != 0;
    }
    if (!observed) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: tag '%s' not found", "UnSetObservedTag",
                       tag.c_str());
        return;
    }
    const int result = AaConfigTagUnregister(tag.c_str(), ConfigTagObserver);
    if (result != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: Failed to unregister tag '%s' (reason %u)",
                       "UnSetObservedTag", tag.c_str(), static_cast<unsigned int>(result));
    }
    const std::lock_guard<std::mutex> lock(m_observedTagsMutex);
    m_observedTags.erase(tag);
}

void Service::HandleConfigTagChange(const std::string& /*tag*/, unsigned int /*value*/) {}

void Service::ConfigTagObserver(const char* tag, const void* value, unsigned int /*length*/) {
    const std::string name(tag);
    {
        const std::lock_guard<std::mutex> lock(m_observedTagsMutex);
        if (m_observedTags.count(name) == 0 || value == nullptr) {
            return;
        }
    }
    Get()->HandleConfigTagChange(name, asU32(value));
}

void Service::WaitForConfigTagObserver(const char* tag, const void* value, unsigned int length) {
    if (length != sizeof(std::uint32_t)) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Warning, "%s: invalid length length %u for '%s'",
                      "WaitForConfigTagObserver", length, tag);
        return;
    }
    const std::string key = GenerateTagKey(tag, asU32(value));
    const WaitMapLock lock(m_waitForConfigTagMutex);
    PostConfigTagSemaphores(key);
}

void Service::PostConfigTagSemaphores(const std::string& key) {
    const auto entry = m_waitForConfigTagSem.find(key);
    if (entry == m_waitForConfigTagSem.end()) {
        AaSysLogPrint(EAaSysLogSeverityLevel_Warning, "%s: key '%s' not found", "PostConfigTagSemaphores", key.c_str());
        return;
    }
    for (const TAaSem sem : entry->second) {
        AaSemPost(sem);
    }
    m_waitForConfigTagSem.erase(entry);
}

std::string Service::GenerateTagKey(const char* tag, unsigned int value) {
    return std::string(tag) + "_" + std::to_string(value);
}

} // namespace ps::hwapi::common
