#pragma once
#include <pal/AaConfig.h>
#include <pal/AaFile.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

namespace ps::hwapi::common::pal {

/// The middleware's functions as an object, for services that want to be given another middleware in a test.
///
///     const std::shared_ptr<pal::PALInterface> platform = InterfaceFactory<pal::PALInterface>::Get();
///     void* request = platform->AaSysComMsgCreate(id, sizeof(Request), receiver);
///
/// Each operation has the name, parameters and results of the platform's function; its text in the platform's header
/// holds here too: meaning, ownership, threads, blocking.
///
/// The order is the order of the slots in the virtual table. Services that were compiled against an earlier header
/// call by slot, so nothing moves, and new operations go to the end.
class PALInterface {
public:
    virtual ~PALInterface() = default;

    // Start-up
    virtual int AaStartupAtEeShutdown(TAaStartupShutdownCb callback) const = 0;

    // Messages, addresses and their execution units
    virtual EAaProEuRetVal AaSysComEuCreateAndStartWithPolicy(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                              uint32_t stackSize, EAaProEuSchedulingPolicy policy,
                                                              uint32_t priority, uint32_t options, const void* argument,
                                                              uint32_t argumentSize, uint32_t wait) const = 0;
    virtual uint16_t AaSysComEuUserRegister(uint16_t cpid) const = 0;
    virtual uint16_t AaSysComUserRegister(uint16_t cpid) const = 0;
    virtual EAaSysComRetVal AaSysComUserDeregister(uint16_t cpid) const = 0;
    virtual void* AaSysComMsgCreate(uint16_t id, uint32_t payloadSize, uint32_t receiver) const = 0;
    virtual EAaSysComRetVal AaSysComMsgDestroy(void** msg) const = 0;
    virtual EAaSysComRetVal AaSysComMsgSendS(void* msg, uint32_t sender) const = 0;
    virtual void* AaSysComMsgReceive(int32_t timeoutUs, uint32_t option) const = 0;
    virtual uint32_t AaSysComSicadGet(uint16_t cpid, uint16_t nid) const = 0;
    virtual uint16_t AaSysComSicadGetCpid(uint32_t sicad) const = 0;
    virtual uint16_t AaSysComGetOwnNid() const = 0;
    virtual uint32_t AaSysComMsgGetSender(const void* msg) const = 0;
    virtual uint16_t AaSysComMsgGetId(const void* msg) const = 0;
    virtual void* AaSysComMsgGetPayload(const void* msg) const = 0;
    virtual EAaSysComRetVal AaSysComLinkRegister(uint32_t sicad, uint32_t receiver) const = 0;
    virtual EAaSysComRetVal AaSysComHopRegister(uint16_t nid, uint32_t via) const = 0;
    virtual EAaProEuRetVal AaSysComEuCreateAndStart(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                    uint32_t stackSize, uint32_t priority, const void* argument,
                                                    uint32_t argumentSize) const = 0;
    virtual EAaSysComRetVal AaSysComLinkDeregister(uint32_t sicad, uint32_t receiver) const = 0;
    virtual void* AaSysComMsgCreateCopyTo(const void* msg, uint32_t receiver) const = 0;
    virtual EAaSysComRetVal AaSysComMsgSend(void* msg) const = 0;
    virtual uint16_t AaSysComSicadGetNid(uint32_t sicad) const = 0;
    virtual EAaSysComRetVal AaSysComMsgSetSender(void* msg, uint32_t sender) const = 0;
    virtual EAaSysComRetVal AaSysComMsgSetReceiver(void* msg, uint32_t receiver) const = 0;
    virtual uint16_t AaSysComNmapGetBoard(uint32_t sicad) const = 0;
    virtual uint16_t AaSysComNmapGetCpu(uint32_t sicad) const = 0;
    virtual uint32_t AaSysComNmapGetSicad(uint16_t board, uint16_t cpu, uint16_t cpid) const = 0;
    virtual void* AaSysComMsgCreateCopy(const void* msg) const = 0;
    virtual void* AaSysComMsgCreateReply(const void* request, uint16_t id, uint32_t payloadSize) const = 0;
    virtual uint32_t AaSysComMsgGetReceiver(const void* msg) const = 0;
    virtual void* AaSysComMsgReceiveSelective(int32_t timeoutUs, const uint16_t* filter) const = 0;
    virtual EAaSysComRetVal AaSysComMsgRelay(void* msg, uint32_t receiver) const = 0;
    virtual EAaSysComRetVal AaSysComMsgForward(void* msg, uint32_t receiver) const = 0;
    virtual uint32_t AaSysComMsgGetPayloadSize(const void* msg) const = 0;
    virtual void* AaSysComMsgTake(void** msg) const = 0;

    // Files
    virtual int AaFileExists(const char* fileName) const = 0;
    virtual TAaFile AaFileOpen(const char* fileName, const char* mode) const = 0;
    virtual int AaFileClose(TAaFile file) const = 0;
    virtual int AaFileRemove(const char* fileName) const = 0;
    virtual int AaFileReadLine(char* line, unsigned int size, TAaFile file) const = 0;
    virtual size_t AaFileWrite(const void* buffer, size_t size, size_t count, TAaFile file) const = 0;
    virtual int AaFileDirExists(const char* dirName) const = 0;
    virtual int AaFileTarItem(const char* itemName, const char* tarName) const = 0;
    virtual int AaFileListDir(const char* dirName, SAaFileDnode** entries, unsigned int* count) const = 0;
    virtual void AaFileFreeListDirArray(SAaFileDnode* entries, unsigned int count) const = 0;

    // Semaphores
    virtual EAaSemRetVal AaSemCreateC(TAaSem* sem, uint32_t initialCount) const = 0;
    virtual EAaSemRetVal AaSemCreateNamedC(TAaSem* sem, const char* name, uint32_t initialCount) const = 0;
    virtual EAaSemRetVal AaSemDestroy(TAaSem sem) const = 0;
    virtual EAaSemRetVal AaSemUnlink(const char* name) const = 0;
    virtual EAaSemRetVal AaSemWait(TAaSem sem) const = 0;
    virtual EAaSemRetVal AaSemGetValue(TAaSem sem, int32_t* value) const = 0;
    virtual EAaSemRetVal AaSemPost(TAaSem sem) const = 0;
    virtual EAaSemRetVal AaSemWaitPri(TAaSem sem) const = 0;
    virtual EAaSemRetVal AaSemPostPri(TAaSem sem) const = 0;

    // Time and timers
    virtual int AaLocalTimeGet(SAaTime* time) const = 0;
    virtual int AaSysTimermCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, void* message) const = 0;
    virtual int AaSysTimermCreateLong(uint32_t* timerId, uint64_t timeoutMs, uint64_t periodMs,
                                      void* message) const = 0;
    virtual int AaSysTimerDelete(uint32_t timerId) const = 0;
    virtual int AaSysTimermDelete(uint32_t timerId, void** message) const = 0;
    virtual int AaSysTimerReset(uint32_t timerId) const = 0;
    virtual int AaSysTimeSleep(uint32_t value, EAaSysTimeScale scale) const = 0;
    virtual int AaUtcTimeSet(const SAaTime* time) const = 0;
    virtual int AaUtcTimeGet(SAaTime* time) const = 0;
    virtual int AaSysTimercCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, TAaSysTimerCb callback,
                                  void* argument, EAaSysTimePriority priority) const = 0;

    // Execution units and commands
    virtual EAaProEuRetVal AaProCmdExec(const char* command, int32_t* exitStatus) const = 0;
    virtual EAaProEuRetVal AaProCmdExecRaw(const char* const* arguments, char* output, size_t outputSize,
                                           int32_t* exitStatus) const = 0;
    virtual EAaProEuRetVal AaProEeGetDefaultSchedulingPolicy(EAaProEuSchedulingPolicy* policy) const = 0;
    virtual uint32_t AaProEuCurrent() const = 0;

    // Configuration
    virtual int AaConfigRadSetValue(unsigned int id, unsigned int value) const = 0;
    virtual int AaConfigTagGet(const char* tag, void** data, unsigned int* size) const = 0;
    virtual int AaConfigTagGetString(const char* tag, char** value, unsigned int* length) const = 0;
    virtual int AaConfigTagGetU32(const char* tag, uint32_t* value) const = 0;
    virtual int AaConfigTagGetU16(const char* tag, uint16_t* value) const = 0;
    virtual int AaConfigTagPublicSet(const char* tag, const void* data, unsigned int size) const = 0;
    virtual int AaConfigTagRegister(const char* tag, TAaConfigTagCb callback) const = 0;
    virtual int AaConfigTagUnregister(const char* tag, TAaConfigTagCb callback) const = 0;
    virtual unsigned int AaConfigRadGetValue(unsigned int id) const = 0;
    virtual int AaConfigSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                         TAaConfigTagCb callback) const = 0;
    virtual int AaConfigUnSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                           TAaConfigTagCb callback) const = 0;

    // Shell commands
    virtual int AaShellAddCommand(const char* name, const char* help, TAaShellCommandCb callback) const = 0;
    virtual int AaShellApplicationStartup() const = 0;
    virtual int AaShellDeleteCommand(const char* name) const = 0;

    // Mailboxes
    virtual int AaSysMbPrepare(uint16_t messageId, uint32_t publisher) const = 0;
    virtual int AaSysMbPublish(void* message, EAaSysMbPublMode mode) const = 0;
    virtual int AaSysMbRecall(uint16_t messageId, uint32_t publisher) const = 0;

    // Memory
    virtual void AaMemUnRef(void* block) const = 0;

    // Troubleshooting files
    virtual int AaTrblFileRegister(const char* name, const char* fileName, EAaTrblFilePriority priority,
                                   uint32_t maxBytes, TAaTrblPrepareFileCb prepare, TAaTrblStoreFileCb store,
                                   TAaTrblDeleteFileCb discard, uint32_t* opaque) const = 0;
    virtual int AaTrblFileUnregister(const char* name) const = 0;
};

} // namespace ps::hwapi::common::pal
