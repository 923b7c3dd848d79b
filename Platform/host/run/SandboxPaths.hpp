#pragma once
/// Paths as the sandbox sees them. Internal to Sandbox.cpp.
#include <string>
#include <vector>

namespace mox::host {

/// A directory that each node has of its own.
struct PrivateDirectory {
    const char* inside;  ///< where the node's processes find it
    const char* storage; ///< below nodes/<nid>/fs
};

/// In the order in which they are mounted: a directory stands behind those that contain it.
const std::vector<PrivateDirectory>& privateDirectories();

/// Whether a path is one of the directories above or lies below one.
bool isHidden(const std::string& path);

/// Whether a path is one of the directories above or contains one, so that mounting it would undo the sandbox.
bool wouldUncover(const std::string& path);

/// The path without ".", ".." and links not resolved; absolute.
std::string absolutePath(const std::string& path);

/// The absolute path of a program. @return empty when there is none
std::string findProgram(const std::string& name);

/// Whether an executable is made for another machine than `native` is. Scripts are for every machine.
bool isForeign(const std::string& executable, const std::string& native);

/// The words of a text, separated by blanks.
std::vector<std::string> words(const std::string& text);

} // namespace mox::host
