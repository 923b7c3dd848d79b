#pragma once
/// Where the installed mock of a family is found by the calls of that family. Test authors use Use.hpp.
#include <atomic>

namespace mox::mock {

/// Waits until no call uses a slot. Ends the process when one stays for 10 s.
void awaitUnused(const std::atomic<int>& users);
/// Ends the process: two mocks of one family at a time.
[[noreturn]] void refuseSecondMock();

template <typename Calls>
class Slot {
public:
    static void install(Calls& mock) {
        Calls* none = nullptr;
        if (!s_mock.compare_exchange_strong(none, &mock))
            refuseSecondMock();
    }
    static void remove() {
        s_mock.store(nullptr);
        awaitUnused(s_users);
    }

    /// One call's use of the mock.
    class Visit {
    public:
        Visit() {
            ++s_users;
            m_mock = s_mock.load();
            if (m_mock == nullptr)
                --s_users; // calls that block in the platform do not hold up a mock that is installed meanwhile
        }
        ~Visit() {
            if (m_mock != nullptr)
                --s_users;
        }
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;
        Calls* mock() const { return m_mock; }

    private:
        Calls* m_mock;
    };

private:
    static inline std::atomic<Calls*> s_mock{nullptr};
    static inline std::atomic<int> s_users{0};
};

} // namespace mox::mock
