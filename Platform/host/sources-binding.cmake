# The platform's symbols, exported.
target_sources(mox_host PRIVATE
  binding/AaConfig.cpp
  binding/AaCpuBit.cpp
  binding/AaError.cpp
  binding/AaFile.cpp
  binding/AaMem.cpp
  binding/AaPro.cpp
  binding/AaSem.cpp
  binding/AaShell.cpp
  binding/AaStartup.cpp
  binding/AaSysCom.cpp
  binding/AaSysLog.cpp
  binding/AaSysMb.cpp
  binding/AaSysTime.cpp
  binding/AaSysTimer.cpp
  binding/AaTrbl.cpp
  binding/ddal.cpp)
