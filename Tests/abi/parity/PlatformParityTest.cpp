// Built once against each provider of the platform: a function that one lacks does not link.
#include <ddal/ddal.h>
#include <ddal/ddal_alarms.h>
#include <ddal/ddal_bip.h>
#include <ddal/ddal_boot.h>
#include <ddal/ddal_cpri_axc.h>
#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_eth_switch.h>
#include <ddal/ddal_ffs.h>
#include <ddal/ddal_fpga.h>
#include <ddal/ddal_hotplug.h>
#include <ddal/ddal_power.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_rp3_str.h>
#include <ddal/ddal_sfp.h>
#include <ddal/ddal_syscom_route.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>
#include <ddal/ddal_watchdog.h>
#include <pal/AaConfig.h>
#include <pal/AaCpuBit.h>
#include <pal/AaError.h>
#include <pal/AaFile.h>
#include <pal/AaGpuXml.hpp>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <families/forEach.hpp>
#include <gtest/gtest.h>

#include <set>
#include <type_traits>
#include <vector>

namespace {

using Function = void (*)();

struct Symbol {
    const char* name;
    Function address;
};

/// A function under the type that its list says, which must be the declared one.
template <typename Listed, typename Declared>
Function listed(Declared* function) {
    static_assert(std::is_same_v<Listed, Declared>, "a family's list and its header disagree");
    return reinterpret_cast<Function>(function);
}

const std::vector<Symbol>& symbols() {
    static const std::vector<Symbol> all = {
#define MOX_FUNCTION(result, name, types) {#name, listed<result(MOX_TYPES(types))>(&::name)},
#define MOX_FUNCTION0(result, name) {#name, listed<result()>(&::name)},
#define MOX_PROCEDURE(name, types) {#name, listed<void(MOX_TYPES(types))>(&::name)},
#define MOX_PROCEDURE0(name) {#name, listed<void()>(&::name)},
#include <families/ddal.def>
#include <families/pal.def>
        {"AaSysLogPrint", reinterpret_cast<Function>(&::AaSysLogPrint)},
        {"AaSysLogPrintE", reinterpret_cast<Function>(&::AaSysLogPrintE)},
    };
    return all;
}

TEST(MOX_PROVIDER, DefinesEachFunctionAtAnAddressOfItsOwn) {
    std::set<Function> addresses;
    for (const Symbol& symbol : symbols()) {
        EXPECT_NE(symbol.address, nullptr) << symbol.name;
        EXPECT_TRUE(addresses.insert(symbol.address).second) << symbol.name;
    }
    EXPECT_GT(addresses.size(), 200U);
}

TEST(MOX_PROVIDER, DefinesTheXmlParser) {
    AaGpuXmlParser sut(0);
    EXPECT_EQ(sut.AaGpuXmlGetLastResult(), EAaGpuXmlResult_NotParsed);
    const std::unique_ptr<AaGpuXmlNode> document(sut.AaGpuXmlParse("<outer inner='1'/>"));
    ASSERT_NE(document, nullptr);
    ASSERT_TRUE(document->AaGpuXmlHasChildren());
    const AaGpuXmlNode* outer = document->AaGpuXmlGetFirstChildren();
    EXPECT_EQ(outer->AaGpuXmlGetName(), "outer");
    EXPECT_EQ(outer->AaGpuXmlGetValue(), "");
    EXPECT_EQ(outer->AaGpuXmlGetType(), EAaGpuXmlNodeType_Element);
    EXPECT_EQ(outer->AaGpuXmlGetNext(), nullptr);
}

} // namespace
