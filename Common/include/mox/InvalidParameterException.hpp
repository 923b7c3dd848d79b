#pragma once
#include <mox/CHwapiException.hpp>

#include <string>

namespace ps::hwapi::common {

/// A caller passed an argument that the called operation can do nothing with. Its kind text is "Invalid parameter".
class InvalidParameterException : public CHwapiException {
public:
    /// @param description  which argument of which operation
    /// @param file         source path of the throw, without extension
    /// @param line         line of the throw
    InvalidParameterException(const std::string& description, const char* file, unsigned int line);
    InvalidParameterException(const InvalidParameterException& other) = default;
    InvalidParameterException& operator=(const InvalidParameterException& other) = default;
    ~InvalidParameterException() override;

    /// @return the further text that setDetail() gave, empty until then
    const std::string& getDetail() const noexcept;

    /// Adds a further text beside the description, for who knows more than the throw site.
    void setDetail(const std::string& detail);

private:
    std::string m_detail;
};

} // namespace ps::hwapi::common
