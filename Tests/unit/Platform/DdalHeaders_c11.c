/* The device-driver layer's headers are C11, and the numbers that callers compare, print or pass are what they were. */
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

#define IS(constant, number) _Static_assert((constant) == (number), #constant " has another number")

IS(DDAL_OK, 0);
IS(DDAL_ALREADY_EXISTS, -17);
IS(DDAL_BOOT_UBOOT_PRIMARY, 0);
IS(DDAL_BOOT_UBOOT_BACKUP, 1);
IS(DDAL_BOOT_UBOOT_RAM, 2);
IS(DDAL_FPGA_BMU, 1);
IS(DDAL_FPGA_SLOT_PRIMARY, 1);
IS(DDAL_FPGA_SLOT_SECONDARY, 2);
IS(DDAL_FFS_NONE, 52);
IS(DDAL_FFS_FIRST, 53);
IS(DDAL_FFS_SECOND, 54);
IS(DDAL_FFS_LOGICAL_RUNNING, 128);
IS(DDAL_FFS_MODE_READ_ONLY, 1);
IS(DDAL_FFS_MODE_READ_WRITE, 2);
IS(DDAL_RIO_COPY_READ_WRITE, 2);
IS(DDAL_SYSINFO_CATEGORY_UNIT, 0);
IS(DDAL_SYSINFO_CATEGORY_NETWORK, 3);
IS(DDAL_SYSINFO_KEY_L1_NETWORK_PRIMARY_CONNECTIVITY, 6);
IS(DDAL_SYSINFO_KEY_RADIO_CARD, 12);
IS(DDAL_SYSINFO_KEY_ISTI, 14);
IS(DDAL_SYSINFO_KEY_RESET_COUNTER, 15);
IS(DDAL_SYSINFO_INDEX_NONE, 0);
IS(DDAL_SYSINFO_INDEX_RADIO_CARD_SLOT, 5);

/* A failure of a function that also returns counts, descriptors or board types must never look like one of them. */
_Static_assert(DDAL_NOT_SUPPORTED < 0 && DDAL_NOT_SUPPORTED != DDAL_ALREADY_EXISTS, "not a failure");
