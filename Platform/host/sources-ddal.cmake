# Devices.
target_sources(mox_host_logic PRIVATE)
