#pragma once
// Cached axis limits. A frame reads the same limit thousands of times (once or more for every
// plotted point) and the limit getters chain through one another, so each limit is computed
// once after an invalidation and then read from its cache. Invalidation only marks a value
// stale and keeps it, so that the next computation can report how far the limit moved.
//
// The caches carry no lock: they are read and invalidated on the thread that lays out and
// paints. Reading is const, the cache itself is mutable state.

#include <atomic>
#include <functional>
#include <utility>

namespace qv {

// Computes a limit.
using TQVLimitGetter = std::function<double()>;
// Told the new value minus the old one whenever a limit is computed anew.
using TQVCachedValueChangeEvent = std::function<void(double ADelta)>;

class TQVDisplayCachedValue {
public:
    explicit TQVDisplayCachedValue(TQVLimitGetter AGetLimit) : FGetLimit(std::move(AGetLimit)) {}
    TQVDisplayCachedValue(const TQVDisplayCachedValue&) = delete;
    TQVDisplayCachedValue& operator=(const TQVDisplayCachedValue&) = delete;

    // The cached limit; computed first when stale or when caching is off.
    double GetValue() const
    {
        if (FPopulated && FCahce)
            return FValue;
        return Populate();
    }
    // Marks the value stale; the old value stays for the difference of the next computation.
    void Invalidate() { FPopulated = false; }
    bool GetPopulated() const { return FPopulated; }

    // With caching off every read computes the limit anew.
    bool GetCahce() const { return FCahce; }
    void SetCahce(bool AValue) { FCahce = AValue; }

    void SetOnChange(TQVCachedValueChangeEvent AHandler) { FOnChange = std::move(AHandler); }
    const TQVCachedValueChangeEvent& GetOnChange() const { return FOnChange; }

private:
    double Populate() const;

    // Cleared by Invalidate, which may come from a producer thread (a new sample rate).
    mutable std::atomic<bool> FPopulated{false};
    mutable double FValue = 0.0;
    TQVLimitGetter FGetLimit;
    bool FCahce = true;
    TQVCachedValueChangeEvent FOnChange;
};

// A cached minimum and maximum.
class TQVScaleCachedMinMaxValue {
public:
    TQVScaleCachedMinMaxValue(TQVLimitGetter AGetMin, TQVLimitGetter AGetMax)
        : FMin(std::move(AGetMin)), FMax(std::move(AGetMax))
    {}

    TQVDisplayCachedValue& GetMin() { return FMin; }
    const TQVDisplayCachedValue& GetMin() const { return FMin; }
    TQVDisplayCachedValue& GetMax() { return FMax; }
    const TQVDisplayCachedValue& GetMax() const { return FMax; }
    void Invalidate()
    {
        FMin.Invalidate();
        FMax.Invalidate();
    }

private:
    TQVDisplayCachedValue FMin;
    TQVDisplayCachedValue FMax;
};

// The full and the zoomed limits of one scale of an axis.
class TQVLimitCachedMinMaxValue {
public:
    TQVLimitCachedMinMaxValue(TQVLimitGetter AGetFullMin, TQVLimitGetter AGetFullMax, TQVLimitGetter AGetZoomedMin,
                              TQVLimitGetter AGetZoomedMax)
        : FFull(std::move(AGetFullMin), std::move(AGetFullMax)),
          FZoomed(std::move(AGetZoomedMin), std::move(AGetZoomedMax))
    {}

    TQVScaleCachedMinMaxValue& GetFull() { return FFull; }
    const TQVScaleCachedMinMaxValue& GetFull() const { return FFull; }
    TQVScaleCachedMinMaxValue& GetZoomed() { return FZoomed; }
    const TQVScaleCachedMinMaxValue& GetZoomed() const { return FZoomed; }
    void Invalidate()
    {
        FFull.Invalidate();
        FZoomed.Invalidate();
    }

private:
    TQVScaleCachedMinMaxValue FFull;
    TQVScaleCachedMinMaxValue FZoomed;
};

} // namespace qv
