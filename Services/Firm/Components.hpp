#pragma once
#include "FirmMessages.hpp"

#include <string>

namespace mox::firm {

/// What is different from component to component: its name in the operator's marker files and in log lines, and the
/// functions that decide and update.
struct ComponentFunctions {
    Component component;
    const char* name;
    /// @param directory    of the image files
    /// @param[out] path    Answer::pathSize bytes, empty before: the image file, if one was found
    /// @param force        the update is wanted whatever is active; what this does not overrule is the component's own
    ///                     business
    /// @return 1 (needed), 0 (not needed), or the negative number of a failure
    int (*check)(const char* directory, char* path, bool force);
    /// @param path  image file
    /// @return 0 or the negative number of the step that failed
    int (*update)(const char* path);
};

/// @return null if there is no such component
const ComponentFunctions* findComponent(Component component);

/// A component's name, for log lines: "component 7" if there is no such component.
std::string nameOf(Component component);

} // namespace mox::firm
