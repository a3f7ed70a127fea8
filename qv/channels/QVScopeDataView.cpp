#include "qv/channels/QVScopeDataView.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScopeDataView::TQVScopeDataView(TQVDataDisplay* ADisplay)
    : TQVCustomColorDisplayView(ADisplay),
      FBorder(std::make_unique<TQVDisplayGridLineSettings>(this, GetLock(), [this] { InvalidateView(); },
                                                           0xFF008000, true))
{
}

TQVScopeDataView::~TQVScopeDataView() = default;

void TQVScopeDataView::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool /*AVertical*/,
                            bool /*APrinting*/)
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
    const TQVDisplayGridLineSettings* Line = GridLineFor(AAxis, AZero, AMinor);
    if (!Line)
        return;
    const TRect Rect = GetDrawRect();
    ACanvas.ApplyPen(*Line->GetPen());
    ACanvas.MoveTo(Rect.Left, APosition);
    ACanvas.LineTo(Rect.Right - 1, APosition);
}

void TQVScopeDataView::DrawLeftLines(TQVTrackingOptionalAxis* AAxis, TQLCanvas& ACanvas, bool AZero,
                                     int32_t /*AHalfLength*/, bool AMinor, double /*AValue*/, int32_t APosition)
{
    const TQVDisplayGridLineSettings* Line = GridLineFor(AAxis, AZero, AMinor);
    if (!Line)
        return;
    const TRect Rect = GetDrawRect();
    ACanvas.ApplyPen(*Line->GetPen());
    ACanvas.SetPenStyle(psSolid);
    ACanvas.MoveTo(APosition, Rect.Top);
    ACanvas.LineTo(APosition, Rect.Bottom - 1);
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
