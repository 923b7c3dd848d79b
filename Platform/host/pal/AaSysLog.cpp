#include "AaSysLog.hpp"

#include "../log/Log.hpp"
#include "../run/NoCancellation.hpp"
#include "AaConfig.hpp"
#include "AaMem.hpp"
#include "FileCopy.hpp"

#include <memory>
#include <new>

namespace mox::host {

namespace {

constexpr unsigned int highestDomain = 255;
constexpr std::size_t maxDomainName = 15;

bool isLevel(int level) {
    return level >= log::debug && level <= log::error;
}

/// The environment's name becomes known only while the process starts, so lines look for it until it is there. Not done
/// for the platform's own lines: the configuration may be the one that logs.
void adoptEnvironmentName() {
    if (log::hasProcessName())
        return;
    char* name = nullptr;
    unsigned int length = 0;
    if (AaConfigTagGetString("pal.service.aapro.eename", &name, &length) != EAaConfigRetVal_NoError)
        return;
    log::setProcessName(std::string_view(name, length));
    host::AaMemUnRef(name);
}

} // namespace

int AaSysLogVPrint(EAaSysLogSeverityLevel level, const char* format, va_list args) {
    return host::AaSysLogVPrintE(level, 0, format, args);
}

int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list args) {
    if (!format || !isLevel(level))
        return EAaSysLogRetVal_InvalidValue;
    if (!log::wanted(level, featureId))
        return EAaSysLogRetVal_NoError;
    adoptEnvironmentName();
    log::write(level, featureId, format, args);
    return EAaSysLogRetVal_NoError;
}

int AaSysLogRegisterDomainBuffer(unsigned int domainId, const char* name, unsigned int startupBytes,
                                 unsigned int runtimeBytes) {
    if (!name || domainId == 0 || domainId > highestDomain || startupBytes == 0 || runtimeBytes == 0)
        return EAaSysLogRetVal_InvalidValue;
    const std::string_view shown = std::string_view(name).substr(0, maxDomainName);
    try {
        const bool added = log::addDomain(std::make_unique<log::Domain>(domainId, shown, startupBytes, runtimeBytes));
        return added ? EAaSysLogRetVal_NoError : EAaSysLogRetVal_AlreadyRegistered;
    } catch (const std::bad_alloc&) {
        return EAaSysLogRetVal_OutOfResources;
    }
}

int AaSysLogSetLogDomain(unsigned int domainId) {
    return log::chooseDomain(domainId) ? EAaSysLogRetVal_NoError : EAaSysLogRetVal_NotFound;
}

int AaSysLogRegisterRingBuffer(unsigned int featureId, unsigned int bufferBytes, unsigned int lineBytes,
                               unsigned int lowestLevel) {
    if (bufferBytes == 0 || lowestLevel > static_cast<unsigned int>(log::error))
        return EAaSysLogRetVal_InvalidValue;
    const std::size_t longest = lineBytes == 0 ? log::maxText : lineBytes;
    try {
        auto ring = std::make_unique<log::FeatureRing>(featureId, bufferBytes, longest, static_cast<int>(lowestLevel));
        return log::addRing(std::move(ring)) ? EAaSysLogRetVal_NoError : EAaSysLogRetVal_AlreadyRegistered;
    } catch (const std::bad_alloc&) {
        return EAaSysLogRetVal_OutOfResources;
    }
}

int AaSysLogDumpRingBufferToFile(unsigned int featureId, const char* fileName, unsigned int maxBytes) {
    if (!fileName)
        return EAaSysLogRetVal_InvalidValue;
    log::FeatureRing* ring = log::ringOf(featureId);
    if (!ring)
        return EAaSysLogRetVal_NotFound;
    const NoCancellation whileWriting;
    std::string lines;
    {
        const std::lock_guard<std::mutex> guard(ring->mutex);
        lines = ring->ring.lines(maxBytes);
    }
    return writeFile(fileName, lines).empty() ? EAaSysLogRetVal_NoError : EAaSysLogRetVal_FileError;
}

} // namespace mox::host
