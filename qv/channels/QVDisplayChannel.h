#pragma once
// The base of a display's channels: the colour and width a channel is drawn with, and its two
// buffer stages. The data stage receives samples on any thread under FDataCriticalSection;
// the draw stage is a frozen copy of it, renewed only by the hand-over on the control's
// thread under both sections, and read by painting without a lock.

#include "qv/channels/QVChannelBuffer.h"
#include "qv/display/QVDisplayCollectionItem.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QWCriticalSection.h"

#include <atomic>
#include <memory>

namespace qv {

class TQVBasicScopeXAxis;
class TQVBasicScopeYAxis;

class TQVDisplayChannel : public TQVOptionalDisplayCollectionItem {
public:
    explicit TQVDisplayChannel(TQLCollection* ACollection);
    ~TQVDisplayChannel() override;

    // ---- Appearance ----
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue);
    // The colour the collection gave; Color is stored only when it differs from it.
    TAlphaColor GetColorDefault() const { return FColorDefault; }
    // A new default; the colour follows when it still held the old default.
    void SetColorDefault(TAlphaColor AValue);
    // Line width in pixels, kept in 1..2000.
    int32_t GetWidth() const { return FWidth; }
    void SetWidth(int32_t AValue);

    // ---- Axes ----
    // The X (Y) axis the channel is drawn against: 0 the main axis, N the additional axis
    // N - 1. A negative index raises std::out_of_range. An index with no axis (yet) draws
    // against the main axis.
    int32_t GetXAxisIndex() const { return FXAxisIndex; }
    void SetXAxisIndex(int32_t AValue);
    int32_t GetYAxisIndex() const { return FYAxisIndex; }
    void SetYAxisIndex(int32_t AValue);
    // The axes the indexes resolve to in the channel's chart; null outside a chart.
    TQVBasicScopeXAxis* GetXAxis() const;
    TQVBasicScopeYAxis* GetYAxis() const;

    // ---- Domain: what the samples are (set by the source of the stream) ----
    // A spectrum: the X axis shows frequencies.
    bool GetFrequencyDomain() const { return FFrequencyDomain; }
    void SetFrequencyDomain(bool AValue);
    // An intensity spectrum.
    bool GetIntensityDomain() const { return FIntensityDomain; }
    void SetIntensityDomain(bool AValue);
    // X values come with the stream.
    bool GetInAxisDomain() const { return FInAxisDomain; }
    void SetInAxisDomain(bool AValue);

    // ---- Draw stage (control's thread; painting reads it without a lock) ----
    // The buffers stay unchanged until the next hand-over. That one may refill a buffer in
    // place when only the channel holds it; a copy of the pointer kept beyond the hand-over
    // keeps its samples.
    const std::shared_ptr<IQVRealBuffer>& GetXDrawDataBuffer() const { return FXDrawDataBuffer; }
    const std::shared_ptr<IQVRealBuffer>& GetYDrawDataBuffer() const { return FYDrawDataBuffer; }
    const std::shared_ptr<IQVIntegerBuffer>& GetDrawGapsBuffer() const { return FDrawGapsBuffer; }
    // Whether X was a generated ramp when the draw stage was taken.
    bool GetDrawIsRamp() const { return FDrawIsRamp; }

    // Whether X is the sample's running number (set by a ramp, cleared by explicit X blocks).
    bool GetIsRamp() const { return FIsRamp.load(std::memory_order_acquire); }

    // Lock order: the scope's FAllChannelSection, then FDataCriticalSection, then
    // FDrawCriticalSection; never otherwise.
    TQWCriticalSection& GetDrawCriticalSection() const { return FDrawCriticalSection; }
    TQWCriticalSection& GetDataCriticalSection() const { return FDataCriticalSection; }

    QL_CLASS_INFO()

protected:
    friend class TQVChannelData;

    // Hidden or shown: the axes' ranges, rates and domains change with it.
    void VisibleChanged() override;
    // The axes that read the channel must look again.
    void AxesChanged();

    std::atomic<bool> FIsRamp{false};
    std::shared_ptr<IQVIntegerBuffer> FDrawGapsBuffer;
    mutable TQWCriticalSection FDrawCriticalSection;
    mutable TQWCriticalSection FDataCriticalSection;
    // Data stage: written by intake under FDataCriticalSection.
    TQVChannelBuffer FXDataBuffer;
    TQVChannelBuffer FYDataBuffer;
    // Draw stage: written only under both sections.
    std::shared_ptr<IQVRealBuffer> FXDrawDataBuffer;
    std::shared_ptr<IQVRealBuffer> FYDrawDataBuffer;
    bool FDrawIsRamp = false;

    TAlphaColor FColor = 0xFFFF0000;
    TAlphaColor FColorDefault = 0xFFFF0000;
    int32_t FWidth = 1;
    int32_t FXAxisIndex = 0;
    int32_t FYAxisIndex = 0;
    bool FFrequencyDomain = false;
    bool FIntensityDomain = false;
    bool FInAxisDomain = false;
};

} // namespace qv
