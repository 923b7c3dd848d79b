# Runs, execution units, messages and how they leave the process.
target_sources(mox_host_logic PRIVATE)
