#pragma once
// The items of a display's collections: named, tagged, able to draw their own legend
// swatch; selectable items report mouse events; optional items can be hidden.

#include "qv/component/QVDisplayCollection.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLEvents.h"

namespace qv {

class TQVDisplayCollectionItem : public TQLNamedCollectionItem {
public:
    explicit TQVDisplayCollectionItem(TQLCollection* ACollection);

    TQVDisplayOwner* GetDisplay() const { return FOwner; }
    int32_t GetTag() const { return FTag; }
    void SetTag(int32_t AValue) { Set(FTag, AValue); }

    virtual void InvalidateItem();
    virtual TAlphaColor GetLegendPenColor() const { return 0xFFFF0000; }
    virtual bool GetHasPen() const { return false; }
    virtual TQLCanvasPen GetLegendPen() const;
    virtual bool GetHasBrush() const { return false; }
    virtual TQLCanvasBrush GetLegendBrush() const;
    // False: the legend draws the default swatch.
    virtual bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) { return false; }
    virtual bool IsVisible() const { return true; }
    virtual bool GetHighlighted() const { return false; }
    virtual void SetHighlighted(bool AValue) {}
    virtual bool GetMouseDown() const { return false; }

    QL_CLASS_INFO()

private:
    TQVDisplayOwner* FOwner;
    int32_t FTag = 0;
};

class TQVDisplaySelectableCollectionItem : public TQVDisplayCollectionItem {
public:
    using TQVDisplayCollectionItem::TQVDisplayCollectionItem;

    virtual void MouseEnter();
    virtual void MouseLeave();
    // Reports a click on the press of the left button, by design, not on the release.
    virtual void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside);
    // Fires OnMouseUp only after a press; leaves the pressed flag as it is.
    virtual void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside);
    bool GetMouseDown() const override { return FMouseIsDown; }

    void SetOnMouseEnter(TNotifyEvent AHandler) { FOnMouseEnter = std::move(AHandler); }
    const TNotifyEvent& GetOnMouseEnter() const { return FOnMouseEnter; }
    void SetOnMouseLeave(TNotifyEvent AHandler) { FOnMouseLeave = std::move(AHandler); }
    const TNotifyEvent& GetOnMouseLeave() const { return FOnMouseLeave; }
    void SetOnMouseDown(TMouseEvent AHandler) { FOnMouseDown = std::move(AHandler); }
    const TMouseEvent& GetOnMouseDown() const { return FOnMouseDown; }
    void SetOnClick(TNotifyEvent AHandler) { FOnClick = std::move(AHandler); }
    const TNotifyEvent& GetOnClick() const { return FOnClick; }
    void SetOnMouseUp(TMouseEvent AHandler) { FOnMouseUp = std::move(AHandler); }
    const TMouseEvent& GetOnMouseUp() const { return FOnMouseUp; }

    QL_CLASS_INFO()

protected:
    bool FMouseIsDown = false;

private:
    TNotifyEvent FOnMouseEnter;
    TNotifyEvent FOnMouseLeave;
    TMouseEvent FOnMouseDown;
    TNotifyEvent FOnClick;
    TMouseEvent FOnMouseUp;
};

class TQVOptionalDisplayCollectionItem : public TQVDisplaySelectableCollectionItem {
public:
    using TQVDisplaySelectableCollectionItem::TQVDisplaySelectableCollectionItem;

    bool GetVisible() const { return FVisible; }
    virtual void SetVisible(bool AValue);
    // The write accessor of the published property.
    void SetVisibleProp(bool AValue) { SetVisible(AValue); }
    bool IsVisible() const override { return FVisible; }

    QL_CLASS_INFO()

protected:
    // What a change of Visible does: a repaint here; items that take part in the layout
    // recalculate instead.
    virtual void VisibleChanged() { InvalidateItem(); }

    bool FVisible = true;
};

} // namespace qv
