#pragma once
// Floating tool bars: a grid of glyph buttons drawn straight onto a display's picture. The
// base lays out, draws and clicks the buttons; the display's tool bar and an axis' tool bar
// add their own buttons and actions. A tool bar takes the mouse before every other component.
//
// The glyphs are vector shapes drawn by the canvas (QVToolBarGlyphs.h), so they stay crisp
// at any device pixel ratio.

#include "qv/component/QVDisplayComponent.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLPersistent.h"

#include <functional>
#include <memory>
#include <vector>

namespace qv {

class TQVDisplayIntToolBarButton;

// A button's own click handler: set Handled to keep the built-in action from running.
using TQVToolBarButtonClickEvent = std::function<void(TQLPersistent* Sender, bool& Handled)>;

// The settings of one button: whether it is shown, and the user's click handler.
class TQVDisplayToolBarButton : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    void SetOnClick(TQVToolBarButtonClickEvent AHandler) { FOnClick = std::move(AHandler); }
    const TQVToolBarButtonClickEvent& GetOnClick() const { return FOnClick; }

    QL_CLASS_INFO()

private:
    bool FVisible = true;
    TQVToolBarButtonClickEvent FOnClick;
};

// The run-time button: its glyph, the state the bar gives it, and the action it runs.
class TQVDisplayIntToolBarButton {
public:
    using TAction = std::function<void(TQVDisplayIntToolBarButton* AButton)>;

    TQVDisplayIntToolBarButton(int32_t AImageIndex, TQVDisplayToolBarButton* ASettings, TAction AOnClick)
        : FImageIndex(AImageIndex), FButtonSettings(ASettings), FOnClick(std::move(AOnClick))
    {}

    int32_t GetImageIndex() const { return FImageIndex; }
    // Shown: the bar's own flag and the settings' Visible.
    bool IsVisible() const { return FVisible && (!FButtonSettings || FButtonSettings->GetVisible()); }
    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { FVisible = AValue; }
    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue) { FEnabled = AValue; }
    bool GetClicked() const { return FClicked; }
    void SetClicked(bool AValue) { FClicked = AValue; }
    TQVDisplayToolBarButton* GetButtonSettings() const { return FButtonSettings; }
    // A press: nothing when disabled; else marks the button pressed, lets the settings'
    // handler take the click (after asking ADisplay for a repaint), and when it did not, runs
    // the action.
    void Click(TQVDisplayOwner* ADisplay);

private:
    int32_t FImageIndex;
    bool FVisible = true;
    bool FEnabled = true;
    bool FClicked = false;
    TQVDisplayToolBarButton* FButtonSettings;
    TAction FOnClick;
};

class TQVBasicDisplayToolBar : public TQVDisplayComponent {
public:
    // Glyphs are this many pixels square; cells lie one pixel apart.
    static constexpr int32_t CGlyphSize = 16;

    explicit TQVBasicDisplayToolBar(TQVDisplayOwner* ADisplay);
    ~TQVBasicDisplayToolBar() override;

    // ---- Settings ----
    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue)
    {
        Set(FVisible, AValue, [this] { ParameterChanged(); });
    }
    // Drawn only while the mouse is over the control.
    bool GetAutoHide() const { return FAutoHide; }
    void SetAutoHide(bool AValue)
    {
        Set(FAutoHide, AValue, [this] { ParameterChanged(); });
    }
    TAlphaColor GetGlyphColor() const { return FGlyphColor; }
    void SetGlyphColor(TAlphaColor AValue) { SetColor(FGlyphColor, AValue); }
    TAlphaColor GetBorderColor() const { return FBorderColor; }
    void SetBorderColor(TAlphaColor AValue) { SetColor(FBorderColor, AValue); }
    TAlphaColor GetButtonColor() const { return FButtonColor; }
    void SetButtonColor(TAlphaColor AValue) { SetColor(FButtonColor, AValue); }
    TAlphaColor GetMouseOverBorderColor() const { return FMouseOverBorderColor; }
    void SetMouseOverBorderColor(TAlphaColor AValue) { SetColor(FMouseOverBorderColor, AValue); }
    TAlphaColor GetMouseOverButtonColor() const { return FMouseOverButtonColor; }
    void SetMouseOverButtonColor(TAlphaColor AValue) { SetColor(FMouseOverButtonColor, AValue); }
    TAlphaColor GetMouseDownBorderColor() const { return FMouseDownBorderColor; }
    void SetMouseDownBorderColor(TAlphaColor AValue) { SetColor(FMouseDownBorderColor, AValue); }
    TAlphaColor GetMouseDownButtonColor() const { return FMouseDownButtonColor; }
    void SetMouseDownButtonColor(TAlphaColor AValue) { SetColor(FMouseDownButtonColor, AValue); }
    TAlphaColor GetDisabledColor() const { return FDisabledColor; }
    void SetDisabledColor(TAlphaColor AValue) { SetColor(FDisabledColor, AValue); }
    TCursor GetCursor() const { return FCursor; }
    void SetCursor(TCursor AValue) { Set(FCursor, AValue); }

    // ---- State ----
    // The last draw had a button under the mouse.
    bool GetHasHighlighted() const { return FHasHighlighted; }
    // The buttons in draw order.
    int32_t GetButtonCount() const { return static_cast<int32_t>(FButtonList.size()); }
    TQVDisplayIntToolBarButton* GetButton(int32_t AIndex) const;
    // The cell of a visible button in control pixels; empty for a hidden one.
    TRect GetButtonRect(const TQVDisplayIntToolBarButton* AButton) const;
    // Whether the bar is drawn now: visible, and not hidden for want of the mouse.
    bool GetShown() const;

    // ---- Layout ----
    virtual int32_t GetXOffset() const;
    virtual int32_t GetYOffset() const;
    virtual int32_t GetCountRows() const { return 2; }
    // As wide as one row's cells and as high as the rows drawn; empty without a visible
    // button.
    TRect IntGetDrawRect() const override;
    bool IsVisible() const override { return FVisible; }
    bool IsToolBar() const override { return true; }

    // ---- Drawing ----
    // Every visible button cell by cell, row by row, each in the look of its state.
    virtual void Draw(TQLCanvas& ACanvas);
    // Releases every pressed button: before a modal dialog opens.
    void Hide();
    void Invalidate();
    void ParameterChanged();
    void ReassignColors();

    // ---- Mouse ----
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    void MouseEnter() override;
    void MouseLeave() override;
    void MouseEnterView() override;
    void MouseLeaveView() override;

    QL_CLASS_INFO()

protected:
    TQVDisplayIntToolBarButton* AddButton(int32_t AImageIndex, TQVDisplayToolBarButton* ASettings,
                                          TQVDisplayIntToolBarButton::TAction AOnClick);
    // The number of visible buttons, how many stand in a row and how many rows they fill.
    struct TGrid {
        int32_t Visible = 0;
        int32_t PerRow = 1;
        int32_t Rows = 0;
    };
    TGrid GetGrid() const;
    // Calls AProc(button, cell) for each visible button in draw order.
    template <class F>
    void ForEachCell(F&& AProc) const;

    // The bar's rectangle while the mouse is in it: the bar stays where it is.
    TRect FViewRect;
    bool FViewLocked = false;

private:
    void SetColor(TAlphaColor& AField, TAlphaColor AValue)
    {
        GetBasicLock().Setter(
            AField, AValue, [this] { ReassignColors(); }, false);
    }

    bool FVisible = true;
    bool FAutoHide = true;
    std::vector<std::unique_ptr<TQVDisplayIntToolBarButton>> FButtonList;
    bool FHasHighlighted = false;
    TAlphaColor FGlyphColor = 0xFF202020;
    TAlphaColor FBorderColor = 0xFF808080;
    TAlphaColor FButtonColor = 0xFFD8D8D8;
    TAlphaColor FMouseOverBorderColor = 0xFF3C8CE6;
    TAlphaColor FMouseOverButtonColor = 0xFFE8F1FC;
    TAlphaColor FMouseDownBorderColor = 0xFF1E5AA0;
    TAlphaColor FMouseDownButtonColor = 0xFFB4D2F5;
    TAlphaColor FDisabledColor = 0xFFA0A0A0;
    TCursor FCursor = crHandPoint;
    // The mouse over the control, where it is, and whether the left button is held.
    bool FMouseInControl = false;
    TPoint FMousePoint{-1, -1};
    bool FLeftDown = false;
    bool FCursorSet = false;
    // The bar is on the picture since its last draw.
    bool FDrawn = false;
};

} // namespace qv
