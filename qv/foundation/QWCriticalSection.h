#pragma once
// A re-entrant critical section for data that producers on any thread share with the
// control's thread, and its scoped lock.

#include <mutex>
#include <utility>

namespace qv {

class TQWCriticalSection {
public:
    void Enter() { FMutex.lock(); }
    void Leave() { FMutex.unlock(); }
    bool TryEnter() { return FMutex.try_lock(); }

    // Runs AProc inside the section; the section is left also when AProc throws.
    template <class F>
    decltype(auto) Execute(F&& AProc)
    {
        std::lock_guard<std::recursive_mutex> Lock(FMutex);
        return std::forward<F>(AProc)();
    }

    std::recursive_mutex& GetMutex() { return FMutex; }

private:
    std::recursive_mutex FMutex;
};

// Holds a critical section for its lifetime.
class TQWCriticalSectionLock {
public:
    explicit TQWCriticalSectionLock(TQWCriticalSection& ASection) : FSection(ASection) { FSection.Enter(); }
    ~TQWCriticalSectionLock() { FSection.Leave(); }
    TQWCriticalSectionLock(const TQWCriticalSectionLock&) = delete;
    TQWCriticalSectionLock& operator=(const TQWCriticalSectionLock&) = delete;

private:
    TQWCriticalSection& FSection;
};

} // namespace qv
