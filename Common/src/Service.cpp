#include "EuArgument.hpp"

#include <mox/ArgParser.hpp>
#include <mox/InvalidParameterException.hpp>
#include <mox/MessageQueue.h>
#include <mox/Service.hpp>
#include <mox/Startup.h>
#include <pal/AaPro.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

#include <unistd.h>

#include <cstdio>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr const char* sourcePath = "Common/src/Service";
constexpr unsigned int starting = 1;
constexpr unsigned int ended = 4;
constexpr unsigned int highestCommonState = 5;
constexpr unsigned int lowestOwnState = 7;
constexpr std::uint16_t nodeWithoutId = 0x0F01;
constexpr std::uint32_t mainEuStackSize = 4096;
constexpr std::uint32_t mainEuPriority = 10;
constexpr std::uint32_t returnAfterEuHasEnded = 1;
} // namespace constant

bool isHelpRequested(ArgParserBase& parser) {
    return parser.ReadArgument("h") == "arg on" || parser.ReadArgument("help") == "arg on";
}

} // namespace

Service* Service::m_impl = nullptr;

Service::InitFailedException::InitFailedException(const std::string& description, const char* file, unsigned int line)
    : CHwapiException("Initialization failed", description, file, line) {}

Service::RuntimeException::RuntimeException(const std::string& description, const char* file, unsigned int line)
    : CHwapiException("Runtime error", description, file, line) {}

Service::Service(const std::string& name, unsigned short cpid, ERadHwapi radId, ERadHwapiState stateRadId,
                 std::unique_ptr<ArgParserBase> parser)
    : m_useCommonServiceState(true),
      m_stateRadId(stateRadId),
      m_name(name),
      m_startTime(std::chrono::steady_clock::now()),
      m_requestedCpid(cpid),
      m_assignedCpid(0),
      m_radId(radId),
      m_argumentParser(parser != nullptr ? std::move(parser) : std::make_unique<ArgParser>()),
      m_verbose(false),
      m_terminateRequest(false) {
    m_impl = this;
    AaSemReMutexCreate(&m_waitForConfigTagMutex);
}

Service::~Service() {
    Service::SetServiceStateRad(constant::ended);
    if (m_waitForConfigTagMutex != nullptr) {
        AaSemReMutexDestroy(m_waitForConfigTagMutex);
        m_waitForConfigTagMutex = nullptr;
    }
}

Service* Service::Get() {
    return m_impl;
}

void Service::AddMsgDelegate(MsgDelegateBase* delegate) {
    if (delegate == nullptr) {
        throw InvalidParameterException("Nullptr pointer argument passed to Service::AddMsgDelegate ",
                                        constant::sourcePath, __LINE__);
    }
    const unsigned int id = delegate->GetMsgId();
    if (m_delegates.count(delegate->GetMsgId()) != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "Duplicate message delegate, id 0x%X", id);
        return;
    }
    // Through the virtual call, so that an override of the owning form sees every delegate.
    AddMsgDelegate(std::unique_ptr<MsgDelegateBase>(delegate));
}

void Service::AddMsgDelegate(std::unique_ptr<MsgDelegateBase> delegate) {
    const std::uint16_t id = delegate->GetMsgId();
    m_delegates.try_emplace(id, std::move(delegate));
}

void Service::RemoveMsgDelegate(unsigned short msgId) {
    m_delegates.erase(msgId);
}

std::uint32_t Service::GetSicad() const {
    const std::uint16_t ownNode = AaSysComGetOwnNid();
    const std::uint16_t node = ownNode != 0 ? ownNode : constant::nodeWithoutId;
    return AaSysComSicadGet(m_assignedCpid.load(std::memory_order_relaxed), node);
}

bool Service::Startup(int argc, char** argv) {
    const std::string error = m_argumentParser->Parse(argc, argv);
    if (!error.empty()) {
        std::fprintf(stderr,
                     "Invalid arguments: %s\nTry MOX%sExe with '-h' or '--help' arguments for usage information\n",
                     error.c_str(), m_name.c_str());
        return false;
    }
    if (isHelpRequested(*m_argumentParser)) {
        std::fprintf(stderr, "Usage:\nMOX%sExe [options]\n\n%s", m_name.c_str(), m_argumentParser->GetHelp().c_str());
        return true;
    }
    PreStartup();
    if (ApiStartupInitializeExecutable(argc, argv, m_name.c_str(), m_requestedCpid) != 1) {
        throw InitFailedException("Failed to set initialize executable", constant::sourcePath, __LINE__);
    }
    if (m_verbose) {
        SetFlagValue(m_radId, 1);
    }
    SetServiceStateRad(constant::starting);
    return CreateAndStartEu();
}

bool Service::CreateAndStartEu() {
    EAaProEuSchedulingPolicy policy = EAaProEuSchedulingPolicy_RoundRobin;
    const EAaProEuRetVal policyResult = AaProEeGetDefaultSchedulingPolicy(&policy);
    if (policyResult != EAaProEuRetVal_NoError) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "AaProEeGetDefaultSchedulingPolicy failed %d",
                       static_cast<int>(policyResult));
    }
    std::uint32_t euId = 0;
    int success = 0;
    int* argument = &success;
    const std::string euName = m_name + "Main";
    const EAaProEuRetVal result = AaSysComEuCreateAndStartWithPolicy(
        &euId, euName.c_str(), ServiceMainEu, constant::mainEuStackSize, policy, constant::mainEuPriority, 0, &argument,
        constant::euArgumentSize, constant::returnAfterEuHasEnded);
    if (result != EAaProEuRetVal_NoError) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s main EU creation failed %d", m_name.c_str(),
                       static_cast<int>(result));
        return false;
    }
    if (success != 1) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s main EU died unexpectedly", m_name.c_str());
        return false;
    }
    return true;
}

void Service::Shutdown() {
    Exit();
    AaStartupEeShutdown();
}

void Service::InitEu() {
    const std::uint16_t assigned = AaSysComEuUserRegister(m_requestedCpid);
    m_assignedCpid.store(assigned, std::memory_order_relaxed);
    if (m_requestedCpid == 0 && assigned == 0) {
        throw InitFailedException("Failed to register dynamic CPID", constant::sourcePath, __LINE__);
    }
    if (m_requestedCpid != 0 && assigned != m_requestedCpid) {
        throw InitFailedException("Failed to register static CPID", constant::sourcePath, __LINE__);
    }
    hwapiMsgQueueInit();
    Init();
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, m_radId, "Service initialized ( 0x0%x )",
                   static_cast<unsigned int>(m_assignedCpid.load(std::memory_order_relaxed)));
}

void Service::Terminate() {
    m_terminateRequest.store(true, std::memory_order_relaxed);
}

ERadHwapi Service::GetRadId() const {
    return m_radId;
}

void Service::SetServiceStateRad(unsigned int state) {
    const bool isCommon = state <= constant::highestCommonState;
    // 6 lies between the two groups and is never written.
    if ((isCommon && m_useCommonServiceState.load(std::memory_order_relaxed)) || state >= constant::lowestOwnState) {
        SetFlagValue(m_stateRadId, state);
    }
}

unsigned int Service::GetServiceStateRad() {
    return AaConfigRadGetValue(m_stateRadId);
}

void Service::SetUseCommonServiceState(unsigned int use) {
    m_useCommonServiceState.store(use != 0, std::memory_order_relaxed);
}

void Service::SetFlagValue(unsigned int flag, unsigned int value) const {
    const int result = AaConfigRadSetValue(flag, value);
    if (result != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s: failed to set flag %u to %u (reason %u)",
                       "SetFlagValue", flag, value, static_cast<unsigned int>(result));
    }
}

const std::string& Service::GetName() const {
    return m_name;
}

ArgParserBase& Service::GetArgumentParser() {
    return *m_argumentParser;
}

void Service::SetVerbose(unsigned int verbose) {
    m_verbose = verbose != 0;
}

void Service::SetRootPrivileges() {
    if (setgid(0) != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "setgid for root access rights failed");
    } else {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, m_radId, "setgid for root access rights successful");
    }
}

bool Service::PreStartup() {
    return true;
}

void Service::Init() {}

void Service::Exit() {
    hwapiMsgQueueDestroy();
    AaSysComUserDeregister(m_assignedCpid.load(std::memory_order_relaxed));
}

} // namespace ps::hwapi::common
