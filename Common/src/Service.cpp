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

#include <cxxabi.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace ps::hwapi::common {
namespace {
namespace constant {
constexpr const char* sourcePath = "Common/src/Service";
constexpr unsigned int starting = 1;
constexpr unsigned int waitingForMessage = 2;
constexpr unsigned int handlingMessage = 3;
constexpr unsigned int ended = 4;
constexpr unsigned int failed = 5;
constexpr std::int32_t withoutLimit = -1;
constexpr std::uint16_t nodeWithoutId = 0x0F01;
constexpr std::uint32_t mainEuStackSize = 4096;
constexpr EAaProEuSchedulingPolicy policyWithoutDefault = EAaProEuSchedulingPolicy_RoundRobin;
constexpr std::uint32_t mainEuPriority = 10;
constexpr std::uint32_t returnAfterEuHasEnded = 1;
} // namespace constant

/// A message that is being handled: destroyed at the end, however the handling ends.
struct ReceivedMessage {
    explicit ReceivedMessage(void* received) : msg(received) {}
    ReceivedMessage(const ReceivedMessage&) = delete;
    ReceivedMessage& operator=(const ReceivedMessage&) = delete;
    ~ReceivedMessage() {
        if (msg != nullptr && deleteMsg) {
            AaSysComMsgDestroy(&msg);
        }
    }

    void* msg;
    bool deleteMsg = true;
};

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
    : m_stateRadId(stateRadId),
      m_name(name),
      m_requestedCpid(cpid),
      m_radId(radId),
      m_argumentParser(parser != nullptr ? std::move(parser) : std::make_unique<ArgParser>()) {
    m_impl = this;
    // A second object shares the mutex of the first.
    if (m_waitForConfigTagMutex == nullptr) {
        AaSemReMutexCreate(&m_waitForConfigTagMutex);
    }
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
    const std::uint16_t id = delegate->GetMsgId();
    if (m_delegates.count(id) != 0) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "Duplicate message delegate, id 0x%X",
                       static_cast<unsigned int>(id));
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
    EAaProEuSchedulingPolicy policy = constant::policyWithoutDefault;
    const EAaProEuRetVal policyResult = AaProEeGetDefaultSchedulingPolicy(&policy);
    if (policyResult != EAaProEuRetVal_NoError) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "AaProEeGetDefaultSchedulingPolicy failed %d",
                       static_cast<int>(policyResult));
        // Whatever the failed call has left there does not count.
        policy = constant::policyWithoutDefault;
    }
    std::uint32_t euId = 0;
    int success = 0;
    int* argument = &success;
    const std::string euName = m_name + "Main";
    const EAaProEuRetVal result = AaSysComEuCreateAndStartWithPolicy(
        &euId, euName.c_str(), ServiceMainEu, constant::mainEuStackSize, policy, constant::mainEuPriority, 0, &argument,
        euArgumentSize, constant::returnAfterEuHasEnded);
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

// The unwinding of a cancelled thread is no object, so the handler's reference to it is null by design.
__attribute__((no_sanitize("null"))) void* Service::ServiceMainEu(void* argument) {
    int* const success = *static_cast<int**>(argument);
    Service& service = *Get();
    try {
        service.SetServiceStateRad(constant::starting);
        service.InitEu();
        service.runLoop();
        *success = 1;
        service.SetServiceStateRad(constant::ended);
        return nullptr;
    } catch (const InitFailedException& failure) {
        service.logFailure(failure);
    } catch (const RuntimeException& failure) {
        service.logFailure(failure);
    } catch (abi::__forced_unwind&) {
        // A cancelled thread has to unwind to its end.
        throw;
    } catch (...) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, service.m_radId, "Unexpected exception in %s:%i",
                       constant::sourcePath, __LINE__);
    }
    *success = 0;
    service.SetServiceStateRad(constant::failed);
    return nullptr;
}

void Service::runLoop() {
    do {
        SetServiceStateRad(constant::waitingForMessage);
    } while (Run());
}

void Service::logFailure(const CHwapiException& failure) const {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "%s : %s (file: %s, line: %zd)", failure.what(),
                   failure.getDescription().c_str(), failure.getFile().c_str(),
                   static_cast<ssize_t>(failure.getLine()));
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

bool Service::Run() {
    HandleMessages();
    PingWatchdog();
    return !m_terminateRequest.load(std::memory_order_relaxed);
}

void Service::HandleMessages() {
    ReceivedMessage received(hwapiMsgQueueReceive(constant::withoutLimit));
    if (received.msg == nullptr) {
        return;
    }
    const std::uint16_t id = AaSysComMsgGetId(received.msg);
    if (id == AASYSCOM_ECHO_ROUTE_REQ_MSG) {
        received.deleteMsg = !handleEchoRouteRequest(received.msg);
        return;
    }
    const auto entry = m_delegates.find(id);
    if (entry == m_delegates.end()) {
        logUnknownMessage(received.msg, id);
        return;
    }
    SetServiceStateRad(constant::handlingMessage);
    callDelegate(*entry->second, received.msg, id);
}

bool Service::handleEchoRouteRequest(void*& msg) const {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, m_radId, "AASYSCOM_ECHO_ROUTE_REQ_MSG received");
    if (AaSysComControlHandleEchoRouteReq(&msg) == 0) {
        AaSysComControlPrintRouteReq(msg);
        return false;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, m_radId, "deleteMsg = false");
    return true;
}

void Service::callDelegate(MsgDelegateBase& delegate, void* msg, std::uint16_t id) const {
    try {
        delegate.HandleMessage(msg);
    } catch (const RuntimeException& failure) {
        throw RuntimeException(failure);
    } catch (const std::exception&) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, m_radId, "Message handling failed 0x%04X",
                       static_cast<unsigned int>(id));
        throw RuntimeException("std::exception in Run()", constant::sourcePath, __LINE__);
    }
}

void Service::logUnknownMessage(const void* msg, std::uint16_t id) const {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, m_radId,
                   "Unknown message received: id=0x%04X receiver=0x%08X sender=0x%08X", static_cast<unsigned int>(id),
                   static_cast<unsigned int>(AaSysComMsgGetReceiver(msg)),
                   static_cast<unsigned int>(AaSysComMsgGetSender(msg)));
}

void Service::PingWatchdog() {}

void Service::Terminate() {
    m_terminateRequest.store(true, std::memory_order_relaxed);
}

ERadHwapi Service::GetRadId() const {
    return m_radId;
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
