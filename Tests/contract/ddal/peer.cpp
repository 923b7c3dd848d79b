// One call of a device function in a process of its own. Prints the function's result, and behind a blank what it has
// read.
#include <ddal/ddal_boot.h>
#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_fpga.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_watchdog.h>
#include <pal/AaConfig.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

std::uint32_t number(const std::string& text) {
    return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 0));
}

template <class Value>
std::string shown(int result, const Value& value) {
    std::string text = std::to_string(result) + " ";
    if constexpr (std::is_convertible_v<Value, std::string>)
        return text + value;
    else
        return text + std::to_string(value);
}

const std::map<std::string, std::function<std::string(const Words&)>> commands{
    {"version",
     [](const Words& words) {
         std::uint32_t version = 0;
         const int result = ddal_fpga_get_active_version(number(words.at(1)), &version);
         return shown(result, version);
     }},
    {"update",
     [](const Words& words) {
         return std::to_string(ddal_fpga_update_mod(number(words.at(1)), number(words.at(2)), words.at(3).c_str()));
     }},
    {"uboot", [](const Words& words) { return std::to_string(ddal_boot_update_uboot(words.at(1).c_str())); }},
    {"uboot-version",
     [](const Words&) {
         char version[128] = "";
         const int result = ddal_boot_get_uboot_version(sizeof version, version);
         return shown(result, version);
     }},
    {"unit",
     [](const Words&) {
         char id[8] = "";
         const int result = ddal_devicetree_get_unit_id(0, sizeof id, id);
         return shown(result, id);
     }},
    {"isti",
     [](const Words& words) {
         std::uint64_t value = 0;
         int result = words.size() > 1 ? ddal_sysinfo_set_uint(0, 14, 0, nullptr, number(words.at(1))) : DDAL_OK;
         result = result == DDAL_OK ? ddal_sysinfo_get_uint(0, 14, 0, nullptr, &value) : result;
         return shown(result, value);
     }},
    {"reboot", [](const Words&) { return std::to_string(ddal_watchdog_reboot()); }},
};

} // namespace

int main(int count, char** arguments) {
    const Words words(arguments + 1, arguments + count);
    const auto command = words.empty() ? commands.end() : commands.find(words[0]);
    if (command == commands.end() || AaConfigEarlyStartup() != EAaConfigRetVal_NoError)
        return 2;
    std::cout << command->second(words);
    return 0;
}
