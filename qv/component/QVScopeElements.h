#pragma once
// The families of elements laid over a scope's plot: cursor links, zones, elliptic zones,
// marker groups, channel links, text labels and cursors. Each family draws all of its
// elements, first to last, when the scope's draw order reaches it; the order fixes where each
// family lies: element backgrounds under the grid, zones and channel links under the
// channels, markers, labels and cursors over them, and the outlines of links and zones last.

#include "qv/component/QVDisplayView.h"
#include "qv/foundation/QLCanvas.h"

#include <array>
#include <cstdint>

namespace qv {

enum TQVScopeElementKind : uint8_t {
    ekCursorLinks,
    ekZones,
    ekEllipses,
    ekMarkerGroups,
    ekChannelLinks,
    ekLabels,
    ekCursors,
    // Elements a host places on the control, drawn over the background before anything
    // else, unclipped.
    ekExternalElements,
    // The tool bar, last but the focus frame, clipped to the painted region only; never in
    // a print. The family decides whether it shows (auto-hide, mouse over the control).
    ekToolBar
};
inline constexpr int32_t QVScopeElementKindCount = 9;

class IQVScopeElementFamily {
public:
    virtual ~IQVScopeElementFamily() = default;
    // Draws the family's elements in phase APart, clipped to AClip (the data view less its
    // bottom row). Families that draw only once are called with ddpForeground.
    virtual void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) = 0;
};

// The families a scope draws, by kind; empty places draw nothing. The table does not own them.
class TQVScopeElementFamilies {
public:
    IQVScopeElementFamily* Get(TQVScopeElementKind AKind) const { return FItems[AKind]; }
    void Set(TQVScopeElementKind AKind, IQVScopeElementFamily* AFamily) { FItems[AKind] = AFamily; }
    // Draws the family of AKind, if there is one.
    void Draw(TQVScopeElementKind AKind, TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip,
              bool APrinting) const
    {
        if (IQVScopeElementFamily* Family = FItems[AKind])
            Family->DrawElements(APart, ACanvas, AClip, APrinting);
    }

private:
    std::array<IQVScopeElementFamily*, QVScopeElementKindCount> FItems{};
};

} // namespace qv
