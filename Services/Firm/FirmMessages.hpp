#pragma once
/// What the firmware service understands and answers. Numbers in payloads are little-endian; the layouts, with an
/// example, are in docs/formats/firm-messages.md.
///
///     void* const msg = AaSysComMsgCreate(updateRequest, Request::size, service);
///     PayloadWriter writer = PayloadWriter::of(msg, ByteOrder::little);
///     Request{7, Component::fpga, 0}.write(writer);
///     ...
///     const auto answer = Answer::read(PayloadView::of(msg, ByteOrder::little));
#include <mox/kit/PayloadView.hpp>
#include <mox/kit/PayloadWriter.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace mox::firm {

constexpr std::uint16_t cpid = 0x0620;

/// Payload: Request. Is an update needed, and with which file? Changes nothing. Answered by checkResponse.
constexpr std::uint16_t checkRequest = 0x0621;
constexpr std::uint16_t checkResponse = 0x0622;

/// Payload: Request. Looks as checkRequest does and flashes what is needed. Answered by a progressIndication at each
/// step, and at last by updateResponse.
constexpr std::uint16_t updateRequest = 0x0623;
constexpr std::uint16_t updateResponse = 0x0624;

/// Payload: Progress.
constexpr std::uint16_t progressIndication = 0x0625;

/// What can be updated.
enum class Component : std::uint32_t { uboot = 1, bmu = 2, fpga = 3 };

/// Bits of a request's flags; all others are 0.
namespace flag {
/// The update is wanted also where the versions do not ask for it.
constexpr std::uint32_t force = 1;
} // namespace flag

/// How far an update is.
enum class Step : std::uint32_t {
    asked = 1,    ///< the request is understood
    checking = 2, ///< images are looked for and compared
    flashing = 3, ///< the image is being written
    done = 4      ///< nothing more happens; updateResponse follows
};

/// What came out of a request.
enum class State : std::uint32_t {
    notNeeded = 0,     ///< what runs now is to stay
    needed = 1,        ///< an update would flash the file that is named; only to checkRequest
    updated = 2,       ///< the file that is named is flashed, in both slots where the component has two
    partlyUpdated = 3, ///< the primary slot holds the new image, the secondary one could not be written
    disabled = 4,      ///< updates are switched off on this board
    checkFailed = 5,   ///< no or no clear answer; the result says why
    updateFailed = 6,  ///< the result says at which step
    unknownComponent = 7,
    malformed = 8 ///< the request has another length, or flags that do not exist
};

/// Asks for a check or an update.
struct Request {
    static constexpr std::size_t size = 12;

    std::uint32_t ticket = 0; ///< the client's own; every answer repeats it
    Component component{};    ///< may be none of those that exist
    std::uint32_t flags = 0;

    bool isForced() const { return (flags & flag::force) != 0; }

    /// @return nothing unless the payload has exactly this length and no flags that do not exist
    static std::optional<Request> read(const kit::PayloadView& payload) {
        const Request request = readLeniently(payload);
        if (payload.size() != size || (request.flags & ~flag::force) != 0) {
            return std::nullopt;
        }
        return request;
    }
    /// Reads what there is; what is not counts as 0.
    static Request readLeniently(const kit::PayloadView& payload) {
        return {payload.tryRead<std::uint32_t>(0).value_or(0),
                static_cast<Component>(payload.tryRead<std::uint32_t>(4).value_or(0)),
                payload.tryRead<std::uint32_t>(8).value_or(0)};
    }
    void write(kit::PayloadWriter& payload) const {
        payload.write<std::uint32_t>(0, ticket)
            .write<std::uint32_t>(4, static_cast<std::uint32_t>(component))
            .write<std::uint32_t>(8, flags);
    }
};

/// Tells the requester how far its update is.
struct Progress {
    static constexpr std::size_t size = 12;

    std::uint32_t ticket = 0;
    Component component{};
    Step step{};

    /// @return nothing if the payload is too short
    static std::optional<Progress> read(const kit::PayloadView& payload) {
        if (!payload.holds(0, size)) {
            return std::nullopt;
        }
        return Progress{payload.read<std::uint32_t>(0), static_cast<Component>(payload.read<std::uint32_t>(4)),
                        static_cast<Step>(payload.read<std::uint32_t>(8))};
    }
    void write(kit::PayloadWriter& payload) const {
        payload.write<std::uint32_t>(0, ticket)
            .write<std::uint32_t>(4, static_cast<std::uint32_t>(component))
            .write<std::uint32_t>(8, static_cast<std::uint32_t>(step));
    }
};

/// The outcome of a check or an update.
struct Answer {
    static constexpr std::size_t pathSize = 128;
    static constexpr std::size_t size = 20 + pathSize;

    std::uint32_t ticket = 0;
    Component component{};
    State state = State::malformed;
    std::int32_t result = 0;  ///< of the firmware function that decided the state; 0 where none did
    std::uint32_t forced = 0; ///< 1: only a marker file or the request's flag made the update needed
    std::string path = {};    ///< the image file, where one was found; at most 127 characters

    /// @return nothing if the payload is too short
    static std::optional<Answer> read(const kit::PayloadView& payload) {
        if (!payload.holds(0, size)) {
            return std::nullopt;
        }
        return Answer{payload.read<std::uint32_t>(0),
                      static_cast<Component>(payload.read<std::uint32_t>(4)),
                      static_cast<State>(payload.read<std::uint32_t>(8)),
                      payload.read<std::int32_t>(12),
                      payload.read<std::uint32_t>(16),
                      payload.text(20, pathSize)};
    }
    void write(kit::PayloadWriter& payload) const {
        payload.write<std::uint32_t>(0, ticket)
            .write<std::uint32_t>(4, static_cast<std::uint32_t>(component))
            .write<std::uint32_t>(8, static_cast<std::uint32_t>(state))
            .write<std::int32_t>(12, result)
            .write<std::uint32_t>(16, forced)
            .writeText(20, pathSize, path);
    }
};

} // namespace mox::firm
