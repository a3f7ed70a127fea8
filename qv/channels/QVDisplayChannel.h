#pragma once
// The base of a display's channels: the colour and width a channel is drawn with, and its two
// buffer stages. The data stage receives samples on any thread under FDataCriticalSection;
// the draw stage is a frozen copy of it, renewed only by the hand-over on the control's
// thread under both sections, and read by painting without a lock.

#include "qv/axes/QVAxisChannel.h"
#include "qv/channels/QVChannelBuffer.h"
#include "qv/channels/QVChannelLookup.h"
#include "qv/channels/QVScopePoints.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QWCriticalSection.h"

#include <atomic>
#include <memory>
#include <vector>

namespace qv {

class TQVBasicScopeXAxis;
class TQVBasicScopeYAxis;

class TQVDisplayChannel;

// What is tied to a channel from outside (the link of a cursor or a zone): it lets go of the
// channel when the channel goes.
class IQVChannelLinkEnd {
public:
    virtual ~IQVChannelLinkEnd() = default;
    virtual void ChannelGone(TQVDisplayChannel* AChannel) = 0;
};

// A zone's tie to a channel whose own point symbols mark the channel's samples inside the
// zone. The channel draws them over its line, in place of its own symbols there.
class IQVChannelZoneLink {
public:
    virtual ~IQVChannelZoneLink() = default;
    // The symbols for the samples inside the zone.
    virtual const TQVScopePoints& GetZonePoints() const = 0;
    // Whether the sample (AX, AY), in data units, lies inside the zone.
    virtual bool HoldsSample(double AX, double AY) const = 0;
};

class TQVDisplayChannel : public TQVOptionalDisplayCollectionItem, public IQVAxisChannel {
public:
    explicit TQVDisplayChannel(TQLCollection* ACollection);
    ~TQVDisplayChannel() override;

    bool GetVisible() const override { return TQVOptionalDisplayCollectionItem::GetVisible(); }

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
    // The symbols drawn at the samples; assignment copies.
    TQVScopePoints* GetPoints() const { return FPoints.get(); }
    void SetPoints(const TQVScopePoints* AValue) { FPoints->Assign(AValue); }
    TQVScopeChannelMode GetChannelMode() const { return FChannelMode; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetChannelMode(TQVScopeChannelMode AValue);
    // The mouse cursor shown over the channel.
    TCursor GetMouseCursor() const { return FMouseCursor; }
    void SetMouseCursor(TCursor AValue) { Set(FMouseCursor, AValue); }
    // The dash pattern of lines and steps. A value outside the enumeration raises
    // std::invalid_argument naming it.
    TQVStrokeDash GetStrokeDash() const { return FStrokeDash; }
    void SetStrokeDash(TQVStrokeDash AValue);

    // ---- Screen stage (painting only; see QVScopeChannel.h) ----
    // Left of the data view's draw rectangle, or its top in a vertical display.
    int32_t GetDisplayOffset() const;
    // Width of the data view's draw rectangle, or its height in a vertical display.
    int32_t GetDisplayWidth() const;
    // Draw-stage index of the first sample on screen.
    int32_t GetScreenStartIndex() const { return FScreenStartIndex; }
    // Pixel columns the data occupies in the last frame.
    int32_t GetScreenUsedWidth() const { return FScreenUsedWidth; }
    // The visible slice of the draw stage, in data units.
    const std::shared_ptr<IQVRealBuffer>& GetXScreenDataBuffer() const { return FXScreenDataBuffer; }
    const std::shared_ptr<IQVRealBuffer>& GetYScreenDataBuffer() const { return FYScreenDataBuffer; }
    // Pixels of every screen sample, and the fractional X of each relative to the view. A
    // downsampled frame does not need them: they are worked out on the first call after it.
    const std::shared_ptr<IQVIntegerBuffer>& GetScaledIntDrawBufferX() const
    {
        UpdateScaledBuffers();
        return FScaledIntDrawBufferX;
    }
    const std::shared_ptr<IQVIntegerBuffer>& GetScaledIntDrawBufferY() const
    {
        UpdateScaledBuffers();
        return FScaledIntDrawBufferY;
    }
    const std::shared_ptr<IQVRealBuffer>& GetScaledRealDrawBufferX() const
    {
        UpdateScaledBuffers();
        return FScaledRealDrawBufferX;
    }
    // The points plotted: the scaled buffers themselves unless the slice was downsampled.
    // A point that is not there (a NaN sample) holds QVMissingPixel.
    const std::shared_ptr<IQVIntegerBuffer>& GetDownsampledIntDrawBufferX() const { return FDownsampledIntDrawBufferX; }
    const std::shared_ptr<IQVIntegerBuffer>& GetDownsampledIntDrawBufferY() const { return FDownsampledIntDrawBufferY; }
    // Where the plotted line breaks, as point index plus GetScreenStartIndex().
    const std::shared_ptr<IQVIntegerBuffer>& GetDownsampledGapsBuffer() const { return FDownsampledGapsBuffer; }

    // ---- Axes ----
    // The X (Y) axis the channel is drawn against: 0 the main axis, N the additional axis
    // N - 1. A negative index raises std::out_of_range. An index with no axis (yet) draws
    // against the main axis.
    int32_t GetXAxisIndex() const { return FXAxisIndex; }
    void SetXAxisIndex(int32_t AValue);
    int32_t GetYAxisIndex() const { return FYAxisIndex; }
    void SetYAxisIndex(int32_t AValue);
    // The axes the indexes resolve to in the channel's chart; null outside a chart.
    TQVBasicScopeXAxis* GetXAxis() const override;
    TQVBasicScopeYAxis* GetYAxis() const override;

    // ---- Domain: what the samples are (set by the source of the stream) ----
    // A spectrum: the X axis shows frequencies.
    bool GetFrequencyDomain() const override { return FFrequencyDomain; }
    void SetFrequencyDomain(bool AValue);
    // An intensity spectrum.
    bool GetIntensityDomain() const override { return FIntensityDomain; }
    void SetIntensityDomain(bool AValue);
    // X values come with the stream.
    bool GetInAxisDomain() const override { return FInAxisDomain; }
    void SetInAxisDomain(bool AValue);

    // ---- Draw stage (control's thread; painting reads it without a lock) ----
    // The buffers stay unchanged until the next hand-over. That one may refill a buffer in
    // place when only the channel holds it; a copy of the pointer kept beyond the hand-over
    // keeps its samples.
    const std::shared_ptr<IQVRealBuffer>& GetXDrawDataBuffer() const override { return FXDrawDataBuffer; }
    const std::shared_ptr<IQVRealBuffer>& GetYDrawDataBuffer() const override { return FYDrawDataBuffer; }
    const std::shared_ptr<IQVIntegerBuffer>& GetDrawGapsBuffer() const { return FDrawGapsBuffer; }
    // Whether X was a generated ramp when the draw stage was taken.
    bool GetDrawIsRamp() const override { return FDrawIsRamp; }
    // Counts the renewals of the draw stage: what is derived from its samples holds while
    // this stays the same.
    uint64_t GetDrawGeneration() const override { return FDrawGeneration; }

    // Whether X is the sample's running number (set by a ramp, cleared by explicit X blocks).
    bool GetIsRamp() const { return FIsRamp.load(std::memory_order_acquire); }

    // Lock order: the scope's FAllChannelSection, then FDataCriticalSection, then
    // FDrawCriticalSection; never otherwise.
    TQWCriticalSection& GetDrawCriticalSection() const { return FDrawCriticalSection; }
    TQWCriticalSection& GetDataCriticalSection() const { return FDataCriticalSection; }

    // ---- Links of elements to this channel ----
    // A link registers while it names the channel; the channel tells each one when it goes.
    void AddElementLink(IQVChannelLinkEnd* ALink);
    void RemoveElementLink(IQVChannelLinkEnd* ALink);
    // The zone links whose symbols the channel draws, in the order they joined; a link joins
    // while its symbols are visible and leaves before it goes.
    void AddZoneLink(IQVChannelZoneLink* ALink);
    void RemoveZoneLink(IQVChannelZoneLink* ALink);
    const std::vector<IQVChannelZoneLink*>& GetZoneLinks() const { return FHighlightZonesList; }

    // ---- Value lookup on the last painted frame (QVChannelLookup.cpp) ----
    // Nothing is found before the first paint. Gaps break the line; a crossing whose value
    // is NaN is not reported.
    // The distance in pixels from (X, Y) to the channel as drawn, 0 on a sample or bar;
    // QVNoHitDistance when nothing is within reach. The other arguments receive the point
    // hit, the way the piece runs, the fraction between the samples ABeginIndex and
    // AEndIndex (draw-stage indexes). The base channel draws nothing and is never hit.
    virtual double HitTest(int32_t X, int32_t Y, TPoint& APoint, TQVHitDetectDirection& ADirection, double& AFraction,
                           int32_t& ABeginIndex, int32_t& AEndIndex);
    // The crossings with the vertical line at X value AValue (data units), left to right. A
    // value on a sample counts once, on the segment that starts there.
    void CalcVIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue) const;
    // The crossings with the horizontal line at Y value AValue (data units).
    void CalcHIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue) const;
    // The Y values where the channel crosses X value XValue, and the X values where it
    // crosses Y value YValue.
    TQVScopeRealPoints GetYPointsAtValue(double XValue) const;
    TQVScopeRealPoints GetXPointsAtValue(double YValue) const;

    // ---- Highlighting (QVChannelHighlight.cpp) ----
    // Lit in the legend: the channel is under the mouse, or the legend points at it and the
    // chart's Highlighting.Channels lights legend buttons.
    bool GetHighlighted() const override;
    // The legend points at the channel (when Highlighting.Channels.HiglightFromLegend) or
    // away from it; the plot repaints when that changes.
    void SetHighlighted(bool AValue) override;
    // Drawn in the highlight colour: pointed at from the legend with HiglightFromLegend, or
    // under the mouse with HiglightFromMouse; never when printing.
    bool GetDrawnHighlighted(bool APrinting) const;
    // Highlighting.Channels.Color, or the channel's own colour on a display without it.
    TAlphaColor GetHighlightColor() const;

    QL_CLASS_INFO()

private:
    // A channel going away leaves no highlight or drag naming it.
    void ForgetHighlights();

protected:
    friend class TQVChannelData;

    // Hidden or shown: the axes' ranges, rates and domains change with it.
    void VisibleChanged() override;
    // A removed channel leaves the axes' ranges too.
    void BeforeDestruction() override;
    // The axes that read the channel must look again.
    void AxesChanged();
    // Brings the scaled buffers up to date when the last frame left them out.
    virtual void UpdateScaledBuffers() const {}
    // The pixels of screen sample AIndex along and across the X axis; false for a sample
    // that is not drawn (NaN).
    virtual bool GetScreenPixel(int32_t AIndex, int32_t& AAlong, int32_t& AAcross) const;
    // The crossings with a vertical line at X value AValue (AVerticalLine) or a horizontal one
    // at Y value AValue: the walk of CalcVIntersections and CalcHIntersections.
    void CalcIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue,
                           bool AVerticalLine) const;

    std::vector<IQVChannelLinkEnd*> FElementLinks;
    std::vector<IQVChannelZoneLink*> FHighlightZonesList;
    std::atomic<bool> FIsRamp{false};
    std::shared_ptr<IQVIntegerBuffer> FDrawGapsBuffer;
    mutable TQWCriticalSection FDrawCriticalSection;
    mutable TQWCriticalSection FDataCriticalSection;
    // Blocks the two stages let go of, for the data stage's next fresh ones.
    std::shared_ptr<TQVChannelBuffer::TRecycler> FBlockRecycler;
    // Data stage: written by intake under FDataCriticalSection.
    TQVChannelBuffer FXDataBuffer;
    TQVChannelBuffer FYDataBuffer;
    // Draw stage: written only under both sections.
    std::shared_ptr<IQVRealBuffer> FXDrawDataBuffer;
    std::shared_ptr<IQVRealBuffer> FYDrawDataBuffer;
    bool FDrawIsRamp = false;
    uint64_t FDrawGeneration = 0;

    TAlphaColor FColor = 0xFFFF0000;
    TAlphaColor FColorDefault = 0xFFFF0000;
    int32_t FWidth = 1;
    std::unique_ptr<TQVScopePoints> FPoints;
    TQVScopeChannelMode FChannelMode = cmLine;
    TCursor FMouseCursor = 0;
    TQVStrokeDash FStrokeDash = sdSolid;

    // Screen stage: written and read by painting on the control's thread only.
    std::shared_ptr<IQVIntegerBuffer> FDownsampledGapsBuffer;
    std::shared_ptr<IQVRealBuffer> FXScreenDataBuffer;
    std::shared_ptr<IQVRealBuffer> FYScreenDataBuffer;
    std::shared_ptr<IQVIntegerBuffer> FScaledIntDrawBufferX;
    std::shared_ptr<IQVIntegerBuffer> FScaledIntDrawBufferY;
    // Replaced when the scaled buffers are filled on demand (see UpdateScaledBuffers).
    mutable std::shared_ptr<IQVRealBuffer> FScaledRealDrawBufferX;
    std::shared_ptr<IQVIntegerBuffer> FDownsampledIntDrawBufferX;
    std::shared_ptr<IQVIntegerBuffer> FDownsampledIntDrawBufferY;
    int32_t FScreenStartIndex = 0;
    int32_t FScreenUsedWidth = 0;
    int32_t FXAxisIndex = 0;
    int32_t FYAxisIndex = 0;
    bool FFrequencyDomain = false;
    bool FIntensityDomain = false;
    bool FInAxisDomain = false;
};

} // namespace qv
