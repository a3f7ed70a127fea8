#include "qv/channels/QVScopeDataView.h"

#include "qv/axes/QVAxisTypes.h"
#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVDisplayAxisList.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace qv {

TQVScopeDataView::TQVScopeDataView(TQVDisplayOwner* ADisplay)
    : TQVCustomColorDisplayView(ADisplay), FBorder(std::make_unique<TQVDisplayGridLineSettings>(
                                               this, GetLock(), [this] { InvalidateView(); }, 0xFF008000, true))
{}

TQVScopeDataView::~TQVScopeDataView() = default;

void TQVScopeDataView::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool /*AVertical*/, bool /*APrinting*/)
{
    // The foreground belongs to what is dragged over the plot; the view itself has nothing
    // to add there.
    if (ADrawPart == ddpForeground)
        return;
    const TRect Rect = GetDrawRect();
    ACanvas.SetPenStyle(psSolid);
    if (!GetBackground()->GetUseControlColor()) {
        ACanvas.GetBrush().SetColor(GetBackground()->GetColor());
        ACanvas.FillRect(Rect);
    } else {
        ACanvas.GetBrush().SetColor(GetDisplay()->GetColor());
    }
    ACanvas.GetBrush().SetStyle(bsClear);
    if (FBorder->GetVisible()) {
        ACanvas.ApplyPen(*FBorder->GetPen());
        ACanvas.RectangleRect(Rect);
    }
    ACanvas.GetBrush().SetStyle(bsSolid);
    const TQVDisplayAxisList& YAxes = GetDisplay()->GetYAxes();
    if (YAxes.GetCount() > 0)
        ACanvas.ApplyFont(*YAxes.GetItem(0)->GetFont());
    ACanvas.GetBrush().SetStyle(bsClear);

    using namespace std::placeholders;
    const TQVAxisTickProc Left = std::bind(&TQVScopeDataView::DrawLeftLines, this, _1, _2, _3, _4, _5, _6, _7);
    const TQVAxisTickProc Up = std::bind(&TQVScopeDataView::DrawUpLines, this, _1, _2, _3, _4, _5, _6, _7);
    const TQVDisplayAxisList& Axes = GetDisplay()->GetAxes();
    for (int32_t i = Axes.GetCount() - 1; i >= 0; --i)
        Axes.GetItem(i)->DrawTickLines(Left, Up, true, ACanvas, true, false);
    ACanvas.GetBrush().SetStyle(bsSolid);
}

const TQVDisplayGridLineSettings* TQVScopeDataView::GridLineFor(TQVTrackingOptionalAxis* AAxis, bool AZero,
                                                                bool AMinor) const
{
    if (AMinor || !AAxis)
        return nullptr;
    const TQVDisplayGridDirectionalLinesSettings* Options = AAxis->GetViewGridOptions();
    if (!Options)
        return nullptr;
    const TQVDisplayGridLineSettings& Line = Options->GetLineAt(AZero);
    return Line.GetVisible() ? &Line : nullptr;
}

void TQVScopeDataView::DrawUpLines(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero,
                                   int32_t /*AHalfLength*/, bool AMinor, double /*AValue*/, int32_t APosition)
{
    DrawGridLine(AAxis, ACanvas, AZero, AMinor, APosition, false);
}

void TQVScopeDataView::DrawLeftLines(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero,
                                     int32_t /*AHalfLength*/, bool AMinor, double /*AValue*/, int32_t APosition)
{
    DrawGridLine(AAxis, ACanvas, AZero, AMinor, APosition, true);
}

void TQVScopeDataView::DrawGridLine(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero, bool AMinor,
                                    int32_t APosition, bool AVerticalLine)
{
    const TQVDisplayGridLineSettings* Line = GridLineFor(AAxis, AZero, AMinor);
    if (!Line)
        return;
    const TRect Rect = GetDrawRect();
    ACanvas.ApplyPen(*Line->GetPen());
    if (AVerticalLine) {
        // Lines along the display's height are always drawn solid.
        ACanvas.SetPenStyle(psSolid);
        ACanvas.MoveTo(APosition, Rect.Top);
        ACanvas.LineTo(APosition, Rect.Bottom - 1);
    } else {
        ACanvas.MoveTo(Rect.Left, APosition);
        ACanvas.LineTo(Rect.Right - 1, APosition);
    }
}

// ---- Mouse ----

bool TQVScopeDataView::InMouseZooming() const
{
    return FLeftMouseDown && GetDisplay()->GetZooming()->GetMouseZoom();
}

void TQVScopeDataView::DrawMouseSelction(TQLCanvas& ACanvas)
{
    const TQVDisplayZoom& Zooming = *GetDisplay()->GetZooming();
    if (GetDisplay()->GetNavigateMode() != nmZoom || !FLeftMouseDown || !Zooming.GetMouseZoom())
        return;
    ACanvas.GetPen().SetColor(Zooming.GetSelectionColor());
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetBrush().SetStyle(bsClear);
    const TPoint A = FLeftMouseDownPoint, B = FCurrentMousePoint;
    const TRect Rect = GetDrawRect();
    switch (Zooming.GetMode()) {
    case zmBoth:
        ACanvas.RectangleRect(
            TRect{std::min(A.X, B.X), std::min(A.Y, B.Y), std::max(A.X, B.X) + 1, std::max(A.Y, B.Y) + 1});
        break;
    case zmXAxis:
        for (int32_t X : {A.X, B.X}) {
            ACanvas.MoveTo(X, Rect.Top);
            ACanvas.LineTo(X, Rect.Bottom);
        }
        break;
    case zmYAxis:
        for (int32_t Y : {A.Y, B.Y}) {
            ACanvas.MoveTo(Rect.Left, Y);
            ACanvas.LineTo(Rect.Right, Y);
        }
        break;
    }
}

namespace {
// The value whose signed logarithm is (L(max) - L(min)) * p / W.
double LogPosition(double ALogSpan, double AP, double AW)
{
    return QVExp10a(ALogSpan * AP / AW);
}
} // namespace

void TQVScopeDataView::MouseZoom(int32_t AX, int32_t AY)
{
    TQVDisplayOwner* Display = GetDisplay();
    const TQVDisplayZoom& Zooming = *Display->GetZooming();
    if (!Zooming.GetMouseZoom())
        return;
    const TQVRealRanges Old = Display->GetZoomRanges();
    if (std::abs(AX - FLeftMouseDownPoint.X) < 5 && std::abs(AY - FLeftMouseDownPoint.Y) < 5) {
        Display->InvalidateRecalc();
        return;
    }
    TQVDisplayAxis* XAxis = Display->GetXAxis();
    TQVDisplayAxis* YAxis = Display->GetYAxis();
    if (!XAxis || !YAxis)
        return;
    // The selection in the axes' own directions: X along the display, Y across it.
    const bool Turned = Display->GetIsVertical();
    const TRect R = GetDrawRect();
    auto Along = [&](const TPoint& P) { return Turned ? P.Y : P.X; };
    auto Across = [&](const TPoint& P) { return Turned ? P.X : P.Y; };
    const TPoint Up{AX, AY};
    const int32_t SelLeft = std::min(Along(FLeftMouseDownPoint), Along(Up));
    const int32_t SelRight = std::max(Along(FLeftMouseDownPoint), Along(Up));
    const int32_t SelTop = std::min(Across(FLeftMouseDownPoint), Across(Up));
    const int32_t SelBottom = std::max(Across(FLeftMouseDownPoint), Across(Up));
    const int32_t Left = Turned ? R.Top : R.Left, Right = Turned ? R.Bottom : R.Right;
    const int32_t Top = Turned ? R.Left : R.Top, Bottom = Turned ? R.Right : R.Bottom;

    double XMin = XAxis->GetScaleTick().GetZoomed().GetMin().GetValue();
    double XMax = XAxis->GetScaleTick().GetZoomed().GetMax().GetValue();
    if (Zooming.GetMode() != zmYAxis) {
        const double W = Right - Left;
        if (XAxis->GetScaleMode() == smLinear) {
            const double D = W == 0 ? 0.0 : (XMax - XMin) / W;
            const double NewMin = XMin + D * (SelLeft - Left);
            XMax = XMax + D * (SelRight - Right + 1);
            XMin = NewMin;
        } else {
            if (W == 0)
                return;
            const double Span = QVLog10a(XMax) - QVLog10a(XMin);
            const double E = Span == 0.0 ? 0.0 : std::nearbyint(QVLog10a(XMax) * W / Span);
            // The two ends come out in this assignment, as the logarithmic selection has it.
            const double NewMax = LogPosition(Span, W - E + SelLeft - Left, W);
            const double NewMin = LogPosition(Span, SelRight - Left + 1, W);
            XMax = NewMax;
            XMin = NewMin;
        }
    }
    double YMin = YAxis->GetScaleTick().GetZoomed().GetMin().GetValue();
    double YMax = YAxis->GetScaleTick().GetZoomed().GetMax().GetValue();
    if (Zooming.GetMode() != zmXAxis) {
        const double H = Bottom - Top;
        const bool Reversed = YAxis->GetIsReversedDirect();
        if (YAxis->GetScaleMode() == smLinear) {
            const double D = H == 0 ? 0.0 : (YMax - YMin) / H;
            if (!Reversed) {
                YMax -= D * (SelTop - Top);
                YMin -= D * (SelBottom - Top - H + 1);
            } else {
                YMax -= D * (Bottom - SelTop);
                YMin -= D * (Top - SelBottom);
            }
        } else {
            if (H == 0)
                return;
            const double Span = QVLog10a(YMax) - QVLog10a(YMin);
            const double E = Span == 0.0 ? 0.0 : std::nearbyint(QVLog10a(YMax) * H / Span);
            const double PMax = Reversed ? E - (Bottom - SelTop) : E - (SelTop - Top);
            const double PMin = Reversed ? Bottom - E - SelBottom + 1 : -(SelBottom - (H - E) - Top + 1);
            YMax = LogPosition(Span, PMax, H);
            YMin = LogPosition(Span, PMin, H);
        }
    }
    Display->ZoomTo(XMin, XMax, YMin, YMax, true);
    if (Zooming.GetHoldOnZoom())
        Display->SetHold(true);
    Display->ZoomChanged(Old, zoZoom);
}

const TQLClassInfo& TQVScopeDataView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeDataView>("TQVScopeDataView", &TQVCustomColorDisplayView::StaticClassInfo())
            .Object("Border", &TQVScopeDataView::GetBorder)
            .Build();
    return Info;
}

} // namespace qv
