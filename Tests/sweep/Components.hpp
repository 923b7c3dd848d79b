#pragma once
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace mox::sweep {

/// What the sweeps update, on a board of type Kor.
struct Component {
    const char* name;      ///< to the runner
    const char* function;  ///< in reports
    const char* imageName; ///< of the image file
    const char* temporary; ///< where its payload lies during the update
    /// Whether an update is needed; for the boot loader as if an operator forced it, because it is otherwise only
    /// updated when it was started from RAM.
    int (*ask)(const char* directory, char* outPath, std::size_t outPathSize);
    int (*update)(const char* imagePath);
};

void PrintTo(const Component& component, std::ostream* out);

extern const Component ubootComponent;
extern const Component bmuComponent;
extern const Component fpgaComponent;

/// @return null for another name
const Component* findComponent(const std::string& name);

/// Directory of the image files.
constexpr const char* imageDirectory = "/ffs/run/boot";

inline std::string imagePath(const Component& component) {
    return std::string(imageDirectory) + "/" + component.imageName;
}

} // namespace mox::sweep
