# Devices.
find_package(ZLIB REQUIRED)
target_link_libraries(mox_host_logic PRIVATE ZLIB::ZLIB)
target_sources(mox_host_logic PRIVATE
  ddal/ActiveState.cpp
  ddal/BmuReset.cpp
  ddal/Boot.cpp
  ddal/Devicetree.cpp
  ddal/Flash.cpp
  ddal/FlashPlan.cpp
  ddal/FlashRecord.cpp
  ddal/FlashWriter.cpp
  ddal/Fpga.cpp
  ddal/NodeProcesses.cpp
  ddal/Reset.cpp
  ddal/Rio.cpp
  ddal/SimulatedUnit.cpp
  ddal/Strerror.cpp
  ddal/Sysinfo.cpp
  ddal/SystemInformation.cpp
  ddal/Unit.cpp
  ddal/Unsupported.cpp
  ddal/VersionMarker.cpp
  ddal/Watchdog.cpp)
