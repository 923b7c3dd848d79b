#pragma once
/// The workstation's device-driver layer, under the names of the C functions, which the binding forwards to. What the
/// functions do is said in the headers of ddal/; a family is defined in a source file of its own, or in
/// Unsupported.cpp.
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

#include <families/forEach.hpp>

namespace mox::host {

#define MOX_FUNCTION(result, name, types) result name(MOX_TYPES(types));
#define MOX_FUNCTION0(result, name) result name();
#include <families/ddal.def>
#undef MOX_FUNCTION0
#undef MOX_FUNCTION

} // namespace mox::host
