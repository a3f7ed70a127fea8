#pragma once
// Cursors: a vertical line, a horizontal line or both across the data view, at positions in
// the printed units of the cursor's axes. A cursor can be dragged (a ghost line and the
// difference show while the drag lasts), can stay inside the view (drawn dashed at the edge
// when its position lies outside), and lights up under the mouse.

#include "qv/channels/QVHighlightInfo.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/elements/QVOptionalAxesDisplayCollectionItem.h"
#include "qv/foundation/QLEnumInfo.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVDisplayCursor;
class TQVDisplayCursorLink;

enum TQVDisplayCursorKind : uint8_t { ckVertical, ckHorizontal, ckBoth };

// Where a cursor stands, in the printed units of its X and Y axes.
class TQVDisplayCursorPosition : public TQLPersistent {
public:
    explicit TQVDisplayCursorPosition(TQVDisplayCursor* AOwner);

    // At run time X reads back held to the X axis' full range; at design time as stored.
    double GetX() const;
    void SetX(double AValue) { Set(FX, AValue); }
    double GetY() const { return FY; }
    // The Y axis snaps the value first, when it snaps.
    void SetY(double AValue);
    // Both at once, as one change.
    void SetXY(double AX, double AY);

    QL_CLASS_INFO()

private:
    TQVDisplayCursor* FOwner;
    double FX = 0.0;
    double FY = 0.0;
};

// The mouse cursor shown over a cursor's line, by the direction the line can be moved.
class TQVDisplayCursorMouseCursor : public TQLPersistent {
public:
    TQVDisplayCursorMouseCursor(TQLPersistent* AOwner, TQLLockPtr ALock) : TQLPersistent(AOwner, std::move(ALock)) {}

    TCursor GetHorizontal() const { return FHorizontal; }
    void SetHorizontal(TCursor AValue) { Set(FHorizontal, AValue); }
    TCursor GetVertical() const { return FVertical; }
    void SetVertical(TCursor AValue) { Set(FVertical, AValue); }
    TCursor GetBoth() const { return FBoth; }
    void SetBoth(TCursor AValue) { Set(FBoth, AValue); }

    QL_CLASS_INFO()

private:
    // A horizontal line moves up and down, a vertical one sideways.
    TCursor FHorizontal = crSizeNS;
    TCursor FVertical = crSizeWE;
    TCursor FBoth = crSizeAll;
};

// Fired when a drag moved a cursor or a link: the item's index, where it was and where it is.
using TQVElementMovedEvent =
    std::function<void(TQLPersistent* Sender, int32_t AIndex, TQVRealPoint AOldPosition, TQVRealPoint ANewPosition)>;

// The collections of cursors and of links tell of moves through this.
class TQVElementMovedSource {
public:
    virtual ~TQVElementMovedSource() = default;
    void SetOnMoved(TQVElementMovedEvent AHandler) { FOnMoved = std::move(AHandler); }
    const TQVElementMovedEvent& GetOnMoved() const { return FOnMoved; }

private:
    TQVElementMovedEvent FOnMoved;
};

class TQVDisplayCursor : public TQVOptionalAxesDisplayCollectionItem {
public:
    explicit TQVDisplayCursor(TQLCollection* ACollection);
    ~TQVDisplayCursor() override;

    TQVDisplayCursorPosition* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQVDisplayCursorPosition* AValue) { FPosition->Assign(AValue); }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }
    TAlphaColor GetColorDefault() const { return FColorDefault; }
    // A new default; the colour follows when it still held the old default.
    void SetColorDefault(TAlphaColor AValue);
    bool GetCanDrag() const { return FCanDrag; }
    void SetCanDrag(bool AValue) { Set(FCanDrag, AValue); }
    TQVDisplayCursorKind GetKind() const { return FKind; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetKind(TQVDisplayCursorKind AValue);
    TQVDisplayCursorMouseCursor* GetMouseCursors() const { return FMouseCursors.get(); }
    void SetMouseCursors(const TQVDisplayCursorMouseCursor* AValue) { FMouseCursors->Assign(AValue); }
    bool GetIsDynamic() const { return FIsDynamic; }
    // The links that end in this cursor; they do not belong to it.
    const std::vector<TQVDisplayCursorLink*>& GetCursorLinks() const { return FCursorLinks; }
    void AddLink(TQVDisplayCursorLink* ALink);
    void RemoveLink(TQVDisplayCursorLink* ALink);

    // Draws the line or lines into DispRect (the data view's clip rectangle).
    void Draw(TQLCanvas& ACanvas, const TRect& DispRect);
    // Whether (X, Y) lies within 2 pixels of a line; sets the info's FVMoveCursor and
    // FHMoveCursor for the lines hit. Never for a hidden cursor or one that cannot be dragged.
    bool HitTest(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect);
    // Moves the lines that the last hit test found to (X, Y) and reports the move.
    void MoveTo(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect);

    // The pixel of a line, drawn across ARect; AInView turns false when the line was held at
    // the edge (then it is drawn dashed).
    int32_t DrawVAt(double AValue, TQLCanvas& ACanvas, bool ATurned, const TRect& ARect, double AMin, double AMax,
                    double AScale, double AWidth, bool& AInView);
    int32_t DrawHAt(double AValue, TQLCanvas& ACanvas, bool ATurned, const TRect& ARect, double AMin, double AMax,
                    double AScale, double AWidth, bool& AInView);
    // The marks where a line at AValue (printed units) at pixel APosition crosses channels;
    // none here.
    virtual void DrawVChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t APosition, bool ADragging) {}
    virtual void DrawHChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t APosition, bool ADragging) {}

    // Under the mouse, pointed at from the legend, or dragged, while cursors highlight.
    bool GetHighlighted() const override;
    void SetHighlighted(bool AValue) override;
    TAlphaColor GetLegendPenColor() const override { return FColor; }
    void Assign(const TQLPersistent* ASource) override;

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;

private:
    TQVHighlightInfo* Info() const;
    // Draws the line at pixel P across ARect, upright (from top to bottom) or lying; held at
    // the edge and dashed when the cursors stay in view and P lies outside.
    int32_t DrawLineAt(int32_t P, bool AUpright, TQLCanvas& ACanvas, const TRect& ARect, bool& AInView);
    void DrawLine(bool AVertical, TQLCanvas& ACanvas, const TRect& ARect, const TQVElementAxesWindow& AWindow);
    void DrawHighlight(bool AVertical, TQLCanvas& ACanvas, const TRect& ARect, const TQVElementAxesWindow& AWindow);

    std::unique_ptr<TQVDisplayCursorPosition> FPosition;
    TAlphaColor FColor = 0xFFFF0000;
    TAlphaColor FColorDefault = 0xFFFF0000;
    bool FCanDrag = true;
    std::unique_ptr<TQVDisplayCursorMouseCursor> FMouseCursors;
    TQVDisplayCursorKind FKind = ckVertical;
    bool FIsDynamic = false;
    std::vector<TQVDisplayCursorLink*> FCursorLinks;
};

// The cursors of a display. Each new cursor takes the least used palette colour and the
// name "Cursor" with the count of cursors.
template <class T>
class TQVDisplayCursors : public TQVPaletteDisplayCollection<T>, public TQVElementMovedSource {
public:
    using TQVPaletteDisplayCollection<T>::TQVPaletteDisplayCollection;

    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        static_cast<T*>(AItem)->SetName("Cursor" + std::to_string(this->GetCount()));
        TQVPaletteDisplayCollection<T>::NewItemCreated(AItem);
    }
    // Fired when a drag moved a cursor.
    void SetOnCursorMoved(TQVElementMovedEvent AHandler) { SetOnMoved(std::move(AHandler)); }
    const TQVElementMovedEvent& GetOnCursorMoved() const { return GetOnMoved(); }
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVDisplayCursorKind, "ckVertical", "ckHorizontal", "ckBoth")
