#include "Boards.hpp"

#include "Failure.hpp"
#include "FileText.hpp"
#include "Launch.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace mox::tools {

const char* const defaultBoard = "echo-pair";

namespace {

namespace fs = std::filesystem;

constexpr const char* ending = ".json";

std::string directoryOfBoards() {
    if (const char* named = std::getenv("MOX_BOARDS")) {
        return named;
    }
    const std::string installed = ownDirectory() + "/../share/mox/boards";
    return fs::is_directory(installed) ? installed : MOXCTL_BOARDS;
}

Board readFile(const fs::path& path) {
    Board board{path.stem().string(), path.string(), {}};
    if (!readFileText(path.string(), board.text)) {
        throw Failure(ExitStatus::usage, path.string() + ": expected a board description: " + std::strerror(errno));
    }
    return board;
}

} // namespace

std::vector<Board> readyMadeBoards() {
    std::vector<Board> boards;
    std::error_code none; // no directory: no boards
    for (const fs::directory_entry& entry : fs::directory_iterator(directoryOfBoards(), none)) {
        const std::string name = entry.path().filename().string();
        if (entry.path().extension() == ending && name.find(".schema.") == std::string::npos) {
            boards.push_back(readFile(entry.path()));
        }
    }
    std::sort(boards.begin(), boards.end(), [](const Board& a, const Board& b) { return a.name < b.name; });
    return boards;
}

Board readBoard(const std::string& fileOrName) {
    const fs::path readyMade = fs::path(directoryOfBoards()) / (fileOrName + ending);
    const bool isFile = fileOrName.find('/') != std::string::npos || fs::path(fileOrName).extension() == ending;
    if (!isFile && fs::exists(readyMade)) {
        return readFile(readyMade);
    }
    if (!fs::is_regular_file(fileOrName)) {
        throw Failure(ExitStatus::usage, fileOrName +
                                             ": expected the file of a board description, or a name of 'moxctl "
                                             "sim new --list'");
    }
    return readFile(fileOrName);
}

} // namespace mox::tools
