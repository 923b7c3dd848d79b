#pragma once
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mox::testing {

/// Whether posix_spawn tells that a program cannot be run. Under an emulator whose vfork is a fork it cannot; the child
/// then ends with 127.
inline bool spawnTellsFailures() {
    pid_t child = 0;
    char program[] = "/no/such/program";
    char* const argv[] = {program, nullptr};
    const bool told = ::posix_spawn(&child, program, nullptr, nullptr, argv, environ) != 0;
    if (!told)
        ::waitpid(child, nullptr, 0);
    return told;
}

} // namespace mox::testing
