#pragma once
// The plot area of a chart: the client view in which channels and measurement elements are
// drawn. It paints its background, its border and the grid lines of every axis, and turns a
// left-button drag into a rubber-band zoom (navigate mode zoom) or a pan (navigate mode pan).

#include "qv/axes/QVDisplayGridSettings.h"
#include "qv/channels/QVChannelLookup.h"
#include "qv/channels/QVDataViewHitFamily.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/component/QVDisplayView.h"

#include <memory>

namespace qv {

class TQVTrackingOptionalAxis;
class TQVDisplayChannel;
class TQVDisplayChannelLink;
class TQVBasicDisplayZone;

class TQVScopeDataView : public TQVCustomColorDisplayView {
public:
    explicit TQVScopeDataView(TQVDisplayOwner* ADisplay);
    ~TQVScopeDataView() override;

    // The frame round the view.
    TQVDisplayGridLineSettings* GetBorder() const { return FBorder.get(); }
    void SetBorder(const TQVDisplayGridLineSettings* AValue) { FBorder->Assign(AValue); }

    TQVViewScreenAlign GetScreenAlign() const override { return vsaClient; }
    // The background, border and grid in every part but the foreground.
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    // The grid's per-tick functions: a line across the view at a major tick's Y (DrawUpLines)
    // or X (DrawLeftLines), in the axis' zero-line settings at zero and its line settings
    // elsewhere. Minor ticks draw none.
    void DrawUpLines(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, int32_t AHalfLength, bool AMinor,
                     double AValue, int32_t APosition);
    void DrawLeftLines(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, int32_t AHalfLength, bool AMinor,
                       double AValue, int32_t APosition);

    // ---- Mouse (QVScopeDataViewMouse.cpp) ----
    // A left press takes, in this order, a cursor, a cursor link, a marker (the families
    // that can be dragged), then reports a click on a channel; what is left starts a zoom
    // box or a pan.
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    // The rubber band of a zoom drag.
    void DrawMouseSelction(TQLCanvas& ACanvas) override;
    // Zooms the display to the box from the press point to (AX, AY); a box under 5 pixels
    // both ways zooms nothing.
    void MouseZoom(int32_t AX, int32_t AY);
    // A zoom box is being dragged: the data stays frozen meanwhile.
    bool InMouseZooming() const;
    // Where the mouse is; X is -1000 once it left the control.
    TPoint GetCurrentMousePoint() const { return FCurrentMousePoint; }
    // The element families asked under the mouse, by kind; null leaves a place empty.
    void SetHitFamily(TQVHitFamilyKind AKind, IQVDataViewHitFamily* AFamily) { FHitFamilies[AKind] = AFamily; }
    IQVDataViewHitFamily* GetHitFamily(TQVHitFamilyKind AKind) const { return FHitFamilies[AKind]; }
    // Finds what lies under the mouse and lights it, as IntHitTests does; repaints when
    // the highlighted item or marker changed.
    void HitTests();
    // The search under the mouse: nothing while a cursor or link is dragged; else, inside
    // the view and with no zoom or pan under way, the families in their order (none while a
    // family holds them back, as a channel marker's drag does) and then the channels. Moves the mouse's enter and leave between the old and the new item, sets the
    // mouse cursor the item asks for and, on a channel, the value under the mouse.
    void IntHitTests();
    // A cursor or cursor link holds the left button.
    bool GetLeftMouseItemDown() const { return FLeftMouseItemDown; }
    // ---- Highlighting (QVScopeDataViewHighlight.cpp) ----
    // The data view of a display, when it has one of this kind.
    static TQVScopeDataView* Of(const TQVDisplayOwner* ADisplay);
    // What is lit and dragged in the plot; the elements' hit tests write it.
    TQVHighlightInfo& GetHighlightInfo() { return FHighlightInfo; }
    const TQVHighlightInfo& GetHighlightInfo() const { return FHighlightInfo; }
    // The channel under the mouse and the point of the hit on it; cleared by each hit test.
    TQLPersistent* GetHighlightedChannel() const { return FHighlightedChannel; }
    const TPoint& GetHighlightedChannelPoint() const { return FHighlightedChannelPoint; }
    void SetHighlightedChannel(TQLPersistent* AChannel, const TPoint& APoint);
    // The elements the legend points at, by kind.
    TQVDisplayChannel* GetExtHighlightChannel() const { return FExtHighlightChannel; }
    void SetExtHighlightChannel(TQVDisplayChannel* AValue) { FExtHighlightChannel = AValue; }
    TQVDisplayChannelLink* GetExtHighlightChannelLink() const { return FExtHighlightChannelLink; }
    void SetExtHighlightChannelLink(TQVDisplayChannelLink* AValue) { FExtHighlightChannelLink = AValue; }
    TQVBasicDisplayZone* GetExtHighlightZone() const { return FExtHighlightZone; }
    void SetExtHighlightZone(TQVBasicDisplayZone* AValue) { FExtHighlightZone = AValue; }
    // An element is going away: no highlight or drag may name it any longer.
    void ForgetItem(const TQLPersistent* AItem);
    // The mouse left the control: nothing is under it or pointed at; drags stay.
    void MouseLeave() override;

    QL_CLASS_INFO()

private:
    TQLPersistent* FHighlightedChannel = nullptr;
    TPoint FHighlightedChannelPoint{0, 0};
    TQVBasicDisplayZone* FExtHighlightZone = nullptr;
    TQVDisplayChannel* FExtHighlightChannel = nullptr;
    TQVDisplayChannelLink* FExtHighlightChannelLink = nullptr;
    TQVHighlightInfo FHighlightInfo;

    // The line settings for a tick, or null when no line is drawn there.
    const TQVDisplayGridLineSettings* GridLineFor(TQVTrackingOptionalAxis* AAxis, bool AZero, bool AMinor) const;
    // One grid line at APosition: across the view's height (AVerticalLine) or its width.
    void DrawGridLine(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, bool AMinor, int32_t APosition,
                      bool AVerticalLine);

    // The value under the mouse from a channel hit between screen samples ABegin and AEnd.
    void SetValueFromChannelHit(TQLPersistent* AChannel, int32_t ABegin, int32_t AEnd, double AFraction,
                                TQVHitDetectDirection ADirection);
    // Shows the mouse cursor an element asks for.
    void SetElementCursor(TCursor ACursor);
    // Leave on AFrom and enter on ATo, when they differ and are selectable items.
    static void DispatchLeaveEnter(TQLPersistent* AFrom, TQLPersistent* ATo);

    std::unique_ptr<TQVDisplayGridLineSettings> FBorder;
    TQVDataViewHitFamilies FHitFamilies{};
    // A cursor or a cursor link took the left button.
    bool FLeftMouseItemDown = false;
    // An element's mouse cursor is shown instead of the display's.
    bool FElementCursorShown = false;
    // A pan moved an axis since the button went down.
    bool FViewMouseMoved = false;
};

} // namespace qv
