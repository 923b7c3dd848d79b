# Log, files, memory, time, timers, mailboxes, shell, troubleshooting files.
target_sources(mox_host_logic PRIVATE
  log/LineRing.cpp
  log/Log.cpp
  log/LogBuffers.cpp
  log/LogLine.cpp
  log/LogSinks.cpp
  log/Syslog.cpp
  pal/AaCpuBit.cpp
  pal/AaError.cpp
  pal/AaFile.cpp
  pal/AaFileListDir.cpp
  pal/AaFileTarItem.cpp
  pal/AaMem.cpp
  pal/AaProCmd.cpp
  pal/AaSysLog.cpp
  pal/AaSysMb.cpp
  pal/AaSysTime.cpp
  pal/AaSysTimer.cpp
  pal/AaTrbl.cpp
  pal/ArchiveLibrary.cpp
  pal/CalendarTime.cpp
  pal/Command.cpp
  pal/FileCopy.cpp
  pal/Mailboxes.cpp
  pal/OpenFile.cpp
  pal/Shell.cpp
  pal/Timers.cpp
  run/Clock.cpp
  run/RunTable.cpp
  run/TurnThread.cpp)

# The sinks' library is compiled into the one file that uses it, and libraries that nobody calls are not loaded:
# loading it and its formatter at run time would add two thirds to the start-up time of every service.
set_source_files_properties(log/LogSinks.cpp PROPERTIES
  COMPILE_OPTIONS "-USPDLOG_COMPILED_LIB;-USPDLOG_SHARED_LIB;-DSPDLOG_FMT_EXTERNAL;-DFMT_HEADER_ONLY")
target_link_options(mox_host_logic INTERFACE LINKER:--as-needed)

# Whoever calls syslog() gets the one here, also where its archive comes later on the link line.
target_link_options(mox_host_logic INTERFACE LINKER:--undefined=vsyslog)
