#pragma once
// The display as the things inside it see it. Views, axes, channels, collections and
// elements call back into the control that owns them (to invalidate, to take its lock, to ask
// the plot's size, to find an axis by index, to report a zoom) only through this class, so
// that they never depend on the control classes built on top of them. TQVDisplayOwner is the
// one implementation; tests may supply their own.

#include "qv/component/QVZoomTypes.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <string>
#include <utility>

namespace qv {

class TQVDisplayComponent;
class TQVDisplayViews;
class TQVDisplayAxis;
class TQVDisplayAxisList;
class TQVDisplayZoom;
class TQVDisplayHighlighting;
class TQVHighlightInfo;
class TQVChannelMouseHitPoint;

enum TQVDisplayNavigateMode : uint8_t { nmZoom, nmPan };

// The component-state flags the display consults.
using TQLComponentState = uint8_t;
inline constexpr TQLComponentState csLoading = 0x01;
inline constexpr TQLComponentState csReading = 0x02;
inline constexpr TQLComponentState csDestroying = 0x04;
inline constexpr TQLComponentState csDesigning = 0x08;

class TQVDisplayOwner : public TQLPersistent {
public:
    explicit TQVDisplayOwner(TQLLockPtr ALock) : TQLPersistent(nullptr, std::move(ALock)) {}

    // ---- Settings and state ----
    virtual TAlphaColor GetColor() const = 0;
    virtual TCursor GetCursor() const = 0;
    virtual TQVDisplayNavigateMode GetNavigateMode() const = 0;
    virtual bool GetHold() const = 0;
    virtual void SetHold(bool AValue) = 0;
    virtual bool GetDesigning() const = 0;
    virtual bool GetPrinting() const = 0;
    // The time axis runs vertically: the whole display is turned by a quarter.
    virtual bool GetIsVertical() const = 0;

    // The size being drawn: the print size while printing, else the control's size.
    virtual int32_t GetPlotWidth() const = 0;
    virtual int32_t GetPlotHeight() const = 0;

    // ---- Invalidation ----
    // Repaint at the next opportunity.
    virtual void InvalidateRefresh() = 0;
    // Repaint at the next timer tick; safe from any thread.
    virtual void PostRefresh() = 0;
    // Layout and channel screen data anew at the next paint, then repaint.
    virtual void InvalidateRecalc() = 0;
    virtual void InvalidateChannels() = 0;
    virtual void InvalidateRange() = 0;
    virtual void InvalidateValue() = 0;
    virtual void SelectionChange() = 0;
    virtual void InvalidateHistory() = 0;
    // What the axes learn from the channels is stale: a channel changed its axis, visibility
    // or domain.
    virtual void InvalidateChannelAxes() = 0;
    virtual void InvalidateIntRect(const TRect& ARect) = 0;
    // Marks the layout and screen data stale without asking for a repaint: what a data
    // writer on any thread does.
    virtual void SetNeedsRecalc() = 0;

    // ---- Drawing ----
    // The surface of the paint under way, else the one over the display's own picture; also
    // used to measure text outside a paint. Null while the display has none.
    virtual TQLCanvas* GetCanvas() const = 0;
    // Draws the mark and label of a channel hit at APoint.
    virtual void DrawHitTest(TQLCanvas& ACanvas, const TPoint& APoint, const TQVChannelMouseHitPoint& AHitPoint) = 0;

    // ---- Views, axes, highlighting ----
    virtual TQVDisplayViews& GetViews() = 0;
    // The plot area, when the display has one.
    virtual TQVDisplayComponent* GetDataView() const = 0;
    // All axes, the X axes and the Y axes, in creation order.
    virtual TQVDisplayAxisList& GetAxes() = 0;
    virtual TQVDisplayAxisList& GetXAxes() = 0;
    virtual TQVDisplayAxisList& GetYAxes() = 0;
    // The main X and Y axes; null on a display without axes.
    virtual TQVDisplayAxis* GetXAxis() const = 0;
    virtual TQVDisplayAxis* GetYAxis() const = 0;
    // The position of an axis among all axes of the display; -1 when it has none.
    virtual int32_t GetAxisIndex(const TQVDisplayAxis* AAxis) const = 0;
    // The index of an X (Y) axis among the X (Y) axes, and back; -1 and null when unknown.
    virtual int32_t GetXAxisIndexOf(const TQVDisplayAxis* AAxis) const = 0;
    virtual TQVDisplayAxis* GetXAxisByIndex(int32_t AIndex) const = 0;
    virtual int32_t GetYAxisIndexOf(const TQVDisplayAxis* AAxis) const = 0;
    virtual TQVDisplayAxis* GetYAxisByIndex(int32_t AIndex) const = 0;
    // A press on an axis title asks for the setup of axis AIndex (GetAxisIndex).
    virtual void DoAxisClick(int32_t AIndex) = 0;
    // A click on the legend line AIndex of group AGroupIndex, whose item is AItem, that no
    // handler took: the display opens its setup on the item.
    virtual void DoLegendClick(int32_t AGroupIndex, int32_t AIndex, TQLPersistent* AItem) {}
    // How the display's elements light up, and which of them are lit or dragged.
    virtual TQVDisplayHighlighting* GetHighlighting() const = 0;
    virtual TQVHighlightInfo* GetHighlightInfo() const = 0;

    // ---- Cursor shown ----
    virtual void SetDisplayCursor(TCursor AValue) = 0;
    virtual void SetToolCursorChanged(bool AValue) = 0;
    virtual void SetElementCursorChanged(bool AValue) = 0;

    // ---- Zooming ----
    virtual TQVDisplayZoom* GetZooming() const = 0;
    // The main X axis or the main Y axis is zoomed.
    virtual bool IsMainAxisZoomed() const = 0;
    // The main axes' windows: the zoom window while zoomed, else the current limits.
    virtual double GetXMinZoom() const = 0;
    virtual double GetXMaxZoom() const = 0;
    virtual double GetYMinZoom() const = 0;
    virtual double GetYMaxZoom() const = 0;
    // The display's window now, as the old half of a change's ranges.
    virtual TQVRealRanges GetZoomRanges() const = 0;
    // The main axes to the given printed limits.
    virtual void ZoomTo(double XMin, double XMax, double YMin, double YMax, bool SaveHistory) = 0;
    // Records the present zoom as an undo step.
    virtual void SaveUndoZoom(bool AFromWheel) = 0;
    // Reports a change: a new layout, then OnZoomChanged.
    virtual void ZoomChanged(TQVRealRanges ARanges, TQVZoomOperation AOperation) = 0;
    // An axis that is going away leaves the zoom history.
    virtual void ForgetZoomAxis(const TQVDisplayAxis* AAxis) = 0;

    // ---- Labels ----
    // The text of the label shown at a channel hit.
    virtual std::string GetFormatedMouseHitLabelText() = 0;

protected:
    // Components join the display's mouse dispatch when built and leave it when freed.
    friend class TQVDisplayComponent;
    virtual void AddComponent(TQVDisplayComponent* AComponent) = 0;
    virtual void RemoveComponent(TQVDisplayComponent* AComponent) = 0;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVDisplayNavigateMode, "nmZoom", "nmPan")
