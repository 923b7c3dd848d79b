# Which image in a directory is the board's, and updating from it.
target_sources(mox_firmware PRIVATE
  src/update/BmuReset.cpp
  src/update/DdalFailure.cpp
  src/update/Decisions.cpp
  src/update/FindBinaryCompatible.cpp
  src/update/FindBinaryMultiple.cpp
  src/update/Finders.cpp
  src/update/LocalFpga.cpp
  src/update/PolicyMarkers.cpp
  src/update/RamPath.cpp
  src/update/UnitTexts.cpp
  src/update/UpdateRules.cpp
  src/update/Updates.cpp)
