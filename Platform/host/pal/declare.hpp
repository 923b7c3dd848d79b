// Declares each function of a family in mox::host, under the name and with the types of the public one. Included once a
// family, after the family's public header, with MOX_FAMILY naming its list; hence no #pragma once.
//
// Inside mox::host a call that passes one of the platform's own types is ambiguous without qualification, since the
// argument's namespace is searched too: write host::AaFileClose(file).
#include <families/forEach.hpp>

#define MOX_FUNCTION(result, name, types) result name(MOX_TYPES(types));
#define MOX_FUNCTION0(result, name) result name();
#define MOX_PROCEDURE(name, types) void name(MOX_TYPES(types));
#define MOX_PROCEDURE0(name) void name();

namespace mox::host {
#include MOX_FAMILY
} // namespace mox::host

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0
#undef MOX_FAMILY
