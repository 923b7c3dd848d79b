// Each test here does on purpose what a test must not do.
#include <mox/Service.hpp>
#include <pal/AaSem.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>
#include <testkit/ChildService.hpp>
#include <testkit/InProcessService.hpp>
#include <testkit/Messages.hpp>

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace {

using namespace mox::testkit;

class Failing : public BoardTest {};

TEST_F(Failing, Crashes) {
    std::ofstream("/ram/before") << "crash";
    std::raise(SIGKILL); // no sanitizer catches it
}

TEST_F(Failing, HangsForEver) {
    std::cout << "hanging as process " << getpid() << std::endl;
    for (;;)
        pause();
}

TEST_F(Failing, LogsAWarningThatNobodyExpects) {
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, 0x20003, "nobody expects this");
}

TEST_F(Failing, AwaitsAMessageThatNeverComes) {
    Messages script;
    script.send(script.address(), 0x0601, {1, 2, 255});
    script.await(0x0602, 50);
}

TEST_F(Failing, SendsToNobody) {
    Messages script;
    script.send(0x10110777, 0x0601);
}

TEST_F(Failing, LeavesASemaphoreOpen) {
    TAaSem sem = nullptr;
    AaSemCreateC(&sem, 1);
}

TEST_F(Failing, StartsAServiceThatDoesNotExist) {
    const ChildService none("NoSuchService", 0);
}

TEST_F(Failing, StartsAServiceThatEndsAtOnce) {
    const ChildService helped("Echo", 0x220034, {"--help"});
}

class HangingDelegate : public ps::hwapi::common::MsgDelegateBase {
public:
    HangingDelegate() : MsgDelegateBase(0x0601) {}
    void HandleMessage(void*) override {
        for (;;)
            pause();
    }
};

TEST_F(Failing, StartsAServiceThatDoesNotStop) {
    ps::hwapi::common::Service service("Hanging", 0x0620, ps::hwapi::common::ERadHwapi{},
                                       ps::hwapi::common::ERadHwapiState(0x220001));
    service.AddMsgDelegate(std::make_unique<HangingDelegate>());
    InProcessService running(service);
    AaSysComMsgSend(AaSysComMsgCreate(0x0601, 0, running.address()));
    running.stop(50);
}

const bool s_misspelt = std::getenv("MISSPELL_A_SUITE") != nullptr && (BoardOf("Fialing", Board::plain()), true);

class OnAWrongBoard : public BoardTest {};
const BoardOf s_wrong("OnAWrongBoard", Board::text("{\"name\": \"wrong\", \"nodes\": 7}"));

TEST_F(OnAWrongBoard, IsNotRun) {}

TEST(NotFailing, Passes) {}

} // namespace
