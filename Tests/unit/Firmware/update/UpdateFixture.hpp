#pragma once
#include "mock/DdalDevicetreeMock.hpp"
#include "support/FirmwareImage.hpp"

#include <testkit/BoardTest.hpp>

#include <map>
#include <string>
#include <vector>

namespace mox::firmwaretest {

/// A board whose device tree says what a test wants; the directory of its images is "/ffs/run/boot".
class UpdateFixture : public testkit::BoardTest {
protected:
    static constexpr const char* images = "/ffs/run/boot";
    static constexpr std::uint32_t hwSwId = 0x12345678;

    UpdateFixture();

    /// The unit identifier from now on.
    void setUnit(const std::string& unitId) { m_unitId = unitId; }
    /// What reading it answers from now on.
    void failUnit(int result) { m_unitResult = result; }
    void failHwSwId(int result) { m_hwSwIdResult = result; }

    /// An image that fits this board.
    static FirmwareImage image(const std::string& version = "1") {
        return FirmwareImage().version(version).listing({hwSwId});
    }
    static void place(const std::string& name, const FirmwareImage& content = image()) {
        content.writeTo(std::string(images) + "/" + name);
    }

    /// Lines that a function wrote with syslog since the last call, as "info text" with its name left out.
    std::vector<std::string> takeLines(const std::string& function);

    ::testing::NiceMock<mock::DdalDevicetreeMock>& devicetree() { return m_devicetree; }

private:
    mock::Use<mock::DdalDevicetreeMock> m_devicetree;
    std::string m_unitId = "KORA";
    int m_unitResult = 0;
    int m_hwSwIdResult = 0;
    std::map<std::string, std::size_t> m_taken; ///< lines looked at, by function
};

/// What is in a buffer, zero bytes and all.
template <std::size_t size>
std::string bytesOf(const char (&buffer)[size]) {
    return std::string(buffer, size);
}

/// A text and zero bytes to a length.
inline std::string padded(std::string text, std::size_t size) {
    text.resize(size, '\0');
    return text;
}

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& text);

/// Number of descriptors that this process has open.
std::ptrdiff_t openDescriptors();

} // namespace mox::firmwaretest
