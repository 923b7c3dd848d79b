#pragma once
/// Board descriptions that are at hand by name.
#include <string>
#include <vector>

namespace mox::tools {

/// A description as text, and the file that it came from.
struct Board {
    std::string name; ///< the file's, without ".json"
    std::string file;
    std::string text;
};

/// The description that is used when none is named.
extern const char* const defaultBoard;

/// All ready-made descriptions, by name. They lie in the directory that MOX_BOARDS names; else in share/mox/boards
/// beside the program's directory; else where this program was built.
std::vector<Board> readyMadeBoards();

/// Reads a description: a file, or a ready-made one by its name. Throws Failure (usage) when there is none.
Board readBoard(const std::string& fileOrName);

} // namespace mox::tools
