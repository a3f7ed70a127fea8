#pragma once
// The scope's cursors and cursor links: a scope cursor marks and labels the points where it
// crosses the channels it is linked to. The collections are the element families the scope
// draws at their places in its draw order.

#include "qv/channels/QVDataViewHitFamily.h"
#include "qv/component/QVScopeElements.h"
#include "qv/elements/QVDisplayCursor.h"
#include "qv/elements/QVDisplayCursorLink.h"
#include "qv/elements/QVElementChannelLink.h"

#include <memory>

namespace qv {

class TQVScopeCursor : public TQVDisplayCursor {
public:
    explicit TQVScopeCursor(TQLCollection* ACollection);
    ~TQVScopeCursor() override;

    // The channels whose crossings the cursor marks.
    TQVDisplayCursorChannelLinks* GetChannels() const { return FChannels.get(); }
    void SetChannels(const TQVDisplayCursorChannelLinks* AValue) { FChannels->Assign(AValue); }

    // The marks of each linked, visible channel on the cursor's axis that the line crosses.
    void DrawVChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t APosition, bool ADragging) override;
    void DrawHChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t APosition, bool ADragging) override;

    QL_CLASS_INFO()

private:
    void DrawIntersections(bool AVertical, TQLCanvas& ACanvas, double AValue);

    std::unique_ptr<TQVDisplayCursorChannelLinks> FChannels;
};

class TQVScopeCursors : public TQVDisplayCursors<TQVScopeCursor>,
                        public IQVScopeElementFamily,
                        public IQVDataViewHitFamily {
public:
    using TQVDisplayCursors<TQVScopeCursor>::TQVDisplayCursors;

    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;
    // Only while cursors highlight from the mouse (or light their legend button); the mouse
    // cursor shows the directions the cursor can move in.
    bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) override;
    // The topmost cursor under the press is dragged; its lines move when the button goes up.
    bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;
    bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;

    QL_CLASS_INFO()
};

class TQVScopeCursorLink : public TQVDisplayCursorLink {
public:
    using TQVDisplayCursorLink::TQVDisplayCursorLink;

    QL_CLASS_INFO()
};

class TQVScopeCursorLinks : public TQVDisplayCursorLinks<TQVScopeCursorLink>,
                            public IQVScopeElementFamily,
                            public IQVDataViewHitFamily {
public:
    using TQVDisplayCursorLinks<TQVScopeCursorLink>::TQVDisplayCursorLinks;

    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;
    // A link under the mouse shows its mouse cursor; it becomes the highlighted item only
    // while links highlight from the mouse.
    bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) override;
    // The topmost link whose measurement line is under the press is dragged.
    bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;
    bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;

    QL_CLASS_INFO()
};

} // namespace qv
