#include "EuFixture.hpp"

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

namespace mox::testing {

namespace {

struct EuArgument {
    std::function<void()>* body;
    std::shared_ptr<std::promise<void>>* promise;
};

void* runEu(void* argument) {
    const auto& given = *static_cast<EuArgument*>(argument);
    const std::unique_ptr<std::function<void()>> body(given.body);
    const std::unique_ptr<std::shared_ptr<std::promise<void>>> promise(given.promise);
    (*body)();
    (*promise)->set_value();
    return nullptr;
}

} // namespace

Message& Message::operator=(Message&& other) noexcept {
    if (this != &other) {
        reset();
        m_handle = other.release();
    }
    return *this;
}

void* Message::release() {
    return std::exchange(m_handle, nullptr);
}

void Message::reset() {
    if (m_handle)
        AaSysComMsgDestroy(&m_handle);
}

Message create(std::uint16_t id, std::uint32_t size, std::uint32_t receiver) {
    return Message(AaSysComMsgCreate(id, size, receiver));
}

Message receive(std::int32_t timeoutUs) {
    return Message(AaSysComMsgReceive(timeoutUs, 0));
}

Registration::Registration(std::uint16_t cpid) : m_cpid(AaSysComEuUserRegister(cpid)) {}

Registration::~Registration() {
    deregister();
    while (receive(0)) {
    }
}

void Registration::deregister() {
    if (m_cpid != 0)
        AaSysComUserDeregister(std::exchange(m_cpid, std::uint16_t{0}));
}

std::uint32_t Registration::address() const {
    return AaSysComSicadGet(m_cpid, AaSysComGetOwnNid());
}

Eu::Eu(std::function<void()> body, const char* name)
    : m_promise(std::make_shared<std::promise<void>>()), m_ended(m_promise->get_future()) {
    EuArgument argument{new std::function<void()>(std::move(body)), new std::shared_ptr<std::promise<void>>(m_promise)};
    m_result = AaSysComEuCreateAndStart(&m_id, name, runEu, 65536, 10, &argument, sizeof(argument));
    if (m_result == EAaProEuRetVal_NoError)
        return;
    delete argument.body;
    delete argument.promise;
    m_promise->set_value();
}

void Eu::join() {
    if (m_ended.valid() && m_ended.wait_for(patience) != std::future_status::ready) {
        std::fputs("an execution unit of the test does not end\n", stderr);
        std::abort();
    }
    if (m_ended.valid())
        m_ended.get();
}

std::size_t openDescriptors() {
    std::size_t count = 0;
    DIR* directory = opendir("/proc/self/fd");
    while (readdir(directory) != nullptr)
        ++count;
    closedir(directory);
    return count;
}

std::chrono::microseconds timeOf(const std::function<void()>& function) {
    const auto begin = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
}

bool eventually(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

} // namespace mox::testing
