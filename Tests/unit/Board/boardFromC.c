/* The header is C11, and the numbers that callers store and compare are what they were. */
#include <mox/Board.h>

#define IS(constant, number) _Static_assert((constant) == (number), #constant " has another number")

IS(EUnitType_Zup, 6);
IS(EUnitType_Kor, 9);
IS(EUnitType_Jep, 10);
IS(EUnitType_Wim, 19);
IS(EUnitType_Dax, 24);
IS(EUnitType_Lom, 23);
IS(EUnitType_Unknown, 26);
IS(EUnitVersion_Zupa, 19);
IS(EUnitVersion_Zupb, 20);
IS(EUnitVersion_Zupc, 21);
IS(EUnitVersion_Zupd, 22);
IS(EUnitVersion_Zupe, 23);
IS(EUnitVersion_Zupf, 36);
IS(EUnitVersion_Zupg, 40);
IS(EUnitVersion_Zuph, 34);
IS(EUnitVersion_Zupi, 35);
IS(EUnitVersion_Zupj, 37);
IS(EUnitVersion_Zupk, 61);
IS(EUnitVersion_Zupl, 42);
IS(EUnitVersion_Zupm, 59);
IS(EUnitVersion_Zupn, 60);
IS(EUnitVersion_Kora, 15);
IS(EUnitVersion_Korb, 16);
IS(EUnitVersion_Korc, 17);
IS(EUnitVersion_Kord, 18);
IS(EUnitVersion_Kore, 41);
IS(EUnitVersion_Korf, 58);
IS(EUnitVersion_Korg, 33);
IS(EUnitVersion_Korh, 43);
IS(EUnitVersion_Kori, 52);
IS(EUnitVersion_Jepa, 24);
IS(EUnitVersion_Jepb, 25);
IS(EUnitVersion_Jepc, 38);
IS(EUnitVersion_Jepd, 39);
IS(EUnitVersion_Wim, 51);
IS(EUnitVersion_Daxa, 66);
IS(EUnitVersion_Daxb, 67);
IS(EUnitVersion_Loma, 68);
IS(EUnitVersion_Lomb, 69);
IS(EUnitVersion_Unknown, 80);
IS(EWimBoardType_Single, 0);
IS(EWimBoardType_Master, 1);
IS(EWimBoardType_Slave, 2);
IS(EWimBoardType_Pico, 3);
IS(EWimBoardType_PLUMB_4x4, 4);
IS(EWimBoardType_Pico_DB, 5);
IS(EWimBoardType_Unknown, 6);

/* Every function as a caller in C sees it. */
struct Identification {
    uint32_t (*ofBoardId[5])(uint32_t);
    uint32_t (*textOfUnit[6])(uint32_t, char*, uint32_t);
    uint32_t (*text[8])(char*, uint32_t);
    uint32_t (*wordOfUnit[3])(uint32_t);
    uint32_t (*word[7])(void);
    EUnitType (*typeOf[2])(uint32_t);
    EUnitType (*type)(void);
    EUnitVersion (*versionOf[2])(uint32_t);
    EUnitVersion (*version)(void);
    EWimBoardType (*wimBoardType)(void);
    uint8_t (*place[2])(void);
    char* (*displayProductCode)(uint32_t, const char*, char*, uint32_t);
    const char* (*adetState)(int);
};

extern const struct Identification identificationFromC;

const struct Identification identificationFromC = {
    {IsKor, IsZup1, IsZup2, IsZup3, ApiGetSlotIdFromBoardId},
    {ApiGetUnitId, ApiGetUnitProductionCode, ApiGetUnitSerialNumber, ApiGetExtModuleId, ApiGetExtModuleProductionCode,
     ApiGetExtModuleSerialNumber},
    {ApiGetLocalUnitId, ApiGetLocalUnitProductionCode, ApiGetLocalUnitSerialNumber, ApiGetModuleId,
     ApiGetModuleProductionCode, ApiGetModuleSerialNumber, ApiGetDieId, ApiGetDieIdQuality},
    {ApiGetUnitHwSwId, ApiGetUnitHwId, ApiGetExtModuleVersion},
    {ApiGetLocalUnitHwSwId, ApiGetLocalUnitHwId, ApiIsYolmpr, ApiGetWimModuleVersion, ApiGetLocalWimRatType,
     ApiGetPduBoardId, ApiGetModuleVersion},
    {ApiGetUnitTypeFromHwSwId, ApiGetUnitType},
    ApiGetLocalUnitType,
    {ApiGetUnitVersionFromHwSwId, ApiGetUnitVersion},
    ApiGetLocalUnitVersion,
    ApiGetWimBoardType,
    {ApiGetCurrentBoard, ApiGetCurrentCpu},
    ApiGetModuleDisplayProductCodeEx,
    getAdetStateStr,
};
