#include <mox/pal/PALInstance.hpp>

namespace ps::hwapi::common::pal {

int PALInstance::AaStartupAtEeShutdown(TAaStartupShutdownCb callback) const {
    return ::AaStartupAtEeShutdown(callback);
}

EAaProEuRetVal PALInstance::AaSysComEuCreateAndStartWithPolicy(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                               uint32_t stackSize, EAaProEuSchedulingPolicy policy,
                                                               uint32_t priority, uint32_t options,
                                                               const void* argument, uint32_t argumentSize,
                                                               uint32_t wait) const {
    return ::AaSysComEuCreateAndStartWithPolicy(euId, name, entry, stackSize, policy, priority, options, argument,
                                                argumentSize, wait);
}

uint16_t PALInstance::AaSysComEuUserRegister(uint16_t cpid) const {
    return ::AaSysComEuUserRegister(cpid);
}

uint16_t PALInstance::AaSysComUserRegister(uint16_t cpid) const {
    return ::AaSysComUserRegister(cpid);
}

EAaSysComRetVal PALInstance::AaSysComUserDeregister(uint16_t cpid) const {
    return ::AaSysComUserDeregister(cpid);
}

void* PALInstance::AaSysComMsgCreate(uint16_t id, uint32_t payloadSize, uint32_t receiver) const {
    return ::AaSysComMsgCreate(id, payloadSize, receiver);
}

EAaSysComRetVal PALInstance::AaSysComMsgDestroy(void** msg) const {
    return ::AaSysComMsgDestroy(msg);
}

EAaSysComRetVal PALInstance::AaSysComMsgSendS(void* msg, uint32_t sender) const {
    return ::AaSysComMsgSendS(msg, sender);
}

void* PALInstance::AaSysComMsgReceive(int32_t timeoutUs, uint32_t option) const {
    return ::AaSysComMsgReceive(timeoutUs, option);
}

uint32_t PALInstance::AaSysComSicadGet(uint16_t cpid, uint16_t nid) const {
    return ::AaSysComSicadGet(cpid, nid);
}

uint16_t PALInstance::AaSysComSicadGetCpid(uint32_t sicad) const {
    return ::AaSysComSicadGetCpid(sicad);
}

uint16_t PALInstance::AaSysComGetOwnNid() const {
    return ::AaSysComGetOwnNid();
}

uint32_t PALInstance::AaSysComMsgGetSender(const void* msg) const {
    return ::AaSysComMsgGetSender(msg);
}

uint16_t PALInstance::AaSysComMsgGetId(const void* msg) const {
    return ::AaSysComMsgGetId(msg);
}

void* PALInstance::AaSysComMsgGetPayload(const void* msg) const {
    return ::AaSysComMsgGetPayload(msg);
}

EAaSysComRetVal PALInstance::AaSysComLinkRegister(uint32_t sicad, uint32_t receiver) const {
    return ::AaSysComLinkRegister(sicad, receiver);
}

EAaSysComRetVal PALInstance::AaSysComHopRegister(uint16_t nid, uint32_t via) const {
    return ::AaSysComHopRegister(nid, via);
}

EAaProEuRetVal PALInstance::AaSysComEuCreateAndStart(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                     uint32_t stackSize, uint32_t priority, const void* argument,
                                                     uint32_t argumentSize) const {
    return ::AaSysComEuCreateAndStart(euId, name, entry, stackSize, priority, argument, argumentSize);
}

EAaSysComRetVal PALInstance::AaSysComLinkDeregister(uint32_t sicad, uint32_t receiver) const {
    return ::AaSysComLinkDeregister(sicad, receiver);
}

void* PALInstance::AaSysComMsgCreateCopyTo(const void* msg, uint32_t receiver) const {
    return ::AaSysComMsgCreateCopyTo(msg, receiver);
}

EAaSysComRetVal PALInstance::AaSysComMsgSend(void* msg) const {
    return ::AaSysComMsgSend(msg);
}

uint16_t PALInstance::AaSysComSicadGetNid(uint32_t sicad) const {
    return ::AaSysComSicadGetNid(sicad);
}

EAaSysComRetVal PALInstance::AaSysComMsgSetSender(void* msg, uint32_t sender) const {
    return ::AaSysComMsgSetSender(msg, sender);
}

EAaSysComRetVal PALInstance::AaSysComMsgSetReceiver(void* msg, uint32_t receiver) const {
    return ::AaSysComMsgSetReceiver(msg, receiver);
}

uint16_t PALInstance::AaSysComNmapGetBoard(uint32_t sicad) const {
    return ::AaSysComNmapGetBoard(sicad);
}

uint16_t PALInstance::AaSysComNmapGetCpu(uint32_t sicad) const {
    return ::AaSysComNmapGetCpu(sicad);
}

uint32_t PALInstance::AaSysComNmapGetSicad(uint16_t board, uint16_t cpu, uint16_t cpid) const {
    return ::AaSysComNmapGetSicad(board, cpu, cpid);
}

void* PALInstance::AaSysComMsgCreateCopy(const void* msg) const {
    return ::AaSysComMsgCreateCopy(msg);
}

void* PALInstance::AaSysComMsgCreateReply(const void* request, uint16_t id, uint32_t payloadSize) const {
    return ::AaSysComMsgCreateReply(request, id, payloadSize);
}

uint32_t PALInstance::AaSysComMsgGetReceiver(const void* msg) const {
    return ::AaSysComMsgGetReceiver(msg);
}

void* PALInstance::AaSysComMsgReceiveSelective(int32_t timeoutUs, const uint16_t* filter) const {
    return ::AaSysComMsgReceiveSelective(timeoutUs, filter);
}

EAaSysComRetVal PALInstance::AaSysComMsgRelay(void* msg, uint32_t receiver) const {
    return ::AaSysComMsgRelay(msg, receiver);
}

EAaSysComRetVal PALInstance::AaSysComMsgForward(void* msg, uint32_t receiver) const {
    return ::AaSysComMsgForward(msg, receiver);
}

uint32_t PALInstance::AaSysComMsgGetPayloadSize(const void* msg) const {
    return ::AaSysComMsgGetPayloadSize(msg);
}

void* PALInstance::AaSysComMsgTake(void** msg) const {
    return ::AaSysComMsgTake(msg);
}

int PALInstance::AaFileExists(const char* fileName) const {
    return ::AaFileExists(fileName);
}

TAaFile PALInstance::AaFileOpen(const char* fileName, const char* mode) const {
    return ::AaFileOpen(fileName, mode);
}

int PALInstance::AaFileClose(TAaFile file) const {
    return ::AaFileClose(file);
}

int PALInstance::AaFileRemove(const char* fileName) const {
    return ::AaFileRemove(fileName);
}

int PALInstance::AaFileReadLine(char* line, unsigned int size, TAaFile file) const {
    return ::AaFileReadLine(line, size, file);
}

size_t PALInstance::AaFileWrite(const void* buffer, size_t size, size_t count, TAaFile file) const {
    return ::AaFileWrite(buffer, size, count, file);
}

int PALInstance::AaFileDirExists(const char* dirName) const {
    return ::AaFileDirExists(dirName);
}

int PALInstance::AaFileTarItem(const char* itemName, const char* tarName) const {
    return ::AaFileTarItem(itemName, tarName);
}

int PALInstance::AaFileListDir(const char* dirName, SAaFileDnode** entries, unsigned int* count) const {
    return ::AaFileListDir(dirName, entries, count);
}

void PALInstance::AaFileFreeListDirArray(SAaFileDnode* entries, unsigned int count) const {
    ::AaFileFreeListDirArray(entries, count);
}

EAaSemRetVal PALInstance::AaSemCreateC(TAaSem* sem, uint32_t initialCount) const {
    return ::AaSemCreateC(sem, initialCount);
}

EAaSemRetVal PALInstance::AaSemCreateNamedC(TAaSem* sem, const char* name, uint32_t initialCount) const {
    return ::AaSemCreateNamedC(sem, name, initialCount);
}

EAaSemRetVal PALInstance::AaSemDestroy(TAaSem sem) const {
    return ::AaSemDestroy(sem);
}

EAaSemRetVal PALInstance::AaSemUnlink(const char* name) const {
    return ::AaSemUnlink(name);
}

EAaSemRetVal PALInstance::AaSemWait(TAaSem sem) const {
    return ::AaSemWait(sem);
}

EAaSemRetVal PALInstance::AaSemGetValue(TAaSem sem, int32_t* value) const {
    return ::AaSemGetValue(sem, value);
}

EAaSemRetVal PALInstance::AaSemPost(TAaSem sem) const {
    return ::AaSemPost(sem);
}

EAaSemRetVal PALInstance::AaSemWaitPri(TAaSem sem) const {
    return ::AaSemWaitPri(sem);
}

EAaSemRetVal PALInstance::AaSemPostPri(TAaSem sem) const {
    return ::AaSemPostPri(sem);
}

int PALInstance::AaLocalTimeGet(SAaTime* time) const {
    return ::AaLocalTimeGet(time);
}

int PALInstance::AaSysTimermCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, void* message) const {
    return ::AaSysTimermCreate(timerId, timeoutMs, periodMs, message);
}

int PALInstance::AaSysTimermCreateLong(uint32_t* timerId, uint64_t timeoutMs, uint64_t periodMs, void* message) const {
    return ::AaSysTimermCreateLong(timerId, timeoutMs, periodMs, message);
}

int PALInstance::AaSysTimerDelete(uint32_t timerId) const {
    return ::AaSysTimerDelete(timerId);
}

int PALInstance::AaSysTimermDelete(uint32_t timerId, void** message) const {
    return ::AaSysTimermDelete(timerId, message);
}

int PALInstance::AaSysTimerReset(uint32_t timerId) const {
    return ::AaSysTimerReset(timerId);
}

int PALInstance::AaSysTimeSleep(uint32_t value, EAaSysTimeScale scale) const {
    return ::AaSysTimeSleep(value, scale);
}

int PALInstance::AaUtcTimeSet(const SAaTime* time) const {
    return ::AaUtcTimeSet(time);
}

int PALInstance::AaUtcTimeGet(SAaTime* time) const {
    return ::AaUtcTimeGet(time);
}

int PALInstance::AaSysTimercCreate(uint32_t* timerId, uint32_t timeoutMs, uint32_t periodMs, TAaSysTimerCb callback,
                                   void* argument, EAaSysTimePriority priority) const {
    return ::AaSysTimercCreate(timerId, timeoutMs, periodMs, callback, argument, priority);
}

EAaProEuRetVal PALInstance::AaProCmdExec(const char* command, int32_t* exitStatus) const {
    return ::AaProCmdExec(command, exitStatus);
}

EAaProEuRetVal PALInstance::AaProCmdExecRaw(const char* const* arguments, char* output, size_t outputSize,
                                            int32_t* exitStatus) const {
    return ::AaProCmdExecRaw(arguments, output, outputSize, exitStatus);
}

EAaProEuRetVal PALInstance::AaProEeGetDefaultSchedulingPolicy(EAaProEuSchedulingPolicy* policy) const {
    return ::AaProEeGetDefaultSchedulingPolicy(policy);
}

uint32_t PALInstance::AaProEuCurrent() const {
    return ::AaProEuCurrent();
}

int PALInstance::AaConfigRadSetValue(unsigned int id, unsigned int value) const {
    return ::AaConfigRadSetValue(id, value);
}

int PALInstance::AaConfigTagGet(const char* tag, void** data, unsigned int* size) const {
    return ::AaConfigTagGet(tag, data, size);
}

int PALInstance::AaConfigTagGetString(const char* tag, char** value, unsigned int* length) const {
    return ::AaConfigTagGetString(tag, value, length);
}

int PALInstance::AaConfigTagGetU32(const char* tag, uint32_t* value) const {
    return ::AaConfigTagGetU32(tag, value);
}

int PALInstance::AaConfigTagGetU16(const char* tag, uint16_t* value) const {
    return ::AaConfigTagGetU16(tag, value);
}

int PALInstance::AaConfigTagPublicSet(const char* tag, const void* data, unsigned int size) const {
    return ::AaConfigTagPublicSet(tag, data, size);
}

int PALInstance::AaConfigTagRegister(const char* tag, TAaConfigTagCb callback) const {
    return ::AaConfigTagRegister(tag, callback);
}

int PALInstance::AaConfigTagUnregister(const char* tag, TAaConfigTagCb callback) const {
    return ::AaConfigTagUnregister(tag, callback);
}

unsigned int PALInstance::AaConfigRadGetValue(unsigned int id) const {
    return ::AaConfigRadGetValue(id);
}

int PALInstance::AaConfigSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                          TAaConfigTagCb callback) const {
    return ::AaConfigSubscribeService(service, scope, callback);
}

int PALInstance::AaConfigUnSubscribeService(const char* service, EAaConfigSvcRegScope scope,
                                            TAaConfigTagCb callback) const {
    return ::AaConfigUnSubscribeService(service, scope, callback);
}

int PALInstance::AaShellAddCommand(const char* name, const char* help, TAaShellCommandCb callback) const {
    return ::AaShellAddCommand(name, help, callback);
}

int PALInstance::AaShellApplicationStartup() const {
    return ::AaShellApplicationStartup();
}

int PALInstance::AaShellDeleteCommand(const char* name) const {
    return ::AaShellDeleteCommand(name);
}

int PALInstance::AaSysMbPrepare(uint16_t messageId, uint32_t publisher) const {
    return ::AaSysMbPrepare(messageId, publisher);
}

int PALInstance::AaSysMbPublish(void* message, EAaSysMbPublMode mode) const {
    return ::AaSysMbPublish(message, mode);
}

int PALInstance::AaSysMbRecall(uint16_t messageId, uint32_t publisher) const {
    return ::AaSysMbRecall(messageId, publisher);
}

void PALInstance::AaMemUnRef(void* block) const {
    ::AaMemUnRef(block);
}

int PALInstance::AaTrblFileRegister(const char* name, const char* fileName, EAaTrblFilePriority priority,
                                    uint32_t maxBytes, TAaTrblPrepareFileCb prepare, TAaTrblStoreFileCb store,
                                    TAaTrblDeleteFileCb discard, uint32_t* opaque) const {
    return ::AaTrblFileRegister(name, fileName, priority, maxBytes, prepare, store, discard, opaque);
}

int PALInstance::AaTrblFileUnregister(const char* name) const {
    return ::AaTrblFileUnregister(name);
}

} // namespace ps::hwapi::common::pal
