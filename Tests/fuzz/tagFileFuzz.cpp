// Any text as a tag file: it is refused with a reason that names the file, or every tag in it has a name.
#include "Fuzz.hpp"

#include <host/pal/TagFile.hpp>

using namespace mox::host;

void fuzz(std::string_view bytes) {
    std::string why;
    const auto tags = parseTagFile(bytes, "mox.xml", why);
    if (!tags) {
        expect(why.rfind("mox.xml", 0) == 0);
        return;
    }
    for (const NamedValue& tag : *tags) {
        expect(!tag.name.empty());
    }
}
