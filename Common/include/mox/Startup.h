#pragma once
/// Brings a process into the platform's execution environment and registers what the hardware services share there:
/// the log domain "HWAPI" and the R&D parameter domains "HWA" and "HWAState". First thread only.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Starts configuration and execution environment, reads "/opt/mox/mox.xml" (which may be missing), and registers log
/// domain and R&D domains. Standard output is line-buffered afterwards.
/// @param argc    not used
/// @param argv    its first word names the program in what is printed; null: no progress line, failures print
///                "argv is null"
/// @param eeName  name of the execution environment
/// @param cpid    not used
/// @return 1; 0 after a failure, which is on standard output or, once there is a log, in the log
/// Blocks for the time that joining the node takes.
int ApiStartupInitializeExecutable(int argc, char** argv, const char* eeName, uint16_t cpid);

/// Gives the hardware services' log domain its buffers and makes it the domain of this process. The sizes come from the
/// tags "pal.service.aasyslog.hwapi.startuplog.size" (1 or more bytes) and
/// "pal.service.aasyslog.hwapi.runtimelog.size" (51200 or more bytes). Without usable sizes a line is logged and
/// the process keeps its domain.
/// Does not block.
void ApiRegisterSysLogBuffer(void);

/// Initialiser of the R&D domain "HWA": names all debug flags and sets their defaults.
void ApiStartupInitializeRadParameters(void);

/// Initialiser of the R&D domain "HWAState": names all state parameters and sets their defaults.
void ApiStartupInitializeStateRadParameters(void);

#ifdef __cplusplus
}
#endif
