#pragma once
/// The version that a simulated device finds in an image: the text "MOX-SW-VERSION:" and a number behind it.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mox::host {

constexpr const char* versionMarker = "MOX-SW-VERSION:";

/// Looks for the marker in an image that comes piece by piece, however small the pieces are. The first one counts.
class VersionMarker {
public:
    void take(std::string_view bytes);

    /// The number as strtoul reads it in base 0 where it has 32 bits: 258, 0x0102; a greater one is the greatest.
    /// @return nothing when there was no marker
    std::optional<std::uint32_t> version() const;

private:
    std::string m_window; ///< behind the marker once that was found
    bool m_found = false;
};

} // namespace mox::host
