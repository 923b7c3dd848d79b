# One image: its trailer, its payload.
target_sources(mox_firmware PRIVATE
  src/image/BinaryCrc.cpp
  src/image/BinaryValidate.cpp
  src/image/BinaryVersion.cpp
  src/image/CalculateCrc.cpp
  src/image/CopyWithoutTrailer.cpp
  src/image/GetTrailer.cpp
  src/image/ImageFile.cpp
  src/image/ImageTrailer.cpp
  src/image/LoadedTrailer.cpp
  src/image/ScanHwSwId.cpp
  src/image/XmlValues.cpp)
