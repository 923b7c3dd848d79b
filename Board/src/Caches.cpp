#include "Caches.hpp"

namespace ps::hwapi::board {

Caches caches;

void Caches::forget() {
    unitId.forget();
    unitHwSwId.forget();
    unitHwId.forget();
    unitProductionCode.forget();
    unitSerialNumber.forget();
    unitType.forget();
    unitVersion.forget();
    wimRatType.forget();
    moduleVersion.forget();
    board.forget();
    cpu.forget();
    moduleId.forget();
    moduleProductionCode.forget();
    moduleSerialNumber.forget();
}

} // namespace ps::hwapi::board
