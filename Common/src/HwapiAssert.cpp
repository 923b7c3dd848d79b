#include <mox/HwapiAssert.hpp>
#include <mox/Logger.hpp>

#include <boost/assert.hpp>

namespace ps::hwapi::common {
namespace {
namespace constant {
/// Feature identifier of all assertions: the R&D debug flag of the framework's own objects.
constexpr unsigned int assertionFeatureId = 131302;
} // namespace constant
} // namespace

void hwapiAssertFail(const char* expression, const char* file, unsigned int line, const char* function) {
    const Logger log(constant::assertionFeatureId, "assertion error");
    log.logError("Assertion \"%s\" failed in %s (%s:%u)", expression, function, file, line);
    throw AssertionException();
}

} // namespace ps::hwapi::common

namespace boost {

void assertion_failed(char const* expr, char const* function, char const* file, long line) {
    ps::hwapi::common::hwapiAssertFail(expr, file, static_cast<unsigned int>(line), function);
}

// The message is dropped: a boost assertion with a text reads in the log as one without.
void assertion_failed_msg(char const* expr, char const* /*msg*/, char const* function, char const* file, long line) {
    ps::hwapi::common::hwapiAssertFail(expr, file, static_cast<unsigned int>(line), function);
}

} // namespace boost
