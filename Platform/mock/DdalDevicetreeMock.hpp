#pragma once
/// The double of the functions in ddal/ddal_devicetree.h: class DdalDevicetreeMock. How it is used: Use.hpp.
#include <ddal/ddal_devicetree.h>

#define MOX_FAMILY <families/ddal_devicetree.def>
#define MOX_FAMILY_NAME DdalDevicetree
#include "mock/declareMock.hpp"
