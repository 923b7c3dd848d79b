#pragma once
#include "PeerProcess.hpp"
#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <host/board/CreateRun.hpp>
#include <host/store/Store.hpp>

namespace mox::testing {

/// A run with the nodes 1011 and 1021, to which the test itself does not belong.
class RunOfTwoNodes : public ::testing::Test {
protected:
    void SetUp() override {
        constexpr const char* text = R"({"nodes": [{"id": "0x1011", "unit": {"id": "KORA", "hwSwId": 0}},
                                                   {"id": "0x1021", "unit": {"id": "KORA", "hwSwId": 0}}]})";
        ASSERT_TRUE(mox::host::createRun(run, text, "board.json", why)) << why;
    }

    std::unique_ptr<mox::host::Store> store() { return mox::host::Store::open(run + "/store", false, why); }

    std::size_t entries(mox::host::Table table) {
        std::size_t count = 0;
        store()->forEach(table, "", [&](auto, auto) { return ++count > 0; });
        return count;
    }

    TemporaryDirectory directory;
    const std::string run = directory / "run";
    std::string why;
};

} // namespace mox::testing
