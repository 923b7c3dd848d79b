#pragma once
/// What calls do to the ledger, one class a pattern. An Effect is built before the call, which may hand a handle to
/// another thread that reuses its address, and told the result afterwards.
#include "mock/src/Call.hpp"

#include <string>
#include <tuple>

namespace mox::mock {

/// Gives a handle back to the platform.
using Dispose = void (*)(std::uint64_t handle);

template <typename Result>
bool isSuccess(const Result& result) {
    return static_cast<int>(result) == 0;
}

inline void enterHandle(const Call& call, Kind kind, std::uint64_t value, Dispose dispose) {
    Entry entry;
    entry.kind = kind;
    entry.handle = handleOf(value);
    entry.opener = call.id();
    entry.real = call.carriedOut();
    if (entry.real && dispose != nullptr)
        entry.dispose = [value, dispose] { dispose(value); };
    enter(std::move(entry));
}

/// The result is the handle; null or a negative descriptor is none.
template <Kind kind, Dispose dispose>
class OpensResult {
public:
    template <typename... Arguments>
    explicit OpensResult(Call& call, const Arguments&...) : m_call(call) {}
    template <typename Result>
    void finish(const Result& result) {
        if (m_call.faulted())
            return;
        if constexpr (std::is_pointer_v<Result>) {
            if (result != nullptr)
                enterHandle(m_call, kind, word(result), dispose);
        } else if (result >= 0) {
            enterHandle(m_call, kind, word(result), dispose);
        }
    }

private:
    Call& m_call;
};

/// On result 0 the handle is where an argument points to.
template <Kind kind, std::size_t position, Dispose dispose>
class OpensOut {
public:
    template <typename... Arguments>
    explicit OpensOut(Call& call, const Arguments&... arguments)
        : m_call(call), m_read([out = std::get<position>(std::tie(arguments...))](std::uint64_t& value) {
              if (out == nullptr)
                  return false;
              value = word(*out);
              return !std::is_pointer_v<std::remove_pointer_t<decltype(out)>> || value != 0;
          }) {}
    template <typename Result>
    void finish(const Result& result) {
        std::uint64_t value = 0;
        if (!m_call.faulted() && isSuccess(result) && m_read(value))
            enterHandle(m_call, kind, value, dispose);
    }

private:
    Call& m_call;
    std::function<bool(std::uint64_t&)> m_read;
};

/// Takes an entry out for the time of the call, and decides afterwards what became of it.
class Taken {
public:
    Taken(Call& call, Kind kind, std::uint64_t handle) : m_call(call) {
        if (handle != 0 || kind == Kind::srioHandle || kind == Kind::file)
            m_entry = strike(kind, handleOf(handle));
    }
    /// The caller keeps it. @param handle  under which it goes on
    void putBack(std::uint64_t handle) {
        if (!m_entry)
            return;
        m_entry->handle = handleOf(handle);
        enter(std::move(*m_entry));
        m_entry.reset();
    }
    /// It is gone; but when the platform was not asked, it is given back after the test.
    void close() {
        if (m_entry && m_entry->real && !m_call.carriedOut())
            defer(std::move(*m_entry));
        m_entry.reset();
    }
    /// As close(), at once: what a platform does with what it was handed.
    void destroy() {
        if (m_entry && m_entry->real && !m_call.carriedOut() && m_entry->dispose)
            m_entry->dispose();
        m_entry.reset();
    }
    const Call& call() const { return m_call; }

private:
    Call& m_call;
    std::unique_ptr<Entry> m_entry;
};

/// Releases the handle that an argument is.
template <Kind kind, std::size_t position>
class Closes {
public:
    template <typename... Arguments>
    explicit Closes(Call& call, const Arguments&... arguments)
        : m_taken(call, kind, word(std::get<position>(std::tie(arguments...)))) {}
    template <typename Result>
    void finish(const Result&) {
        m_taken.close();
    }

private:
    Taken m_taken;
};

/// Gives a message to the platform in every case, also when it answers with a failure.
template <std::size_t position>
class GivesMessage {
public:
    template <typename... Arguments>
    explicit GivesMessage(Call& call, const Arguments&... arguments)
        : m_taken(call, Kind::message, word(std::get<position>(std::tie(arguments...)))) {}
    template <typename Result>
    void finish(const Result&) {
        if (m_taken.call().faulted())
            m_taken.destroy();
        else
            m_taken.close(); // an action of a mock may have kept the address: it stays readable until the test ends
    }

private:
    Taken m_taken;
};

/// Writes down a name (registration, subscription) on success.
inline void enterName(const Call& call, Kind kind, Handle handle) {
    Entry entry;
    entry.kind = kind;
    entry.handle = std::move(handle);
    entry.opener = call.id();
    entry.real = call.carriedOut();
    enter(std::move(entry));
}

/// One argument as a part of a name.
inline std::string namePart(const char* text) {
    return text == nullptr ? "" : text;
}
template <typename Argument>
std::string namePart(const Argument& argument) {
    return std::to_string(word(argument));
}

/// The handle made of the arguments at these positions.
template <std::size_t... positions, typename... Arguments>
Handle nameOf(const Arguments&... arguments) {
    const auto all = std::tie(arguments...);
    std::string name;
    ((name += (name.empty() ? "" : " ") + namePart(std::get<positions>(all))), ...);
    return Handle{0, name};
}

/// Registers under the name made of some arguments, on result 0.
template <Kind kind, std::size_t... positions>
class Registers {
public:
    template <typename... Arguments>
    explicit Registers(Call& call, const Arguments&... arguments)
        : m_call(call), m_name(nameOf<positions...>(arguments...)) {}
    template <typename Result>
    void finish(const Result& result) {
        if (!m_call.faulted() && isSuccess(result))
            enterName(m_call, kind, m_name);
    }

private:
    Call& m_call;
    Handle m_name;
};

/// Withdraws what Registers wrote down. `real` withdraws it in truth when a mock or a fault has answered: a
/// registration that outlives its test would call into the next one.
template <Kind kind, auto real, std::size_t... positions>
class Withdraws {
public:
    template <typename... Arguments>
    explicit Withdraws(Call& call, const Arguments&... arguments)
        : m_call(call),
          m_entry(strike(kind, nameOf<positions...>(arguments...))),
          m_withdraw([arguments...] { real(arguments...); }) {}
    template <typename Result>
    void finish(const Result&) {
        if (m_entry && m_entry->real && !m_call.carriedOut())
            m_withdraw();
    }

private:
    Call& m_call;
    std::unique_ptr<Entry> m_entry;
    std::function<void()> m_withdraw;
};

} // namespace mox::mock

/// One row of a family's table: what calls of a function do to the ledger.
#define MOX_EFFECT(function, ...)                                                                                      \
    template <>                                                                                                        \
    struct Effect<tag::function> : __VA_ARGS__ {                                                                       \
        using Pattern = __VA_ARGS__;                                                                                   \
        using Pattern::Pattern;                                                                                        \
    };
