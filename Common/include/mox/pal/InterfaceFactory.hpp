#pragma once
#include <memory>
#include <mutex>

namespace ps::hwapi::common {

namespace pal {
class PALInterface;
}

/// Hands out the one object behind an interface for as long as anybody holds it.
///
///     const std::shared_ptr<pal::PALInterface> platform = InterfaceFactory<pal::PALInterface>::Get();
///
/// Available for pal::PALInterface, whose object is a pal::PALInstance.
template <typename T>
class InterfaceFactory {
public:
    /// @return the object that its other holders have; a new one when nobody holds one. It is destroyed when the last
    ///         holder lets go.
    /// Any thread. Callers wait for each other, for the construction of the object at most.
    static std::shared_ptr<T> Get();

private:
    static std::weak_ptr<T> instance_;
    static std::mutex mutex_;
};

extern template class InterfaceFactory<pal::PALInterface>;

} // namespace ps::hwapi::common
