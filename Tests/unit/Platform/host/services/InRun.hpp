#pragma once
/// A test in a process of a run, with its execution environment running and its log captured.
#include "support/Files.hpp"
#include "support/TemporaryDirectory.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>

#include <gtest/gtest.h>
#include <host/log/Log.hpp>
#include <host/run/Clock.hpp>
#include <host/run/Environment.hpp>
#include <host/run/Run.hpp>
#include <host/store/Store.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

namespace mox::testing {

struct LoggedLine {
    int level;
    unsigned int feature;
    std::string text;
    friend bool operator==(const LoggedLine& a, const LoggedLine& b) {
        return a.level == b.level && a.feature == b.feature && a.text == b.text;
    }
};

inline void PrintTo(const LoggedLine& line, std::ostream* out) {
    *out << line.level << "/" << line.feature << "/" << line.text;
}

class InRun : public ::testing::Test {
protected:
    static constexpr std::uint16_t node = 0x100E;

    static const TemporaryDirectory& run() {
        static const TemporaryDirectory directory;
        return directory;
    }

    static std::string nodePath() { return run() / "nodes/100e"; }

    void SetUp() override {
        joinRun();
        host::log::setCapture([this](int level, unsigned int feature, std::string_view text) {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_lines.push_back({level, feature, std::string(text)});
        });
        ASSERT_EQ(AaConfigEarlyStartup(), 0);
        ASSERT_EQ(AaStartupEeStartup(), 0);
    }

    void TearDown() override {
        if (host::ManualClock::enabled())
            host::ManualClock::disable();
        AaStartupEeShutdown();
        host::log::setCapture(nullptr);
    }

    std::vector<LoggedLine> lines() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_lines;
    }
    void forgetLines() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_lines.clear();
    }
    bool logged(int level, const std::string& part) {
        for (const LoggedLine& line : lines())
            if (line.level == level && line.text.find(part) != std::string::npos)
                return true;
        return false;
    }

    /// Registers the test's thread, whose queue may hold what the test before has left. @return its SIC address
    static std::uint32_t registerSelf() {
        const std::uint32_t self = AaSysComSicadGet(AaSysComEuUserRegister(0), AaSysComGetOwnNid());
        while (void* left = AaSysComMsgReceive(0, 0))
            AaSysComMsgDestroy(&left);
        return self;
    }

private:
    static void joinRun() {
        static const bool made = [] {
            std::filesystem::create_directories(nodePath() + "/fs");
            std::filesystem::create_directories(nodePath() + "/log");
            std::string why;
            const bool opened = host::Store::open(run() / "store", true, why) != nullptr;
            setenv("MOX_RUN", run().path().c_str(), 1);
            setenv("MOX_NODE", "100e", 1);
            return opened;
        }();
        ASSERT_TRUE(made);
    }

    std::mutex m_mutex;
    std::vector<LoggedLine> m_lines;
};

} // namespace mox::testing
