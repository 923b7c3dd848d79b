# Faults that are planned from outside for calls of the platform.
target_sources(mox_host_logic PRIVATE
  faults/Call.cpp
  faults/Failures.cpp
  faults/Faults.cpp
  faults/Functions.cpp
  faults/Outputs.cpp
  faults/Plan.cpp
  faults/PlanFile.cpp
  faults/ResultNames.cpp
  faults/ResultText.cpp)
