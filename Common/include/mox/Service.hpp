#pragma once
#include <mox/AbstractService.hpp>
#include <mox/ArgParserBase.hpp>
#include <mox/CHwapiException.hpp>
#include <mox/ERadHwapi.hpp>
#include <mox/MsgDelegateBase.hpp>
#include <pal/AaConfig.h>
#include <pal/AaSem.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace ps::hwapi::common {

/// A hardware service: one process with one main execution unit (EU) that handles one message at a time.
///
/// An executable defines exactly one object of a class derived from this one, with static storage duration; the
/// library's `main` finds it, and there is nothing else to register:
///
///     class LedService : public Service {
///     public:
///         LedService() : Service("Led", 0x1234, ERadHwapi_LED, ERadHwapiState_LedState) {}
///         void Init() override { AddMsgDelegate(std::make_unique<LedDelegate>(0x0601)); }
///     };
///     LedService service;
///
/// Threads: the process's first thread builds and destroys the object and calls Startup and Shutdown; it waits in
/// Startup until the main EU has ended. Init, Run and every delegate run on the main EU. Delegates are added and
/// removed only there, or before the EU starts. Terminate, GetSicad, GetRadId, SetFlagValue and the state operations
/// may be called from any thread.
///
/// State written to the state parameter: 1 starting, 2 waiting for a message, 3 handling one, 4 ended, 5 failed.
class Service : public virtual AbstractService {
public:
    /// The service cannot start. Its kind text is "Initialization failed".
    class InitFailedException : public CHwapiException {
    public:
        InitFailedException(const std::string& description, const char* file, unsigned int line);
    };

    /// The service cannot go on. Its kind text is "Runtime error". Thrown by a delegate, it ends the service.
    class RuntimeException : public CHwapiException {
    public:
        RuntimeException(const std::string& description, const char* file, unsigned int line);
    };

    /// Makes this object the one that Get() answers.
    /// @param name        e.g. "Led" for the executable MOXLedExe; the main EU is "LedMain"
    /// @param cpid        communication point to register; 0: a dynamic one
    /// @param radId       R&D debug flag, feature identifier of the service's log lines
    /// @param stateRadId  R&D parameter that mirrors the state
    /// @param parser      command-line parser; null: an ArgParser
    Service(const std::string& name, unsigned short cpid, ERadHwapi radId, ERadHwapiState stateRadId,
            std::unique_ptr<ArgParserBase> parser = nullptr);
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    /// Writes state 4 and destroys the delegates.
    ~Service() override;

    /// @return the service object built last; null before there is one
    static Service* Get();

    // --- messages ---

    /// Adds the handler of a message id. An id that has one keeps it, which is logged.
    /// @param delegate  owned by the service from here on; stays the caller's when its id is taken
    /// @throws InvalidParameterException if it is null
    void AddMsgDelegate(MsgDelegateBase* delegate) override;

    /// Adds the handler of a message id. An id that has one keeps it; the new one is destroyed.
    /// @param delegate  not null
    void AddMsgDelegate(std::unique_ptr<MsgDelegateBase> delegate) override;

    /// Destroys the handler of a message id; an unknown id is ignored. A handler that removes itself may not touch its
    /// members afterwards.
    void RemoveMsgDelegate(unsigned short msgId) override;

    /// @return the service's address on its node, node 0x0F01 while the node has no id; CPID 0 before InitEu
    std::uint32_t GetSicad() const override;

    // --- life ---

    /// Parses the command line, brings up the execution environment and runs the main EU until it ends.
    /// @return true after a help request or a normal end; false after a bad command line or a failure
    /// @throws InitFailedException if the execution environment cannot be brought up
    /// First thread. Blocks as long as the service runs.
    bool Startup(int argc, char** argv) override;

    /// Calls Exit and shuts the execution environment down. First thread.
    void Shutdown() override;

    /// Registers the communication point and calls Init. Main EU.
    /// @throws InitFailedException if the registration fails
    void InitEu() override;

    /// Handles one message, waiting for it without limit. Main EU.
    /// @return false once Terminate was called
    /// @throws RuntimeException if the message's delegate failed
    bool Run() override;

    /// Ends the loop after the message that is being handled or that comes next; messages behind it are dropped. The
    /// request stays: a service that is started again ends after its first message. Any thread.
    void Terminate();

    // --- R&D parameters ---

    ERadHwapi GetRadId() const override;

    /// Writes the state parameter: values up to 5 unless SetUseCommonServiceState(0) was called, and values from 7 on.
    /// Others are not written.
    void SetServiceStateRad(unsigned int state) override;

    /// @return the value of the state parameter
    unsigned int GetServiceStateRad();

    /// @param use  0: only values from 7 on, the service's own, reach the state parameter
    void SetUseCommonServiceState(unsigned int use);

    /// Sets an R&D parameter; a failure is logged.
    void SetFlagValue(unsigned int flag, unsigned int value) const;

    // --- configuration tags ---

    /// Has a call-back told of every publication of a tag; a failure is logged.
    void RegisterTag(const std::string& tag, TAaConfigTagCb callback);

    /// Blocks until a tag is published with a value. A value that it has already does not count.
    /// Any thread but the one that serves the configuration's call-backs.
    void WaitForConfigTag(const std::string& tag, unsigned int value);

    /// Has HandleConfigTagChange called for every publication of a tag. A tag that is observed already is logged.
    void SetObservedTag(const std::string& tag);

    /// As SetObservedTag, without looking whether the tag is observed already.
    void AddNewObservedTag(const std::string& tag);

    /// Ends the observation of a tag. A tag that is not observed is logged.
    void UnSetObservedTag(const std::string& tag);

    /// Told of the publications of observed tags; does nothing unless overridden.
    /// Thread of the configuration's call-backs, not the main EU: the override protects what it touches.
    void HandleConfigTagChange(const std::string& tag, unsigned int value) override;

    // --- the rest ---

    const std::string& GetName() const;

    /// @return the parser, for declaring options (constructor) and reading them (from PreStartup on)
    ArgParserBase& GetArgumentParser();

    /// @param verbose  not 0: Startup sets the debug flag
    void SetVerbose(unsigned int verbose);

    /// Takes on root's group; success and failure are logged.
    void SetRootPrivileges();

protected:
    /// Called on the first thread before the execution environment starts, when the command line was good.
    /// @return not used
    virtual bool PreStartup();

    /// Sets the service up: adds the delegates, creates workers. Main EU, after the communication point is registered.
    virtual void Init();

    /// Deregisters the communication point. First thread, during Shutdown.
    virtual void Exit();

    /// Runs the main EU and waits for its end.
    /// @return whether it was created and ended normally
    bool CreateAndStartEu();

    /// Receives one message, waiting for it without limit, and handles it. Main EU.
    /// @throws RuntimeException if the message's delegate threw any std::exception; what else it threw passes through
    void HandleMessages();

    /// Called by Run after each message; does nothing. It is not virtual: a service that feeds a watchdog does so in a
    /// Run of its own.
    void PingWatchdog();

private:
    using DelegateMap = std::map<std::uint16_t, std::unique_ptr<MsgDelegateBase>>;

    static void* ServiceMainEu(void* argument);
    void runLoop();
    void logFailure(const CHwapiException& failure) const;
    bool handleEchoRouteRequest(void*& msg) const;
    void callDelegate(MsgDelegateBase& delegate, void* msg, std::uint16_t id) const;
    void logUnknownMessage(const void* msg, std::uint16_t id) const;

    static void ConfigTagObserver(const char* tag, const void* value, unsigned int length);
    static void WaitForConfigTagObserver(const char* tag, const void* value, unsigned int length);
    static void PostConfigTagSemaphores(const std::string& key);
    static std::string GenerateTagKey(const char* tag, unsigned int value);

    // Destroyed from below: the parser goes before the delegates, and they before the name.
    std::atomic<bool> m_useCommonServiceState{true};
    ERadHwapiState m_stateRadId;
    std::string m_name;
    DelegateMap m_delegates;
    std::chrono::steady_clock::time_point m_startTime{std::chrono::steady_clock::now()};
    std::uint16_t m_requestedCpid;
    std::atomic<std::uint16_t> m_assignedCpid{0};
    ERadHwapi m_radId;
    std::unique_ptr<ArgParserBase> m_argumentParser;
    bool m_verbose = false;
    std::atomic<bool> m_terminateRequest{false};

    static Service* m_impl;
    static std::set<std::string> m_observedTags;
    static std::mutex m_observedTagsMutex;
    /// Who waits for a tag's value, in order of arrival, by tag and value.
    static std::map<std::string, std::list<TAaSem>> m_waitForConfigTagSem;
    static TAaSemReMutex m_waitForConfigTagMutex;
};

} // namespace ps::hwapi::common
