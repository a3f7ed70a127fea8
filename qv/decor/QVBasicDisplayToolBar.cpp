// The floating tool bar: layout of the button grid, drawing and the mouse.
#include "qv/decor/QVBasicDisplayToolBar.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/decor/QVToolBarGlyphs.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLCollection.h"

#include <algorithm>

namespace qv {

// ---- Buttons ----

const TQLClassInfo& TQVDisplayToolBarButton::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayToolBarButton>("TQVDisplayToolBarButton", &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &TQVDisplayToolBarButton::GetVisible, &TQVDisplayToolBarButton::SetVisible, true)
            .Build();
    return Info;
}

void TQVDisplayIntToolBarButton::Click(TQVDisplayOwner* ADisplay)
{
    if (!FEnabled)
        return;
    FClicked = true;
    bool Handled = false;
    if (FButtonSettings && FButtonSettings->GetOnClick()) {
        if (ADisplay)
            ADisplay->InvalidateRefresh();
        FButtonSettings->GetOnClick()(FButtonSettings, Handled);
    }
    if (Handled)
        return;
    if (FOnClick)
        FOnClick(this);
}

// ---- TQVBasicDisplayToolBar ----

TQVBasicDisplayToolBar::TQVBasicDisplayToolBar(TQVDisplayOwner* ADisplay) : TQVDisplayComponent(ADisplay)
{}

TQVBasicDisplayToolBar::~TQVBasicDisplayToolBar() = default;

TQVDisplayIntToolBarButton* TQVBasicDisplayToolBar::AddButton(int32_t AImageIndex, TQVDisplayToolBarButton* ASettings,
                                                              TQVDisplayIntToolBarButton::TAction AOnClick)
{
    FButtonList.push_back(std::make_unique<TQVDisplayIntToolBarButton>(AImageIndex, ASettings, std::move(AOnClick)));
    return FButtonList.back().get();
}

TQVDisplayIntToolBarButton* TQVBasicDisplayToolBar::GetButton(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetButtonCount())
        throw EQLListError(AIndex);
    return FButtonList[static_cast<size_t>(AIndex)].get();
}

TQVBasicDisplayToolBar::TGrid TQVBasicDisplayToolBar::GetGrid() const
{
    TGrid Grid;
    for (const auto& Button : FButtonList)
        Grid.Visible += Button->IsVisible();
    // Fewer buttons than rows still make rows of one.
    Grid.PerRow = std::max(1, Grid.Visible / std::max(1, GetCountRows()));
    Grid.Rows = (Grid.Visible + Grid.PerRow - 1) / Grid.PerRow;
    return Grid;
}

template <class F>
void TQVBasicDisplayToolBar::ForEachCell(F&& AProc) const
{
    const TGrid Grid = GetGrid();
    const int32_t Left = GetXOffset();
    int32_t X = Left;
    int32_t Y = GetYOffset();
    int32_t Count = 0;
    for (const auto& Button : FButtonList) {
        if (!Button->IsVisible())
            continue;
        AProc(Button.get(), TRect{X, Y, X + CGlyphSize, Y + CGlyphSize});
        X += CGlyphSize + 1;
        if (++Count % Grid.PerRow == 0) {
            X = Left;
            Y += CGlyphSize + 1;
        }
    }
}

TRect TQVBasicDisplayToolBar::GetButtonRect(const TQVDisplayIntToolBarButton* AButton) const
{
    TRect Result;
    ForEachCell([&](const TQVDisplayIntToolBarButton* B, const TRect& ACell) {
        if (B == AButton)
            Result = ACell;
    });
    return Result;
}

int32_t TQVBasicDisplayToolBar::GetXOffset() const
{
    if (FViewLocked)
        return FViewRect.Left;
    return GetDisplay()->GetPlotWidth() - GetGrid().PerRow * (CGlyphSize + 1) - 2;
}

int32_t TQVBasicDisplayToolBar::GetYOffset() const
{
    return FViewLocked ? FViewRect.Top : 3;
}

TRect TQVBasicDisplayToolBar::IntGetDrawRect() const
{
    const TGrid Grid = GetGrid();
    if (Grid.Visible == 0)
        return TRect{};
    const int32_t X = GetXOffset();
    const int32_t Y = GetYOffset();
    return TRect{X, Y, X + Grid.PerRow * (CGlyphSize + 1), Y + Grid.Rows * (CGlyphSize + 1)};
}

bool TQVBasicDisplayToolBar::GetShown() const
{
    return FVisible && (!FAutoHide || FMouseInControl || GetDisplay()->GetDesigning());
}

void TQVBasicDisplayToolBar::Draw(TQLCanvas& ACanvas)
{
    FHasHighlighted = false;
    FDrawn = true;
    TQLCanvasSave Save(ACanvas);
    ACanvas.SetPenStyle(psSolid);
    ACanvas.SetPenWidth(1);
    ForEachCell([&](const TQVDisplayIntToolBarButton* Button, const TRect& ACell) {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(GetDisplay()->GetColor());
        ACanvas.GetPen().SetColor(GetDisplay()->GetColor());
        ACanvas.FillRect(ACell);
        // The look of the state: disabled, plain, under the mouse, pressed.
        TAlphaColor Face = FButtonColor, Border = FBorderColor, Glyph = FGlyphColor;
        if (!Button->GetEnabled()) {
            Glyph = FDisabledColor;
            Border = FDisabledColor;
        } else if (ACell.Contains(FMousePoint) && FMouseInControl) {
            FHasHighlighted = true;
            const bool Down = Button->GetClicked() || FLeftDown;
            Face = Down ? FMouseDownButtonColor : FMouseOverButtonColor;
            Border = Down ? FMouseDownBorderColor : FMouseOverBorderColor;
        }
        ACanvas.GetBrush().SetColor(Face);
        ACanvas.GetPen().SetColor(Border);
        ACanvas.Rectangle(ACell.Left, ACell.Top, ACell.Right, ACell.Bottom);
        QVDrawToolBarGlyph(ACanvas, Button->GetImageIndex(), ACell.Left, ACell.Top, Glyph);
    });
}

void TQVBasicDisplayToolBar::Hide()
{
    for (const auto& Button : FButtonList)
        Button->SetClicked(false);
}

void TQVBasicDisplayToolBar::Invalidate()
{
    GetDisplay()->InvalidateIntRect(GetDrawRect());
}

void TQVBasicDisplayToolBar::ParameterChanged()
{
    GetDisplay()->InvalidateRefresh();
}

void TQVBasicDisplayToolBar::ReassignColors()
{
    // The glyphs are drawn from the colours at each paint; nothing is kept to re-tint.
    GetDisplay()->InvalidateRefresh();
}

// ---- Mouse ----

void TQVBasicDisplayToolBar::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVDisplayComponent::MouseMove(AShift, AX, AY, AHandled);
    FMouseInControl = true;
    FMousePoint = TPoint{AX, AY};
    if (!IsVisible() || !GetDrawRect().Contains(FMousePoint))
        return;
    if (!FCursorSet) {
        GetDisplay()->SetDisplayCursor(FCursor);
        GetDisplay()->SetToolCursorChanged(true);
        FCursorSet = true;
    }
    Invalidate();
}

void TQVBasicDisplayToolBar::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                       bool AMouseInside, bool& AHandled)
{
    TQVDisplayComponent::MouseDown(AButton, AShift, AX, AY, AMouseInside, AHandled);
    if (AHandled || AButton != mbLeft)
        return;
    FLeftDown = true;
    const TPoint Point{AX, AY};
    // The cells are taken before any action runs: an action may change which buttons show.
    std::vector<std::pair<TQVDisplayIntToolBarButton*, TRect>> Cells;
    ForEachCell([&](TQVDisplayIntToolBarButton* Button, const TRect& ACell) { Cells.emplace_back(Button, ACell); });
    for (auto& [Button, Cell] : Cells) {
        if (Cell.Contains(Point)) {
            if (!Button->GetEnabled())
                continue;
            AHandled = true;
            Button->Click(GetDisplay());
            GetDisplay()->InvalidateIntRect(Cell);
        } else if (Button->GetClicked()) {
            Button->SetClicked(false);
            GetDisplay()->InvalidateIntRect(Cell);
        }
    }
}

void TQVBasicDisplayToolBar::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                     bool AMouseInside)
{
    TQVDisplayComponent::MouseUp(AButton, AShift, AX, AY, AMouseInside);
    if (AButton == mbLeft)
        FLeftDown = false;
    ForEachCell([&](TQVDisplayIntToolBarButton* Button, const TRect& ACell) {
        if (Button->GetClicked()) {
            Button->SetClicked(false);
            GetDisplay()->InvalidateIntRect(ACell);
        }
    });
    // A button that went hidden while pressed is released too.
    Hide();
}

void TQVBasicDisplayToolBar::MouseEnter()
{
    // The moves that follow repaint the control, bar and all.
    FMouseInControl = true;
}

void TQVBasicDisplayToolBar::MouseLeave()
{
    TQVDisplayComponent::MouseLeave();
    FMouseInControl = false;
    FLeftDown = false;
    // A bar on the picture that hides now must go from it.
    if (FDrawn && FAutoHide)
        GetDisplay()->InvalidateRefresh();
    FDrawn = false;
}

void TQVBasicDisplayToolBar::MouseEnterView()
{
    // While the mouse is in the bar it stays where it is, even when a button's visibility
    // changes the bar's width.
    FViewRect = GetDrawRect();
    FViewLocked = true;
    if (FVisible)
        Invalidate();
}

void TQVBasicDisplayToolBar::MouseLeaveView()
{
    if (!FVisible)
        return;
    FViewLocked = false;
    if (FHasHighlighted)
        GetDisplay()->InvalidateRefresh();
    if (FCursorSet) {
        GetDisplay()->SetDisplayCursor(GetDisplay()->GetCursor());
        GetDisplay()->SetToolCursorChanged(false);
        FCursorSet = false;
    }
}

const TQLClassInfo& TQVBasicDisplayToolBar::StaticClassInfo()
{
    using C = TQVBasicDisplayToolBar;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVBasicDisplayToolBar", &TQVDisplayComponent::StaticClassInfo())
            .Property("Visible", &C::GetVisible, &C::SetVisible, true)
            .Property("AutoHide", &C::GetAutoHide, &C::SetAutoHide, true)
            .Color("GlyphColor", &C::GetGlyphColor, &C::SetGlyphColor, TAlphaColor(0xFF202020))
            .Color("BorderColor", &C::GetBorderColor, &C::SetBorderColor, TAlphaColor(0xFF808080))
            .Color("ButtonColor", &C::GetButtonColor, &C::SetButtonColor, TAlphaColor(0xFFD8D8D8))
            .Color("MouseOverBorderColor", &C::GetMouseOverBorderColor, &C::SetMouseOverBorderColor,
                   TAlphaColor(0xFF3C8CE6))
            .Color("MouseOverButtonColor", &C::GetMouseOverButtonColor, &C::SetMouseOverButtonColor,
                   TAlphaColor(0xFFE8F1FC))
            .Color("MouseDownBorderColor", &C::GetMouseDownBorderColor, &C::SetMouseDownBorderColor,
                   TAlphaColor(0xFF1E5AA0))
            .Color("MouseDownButtonColor", &C::GetMouseDownButtonColor, &C::SetMouseDownButtonColor,
                   TAlphaColor(0xFFB4D2F5))
            .Color("DisabledColor", &C::GetDisabledColor, &C::SetDisabledColor, TAlphaColor(0xFFA0A0A0))
            .Build();
    return Info;
}

} // namespace qv
