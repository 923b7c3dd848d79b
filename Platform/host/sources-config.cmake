# What a run remembers: store, board description, configuration tags, R&D values, XML.
target_sources(mox_host_logic PRIVATE
  board/Check.cpp
  board/Consistency.cpp
  board/Description.cpp
  board/Extract.cpp
  board/Json.cpp
  board/Rules.cpp
  board/TextForms.cpp
  pal/TypedValue.cpp
  store/Environment.cpp
  store/Store.cpp)
