# Log, files, memory, time, timers, mailboxes, shell, troubleshooting files.
target_sources(mox_host_logic PRIVATE
  run/Clock.cpp)
