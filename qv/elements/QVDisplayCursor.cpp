#include "qv/elements/QVDisplayCursor.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/elements/QVDisplayCursorLink.h"
#include "qv/elements/QVDisplayTrails.h"
#include "qv/elements/QVElementsOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

// ---- Position ----

TQVDisplayCursorPosition::TQVDisplayCursorPosition(TQVDisplayCursor* AOwner)
    : TQLPersistent(AOwner, AOwner->GetLock()), FOwner(AOwner)
{}

double TQVDisplayCursorPosition::GetX() const
{
    const TQVDisplayOwner* Display = FOwner->GetDisplay();
    const TQVDisplayAxis* Axis = FOwner->GetXAxis();
    if (!Display || Display->GetDesigning() || !Axis)
        return FX;
    // Held to the axis' full range in the units the position is given in, so that a time axis
    // (positions in seconds, data in samples) clamps alike.
    const double Min = Axis->GetScaleTick().GetFull().GetMin().GetValue();
    const double Max = Axis->GetScaleTick().GetFull().GetMax().GetValue();
    if (FX > Max)
        return Max;
    if (FX < Min)
        return Min;
    return FX;
}

namespace {
void AlignY(const TQVDisplayAxis* AAxis, double& AValue)
{
    if (const auto* Y = dynamic_cast<const TQVBasicScopeYAxis*>(AAxis))
        Y->AlignValue(AValue);
}
void AlignX(const TQVDisplayAxis* AAxis, double& AValue)
{
    if (const auto* X = dynamic_cast<const TQVBasicScopeXAxis*>(AAxis))
        X->AlignValue(AValue);
}
} // namespace

void TQVDisplayCursorPosition::SetY(double AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    AlignY(FOwner->GetYAxis(), AValue);
    Set(FY, AValue);
}

void TQVDisplayCursorPosition::SetXY(double AX, double AY)
{
    auto Guard = GetLock()->AcquireWrite();
    SetX(AX);
    SetY(AY);
}

const TQLClassInfo& TQVDisplayCursorPosition::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayCursorPosition>("TQVDisplayCursorPosition", &TQLPersistent::StaticClassInfo())
            .Property("X", &TQVDisplayCursorPosition::GetX, &TQVDisplayCursorPosition::SetX, 0.0)
            .Property("Y", &TQVDisplayCursorPosition::GetY, &TQVDisplayCursorPosition::SetY, 0.0)
            .Build();
    return Info;
}

const TQLClassInfo& TQVDisplayCursorMouseCursor::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayCursorMouseCursor>("TQVDisplayCursorMouseCursor", &TQLPersistent::StaticClassInfo())
            .Property("Horizontal", &TQVDisplayCursorMouseCursor::GetHorizontal,
                      &TQVDisplayCursorMouseCursor::SetHorizontal, crSizeNS)
            .Property("Vertical", &TQVDisplayCursorMouseCursor::GetVertical, &TQVDisplayCursorMouseCursor::SetVertical,
                      crSizeWE)
            .Property("Both", &TQVDisplayCursorMouseCursor::GetBoth, &TQVDisplayCursorMouseCursor::SetBoth, crSizeAll)
            .Build();
    return Info;
}

// ---- Cursor ----

TQVDisplayCursor::TQVDisplayCursor(TQLCollection* ACollection)
    : TQVOptionalAxesDisplayCollectionItem(ACollection), FPosition(std::make_unique<TQVDisplayCursorPosition>(this)),
      FMouseCursors(std::make_unique<TQVDisplayCursorMouseCursor>(this, GetLock()))
{}

TQVDisplayCursor::~TQVDisplayCursor() = default;

void TQVDisplayCursor::BeforeDestruction()
{
    TQVOptionalAxesDisplayCollectionItem::BeforeDestruction();
    // Links lose this end; they take themselves out of the list.
    while (!FCursorLinks.empty())
        FCursorLinks.back()->RemoveCursor(this);
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

void TQVDisplayCursor::SetColorDefault(TAlphaColor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FColor == FColorDefault;
    FColorDefault = AValue;
    if (Follow)
        SetColor(AValue);
}

void TQVDisplayCursor::SetKind(TQVDisplayCursorKind AValue)
{
    if (AValue > ckBoth)
        throw std::invalid_argument("TQVDisplayCursor: invalid kind " + std::to_string(int(AValue)));
    Set(FKind, AValue);
}

void TQVDisplayCursor::AddLink(TQVDisplayCursorLink* ALink)
{
    if (std::find(FCursorLinks.begin(), FCursorLinks.end(), ALink) == FCursorLinks.end())
        FCursorLinks.push_back(ALink);
}

void TQVDisplayCursor::RemoveLink(TQVDisplayCursorLink* ALink)
{
    std::erase(FCursorLinks, ALink);
}

void TQVDisplayCursor::Assign(const TQLPersistent* ASource)
{
    TQVOptionalAxesDisplayCollectionItem::Assign(ASource);
    if (const auto* Source = dynamic_cast<const TQVDisplayCursor*>(ASource))
        FIsDynamic = Source->FIsDynamic;
}

TQVHighlightInfo* TQVDisplayCursor::Info() const
{
    return GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr;
}

bool TQVDisplayCursor::GetHighlighted() const
{
    const TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!I || !H)
        return false;
    const bool Named = I->FHighlightedItem == this || I->FExtHighlightCursor == this || I->FDraggedCursor == this;
    return Named && H->GetCursors()->GetMouseHighlighting();
}

void TQVDisplayCursor::SetHighlighted(bool AValue)
{
    TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!I || !H)
        return;
    auto Guard = GetLock()->AcquireWrite();
    if (QVSetItemHighlighted(I->FExtHighlightCursor, this, AValue, *H->GetCursors()))
        InvalidateItem();
}

// ---- Drawing ----

int32_t TQVDisplayCursor::DrawVAt(double AValue, TQLCanvas& ACanvas, bool ATurned, const TRect& ARect, double AMin,
                                  double AMax, double AScale, double AWidth, bool& AInView)
{
    return DrawLineAt(GetVAt(AValue, ATurned, ARect, AMin, AMax, AScale, AWidth), !ATurned, ACanvas, ARect, AInView);
}

int32_t TQVDisplayCursor::DrawHAt(double AValue, TQLCanvas& ACanvas, bool ATurned, const TRect& ARect, double AMin,
                                  double AMax, double AScale, double AWidth, bool& AInView)
{
    return DrawLineAt(GetHAt(AValue, ATurned, ARect, AMin, AMax, AScale, AWidth), ATurned, ACanvas, ARect, AInView);
}

int32_t TQVDisplayCursor::DrawLineAt(int32_t P, bool AUpright, TQLCanvas& ACanvas, const TRect& ARect, bool& AInView)
{
    AInView = true;
    ACanvas.GetBrush().SetStyle(bsClear);
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(GetDisplay());
    if (Owner && Owner->GetCursorsStayInView()) {
        const int32_t Low = AUpright ? ARect.Left : ARect.Top;
        const int32_t High = (AUpright ? ARect.Right : ARect.Bottom) - 1;
        if (P < Low || P > High) {
            P = std::clamp(P, Low, High);
            AInView = false;
        }
    }
    // A line held at the edge shows dashed.
    if (!AInView)
        ACanvas.SetPenStyle(psDash);
    if (AUpright) {
        ACanvas.MoveTo(P, ARect.Top + 1);
        ACanvas.LineTo(P, ARect.Bottom);
    } else {
        ACanvas.MoveTo(ARect.Left + 1, P);
        ACanvas.LineTo(ARect.Right - 1, P);
    }
    return P;
}

void TQVDisplayCursor::Draw(TQLCanvas& ACanvas, const TRect& DispRect)
{
    TQVElementAxesWindow W;
    if (!GetVisible() || !GetAxesWindow(W, true))
        return;
    TQVHighlightInfo* I = Info();
    if (I && I->FExtHighlightCursor) {
        I->FVMoveCursor = true;
        I->FHMoveCursor = true;
    }
    const bool V = FKind == ckVertical || FKind == ckBoth;
    const bool H = FKind == ckHorizontal || FKind == ckBoth;
    // The direction that moves lies on top.
    if (!I || !I->FVMoveCursor) {
        if (V)
            DrawHighlight(true, ACanvas, DispRect, W);
        if (H)
            DrawHighlight(false, ACanvas, DispRect, W);
    } else {
        if (H)
            DrawHighlight(false, ACanvas, DispRect, W);
        if (V)
            DrawHighlight(true, ACanvas, DispRect, W);
    }
    ACanvas.SetPenStyle(psSolid);
    if (V)
        DrawLine(true, ACanvas, DispRect, W);
    if (H)
        DrawLine(false, ACanvas, DispRect, W);
}

void TQVDisplayCursor::DrawLine(bool AVertical, TQLCanvas& ACanvas, const TRect& ARect, const TQVElementAxesWindow& W)
{
    TQVDisplayOwner* Display = GetDisplay();
    const bool Turned = Display->GetIsVertical();
    const double Min = AVertical ? W.XMin : W.YMin;
    const double Max = AVertical ? W.XMax : W.YMax;
    const double Scale = AVertical ? W.XScale : W.YScale;
    const double Width = AVertical ? W.XWidth() : W.YWidth();
    const double Position = AVertical ? FPosition->GetX() : FPosition->GetY();
    const auto At = [&](double AValue, bool& AInView) {
        return AVertical ? DrawVAt(AValue, ACanvas, Turned, ARect, Min, Max, Scale, Width, AInView)
                         : DrawHAt(AValue, ACanvas, Turned, ARect, Min, Max, Scale, Width, AInView);
    };
    const auto Intersections = [&](double AValue, int32_t APixel, bool ADragging) {
        if (AVertical)
            DrawVChannelIntersections(ACanvas, AValue, APixel, ADragging);
        else
            DrawHChannelIntersections(ACanvas, AValue, APixel, ADragging);
    };

    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetPen().SetColor(FColor);
    ACanvas.SetPenWidth(1);
    bool InView = true;
    const int32_t P = At(Position, InView);
    if (InView)
        Intersections(Position, P, false);

    TQVHighlightInfo* I = Info();
    const bool Moving = I && (AVertical ? I->FVMoveCursor : I->FHMoveCursor);
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(Display);
    const TQVScopeDataView* View = TQVScopeDataView::Of(Display);
    if (!I || I->FDraggedCursor != this || !Moving || !Owner || !View) {
        ACanvas.SetPenStyle(psSolid);
        return;
    }
    // The ghost at the mouse, and the trail from the line to it with the difference.
    TQVDisplayAxis* Axis = AVertical ? W.XAxis : W.YAxis;
    const TPoint Mouse = View->GetCurrentMousePoint();
    double Value = Axis->GetPositionFromMouse(Axis->GetIsVertical() ? Mouse.Y : Mouse.X, Min, Max, ARect);
    if (AVertical)
        AlignX(Axis, Value);
    else
        AlignY(Axis, Value);
    ACanvas.SetPenStyle(psDash);
    ACanvas.GetPen().SetColor(Owner->GetTrails()->GetColor());
    const int32_t P2 = At(Value, InView);
    Intersections(Value, P2, true);
    if (Value != Position && !(I->FVMoveCursor && I->FHMoveCursor)) {
        ACanvas.GetBrush().SetColor(Display->GetColor());
        ACanvas.ApplyFont(*Owner->GetTrails()->GetFont());
        const std::string Text = Axis->GetTickText(Value - Position);
        const TRect ViewRect = View->GetDrawRect();
        // The line runs across the screen when it measures along a screen row.
        const bool AlongRow = AVertical != Turned;
        if (AlongRow) {
            const int32_t Y = Turned ? Mouse.X : Mouse.Y;
            ACanvas.MoveTo(P, Y);
            ACanvas.LineTo(P2, Y);
            const TSize Size = ACanvas.TextExtent(Text);
            const int32_t X = std::clamp(P + ((P2 - P) - Size.cx) / 2, ViewRect.Left,
                                         std::max(ViewRect.Left, ViewRect.Right - Size.cy));
            ACanvas.TextOut(X, Y - Size.cy, Text);
        } else {
            const int32_t X = Turned ? Mouse.Y : Mouse.X;
            ACanvas.MoveTo(X, P);
            ACanvas.LineTo(X, P2);
            const int32_t Height = ACanvas.TextExtent("Xg").cy;
            const int32_t Y =
                std::clamp(P + ((P2 - P) - Height) / 2, ViewRect.Top, std::max(ViewRect.Top, ViewRect.Bottom - Height));
            ACanvas.TextOut(X + 5, Y, Text);
        }
    }
    ACanvas.SetPenStyle(psSolid);
}

void TQVDisplayCursor::DrawHighlight(bool AVertical, TQLCanvas& ACanvas, const TRect& ARect,
                                     const TQVElementAxesWindow& W)
{
    TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay()->GetHighlighting();
    if (!I || !H || (I->FHighlightedItem != this && I->FExtHighlightCursor != this && I->FDraggedCursor != this))
        return;
    ACanvas.SetPenStyle(psSolid);
    ACanvas.SetPenWidth(3);
    const bool Moving = AVertical ? I->FVMoveCursor : I->FHMoveCursor;
    // The colours of a line that does not move carry no alpha and go to the canvas as they are.
    ACanvas.GetPen().SetColor(Moving ? H->GetCursors()->GetColor() : (I->FDraggedCursor == this ? 0x8080 : 0x8000));
    const bool Turned = GetDisplay()->GetIsVertical();
    bool InView = true;
    if (AVertical)
        DrawVAt(FPosition->GetX(), ACanvas, Turned, ARect, W.XMin, W.XMax, W.XScale, W.XWidth(), InView);
    else
        DrawHAt(FPosition->GetY(), ACanvas, Turned, ARect, W.YMin, W.YMax, W.YScale, W.YWidth(), InView);
    ACanvas.SetPenWidth(1);
}

// ---- Mouse ----

bool TQVDisplayCursor::HitTest(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect)
{
    TQVElementAxesWindow W;
    if (!GetVisible() || !FCanDrag || !GetAxesWindow(W, false))
        return false;
    const bool Turned = GetDisplay()->GetIsVertical();
    const int32_t A = Turned ? Y : X;
    const int32_t B = Turned ? X : Y;
    ACursorsInfo.FVMoveCursor = false;
    ACursorsInfo.FHMoveCursor = false;
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(GetDisplay());
    const bool Stay = Owner && Owner->GetCursorsStayInView();
    if (FKind == ckVertical || FKind == ckBoth) {
        int32_t P = GetVAt(FPosition->GetX(), Turned, DispRect, W.XMin, W.XMax, W.XScale, W.XWidth());
        if (Stay)
            P = Turned ? std::clamp(P, DispRect.Top, std::max(DispRect.Top, DispRect.Bottom))
                       : std::clamp(P, DispRect.Left, std::max(DispRect.Left, DispRect.Right - 1));
        ACursorsInfo.FVMoveCursor = P - 3 < A && A < P + 3;
    }
    if (FKind == ckHorizontal || FKind == ckBoth) {
        int32_t P = GetHAt(FPosition->GetY(), Turned, DispRect, W.YMin, W.YMax, W.YScale, W.YWidth());
        if (Stay)
            P = Turned ? std::clamp(P, DispRect.Left, std::max(DispRect.Left, DispRect.Right - 1))
                       : std::clamp(P, DispRect.Top, std::max(DispRect.Top, DispRect.Bottom - 1));
        ACursorsInfo.FHMoveCursor = P - 3 < B && B < P + 3;
    }
    return ACursorsInfo.FVMoveCursor || ACursorsInfo.FHMoveCursor;
}

void TQVDisplayCursor::MoveTo(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect)
{
    TQVElementAxesWindow W;
    if (!GetAxesWindow(W, true))
        return;
    double NX = FPosition->GetX();
    double NY = FPosition->GetY();
    // A line let go on its own pixel keeps its value: a press and release in place moves
    // nothing.
    const bool Turned = GetDisplay()->GetIsVertical();
    const int32_t VAt = GetVAt(NX, Turned, DispRect, W.XMin, W.XMax, W.XScale, W.XWidth());
    const int32_t HAt = GetHAt(NY, Turned, DispRect, W.YMin, W.YMax, W.YScale, W.YWidth());
    if (ACursorsInfo.FVMoveCursor && VAt != (Turned ? Y : X))
        NX = W.XAxis->GetPositionFromMouse(W.XAxis->GetIsVertical() ? Y : X, W.XMin, W.XMax, DispRect);
    if (ACursorsInfo.FHMoveCursor && HAt != (Turned ? X : Y))
        NY = W.YAxis->GetPositionFromMouse(W.YAxis->GetIsVertical() ? Y : X, W.YMin, W.YMax, DispRect);
    const TQVRealPoint Old{FPosition->GetX(), FPosition->GetY()};
    if (NX == Old.X && NY == Old.Y)
        return;
    FPosition->SetXY(NX, NY);
    if (auto* Source = dynamic_cast<TQVElementMovedSource*>(GetCollection()))
        if (Source->GetOnMoved())
            Source->GetOnMoved()(GetDisplay(), GetIndex(), Old, TQVRealPoint{FPosition->GetX(), FPosition->GetY()});
}

const TQLClassInfo& TQVDisplayCursor::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayCursor>("TQVDisplayCursor", &TQVOptionalAxesDisplayCollectionItem::StaticClassInfo())
            .Object("Position", &TQVDisplayCursor::GetPosition)
            .Color("Color", &TQVDisplayCursor::GetColor, &TQVDisplayCursor::SetColor,
                   &TQVDisplayCursor::GetColorDefault)
            .Property("CanDrag", &TQVDisplayCursor::GetCanDrag, &TQVDisplayCursor::SetCanDrag, true)
            .Property("Kind", &TQVDisplayCursor::GetKind, &TQVDisplayCursor::SetKind, ckVertical)
            .Object("MouseCursors", &TQVDisplayCursor::GetMouseCursors)
            .Build();
    return Info;
}

} // namespace qv
