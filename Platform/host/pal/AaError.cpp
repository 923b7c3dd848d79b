#include "AaError.hpp"

#include "../run/PlatformLog.hpp"

#include <cstdlib>

namespace mox::host {

void AaErrorAssertion(const char* condition, const char* file, unsigned int line) {
    logPlatform(4, "Assertion failed: %s, file %s, line %u", condition ? condition : "(no text)",
                file ? file : "(no file)", line);
    std::abort();
}

} // namespace mox::host
