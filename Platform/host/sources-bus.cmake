# Runs, execution units, messages and how they leave the process.
target_sources(mox_host_logic PRIVATE
  run/Lifecycle.cpp
  run/PlatformThread.cpp
  run/Run.cpp
  core/AdaptiveWait.cpp
  core/Eu.cpp
  core/Inbox.cpp
  core/Links.cpp
  core/MessagePool.cpp
  core/Registry.cpp
  core/Semaphore.cpp
  core/Send.cpp
  bus/BadDatagrams.cpp
  bus/Claim.cpp
  bus/Endpoint.cpp
  bus/Outbox.cpp
  bus/Process.cpp
  bus/Reader.cpp
  bus/SocketNames.cpp
  pal/AaPro.cpp
  pal/AaSem.cpp
  pal/AaStartup.cpp
  pal/AaSysComMsg.cpp
  pal/AaSysComRoute.cpp
  pal/AaSysComSend.cpp
  pal/AaSysComUser.cpp)
