#include "host/run/Run.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>
#include <testkit/BoardTest.hpp>

namespace mox::testkit {
namespace {

bool s_started = false; // of the first thread

} // namespace

BoardTest::BoardTest() {
    std::string why;
    if (host::Run::attach(why) != host::Run::Attach::done)
        ADD_FAILURE() << "this test has no board (" << why << "): does its executable link MOX::testkit?";
}

BoardTest::~BoardTest() {
    stopPlatform();
}

std::uint16_t BoardTest::node() {
    return host::Run::current() == nullptr ? std::uint16_t{0} : host::Run::current()->node();
}

std::string BoardTest::runPath() {
    return host::Run::current() == nullptr ? "" : host::Run::current()->path();
}

void startPlatform() {
    if (AaConfigEarlyStartup() != EAaConfigRetVal_NoError) {
        ADD_FAILURE() << "the configuration could not be opened";
        return;
    }
    // a service that runs in this process has named and started the environment already
    if (AaConfigTagIsSet("pal.service.aapro.eename") == 0)
        AaConfigTagSetString("pal.service.aapro.eename", "Test");
    const int result = AaStartupEeStartup();
    if (result == EAaStartupRetVal_NoError)
        s_started = true;
    else if (result != EAaStartupRetVal_AlreadyStarted)
        ADD_FAILURE() << "the execution environment could not be started: " << result;
}

void stopPlatform() {
    if (s_started)
        AaStartupEeShutdown();
    s_started = false;
}

} // namespace mox::testkit
