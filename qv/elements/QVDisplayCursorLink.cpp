#include "qv/elements/QVDisplayCursorLink.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVLabelTemplate.h"
#include "qv/elements/QVDisplayTrails.h"
#include "qv/elements/QVElementsOwner.h"
#include "qv/elements/QVScopeCursor.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

// ---- Measurement line and selection ----

TQVScopeMeasurementLine::TQVScopeMeasurementLine(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)),
      FMeasurementLabel(std::make_unique<TQVOptionalLabel>(this, GetLock(), [this] { NotifyProp(); }))
{}

TQVScopeMeasurementLine::~TQVScopeMeasurementLine() = default;

void TQVScopeMeasurementLine::SetX(double AValue)
{
    Set(FX, std::clamp(AValue, -100.0, 100.0));
}

void TQVScopeMeasurementLine::SetY(double AValue)
{
    Set(FY, std::clamp(AValue, -100.0, 100.0));
}

void TQVScopeMeasurementLine::SetStrokeDash(TQVStrokeDash AValue)
{
    if (AValue > sdDashDotDot)
        throw std::invalid_argument("TQVScopeMeasurementLine: invalid stroke dash " + std::to_string(int(AValue)));
    Set(FStrokeDash, AValue);
}

const TQLClassInfo& TQVScopeMeasurementLine::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeMeasurementLine>("TQVScopeMeasurementLine", &TQLPersistentNotify::StaticClassInfo())
            .Property("X", &TQVScopeMeasurementLine::GetX, &TQVScopeMeasurementLine::SetX, 0.0)
            .Property("Y", &TQVScopeMeasurementLine::GetY, &TQVScopeMeasurementLine::SetY, 0.0)
            .Property("Visible", &TQVScopeMeasurementLine::GetVisible, &TQVScopeMeasurementLine::SetVisible, true)
            .Property("Color", &TQVScopeMeasurementLine::GetColor, &TQVScopeMeasurementLine::SetColor,
                      TAlphaColor(0xFFFFFFFF))
            .Property("StrokeDash", &TQVScopeMeasurementLine::GetStrokeDash, &TQVScopeMeasurementLine::SetStrokeDash,
                      sdSolid)
            .Object("MeasurementLabel", &TQVScopeMeasurementLine::GetMeasurementLabel)
            .Build();
    return Info;
}

TQVScopeSelection::TQVScopeSelection(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)),
      FBrush(std::make_unique<TQVDisplayBrush>(
          this, GetLock(), [this] { NotifyProp(); }, 0x40FFFFFF, bkSolid))
{}

TQVScopeSelection::~TQVScopeSelection() = default;

const TQLClassInfo& TQVScopeSelection::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeSelection>("TQVScopeSelection", &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &TQVScopeSelection::GetVisible, &TQVScopeSelection::SetVisible, false)
            .Object("Brush", &TQVScopeSelection::GetBrush)
            .Build();
    return Info;
}

// ---- Link ----

TQVDisplayCursorLink::TQVDisplayCursorLink(TQLCollection* ACollection)
    : TQVDisplaySelectableCollectionItem(ACollection),
      FMeasurementLine(std::make_unique<TQVScopeMeasurementLine>(this, GetLock(), [this] { NotifyProp(); })),
      FSelection(std::make_unique<TQVScopeSelection>(this, GetLock(), [this] { NotifyProp(); }))
{}

TQVDisplayCursorLink::~TQVDisplayCursorLink() = default;

void TQVDisplayCursorLink::BeforeDestruction()
{
    TQVDisplaySelectableCollectionItem::BeforeDestruction();
    SetEnd(FBeginCursor, nullptr);
    SetEnd(FEndCursor, nullptr);
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

TQVHighlightInfo* TQVDisplayCursorLink::Info() const
{
    return GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr;
}

TQLCollection* TQVDisplayCursorLink::GetLinkCursors() const
{
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(GetDisplay());
    return Owner ? Owner->GetCursors() : nullptr;
}

void TQVDisplayCursorLink::SetEnd(TQVDisplayCursor*& AEnd, TQVDisplayCursor* AValue)
{
    if (AEnd == AValue)
        return;
    // A cursor at both ends stays in the other end's list.
    if (AEnd && (&AEnd == &FBeginCursor ? FEndCursor : FBeginCursor) != AEnd)
        AEnd->RemoveLink(this);
    AEnd = AValue;
    if (AEnd)
        AEnd->AddLink(this);
}

void TQVDisplayCursorLink::SetBeginCursor(TQVDisplayCursor* AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    SetEnd(FBeginCursor, AValue);
    InvalidateItem();
}

void TQVDisplayCursorLink::SetEndCursor(TQVDisplayCursor* AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    SetEnd(FEndCursor, AValue);
    InvalidateItem();
}

int32_t TQVDisplayCursorLink::GetBeginCursorIndex() const
{
    return FBeginCursor ? FBeginCursor->GetIndex() : -1;
}

int32_t TQVDisplayCursorLink::GetEndCursorIndex() const
{
    return FEndCursor ? FEndCursor->GetIndex() : -1;
}

void TQVDisplayCursorLink::SetCursorIndex(TQVDisplayCursor* TQVDisplayCursorLink::*AEnd, int32_t AValue)
{
    TQLCollection* All = GetLinkCursors();
    if (AValue < -1 || AValue >= (All ? All->GetCount() : 0))
        throw std::out_of_range("TQVDisplayCursorLink: no cursor " + std::to_string(AValue));
    TQVDisplayCursor* Cursor = AValue < 0 ? nullptr : dynamic_cast<TQVDisplayCursor*>(All->GetBaseItem(AValue));
    if (AEnd == &TQVDisplayCursorLink::FBeginCursor)
        SetBeginCursor(Cursor);
    else
        SetEndCursor(Cursor);
}

void TQVDisplayCursorLink::SetBeginCursorIndex(int32_t AValue)
{
    SetCursorIndex(&TQVDisplayCursorLink::FBeginCursor, AValue);
}

void TQVDisplayCursorLink::SetEndCursorIndex(int32_t AValue)
{
    SetCursorIndex(&TQVDisplayCursorLink::FEndCursor, AValue);
}

void TQVDisplayCursorLink::RemoveCursor(TQVDisplayCursor* ACursor)
{
    if (!ACursor)
        return;
    if (FBeginCursor == ACursor)
        SetEnd(FBeginCursor, nullptr);
    if (FEndCursor == ACursor)
        SetEnd(FEndCursor, nullptr);
    ACursor->RemoveLink(this);
}

bool TQVDisplayCursorLink::IsVisible() const
{
    return FBeginCursor && FEndCursor && FBeginCursor->GetVisible() && FEndCursor->GetVisible();
}

bool TQVDisplayCursorLink::GetHighlighted() const
{
    const TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!I || !H)
        return false;
    const bool Named = I->FHighlightedItem == this || I->FExtHighlightCursorLink == this || I->FDraggedLink == this;
    return Named && H->GetCursorLinks()->GetMouseHighlighting();
}

void TQVDisplayCursorLink::SetHighlighted(bool AValue)
{
    TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!I || !H)
        return;
    auto Guard = GetLock()->AcquireWrite();
    if (QVSetItemHighlighted(I->FExtHighlightCursorLink, this, AValue, *H->GetCursorLinks()))
        InvalidateItem();
}

// ---- Geometry ----

namespace {
bool VerticalCapable(const TQVDisplayCursor* C)
{
    return C->GetKind() == ckVertical || C->GetKind() == ckBoth;
}
bool HorizontalCapable(const TQVDisplayCursor* C)
{
    return C->GetKind() == ckHorizontal || C->GetKind() == ckBoth;
}
int32_t Round(double AValue)
{
    return QVClampRound(AValue, -int32_t(QVPixelClipBound), int32_t(QVPixelClipBound));
}
} // namespace

// The measurement along one axis: where the line runs across the view (C), the cursors'
// pixels along it (P1, P2) and their values, the view's extent along it, and the turn.
struct TQVDisplayCursorLink::TMeasure {
    bool Turned = false;
    int32_t C = 0, P1 = 0, P2 = 0, First = 0, Last = 0;
    double V1 = 0.0, V2 = 0.0;
    TQVElementAxesWindow W;
    TQVDisplayAxis* Axis = nullptr;
    int32_t A() const { return std::min(P1, P2); }
    int32_t B() const { return std::max(P1, P2); }
    // Whether any of the line lies in the view.
    bool Shown() const { return (First < A() || First < B()) && A() < Last; }
};

bool TQVDisplayCursorLink::MeasureGeometry(bool AAlongX, const TRect& R, TMeasure& M) const
{
    if (!IsVisible() || !FBeginCursor->GetAxesWindow(M.W, true))
        return false;
    if (AAlongX ? !(VerticalCapable(FBeginCursor) && VerticalCapable(FEndCursor) &&
                    FBeginCursor->GetXAxis() == FEndCursor->GetXAxis())
                : !(HorizontalCapable(FBeginCursor) && HorizontalCapable(FEndCursor) &&
                    FBeginCursor->GetYAxis() == FEndCursor->GetYAxis()))
        return false;
    M.Turned = GetDisplay()->GetIsVertical();
    const bool Horizontal = AAlongX != M.Turned; // the line runs along a screen row
    const double Span = Horizontal ? R.Height() : R.Width();
    const int32_t Base = Horizontal ? R.Top : R.Left;
    M.C = AAlongX ? Base + Round(Span * ((100.0 - FMeasurementLine->GetY()) / 200.0))
                  : Base + Round(Span * ((FMeasurementLine->GetX() + 100.0) / 200.0));
    M.First = Horizontal ? R.Left : R.Top;
    M.Last = Horizontal ? R.Right : R.Bottom;
    M.Axis = AAlongX ? M.W.XAxis : M.W.YAxis;
    if (AAlongX) {
        M.V1 = FBeginCursor->GetPosition()->GetX();
        M.V2 = FEndCursor->GetPosition()->GetX();
        M.P1 = FBeginCursor->GetVAt(M.V1, M.Turned, R, M.W.XMin, M.W.XMax, M.W.XScale, M.W.XWidth());
        M.P2 = FBeginCursor->GetVAt(M.V2, M.Turned, R, M.W.XMin, M.W.XMax, M.W.XScale, M.W.XWidth());
    } else {
        M.V1 = FBeginCursor->GetPosition()->GetY();
        M.V2 = FEndCursor->GetPosition()->GetY();
        M.P1 = FBeginCursor->GetHAt(M.V1, M.Turned, R, M.W.YMin, M.W.YMax, M.W.YScale, M.W.YWidth());
        M.P2 = FBeginCursor->GetHAt(M.V2, M.Turned, R, M.W.YMin, M.W.YMax, M.W.YScale, M.W.YWidth());
    }
    return true;
}

namespace {
// A line from AA to AB along the measurement at ACross across it.
void MeasureLine(TQLCanvas& ACanvas, bool AHorizontal, int32_t AA, int32_t AB, int32_t ACross)
{
    if (AHorizontal) {
        ACanvas.MoveTo(AA, ACross);
        ACanvas.LineTo(AB, ACross);
    } else {
        ACanvas.MoveTo(ACross, AA);
        ACanvas.LineTo(ACross, AB);
    }
}
// The text centred on the line from AA to AB: over a row, or beside a column.
void MeasureText(TQLCanvas& ACanvas, bool AHorizontal, int32_t AA, int32_t AB, int32_t ACross, const std::string& AText)
{
    const TSize Size = ACanvas.TextExtent(AText);
    if (AHorizontal)
        ACanvas.TextOut(AA + ((AB - AA) - Size.cx) / 2, ACross - Size.cy, AText);
    else
        ACanvas.TextOut(ACross + 5, AA + ((AB - AA) - Size.cx) / 2, AText);
}
} // namespace

// ---- Drawing ----

void TQVDisplayCursorLink::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, const TRect& DispRect,
                                bool /*Printing*/)
{
    if (!IsVisible())
        return;
    TQVHighlightInfo* I = Info();
    if (I && I->FExtHighlightCursorLink) {
        I->FVMoveCursorLink = true;
        I->FHMoveCursorLink = true;
    }
    if (FMeasurementLine->GetVisible()) {
        if (I && I->FVMoveCursorLink)
            DrawLinkHighlight(false, ACanvas, DispRect);
        if (I && I->FHMoveCursorLink)
            DrawLinkHighlight(true, ACanvas, DispRect);
        if (ADrawPart == ddpFeatures) {
            DrawMeasure(false, ACanvas, DispRect);
            DrawMeasure(true, ACanvas, DispRect);
        }
    }
    if (FSelection->GetVisible() && ADrawPart == ddpBackground) {
        const TQVDisplayCursor* B = FBeginCursor;
        const TQVDisplayCursor* E = FEndCursor;
        if (B->GetKind() == ckBoth && E->GetKind() == ckBoth)
            DrawSelection(ACanvas, DispRect, true, true);
        else if (HorizontalCapable(B) && HorizontalCapable(E))
            DrawSelection(ACanvas, DispRect, false, true);
        else if (VerticalCapable(B) && VerticalCapable(E))
            DrawSelection(ACanvas, DispRect, true, false);
    }
}

void TQVDisplayCursorLink::DrawSelection(TQLCanvas& ACanvas, const TRect& R, bool AAlongX, bool AAlongY)
{
    const bool Turned = GetDisplay()->GetIsVertical();
    // Each cursor's pixel from its own axes, held to the view.
    const auto Pixel = [&](const TQVDisplayCursor* C, bool AX, int32_t& AOut) {
        TQVElementAxesWindow W;
        if (!C->GetAxesWindow(W, true))
            return false;
        const bool Horizontal = AX != Turned;
        AOut = AX ? C->GetVAt(C->GetPosition()->GetX(), Turned, R, W.XMin, W.XMax, W.XScale, W.XWidth())
                  : C->GetHAt(C->GetPosition()->GetY(), Turned, R, W.YMin, W.YMax, W.YScale, W.YWidth());
        AOut = Horizontal ? std::clamp(AOut, R.Left, std::max(R.Left, R.Right))
                          : std::clamp(AOut, R.Top, std::max(R.Top, R.Bottom));
        return true;
    };
    TRect Fill{R.Left, R.Top, R.Right + 1, R.Bottom + 1};
    for (const bool AX : {true, false}) {
        if (!(AX ? AAlongX : AAlongY))
            continue;
        const double V1 = AX ? FBeginCursor->GetPosition()->GetX() : FBeginCursor->GetPosition()->GetY();
        const double V2 = AX ? FEndCursor->GetPosition()->GetX() : FEndCursor->GetPosition()->GetY();
        if (V1 == V2 && !(AAlongX && AAlongY))
            return;
        int32_t P1 = 0, P2 = 0;
        if (!Pixel(FBeginCursor, AX, P1) || !Pixel(FEndCursor, AX, P2))
            return;
        if (AX != Turned) {
            Fill.Left = std::min(P1, P2);
            Fill.Right = std::max(P1, P2);
        } else {
            Fill.Top = std::min(P1, P2);
            Fill.Bottom = std::max(P1, P2);
        }
    }
    ACanvas.ApplyBrush(*FSelection->GetBrush());
    ACanvas.FillRect(Fill);
    ACanvas.GetBrush().SetStyle(bsSolid);
}

void TQVDisplayCursorLink::DrawMeasure(bool AAlongX, TQLCanvas& ACanvas, const TRect& R)
{
    TMeasure M;
    if (!MeasureGeometry(AAlongX, R, M))
        return;
    TQVDisplayOwner* Display = GetDisplay();
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(Display);
    const TQVOptionalLabel& Label = *FMeasurementLine->GetMeasurementLabel();
    const bool Horizontal = AAlongX != M.Turned;
    ACanvas.ApplyFont(*Label.GetFont());
    if (M.V1 != M.V2 && M.Shown()) {
        const int32_t A = std::max(M.A(), M.First);
        const int32_t B = std::min(M.B(), M.Last);
        ACanvas.SetPenStyle(QVPenStyleOf(FMeasurementLine->GetStrokeDash()));
        ACanvas.GetPen().SetColor(FMeasurementLine->GetColor());
        ACanvas.GetBrush().SetStyle(bsClear);
        MeasureLine(ACanvas, Horizontal, A, B, M.C);
        ACanvas.SetPenWidth(1);
        ACanvas.SetPenStyle(psSolid);
        if (Label.GetVisible()) {
            // The true difference, centred on what is left of the line in the view.
            const std::string Value = M.Axis->GetTickText(std::fabs(M.V2 - M.V1));
            // A display that does not fill templates itself (the waterfall) gets "%V" filled here.
            const std::string Text = Owner ? Owner->GetMeasurementLabelText(Value, Label.GetText(), "%V")
                                           : QVExpandLabelTemplate(Label.GetText().empty() ? "%V" : Label.GetText(),
                                                                   [&](char ACode, std::string& AResult) {
                                                                       if (ACode == 'V')
                                                                           AResult += Value;
                                                                   });
            ACanvas.GetBrush().SetStyle(bsSolid);
            ACanvas.GetBrush().SetColor(Display->GetColor());
            MeasureText(ACanvas, Horizontal, A, B, M.C, Text);
        }
    }
    TQVHighlightInfo* I = Info();
    const TQVScopeDataView* View = TQVScopeDataView::Of(Display);
    if (!I || !View || !Owner) {
        ACanvas.SetPenWidth(1);
        ACanvas.SetPenStyle(psSolid);
        return;
    }
    const TPoint Mouse = View->GetCurrentMousePoint();
    const TAlphaColor Trail = Owner->GetTrails()->GetColor();
    // The ghost of the line under drag, at the mouse.
    if (I->FDraggedLink == this && (AAlongX ? I->FHMoveCursorLink : I->FVMoveCursorLink) && M.V1 != M.V2) {
        ACanvas.SetPenStyle(psDash);
        ACanvas.GetPen().SetColor(Trail);
        const int32_t C = Horizontal ? std::clamp(Mouse.Y, R.Top, std::max(R.Top, R.Bottom))
                                     : std::clamp(Mouse.X, R.Left, std::max(R.Left, R.Right - 1));
        MeasureLine(ACanvas, Horizontal, std::max(M.A(), M.First), std::min(M.B(), M.Last), C);
    }
    // The measurement to where a dragged end would go, beside the standing line.
    const bool EndDragged = I->FDraggedCursor && (I->FDraggedCursor == FBeginCursor || I->FDraggedCursor == FEndCursor);
    if (EndDragged && (AAlongX ? I->FVMoveCursor : I->FHMoveCursor)) {
        const double Min = AAlongX ? M.W.XMin : M.W.YMin, Max = AAlongX ? M.W.XMax : M.W.YMax;
        double Value = M.Axis->GetPositionFromMouse(M.Axis->GetIsVertical() ? Mouse.Y : Mouse.X, Min, Max, R);
        if (const auto* X = dynamic_cast<const TQVBasicScopeXAxis*>(M.Axis))
            X->AlignValue(Value);
        else if (const auto* Y = dynamic_cast<const TQVBasicScopeYAxis*>(M.Axis))
            Y->AlignValue(Value);
        const int32_t P = AAlongX ? FBeginCursor->GetVAt(Value, M.Turned, R, Min, Max, M.W.XScale, M.W.XWidth())
                                  : FBeginCursor->GetHAt(Value, M.Turned, R, Min, Max, M.W.YScale, M.W.YWidth());
        if (I->FDraggedCursor == FBeginCursor) {
            M.V1 = Value;
            M.P1 = P;
        } else {
            M.V2 = Value;
            M.P2 = P;
        }
        if (M.V1 != M.V2) {
            ACanvas.ApplyFont(*Owner->GetTrails()->GetFont());
            const std::string Text = M.Axis->GetTickText(std::fabs(M.V2 - M.V1));
            const TSize Size = ACanvas.TextExtent(Text);
            int32_t C;
            if (Horizontal)
                C = M.C + Size.cy + 1 < R.Bottom ? M.C + Size.cy + 1 : M.C - Size.cy - 1;
            else
                C = M.C + Size.cx + 5 < R.Right ? M.C + Size.cx + 5 : M.C - Size.cx - 5;
            ACanvas.GetPen().SetColor(Trail);
            ACanvas.SetPenStyle(psDash);
            ACanvas.GetBrush().SetStyle(bsClear);
            MeasureLine(ACanvas, Horizontal, M.A(), M.B(), C);
            if (FMeasurementLine->GetMeasurementLabel()->GetVisible()) {
                ACanvas.SetTextColor(Trail);
                MeasureText(ACanvas, Horizontal, M.A(), M.B(), C, Text);
            }
        }
    }
    ACanvas.SetPenWidth(1);
    ACanvas.SetPenStyle(psSolid);
}

void TQVDisplayCursorLink::DrawLinkHighlight(bool AAlongX, TQLCanvas& ACanvas, const TRect& R)
{
    TQVHighlightInfo* I = Info();
    const TQVDisplayHighlighting* H = GetDisplay()->GetHighlighting();
    if (!I || !H || (I->FHighlightedItem != this && I->FExtHighlightCursorLink != this && I->FDraggedLink != this))
        return;
    TMeasure M;
    if (!MeasureGeometry(AAlongX, R, M))
        return;
    const bool Moving = AAlongX ? I->FHMoveCursorLink : I->FVMoveCursorLink;
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetPen().SetColor(I->FDraggedLink == this && !Moving ? 0x8080 : H->GetCursorLinks()->GetColor());
    ACanvas.SetPenWidth(3);
    MeasureLine(ACanvas, AAlongX != M.Turned, std::max(M.A(), M.First), std::min(M.B(), M.Last), M.C);
    ACanvas.SetPenWidth(1);
    ACanvas.GetBrush().SetColor(GetDisplay()->GetColor());
}

// ---- Mouse ----

bool TQVDisplayCursorLink::HitTest(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect)
{
    if (!FMeasurementLine->GetVisible() || !IsVisible())
        return false;
    ACursorsInfo.FVMoveCursorLink = false;
    ACursorsInfo.FHMoveCursorLink = false;
    for (const bool AlongX : {false, true}) {
        TMeasure M;
        if (!MeasureGeometry(AlongX, DispRect, M) || !M.Shown())
            continue;
        const bool Horizontal = AlongX != M.Turned;
        const int32_t Along = Horizontal ? X : Y;
        const int32_t Across = Horizontal ? Y : X;
        const bool Hit = M.A() < Along && Along < M.B() && M.C - 3 < Across && Across < M.C + 3;
        (AlongX ? ACursorsInfo.FHMoveCursorLink : ACursorsInfo.FVMoveCursorLink) = Hit;
    }
    return ACursorsInfo.FVMoveCursorLink || ACursorsInfo.FHMoveCursorLink;
}

void TQVDisplayCursorLink::MoveTo(TQVHighlightInfo& ACursorsInfo, int32_t X, int32_t Y, const TRect& DispRect)
{
    const bool Turned = GetDisplay() && GetDisplay()->GetIsVertical();
    const TQVRealPoint Old{FMeasurementLine->GetX(), FMeasurementLine->GetY()};
    double NX = Old.X, NY = Old.Y;
    // A line let go on its own pixel stays where it is.
    TMeasure M;
    if (ACursorsInfo.FVMoveCursorLink && MeasureGeometry(false, DispRect, M) && M.C == (Turned ? Y : X))
        ACursorsInfo.FVMoveCursorLink = false;
    if (ACursorsInfo.FHMoveCursorLink && MeasureGeometry(true, DispRect, M) && M.C == (Turned ? X : Y))
        ACursorsInfo.FHMoveCursorLink = false;
    if (ACursorsInfo.FVMoveCursorLink) {
        const double Span = double(Turned ? DispRect.Bottom - DispRect.Top : DispRect.Right - DispRect.Left) - 1.0;
        const int32_t P = Turned ? Y - DispRect.Top : X - DispRect.Left;
        NX = Span == 0.0 ? Old.X : P * 200.0 / Span - 100.0;
    }
    if (ACursorsInfo.FHMoveCursorLink) {
        const double Span = double(Turned ? DispRect.Right - DispRect.Left : DispRect.Bottom - DispRect.Top) - 1.0;
        const int32_t P = Turned ? X - DispRect.Left : Y - DispRect.Top;
        NY = Span == 0.0 ? Old.Y : 100.0 - P * 200.0 / Span;
    }
    if (NX == Old.X && NY == Old.Y)
        return;
    FMeasurementLine->SetX(NX);
    FMeasurementLine->SetY(NY);
    if (auto* Source = dynamic_cast<TQVElementMovedSource*>(GetCollection()))
        if (Source->GetOnMoved())
            Source->GetOnMoved()(GetDisplay(), GetIndex(), Old,
                                 TQVRealPoint{FMeasurementLine->GetX(), FMeasurementLine->GetY()});
}

const TQLClassInfo& TQVDisplayCursorLink::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayCursorLink>(
                                         "TQVDisplayCursorLink", &TQVDisplaySelectableCollectionItem::StaticClassInfo())
                                         .Property("BeginCursorIndex", &TQVDisplayCursorLink::GetBeginCursorIndex,
                                                   &TQVDisplayCursorLink::SetBeginCursorIndex, -1)
                                         .Property("EndCursorIndex", &TQVDisplayCursorLink::GetEndCursorIndex,
                                                   &TQVDisplayCursorLink::SetEndCursorIndex, -1)
                                         .Object("MeasurementLine", &TQVDisplayCursorLink::GetMeasurementLine)
                                         .Property("MouseCursor", &TQVDisplayCursorLink::GetMouseCursor,
                                                   &TQVDisplayCursorLink::SetMouseCursor, crHandPoint)
                                         .Build();
    return Info;
}

} // namespace qv
