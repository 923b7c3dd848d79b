#pragma once
/// Calls of the C library that fail: what a device or a memory does that gives up, at the call of choice. The linker
/// puts these in the place of the library's calls (see CMakeLists.txt).
#include <functional>
#include <string>

namespace mox::images {

/// While one lives, the n-th call of a function fails, and with it those behind it, or something happens before it.
///
///     const StdioFault fault("fseek", 2);                   // fails from the second call on
///     const StdioFault other("fread", 1, [&] { shrink(); }); // happens before the first, which is then carried out
class StdioFault {
public:
    StdioFault(const std::string& function, unsigned call, std::function<void()> instead = nullptr);
    ~StdioFault();
    StdioFault(const StdioFault&) = delete;
    StdioFault& operator=(const StdioFault&) = delete;

    /// How often the function was called meanwhile.
    unsigned calls() const;
};

} // namespace mox::images
