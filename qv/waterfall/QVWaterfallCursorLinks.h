#pragma once
// The waterfall's cursor links: a link joins two of the waterfall's cursors and measures
// between them, rows along X and samples along Y, with the line's place across the picture
// dragged by the mouse. Links are drawn over the cursors; the shading between the cursors is
// not drawn on a waterfall, whose picture would hide nothing under it anyway.

#include "qv/elements/QVDisplayCursorLink.h"

namespace qv {

class TQVWaterfallCursorLink : public TQVDisplayCursorLink {
public:
    using TQVDisplayCursorLink::TQVDisplayCursorLink;

    QL_CLASS_INFO()

protected:
    // The stored indexes count in the waterfall's cursors.
    TQLCollection* GetLinkCursors() const override;
    // The link lets go of the highlight and drag state that names it.
    void BeforeDestruction() override;
};

class TQVWaterfallCursorLinks : public TQVDisplayCursorLinks<TQVWaterfallCursorLink> {
public:
    using TQVDisplayCursorLinks<TQVWaterfallCursorLink>::TQVDisplayCursorLinks;

    // Every link's measurement across the data view's rectangle AClip, first to last.
    void Draw(TQLCanvas& ACanvas, const TRect& AClip, bool APrinting);
    // The topmost link (last to first) whose measurement line is under (X, Y); null when
    // none. Sets the info's link movement flags for the line hit.
    TQVWaterfallCursorLink* HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect);
    // A left press on a measurement line: that link is dragged.
    bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect);
    // The left button went up: the dragged link's line moves to (X, Y). False when no link
    // of this collection was dragged.
    bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect);

    QL_CLASS_INFO()
};

} // namespace qv
