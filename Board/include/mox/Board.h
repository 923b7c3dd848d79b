#pragma once
/// Who this is: units, plug-in modules and the own node, for C and C++.
///
/// What holds for every function here:
/// - Any thread. A function that asks the device tree blocks up to 50 ms while the device is read for the first time;
///   the others do not block. What cannot change while the process lives is asked once and remembered; a failure is
///   not remembered, so the next call asks again.
/// - A failed call of the device-driver layer is logged as a warning with the name of the function that made it. What a
///   look-up finds is logged at debug level. All lines carry feature id 0x20063.
/// - A result that tells success, or yes and no, is 1 or 0.
/// - A text is copied with strncpy: filled up with zeros to `length`, but not terminated when it has `length` or more
///   characters. A destination is untouched when the result is 0.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Unit types. Callers store and compare these numbers.
typedef enum EUnitType {
    EUnitType_Zup = 6,
    EUnitType_Kor = 9,
    EUnitType_Jep = 10,
    EUnitType_Wim = 19,
    EUnitType_Lom = 23,
    EUnitType_Dax = 24,
    EUnitType_Unknown = 26
} EUnitType;

/// Unit versions: a type together with its revision. Callers store and compare these numbers.
typedef enum EUnitVersion {
    EUnitVersion_Kora = 15,
    EUnitVersion_Korb = 16,
    EUnitVersion_Korc = 17,
    EUnitVersion_Kord = 18,
    EUnitVersion_Zupa = 19,
    EUnitVersion_Zupb = 20,
    EUnitVersion_Zupc = 21,
    EUnitVersion_Zupd = 22,
    EUnitVersion_Zupe = 23,
    EUnitVersion_Jepa = 24,
    EUnitVersion_Jepb = 25,
    EUnitVersion_Korg = 33,
    EUnitVersion_Zuph = 34,
    EUnitVersion_Zupi = 35,
    EUnitVersion_Zupf = 36,
    EUnitVersion_Zupj = 37,
    EUnitVersion_Jepc = 38,
    EUnitVersion_Jepd = 39,
    EUnitVersion_Zupg = 40,
    EUnitVersion_Kore = 41,
    EUnitVersion_Zupl = 42,
    EUnitVersion_Korh = 43,
    EUnitVersion_Wim = 51,
    EUnitVersion_Kori = 52,
    EUnitVersion_Korf = 58,
    EUnitVersion_Zupm = 59,
    EUnitVersion_Zupn = 60,
    EUnitVersion_Zupk = 61,
    EUnitVersion_Daxa = 66,
    EUnitVersion_Daxb = 67,
    EUnitVersion_Loma = 68,
    EUnitVersion_Lomb = 69,
    EUnitVersion_Unknown = 80
} EUnitVersion;

/// Board types of the Wim product line. Callers store and compare these numbers.
typedef enum EWimBoardType {
    EWimBoardType_Single = 0,
    EWimBoardType_Master = 1,
    EWimBoardType_Slave = 2,
    EWimBoardType_Pico = 3,
    EWimBoardType_PLUMB_4x4 = 4,
    EWimBoardType_Pico_DB = 5,
    EWimBoardType_Unknown = 6
} EWimBoardType;

// --- board ids: the kind of slot in bits 0 to 3, a position from 1 to 14 in bits 4 to 7 ---

/// @return 1 for 0x10, 0x20, ... 0xE0, and for 0xFF
uint32_t IsKor(uint32_t boardId);
/// @return 1 for 0x12, 0x22, ... 0xE2
uint32_t IsZup1(uint32_t boardId);
/// @return 1 for 0x13, 0x23, ... 0xE3
uint32_t IsZup2(uint32_t boardId);
/// @return 1 for 0x14, 0x24, ... 0xE4
uint32_t IsZup3(uint32_t boardId);
/// @return 0 for what IsKor accepts, 1, 2 and 3 for IsZup1, IsZup2 and IsZup3, else 255
uint32_t ApiGetSlotIdFromBoardId(uint32_t boardId);

// --- identity of a unit ---

/// Reads the unit id of a unit, such as "ZUPA"; at most 7 characters.
/// @param unit       unit number; 0 is the local unit
/// @param[out] text  the text; unlike elsewhere, the device tree writes it itself and may leave the rest of it alone
/// @param length     room in `text` in bytes, 1 or more; 8 and more always hold a terminator
/// @return 1, or 0
uint32_t ApiGetUnitId(uint32_t unit, char* text, uint32_t length);
/// The same for the production code; at most 12 characters, so that 13 bytes hold a terminator.
uint32_t ApiGetUnitProductionCode(uint32_t unit, char* text, uint32_t length);
/// The same for the serial number; at most 16 characters, so that 17 bytes hold a terminator.
uint32_t ApiGetUnitSerialNumber(uint32_t unit, char* text, uint32_t length);

/// Copies the unit id of the local unit.
/// @param[out] text  the text
/// @param length     bytes to fill in `text`; 8 and more always hold a terminator
/// @return 1, or 0
uint32_t ApiGetLocalUnitId(char* text, uint32_t length);
/// The same for the production code; a length of 13 and more always holds a terminator.
uint32_t ApiGetLocalUnitProductionCode(char* text, uint32_t length);
/// The same for the serial number; a length of 17 and more always holds a terminator.
uint32_t ApiGetLocalUnitSerialNumber(char* text, uint32_t length);

// --- hardware/software identifier, type and version ---

/// @param unit  unit number; 0 is the local unit
/// @return the unit's hardware/software identifier; 0 when it cannot be read
uint32_t ApiGetUnitHwSwId(uint32_t unit);
/// The same of the local unit.
uint32_t ApiGetLocalUnitHwSwId(void);

/// @param unit  unit number; 0 is the local unit
/// @return the hardware id: bits 12 to 27 of the unit's hardware/software identifier; 0 when it cannot be read
uint32_t ApiGetUnitHwId(uint32_t unit);
/// The same of the local unit.
uint32_t ApiGetLocalUnitHwId(void);

/// @return the unit type that bits 20 to 27 of a hardware/software identifier tell
EUnitType ApiGetUnitTypeFromHwSwId(uint32_t hwSwId);
/// @param unit  unit number; 0 is the local unit
/// @return the unit's type; EUnitType_Unknown also when the identifier cannot be read
EUnitType ApiGetUnitType(uint32_t unit);
/// The same of the local unit.
EUnitType ApiGetLocalUnitType(void);

/// @return the unit version that bits 12 to 27 of a hardware/software identifier tell; for units of the Wim line
///         bits 20 to 23 alone
EUnitVersion ApiGetUnitVersionFromHwSwId(uint32_t hwSwId);
/// @param unit  unit number; 0 is the local unit
/// @return the unit's version; EUnitVersion_Unknown also when the identifier cannot be read
EUnitVersion ApiGetUnitVersion(uint32_t unit);
/// The same of the local unit.
EUnitVersion ApiGetLocalUnitVersion(void);

/// @return 1 when the local unit has version 81. None has so far; callers ask nevertheless.
uint32_t ApiIsYolmpr(void);

// --- the Wim product line ---

/// Tells the board type. R&D parameter 0x20086, unless 0, stands in for the raw type that the board reports, from the
/// next call on.
/// @return the board type
EWimBoardType ApiGetWimBoardType(void);
/// @return the module version that goes with the board type: 34 for Single, Pico and Pico_DB, 35 for Master, 36 for
///         Slave, 42 for PLUMB_4x4, else 64
uint32_t ApiGetWimModuleVersion(void);
/// Tells the radio technology of the local unit: WCDMA when tag "sys.lfs.fpga.technology" begins with "wcdma", else
/// that of the radio cards in slots 0 to 2, for which it blocks up to 150 ms more. An unreadable card counts as none.
/// @return 0 FDD (also when no card says TDD, or when cards say both), 1 TDD, 2 WCDMA, 3 not a unit of the Wim line
uint32_t ApiGetLocalWimRatType(void);

// --- the own node ---

/// @return the board number of the own node; 0: not known
uint8_t ApiGetCurrentBoard(void);
/// @return the processor number of the own node; 0: not known
uint8_t ApiGetCurrentCpu(void);
/// @return the board id of the PDU next to the own node: bits 12 to 15 of the own node id, and 0x48. Logged at
///         information level.
uint32_t ApiGetPduBoardId(void);

// --- plug-in modules and the processor's die ---

/// Copies the module code, such as "MDAA", of the local unit's module.
/// @param[out] text  the text
/// @param length     bytes to fill in `text`; 8 and more always hold a terminator
/// @return 1, or 0
uint32_t ApiGetModuleId(char* text, uint32_t length);
/// The same for the production code; a length of 13 and more always holds a terminator.
uint32_t ApiGetModuleProductionCode(char* text, uint32_t length);
/// The same for the serial number; a length of 17 and more always holds a terminator.
uint32_t ApiGetModuleSerialNumber(char* text, uint32_t length);
/// @return the module version that goes with the module code of the local unit's module; 64: none, or not known
uint32_t ApiGetModuleVersion(void);

/// Copies the module code of the module on an external port. It can be plugged, so it is asked anew each time.
/// @param portId     the port
/// @param[out] text  the text
/// @param length     bytes to fill in `text`; 8 and more always hold a terminator
/// @return 1, or 0
uint32_t ApiGetExtModuleId(uint32_t portId, char* text, uint32_t length);
/// The same for the production code; a length of 13 and more always holds a terminator.
uint32_t ApiGetExtModuleProductionCode(uint32_t portId, char* text, uint32_t length);
/// The same for the serial number; a length of 17 and more always holds a terminator.
uint32_t ApiGetExtModuleSerialNumber(uint32_t portId, char* text, uint32_t length);
/// @param portId  the port
/// @return the module version that goes with the module code; 14 (also the version of "MDAJ") for none or an unknown
///         one, which is logged as a warning
uint32_t ApiGetExtModuleVersion(uint32_t portId);

/// Copies the die id of the local unit's processor.
/// @param[out] text  the text
/// @param length     bytes to fill in `text`; 129 and more always hold a terminator
/// @return 1, or 0
uint32_t ApiGetDieId(char* text, uint32_t length);
/// The same for the quality grade of the die id; a length of 9 and more always holds a terminator.
uint32_t ApiGetDieIdQuality(char* text, uint32_t length);

/// Copies the production code to show for a module: some are sold under another one than is burnt into them.
/// @param moduleVersion   the module's version
/// @param productionCode  terminated; its first 7 characters decide
/// @param[out] text       the code to show
/// @param length          bytes to fill in `text`
/// @return `text`
char* ApiGetModuleDisplayProductCodeEx(uint32_t moduleVersion, const char* productionCode, char* text, uint32_t length);

/// @param state  number of the state of an antenna device
/// @return the state's name, such as "Ready" for 0: a constant text; "Unknown" for a number without a name
const char* getAdetStateStr(int state);

#ifdef __cplusplus
}
#endif
