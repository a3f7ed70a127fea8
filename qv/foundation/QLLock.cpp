#include "qv/foundation/QLLock.h"

namespace qv {

TQLBasicLock& TQLBasicLock::Root()
{
    TQLBasicLock* Lock = this;
    while (Lock->FParent)
        Lock = Lock->FParent->GetBasicLock();
    return *Lock;
}

void TQLBasicLock::Unlock()
{
    if (--FDepth > 0 || FAfterRelease.empty()) {
        FMutex.unlock();
        return;
    }
    std::vector<TQLNotifyProc> Actions = std::move(FAfterRelease);
    FAfterRelease.clear();
    FMutex.unlock();
    for (TQLNotifyProc& Action : Actions)
        Action();
}

bool TQLBasicLock::RunAfterRelease(TQLNotifyProc AAction)
{
    if (!AAction)
        return false;
    auto Guard = Acquire();
    if (!Guard)
        return false;
    // Runs when this guard, or the thread's outer one, lets the lock go.
    Root().FAfterRelease.push_back(std::move(AAction));
    return true;
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
    TQLBasicLock& Lock = Root();
    Lock.FMutex.lock();
    // The owner may have started going away while this thread waited.
    if (IsDestroying()) {
        Lock.FMutex.unlock();
        return {};
    }
    ++Lock.FDepth;
    return TQLLockGuard(&Lock);
}

TQLLockGuard TQLBasicLock::AcquireDestroy()
{
    TQLBasicLock& Lock = Root();
    Lock.FMutex.lock();
    ++Lock.FDepth;
    FDestroying.store(true, std::memory_order_release);
    return TQLLockGuard(&Lock);
}

} // namespace qv
