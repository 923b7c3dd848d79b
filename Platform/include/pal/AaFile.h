#pragma once
/// Files and directories of the node.
///
/// Any thread, at any time; one open file is used by one thread at a time. Every function blocks for the time that the
/// file system takes. Paths are absolute, or relative to the process's working directory.
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// An open file; null is none, and every function answers it with its failure result.
typedef struct SAaFileHandle* TAaFile;

/// Results of this family; the functions that return one of them return it as int.
typedef enum EAaFileRetVal {
    EAaFileRetVal_NoError = 0,
    EAaFileRetVal_NotFound = 1,         ///< no such file or directory, or its parent is missing
    EAaFileRetVal_InvalidValue = 2,     ///< null argument
    EAaFileRetVal_AlreadyExists = 3,    ///< something of that name exists
    EAaFileRetVal_PermissionDenied = 4, ///< not allowed, or the file system is mounted read-only
    EAaFileRetVal_OutOfResources = 5,   ///< no memory, no descriptor, or no space left
    EAaFileRetVal_Error = 6             ///< any other failure of the file system
} EAaFileRetVal;

/// What a directory entry is.
typedef enum EAaFileDnodeType {
    EAaFileDnodeType_File = 1,
    EAaFileDnodeType_Directory = 2,
    EAaFileDnodeType_Other = 3 ///< FIFO, socket, device, or a link that leads nowhere
} EAaFileDnodeType;

/// One entry of a directory; links are followed.
typedef struct SAaFileDnode {
    char name[256];        ///< name without the directory, terminated
    EAaFileDnodeType type; ///< what it is
    uint64_t size;         ///< bytes of a file; 0 for anything else
    int64_t modifiedSec;   ///< last change, seconds since 1970-01-01 00:00 UTC
} SAaFileDnode;

/// Opens a file.
/// @param fileName  path
/// @param mode      as fopen's: "r", "w", "a", each with an optional "+" and "b"
/// @return the file, to be closed with AaFileClose; null on any failure
TAaFile AaFileOpen(const char* fileName, const char* mode);

/// Closes a file; the handle is invalid afterwards, whatever the result.
/// @return EAaFileRetVal_NoError, EAaFileRetVal_InvalidValue (null), EAaFileRetVal_OutOfResources,
///         EAaFileRetVal_Error (what was written last may be lost)
int AaFileClose(TAaFile file);

/// Reads items from the current position on.
/// @param[out] buffer  room for size * count bytes; bytes behind the items read are indeterminate
/// @param size         bytes of one item, 1 or more
/// @param count        items
/// @return items read in whole: fewer than count at the end of the file or on failure, 0 for a null argument
size_t AaFileRead(void* buffer, size_t size, size_t count, TAaFile file);

/// Reads up to and including the next line feed.
/// @param[out] line  the characters read and a terminating null; unchanged unless the result is above 0
/// @param size       bytes of line, 2 or more; a longer line is continued by the next call
/// @return characters read without the terminator, 0 at the end of the file, -1 on failure or for a null argument
int AaFileReadLine(char* line, unsigned int size, TAaFile file);

/// Writes items at the current position.
/// @param buffer  size * count bytes
/// @param size    bytes of one item, 1 or more
/// @param count   items
/// @return items written in whole: fewer than count on failure, 0 for a null argument
size_t AaFileWrite(const void* buffer, size_t size, size_t count, TAaFile file);

/// Tells the size of an open file, with what was written through this handle. The position stays.
/// @return bytes; -1 on failure or null
int64_t AaFileGetSize(TAaFile file);

/// Removes a file or an empty directory.
/// @return EAaFileRetVal_NoError, EAaFileRetVal_NotFound, EAaFileRetVal_InvalidValue,
///         EAaFileRetVal_PermissionDenied, EAaFileRetVal_Error (a directory that is not empty, among others)
int AaFileRemove(const char* fileName);

/// Tells whether something that is no directory exists under a name.
/// @return 1 (yes), 0 (no, or null)
int AaFileExists(const char* fileName);

/// Tells whether a directory exists.
/// @return 1 (yes), 0 (no, something else of that name, or null)
int AaFileDirExists(const char* dirName);

/// Creates a directory; its parent must exist.
/// @return EAaFileRetVal_NoError, EAaFileRetVal_AlreadyExists, EAaFileRetVal_NotFound (no parent),
///         EAaFileRetVal_InvalidValue, EAaFileRetVal_PermissionDenied, EAaFileRetVal_OutOfResources,
///         EAaFileRetVal_Error
int AaFileCreateDir(const char* dirName);

/// Lists a directory, sorted by name, without "." and "..".
/// @param[out] entries  array to be released with AaFileFreeListDirArray; null for an empty directory and on failure
/// @param[out] count    entries; 0 on failure
/// @return EAaFileRetVal_NoError, EAaFileRetVal_NotFound (also when it is no directory), EAaFileRetVal_InvalidValue,
///         EAaFileRetVal_PermissionDenied, EAaFileRetVal_OutOfResources
int AaFileListDir(const char* dirName, SAaFileDnode** entries, unsigned int* count);

/// Releases the array of AaFileListDir.
/// @param entries  the array; null is ignored
/// @param count    its entries, as AaFileListDir gave them
void AaFileFreeListDirArray(SAaFileDnode* entries, unsigned int count);

/// Packs a file, or a directory with everything below it, into a new tar archive.
/// @param itemName  path of what is packed; the archive holds it under its last path component
/// @param tarName   path of the archive, created or truncated; gzip-compressed when it ends in ".gz" or ".tgz"
/// @return EAaFileRetVal_NoError, EAaFileRetVal_NotFound (no such item; no archive is made),
/// EAaFileRetVal_InvalidValue,
///         EAaFileRetVal_PermissionDenied, EAaFileRetVal_OutOfResources, EAaFileRetVal_Error (an incomplete archive is
///         removed again)
int AaFileTarItem(const char* itemName, const char* tarName);

#ifdef __cplusplus
}
#endif
