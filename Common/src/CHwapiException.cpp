#include <mox/CHwapiException.hpp>

namespace ps::hwapi::common {

CHwapiException::CHwapiException(const std::string& what, const std::string& description, const char* file,
                                 unsigned int line)
    : m_what(what), m_description(description), m_file(file == nullptr ? "" : file), m_line(line) {}

CHwapiException::~CHwapiException() = default;

const char* CHwapiException::what() const noexcept {
    return m_what.c_str();
}

const std::string& CHwapiException::getFile() const noexcept {
    return m_file;
}

unsigned int CHwapiException::getLine() const noexcept {
    return m_line;
}

const std::string& CHwapiException::getDescription() const noexcept {
    return m_description;
}

} // namespace ps::hwapi::common
