#pragma once
/// Configuration: named tags, and R&D parameters by number.
///
/// A tag is a name and a value of 0 to 65535 bytes. *Own* tags belong to the process that sets them. *Public* tags are
/// shared by all processes of the system, and each publication reaches every registered call-back, also when it repeats
/// the value. A read takes the own tag first and the public one otherwise. Numbers are stored in the byte order of the
/// node, texts without their terminator.
///
/// An R&D parameter is an unsigned 32-bit word shared by all processes of the node. Its id has the number of its domain
/// in the upper 16 bits and its index in the lower 16 bits.
///
/// Buffers handed out belong to the caller and are released with AaMemUnRef. Unless a function says otherwise it may be
/// called from any thread after AaConfigEarlyStartup. Reads of tags wait for the store at most as long as another
/// process commits a change; access to R&D parameters never blocks.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Results of this family; its functions return them as int.
typedef enum EAaConfigRetVal {
    EAaConfigRetVal_NoError = 0,
    EAaConfigRetVal_NotFound = 1,       ///< no such tag, call-back, domain or subscription
    EAaConfigRetVal_InvalidValue = 2,   ///< null or empty name, null output, value too long, unknown scope
    EAaConfigRetVal_WrongSize = 3,      ///< the tag exists but its value has another length than the one asked for
    EAaConfigRetVal_OutOfResources = 4, ///< no memory, or the store is full
    EAaConfigRetVal_NotStarted = 5,     ///< AaConfigEarlyStartup was not called or failed
    EAaConfigRetVal_FileError = 6       ///< the file cannot be read or is not well formed
} EAaConfigRetVal;

/// Whose changes a service subscription reports.
typedef enum EAaConfigSvcRegScope {
    EAaConfigSvcRegScope_Process = 0, ///< tags set by this process
    EAaConfigSvcRegScope_Node = 1,    ///< public tags set by a process of this node
    EAaConfigSvcRegScope_System = 2   ///< public tags set by any process
} EAaConfigSvcRegScope;

/// Told of a change of a tag, on a thread of the platform that serves all call-backs of the process in turn.
/// @param tag     name; valid during the call
/// @param value   value bytes; valid during the call; may be null when length is 0
/// @param length  bytes of value
/// It may call any function of this family. While it blocks, no other call-back of the process runs.
typedef void (*TAaConfigTagCb)(const char* tag, const void* value, unsigned int length);

/// Fills an R&D domain, by AaConfigRadSetMaxTagCount and AaConfigRadSetDefault.
typedef void (*TAaConfigRadInitCb)(void);

/// Opens the configuration, before the execution environment starts and before any other function of this family.
/// @return EAaConfigRetVal_NoError (also when it was open), EAaConfigRetVal_OutOfResources, EAaConfigRetVal_FileError
/// First thread. Blocks for the time that opening the store takes.
int AaConfigEarlyStartup(void);

/// Reads a file of tags and sets each as an own tag; an own tag that is set already is replaced.
/// @param fileName  path of an XML file
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_InvalidValue (null name), EAaConfigRetVal_NotStarted,
///         EAaConfigRetVal_FileError (nothing is set)
/// Blocks for the time that reading the file takes.
int AaConfigTagReadFile(const char* fileName);

/// Tells whether a tag exists.
/// @return 1 (own or public tag set), 0 (neither, null name, or not started)
int AaConfigTagIsSet(const char* tag);

/// Reads a tag's bytes.
/// @param tag        name
/// @param[out] data  reference-counted copy, followed by a null byte that size does not count; the caller releases it
///                   with AaMemUnRef; null unless the result is 0
/// @param[out] size  bytes; 0 unless the result is 0
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_NotFound, EAaConfigRetVal_InvalidValue,
///         EAaConfigRetVal_OutOfResources, EAaConfigRetVal_NotStarted
int AaConfigTagGet(const char* tag, void** data, unsigned int* size);

/// As AaConfigTagGet, but hands out a copy of a default for a tag that does not exist, and then returns 0.
/// @param defaultData  may be null when defaultSize is 0
/// @param defaultSize  bytes
/// @return as AaConfigTagGet without EAaConfigRetVal_NotFound
int AaConfigTagGetDefault(const char* tag, void** data, unsigned int* size, const void* defaultData,
                          unsigned int defaultSize);

/// Reads a tag as text.
/// @param[out] value   as data of AaConfigTagGet, thus always terminated
/// @param[out] length  characters without the terminator; 0 unless the result is 0
/// @return as AaConfigTagGet
int AaConfigTagGetString(const char* tag, char** value, unsigned int* length);

/// Reads a tag of 4 bytes.
/// @param[out] value  unchanged unless the result is 0
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_NotFound, EAaConfigRetVal_WrongSize, EAaConfigRetVal_InvalidValue,
///         EAaConfigRetVal_NotStarted
int AaConfigTagGetU32(const char* tag, uint32_t* value);

/// Reads a tag of 2 bytes; otherwise as AaConfigTagGetU32.
int AaConfigTagGetU16(const char* tag, uint16_t* value);

/// Sets an own tag to a text.
/// @param value  terminated text, copied
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_InvalidValue, EAaConfigRetVal_OutOfResources,
///         EAaConfigRetVal_NotStarted
int AaConfigTagSetString(const char* tag, const char* value);

/// Publishes a tag: stores the value for all processes and tells every registered call-back, also in this process.
/// @param data  value, copied; may be null when size is 0
/// @param size  0 to 65535 bytes
/// @return EAaConfigRetVal_NoError (stored; call-backs run later on their own threads), EAaConfigRetVal_InvalidValue,
///         EAaConfigRetVal_OutOfResources, EAaConfigRetVal_NotStarted
/// Blocks while another process commits a change.
int AaConfigTagPublicSet(const char* tag, const void* data, unsigned int size);

/// Publishes a tag of 4 bytes; otherwise as AaConfigTagPublicSet.
int AaConfigTagPublicSetU32(const char* tag, uint32_t value);

/// Has a call-back told of every publication of a tag from now on; the value that the tag has now is not reported.
/// @param tag       name; need not exist
/// @param callback  a pair of tag and call-back that is registered already stays registered once, with result 0
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_InvalidValue, EAaConfigRetVal_OutOfResources,
///         EAaConfigRetVal_NotStarted
int AaConfigTagRegister(const char* tag, TAaConfigTagCb callback);

/// Ends a registration. A call-back that has begun may still be running afterwards; no new one begins.
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_NotFound (the pair is not registered),
///         EAaConfigRetVal_InvalidValue, EAaConfigRetVal_NotStarted
int AaConfigTagUnregister(const char* tag, TAaConfigTagCb callback);

/// Has a call-back told of every change of a service's tags from now on.
/// @param service   leading part of the tags' names: "app.hwapi" covers "app.hwapi" and "app.hwapi.x", not "app.hwapis"
/// @param scope     whose changes
/// @param callback  told as for AaConfigTagRegister; the same three arguments again change nothing, with result 0
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_InvalidValue, EAaConfigRetVal_OutOfResources,
///         EAaConfigRetVal_NotStarted
int AaConfigSubscribeService(const char* service, EAaConfigSvcRegScope scope, TAaConfigTagCb callback);

/// Ends a service subscription, given the same three arguments. As AaConfigTagUnregister.
int AaConfigUnSubscribeService(const char* service, EAaConfigSvcRegScope scope, TAaConfigTagCb callback);

/// Registers an R&D domain and has its parameters filled in: calls the initialiser once, on the caller's thread.
/// @param domain       1 to 65535
/// @param name         shown to operators, copied
/// @param initialiser  sets the domain's size and defaults; may be null
/// @return EAaConfigRetVal_NoError (also when another process registered the domain: values that were set stay),
///         EAaConfigRetVal_InvalidValue, EAaConfigRetVal_OutOfResources, EAaConfigRetVal_NotStarted
int AaConfigRadRegisterDomain(unsigned int domain, const char* name, TAaConfigRadInitCb initialiser);

/// Sets the room of a domain.
/// @param domain       1 to 65535
/// @param maxTagCount  domain in the upper 16 bits, number of indices (one above the highest) in the lower 16 bits
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_NotFound (no such domain), EAaConfigRetVal_InvalidValue (another
///         domain in the upper bits), EAaConfigRetVal_OutOfResources, EAaConfigRetVal_NotStarted
int AaConfigRadSetMaxTagCount(unsigned int domain, unsigned int maxTagCount);

/// Names a parameter and gives it its default; a value that somebody has set stays.
/// @param id            parameter id
/// @param name          shown to operators, need not be unique, copied
/// @param defaultValue  value until somebody sets one
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_NotFound (no such domain), EAaConfigRetVal_InvalidValue (null name
///         or index beyond the domain's room), EAaConfigRetVal_NotStarted
int AaConfigRadSetDefault(unsigned int id, const char* name, unsigned int defaultValue);

/// Reads a parameter.
/// @return its value; 0 for a parameter that nobody named or set, and before start-up
/// Any thread at any time. Does not block.
unsigned int AaConfigRadGetValue(unsigned int id);

/// Sets a parameter, also one that nobody named. All processes of the node read the new value at once. Before start-up
/// nobody can read a parameter, and the call does nothing: a program that only prints its usage is no error.
/// @return EAaConfigRetVal_NoError, EAaConfigRetVal_InvalidValue (domain 0), EAaConfigRetVal_OutOfResources
/// Any thread at any time. Does not block.
int AaConfigRadSetValue(unsigned int id, unsigned int value);

#ifdef __cplusplus
}
#endif
