#pragma once
#include "Components.hpp"
#include "FirmMessages.hpp"

#include <string>

namespace mox::firm {

/// Whether a component is to be updated, and from which file.
struct Verdict {
    State state = State::checkFailed; ///< notNeeded, needed, disabled, checkFailed
    std::int32_t result = 0;          ///< of the check, 0 if updates are disabled
    bool forced = false;              ///< needed only because it was forced
    std::string path = {};            ///< empty if no image was found
};

/// Which forces may make an update needed that is not.
enum class Force {
    byRequest, ///< the request's flag
    byMarker   ///< the operator's marker file too, of which one use is taken then
};

/// Looks at the operator's markers and at the images.
/// @param component  what is asked about
/// @param request    whose flag counts
/// @param directory  of the image files
/// @param force      whether the marker may be used up
Verdict decide(const ComponentFunctions& component, const Request& request, const std::string& directory, Force force);

} // namespace mox::firm
