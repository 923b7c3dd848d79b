#include <mox/pal/InterfaceFactory.hpp>
#include <mox/pal/PALInstance.hpp>

namespace ps::hwapi::common {
namespace {

/// The class whose objects stand behind an interface.
template <typename T>
struct ImplementationOf;

template <>
struct ImplementationOf<pal::PALInterface> {
    using Type = pal::PALInstance;
};

} // namespace

template <typename T>
std::weak_ptr<T> InterfaceFactory<T>::instance_;

template <typename T>
std::mutex InterfaceFactory<T>::mutex_;

template <typename T>
std::shared_ptr<T> InterfaceFactory<T>::Get() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::shared_ptr<T> shared = instance_.lock();
    if (shared == nullptr) {
        shared = std::make_shared<typename ImplementationOf<T>::Type>();
        instance_ = shared;
    }
    return shared;
}

template class InterfaceFactory<pal::PALInterface>;

} // namespace ps::hwapi::common
