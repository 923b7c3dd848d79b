#include <mox/InvalidParameterException.hpp>

namespace ps::hwapi::common {

InvalidParameterException::InvalidParameterException(const std::string& description, const char* file,
                                                     unsigned int line)
    : CHwapiException("Invalid parameter", description, file, line) {}

InvalidParameterException::~InvalidParameterException() = default;

const std::string& InvalidParameterException::getDetail() const noexcept {
    return m_detail;
}

void InvalidParameterException::setDetail(const std::string& detail) {
    m_detail = detail;
}

} // namespace ps::hwapi::common
