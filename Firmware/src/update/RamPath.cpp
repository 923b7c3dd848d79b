#include <mox/ERadHwapi.hpp>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>
#include <pal/AaConfig.h>

int is_ram_path_used() {
    using namespace ps::hwapi::common;
    uint32_t supervisor = 0; // stays 0 while there is no such tag
    AaConfigTagGetU32("sys.hwapi.supervisor", &supervisor);
    return update::isRamPathChosen(supervisor, AaConfigRadGetValue(ERadHwapi_EnableRP441),
                                   AaConfigRadGetValue(unregistered::enableBtsLxc))
               ? 1
               : 0;
}
