#pragma once
#include "Rules.hpp"

namespace mox::host::form {

extern const TextForm printable;  ///< printable ASCII
extern const TextForm identifier; ///< letters, digits, '.', '_' and '-'
extern const TextForm digits;     ///< decimal digits
extern const TextForm flashPath;  ///< a directory right below /ffs
extern const TextForm engine;     ///< "local" or "nats://host:port"
extern const TextForm tagName;    ///< printable ASCII without blanks

} // namespace mox::host::form
