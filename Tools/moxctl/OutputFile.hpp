#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace mox::tools {

/// A file that stands under its name when it is complete, or not at all: it is written beside it and renamed.
///
///     OutputFile file("new.bin", options.force, {options.payload});
///     file.write(bytes.data(), bytes.size());
///     file.commit();
///
/// Every function throws Failure: usage for a name that may not be used, failed when the disk refuses.
class OutputFile {
public:
    /// @param path     name of the file to be
    /// @param replace  whether a regular file of that name may be replaced
    /// @param inputs   files that the command reads: never replaced, under whatever name or link
    OutputFile(const std::string& path, bool replace, const std::vector<std::string>& inputs);
    /// Removes what was written, unless commit() was called.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const void* bytes, std::size_t size);
    /// Where the bytes are until commit(); others may write there in place of write().
    const std::string& temporaryPath() const { return m_temporary; }
    /// Gives the file its name. The bytes are on the disk before.
    void commit();

private:
    [[noreturn]] void fail(int reason) const;

    std::string m_path;
    std::string m_temporary;
    int m_fd = -1;
    bool m_replace;
};

} // namespace mox::tools
