#pragma once
/// Messages and addresses.
///
/// A SIC address names an endpoint: node id in the upper 16 bits, CPID (communication point id) in the lower 16. A
/// message is a handle (`void*`, null never valid) that points to its header; payload and optional trailer follow in
/// memory and on the wire. Whoever holds a handle owns the message: sending gives it away in every case, also when
/// the send fails. A message may be built and read by any thread, one at a time.
#include "AaPro.h"

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Message id by which a peer asks which way a message takes.
#define AASYSCOM_ECHO_ROUTE_REQ_MSG 0x0AD6
/// The answer to AASYSCOM_ECHO_ROUTE_REQ_MSG; payload SAaSysComEchoRoute.
#define AASYSCOM_ECHO_ROUTE_RESP_MSG 0x0AD7
/// Sent to the EU that called AaSysComLinkRegister when the watched endpoint appears or goes; payload SAaSysComLinkInd.
#define AASYSCOM_LINK_IND_MSG 0x0AD8

/// Most bytes of payload in one message.
#define AASYSCOM_MAX_PAYLOAD 65535u
/// CPIDs from here on are given out to those who ask for a dynamic one.
#define AASYSCOM_FIRST_DYNAMIC_CPID 0x8000u

/// The header of a message, as it lies in memory and on the wire (little-endian, 16 bytes).
typedef struct SAaSysComMsgHeader {
    uint16_t id;
    uint16_t reserved; ///< 0; not printed
    uint32_t receiver; ///< SIC address
    uint32_t sender;   ///< SIC address
    uint16_t flags;    ///< bits 0 and 1: message format (MEF)
    uint16_t size;     ///< bytes of payload, neither header nor trailer counted
} SAaSysComMsgHeader;

/// The trailer that follows the payload of a message of format 3 (8 bytes, at the next multiple of 4).
typedef struct SAaSysComMsgTrailer {
    uint32_t spare;
    uint16_t flags;
    uint16_t crc;
} SAaSysComMsgTrailer;

/// Payload of AASYSCOM_ECHO_ROUTE_REQ_MSG and AASYSCOM_ECHO_ROUTE_RESP_MSG.
typedef struct SAaSysComEchoRoute {
    uint32_t requester; ///< who gets the answer; 0 means the message's sender
    uint32_t hopCount;  ///< entries used in `hops`
    uint32_t hops[8];   ///< SIC addresses that the request has passed
} SAaSysComEchoRoute;

/// Payload of AASYSCOM_LINK_IND_MSG.
typedef struct SAaSysComLinkInd {
    uint32_t sicad; ///< the watched endpoint
    uint32_t up;    ///< 1: it exists now, 0: it has gone
} SAaSysComLinkInd;

typedef enum EAaSysComRetVal {
    EAaSysComRetVal_NoError = 0,
    EAaSysComRetVal_Error = 1,
    EAaSysComRetVal_InvalidValue = 2,   ///< null handle, or not a message
    EAaSysComRetVal_OutOfResources = 3, ///< no memory, or no descriptors
    EAaSysComRetVal_NoReceiver = 4,     ///< nobody has registered the address, or its process is dead
    EAaSysComRetVal_ReceiverFull = 5,   ///< the receiver's queue stayed full for the send time limit
    EAaSysComRetVal_NotFound = 6,       ///< no such registration
    EAaSysComRetVal_NoRun = 7           ///< the process belongs to no run, so nothing lies outside it
} EAaSysComRetVal;

// --- messages ---

/// Creates a message. Header: `id`, `receiver`, sender 0, format 0; the payload's bytes are zero.
/// @param payloadSize  0 to AASYSCOM_MAX_PAYLOAD
/// @return the message, owned by the caller, or null (payload too large, no memory). Does not block.
void* AaSysComMsgCreate(uint16_t id, uint32_t payloadSize, uint32_t receiver);

/// Copies a message with payload and trailer.
/// @return the copy, owned by the caller, or null. Does not block.
void* AaSysComMsgCreateCopy(const void* msg);

/// Copies a message and addresses the copy to `receiver`.
/// @return the copy, owned by the caller, or null. Does not block.
void* AaSysComMsgCreateCopyTo(const void* msg, uint32_t receiver);

/// Creates the answer to a message: its receiver is the request's sender, its sender the request's receiver.
/// @param payloadSize  0 to AASYSCOM_MAX_PAYLOAD
/// @return the message, owned by the caller, or null. Does not block.
void* AaSysComMsgCreateReply(const void* request, uint16_t id, uint32_t payloadSize);

/// Destroys a message and sets the caller's handle to null.
/// @return 0, 2 (null pointer or handle, or already destroyed). Does not block.
EAaSysComRetVal AaSysComMsgDestroy(void** msg);

/// Takes a message away from the loop that received it: the caller owns it from now on and must destroy or send it,
/// and `*msg` becomes null so that the loop has nothing left to destroy.
/// @return the message, or null. Does not block.
void* AaSysComMsgTake(void** msg);

/// Sends a message to its receiver; its sender is the address of the calling EU's first registration (0 for none).
/// The message is no longer the caller's, whatever the result.
/// @return 0, 2, 3, 4, 5, 7. Blocks only while a receiver in another process is full, at most 2 s.
EAaSysComRetVal AaSysComMsgSend(void* msg);

/// Sends as AaSysComMsgSend on behalf of `sender`.
EAaSysComRetVal AaSysComMsgSendS(void* msg, uint32_t sender);

/// Sends a received message on to `receiver` in the name of the calling EU: the receiver answers to the calling EU.
/// @return as AaSysComMsgSend
EAaSysComRetVal AaSysComMsgForward(void* msg, uint32_t receiver);

/// Sends a received message on to `receiver` in the name of its original sender: the receiver answers to that one.
/// @return as AaSysComMsgSend
EAaSysComRetVal AaSysComMsgRelay(void* msg, uint32_t receiver);

/// Takes the next message for the calling EU, which must have registered.
/// @param timeoutUs  microseconds: -1 no limit, 0 do not wait, else at most so long
/// @param option     0; other values are reserved
/// @return the message, owned by the caller, or null: time-out, or the EU has no registration (at once, logged)
void* AaSysComMsgReceive(int32_t timeoutUs, uint32_t option);

/// Takes the first message with one of the given ids; others stay queued in their order.
/// @param timeoutUs  as AaSysComMsgReceive
/// @param filter     filter[0] is the number of ids that follow; null or 0: any message
/// @return as AaSysComMsgReceive
void* AaSysComMsgReceiveSelective(int32_t timeoutUs, const uint16_t* filter);

// --- header, payload, trailer; getters answer 0 or null for a null handle; none blocks ---

/// @return the message id
uint16_t AaSysComMsgGetId(const void* msg);
/// @return SIC address of the sender
uint32_t AaSysComMsgGetSender(const void* msg);
/// @return SIC address of the receiver
uint32_t AaSysComMsgGetReceiver(const void* msg);
/// Sets the sender's SIC address. @return 0, 2
EAaSysComRetVal AaSysComMsgSetSender(void* msg, uint32_t sender);
/// Sets the receiver's SIC address. @return 0, 2
EAaSysComRetVal AaSysComMsgSetReceiver(void* msg, uint32_t receiver);
/// @return the first payload byte (aligned for any type), or null when the message has no payload
void* AaSysComMsgGetPayload(const void* msg);
/// @return bytes of payload
uint32_t AaSysComMsgGetPayloadSize(const void* msg);
/// @return the message format: 3 with trailer, 0 without
uint32_t AaSysComMsgGetMef(const void* msg);
/// @return the trailer of a message of format 3, else null
void* AaSysComMsgGetTrailer(const void* msg);
/// Appends a zeroed trailer, which makes the format 3. @return 0, 2, 3
EAaSysComRetVal AaSysComMsgAddTrailer(void** msg);

// --- addresses ---

/// @return the SIC address of a CPID on a node
uint32_t AaSysComSicadGet(uint16_t cpid, uint16_t nid);
/// @return the CPID of a SIC address
uint16_t AaSysComSicadGetCpid(uint32_t sicad);
/// @return the node id of a SIC address
uint16_t AaSysComSicadGetNid(uint32_t sicad);
/// @return the own node's id; 0 while the process belongs to no run
uint16_t AaSysComGetOwnNid(void);
/// @return the board part of a SIC address's node: bits 0xFF00 of the node id, moved down by 8
uint16_t AaSysComNmapGetBoard(uint32_t sicad);
/// @return the processor part of a SIC address's node: bits 0x00F0 of the node id, moved down by 4
uint16_t AaSysComNmapGetCpu(uint32_t sicad);
/// The address of a CPID on the node with this board and processor, if the run has such a node.
/// @return the SIC address, or 0
uint32_t AaSysComNmapGetSicad(uint16_t board, uint16_t cpu, uint16_t cpid);

// --- registration ---

/// Creates and starts an EU as AaProEuCreateAndStartJoinable, with the default policy.
/// @return EAaProEuRetVal 0, 1, 2, 3. Does not wait for the EU.
EAaProEuRetVal AaSysComEuCreateAndStart(uint32_t* euId, const char* name, TAaProEuEntry entry, uint32_t stackSize,
                                        uint32_t priority, const void* argument, uint32_t argumentSize);

/// Creates and starts an EU as AaProEuCreateAndStartJoinable with a policy. Where the user may not have it, the EU
/// runs with time sharing, which is logged once a process.
/// @param options  0; other values are reserved
EAaProEuRetVal AaSysComEuCreateAndStartWithPolicy(uint32_t* euId, const char* name, TAaProEuEntry entry,
                                                  uint32_t stackSize, EAaProEuSchedulingPolicy policy,
                                                  uint32_t priority, uint32_t options, const void* argument,
                                                  uint32_t argumentSize, uint32_t wait);

/// Registers a CPID of the own node for the calling EU and gives the EU a message queue.
/// @param cpid  1 to 0x7FFF: this very one; 0: one from AASYSCOM_FIRST_DYNAMIC_CPID on
/// @return the registered CPID. When a static one is taken by somebody else, the answer is another value (0). 0 also
///         when no dynamic one is left. Does not block.
uint16_t AaSysComEuUserRegister(uint16_t cpid);

/// Registers a further CPID whose messages go to the calling EU's queue; otherwise as AaSysComEuUserRegister.
uint16_t AaSysComUserRegister(uint16_t cpid);

/// Ends a registration. What is queued already can still be received. An EU that ends loses its registrations.
/// @return 0, 6. Any thread of the process. Does not block.
EAaSysComRetVal AaSysComUserDeregister(uint16_t cpid);

/// Watches an endpoint: `receiver` gets AASYSCOM_LINK_IND_MSG now and whenever the endpoint appears or goes.
/// @return 0, 3, 7. Does not block.
EAaSysComRetVal AaSysComLinkRegister(uint32_t sicad, uint32_t receiver);
/// Ends AaSysComLinkRegister. @return 0, 6. Does not block.
EAaSysComRetVal AaSysComLinkDeregister(uint32_t sicad, uint32_t receiver);
/// Sets the next hop of messages to node `nid`: they are handed to the endpoint `via`, which relays them. 0 removes it.
/// @return 0, 2. Does not block.
EAaSysComRetVal AaSysComHopRegister(uint16_t nid, uint32_t via);

// --- route diagnosis ---

/// Handles AASYSCOM_ECHO_ROUTE_REQ_MSG: adds the own address to the hops and answers the requester. `*msg` is turned
/// into the answer and sent, so that the caller no longer owns it.
/// @return non-zero: the platform has taken the message (`*msg` is null); 0: it was no well-formed request and stays
///         the caller's. Does not block.
int32_t AaSysComControlHandleEchoRouteReq(void** msg);

/// Logs sender, receiver and hops of an echo-route request at severity 2. Does not block.
void AaSysComControlPrintRouteReq(const void* msg);

// --- gateway routes ---

/// A route to another gateway, by longest prefix match on the remote node id.
typedef struct SAaSysComGwRoute {
    uint32_t protocol;
    uint32_t remoteSicad;
    uint32_t validBits; ///< of the remote node id, from the left
    char remoteName[48];
    uint32_t remotePort;
    uint32_t remoteOptions;
    char localName[48];
    uint32_t localAddress;
    uint32_t localOptions;
    uint32_t mtu;
    uint32_t cost;
    uint32_t priority;
} SAaSysComGwRoute;

/// Adds a route to the node's gateway table.
/// @return its id, never 0; 0 when the record is no valid route. Does not block.
uint32_t AaSysComGwAddRouteLpm(const SAaSysComGwRoute* route);
/// Removes a route. @return 0, 6. Does not block.
EAaSysComRetVal AaSysComGwRemoveRoute(uint32_t routeId);

#ifdef __cplusplus
}
#endif
