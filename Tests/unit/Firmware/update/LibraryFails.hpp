#pragma once
/// Failures of the C library that no test can bring about. One object of a class at a time.

namespace mox::firmwaretest {

/// While it lives, snprintf answers a format with a failure, which with real texts takes gigabytes of them.
class PrintingFails {
public:
    PrintingFails(const char* format, int result);
    ~PrintingFails();
    PrintingFails(const PrintingFails&) = delete;
    PrintingFails& operator=(const PrintingFails&) = delete;
};

/// While it lives, one call of opendir fails.
class OpeningDirectoriesFails {
public:
    /// @param nth  which call; 1: the next one
    explicit OpeningDirectoriesFails(int nth);
    ~OpeningDirectoriesFails();
    OpeningDirectoriesFails(const OpeningDirectoriesFails&) = delete;
    OpeningDirectoriesFails& operator=(const OpeningDirectoriesFails&) = delete;
};

} // namespace mox::firmwaretest
