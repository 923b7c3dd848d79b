#include "TestRun.hpp"

#include <gmock/gmock.h>
#include <signal.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

using mox::testing::address;
using mox::testing::Peer;
using mox::testing::TestRun;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string fixedCpid = std::to_string(0x0600);
const std::string fixedAddress = address(0x0600);

} // namespace

TEST(EndpointOfTheRun, IsGivenToOneProcess) {
    const TestRun run;
    Peer first(run);
    Peer second(run);
    EXPECT_EQ(first.ask("register " + fixedCpid), fixedCpid);
    EXPECT_NE(second.ask("register " + fixedCpid), fixedCpid);
    EXPECT_EQ(first.ask("deregister " + fixedCpid), "0");
    EXPECT_EQ(second.ask("register " + fixedCpid), fixedCpid);
}

TEST(EndpointOfTheRun, HasADynamicCpidThatNoOtherProcessHas) {
    const TestRun run;
    std::vector<std::unique_ptr<Peer>> peers;
    std::set<std::string> given;
    for (int i = 0; i < 4; ++i) {
        peers.push_back(std::make_unique<Peer>(run));
        for (int one = 0; one < 5; ++one)
            EXPECT_TRUE(given.insert(peers.back()->ask("register 0")).second);
    }
    for (const std::string& cpid : given)
        EXPECT_GE(std::stoi(cpid), 0x8000);
}

TEST(EndpointOfADeadProcess, IsToldAsGoneAtOnce) {
    const TestRun run;
    Peer client(run);
    Peer server(run);
    server.ask("register " + fixedCpid);
    EXPECT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
    server.kill();
    const std::string answer = client.ask("send " + fixedAddress + " 1 4");
    EXPECT_THAT(answer, StartsWith("0 4 "));
    EXPECT_LT(std::stoi(answer.substr(4)), 500);
}

TEST(EndpointOfADeadProcess, IsFreeForTheNextOne) {
    const TestRun run;
    Peer client(run);
    for (int i = 0; i < 5; ++i) {
        Peer server(run);
        ASSERT_EQ(server.ask("register " + fixedCpid), fixedCpid) << i;
        ASSERT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
        ASSERT_THAT(server.ask("receive 10000000"), StartsWith("id 1 "));
        server.kill();
    }
}

TEST(EndpointThatIsRegisteredAgain, IsReachedBySendersThatKnewTheOldOne) {
    const TestRun run;
    Peer client(run);
    Peer first(run);
    Peer second(run);
    for (int i = 0; i < 5; ++i) {
        Peer& server = i % 2 == 0 ? first : second;
        ASSERT_EQ(server.ask("register " + fixedCpid), fixedCpid);
        ASSERT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
        ASSERT_THAT(server.ask("receive 10000000"), StartsWith("id 1 "));
        ASSERT_EQ(server.ask("deregister " + fixedCpid), "0");
        ASSERT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("0 4 "));
    }
}

TEST(EndpointThatIsDeregistered, LeavesWhatWasSentToBeReceived) {
    const TestRun run;
    Peer client(run);
    Peer server(run);
    server.ask("register " + fixedCpid);
    ASSERT_THAT(client.ask("send " + fixedAddress + " 1 4 5"), StartsWith("5 0 "));
    ASSERT_EQ(server.ask("deregister " + fixedCpid), "0");
    EXPECT_EQ(server.ask("collect 5 0"), "all");
    EXPECT_EQ(server.ask("receive -1"), "none") << "an execution unit without registration does not wait";
}

TEST(EndpointThatIsRefused, LeavesItsEuWithoutQueue) {
    const TestRun run;
    Peer first(run);
    Peer second(run);
    first.ask("register " + fixedCpid);
    EXPECT_EQ(second.ask("register " + fixedCpid), "0");
    EXPECT_EQ(second.ask("receive -1"), "none");
}

TEST(EndpointOfALivingProcess, StaysItsOwnWhenAnotherHasNoDescriptorsLeft) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the checks for undefined behaviour need descriptors of their own";
#endif
    const TestRun run;
    Peer server(run);
    Peer poor(run);
    Peer client(run);
    ASSERT_EQ(server.ask("register " + fixedCpid), fixedCpid);
    poor.ask("exhaust");
    EXPECT_EQ(poor.ask("register " + fixedCpid), "0");
    EXPECT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
    EXPECT_THAT(server.ask("receive 10000000"), StartsWith("id 1 "));
}

TEST(ProcessWithoutDescriptors, IsNotToldThatItsReceiverIsGone) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the checks for undefined behaviour need descriptors of their own";
#endif
    const TestRun run;
    Peer server(run);
    Peer sut(run);
    ASSERT_EQ(server.ask("server " + fixedCpid), "0");
    ASSERT_EQ(server.ask("server 0x0601"), "0");
    ASSERT_THAT(sut.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
    sut.ask("exhaust");
    EXPECT_THAT(sut.ask("send " + address(0x0601) + " 1 4"), StartsWith("0 3 "));
    EXPECT_THAT(sut.ask("send " + address(0x0602) + " 1 4"), StartsWith("0 3 ")) << "nor there, where it cannot look";
    EXPECT_THAT(sut.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 ")) << "what is open goes on";
}

TEST(ProcessWithFewDescriptors, IsWokenWhereItCouldRegister) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the checks for undefined behaviour need descriptors of their own";
#endif
    constexpr int enough = 8;
    const TestRun run;
    for (int left = 0; left <= enough; ++left) {
        Peer sut(run);
        sut.ask("exhaust " + std::to_string(left));
        const bool registered = sut.ask("register " + fixedCpid) == fixedCpid;
        EXPECT_TRUE(registered || left != enough);
        if (registered) {
            EXPECT_EQ(sut.ask("local " + fixedAddress + " 100 1"), "0");
            EXPECT_EQ(sut.ask("collect 100 10000000"), "all") << left;
        } else {
            EXPECT_THAT(sut.log(), testing::HasSubstr("cannot register")) << left;
        }
    }
}

TEST(ProcessWhoseNodeIsGone, IsToldOnceThatItCannotRegister) {
    const TestRun run;
    Peer sut(run);
    std::filesystem::remove_all(run.nodePath());
    EXPECT_EQ(sut.ask("register 0"), "0");
    const std::string log = sut.log();
    const std::size_t first = log.find("cannot ");
    EXPECT_NE(first, std::string::npos);
    EXPECT_EQ(log.find("cannot ", first + 1), std::string::npos) << log.substr(0, 1000);
}

TEST(SocketsOfARun, AreGoneWhenItsProcessesHaveEnded) {
    const TestRun run;
    {
        Peer first(run);
        Peer second(run);
        first.ask("register 0x0600");
        first.ask("further 0");
        second.ask("register 0");
        second.ask("send " + fixedAddress + " 1 4");
        EXPECT_EQ(first.children(), 0U);
        EXPECT_EQ(first.end(), 0);
        EXPECT_EQ(second.end(), 0);
    }
    EXPECT_THAT(run.sockets(), IsEmpty());
}

TEST(SocketsOfARun, ThatAKilledProcessLeftGoWithTheNextStart) {
    const TestRun run;
    {
        Peer killed(run);
        killed.ask("register 0x0600");
        killed.kill();
    }
    ASSERT_THAT(run.sockets(), Not(IsEmpty()));
    {
        Peer next(run);
        next.ask("register 0x0600");
        EXPECT_EQ(next.end(), 0);
    }
    EXPECT_THAT(run.sockets(), IsEmpty());
}

TEST(SocketsOfARun, ComeAgainWhenTheEnvironmentStartsAgain) {
    const TestRun run;
    Peer sut(run);
    Peer client(run);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(sut.ask("register " + fixedCpid), fixedCpid);
        ASSERT_THAT(client.ask("send " + fixedAddress + " 1 4"), StartsWith("1 0 "));
        ASSERT_EQ(sut.ask("collect 1 10000000"), "all");
        ASSERT_EQ(sut.ask("shutdown"), "0");
        ASSERT_EQ(sut.ask("startup"), "0");
    }
}

TEST(EnvironmentWhoseNodeIsGone, DoesNotStart) {
    const TestRun run;
    Peer sut(run);
    ASSERT_EQ(sut.ask("shutdown"), "0");
    std::filesystem::remove_all(run.nodePath());
    EXPECT_EQ(sut.ask("startup"), "4");
    EXPECT_EQ(sut.ask("shutdown"), "1") << "it is not running";
}

TEST(Descriptors, DoNotGrowWithRegistrations) {
    const TestRun run;
    Peer server(run);
    Peer sut(run);
    ASSERT_EQ(server.ask("server 0x0680"), "0");
    EXPECT_EQ(sut.ask("cycles 10 0x0700 " + address(0x0680)), "0");
    sut.ask("clear");
    const int before = std::stoi(sut.ask("descriptors"));
    EXPECT_EQ(sut.ask("cycles 1000 0x0700 " + address(0x0680)), "0");
    sut.ask("clear");
    EXPECT_LE(std::stoi(sut.ask("descriptors")), before + 1) << "one may be held by who reads it just now";
}

TEST(Descriptors, DoNotGrowWithTheNumberOfPartnersThatCameAndWent) {
    const TestRun run;
    Peer sut(run);
    sut.ask("register " + fixedCpid);
    Peer partner(run);
    partner.ask("register 0x0601");
    const int before = std::stoi(sut.ask("descriptors"));
    for (int i = 0; i < 1000; ++i) {
        const std::string cpid = std::to_string(0x1000 + i);
        ASSERT_EQ(partner.ask("further " + cpid), cpid);
        ASSERT_THAT(sut.ask("send " + address(static_cast<std::uint16_t>(0x1000 + i)) + " 1 4"), StartsWith("1 0 "));
        ASSERT_EQ(partner.ask("deregister " + cpid), "0");
        ASSERT_THAT(partner.ask("receive 1000000"), StartsWith("id 1 "));
    }
    EXPECT_LE(std::stoi(sut.ask("descriptors")), before + 300);
}
