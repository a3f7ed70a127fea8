#pragma once
// The base of everything inside a display that takes part in mouse dispatch: views, axes,
// legends, tool bars. A component adds itself to its display's component list when built
// and removes itself when freed; the list does not own it.

#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLTypes.h"

namespace qv {

class TQVDisplayOwner;

class TQVDisplayComponent : public TQLPersistent {
public:
    explicit TQVDisplayComponent(TQVDisplayOwner* ADisplay);
    ~TQVDisplayComponent() override;

    TQVDisplayOwner* GetDisplay() const { return FDisplay; }
    TRect GetDrawRect() const { return IntGetDrawRect(); }
    void SetDrawRect(const TRect& ARect) { IntSetDrawRect(ARect); }
    bool GetMouseIsInView() const { return FMouseIsInView; }

    virtual TRect IntGetDrawRect() const = 0;
    virtual void IntSetDrawRect(const TRect& ARect) {}
    virtual bool IsVisible() const { return true; }
    // Tool bars get the mouse before every other component.
    virtual bool IsToolBar() const { return false; }
    // Claims the pointer when it lies in the draw rectangle and nobody claimed it yet;
    // turns that into MouseEnterView and MouseLeaveView.
    virtual void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled);
    virtual void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                           bool& AHandled)
    {}
    virtual void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) {}
    virtual void MouseLeave();
    virtual void MouseEnter() {}
    virtual void MouseLeaveView() {}
    virtual void MouseEnterView() {}
    virtual void MouseWheelDown(TShiftState AShift, const TPoint& APoint) {}
    virtual void MouseWheelUp(TShiftState AShift, const TPoint& APoint) {}

    QL_CLASS_INFO()

protected:
    bool FMouseIsInView = false;

private:
    TQVDisplayOwner* FDisplay;
};

} // namespace qv
