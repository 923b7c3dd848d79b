#include "AaConfig.hpp"
#include "AaConfigState.hpp"
#include "AaMem.hpp"
#include "Tags.hpp"

#include <cstring>

namespace mox::host {
namespace {

int checkName(const char* tag) {
    if (!tags::isName(tag)) {
        return EAaConfigRetVal_InvalidValue;
    }
    return config::started() ? EAaConfigRetVal_NoError : EAaConfigRetVal_NotStarted;
}

int handOut(std::string_view bytes, void** data, unsigned int* size) {
    auto* copy = static_cast<char*>(AaMemMalloc(bytes.size() + 1));
    if (copy == nullptr) {
        return EAaConfigRetVal_OutOfResources;
    }
    bytes.copy(copy, bytes.size());
    copy[bytes.size()] = '\0';
    *data = copy;
    *size = static_cast<unsigned int>(bytes.size());
    return EAaConfigRetVal_NoError;
}

int clearOutputs(void** data, unsigned int* size) {
    if (data != nullptr) {
        *data = nullptr;
    }
    if (size != nullptr) {
        *size = 0;
    }
    return data != nullptr && size != nullptr ? EAaConfigRetVal_NoError : EAaConfigRetVal_InvalidValue;
}

template <class Number>
int getNumber(const char* tag, Number* value) {
    if (value == nullptr) {
        return EAaConfigRetVal_InvalidValue;
    }
    if (const int result = checkName(tag)) {
        return result;
    }
    const auto found = tags::get(tag);
    if (!found) {
        return EAaConfigRetVal_NotFound;
    }
    if (found->bytes.size() != sizeof(Number)) {
        return EAaConfigRetVal_WrongSize;
    }
    std::memcpy(value, found->bytes.data(), sizeof(Number));
    return EAaConfigRetVal_NoError;
}

int publish(const char* tag, ValueType type, const void* data, unsigned int size) {
    if ((data == nullptr && size != 0) || size > maxTagValue) {
        return EAaConfigRetVal_InvalidValue;
    }
    if (const int result = checkName(tag)) {
        return result;
    }
    TypedValue value{type, size != 0 ? std::string(static_cast<const char*>(data), size) : std::string()};
    return tags::publish(tag, value) ? EAaConfigRetVal_NoError : EAaConfigRetVal_OutOfResources;
}

} // namespace

int AaConfigTagIsSet(const char* tag) {
    return checkName(tag) == EAaConfigRetVal_NoError && tags::get(tag) ? 1 : 0;
}

int AaConfigTagGet(const char* tag, void** data, unsigned int* size) {
    if (const int result = clearOutputs(data, size)) {
        return result;
    }
    if (const int result = checkName(tag)) {
        return result;
    }
    const auto found = tags::get(tag);
    return found ? handOut(found->bytes, data, size) : EAaConfigRetVal_NotFound;
}

int AaConfigTagGetDefault(const char* tag, void** data, unsigned int* size, const void* defaultData,
                          unsigned int defaultSize) {
    const int result = AaConfigTagGet(tag, data, size);
    if (result != EAaConfigRetVal_NotFound) {
        return result;
    }
    if (defaultData == nullptr && defaultSize != 0) {
        return EAaConfigRetVal_InvalidValue;
    }
    const auto* bytes = defaultSize != 0 ? static_cast<const char*>(defaultData) : "";
    return handOut({bytes, defaultSize}, data, size);
}

int AaConfigTagGetString(const char* tag, char** value, unsigned int* length) {
    void* data = nullptr;
    const int result = AaConfigTagGet(tag, value != nullptr ? &data : nullptr, length);
    if (value != nullptr) {
        *value = static_cast<char*>(data);
    }
    return result;
}

int AaConfigTagGetU32(const char* tag, uint32_t* value) {
    return getNumber(tag, value);
}

int AaConfigTagGetU16(const char* tag, uint16_t* value) {
    return getNumber(tag, value);
}

int AaConfigTagSetString(const char* tag, const char* value) {
    if (value == nullptr || ::strnlen(value, maxTagValue + 1) > maxTagValue) {
        return EAaConfigRetVal_InvalidValue;
    }
    if (const int result = checkName(tag)) {
        return result;
    }
    tags::setOwn(tag, {ValueType::text, value});
    return EAaConfigRetVal_NoError;
}

int AaConfigTagPublicSet(const char* tag, const void* data, unsigned int size) {
    return publish(tag, ValueType::bytes, data, size);
}

int AaConfigTagPublicSetU32(const char* tag, uint32_t value) {
    return publish(tag, ValueType::u32, &value, sizeof value);
}

} // namespace mox::host
