# One image: its trailer, its payload.
target_sources(mox_firmware PRIVATE
  src/image/XmlValues.cpp)
