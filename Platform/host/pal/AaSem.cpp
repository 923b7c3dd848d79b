#include "AaSem.hpp"

#include "../core/Semaphore.hpp"
#include "../run/Run.hpp"

#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>

struct SAaSem : mox::host::Semaphore {
    using Semaphore::Semaphore;
};

struct SAaSemReMutex {
    pthread_mutex_t mutex;
    std::atomic<pthread_t> owner{}; ///< who holds it; asked by threads that may not hold it
    unsigned depth = 0;             ///< how often, under the mutex
};

namespace mox::host {

namespace {

bool isName(const char* name) {
    return name != nullptr && *name != '\0' && std::strlen(name) <= 200 && std::strchr(name, '/') == nullptr;
}

EAaSemRetVal wait(TAaSem sem) {
    if (sem == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    sem->wait();
    return EAaSemRetVal_NoError;
}

EAaSemRetVal post(TAaSem sem) {
    if (sem == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    return sem->post() ? EAaSemRetVal_NoError : EAaSemRetVal_OutOfResources;
}

} // namespace

EAaSemRetVal AaSemCreateC(TAaSem* sem, std::uint32_t initialCount) {
    if (sem == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    *sem = nullptr;
    if (initialCount > Semaphore::maxCount) {
        return EAaSemRetVal_InvalidValue;
    }
    *sem = new (std::nothrow) SAaSem(initialCount);
    return *sem != nullptr ? EAaSemRetVal_NoError : EAaSemRetVal_OutOfResources;
}

EAaSemRetVal AaSemCreateNamedC(TAaSem* sem, const char* name, std::uint32_t initialCount) {
    if (sem == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    *sem = nullptr;
    if (!isName(name) || initialCount > Semaphore::maxCount) {
        return EAaSemRetVal_InvalidValue;
    }
    SharedCount* shared = SharedCount::open(name, initialCount);
    if (shared == nullptr) {
        return EAaSemRetVal_Error;
    }
    *sem = new (std::nothrow) SAaSem(shared);
    return *sem != nullptr ? EAaSemRetVal_NoError : EAaSemRetVal_OutOfResources;
}

EAaSemRetVal AaSemDestroy(TAaSem sem) {
    if (sem == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    delete sem;
    return EAaSemRetVal_NoError;
}

EAaSemRetVal AaSemUnlink(const char* name) {
    if (!isName(name)) {
        return EAaSemRetVal_InvalidValue;
    }
    return SharedCount::unlink(name) ? EAaSemRetVal_NoError : EAaSemRetVal_NotFound;
}

EAaSemRetVal AaSemWait(TAaSem sem) {
    return wait(sem);
}

EAaSemRetVal AaSemGetValue(TAaSem sem, std::int32_t* value) {
    if (sem == nullptr || value == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    *value = static_cast<std::int32_t>(sem->count());
    return EAaSemRetVal_NoError;
}

EAaSemRetVal AaSemPost(TAaSem sem) {
    return post(sem);
}

EAaSemRetVal AaSemWaitPri(TAaSem sem) {
    return wait(sem);
}

EAaSemRetVal AaSemPostPri(TAaSem sem) {
    return post(sem);
}

EAaSemRetVal AaSemReMutexCreate(TAaSemReMutex* mutex) {
    if (mutex == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    *mutex = new (std::nothrow) SAaSemReMutex;
    if (*mutex == nullptr) {
        return EAaSemRetVal_OutOfResources;
    }
    pthread_mutexattr_t attributes{};
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    if (pthread_mutex_init(&(*mutex)->mutex, &attributes) != 0) { // some kernels cannot inherit priorities
        pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_NONE);
        pthread_mutex_init(&(*mutex)->mutex, &attributes);
    }
    pthread_mutexattr_destroy(&attributes);
    return EAaSemRetVal_NoError;
}

EAaSemRetVal AaSemReMutexDestroy(TAaSemReMutex mutex) {
    if (mutex == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    pthread_mutex_destroy(&mutex->mutex);
    delete mutex;
    return EAaSemRetVal_NoError;
}

EAaSemRetVal AaSemReMutexTake(TAaSemReMutex mutex) {
    if (mutex == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    pthread_mutex_lock(&mutex->mutex);
    mutex->owner.store(pthread_self(), std::memory_order_relaxed);
    ++mutex->depth;
    return EAaSemRetVal_NoError;
}

EAaSemRetVal AaSemReMutexRelease(TAaSemReMutex mutex) {
    if (mutex == nullptr) {
        return EAaSemRetVal_InvalidValue;
    }
    if (mutex->owner.load(std::memory_order_relaxed) != pthread_self()) {
        return EAaSemRetVal_NotOwner;
    }
    if (--mutex->depth == 0) {
        mutex->owner.store(pthread_t{}, std::memory_order_relaxed);
    }
    pthread_mutex_unlock(&mutex->mutex);
    return EAaSemRetVal_NoError;
}

} // namespace mox::host
