#pragma once
// The waterfall's cursors. A cursor stands at a row (its X position) and a sample (its Y
// position); after each paint it sends that row through XOutputPin and the slice of that
// sample across the history through YOutputPin, so other displays can follow what lies
// under the cursor. Each newly connected sink is first told that a stream starts, at one
// block per paint (rate 1).

#include "qv/elements/QVDisplayCursor.h"
#include "qv/pins/QWPins.h"

#include <memory>

namespace qv {

class TQVWaterfallOwner;

// The base of waterfall cursors: what a cursor's output pins do on connection.
class TQVBasicWaterfallCursor : public TQVDisplayCursor {
public:
    using TQVDisplayCursor::TQVDisplayCursor;

    QL_CLASS_INFO()

protected:
    // A new sink hears that a stream starts, one block per paint.
    static void DoConnect(TQWSinkPin& ASink);
};

class TQVWaterfallCursor : public TQVBasicWaterfallCursor {
public:
    explicit TQVWaterfallCursor(TQLCollection* ACollection);
    ~TQVWaterfallCursor() override;

    // The row at Position.X, sent after each paint.
    TQVQWRealSourcePin* GetXOutputPin() const { return FXOutputPin.get(); }
    // Sample Round(Position.Y) of every row, oldest first, sent after each paint.
    TQVQWRealSourcePin* GetYOutputPin() const { return FYOutputPin.get(); }
    // Sends the row and the slice under the cursor; an empty block where the cursor stands
    // outside the rows. Nothing is built for a pin with no sink.
    void UpdateCursorsData(const TQVWaterfallOwner& AWaterfall);

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVQWRealSourcePin> FXOutputPin;
    std::unique_ptr<TQVQWRealSourcePin> FYOutputPin;
};

class TQVWaterfallCursors : public TQVDisplayCursors<TQVWaterfallCursor> {
public:
    using TQVDisplayCursors<TQVWaterfallCursor>::TQVDisplayCursors;

    // Every cursor's lines across the data view's rectangle AClip.
    void Draw(TQLCanvas& ACanvas, const TRect& AClip);
    // Each cursor sends its row and slice.
    void UpdateCursorsData(const TQVWaterfallOwner& AWaterfall);
    // The topmost cursor (last to first) whose lines pass within 2 pixels of (X, Y) in the
    // picture ARect; null when none. Sets the info's movement flags for the lines hit.
    TQVWaterfallCursor* HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect);
    // A left press: the cursor under it is dragged; its lines move when the button goes up.
    bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect);
    // The left button went up: the dragged cursor's lines move to (X, Y). False when no
    // cursor of this collection was dragged.
    bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect);

    QL_CLASS_INFO()
};

} // namespace qv
