#include "Output.hpp"

#include "Failure.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace mox::tools {

namespace {

/// Payloads and file names may hold any bytes; a reader of JSON may not get them all.
std::string textOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void writeTo(std::FILE* stream, const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stream) != text.size() || std::fflush(stream) != 0) {
        const bool isReaderGone = errno == EPIPE;
        throw Failure(isReaderGone ? ExitStatus::readerGone : ExitStatus::failed,
                      std::string("standard output: ") + std::strerror(errno));
    }
}

using Row = std::vector<std::string>;

Row titlesOf(const Listing& listing) {
    Row row;
    for (const Listing::Column& column : listing.columns) {
        row.emplace_back(column.title);
    }
    return row;
}

/// A row stays one line of the table, and a terminal is not steered, whatever a value holds.
std::string printable(const std::string& text) {
    constexpr unsigned char firstPrintable = 0x20;
    constexpr unsigned char erase = 0x7F;
    std::string shown;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= firstPrintable && byte != erase) {
            shown += character;
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned>(byte));
            shown += character == '\n' ? "\\n" : escaped;
        }
    }
    return shown;
}

Row rowOf(const Listing& listing, const Json& item) {
    Row row;
    for (const Listing::Column& column : listing.columns) {
        const auto member = item.find(column.member);
        row.push_back(member != item.end() ? printable(cellText(*member)) : "-");
    }
    return row;
}

/// Columns as wide as their longest cell; nothing is padded at the end of a line.
std::string tableOf(const std::vector<Row>& rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text;
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool last = i + 1 == row.size();
            text += row[i] + (last ? "\n" : std::string(widths[i] - row[i].size() + 2, ' '));
        }
    }
    return text;
}

void toStandardError(const std::string& text) {
    std::fputs((text + "\n").c_str(), stderr);
}

} // namespace

std::string cellText(const Json& value) {
    if (value.is_null()) {
        return "-";
    }
    if (value.is_string()) {
        return value.get<std::string>().empty() ? "-" : value.get<std::string>();
    }
    if (!value.is_array()) {
        return textOf(value);
    }
    std::string text;
    for (const Json& item : value) {
        text += (text.empty() ? "" : ",") + cellText(item);
    }
    return text.empty() ? "-" : text;
}

void Output::list(const Listing& listing, const Json& items) const {
    if (m_json) {
        object(Json{{"schema", listing.schema}, {listing.member, items}});
        return;
    }
    std::vector<Row> rows{titlesOf(listing)};
    for (const Json& item : items) {
        rows.push_back(rowOf(listing, item));
    }
    writeTo(stdout, tableOf(rows));
}

void Output::object(const Json& object) const {
    if (m_json) {
        writeTo(stdout, textOf(object) + "\n");
    }
}

void Output::line(const std::string& text) const {
    if (!m_json) {
        writeTo(stdout, text + "\n");
    }
}

void Output::raw(const std::string& text) const {
    writeTo(stdout, text);
}

void Output::note(const std::string& text) const {
    if (!m_quiet) {
        toStandardError(text);
    }
}

void Output::detail(const std::string& text) const {
    if (m_verbose) {
        toStandardError(text);
    }
}

void Output::failure(const Failure& failure) const {
    if (failure.status() == ExitStatus::readerGone) {
        return; // who has seen enough, as 'head' has, is told nothing
    }
    if (m_json) {
        Json error{{"status", static_cast<int>(failure.status())}, {"message", failure.what()}};
        if (!failure.details().empty()) {
            error["details"] = failure.details();
        }
        toStandardError(textOf(Json{{"error", error}}));
        return;
    }
    toStandardError(std::string("moxctl: ") + failure.what());
    for (const std::string& detail : failure.details()) {
        toStandardError("  " + detail);
    }
}

} // namespace mox::tools
