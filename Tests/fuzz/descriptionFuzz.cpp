// Any text as a board description: it is refused with a line that names the place, or taken whole.
#include "Fuzz.hpp"

#include <host/board/Description.hpp>

#include <algorithm>

using namespace mox::host;

void fuzz(std::string_view bytes) {
    DescriptionError error;
    const auto description = parseDescription(bytes, "board.json", error);
    if (!description) {
        const auto lines = static_cast<std::size_t>(1 + std::count(bytes.begin(), bytes.end(), '\n'));
        expect(error.line >= 1 && error.line <= lines);
        expect(!error.text.empty() && error.message().rfind("board.json:", 0) == 0);
        return;
    }
    for (const NodeDescription& node : description->nodes) {
        expect(parseNode(node.json, error).has_value());
    }
}
