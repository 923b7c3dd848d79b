#pragma once
#include <exception>
#include <string>

namespace ps::hwapi::common {

/// Root of the failures that a caller cannot handle locally: what kind, what happened, and where it was thrown.
///
/// A derived class supplies its own kind text and takes the other three from the throw site:
///
///     class QueueFullException : public CHwapiException {
///     public:
///         QueueFullException(const std::string& description, const char* file, unsigned int line)
///             : CHwapiException("Queue full", description, file, line) {}
///     };
///     throw QueueFullException("no room for request 7", "Common/src/Worker", 42);
///
/// Copies carry all four items: the message loop rethrows a copy after it has released the message.
class CHwapiException : public std::exception {
public:
    /// @param what         kind of the failure, one fixed text a class
    /// @param description  what happened, free text
    /// @param file         source path of the throw, without extension; null counts as an empty path
    /// @param line         line of the throw
    CHwapiException(const std::string& what, const std::string& description, const char* file, unsigned int line);

    CHwapiException(const CHwapiException& other) = default;
    CHwapiException& operator=(const CHwapiException& other) = default;
    ~CHwapiException() override;

    /// @return the kind text, valid as long as this object
    const char* what() const noexcept override;

    /// @return the source path of the throw
    const std::string& getFile() const noexcept;

    /// @return the line of the throw
    unsigned int getLine() const noexcept;

    /// @return what happened, as the throw site put it
    const std::string& getDescription() const noexcept;

private:
    std::string m_what;
    std::string m_description;
    std::string m_file;
    unsigned int m_line;
};

} // namespace ps::hwapi::common
