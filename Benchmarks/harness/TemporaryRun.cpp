#include "TemporaryRun.hpp"

#include "Suite.hpp"

#include <pal/AaConfig.h>
#include <pal/AaStartup.h>

#include <host/board/CreateRun.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace mox::bench {

namespace {

constexpr const char* board = R"({"nodes": [{"id": "0x1011", "unit": {"id": "KORA", "hwSwId": "0x00500000"}}]})";

} // namespace

TemporaryRun::TemporaryRun() {
    char pattern[] = "/tmp/mox-bench-XXXXXX";
    if (mkdtemp(pattern) == nullptr) {
        die("mkdtemp");
    }
    m_path = pattern;
    std::string why;
    if (!host::createRun(m_path, board, "benchmark", why)) {
        std::fprintf(stderr, "benchmark: %s\n", why.c_str());
        die("run");
    }
    setenv("MOX_RUN", pattern, 1);
}

TemporaryRun::~TemporaryRun() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void TemporaryRun::join() {
    if (AaConfigEarlyStartup() != 0 || AaStartupEeStartup() != 0) {
        die("platform");
    }
}

} // namespace mox::bench
