#pragma once
// The settings objects that the scope's X and Y axes own besides their limits: what the X
// axis prints (ticks mode, unit exponent), how many samples it spans when not sized by the
// data, whether cursors snap to samples, and the Y axis' autoscaling with its margins and
// hysteresis.

#include "qv/component/QVDisplayPersistent.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVBuffers.h"

#include <cstdint>
#include <memory>

namespace qv {

// What a scope X axis prints. atmAuto lets the channels' domains decide (frequency, axis or
// intensity); atmTime is only ever chosen by hand; atmManual prints Min.Tick and Max.Tick.
enum TQVDisplayAxisTicksMode : uint8_t {
    atmAuto,
    atmAxis,
    atmBufferSamples,
    atmFrequency,
    atmIntensity,
    atmTime,
    atmManual
};

// How many samples a scope X axis spans: the longest channel (Autosize) or Value.
class TQVScopeMaxSample : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    bool GetAutosize() const { return FAutoScale; }
    void SetAutosize(bool AValue) { Set(FAutoScale, AValue); }
    uint32_t GetValue() const { return FValue; }
    void SetValue(uint32_t AValue) { Set(FValue, AValue); }

    QL_CLASS_INFO()

private:
    bool FAutoScale = true;
    uint32_t FValue = 1024;
};

// The power of ten by which a time or frequency axis divides its printed values: chosen
// from the sample rate (AutoScale), or Exponent.
class TQVScopeXAxisUnitScale : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    bool GetAutoScale() const { return FAutoScale; }
    void SetAutoScale(bool AValue) { Set(FAutoScale, AValue); }
    int32_t GetExponent() const { return FExponent; }
    void SetExponent(int32_t AValue) { Set(FExponent, AValue); }

    QL_CLASS_INFO()

private:
    bool FAutoScale = true;
    int32_t FExponent = 0;
};

// Whether a cursor on the axis moves to the nearest sample value.
class TQVDisplayAxisCursorSettings : public TQVDisplayPersistent {
public:
    using TQVDisplayPersistent::TQVDisplayPersistent;

    bool GetSnapToSample() const { return FSnapToSample; }
    void SetSnapToSample(bool AValue)
    {
        Set(FSnapToSample, AValue, [this] { GetDisplay()->InvalidateRefresh(); });
    }

    QL_CLASS_INFO()

private:
    bool FSnapToSample = false;
};

// The margin (Space) added beyond the data at one edge of an autoscaled axis, and the
// hysteresis (Threshold) by which that edge must move inward before the scale shrinks. Both
// count in half per cent of the data span.
class TQVScopeAutoScalingSpace : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    uint32_t GetSpace() const { return FSpace; }
    void SetSpace(uint32_t AValue) { Set(FSpace, AValue); }
    uint32_t GetThreshold() const { return FThreshold; }
    void SetThreshold(uint32_t AValue) { Set(FThreshold, AValue); }

    QL_CLASS_INFO()

private:
    uint32_t FSpace = 20;
    uint32_t FThreshold = 10;
};

// Autoscaling of a scope Y axis: the scale follows the data on show, over a history of the
// last MaxHistory frames' extremes.
class TQVScopeAutoScaling : public TQLPersistentNotify {
public:
    TQVScopeAutoScaling(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVScopeAutoScaling() override;

    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue) { Set(FEnabled, AValue); }
    TQVScopeAutoScalingSpace* GetSpaceAbove() const { return FSpaceAbove.get(); }
    void SetSpaceAbove(const TQVScopeAutoScalingSpace* AValue) { FSpaceAbove->Assign(AValue); }
    TQVScopeAutoScalingSpace* GetSpaceBelow() const { return FSpaceBelow.get(); }
    void SetSpaceBelow(const TQVScopeAutoScalingSpace* AValue) { FSpaceBelow->Assign(AValue); }
    // Frames of history; a change makes new, empty history buffers of the new size.
    uint32_t GetMaxHistory() const { return FMaxHistory; }
    void SetMaxHistory(uint32_t AValue);

    // The history of the frames' minima and maxima, MaxHistory entries each.
    IQVRealBuffer& GetMinValuesBuffer() const { return *FMinValuesBuffer; }
    IQVRealBuffer& GetMaxValuesBuffer() const { return *FMaxValuesBuffer; }

    QL_CLASS_INFO()

private:
    void MakeBuffers();

    bool FEnabled = true;
    std::unique_ptr<TQVScopeAutoScalingSpace> FSpaceAbove;
    std::unique_ptr<TQVScopeAutoScalingSpace> FSpaceBelow;
    uint32_t FMaxHistory = 20;
    std::shared_ptr<IQVRealBuffer> FMaxValuesBuffer;
    std::shared_ptr<IQVRealBuffer> FMinValuesBuffer;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVDisplayAxisTicksMode, "atmAuto", "atmAxis", "atmBufferSamples", "atmFrequency", "atmIntensity",
                "atmTime", "atmManual")
