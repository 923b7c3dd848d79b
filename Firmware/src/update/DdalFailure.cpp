#include "update/DdalFailure.hpp"

#include <ddal/ddal.h>

#include <syslog.h>

namespace ps::hwapi::common::update {

void logDdalFailure(const char* function, const char* call, int code) {
    char text[63] = "";
    ddal_strerror(code, text, sizeof text);
    syslog(LOG_INFO, "%s(): %s() failed with error %d '%s'", function, call, code, text);
}

} // namespace ps::hwapi::common::update
