// Starts a program in a sandbox: RUN NODE PROGRAM [ARGUMENT...]. SandboxTest.cpp runs it within another sandbox.
#include "host/run/Sandbox.hpp"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc < 4)
        return 2;
    const auto node = static_cast<std::uint16_t>(std::strtoul(argv[2], nullptr, 16));
    std::string why;
    const auto started = mox::host::spawnInSandbox(argv[1], node, {argv + 3, argv + argc}, {}, why);
    if (!started) {
        std::puts(why.c_str());
        return 1;
    }
    int status = 0;
    waitpid(started->sandbox, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
