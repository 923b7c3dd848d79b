#include <mox/MsgHandlingException.hpp>

namespace ps::hwapi::common {

MsgHandlingException::MsgHandlingException(const std::string& description, const char* file, unsigned int line)
    : CHwapiException("Message handling error", description, file, line) {}

MsgHandlingException::~MsgHandlingException() = default;

const std::string& MsgHandlingException::getDetail() const noexcept {
    return m_detail;
}

void MsgHandlingException::setDetail(const std::string& detail) {
    m_detail = detail;
}

} // namespace ps::hwapi::common
