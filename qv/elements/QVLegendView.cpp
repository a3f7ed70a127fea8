#include "qv/elements/QVLegendView.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLRegion.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

namespace {
const char* DefaultLabel(TQVLegendGroupKind AKind)
{
    switch (AKind) {
    case lgChannels: return "Channels";
    case lgChannelLinks: return "Channel Links";
    case lgZones: return "Zones";
    case lgEllipses: return "Ellipses";
    case lgMarkerGroups: return "Marker Groups";
    case lgCursors: return "Cursors";
    case lgCursorLinks: return "Cursor Links";
    case lgLabels: return "Labels";
    }
    return "";
}
} // namespace

// ---- TQVLegendViewButtonSettings ----

const TQLClassInfo& TQVLegendViewButtonSettings::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVLegendViewButtonSettings>(
                                         "TQVLegendViewButtonSettings", &TQVBasicViewButtonSettings::StaticClassInfo())
                                         .Property("Visible", &TQVLegendViewButtonSettings::GetVisible,
                                                   &TQVLegendViewButtonSettings::SetVisible, true)
                                         .Build();
    return Info;
}

// ---- TQVLegendView ----

TQVLegendView::TQVLegendView(TQVDisplayOwner* ADisplay, std::initializer_list<TQVLegendGroupKind> AOrder)
    : TQVOptionalView(ADisplay, vaRight),
      FFont(std::make_unique<TQVDisplayFont>(this, GetLock(), [this] { InvalidateRecalc(); })),
      FButtons(std::make_unique<TQVLegendViewButtonSettings>(this, GetLock(), [this] { InvalidateView(); }))
{
    for (TQVLegendGroupKind Kind : AOrder) {
        if (FGroups[Kind])
            throw std::invalid_argument("TQVLegendView: group kind " + std::to_string(Kind) + " listed twice");
        FGroups[Kind] = std::make_unique<TQVLegendGroup>(this, DefaultLabel(Kind));
        FGroupsList.push_back(FGroups[Kind].get());
    }
    FCustomGroups = std::make_unique<TQVLegendGroupCollection>(this);
    FRepeatTimer.SetEnabled(false);
    FRepeatTimer.SetOnTimer([this] { DoRepeatTimer(); });
}

TQVLegendView::~TQVLegendView() = default;

int32_t TQVLegendView::GetGroupCount() const
{
    return static_cast<int32_t>(FGroupsList.size()) + FCustomGroups->GetCount();
}

TQVBasicLegendGroup* TQVLegendView::GetGroupItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetGroupCount())
        throw std::out_of_range("TQVLegendView: group index " + std::to_string(AIndex) + " out of range");
    const int32_t Own = static_cast<int32_t>(FGroupsList.size());
    if (AIndex < Own)
        return FGroupsList[size_t(AIndex)];
    return FCustomGroups->GetItem(AIndex - Own)->GetGroup();
}

std::vector<TQVBasicLegendGroup*> TQVLegendView::Groups() const
{
    std::vector<TQVBasicLegendGroup*> Result = FGroupsList;
    for (TQVLegendGroupCollectionItem* Item : *FCustomGroups)
        Result.push_back(Item->GetGroup());
    return Result;
}

int32_t TQVLegendView::ControlHeight() const
{
    return GetDisplay()->GetPlotHeight();
}

int32_t TQVLegendView::LineHeight(TQLCanvas& ACanvas)
{
    return std::max(ACanvas.TextHeight("Xg") + 1, 6);
}

TSize TQVLegendView::GetAutoSize() const
{
    // Without a surface there is nothing to measure with: the legend takes no room.
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (!Canvas)
        return TSize{0, 0};
    // Docked to the top or bottom, the strip is as high as the lines.
    if (FAlign == vaTop || FAlign == vaBottom)
        return TSize{-1, GetViewHeight(*Canvas)};
    int32_t Width = 0;
    for (const TQVBasicLegendGroup* Group : Groups())
        Width = std::max(Width, Group->GetDefaultWidth(*Canvas));
    return TSize{Width, -1};
}

int32_t TQVLegendView::GetViewHeight(TQLCanvas& ACanvas) const
{
    bool NotFirst = false;
    int32_t Height = HeadingRoom;
    for (const TQVBasicLegendGroup* Group : Groups())
        Height += Group->GetHeight(ACanvas, NotFirst);
    ACanvas.ApplyFont(*FFont);
    return Height;
}

bool TQVLegendView::Overflows(TQLCanvas& ACanvas) const
{
    return GetViewHeight(ACanvas) - FScrollPos + GetDrawRect().Top > ControlHeight();
}

TRect TQVLegendView::UpButtonRect() const
{
    const TRect R = GetDrawRect();
    return TRect{R.Right - GlyphSize - 3, R.Top, R.Right - 3, R.Top + GlyphSize};
}

TRect TQVLegendView::DownButtonRect() const
{
    const TRect R = GetDrawRect();
    return TRect{R.Right - GlyphSize - 3, R.Bottom - GlyphSize - 3, R.Right - 3, R.Bottom - 3};
}

void TQVLegendView::DrawButton(TQLCanvas& ACanvas, const TRect& ARect, bool AUp, bool AEnabled, bool AHighlighted)
{
    // A square in the button colours while lit or held, and an arrow inside it.
    const bool Pressed = AHighlighted && FRepeatTimer.GetEnabled();
    if (AEnabled && AHighlighted) {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(Pressed ? FButtons->GetMouseDownColor() : FButtons->GetMouseOverColor());
        ACanvas.GetPen().SetStyle(psSolid);
        ACanvas.GetPen().SetColor(Pressed ? FButtons->GetMouseDownBorderColor() : FButtons->GetMouseOverBorderColor());
        ACanvas.RectangleRect(ARect);
    }
    const TAlphaColor Arrow = AEnabled ? FFont->GetColor() : 0xFF808080;
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(Arrow);
    ACanvas.GetPen().SetStyle(psSolid);
    ACanvas.GetPen().SetColor(Arrow);
    const int32_t Mid = (ARect.Left + ARect.Right) / 2;
    const int32_t Top = ARect.Top + 3;
    const int32_t Bottom = ARect.Bottom - 4;
    const TPoint Points[3] = {AUp ? TPoint{Mid, Top} : TPoint{Mid, Bottom}, TPoint{ARect.Left + 2, AUp ? Bottom : Top},
                              TPoint{ARect.Right - 3, AUp ? Bottom : Top}};
    ACanvas.Polygon(Points, 2);
}

void TQVLegendView::Draw(TQVDisplayDrawPart /*ADrawPart*/, TQLCanvas& ACanvas, bool /*AVertical*/, bool APrinting)
{
    TQLCanvasSave Save(ACanvas);
    const TRect Rect = GetDrawRect();
    ACanvas.SetClipRegion(TQLRegion(Rect));
    ACanvas.ApplyFont(*FFont);
    if (!GetBackground()->GetUseControlColor()) {
        ACanvas.GetBrush().SetStyle(bsSolid);
        ACanvas.GetBrush().SetColor(GetBackground()->GetColor());
        ACanvas.FillRect(Rect);
    }
    const int32_t ViewHeight = GetViewHeight(ACanvas);
    const int32_t Line = LineHeight(ACanvas);
    int32_t YPos = Rect.Top + HeadingRoom + Line / 2 + 2 - FScrollPos;
    int32_t LastY = YPos;
    for (TQVBasicLegendGroup* Group : Groups()) {
        if (ControlHeight() <= LastY)
            break;
        Group->Draw(ACanvas, Rect.Left, Rect.Right, APrinting, YPos, LastY);
    }
    if (!APrinting && FMouseIsInView && (FScrollPos != 0 || LastY > ControlHeight()) && FButtons->GetVisible()) {
        DrawButton(ACanvas, UpButtonRect(), true, FScrollPos != 0, FHighlightButtonID == 1);
        const bool AllFits = ControlHeight() >= ViewHeight - FScrollPos + Rect.Top;
        DrawButton(ACanvas, DownButtonRect(), false, !AllFits, FHighlightButtonID == 2);
    }
    ACanvas.ClearClipRegion();
}

void TQVLegendView::ButtonHitTest(int32_t AX, int32_t AY)
{
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (!Canvas)
        return;
    TQLCanvasSave Save(*Canvas);
    Canvas->ApplyFont(*FFont);
    const bool Overflow = Overflows(*Canvas);
    const int32_t Old = FHighlightButtonID;
    FHighlightButtonID = 0;
    if (FButtons->GetVisible() && (Overflow || FScrollPos != 0)) {
        if (UpButtonRect().Contains(TPoint{AX, AY}))
            FHighlightButtonID = 1;
        else if (DownButtonRect().Contains(TPoint{AX, AY}))
            FHighlightButtonID = 2;
    }
    // A button that cannot act is not lit.
    if (!Overflow && FHighlightButtonID == 2)
        FHighlightButtonID = 0;
    if (FScrollPos == 0 && FHighlightButtonID == 1)
        FHighlightButtonID = 0;
    if (Old != FHighlightButtonID) {
        if (Old != 0)
            GetDisplay()->InvalidateIntRect(Old == 1 ? UpButtonRect() : DownButtonRect());
        if (FHighlightButtonID != 0)
            GetDisplay()->InvalidateIntRect(FHighlightButtonID == 1 ? UpButtonRect() : DownButtonRect());
    }
    // Over a button no line is hit.
    if (FHighlightButtonID != 0)
        AX = -100;
    const int32_t Line = LineHeight(*Canvas);
    int32_t YPos = GetDrawRect().Top + HeadingRoom + Line / 2 + 1 - FScrollPos;
    for (TQVBasicLegendGroup* Group : Groups())
        Group->ButtonHitTest(*Canvas, AX, AY, YPos);
}

bool TQVLegendView::StepUp()
{
    if (FScrollPos == 0)
        return false;
    FScrollPos = std::max(0, FScrollPos - ScrollStep);
    InvalidateView();
    return true;
}

void TQVLegendView::StepDown()
{
    FScrollPos += ScrollStep;
    InvalidateView();
}

void TQVLegendView::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVOptionalView::MouseMove(AShift, AX, AY, AHandled);
    if (FMouseIsInView)
        ButtonHitTest(AX, AY);
}

void TQVLegendView::MouseDown(TMouseButton AButton, TShiftState /*AShift*/, int32_t AX, int32_t AY,
                              bool /*AMouseInside*/, bool& AHandled)
{
    if (AHandled || AButton != mbLeft || !IsVisible() || !GetDrawRect().Contains(TPoint{AX, AY}))
        return;
    ButtonHitTest(AX, AY);
    if (FHighlightButtonID != 0) {
        AHandled = true;
        if (FHighlightButtonID == 1)
            StepUp();
        else
            StepDown();
        FRepeatTimer.SetInterval(RepeatDelay);
        FRepeatTimer.SetEnabled(true);
        return;
    }
    const std::vector<TQVBasicLegendGroup*> List = Groups();
    for (int32_t G = 0; G < int32_t(List.size()); ++G)
        if (List[size_t(G)]->ItemMouseDown(G)) {
            AHandled = true;
            break;
        }
}

void TQVLegendView::DoRepeatTimer()
{
    FRepeatTimer.SetInterval(RepeatInterval);
    if (FHighlightButtonID == 1) {
        StepUp();
    } else if (FHighlightButtonID == 2) {
        TQLCanvas* Canvas = GetDisplay()->GetCanvas();
        if (Canvas) {
            TQLCanvasSave Save(*Canvas);
            if (Overflows(*Canvas))
                StepDown();
        }
    }
}

void TQVLegendView::MouseUp(TMouseButton AButton, TShiftState /*AShift*/, int32_t /*AX*/, int32_t /*AY*/,
                            bool /*AMouseInside*/)
{
    if (AButton != mbLeft || !FRepeatTimer.GetEnabled())
        return;
    FRepeatTimer.SetEnabled(false);
    InvalidateView();
}

void TQVLegendView::MouseLeaveView()
{
    FRepeatTimer.SetEnabled(false);
    FHighlightButtonID = 0;
    for (TQVBasicLegendGroup* Group : Groups())
        Group->ClearHighlight();
    InvalidateView();
}

void TQVLegendView::MouseLeave()
{
    TQVOptionalView::MouseLeave();
    bool Any = false;
    for (TQVBasicLegendGroup* Group : Groups())
        Any = Group->ClearHighlight() || Any;
    if (Any)
        InvalidateView();
}

void TQVLegendView::MouseWheelDown(TShiftState /*AShift*/, const TPoint& APoint)
{
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (!Canvas)
        return;
    bool Overflow;
    {
        TQLCanvasSave Save(*Canvas);
        Overflow = Overflows(*Canvas);
    }
    if (Overflow) {
        StepDown();
        ButtonHitTest(APoint.X, APoint.Y);
    }
}

void TQVLegendView::MouseWheelUp(TShiftState /*AShift*/, const TPoint& APoint)
{
    if (StepUp())
        ButtonHitTest(APoint.X, APoint.Y);
}

void TQVLegendView::ItemHighlightChanged(TQVBasicLegendGroup* AGroup, bool AHighlighted)
{
    if (AHighlighted) {
        GetDisplay()->SetDisplayCursor(AGroup->GetCursor());
        GetDisplay()->SetElementCursorChanged(true);
    } else {
        GetDisplay()->SetDisplayCursor(GetDisplay()->GetCursor());
    }
}

const TQLClassInfo& TQVLegendView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVLegendView>("TQVLegendView", &TQVOptionalView::StaticClassInfo())
            .Property("Align", &TQVLegendView::GetAlign, &TQVLegendView::SetAlign, vaRight)
            .Object("Font", &TQVLegendView::GetFont)
            .Object("Buttons", &TQVLegendView::GetButtons)
            .Object("MarkerGroups", &TQVLegendView::GetMarkerGroups)
            .Object("Cursors", &TQVLegendView::GetCursors)
            .Object("CursorLinks", &TQVLegendView::GetCursorLinks)
            .Object("Labels", &TQVLegendView::GetLabels)
            .Collection("CustomGroups", &TQVLegendView::GetCustomGroups)
            .Build();
    return Info;
}

const TQLClassInfo& TQVScopeLegendView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeLegendView>("TQVScopeLegendView", &TQVLegendView::StaticClassInfo())
            .Object("Channels", &TQVScopeLegendView::GetChannels)
            .Object("ChannelLinks", &TQVScopeLegendView::GetChannelLinks)
            .Object("Zones", &TQVScopeLegendView::GetZones)
            .Object("Ellipses", &TQVScopeLegendView::GetEllipses)
            .Build();
    return Info;
}

} // namespace qv
