#pragma once

namespace mox::firmwaretest {

/// While it lives, snprintf answers a format with a failure, which with real texts takes gigabytes of them. One at a
/// time.
class PrintingFails {
public:
    PrintingFails(const char* format, int result);
    ~PrintingFails();
    PrintingFails(const PrintingFails&) = delete;
    PrintingFails& operator=(const PrintingFails&) = delete;
};

} // namespace mox::firmwaretest
