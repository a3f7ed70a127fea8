#pragma once
// A channel of the scope: samples arrive through its Data object on any thread, are held to
// the scope's SizeLimit in the data stage, and reach the draw stage when the scope's refresh
// tick calls PopulateDrawBuffers.

#include "qv/channels/QVChannelBuffer.h"
#include "qv/channels/QVChannelWriter.h"
#include "qv/channels/QVDisplayChannel.h"
#include "qv/channels/QVDisplayChannels.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/foundation/QVBlockExtremes.h"
#include "qv/pins/QWPins.h"

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace qv {

class TQVChannelData;
class TQVChannelMouseHitPoint;
class TQVDisplayAxis;
class TQVScopeOwner;
class TQVScopeChannel;
class TQVScopeChannelMarkers;

// Fired for each bar before it is drawn; clearing DefaultDraw leaves that bar out.
using TQVSampleDrawEvent = std::function<void(TQLPersistent* Sender, double XValue, double YValue, TQLCanvas& Canvas,
                                              bool Highlighted, bool& DefaultDraw)>;
// Fired once per frame before the channel is plotted, with the draw stage's Y samples and
// whether they changed since the last frame. It runs inside painting: the scope ignores
// repaint requests meanwhile.
using TQVChannelDrawEvent = std::function<void(TQLPersistent* Sender, int32_t ChannelIndex, const double* ChannelData,
                                               int32_t DataSize, bool WasChanged)>;
// A plotting procedure of the channel, handed the prepared screen stage.
using TQVChannelDrawProc = void (TQVScopeChannel::*)(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect,
                                                     double AYOffset, const double* AYData, const double* AXData,
                                                     int32_t ASize, const IQVIntegerBuffer& AXInts,
                                                     const IQVIntegerBuffer& AYInts, bool Printing);

class TQVScopeChannel : public TQVDisplayChannel {
public:
    explicit TQVScopeChannel(TQLCollection* ACollection);
    ~TQVScopeChannel() override;

    // The intake object; every sample call goes through it. Never null while the channel lives.
    TQVChannelData* GetData() const { return FData.get(); }
    // The intake as a producer thread should hold it: the handle outlives the channel and its
    // calls return false once the channel is gone (see QVChannelWriter.h).
    const std::shared_ptr<TQVChannelWriter>& GetWriter() const { return FWriter; }
    // The scope the channel belongs to; null for a channel outside a scope, which then has no
    // size limit.
    TQVScopeOwner* GetScope() const { return FOwner; }

    // The hand-over: the draw stage becomes a frozen copy of the data stage. Called by the
    // scope on the control's thread; takes the channel's property lock, then the data
    // section, then the draw section.
    void PopulateDrawBuffers();
    // Marks the line as broken between samples AIndex - 1 and AIndex; nothing for 0. Raises
    // std::out_of_range above INT32_MAX.
    void AddGapAt(uint32_t AIndex);
    // Drops the leading gap entries below ACount and subtracts ACount from the others.
    // Raises std::out_of_range above INT32_MAX.
    void ShiftGaps(uint32_t ACount);
    // The extent and size of the draw stage's X values (NaN extremes when it is empty).
    void GetMinMaxSize(double& AMin, double& AMax, int32_t& ASize) const;
    // From another scope channel: the settings, both stages and the gaps. The source's stages
    // are taken under its own sections before this channel's sections are entered.
    void Assign(const TQLPersistent* ASource) override;
    // What a new SizeLimit does to the channel: when ALimit is not 0 and Y holds more, Y and
    // then X are cut to their newest ALimit samples (an X that held fewer is padded in front
    // with NaN). The gaps stay as they are.
    void ApplySizeLimit(uint32_t ALimit);
    // X becomes 0, 1, 2, ... over the size of Y, and the channel counts as a ramp.
    void PopulateRamp();
    // Extends the ramp by ACount values after a block of ACount Y samples (see QVChannelData.h).
    void ShiftPopulateRamp(uint32_t ACount);

    // ---- Pins (QVScopeChannelPins.cpp) ----
    // A channel can take its stream through two pins: Y values (or complex samples, or X and
    // Y pairs) through InputPin, X positions through XInputPin. Each operation runs on the
    // sender's thread under the display's lock, then the scope's all-channel section, then
    // the channel's data section. In a scope the channel is named "Channel<n>", n the number
    // of input pins the scope had, and its pins are registered under that name.
    TQVQWComboRealIntComplexPairedQueuedSinkPin* GetInputPin() const { return FInputPin.get(); }
    TQVQWQueuedIntegerRealSinkPin* GetXInputPin() const { return FXInputPin.get(); }
    // The channel takes part in the wait of synchronised channels: a block of another
    // channel waits until this one has as much queued, and this one's blocks wait for them.
    // Off, the channel neither holds others nor is held.
    bool GetSynchronize() const { return FSynchronize; }
    void SetSynchronize(bool AValue);
    // The dispatch procedures of the two pins. They raise nothing: operations they do not
    // know are ignored. The result is false.
    bool YSinkDispatch(TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState);
    bool XSinkDispatch(TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState);
    // A block of Y values, held to SizeLimit (L): without L it replaces the data; one larger
    // than L leaves its newest L values; a smaller one is appended. X becomes the ramp
    // 0, 1, 2, ... A complex block goes to AddBuffers (real parts as X, imaginary as Y).
    // Byte data raises std::invalid_argument naming its kind.
    void AddBuffer(const IQVData& ABuffer);
    // X and Y blocks: appended to the data as AddXYData does with L, else they replace it.
    // Complex or byte data raises std::invalid_argument naming its kind.
    void AddBuffers(const IQVData& AXBuffer, const IQVData& AYBuffer);
    // The group step for a queued Y block: takes the next one when every other channel has
    // as much (see TQVScope::ProcessEnoughChannelData).
    void ProcessQueuedBuffers();
    // Takes the next queued Y block into the data; with the X pin active, only when the X
    // queue holds the X values for it, which are stretched to the block's size.
    void ProcessBuffers();
    // Called for the group when another channel goes on: takes this channel's next block, if
    // it streams and has one. The arguments are not used.
    void ProcessQueuedData(uint32_t ASize, double ASampleRate);
    // Whether this channel lets a group block of ASize samples at ASampleRate go on: it is
    // hidden, not synchronised, unconnected or ignored, streams at another rate or in other
    // block sizes, or has at least as much queued (in time), X included.
    bool HasEnoughData(uint32_t ASize, double ASampleRate);
    // Takes the connection state of both pins for the group decisions.
    void CollectPinConnections();

    // The data stage changed since the last hand-over.
    bool GetHasNewBuffer() const { return FHasNewBuffer.load(std::memory_order_acquire); }
    // The draw stage was renewed and what is derived from it must be recomputed.
    bool GetDataChanged() const { return FDataChanged.load(std::memory_order_acquire); }
    void ClearDataChanged() { FDataChanged.store(false, std::memory_order_release); }
    // The data stage's gap indexes, as a buffer of their own.
    std::shared_ptr<IQVIntegerBuffer> GetGapsBuffer() const;

    // ---- Plotting (control's thread, inside painting) ----
    // Where bars stand.
    TQVChannelShadeMode GetShadeMode() const { return FShadeMode; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetShadeMode(TQVChannelShadeMode AValue);
    void SetOnSampleDraw(TQVSampleDrawEvent AHandler) { FOnSampleDraw = std::move(AHandler); }
    const TQVSampleDrawEvent& GetOnSampleDraw() const { return FOnSampleDraw; }
    void SetOnChannelDraw(TQVChannelDrawEvent AHandler) { FOnChannelDraw = std::move(AHandler); }
    const TQVChannelDrawEvent& GetOnChannelDraw() const { return FOnChannelDraw; }

    // The axes the channel is plotted against; null when the display has none, and then
    // nothing is plotted.
    virtual TQVDisplayAxis* GetPlotXAxis() const;
    virtual TQVDisplayAxis* GetPlotYAxis() const;

    // Plots the channel into ARect, the data view's draw rectangle.
    virtual void Draw(TQLCanvas& ACanvas, const TRect& ARect, bool Printing);
    // Plots the channel in AColor, for its parts inside a highlighted zone.
    virtual void ZoneDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, bool Printing);
    // Brings the screen stage up to date with the data, the view and the axes, then hands
    // it to ADrawProc. A frame in which none of them changed reuses the last frame's pixels.
    virtual void DrawCall(TQVChannelDrawProc ADrawProc, TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect,
                          bool Printing);
    // The two plotting procedures: the normal picture, and the picture inside a zone.
    virtual void ChannelDataDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, double AYOffset,
                                 const double* AYData, const double* AXData, int32_t ASize,
                                 const IQVIntegerBuffer& AXInts, const IQVIntegerBuffer& AYInts, bool Printing);
    virtual void ChannelDataZoneDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, double AYOffset,
                                     const double* AYData, const double* AXData, int32_t ASize,
                                     const IQVIntegerBuffer& AXInts, const IQVIntegerBuffer& AYInts, bool Printing);
    // Plots nothing: DrawCall with it only brings the screen stage up to date, for those who
    // read the frame's pixels before the channel is drawn (the fill between two channels).
    void ChannelDataPrepare(TQLCanvas& /*ACanvas*/, TAlphaColor /*AColor*/, const TRect& /*ARect*/, double /*AYOffset*/,
                            const double* /*AYData*/, const double* /*AXData*/, int32_t /*ASize*/,
                            const IQVIntegerBuffer& /*AXInts*/, const IQVIntegerBuffer& /*AYInts*/, bool /*Printing*/)
    {}
    // Draws the plotted points in the channel's mode, then the point symbols.
    void PlotChannelData(TQLCanvas& ACanvas, TAlphaColor AColor, bool AHighlighted, bool AZoneDraw, const TRect& ARect,
                         double AYOffset, const double* AYData, const double* AXData);
    // The mark at the sample under the mouse, at APoint, with AHitPoint's settings: brush in
    // the display's colour, pen in the channel's colour or the hit point's own.
    void DrawHitPoint(TQLCanvas& ACanvas, const TPoint& APoint, const TQVChannelMouseHitPoint& AHitPoint);
    // The mark of the plot's hit, drawn after all channels when not printing: only on the
    // channel under the mouse (the highlighted item or the data view's highlighted channel),
    // at the data view's hit point, with the chart's Highlighting.MouseHitPoint.
    // (QVChannelHighlight.cpp)
    void DrawHitPoint(TQLCanvas& ACanvas);
    // The legend swatch: a bar in the channel's colour and the point symbol.
    bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;
    // Forgets the frame cache: the next frame computes every pixel anew.
    void InvalidateChannel();
    // The hit test of the plotted line, steps, bars or points (QVChannelLookup.cpp).
    double HitTest(int32_t X, int32_t Y, TPoint& APoint, TQVHitDetectDirection& ADirection, double& AFraction,
                   int32_t& ABeginIndex, int32_t& AEndIndex) override;

    // ---- Markers (QVScopeChannelMarker.cpp) ----
    // The channel's markers, at sample indexes, each in one of the scope's marker groups.
    TQVScopeChannelMarkers* GetMarkers() const { return FMarkers.get(); }
    void SetMarkers(const TQVScopeChannelMarkers* AValue);
    // Draws each visible marker whose sample lies on screen at the interpolated point of its
    // position (taking the others out of the hit test), then the ghost of a marker under
    // drag. Runs after the plot, on the frame's screen stage.
    void DrawMarkers(TQLCanvas& ACanvas, const TRect& ARect, bool Printing);

    // Whether the channel is drawn highlighted, and in which colour.
    virtual bool GetPlotHighlighted(bool APrinting) const { return GetDrawnHighlighted(APrinting); }
    virtual TAlphaColor GetPlotHighlightColor() const { return GetHighlightColor(); }

    // Downsampled real values of the plotted points (empty when nothing is downsampled).
    const std::vector<double>& GetDownsampledRealY() const { return FDownsampledRealY; }

    // The extremes of the draw stage's Y samples AFirst..AEnd - 1 (held to the record):
    // AFinite false skips NaN, AFinite true every sample that is not finite. False when no
    // sample counts. Reads the summary handed over with the samples and at most two part
    // blocks; samples that came without one are summarised on the first call.
    bool GetDrawYExtremes(int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const override;
    double GetAxisSampleRate() const override;

    QL_CLASS_INFO()

private:
    friend class TQVChannelData;

    // Pins (QVScopeChannelPins.cpp).
    void CreatePins();
    void ReleasePins();
    void StartStream(const TQWStartOperation& AOperation);
    void ReceiveBlock(const IQVData& ABlock);

    // Brushes and pens for one pass of PlotChannelData.
    void PlotBars(TQLCanvas& ACanvas, bool AHighlighted, const TRect& ARect, double AYOffset, const double* AYData,
                  const double* AXData, const int32_t* AX, const int32_t* AY, int32_t ACount);
    // The point symbols: the channel's own, and inside a listed zone that zone's.
    void PlotSymbols(TQLCanvas& ACanvas, TAlphaColor AColor, bool AHighlighted, bool AZoneDraw, const int32_t* AX,
                     const int32_t* AY, int32_t ACount, const double* AYData, const double* AXData);
    // Whether symbols are drawn at all: the channel's own or those of a listed zone link.
    bool HasSymbols() const;
    // The real X and Y of plotted point AIndex.
    void PointValues(int32_t AIndex, const double* AYData, const double* AXData, double& AXValue,
                     double& AYValue) const;

    uint32_t GetSizeLimit() const;
    // The end of every intake operation: new data for the next hand-over, and a recalculation
    // of the picture (without a repaint, which the refresh tick makes).
    void SetFlags();
    // The workers, for callers that hold the data section.
    void IntPopulateRamp();
    void IntShiftPopulateRamp(int32_t ACount, uint32_t ALimit);

    TQVScopeOwner* FOwner;
    TQVGapList FGapsBuffer;
    std::atomic<bool> FDataChanged{false};
    std::atomic<bool> FHasNewBuffer{false};
    std::atomic<double> FSampleRate{0.0};
    std::unique_ptr<TQVChannelData> FData;
    std::unique_ptr<TQVScopeChannelMarkers> FMarkers;
    std::shared_ptr<TQVChannelWriter> FWriter;

    // Pins. The flags are written and read under the display's lock.
    std::shared_ptr<TQVQWComboRealIntComplexPairedQueuedSinkPin> FInputPin;
    std::shared_ptr<TQVQWQueuedIntegerRealSinkPin> FXInputPin;
    bool FSynchronize = true;
    // The X pin delivered when the stream started: Y blocks wait for their X values.
    bool FXPinActive = false;
    bool FYIsConnected = false;
    bool FXIsConnected = false;

    TQVChannelShadeMode FShadeMode = csmZero;
    TQVSampleDrawEvent FOnSampleDraw;
    TQVChannelDrawEvent FOnChannelDraw;

    // Frame cache: what the last computation of the screen stage was made from.
    int32_t FCurrentDataSize = -1;
    int32_t FCurrentDownsampledDataSize = -1;
    int32_t FCurrentWidth = -1;
    int32_t FCurrentHeight = -1;
    int32_t FCurrentXBegin = -1;
    int32_t FCurrentYBegin = -1;
    double FCurrentXMin = -1.0;
    double FCurrentXMax = -1.0;
    int32_t FCurrentXDataOffset = -1;
    double FCurrentYMin = -1.0;
    double FCurrentYMax = -1.0;
    double FCurrentAxisXMin = -1.0;
    double FCurrentAxisXMax = -1.0;
    double FCurrentAxisYMin = -1.0;
    double FCurrentAxisYMax = -1.0;
    int32_t FXDrawMinValue = -1;
    int32_t FXDrawMaxValue = -1;
    int32_t FYDrawMinValue = -1;
    int32_t FYDrawMaxValue = -1;
    bool FCurrentXLogarithmic = false;
    bool FCurrentYLogarithmic = false;
    // The mapping the last computation used.
    double FCurrentXOffset = -1.0;
    double FCurrentXScale = -1.0;
    double FCurrentXRatio = -1.0;
    double FCurrentYOffset = -1.0;
    double FCurrentYScale = -1.0;
    bool FCurrentVertical = false;
    // Whether the last computation downsampled, and the values of its points.
    bool FDownsampled = false;
    // The mapping of the screen slice to pixels, kept for the scaled buffers, which a
    // downsampled frame leaves to be filled on demand; stale marks the ones not yet filled.
    void UpdateScaledBuffers() const override;
    // A downsampled frame leaves the scaled buffers unfilled: a lookup maps single samples.
    bool GetScreenPixel(int32_t AIndex, int32_t& AAlong, int32_t& AAcross) const override;
    void FillScaledX() const;
    void FillScaledY() const;
    struct TScaledMapping {
        bool XLogarithmic = false;
        double XScale = 0.0;     // pixels per data unit, before the ratio of the scales
        double XRatio = 1.0;     // real units per data unit
        double XOffset = 0.0;    // added to the scaled value: XBegin - XLowered
        double XBegin = 0.0;     // the view's first column
        double XLowered = 0.0;   // the axis offset lowered by the view's width
        double XPerColumn = 0.0; // real units per pixel column
        bool YLogarithmic = false;
        double YScale = 0.0;
        double YBase = 0.0;
    };
    TScaledMapping FScaledMapping;
    // The block summary of the draw stage's Y: the one handed over with the samples, or one
    // made here for samples that came without it; and what it was taken for.
    const TQVBlockExtremes& DrawYBlocks() const;
    mutable TQVBlockExtremes FYBlocks;
    mutable const TQVBlockExtremes* FYBlocksSource = nullptr;
    mutable uint64_t FYBlocksGeneration = 0;
    mutable const double* FYBlocksData = nullptr;
    mutable bool FYBlocksValid = false;
    mutable bool FScaledXStale = false;
    mutable bool FScaledYStale = false;
    std::vector<double> FDownsampledRealX;
    std::vector<double> FDownsampledRealY;
};

// A click on a channel: the channel, the samples on either side of the point clicked (the
// same one on a sample), the value there, and whether a handler took the click.
using TQVChannelClickEvent = std::function<void(TQLPersistent* Sender, int32_t ChannelIndex, int32_t BeginSampleIndex,
                                                int32_t EndSampleIndex, TQVRealPoint ClickedValue, bool& Handled)>;

// The mouse over a channel: the samples on either side of it and the value there.
using TQVOverChannelEvent = std::function<void(TQLPersistent* Sender, int32_t ChannelIndex, int32_t BeginSampleIndex,
                                               int32_t EndSampleIndex, TQVRealPoint Value)>;

class TQVScopeChannels : public TQVDisplayChannels<TQVScopeChannel> {
public:
    TQVScopeChannels(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    // Fired by the data view's hit test on a click on a channel.
    void SetOnClick(TQVChannelClickEvent AHandler) { FOnClick = std::move(AHandler); }
    const TQVChannelClickEvent& GetOnClick() const { return FOnClick; }
    // Fired by the data view's hit test while the mouse is over a channel, and when it left.
    void SetOnOverChannel(TQVOverChannelEvent AHandler) { FOnOverChannel = std::move(AHandler); }
    const TQVOverChannelEvent& GetOnOverChannel() const { return FOnOverChannel; }
    void SetOnLeaveChannel(TNotifyEvent AHandler) { FOnLeaveChannel = std::move(AHandler); }
    const TNotifyEvent& GetOnLeaveChannel() const { return FOnLeaveChannel; }

    QL_CLASS_INFO()

private:
    TQVChannelClickEvent FOnClick;
    TQVOverChannelEvent FOnOverChannel;
    TNotifyEvent FOnLeaveChannel;
};

} // namespace qv
