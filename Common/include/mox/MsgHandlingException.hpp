#pragma once
#include <mox/CHwapiException.hpp>

#include <string>

namespace ps::hwapi::common {

/// A message could not be handled. Its kind text is "Message handling error".
class MsgHandlingException : public CHwapiException {
public:
    /// @param description  which operation failed, and at what
    /// @param file         source path of the throw, without extension
    /// @param line         line of the throw
    MsgHandlingException(const std::string& description, const char* file, unsigned int line);
    MsgHandlingException(const MsgHandlingException& other) = default;
    MsgHandlingException& operator=(const MsgHandlingException& other) = default;
    ~MsgHandlingException() override;

    /// @return the further text that setDetail() gave, empty until then
    const std::string& getDetail() const noexcept;

    /// Adds a further text beside the description, for who knows more than the throw site.
    void setDetail(const std::string& detail);

private:
    std::string m_detail;
};

} // namespace ps::hwapi::common
