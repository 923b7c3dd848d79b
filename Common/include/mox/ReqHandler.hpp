#pragma once
#include <mox/ERadHwapi.hpp>
#include <mox/Req.hpp>

#include <list>

namespace ps::hwapi::common {

/// Keeps the requests in progress that a service has forwarded to other units. A service derives a class that creates
/// its kinds of requests and calls, from its delegates:
///
///     handler.HandleNewReq(msg);              // a client asks
///     handler.HandleForwardedReqResp(msg);    // another unit answers
///     handler.HandleForwardedReqTimeout(msg); // API_FORWARD_TIMEOUT_OUT: another unit did not answer
///
/// Owns its requests until they complete. Used only on the execution unit that handles messages; blocks as long as the
/// requests do. Exceptions of a request reach the caller.
class ReqHandler {
public:
    /// @param feature  R&D debug flag of the log lines
    explicit ReqHandler(ERadHwapi feature);
    ReqHandler(const ReqHandler&) = delete;
    ReqHandler& operator=(const ReqHandler&) = delete;
    /// Deletes the requests that are left, oldest first.
    virtual ~ReqHandler();

    /// Creates the request for a new message, keeps it and has it begin.
    /// @param msgHandle  the message; not owned
    /// @throws MsgHandlingException if there is no request for the message, and what the request throws
    void HandleNewReq(void* msgHandle);

    /// Keeps a request and has it begin. It may complete at once.
    /// @param req  owned by the handler from here on
    /// @throws MsgHandlingException if it is null, and what the request throws; the request stays kept then
    void HandleNewReq(Req* req);

    /// Deletes a request that is done. A request calls this as the last thing it does.
    /// @param req  anything that is not kept here is ignored
    void ReqCompleted(Req* req);

    /// Offers a response to the requests, oldest first, until one takes it by completing.
    /// @param msgHandle  the response; not owned
    void HandleForwardedReqResp(void* msgHandle);

    /// Tells the request that a time-out message names. One that has completed meanwhile is not told; a later
    /// request that got the same address would be. Where that can happen, put something behind the address that tells
    /// requests apart and look at it before this call.
    /// @param msgHandle  API_FORWARD_TIMEOUT_OUT: the payload is the address of the request, in the byte order and size
    ///                   of this process; not owned
    /// @throws MsgHandlingException if the message has no such payload, and what the request throws
    void HandleForwardedReqTimeout(void* msgHandle);

protected:
    /// Builds the request for a new message; the deriving class decides on its type.
    /// @param msgHandle  the message; not owned
    /// @return a new request, owned by the handler from here on; null if the message asks for nothing known
    virtual Req* CreateReq(void* msgHandle) = 0;

    std::list<Req*> m_reqs;
    ERadHwapi m_feature;

private:
    class Walk;

    /// The innermost offer of a response that goes on.
    Walk* m_walk = nullptr;
};

} // namespace ps::hwapi::common
