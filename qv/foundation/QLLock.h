#pragma once
// One re-entrant exclusion domain per display. Every settings object of a display holds the
// display's lock, or a lock chained to it, and writes every property through the setter
// family below: compare, store, closure, notification, all under the write guard.

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace qv {

class TQLBasicLock;

// A held lock. Movable; tests false when it came back empty because the lock's owner is
// on its way out. Releasing happens when the guard goes out of scope.
class TQLLockGuard {
public:
    TQLLockGuard() = default;
    explicit TQLLockGuard(TQLBasicLock* ARoot) : FRoot(ARoot) {}
    TQLLockGuard(TQLLockGuard&& AOther) noexcept : FRoot(std::exchange(AOther.FRoot, nullptr)) {}
    TQLLockGuard& operator=(TQLLockGuard&& AOther) noexcept
    {
        if (this != &AOther) {
            Release();
            FRoot = std::exchange(AOther.FRoot, nullptr);
        }
        return *this;
    }
    TQLLockGuard(const TQLLockGuard&) = delete;
    TQLLockGuard& operator=(const TQLLockGuard&) = delete;
    ~TQLLockGuard() { Release(); }

    explicit operator bool() const { return FRoot != nullptr; }
    // Lets the lock go; the outermost release of a thread also runs what was queued with
    // RunAfterRelease.
    void Release();

private:
    TQLBasicLock* FRoot = nullptr;
};

class IQLLock {
public:
    virtual ~IQLLock() = default;
    virtual TQLLockGuard AcquireRead() = 0;
    virtual TQLLockGuard AcquireWrite() = 0;
    // Marks this lock as going away and holds it; every later Acquire... on it, or on a lock
    // chained below it, comes back empty.
    virtual TQLLockGuard AcquireDestroy() = 0;
    virtual bool IsDestroying() const = 0;
    virtual TQLBasicLock* GetBasicLock() = 0;
};

using TQLNotifyProc = std::function<void()>;

// The root lock of a display, and the carrier of the setter family. A lock built with a
// parent (TQLLock) serialises on the root's mutex but keeps its own notification.
class TQLBasicLock : public IQLLock {
public:
    explicit TQLBasicLock(TQLNotifyProc ANotify = {}) : FNotify(std::move(ANotify)) {}

    TQLLockGuard AcquireRead() override { return Acquire(); }
    TQLLockGuard AcquireWrite() override { return Acquire(); }
    TQLLockGuard AcquireDestroy() override;
    bool IsDestroying() const override;
    TQLBasicLock* GetBasicLock() override { return this; }

    // Runs AAction once this lock is free: at once when the calling thread does not hold it,
    // else when the thread's outermost guard is released. Work that takes another display's
    // lock goes this way, so that no thread holds two displays' locks at once. The action
    // must not throw (it may run from a guard's destructor). Dropped when the lock's owner is
    // on its way out; returns whether it was taken.
    bool RunAfterRelease(TQLNotifyProc AAction);

    void SetNotify(TQLNotifyProc ANotify) { FNotify = std::move(ANotify); }
    const TQLNotifyProc& GetNotify() const { return FNotify; }

    // The common rule. Returns whether the field changed. AProc runs before the lock's own
    // notification, both while the write guard is held.
    template <class T, class V, class F = std::nullptr_t>
    bool Setter(T& AField, V&& AValue, F&& AProc = nullptr)
    {
        auto Guard = AcquireWrite();
        if (AField == AValue)
            return false;
        AField = std::forward<V>(AValue);
        if (!Guard) // on the way out: keep the value, notify nobody
            return true;
        if constexpr (!std::is_same_v<std::decay_t<F>, std::nullptr_t>) {
            if (IsCallable(AProc))
                AProc();
        }
        if (FNotify)
            FNotify();
        return true;
    }

    // The colour form; the flag is always false in this library and changes nothing.
    template <class F = std::nullptr_t>
    bool Setter(uint32_t& AField, uint32_t AValue, F&& AProc, bool /*AFlag*/)
    {
        return Setter(AField, AValue, std::forward<F>(AProc));
    }

    // A NaN has no place in a bounded range and raises std::invalid_argument.
    template <class T, class F = std::nullptr_t>
    bool SetterMin(T& AField, T AValue, T AMin, F&& AProc = nullptr)
    {
        CheckBounded(AValue);
        return Setter(AField, AValue < AMin ? AMin : AValue, std::forward<F>(AProc));
    }

    // Bounds given the wrong way round raise std::invalid_argument.
    template <class T, class F = std::nullptr_t>
    bool SetterMinMax(T& AField, T AValue, T AMin, T AMax, F&& AProc = nullptr)
    {
        CheckBounded(AValue);
        if (AMax < AMin)
            throw std::invalid_argument("SetterMinMax: minimum " + std::to_string(AMin) + " lies above maximum " +
                                        std::to_string(AMax));
        return Setter(AField, std::clamp(AValue, AMin, AMax), std::forward<F>(AProc));
    }

protected:
    TQLBasicLock(std::shared_ptr<IQLLock> AParent, TQLNotifyProc ANotify)
        : FParent(std::move(AParent)), FNotify(std::move(ANotify))
    {}

private:
    template <class T>
    static void CheckBounded(const T& AValue)
    {
        if constexpr (std::is_floating_point_v<T>) {
            if (std::isnan(AValue))
                throw std::invalid_argument("value " + std::to_string(AValue) + " is not a number");
        }
    }

    template <class F>
    static bool IsCallable(const F& AProc)
    {
        if constexpr (std::is_constructible_v<bool, const F&>)
            return static_cast<bool>(AProc);
        else
            return true;
    }

    friend class TQLLockGuard;

    TQLLockGuard Acquire();
    TQLBasicLock& Root();
    void Unlock();

    std::shared_ptr<IQLLock> FParent;
    TQLNotifyProc FNotify;
    // Used only by a root lock. FDepth counts the holder's guards and FAfterRelease holds the
    // actions waiting for the outermost one; both are touched only by the holding thread.
    std::recursive_mutex FMutex;
    int32_t FDepth = 0;
    std::vector<TQLNotifyProc> FAfterRelease;
    std::atomic<bool> FDestroying{false};
};

// A lock chained to a parent: acquiring it acquires the parent, its setters run its own
// notification. Collection items build one so that a setter on an item notifies the item.
class TQLLock : public TQLBasicLock {
public:
    TQLLock(std::shared_ptr<IQLLock> AParent, TQLNotifyProc ANotify)
        : TQLBasicLock(std::move(AParent), std::move(ANotify))
    {}
};

inline void TQLLockGuard::Release()
{
    if (FRoot)
        std::exchange(FRoot, nullptr)->Unlock();
}

using TQLLockPtr = std::shared_ptr<IQLLock>;

inline TQLLockPtr QLMakeLock(TQLNotifyProc ANotify = {})
{
    return std::make_shared<TQLBasicLock>(std::move(ANotify));
}
inline TQLLockPtr QLMakeChainedLock(TQLLockPtr AParent, TQLNotifyProc ANotify)
{
    return std::make_shared<TQLLock>(std::move(AParent), std::move(ANotify));
}

} // namespace qv
