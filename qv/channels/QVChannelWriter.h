#pragma once
// A producer's handle on a channel's intake that stays safe whatever happens to the channel.
// A producer thread holds it by shared_ptr (TQVScopeChannel::GetWriter) instead of the
// channel's data object: while the channel lives every call goes through to the channel's
// intake (TQVChannelData, same rules and errors) and returns true. Once the channel goes
// (deleted, its collection cleared, dropped by a settings load, or its display destroyed) the
// channel detaches the writer, waiting for calls already under way; every later call returns
// false and counts its samples as dropped. So a producer stops when a write returns false.

#include "qv/channels/QVChannelData.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace qv {

class TQVChannelWriter {
public:
    explicit TQVChannelWriter(TQVChannelData* AData) : FData(AData) {}
    TQVChannelWriter(const TQVChannelWriter&) = delete;
    TQVChannelWriter& operator=(const TQVChannelWriter&) = delete;

    template <QVChannelElement T>
    bool AddYData(const T* ABuffer, uint32_t ASize, bool ASeparate = false)
    {
        return Write(ASize, [&](TQVChannelData& D) { D.AddYData(ABuffer, ASize, ASeparate); });
    }
    template <QVChannelElement T>
    bool AddXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize, bool ASeparate = false)
    {
        return Write(ASize, [&](TQVChannelData& D) { D.AddXYData(XBuffer, YBuffer, ASize, ASeparate); });
    }
    template <QVChannelElement T>
    bool SetYData(const T* ABuffer, uint32_t ASize)
    {
        return Write(ASize, [&](TQVChannelData& D) { D.SetYData(ABuffer, ASize); });
    }
    template <QVChannelElement T>
    bool SetXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize)
    {
        return Write(ASize, [&](TQVChannelData& D) { D.SetXYData(XBuffer, YBuffer, ASize); });
    }
    bool AddYPoint(double AValue, bool ASeparate = false)
    {
        return Write(1, [&](TQVChannelData& D) { D.AddYPoint(AValue, ASeparate); });
    }
    bool AddXYPoint(double XValue, double YValue, bool ASeparate = false)
    {
        return Write(1, [&](TQVChannelData& D) { D.AddXYPoint(XValue, YValue, ASeparate); });
    }

    // Whether the channel still takes samples.
    bool IsAttached() const { return FData.load(std::memory_order_acquire) != nullptr; }
    // Samples offered after the channel went.
    uint64_t GetDroppedSamples() const { return FDropped.load(std::memory_order_relaxed); }

    // Called by the channel on its way out: no call reaches the channel after it returns.
    void Detach();

private:
    // Counts the call as under way before it looks at the channel, so that Detach, which
    // clears the channel before it looks at the count, either sees the call and waits for it,
    // or the call sees no channel.
    class TInFlight {
    public:
        explicit TInFlight(std::atomic<int32_t>& ACount) : FCount(ACount) { FCount.fetch_add(1); }
        ~TInFlight() { FCount.fetch_sub(1); }
        TInFlight(const TInFlight&) = delete;
        TInFlight& operator=(const TInFlight&) = delete;

    private:
        std::atomic<int32_t>& FCount;
    };

    template <class F>
    bool Write(uint64_t ASamples, F&& AWrite)
    {
        TInFlight Guard(FInFlight);
        TQVChannelData* Data = FData.load();
        if (!Data) {
            FDropped.fetch_add(ASamples, std::memory_order_relaxed);
            return false;
        }
        AWrite(*Data);
        return true;
    }

    std::atomic<TQVChannelData*> FData;
    std::atomic<int32_t> FInFlight{0};
    std::atomic<uint64_t> FDropped{0};
};

} // namespace qv
