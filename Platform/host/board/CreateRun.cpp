#include "CreateRun.hpp"

#include "../ddal/FlashRecord.hpp"
#include "../pal/Tags.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "RunLayout.hpp"

#include <filesystem>
#include <fstream>

namespace mox::host {
namespace {

namespace files = std::filesystem;

constexpr int error = 4;
constexpr const char* engineKey = "engine";

bool isEmptyOrNew(const std::string& directory, std::string& why) {
    std::error_code code;
    const auto status = files::symlink_status(directory, code);
    if (status.type() == files::file_type::not_found) {
        return true;
    }
    const bool empty = files::is_directory(directory, code) && files::is_empty(directory, code) && !code;
    if (!empty) {
        why = directory + ": expected a directory that is empty or does not exist" +
              (code ? ": " + code.message() : std::string());
    }
    return empty;
}

bool writeDescription(const std::string& directory, std::string_view text, std::string& why) {
    std::error_code code;
    files::create_directories(directory, code);
    std::ofstream file(directory + "/board.json", std::ios::binary);
    file << text << std::flush;
    if (file) {
        return true;
    }
    why = directory + "/board.json: cannot be written" + (code ? ": " + code.message() : std::string());
    return false;
}

bool fillStore(const std::string& path, const Description& description, std::string& why) {
    const auto store = Store::open(path, true, why);
    if (!store) {
        return false;
    }
    Store::Write write(*store);
    for (const auto& tag : description.tags) {
        write.put(Table::tags, tag.name, tags::encode(tag.value));
    }
    for (const auto& node : description.nodes) {
        write.put(Table::nodes, hex4(node.id), node.json);
        for (const auto& factory : factoryImages(node)) {
            write.put(Table::devices, flashRecordKey(node.id, factory.area), encodeFlashRecord(factory.image));
        }
    }
    write.put(Table::settings, engineKey, description.engine);
    if (write.commit()) {
        return true;
    }
    why = path + ": the store cannot be written";
    return false;
}

bool layOut(const std::string& directory, const Description& description, std::string_view text, std::string& why) {
    if (!writeDescription(directory, text, why) || !fillStore(directory + "/store", description, why)) {
        return false;
    }
    for (const auto& node : description.nodes) {
        if (!layOutNode(directory + "/nodes/" + hex4(node.id), node, why)) {
            return false;
        }
    }
    return true;
}

/// Leaves the directory itself when it was there before.
void takeBack(const std::string& directory, bool wasThere) {
    std::error_code ignored;
    if (!wasThere) {
        files::remove_all(directory, ignored);
        return;
    }
    for (const auto& entry : files::directory_iterator(directory, ignored)) {
        files::remove_all(entry.path(), ignored);
    }
}

std::optional<NodeDescription> nodeIn(std::string_view key, std::string_view json) {
    DescriptionError failure;
    auto node = parseNode(json, failure);
    if (!node) {
        logPlatform(error, "node %.*s of the run: %s", static_cast<int>(key.size()), key.data(), failure.text.c_str());
    }
    return node;
}

} // namespace

bool createRun(const std::string& directory, std::string_view text, const std::string& fileName, std::string& why) {
    why.clear();
    DescriptionError failure;
    const auto description = parseDescription(text, fileName, failure);
    if (!description) {
        why = failure.message();
        return false;
    }
    if (!isEmptyOrNew(directory, why)) {
        return false;
    }
    const bool wasThere = files::exists(directory);
    if (!layOut(directory, *description, text, why)) {
        takeBack(directory, wasThere);
        return false;
    }
    return true;
}

std::vector<NodeDescription> readNodes(const Store& store) {
    std::vector<NodeDescription> nodes;
    store.forEach(Table::nodes, "", [&](std::string_view key, std::string_view json) {
        if (auto node = nodeIn(key, json)) {
            nodes.push_back(std::move(*node));
        }
        return true;
    });
    return nodes;
}

std::optional<NodeDescription> readNode(const Store& store, std::uint16_t nid) {
    const std::string key = hex4(nid);
    const auto json = store.get(Table::nodes, key);
    return json ? nodeIn(key, *json) : std::nullopt;
}

std::string readEngine(const Store& store) {
    return store.get(Table::settings, engineKey).value_or("local");
}

} // namespace mox::host
