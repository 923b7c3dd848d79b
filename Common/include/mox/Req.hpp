#pragma once
#include <mox/ERadHwapi.hpp>

namespace ps::hwapi::common {

class ReqHandler;

/// One request in progress, created from the message that asked for it.
///
///     class SpeedReq : public Req {
///     public:
///         using Req::Req;
///         void HandleReq() override { forward(m_msgHandle); }
///         void HandleForwardedReqResp(void* msgHandle) override {
///             if (isMine(msgHandle)) {
///                 answer(msgHandle);
///                 m_handler.ReqCompleted(this); // nothing of this object may be touched from here on
///             }
///         }
///     };
///
/// Owned by its handler from ReqHandler::HandleNewReq on. Used only on the execution unit that handles messages.
class Req {
public:
    /// @param handler    who keeps this request; outlives it
    /// @param feature    R&D debug flag of the log lines
    /// @param msgHandle  the message that asked; not released by the request, and gone once its handling has ended
    Req(ReqHandler& handler, ERadHwapi feature, void* msgHandle);
    Req(const Req&) = delete;
    Req& operator=(const Req&) = delete;
    virtual ~Req();

    /// Begins: answers at once or forwards the request.
    /// @throws MsgHandlingException unless overridden
    virtual void HandleReq();

    /// Is offered the response to a forwarded request, which may belong to another request: then it must return without
    /// completing.
    /// @param msgHandle  the response; not owned
    /// @throws MsgHandlingException unless overridden
    virtual void HandleForwardedReqResp(void* msgHandle);

    /// Is told that the response to its forwarded request has not come in time.
    /// @throws MsgHandlingException unless overridden
    virtual void HandleForwardedReqTimeout();

protected:
    ReqHandler& m_handler;
    ERadHwapi m_feature;
    void* m_msgHandle;
};

} // namespace ps::hwapi::common
