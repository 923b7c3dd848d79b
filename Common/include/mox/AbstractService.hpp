#pragma once
#include <mox/ERadHwapi.hpp>
#include <mox/MsgDelegateBase.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace ps::hwapi::common {

/// What the parts of a service and `main` see of the service. Service says what each operation does.
///
/// Deriving classes take it as a virtual base, so that a service which combines several interfaces has it once.
class AbstractService {
public:
    virtual ~AbstractService() = default;

    virtual void AddMsgDelegate(MsgDelegateBase* delegate) = 0;
    virtual void AddMsgDelegate(std::unique_ptr<MsgDelegateBase> delegate) = 0;
    virtual void RemoveMsgDelegate(unsigned short msgId) = 0;
    virtual std::uint32_t GetSicad() const = 0;
    virtual ERadHwapi GetRadId() const = 0;
    virtual bool Startup(int argc, char** argv) = 0;
    virtual void Shutdown() = 0;
    virtual void InitEu() = 0;
    virtual void SetServiceStateRad(unsigned int state) = 0;
    virtual bool Run() = 0;
    virtual void HandleConfigTagChange(const std::string& tag, unsigned int value) = 0;

protected:
    AbstractService() = default;
    AbstractService(const AbstractService&) = default;
    AbstractService& operator=(const AbstractService&) = default;
};

} // namespace ps::hwapi::common
