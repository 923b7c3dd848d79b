#pragma once
#include "FirmMessages.hpp"

#include <cstddef>
#include <string>

namespace mox::firm {

/// What is different from component to component: its name in the operator's marker files and in log lines, and the
/// functions that decide and update.
struct ComponentFunctions {
    Component component;
    const char* name;
    /// @param directory  of the image files
    /// @param[out] path  empty before: the image file, if one was found
    /// @param size       of path in bytes
    /// @return 1 (needed), 0 (not needed), or the negative number of a failure
    int (*check)(const char* directory, char* path, std::size_t size);
    /// The same where force meets a check that said 0. Null: force overrules it, there is nothing more to ask.
    int (*checkForced)(const char* directory, char* path, std::size_t size);
    /// @param path  image file
    /// @return 0 or the negative number of the step that failed
    int (*update)(const char* path);
};

/// @return null if there is no such component
const ComponentFunctions* findComponent(Component component);

/// A component's name, for log lines: "component 7" if there is no such component.
std::string nameOf(Component component);

} // namespace mox::firm
