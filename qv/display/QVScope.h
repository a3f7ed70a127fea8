#pragma once
// The scope: the display that users place. It owns the channels, holds the section that
// guards the passage of data from all channels to their draw buffers, and hands new data
// over on each refresh tick.

#include "qv/channels/QVScopeDataView.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVScopeElements.h"
#include "qv/display/QVDataChart.h"
#include "qv/elements/QVDisplayChannelLink.h"
#include "qv/elements/QVDisplayTrails.h"
#include "qv/elements/QVDisplayZone.h"
#include "qv/elements/QVElementsOwner.h"
#include "qv/elements/QVLabelHitFamily.h"
#include "qv/elements/QVLegendView.h"
#include "qv/elements/QVMarkerHitFamily.h"
#include "qv/elements/QVScopeCursor.h"
#include "qv/foundation/QWCriticalSection.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace qv {

class TQVScopeChannel;
class TQVScopeChannels;
class TQVScopeDataView;
class TQVScopeMarkerGroup;
class TQVScopeMarkerGroups;
class TQVScopeTextLabels;

// May replace the text of the label shown at a channel hit: the handler calls SetLabelText.
using TQVCustomMouseLabelEvent =
    std::function<void(TQLPersistent* Sender, double XValue, double YValue, const std::string& Text)>;

class TQVScope : public TQVDataChart, public TQVScopeOwner, public TQVElementsOwner {
public:
    TQVScope();
    ~TQVScope() override;

    TQVScopeChannels* GetChannels() const override { return FChannels.get(); }
    using TQVDataChart::GetInputPins;
    using TQVDataChart::GetXInputPins;
    TQWPinList& GetInputPins() override { return TQVDataChart::GetInputPins(); }
    TQWPinList& GetXInputPins() override { return TQVDataChart::GetXInputPins(); }
    void SetChannels(const TQVScopeChannels* AValue);

    // The longest kept channel buffer; 0 keeps everything. Lowering it trims every channel
    // to its newest samples.
    uint32_t GetSizeLimit() const override { return FSizeLimit.load(std::memory_order_acquire); }
    void SetSizeLimit(uint32_t AValue);

    // Guards the hand-over of all channels; taken before any channel's own sections.
    TQWCriticalSection& GetAllChannelSection() override { return FAllChannelSection; }

    // ---- Channels fed through pins (called on the senders' threads) ----
    // Each channel takes the connection state of its pins.
    void CollectActiveChannels() override;
    // Whether a block of ASize samples at ASampleRate on AChannel may go on: every other
    // channel has as much queued (HasEnoughData), and then each of them takes its next queued
    // block (ProcessQueuedData). The walks skip AChannel; a channel that does not synchronise
    // goes on at once and moves no other channel's queue. Holds FAllChannelSection.
    bool ProcessEnoughChannelData(TQVScopeChannel* AChannel, uint32_t ASize, double ASampleRate) override;

    // The time axis runs vertically: the whole display is turned by a quarter.
    bool GetVertical() const { return FVertical; }
    void SetVertical(bool AValue);
    bool GetIsVertical() const override { return FVertical; }

    // Moves every channel's new data into its draw buffers, unless held; then refreshes the
    // X axes' sample counts and, after new data, every axis' limits and the Y axes'
    // autoscaling history. Returns whether the picture must be recomputed.
    bool PopulateDrawBuffers() override;
    // Each X axis in turn refreshes its sample count from the channels.
    void PopulateMaxSample();
    void InvalidateRecalc() override;
    // Prints with the picture held, so that no tick moves data during the print; Hold comes
    // back as it was, also when the print fails.
    void Print() override;
    // A stored Y range of no width (1 to 1) opens to -1 to 1.
    void Loaded() override;

    // The plot area.
    TQVScopeDataView* GetScopeDataView() const override { return FDataView.get(); }
    TQVScopeDataView* GetDataView() const override;

    // The one draw order of the whole picture: background, element backgrounds under the
    // grid, the docked views, element foregrounds, channels, cursors, hit points, tool bar
    // and focus.
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override;

    // ---- Labels ----
    // The label of the data view's current point: the hit label's own template, or
    // "%X : %Y".
    std::string GetFormatedLabelText() const;
    // That text, passed through OnCustomMouseHitLabel.
    std::string GetFormatedMouseHitLabelText() override;
    // The replacement text, for use inside OnCustomMouseHitLabel.
    void SetLabelText(const std::string& AText);
    void SetOnCustomMouseHitLabel(TQVCustomMouseLabelEvent AHandler);
    const TQVCustomMouseLabelEvent& GetOnCustomMouseHitLabel() const { return FOnCustomMouseHitLabel; }

    // Every channel recomputes its screen points at the next paint.
    void InvalidateChannels() override;

    // ---- Measurement elements ----
    // The fills between pairs of channels, drawn under the channels.
    TQVDisplayChannelLinks* GetChannelLinks() const { return FChannelLinks.get(); }
    void SetChannelLinks(const TQVDisplayChannelLinks* AValue) { FChannelLinks->Assign(AValue); }
    TQVScopeCursors* GetCursors() const override { return FCursors.get(); }
    void SetCursors(const TQVScopeCursors* AValue) { FCursors->Assign(AValue); }
    TQVScopeCursorLinks* GetCursorLinks() const { return FCursorLinks.get(); }
    void SetCursorLinks(const TQVScopeCursorLinks* AValue) { FCursorLinks->Assign(AValue); }
    TQVDisplayZones* GetZones() const { return FZones.get(); }
    void SetZones(const TQVDisplayZones* AValue) { FZones->Assign(AValue); }
    TQVDisplayEllipticZones* GetEllipses() const { return FEllipses.get(); }
    void SetEllipses(const TQVDisplayEllipticZones* AValue) { FEllipses->Assign(AValue); }
    TQVDisplayTrails* GetTrails() const override { return FTrails.get(); }
    TQVScopeLegendView* GetLegend() const { return FLegend.get(); }
    void SetLegend(const TQVScopeLegendView* AValue) { FLegend->Assign(AValue); }
    void SetTrails(const TQVDisplayTrails* AValue) { FTrails->Assign(AValue); }
    bool GetCursorsStayInView() const override { return FCursorsStayInView; }
    void SetCursorsStayInView(bool AValue);
    std::string GetMeasurementLabelText(const std::string& AValue, const std::string& ALabelText,
                                        const std::string& ADefault) const override
    {
        return TQVDataDisplay::GetMeasurementLabelText(AValue, ALabelText, ADefault);
    }
    std::string GetFormatLabelText(const TPoint& APoint, double AX, double AY, const std::string& ALabelText,
                                   const std::string& ADefault) const override
    {
        return TQVDataChart::GetFormatLabelText(APoint, AX, AY, ALabelText, ADefault);
    }
    // ---- Markers and labels ----
    TQVScopeMarkerGroups* GetMarkerGroups() const { return FMarkerGroups.get(); }
    void SetMarkerGroups(const TQVScopeMarkerGroups* AValue);
    TQLCollection* GetMarkerGroupCollection() const override;
    // The last marker group; a scope without groups gets one first.
    TQVScopeMarkerGroup* GetLastMarerGroup();
    TQVScopeTextLabels* GetLabels() const { return FLabels.get(); }
    void SetLabels(const TQVScopeTextLabels* AValue);

    // The element families laid over the plot, each drawn at its place in the draw order.
    TQVScopeElementFamilies& GetElementFamilies() { return FElementFamilies; }

    // A user draw event is running: invalidation requests are ignored meanwhile.
    bool GetInDraw() const { return FInDraw.load(std::memory_order_acquire); }
    // Set by a channel around its user draw event.
    void SetInDraw(bool AValue) override { FInDraw.store(AValue, std::memory_order_release); }

    QL_CLASS_INFO()

protected:
    void Invalidate() override;

    std::atomic<bool> FInDraw{false};

private:
    bool FVertical = false;
    std::unique_ptr<TQVScopeChannels> FChannels;
    std::unique_ptr<TQVDisplayChannelLinks> FChannelLinks;
    std::unique_ptr<TQVScopeMarkerGroups> FMarkerGroups;
    std::unique_ptr<TQVScopeTextLabels> FLabels;
    // The markers and labels under the data view's mouse.
    std::unique_ptr<TQVMarkerHitFamily> FMarkerHitFamily;
    std::unique_ptr<TQVLabelHitFamily> FLabelHitFamily;
    // Producers read it on their threads.
    std::atomic<uint32_t> FSizeLimit{0};
    TQWCriticalSection FAllChannelSection;
    std::unique_ptr<TQVScopeDataView> FDataView;
    TQVScopeElementFamilies FElementFamilies;
    std::unique_ptr<TQVDisplayTrails> FTrails;
    std::unique_ptr<TQVScopeCursors> FCursors;
    std::unique_ptr<TQVDisplayZones> FZones;
    std::unique_ptr<TQVDisplayEllipticZones> FEllipses;
    std::unique_ptr<TQVScopeCursorLinks> FCursorLinks;
    std::unique_ptr<TQVScopeLegendView> FLegend;
    bool FCursorsStayInView = true;
    TQVCustomMouseLabelEvent FOnCustomMouseHitLabel;
    bool FNewText = false;
    std::string FNewLabelText;
};

} // namespace qv
