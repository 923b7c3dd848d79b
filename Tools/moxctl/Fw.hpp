#pragma once
/// The verbs of the group "fw" that take more than a few lines; Fw.cpp puts them on the command line.
#include <string>

namespace mox::tools {

class Session;

struct FwOptions {
    std::string component;
    std::string file;
    std::string directory;
    std::string unitType;
    std::string count;
    bool explain = false;
    bool force = false;
};

/// Each throws Failure.
void checkFirmware(Session& session, const FwOptions& options);
void updateFirmware(Session& session, const FwOptions& options);
void disableFirmware(Session& session, const FwOptions& options);
void enableFirmware(Session& session, const FwOptions& options);
void forceFirmware(Session& session, const FwOptions& options);
void showFirmware(Session& session);

} // namespace mox::tools
