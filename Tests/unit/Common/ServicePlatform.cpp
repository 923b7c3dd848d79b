#include "unit/Common/ServicePlatform.hpp"

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace mox::testing {
namespace {

using ::testing::_;

std::string number(std::int64_t value) {
    return std::to_string(value);
}

const TestMessage& messageOf(const void* msg) {
    return *static_cast<const TestMessage*>(msg);
}

std::vector<std::string> linesThatBegin(const std::vector<std::string>& lines, const std::string& begin) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.rfind(begin, 0) == 0) {
            found.push_back(line);
        }
    }
    return found;
}

} // namespace

std::string hex(std::uint64_t value) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << value;
    return text.str();
}

std::string logLine(int level, unsigned int feature, const std::string& text) {
    return "log " + number(level) + " " + hex(feature) + " " + text;
}

std::string stateWritten(unsigned int stateRadId, unsigned int state) {
    return call("AaConfigRadSetValue", hex(stateRadId), number(state));
}

ServicePlatform::ServicePlatform() {
    answerConfiguration();
    answerRadParameters();
    answerExecutionUnits();
    answerMessages();
    answerHeaders();
    answerSemaphores();
    answerLog();
}

ServicePlatform::~ServicePlatform() {
    for (const std::uint16_t cpid : m_registered) {
        AaSysComUserDeregister(cpid);
    }
}

std::vector<std::string> ServicePlatform::takeTrace() {
    std::vector<std::string> trace;
    trace.swap(m_trace);
    return trace;
}

std::vector<std::string> ServicePlatform::takeLog() {
    return linesThatBegin(takeTrace(), "log ");
}

std::vector<std::string> ServicePlatform::takeCalls(const std::string& function) {
    return linesThatBegin(takeTrace(), function + "(");
}

void ServicePlatform::answerConfiguration() {
    ON_CALL(config, AaConfigEarlyStartup()).WillByDefault([this] {
        note("AaConfigEarlyStartup()");
        return answers.earlyStartup;
    });
    ON_CALL(config, AaConfigTagSetString(_, _)).WillByDefault([this](const char* tag, const char* value) {
        note(call("AaConfigTagSetString", tag, value));
        return 0;
    });
    ON_CALL(config, AaConfigTagReadFile(_)).WillByDefault([this](const char* file) {
        note(call("AaConfigTagReadFile", file));
        return int{EAaConfigRetVal_FileError};
    });
    ON_CALL(config, AaConfigTagGetU32(_, _)).WillByDefault([this](const char* tag, std::uint32_t* value) {
        note(call("AaConfigTagGetU32", tag, number(*value)));
        if (answers.tagGetResult[tag] == 0) {
            *value = answers.tagU32[tag];
        }
        return answers.tagGetResult[tag];
    });
    ON_CALL(config, AaConfigTagRegister(_, _)).WillByDefault([this](const char* tag, TAaConfigTagCb) {
        note(call("AaConfigTagRegister", tag));
        return answers.tagRegister;
    });
    ON_CALL(config, AaConfigTagUnregister(_, _)).WillByDefault([this](const char* tag, TAaConfigTagCb) {
        note(call("AaConfigTagUnregister", tag));
        return answers.tagUnregister;
    });
    ON_CALL(startup, AaStartupEeStartup()).WillByDefault([this] {
        note("AaStartupEeStartup()");
        return answers.eeStartup;
    });
    ON_CALL(startup, AaStartupEeShutdown()).WillByDefault([this] {
        note("AaStartupEeShutdown()");
        return 0;
    });
}

void ServicePlatform::answerRadParameters() {
    ON_CALL(config, AaConfigRadRegisterDomain(_, _, _))
        .WillByDefault([this](unsigned int domain, const char* name, TAaConfigRadInitCb) {
            note(call("AaConfigRadRegisterDomain", number(domain), name));
            return answers.registerDomain[domain];
        });
    ON_CALL(config, AaConfigRadSetMaxTagCount(_, _)).WillByDefault([this](unsigned int domain, unsigned int count) {
        note(call("AaConfigRadSetMaxTagCount", number(domain), hex(count)));
        return 0;
    });
    ON_CALL(config, AaConfigRadSetDefault(_, _, _))
        .WillByDefault([this](unsigned int id, const char* name, unsigned int value) {
            note(call("AaConfigRadSetDefault", hex(id), name, number(value)));
            return 0;
        });
    ON_CALL(config, AaConfigRadSetValue(_, _)).WillByDefault([this](unsigned int id, unsigned int value) {
        note(call("AaConfigRadSetValue", hex(id), number(value)));
        return answers.radSetValue;
    });
    ON_CALL(config, AaConfigRadGetValue(_)).WillByDefault([this](unsigned int id) {
        note(call("AaConfigRadGetValue", hex(id)));
        return answers.radValue;
    });
}

void ServicePlatform::answerExecutionUnits() {
    ON_CALL(pro, AaProEeGetDefaultSchedulingPolicy(_)).WillByDefault([this](EAaProEuSchedulingPolicy* policy) {
        note(call("AaProEeGetDefaultSchedulingPolicy", number(*policy)));
        if (answers.policyResult == EAaProEuRetVal_NoError) {
            *policy = answers.policy;
        }
        return answers.policyResult;
    });
    ON_CALL(sysCom, AaSysComEuCreateAndStartWithPolicy(_, _, _, _, _, _, _, _, _, _))
        .WillByDefault([this](std::uint32_t* euId, const char* name, TAaProEuEntry entry, std::uint32_t stackSize,
                              EAaProEuSchedulingPolicy policy, std::uint32_t priority, std::uint32_t options,
                              const void* argument, std::uint32_t argumentSize, std::uint32_t wait) {
            *euId = 7;
            return createEu(name, entry, stackSize, policy, priority, options, argument, argumentSize, wait);
        });
    ON_CALL(sysCom, AaSysComEuUserRegister(_)).WillByDefault([this](std::uint16_t cpid) {
        note(call("AaSysComEuUserRegister", hex(cpid)));
        m_registered.push_back(answers.userRegister(cpid));
        return m_registered.back();
    });
    ON_CALL(sysCom, AaSysComUserDeregister(_)).WillByDefault([this](std::uint16_t cpid) {
        note(call("AaSysComUserDeregister", hex(cpid)));
        return EAaSysComRetVal_NoError;
    });
}

EAaProEuRetVal ServicePlatform::createEu(const char* name, TAaProEuEntry entry, std::uint32_t stackSize,
                                         EAaProEuSchedulingPolicy policy, std::uint32_t priority, std::uint32_t options,
                                         const void* argument, std::uint32_t argumentSize, std::uint32_t wait) {
    note(call("AaSysComEuCreateAndStartWithPolicy", name, number(stackSize), number(policy), number(priority),
              number(options), number(argumentSize), number(wait)));
    euEntry = entry;
    if (answers.euCreation == EAaProEuRetVal_NoError && answers.euRuns) {
        void* block = nullptr;
        std::memcpy(&block, argument, sizeof block);
        EXPECT_EQ(entry(&block), nullptr);
    }
    return answers.euCreation;
}

void* ServicePlatform::receive() {
    if (m_queue.empty()) {
        throw std::logic_error("nobody sends any more");
    }
    TestMessage* const message = m_queue.front();
    m_queue.pop_front();
    return message;
}

void ServicePlatform::answerMessages() {
    ON_CALL(sysCom, AaSysComMsgReceive(_, _)).WillByDefault([this](std::int32_t timeoutUs, std::uint32_t option) {
        note(call("AaSysComMsgReceive", number(timeoutUs), number(option)));
        return receive();
    });
    ON_CALL(sysCom, AaSysComMsgReceiveSelective(_, _))
        .WillByDefault([this](std::int32_t timeoutUs, const std::uint16_t* filter) {
            note(call("AaSysComMsgReceiveSelective", number(timeoutUs), hex(reinterpret_cast<std::uintptr_t>(filter))));
            return receive();
        });
    ON_CALL(sysCom, AaSysComMsgDestroy(_)).WillByDefault([this](void** msg) {
        note(call("AaSysComMsgDestroy", hex(messageOf(*msg).id)));
        *msg = nullptr;
        return EAaSysComRetVal_NoError;
    });
    ON_CALL(sysCom, AaSysComControlHandleEchoRouteReq(_)).WillByDefault([this](void** msg) {
        note(call("AaSysComControlHandleEchoRouteReq", hex(messageOf(*msg).id)));
        return answers.echoRoute(msg);
    });
    ON_CALL(sysCom, AaSysComControlPrintRouteReq(_)).WillByDefault([this](const void* msg) {
        note(call("AaSysComControlPrintRouteReq", hex(messageOf(msg).id)));
    });
}

void ServicePlatform::answerHeaders() {
    ON_CALL(sysCom, AaSysComMsgGetId(_)).WillByDefault([](const void* msg) { return messageOf(msg).id; });
    ON_CALL(sysCom, AaSysComMsgGetReceiver(_)).WillByDefault([](const void* msg) { return messageOf(msg).receiver; });
    ON_CALL(sysCom, AaSysComMsgGetSender(_)).WillByDefault([](const void* msg) { return messageOf(msg).sender; });
    ON_CALL(sysCom, AaSysComMsgGetPayload(_)).WillByDefault([](const void* msg) -> void* {
        const TestMessage& message = messageOf(msg);
        return message.payload.empty() ? nullptr : const_cast<unsigned char*>(message.payload.data());
    });
    ON_CALL(sysCom, AaSysComMsgGetPayloadSize(_)).WillByDefault([](const void* msg) {
        return static_cast<std::uint32_t>(messageOf(msg).payload.size());
    });
    ON_CALL(sysCom, AaSysComGetOwnNid()).WillByDefault([this] { return answers.ownNid; });
    ON_CALL(sysCom, AaSysComSicadGet(_, _)).WillByDefault([this](std::uint16_t cpid, std::uint16_t nid) {
        note(call("AaSysComSicadGet", hex(cpid), hex(nid)));
        return static_cast<std::uint32_t>(nid) << 16 | cpid;
    });
}

void ServicePlatform::answerLog() {
    ON_CALL(sysLog, AaSysLogRegisterDomainBuffer(_, _, _, _))
        .WillByDefault(
            [this](unsigned int domain, const char* name, unsigned int startupBytes, unsigned int runtimeBytes) {
                note(call("AaSysLogRegisterDomainBuffer", number(domain), name, number(startupBytes),
                          number(runtimeBytes)));
                return answers.registerLogBuffer;
            });
    ON_CALL(sysLog, AaSysLogSetLogDomain(_)).WillByDefault([this](unsigned int domain) {
        note(call("AaSysLogSetLogDomain", number(domain)));
        return int{EAaSysLogRetVal_NotFound};
    });
    ON_CALL(sysLog, AaSysLogPrint(_, _)).WillByDefault([this](EAaSysLogSeverityLevel level, const std::string& text) {
        note(logLine(level, 0, text));
        return 0;
    });
    ON_CALL(sysLog, AaSysLogPrintE(_, _, _))
        .WillByDefault([this](EAaSysLogSeverityLevel level, unsigned int feature, const std::string& text) {
            note(logLine(level, feature, text));
            return 0;
        });
}

void ServicePlatform::answerSemaphores() {
    ON_CALL(sem, AaSemReMutexCreate(_)).WillByDefault([this](TAaSemReMutex* mutex) {
        note("AaSemReMutexCreate()");
        *mutex = reinterpret_cast<TAaSemReMutex>(&m_mutex);
        return EAaSemRetVal_NoError;
    });
    ON_CALL(sem, AaSemReMutexDestroy(_)).WillByDefault([this](TAaSemReMutex mutex) {
        note(mutex == reinterpret_cast<TAaSemReMutex>(&m_mutex) ? "AaSemReMutexDestroy()" : "AaSemReMutexDestroy(?)");
        return EAaSemRetVal_NoError;
    });
}

} // namespace mox::testing
