#pragma once
/// The double of the functions in ddal/ddal_alarms.h: class DdalAlarmsMock. How it is used: Use.hpp.
#include <ddal/ddal_alarms.h>

#define MOX_FAMILY <families/ddal_alarms.def>
#define MOX_FAMILY_NAME DdalAlarms
#include "mock/declareMock.hpp"
