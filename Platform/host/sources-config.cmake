# What a run remembers: store, board description, configuration tags, R&D values, XML.
target_sources(mox_host_logic PRIVATE
  store/Environment.cpp
  store/Store.cpp)
