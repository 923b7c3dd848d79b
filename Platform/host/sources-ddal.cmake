# Devices.
target_sources(mox_host_logic PRIVATE
  ddal/Strerror.cpp
  ddal/Unsupported.cpp)
