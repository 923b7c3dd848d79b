#include "abi/forwarding.hpp"

#include <mox/pal/PALInstance.hpp>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace ps::hwapi::common::pal {
namespace {

using mox::abi::ForwardingRow;
using mox::abi::forwardingRow;

static_assert(std::has_virtual_destructor_v<PALInterface> && std::is_abstract_v<PALInterface>);
static_assert(std::is_convertible_v<PALInstance*, PALInterface*>, "a public base");
static_assert(sizeof(PALInstance) == sizeof(void*), "no data");

#define ROW(name) forwardingRow<PALInstance>(#name, &PALInterface::name, &::name, #name)

// clang-format off
const std::vector<ForwardingRow> inOrderOfSlots = mox::abi::inSlotOrder({
    ROW(AaStartupAtEeShutdown),
    ROW(AaSysComEuCreateAndStartWithPolicy),
    ROW(AaSysComEuUserRegister),
    ROW(AaSysComUserRegister),
    ROW(AaSysComUserDeregister),
    ROW(AaSysComMsgCreate),
    ROW(AaSysComMsgDestroy),
    ROW(AaSysComMsgSendS),
    ROW(AaSysComMsgReceive),
    ROW(AaSysComSicadGet),
    ROW(AaSysComSicadGetCpid),
    ROW(AaSysComGetOwnNid),
    ROW(AaSysComMsgGetSender),
    ROW(AaSysComMsgGetId),
    ROW(AaSysComMsgGetPayload),
    ROW(AaSysComLinkRegister),
    ROW(AaSysComHopRegister),
    ROW(AaSysComEuCreateAndStart),
    ROW(AaSysComLinkDeregister),
    ROW(AaSysComMsgCreateCopyTo),
    ROW(AaSysComMsgSend),
    ROW(AaSysComSicadGetNid),
    ROW(AaSysComMsgSetSender),
    ROW(AaSysComMsgSetReceiver),
    ROW(AaSysComNmapGetBoard),
    ROW(AaSysComNmapGetCpu),
    ROW(AaSysComNmapGetSicad),
    ROW(AaSysComMsgCreateCopy),
    ROW(AaSysComMsgCreateReply),
    ROW(AaSysComMsgGetReceiver),
    ROW(AaSysComMsgReceiveSelective),
    ROW(AaSysComMsgRelay),
    ROW(AaSysComMsgForward),
    ROW(AaSysComMsgGetPayloadSize),
    ROW(AaSysComMsgTake),
    ROW(AaFileExists),
    ROW(AaFileOpen),
    ROW(AaFileClose),
    ROW(AaFileRemove),
    ROW(AaFileReadLine),
    ROW(AaFileWrite),
    ROW(AaFileDirExists),
    ROW(AaFileTarItem),
    ROW(AaFileListDir),
    ROW(AaFileFreeListDirArray),
    ROW(AaSemCreateC),
    ROW(AaSemCreateNamedC),
    ROW(AaSemDestroy),
    ROW(AaSemUnlink),
    ROW(AaSemWait),
    ROW(AaSemGetValue),
    ROW(AaSemPost),
    ROW(AaSemWaitPri),
    ROW(AaSemPostPri),
    ROW(AaLocalTimeGet),
    ROW(AaSysTimermCreate),
    ROW(AaSysTimermCreateLong),
    ROW(AaSysTimerDelete),
    ROW(AaSysTimermDelete),
    ROW(AaSysTimerReset),
    ROW(AaSysTimeSleep),
    ROW(AaUtcTimeSet),
    ROW(AaUtcTimeGet),
    ROW(AaSysTimercCreate),
    ROW(AaProCmdExec),
    ROW(AaProCmdExecRaw),
    ROW(AaProEeGetDefaultSchedulingPolicy),
    ROW(AaProEuCurrent),
    ROW(AaConfigRadSetValue),
    ROW(AaConfigTagGet),
    ROW(AaConfigTagGetString),
    ROW(AaConfigTagGetU32),
    ROW(AaConfigTagGetU16),
    ROW(AaConfigTagPublicSet),
    ROW(AaConfigTagRegister),
    ROW(AaConfigTagUnregister),
    ROW(AaConfigRadGetValue),
    ROW(AaConfigSubscribeService),
    ROW(AaConfigUnSubscribeService),
    ROW(AaShellAddCommand),
    ROW(AaShellApplicationStartup),
    ROW(AaShellDeleteCommand),
    ROW(AaSysMbPrepare),
    ROW(AaSysMbPublish),
    ROW(AaSysMbRecall),
    ROW(AaMemUnRef),
    ROW(AaTrblFileRegister),
    ROW(AaTrblFileUnregister)
});
// clang-format on

#undef ROW

class PalOperationBySlot : public testing::TestWithParam<ForwardingRow> {};

TEST_P(PalOperationBySlot, ReachesThePlatformUnchanged) {
    GetParam().expectForwarded(GetParam().slot);
}

INSTANTIATE_TEST_SUITE_P(EachOperation, PalOperationBySlot, testing::ValuesIn(inOrderOfSlots), mox::abi::operationOf);

TEST(PalOperationBySlots, AreAllCovered) {
    EXPECT_EQ(inOrderOfSlots.size(), 88U);
}

} // namespace
} // namespace ps::hwapi::common::pal
