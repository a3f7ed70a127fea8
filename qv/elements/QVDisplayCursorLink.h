#pragma once
// Cursor links: a link joins two cursors and measures between them. Cursors that both stand
// vertically are measured along X by a horizontal measurement line, with the difference
// written over it; two horizontal cursors the same way along Y. The line's place across the
// view can be dragged, and the area between the cursors can be shaded.

#include "qv/channels/QVHighlightInfo.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayView.h"
#include "qv/decor/QVOptionalLabel.h"
#include "qv/elements/QVDisplayCursor.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"

#include <memory>
#include <string>

namespace qv {

// The measurement line. X and Y place it across the data view in per cent from the centre:
// X -100 is the left edge and 100 the right (for a line that measures along Y), Y 100 the
// top edge and -100 the bottom (for a line that measures along X). Both are kept in
// -100..100.
class TQVScopeMeasurementLine : public TQLPersistentNotify {
public:
    TQVScopeMeasurementLine(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVScopeMeasurementLine() override;

    double GetX() const { return FX; }
    void SetX(double AValue);
    double GetY() const { return FY; }
    void SetY(double AValue);
    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }
    TQVStrokeDash GetStrokeDash() const { return FStrokeDash; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetStrokeDash(TQVStrokeDash AValue);
    // The difference's text; its Text is a template where "%V" stands for the value.
    TQVOptionalLabel* GetMeasurementLabel() const { return FMeasurementLabel.get(); }
    void SetMeasurementLabel(const TQVOptionalLabel* AValue) { FMeasurementLabel->Assign(AValue); }

    QL_CLASS_INFO()

private:
    double FX = 0.0;
    double FY = 0.0;
    TAlphaColor FColor = 0xFFFFFFFF;
    TQVStrokeDash FStrokeDash = sdSolid;
    std::unique_ptr<TQVOptionalLabel> FMeasurementLabel;
    bool FVisible = true;
};

// The shading between the two cursors; hidden by default.
class TQVScopeSelection : public TQLPersistentNotify {
public:
    TQVScopeSelection(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVScopeSelection() override;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible = false;
    std::unique_ptr<TQVDisplayBrush> FBrush;
};

class TQVDisplayCursorLink : public TQVDisplaySelectableCollectionItem {
public:
    explicit TQVDisplayCursorLink(TQLCollection* ACollection);
    ~TQVDisplayCursorLink() override;

    TQVDisplayCursor* GetBeginCursor() const { return FBeginCursor; }
    void SetBeginCursor(TQVDisplayCursor* AValue);
    TQVDisplayCursor* GetEndCursor() const { return FEndCursor; }
    void SetEndCursor(TQVDisplayCursor* AValue);
    // The stored form of the two ends: the cursors' indexes, -1 for none. An index beyond
    // the display's cursors raises std::out_of_range naming it.
    int32_t GetBeginCursorIndex() const;
    void SetBeginCursorIndex(int32_t AValue);
    int32_t GetEndCursorIndex() const;
    void SetEndCursorIndex(int32_t AValue);
    TQVScopeMeasurementLine* GetMeasurementLine() const { return FMeasurementLine.get(); }
    void SetMeasurementLine(const TQVScopeMeasurementLine* AValue) { FMeasurementLine->Assign(AValue); }
    TQVScopeSelection* GetSelection() const { return FSelection.get(); }
    void SetSelection(const TQVScopeSelection* AValue) { FSelection->Assign(AValue); }
    TCursor GetMouseCursor() const { return FMouseCursor; }
    void SetMouseCursor(TCursor AValue) { Set(FMouseCursor, AValue); }
    bool GetIsDynamic() const { return FIsDynamic; }

    // The shading in ddpBackground, the measurement in ddpFeatures; nothing unless both
    // cursors exist and are visible.
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, const TRect& DispRect, bool Printing);
    // Whether (X, Y) lies on the measurement line: strictly between the cursors and within
    // 2 pixels of the line. Sets FVMoveCursorLink (a line measuring along Y, which moves
    // sideways) and FHMoveCursorLink (along X, moving up and down).
    bool HitTest(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect);
    // Moves the line that the last hit test found to (X, Y) and reports the move.
    void MoveTo(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect);
    // A cursor going away: the link lets go of it.
    void RemoveCursor(TQVDisplayCursor* ACursor);
    bool IsVisible() const override;

    bool GetHighlighted() const override;
    void SetHighlighted(bool AValue) override;

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;
    // The cursors that the stored indexes count in: the display's cursors. A display whose
    // cursors are of another collection gives it through its own link class.
    virtual TQLCollection* GetLinkCursors() const;

private:
    struct TMeasure;
    TQVHighlightInfo* Info() const;
    void SetCursorIndex(TQVDisplayCursor* TQVDisplayCursorLink::*AEnd, int32_t AValue);
    void SetEnd(TQVDisplayCursor*& AEnd, TQVDisplayCursor* AValue);
    // The measurement along X (AAlongX) or along Y, and its highlight.
    void DrawMeasure(bool AAlongX, TQLCanvas& ACanvas, const TRect& ARect);
    void DrawLinkHighlight(bool AAlongX, TQLCanvas& ACanvas, const TRect& ARect);
    void DrawSelection(TQLCanvas& ACanvas, const TRect& ARect, bool AAlongX, bool AAlongY);
    bool MeasureGeometry(bool AAlongX, const TRect& ARect, TMeasure& AMeasure) const;

    TQVDisplayCursor* FBeginCursor = nullptr;
    TQVDisplayCursor* FEndCursor = nullptr;
    std::unique_ptr<TQVScopeMeasurementLine> FMeasurementLine;
    std::unique_ptr<TQVScopeSelection> FSelection;
    bool FIsDynamic = false;
    TCursor FMouseCursor = crHandPoint;
};

// The links of a display; each new link is named "Link" with the count of links.
template <class T>
class TQVDisplayCursorLinks : public TQVDisplayCollection<T>, public TQVElementMovedSource {
public:
    using TQVDisplayCollection<T>::TQVDisplayCollection;

    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        static_cast<T*>(AItem)->SetName("Link" + std::to_string(this->GetCount()));
        TQVDisplayCollection<T>::NewItemCreated(AItem);
    }
    // Fired when a drag moved a measurement line, with its old and new X and Y.
    void SetOnLinkMoved(TQVElementMovedEvent AHandler) { SetOnMoved(std::move(AHandler)); }
    const TQVElementMovedEvent& GetOnLinkMoved() const { return GetOnMoved(); }
};

} // namespace qv
