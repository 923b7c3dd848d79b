#pragma once
#include <mox/pal/PALInterface.hpp>

namespace ps::hwapi::common::pal {

/// The middleware itself: hands each operation on to the platform's function of the same name. Holds nothing.
class PALInstance : public PALInterface {
public:
    // Start-up
    int AaStartupAtEeShutdown(TAaStartupShutdownCb callback) const override;

    // Messages, addresses and their execution units
    EAaProEuRetVal AaSysComEuCreateAndStartWithPolicy(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                      uint32_t stackSize, EAaProEuSchedulingPolicy policy,
                                                      uint32_t priority, uint32_t options, const void* argument,
                                                      uint32_t argumentSize, uint32_t wait) const override;
    uint16_t AaSysComEuUserRegister(uint16_t cpid) const override;
    uint16_t AaSysComUserRegister(uint16_t cpid) const override;
    EAaSysComRetVal AaSysComUserDeregister(uint16_t cpid) const override;
    void* AaSysComMsgCreate(uint16_t id, uint32_t payloadSize, uint32_t receiver) const override;
    EAaSysComRetVal AaSysComMsgDestroy(void** msg) const override;
    EAaSysComRetVal AaSysComMsgSendS(void* msg, uint32_t sender) const override;
    void* AaSysComMsgReceive(int32_t timeoutUs, uint32_t option) const override;
    uint32_t AaSysComSicadGet(uint16_t cpid, uint16_t nid) const override;
    uint16_t AaSysComSicadGetCpid(uint32_t sicad) const override;
    uint16_t AaSysComGetOwnNid() const override;
    uint32_t AaSysComMsgGetSender(const void* msg) const override;
    uint16_t AaSysComMsgGetId(const void* msg) const override;
    void* AaSysComMsgGetPayload(const void* msg) const override;
    EAaSysComRetVal AaSysComLinkRegister(uint32_t sicad, uint32_t receiver) const override;
    EAaSysComRetVal AaSysComHopRegister(uint16_t nid, uint32_t via) const override;
    EAaProEuRetVal AaSysComEuCreateAndStart(uint32_t* euId, const char* name, TAaProEuEntry entry, uint32_t stackSize,
                                            uint32_t priority, const void* argument,
                                            uint32_t argumentSize) const override;
    EAaSysComRetVal AaSysComLinkDeregister(uint32_t sicad, uint32_t receiver) const override;
    void* AaSysComMsgCreateCopyTo(const void* msg, uint32_t receiver) const override;
    EAaSysComRetVal AaSysComMsgSend(void* msg) const override;
    uint16_t AaSysComSicadGetNid(uint32_t sicad) const override;
    EAaSysComRetVal AaSysComMsgSetSender(void* msg, uint32_t sender) const override;
    EAaSysComRetVal AaSysComMsgSetReceiver(void* msg, uint32_t receiver) const override;
    uint16_t AaSysComNmapGetBoard(uint32_t sicad) const override;
    uint16_t AaSysComNmapGetCpu(uint32_t sicad) const override;
    uint32_t AaSysComNmapGetSicad(uint16_t board, uint16_t cpu, uint16_t cpid) const override;
    void* AaSysComMsgCreateCopy(const void* msg) const override;
    void* AaSysComMsgCreateReply(const void* request, uint16_t id, uint32_t payloadSize) const override;
    uint32_t AaSysComMsgGetReceiver(const void* msg) const override;
    void* AaSysComMsgReceiveSelective(int32_t timeoutUs, const uint16_t* filter) const override;
    EAaSysComRetVal AaSysComMsgRelay(void* msg, uint32_t receiver) const override;
    EAaSysComRetVal AaSysComMsgForward(void* msg, uint32_t receiver) const override;
    uint32_t AaSysComMsgGetPayloadSize(const void* msg) const override;
    void* AaSysComMsgTake(void** msg) const override;

    // Files
    int AaFileExists(const char* fileName) const override;
    TAaFile AaFileOpen(const char* fileName, const char* mode) const override;
    int AaFileClose(TAaFile file) const override;
    int AaFileRemove(const char* fileName) const override;
    int AaFileReadLine(char* line, unsigned int size, TAaFile file) const override;
    size_t AaFileWrite(const void* buffer, size_t size, size_t count, TAaFile file) const override;
    int AaFileDirExists(const char* dirName) const override;
    int AaFileTarItem(const char* itemName, const char* tarName) const override;
    int AaFileListDir(const char* dirName, SAaFileDnode** entries, unsigned int* count) const override;
    void AaFileFreeListDirArray(SAaFileDnode* entries, unsigned int count) const override;

    // Semaphores
    EAaSemRetVal AaSemCreateC(TAaSem* sem, uint32_t initialCount) const override;
    EAaSemRetVal AaSemCreateNamedC(TAaSem* sem, const char* name, uint32_t initialCount) const override;
    EAaSemRetVal AaSemDestroy(TAaSem sem) const override;
    EAaSemRetVal AaSemUnlink(const char* name) const override;
    EAaSemRetVal AaSemWait(TAaSem sem) const override;
    EAaSemRetVal AaSemGetValue(TAaSem sem, int32_t* value) const override;
    EAaSemRetVal AaSemPost(TAaSem sem) const override;
    EAaSemRetVal AaSemWaitPri(TAaSem sem) const override;
    EAaSemRetVal AaSemPostPri(TAaSem sem) const override;

    // Time and timers
    int AaLocalTimeGet(SAaTime* time) const override;
    int AaSysTimermCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, void* message) const override;
    int AaSysTimermCreateLong(uint32_t* timerId, uint64_t timeoutMs, uint64_t periodMs, void* message) const override;
    int AaSysTimerDelete(uint32_t timerId) const override;
    int AaSysTimermDelete(uint32_t timerId, void** message) const override;
    int AaSysTimerReset(uint32_t timerId) const override;
    int AaSysTimeSleep(uint32_t value, EAaSysTimeScale scale) const override;
    int AaUtcTimeSet(const SAaTime* time) const override;
    int AaUtcTimeGet(SAaTime* time) const override;
    int AaSysTimercCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, TAaSysTimerCb callback,
                          void* argument, EAaSysTimePriority priority) const override;

    // Execution units and commands
    EAaProEuRetVal AaProCmdExec(const char* command, int32_t* exitStatus) const override;
    EAaProEuRetVal AaProCmdExecRaw(const char* const* arguments, char* output, size_t outputSize,
                                   int32_t* exitStatus) const override;
    EAaProEuRetVal AaProEeGetDefaultSchedulingPolicy(EAaProEuSchedulingPolicy* policy) const override;
    uint32_t AaProEuCurrent() const override;

    // Configuration
    int AaConfigRadSetValue(unsigned int id, unsigned int value) const override;
    int AaConfigTagGet(const char* tag, void** data, unsigned int* size) const override;
    int AaConfigTagGetString(const char* tag, char** value, unsigned int* length) const override;
    int AaConfigTagGetU32(const char* tag, uint32_t* value) const override;
    int AaConfigTagGetU16(const char* tag, uint16_t* value) const override;
    int AaConfigTagPublicSet(const char* tag, const void* data, unsigned int size) const override;
    int AaConfigTagRegister(const char* tag, TAaConfigTagCb callback) const override;
    int AaConfigTagUnregister(const char* tag, TAaConfigTagCb callback) const override;
    unsigned int AaConfigRadGetValue(unsigned int id) const override;
    int AaConfigSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                 TAaConfigTagCb callback) const override;
    int AaConfigUnSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                   TAaConfigTagCb callback) const override;

    // Shell commands
    int AaShellAddCommand(const char* name, const char* help, TAaShellCommandCb callback) const override;
    int AaShellApplicationStartup() const override;
    int AaShellDeleteCommand(const char* name) const override;

    // Mailboxes
    int AaSysMbPrepare(uint16_t messageId, uint32_t publisher) const override;
    int AaSysMbPublish(void* message, EAaSysMbPublMode mode) const override;
    int AaSysMbRecall(uint16_t messageId, uint32_t publisher) const override;

    // Memory
    void AaMemUnRef(void* block) const override;

    // Troubleshooting files
    int AaTrblFileRegister(const char* name, const char* fileName, EAaTrblFilePriority priority, uint32_t maxBytes,
                           TAaTrblPrepareFileCb prepare, TAaTrblStoreFileCb store, TAaTrblDeleteFileCb discard,
                           uint32_t* opaque) const override;
    int AaTrblFileUnregister(const char* name) const override;
};

} // namespace ps::hwapi::common::pal
