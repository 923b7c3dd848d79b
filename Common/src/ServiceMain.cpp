#include <mox/Service.hpp>

#include <cstdio>

// Alone in its file: an executable with a main() of its own can link the library, too.

namespace {

using ps::hwapi::common::Service;

/// @return the exit status
int runService(Service& service, int argc, char** argv) {
    try {
        return service.Startup(argc, argv) ? 0 : 1;
    } catch (const Service::InitFailedException& failure) {
        std::fprintf(stderr, "Exception -> %s: %s (file: %s, line: %d)\n", failure.what(),
                     failure.getDescription().c_str(), failure.getFile().c_str(), static_cast<int>(failure.getLine()));
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    Service* const service = Service::Get();
    if (service == nullptr) {
        std::fputs("No service: define one object of a class derived from Service\n", stderr);
        return 1;
    }
    const int exitStatus = runService(*service, argc, argv);
    service->Shutdown();
    return exitStatus;
}
