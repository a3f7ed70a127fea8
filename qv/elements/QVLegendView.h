#pragma once
// The legend: an optional view, docked right, listing the display's items in groups, each
// line a swatch and a name. It scrolls by two buttons (a held button steps once at once,
// again after 400 ms, then every 50 ms) and by the wheel, lights the line under the mouse,
// and a click on a line fires the group's OnItemClick or opens the setup dialog on the item.
//
// The groups are kept in a table by kind; a display lists the kinds it has in the order they
// show and binds each group to its collection. The repeat timer is a TQLTimer: a host runs
// it on the control's thread, a test fires it.

#include "qv/component/QVDisplayView.h"
#include "qv/component/QVViewButtonSettings.h"
#include "qv/elements/QVCustomLegendGroup.h"
#include "qv/elements/QVLegendGroup.h"
#include "qv/foundation/QLTimer.h"
#include "qv/foundation/QVDisplayFont.h"

#include <array>
#include <initializer_list>
#include <memory>
#include <vector>

namespace qv {

enum TQVLegendGroupKind : uint8_t {
    lgChannels,
    lgChannelLinks,
    lgZones,
    lgEllipses,
    lgMarkerGroups,
    lgCursors,
    lgCursorLinks,
    lgLabels
};
inline constexpr int32_t QVLegendGroupKindCount = 8;

// The groups of a scope's legend and of a waterfall's, in the order they show.
inline constexpr std::initializer_list<TQVLegendGroupKind> QVScopeLegendOrder = {
    lgChannels, lgChannelLinks, lgZones, lgEllipses, lgMarkerGroups, lgCursors, lgCursorLinks, lgLabels};
inline constexpr std::initializer_list<TQVLegendGroupKind> QVWaterfallLegendOrder = {lgMarkerGroups, lgCursors,
                                                                                     lgCursorLinks, lgLabels};

// The colours of the scroll buttons and of the lit lines, and whether the buttons show.
class TQVLegendViewButtonSettings : public TQVBasicViewButtonSettings {
public:
    using TQVBasicViewButtonSettings::TQVBasicViewButtonSettings;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible = true;
};

class TQVLegendView : public TQVOptionalView {
public:
    // Builds a group for each kind of AOrder, in that order, with its default heading.
    TQVLegendView(TQVDisplayOwner* ADisplay, std::initializer_list<TQVLegendGroupKind> AOrder);
    ~TQVLegendView() override;

    static constexpr int32_t ScrollStep = 10;
    static constexpr uint32_t RepeatDelay = 400;
    static constexpr uint32_t RepeatInterval = 50;
    // The scroll glyphs are squares of this side.
    static constexpr int32_t GlyphSize = 11;
    // A heading stands 6 pixels up into the line above its group; the first one gets that
    // room below the legend's top edge.
    static constexpr int32_t HeadingRoom = 6;

    TQVDisplayFont* GetFont() const { return FFont.get(); }
    void SetFont(const TQVDisplayFont* AValue) { FFont->Assign(AValue); }
    TQVLegendViewButtonSettings* GetButtons() const { return FButtons.get(); }
    void SetButtons(const TQVLegendViewButtonSettings* AValue) { FButtons->Assign(AValue); }
    int32_t GetScrollPos() const { return FScrollPos; }
    // 0 none, 1 the scroll-up button, 2 the scroll-down button.
    int32_t GetHighlightButtonID() const { return FHighlightButtonID; }
    TQLTimer& GetRepeatTimer() { return FRepeatTimer; }

    // The groups in the order they show: the display's own, then one per custom group in
    // collection order; and the group of a kind (null when the legend has none of that kind).
    int32_t GetGroupCount() const;
    TQVBasicLegendGroup* GetGroupItem(int32_t AIndex) const;
    TQVLegendGroup* GetGroup(TQVLegendGroupKind AKind) const { return FGroups[AKind].get(); }
    // The published groups.
    TQVLegendGroup* GetChannels() const { return GetGroup(lgChannels); }
    TQVLegendGroup* GetChannelLinks() const { return GetGroup(lgChannelLinks); }
    TQVLegendGroup* GetZones() const { return GetGroup(lgZones); }
    TQVLegendGroup* GetEllipses() const { return GetGroup(lgEllipses); }
    TQVLegendGroup* GetMarkerGroups() const { return GetGroup(lgMarkerGroups); }
    TQVLegendGroup* GetCursors() const { return GetGroup(lgCursors); }
    TQVLegendGroup* GetCursorLinks() const { return GetGroup(lgCursorLinks); }
    TQVLegendGroup* GetLabels() const { return GetGroup(lgLabels); }
    // Groups of the host's own items, shown after the display's.
    TQVLegendGroupCollection* GetCustomGroups() const { return FCustomGroups.get(); }
    void SetCustomGroups(const TQVLegendGroupCollection* AValue) { FCustomGroups->Assign(AValue); }

    // The widest group, or ViewSize.Size; the height is what the layout leaves.
    TSize GetAutoSize() const override;
    // The height of all groups in the legend's font.
    int32_t GetViewHeight(TQLCanvas& ACanvas) const;
    // The height of a line: a text line and a pixel, at least 6.
    static int32_t LineHeight(TQLCanvas& ACanvas);
    // The content runs past the bottom of the control.
    bool Overflows(TQLCanvas& ACanvas) const;
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    void MouseLeave() override;
    void MouseEnterView() override { InvalidateView(); }
    void MouseLeaveView() override;
    void MouseWheelDown(TShiftState AShift, const TPoint& APoint) override;
    void MouseWheelUp(TShiftState AShift, const TPoint& APoint) override;
    // Lights the scroll button or the line under (AX, AY).
    void ButtonHitTest(int32_t AX, int32_t AY);
    // A tick of the repeat timer: one more step while a scroll button is held.
    void DoRepeatTimer();

    // A line of a group was lit or unlit: the display shows the group's cursor over it.
    void ItemHighlightChanged(TQVBasicLegendGroup* AGroup, bool AHighlighted);

    QL_CLASS_INFO()

private:
    // The control's height: how far down the legend may draw.
    int32_t ControlHeight() const;
    TRect UpButtonRect() const;
    TRect DownButtonRect() const;
    void DrawButton(TQLCanvas& ACanvas, const TRect& ARect, bool AUp, bool AEnabled, bool AHighlighted);
    bool StepUp();
    void StepDown();
    // Every group in the order it shows.
    std::vector<TQVBasicLegendGroup*> Groups() const;

    std::unique_ptr<TQVDisplayFont> FFont;
    std::unique_ptr<TQVLegendViewButtonSettings> FButtons;
    std::array<std::unique_ptr<TQVLegendGroup>, QVLegendGroupKindCount> FGroups;
    std::vector<TQVBasicLegendGroup*> FGroupsList;
    std::unique_ptr<TQVLegendGroupCollection> FCustomGroups;
    int32_t FScrollPos = 0;
    int32_t FHighlightButtonID = 0;
    TQLTimer FRepeatTimer;
};

// The scope's legend: its channel, channel-link, zone and ellipse groups are published too.
class TQVScopeLegendView : public TQVLegendView {
public:
    explicit TQVScopeLegendView(TQVDisplayOwner* ADisplay) : TQVLegendView(ADisplay, QVScopeLegendOrder) {}

    QL_CLASS_INFO()
};

} // namespace qv
