#include "qv/foundation/QLLock.h"

namespace qv {

std::recursive_mutex& TQLBasicLock::RootMutex()
{
    TQLBasicLock* Lock = this;
    while (Lock->FParent)
        Lock = Lock->FParent->GetBasicLock();
    return Lock->FMutex;
}

bool TQLBasicLock::IsDestroying() const
{
    if (FDestroying.load(std::memory_order_acquire))
        return true;
    return FParent && FParent->IsDestroying();
}

TQLLockGuard TQLBasicLock::Acquire()
{
    if (IsDestroying())
        return {};
    std::recursive_mutex& Mutex = RootMutex();
    Mutex.lock();
    // The owner may have started going away while this thread waited.
    if (IsDestroying()) {
        Mutex.unlock();
        return {};
    }
    return TQLLockGuard(&Mutex);
}

TQLLockGuard TQLBasicLock::AcquireDestroy()
{
    std::recursive_mutex& Mutex = RootMutex();
    Mutex.lock();
    FDestroying.store(true, std::memory_order_release);
    return TQLLockGuard(&Mutex);
}

} // namespace qv
