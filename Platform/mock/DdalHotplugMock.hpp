#pragma once
/// The double of the functions in ddal/ddal_hotplug.h: class DdalHotplugMock. How it is used: Use.hpp.
#include <ddal/ddal_hotplug.h>

#define MOX_FAMILY <families/ddal_hotplug.def>
#define MOX_FAMILY_NAME DdalHotplug
#include "mock/declareMock.hpp"
