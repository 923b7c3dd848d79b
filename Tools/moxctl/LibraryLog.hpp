#pragma once

namespace mox::tools {

class Output;

/// Takes the log lines that library functions write to the terminal while the object lives: moxctl says itself what
/// came out. With --verbose they are shown as remarks. One at a time.
class LibraryLog {
public:
    explicit LibraryLog(const Output& output);
    ~LibraryLog();
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;
};

} // namespace mox::tools
