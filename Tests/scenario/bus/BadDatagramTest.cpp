#include "TestRun.hpp"

#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

using mox::testing::address;
using mox::testing::Peer;
using mox::testing::TestRun;
using testing::StartsWith;

namespace {

constexpr std::uint32_t receiver = 0x10110600;
const std::string endpointSocket = "0600.sock";

std::string datagram(const SAaSysComMsgHeader& header, std::size_t bodySize) {
    std::string bytes(sizeof(header) + bodySize, '\0');
    std::memcpy(bytes.data(), &header, sizeof(header));
    return bytes;
}

/// Datagrams that are no message to the receiver.
std::vector<std::string> badMessages() {
    const SAaSysComMsgHeader good{1, 0, receiver, 0x10110700, 0, 8};
    std::vector<std::string> bad;
    bad.emplace_back();                                                    // empty
    bad.emplace_back("x");                                                 // a byte
    bad.push_back(datagram(good, 0).substr(0, sizeof(good) - 1));          // most of a header
    bad.push_back(datagram(good, 7));                                      // a byte is missing
    bad.push_back(datagram(good, 9));                                      // one too many
    bad.push_back(datagram({1, 0, receiver, 0, 3, 8}, 8));                 // trailer announced, not there
    bad.push_back(datagram({1, 0, receiver, 0, 3, 5}, 5 + 8));             // trailer where it does not belong
    bad.push_back(datagram({1, 0, 0x10110601, 0, 0, 8}, 8));               // for somebody else
    bad.push_back(datagram({1, 0, receiver, 0, 0, 65535}, 65534));         // large and short
    bad.push_back(datagram({1, 0, receiver, 0, 3, 65535}, 65536 + 8 + 1)); // longer than any message
    bad.emplace_back(150000, 'x');                                         // much longer
    // One that is bad spoils all of its datagram.
    bad.push_back(datagram(good, 8) + datagram(good, 7));
    bad.push_back(datagram(good, 8) + datagram({1, 0, 0x10110601, 0, 0, 8}, 8));
    bad.push_back(datagram(good, 8) + datagram(good, 8) + "x");
    return bad;
}

std::size_t linesAbout(const std::string& log, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = log.find(what); at != std::string::npos; at = log.find(what, at + 1))
        ++count;
    return count;
}

class BadDatagram : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(sut.ask("register 0x0600"), std::to_string(0x0600)); }

    std::string processSocket() const { return "p" + std::to_string(sut.pid()) + ".sock"; }

    /// Messages that are well formed still come in.
    void expectService() {
        const SAaSysComMsgHeader header{0x4242, 0, receiver, 0x10110700, 0, 8};
        EXPECT_TRUE(run.sendRaw(endpointSocket, datagram(header, 8)));
        for (std::string got; got.find("id 16962 ") != 0;) {
            got = sut.ask("receive 10000000");
            ASSERT_NE(got, "none");
            ASSERT_THAT(got, StartsWith("id "));
        }
    }

    TestRun run;
    Peer sut{run};
};

} // namespace

TEST_F(BadDatagram, ToAnEndpointIsDroppedAndCounted) {
    const auto bad = badMessages();
    for (std::size_t i = 0; i < bad.size(); ++i) {
        EXPECT_TRUE(run.sendRaw(endpointSocket, bad[i])) << i;
        EXPECT_EQ(sut.ask("receive 1000"), "none") << i;
        EXPECT_EQ(sut.ask("dropped"), std::to_string(i + 1)) << i;
    }
    expectService();
}

TEST_F(BadDatagram, IsNoneThatHoldsSeveralMessages) {
    const std::string first = datagram({1, 0, receiver, 0x10110700, 3, 5}, 8 + 8);
    const std::string second = datagram({2, 0, receiver, 0x10110701, 0, 0}, 0);
    const std::string third = datagram({3, 0, receiver, 0x10110702, 0, 7}, 7);
    ASSERT_TRUE(run.sendRaw(endpointSocket, first + second + third));
    EXPECT_THAT(sut.ask("receive 10000000"), StartsWith("id 1 "));
    EXPECT_THAT(sut.ask("receive 10000000"), StartsWith("id 2 "));
    EXPECT_THAT(sut.ask("receive 10000000"), StartsWith("id 3 "));
    EXPECT_EQ(sut.ask("receive 0"), "none");
    EXPECT_EQ(sut.ask("dropped"), "0");
}

TEST_F(BadDatagram, ToAProcessIsDroppedAndCounted) {
    std::uint32_t magic = 0x4E584F4D;
    std::string unknownTopic(12, '\0');
    std::memcpy(unknownTopic.data(), &magic, sizeof(magic));
    unknownTopic[4] = 77;
    for (const std::string& bad : {std::string(), std::string("x"), std::string(11, '\0'), std::string(12, '\0'),
                                   unknownTopic, std::string(200000, 'x')})
        EXPECT_TRUE(run.sendRaw(processSocket(), bad)) << bad.size();
    expectService();
    EXPECT_EQ(sut.ask("await-dropped 6"), "6");
}

TEST_F(BadDatagram, IsLoggedAtMostOnceASecond) {
    sut.start("collect 1 3000000");
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(run.sendRaw(endpointSocket, "nonsense"));
    EXPECT_THAT(sut.answer(), StartsWith("time-out"));
    EXPECT_EQ(sut.ask("dropped"), "2000");
    const std::size_t lines = linesAbout(sut.log(), "datagram dropped");
    EXPECT_GE(lines, 1U);
    EXPECT_LE(lines, 4U);
}

TEST_F(BadDatagram, OfWhichThereIsNoEndLeavesTimeLimitsInForce) {
    std::atomic<bool> enough{false};
    std::vector<std::thread> senders;
    for (int i = 0; i < 4; ++i)
        senders.emplace_back([&] {
            while (!enough)
                run.fillRaw(endpointSocket);
        });
    const std::string waited = sut.ask("wait 300000");
    enough = true;
    for (std::thread& sender : senders)
        sender.join();
    EXPECT_THAT(waited, testing::MatchesRegex("[0-9]+"));
    EXPECT_LT(std::stoi("0" + waited), 5000);
    sut.ask("wait 300000"); // takes the rest
    expectService();
}

TEST_F(BadDatagram, IsWhatThereIsNoMemoryForButNotWhatCameBefore) {
    const std::string first = datagram({1, 0, receiver, 0x10110700, 0, 8}, 8);
    const std::string second = datagram({2, 0, receiver, 0x10110701, 0, 8}, 8);
    sut.ask("hoard 1");
    ASSERT_TRUE(run.sendRaw(endpointSocket, first + second));
    EXPECT_THAT(sut.ask("receive 3000000"), StartsWith("id 1 "));
    EXPECT_EQ(sut.ask("dropped"), "1");
}

TEST_F(BadDatagram, OfAnyKindLeavesTheServiceAlive) {
    std::mt19937 random(20240613);
    const auto anyOf = [&](std::uint32_t count) { return static_cast<std::uint32_t>(random()) % count; };
    ASSERT_EQ(sut.ask("server 0x0680"), "0");
    sut.start("drain");
    for (int i = 0; i < 100000; ++i) {
        const auto size = static_cast<std::uint16_t>(anyOf(10) == 0 ? anyOf(65536) : anyOf(40));
        std::string bytes = datagram({static_cast<std::uint16_t>(random()), 0, receiver, 0x10110700,
                                      static_cast<std::uint16_t>(anyOf(2) * 3), size},
                                     size);
        for (std::uint32_t mutations = anyOf(4); mutations > 0; --mutations)
            bytes[anyOf(static_cast<std::uint32_t>(bytes.size()))] = static_cast<char>(random());
        if (anyOf(3) == 0)
            bytes.resize(anyOf(static_cast<std::uint32_t>(bytes.size()) + 30));
        if (!run.sendRaw(anyOf(8) == 0 ? processSocket() : endpointSocket, bytes))
            FAIL() << "not accepted: " << i;
    }
    const SAaSysComMsgHeader last{0x4242, 0, receiver, 0x10110700, 0, 0};
    ASSERT_TRUE(run.sendRaw(endpointSocket, datagram(last, 0)));
    EXPECT_EQ(sut.answer(), "drained");
    Peer client(run);
    client.ask("register 0");
    EXPECT_EQ(client.ask("pingpong " + address(0x0680) + " 100"), "played");
    EXPECT_GT(std::stoi(sut.ask("dropped")), 10000);
}
