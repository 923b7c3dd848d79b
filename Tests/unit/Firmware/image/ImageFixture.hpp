#pragma once
/// Image files for tests, byte by byte, and what reading them leaves behind: log lines and open descriptors.
#include "mock/AaSysLogMock.hpp"

#include <mox/Firmware.h>
#include <testkit/CapturedLog.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace mox::testing {
class TemporaryDirectory;
}

namespace mox::images {

/// The number in the four bytes at the end of an image, as it is stored.
std::string offsetWord(std::uint32_t offset);

/// Payload, trailer text with a zero byte behind it, offset word.
std::string imageOf(const std::string& payload, const std::string& trailerText);

std::uint32_t crcOf(const std::string& bytes);

/// A whole trailer for a payload.
/// @param swVersion  text of its element
/// @param ids        the elements of the list of identifiers
std::string trailerFor(const std::string& payload, const std::string& swVersion = "0x0102",
                       const std::string& ids = "<HwSwId>0x12345678</HwSwId>");

/// An element around a text.
std::string element(const std::string& name, const std::string& text);

/// Bytes that no compression would shorten, the same at each call.
std::string someBytes(std::size_t count, unsigned seed = 1);

std::string contentOf(const std::string& path);

/// Number of descriptors that this process has open.
std::size_t openDescriptors();

/// What the tests of images have in common. A test fails when it leaves a descriptor open.
class OnImages : public ::testing::Test {
protected:
    OnImages();
    ~OnImages() override;

    /// @return path of a file with this content
    std::string write(const std::string& bytes, const std::string& name = "image.bin");
    /// @return path of something in the test's directory
    std::string in(const std::string& name) const;

    /// What syslog was given since the last call, as "debug: text" and "info: text".
    std::vector<std::string> syslogLines();
    /// What the platform's log was given since the last call, as "4 0x20003: text".
    std::vector<std::string> platformLines();

private:
    const std::size_t m_descriptors;
    const std::unique_ptr<testing::TemporaryDirectory> m_directory;
    testkit::CapturedLog m_syslog;
    std::vector<std::string> m_platformLines;
    mock::Use<mock::AaSysLogMock> m_log;
};

} // namespace mox::images
