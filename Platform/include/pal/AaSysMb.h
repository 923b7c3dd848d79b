#pragma once
/// Mailboxes: messages that are published under their id and reach every subscriber, without the publisher knowing
/// them.
///
/// A publication is sent at once to everyone who subscribes to its message id. A mailbox that was prepared also keeps
/// its newest publication, and later subscribers get it when they subscribe, until it is recalled.
///
/// Any thread, between start-up and shut-down of the execution environment. A call blocks while another process changes
/// the table of subscriptions; a publication also as long as sending to each subscriber does.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaSysMbRetVal {
    EAaSysMbRetVal_NoError = 0,
    EAaSysMbRetVal_NotFound = 1,       ///< no such subscription, mailbox or kept publication
    EAaSysMbRetVal_InvalidValue = 2,   ///< null message, address 0, no mode
    EAaSysMbRetVal_OutOfResources = 3, ///< no memory, or the table is full
    EAaSysMbRetVal_NotStarted = 4      ///< the execution environment is not running
} EAaSysMbRetVal;

/// How far a publication reaches, seen from the publishing node. A subscriber names the modes that it wants as the sum
/// of their values; 15 is all.
typedef enum EAaSysMbPublMode {
    EAaSysMbPublMode_Process = 1, ///< subscribers in the publisher's process
    EAaSysMbPublMode_Node = 2,    ///< subscribers on its node
    EAaSysMbPublMode_Board = 4,   ///< subscribers on nodes whose ids agree in the upper 8 bits
    EAaSysMbPublMode_System = 8   ///< all subscribers
} EAaSysMbPublMode;

/// Subscribes an address to a message id. The same three first arguments again replace the modes.
/// @param messageId  what is subscribed to
/// @param receiver   SIC address that publications are sent to
/// @param publisher  node id whose publications are wanted; 0: any
/// @param modes      sum of the EAaSysMbPublMode values wanted, 1 to 15
/// @return EAaSysMbRetVal_NoError, EAaSysMbRetVal_InvalidValue, EAaSysMbRetVal_OutOfResources,
///         EAaSysMbRetVal_NotStarted
int AaSysMbSubscribe(uint16_t messageId, uint32_t receiver, uint16_t publisher, unsigned int modes);

/// Ends all subscriptions of an address to a message id. Publications already sent still arrive.
/// @return EAaSysMbRetVal_NoError, EAaSysMbRetVal_NotFound, EAaSysMbRetVal_NotStarted
int AaSysMbUnsubscribe(uint16_t messageId, uint32_t receiver);

/// Prepares the mailbox of a publisher for a message id: from now on it keeps the newest publication.
/// @param messageId  what will be published
/// @param publisher  SIC address that the publications are sent from
/// @return EAaSysMbRetVal_NoError (also when it was prepared), EAaSysMbRetVal_InvalidValue,
///         EAaSysMbRetVal_OutOfResources, EAaSysMbRetVal_NotStarted
int AaSysMbPrepare(uint16_t messageId, uint32_t publisher);

/// Publishes a message under its id: sends a copy to each subscriber within reach.
/// @param message  made with AaSysComMsgCreate; its sender is the publisher. The platform takes it, whatever the result
/// @param mode     reach
/// @return EAaSysMbRetVal_NoError (also without any subscriber, and when a subscriber could not be reached),
///         EAaSysMbRetVal_InvalidValue, EAaSysMbRetVal_OutOfResources, EAaSysMbRetVal_NotStarted
int AaSysMbPublish(void* message, EAaSysMbPublMode mode);

/// Empties the mailbox of a publisher and ends its preparation: later subscribers get nothing.
/// @return EAaSysMbRetVal_NoError, EAaSysMbRetVal_NotFound (not prepared), EAaSysMbRetVal_NotStarted
int AaSysMbRecall(uint16_t messageId, uint32_t publisher);

#ifdef __cplusplus
}
#endif
