#include "sweep/Components.hpp"

#include <mox/Firmware.h>

namespace mox::sweep {
namespace {

int askUboot(const char* directory, char* outPath, std::size_t outPathSize) {
    return is_uboot_update_needed(directory, outPath, outPathSize, 1);
}

int updateBmu(const char* path) {
    return update_bmu(path, 0);
}

} // namespace

const Component ubootComponent{"uboot", "update_uboot", "KOR-RN-QE.bin", "/tmp/u-boot.uim", &askUboot, &update_uboot};
const Component bmuComponent{"bmu", "update_bmu", "KOR-BMU.bin", "/tmp/bmufile", &is_bmu_update_needed, &updateBmu};
const Component fpgaComponent{"fpga",          "update_fpga",          "KOR-TIRVO2-QE.bin",
                              "/tmp/fpgafile", &is_fpga_update_needed, &update_fpga};

void PrintTo(const Component& component, std::ostream* out) {
    *out << component.function;
}

const Component* findComponent(const std::string& name) {
    for (const Component* component : {&ubootComponent, &bmuComponent, &fpgaComponent})
        if (name == component->name)
            return component;
    return nullptr;
}

} // namespace mox::sweep
