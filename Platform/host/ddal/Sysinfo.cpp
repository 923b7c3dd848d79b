#include "../pal/Tags.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "Ddal.hpp"
#include "SimulatedUnit.hpp"
#include "SystemInformation.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace mox::host {

namespace {

/// Most bytes of a value that can be set.
constexpr std::size_t maxData = 4096;

struct ReadOnlyKey {
    std::uint32_t category;
    std::uint32_t key;
};

// What the hardware alone decides.
constexpr ReadOnlyKey readOnlyKeys[] = {
    {DDAL_SYSINFO_CATEGORY_UNIT, DDAL_SYSINFO_KEY_RADIO_CARD},
    {DDAL_SYSINFO_CATEGORY_UNIT, DDAL_SYSINFO_KEY_RESET_COUNTER},
    {DDAL_SYSINFO_CATEGORY_NETWORK, DDAL_SYSINFO_KEY_L1_NETWORK_PRIMARY_CONNECTIVITY},
};

/// What a caller asks for.
struct Wanted {
    std::uint32_t category;
    std::uint32_t key;
    std::uint32_t indexKind;
    const std::uint32_t* index;

    bool hasIndex() const { return indexKind != DDAL_SYSINFO_INDEX_NONE; }
    bool isReadOnly() const {
        return std::any_of(std::begin(readOnlyKeys), std::end(readOnlyKeys),
                           [this](const ReadOnlyKey& row) { return row.category == category && row.key == key; });
    }
};

/// An entry of the unit, or the reason why there is none.
struct Found {
    int result;
    const SystemInformation* entry = nullptr;
};

bool isAt(const SystemInformation& entry, const Wanted& wanted) {
    return !entry.index || (entry.indexKind == wanted.indexKind && *entry.index == *wanted.index);
}

Found find(const Devices& devices, const Wanted& wanted) {
    if (wanted.hasIndex() != (wanted.index != nullptr))
        return {DDAL_INVALID_PARAMETER};
    Found found{DDAL_NOT_FOUND};
    for (const SystemInformation& entry : devices.systemInformation) {
        if (entry.category != wanted.category || entry.key != wanted.key)
            continue;
        if (entry.index.has_value() != wanted.hasIndex())
            found.result = DDAL_INVALID_PARAMETER;
        else if (isAt(entry, wanted))
            return {DDAL_OK, &entry};
    }
    return found;
}

/// Finds the entry and hands its present value on.
template <class Use>
int read(const char* function, const Wanted& wanted, ValueType type, Use use) {
    const SimulatedUnit unit(function);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const Found found = find(unit.devices(), wanted);
    if (found.result != DDAL_OK)
        return found.result;
    if (found.entry->value.type != type)
        return DDAL_INVALID_PARAMETER;
    const auto record = unit.run().store().get(Table::devices, systemInformationKey(unit.node(), *found.entry));
    return use(systemInformationValue(record, *found.entry).bytes);
}

int write(const char* function, const Wanted& wanted, const TypedValue& value) {
    const SimulatedUnit unit(function);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const Found found = find(unit.devices(), wanted);
    if (found.result != DDAL_OK)
        return found.result;
    if (found.entry->value.type != value.type || wanted.isReadOnly())
        return DDAL_INVALID_PARAMETER;
    const std::string key = systemInformationKey(unit.node(), *found.entry);
    return unit.run().store().put(Table::devices, key, tags::encode(value)) ? DDAL_OK : DDAL_IO_ERROR;
}

} // namespace

int ddal_sysinfo_get_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, uint64_t* value) {
    if (value == nullptr)
        return DDAL_INVALID_PARAMETER;
    return read(__func__, {category, key, indexKind, index}, ValueType::u64, [value](const std::string& bytes) {
        *value = numberIn(bytes).value_or(0);
        return DDAL_OK;
    });
}

int ddal_sysinfo_set_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, uint64_t value) {
    return write(__func__, {category, key, indexKind, index}, numberValue(ValueType::u64, value));
}

int ddal_sysinfo_get_string(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, char* text,
                            size_t size) {
    if (text == nullptr)
        return DDAL_INVALID_PARAMETER;
    return read(__func__, {category, key, indexKind, index}, ValueType::text, [text, size](const std::string& bytes) {
        if (bytes.size() >= size)
            return static_cast<int>(DDAL_NO_SPACE);
        std::memcpy(text, bytes.c_str(), bytes.size() + 1);
        return static_cast<int>(DDAL_OK);
    });
}

int ddal_sysinfo_set_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, const void* data,
                          size_t size) {
    if (data == nullptr || size == 0)
        return DDAL_INVALID_PARAMETER;
    if (size > maxData)
        return DDAL_NO_SPACE;
    return write(__func__, {category, key, indexKind, index},
                 {ValueType::bytes, std::string(static_cast<const char*>(data), size)});
}

int ddal_sysinfo_get_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, void* data,
                          size_t* size) {
    if (data == nullptr || size == nullptr)
        return DDAL_INVALID_PARAMETER;
    return read(__func__, {category, key, indexKind, index}, ValueType::bytes, [data, size](const std::string& bytes) {
        const bool fits = bytes.size() <= *size;
        if (fits)
            std::memcpy(data, bytes.data(), bytes.size());
        *size = bytes.size();
        return static_cast<int>(fits ? DDAL_OK : DDAL_NO_SPACE);
    });
}

} // namespace mox::host
