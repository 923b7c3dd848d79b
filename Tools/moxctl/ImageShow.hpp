#pragma once
/// Images and verdicts as moxctl prints them.
#include "ImageVerdict.hpp"
#include "Output.hpp"

namespace mox::tools {

/// Everything about an image, with a schema.
Json jsonOf(const Image& image);

/// The same as rows {"field", "value"} for a table.
Json rowsOf(const Image& image);

/// Everything about a verdict.
Json jsonOf(const ImageVerdict& verdict);

/// "kor.bin: good: ..." or "kor.bin: bad: ...".
std::string lineOf(const ImageVerdict& verdict);

/// "IMAGE_ERR_CRC" of 70413.
const char* resultName(int code);

/// "exact", "minor", "none"; null when nothing was asked.
Json jsonOf(IdentifierMatch match);

} // namespace mox::tools
