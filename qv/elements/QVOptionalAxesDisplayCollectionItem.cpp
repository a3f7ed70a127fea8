#include "qv/elements/QVOptionalAxesDisplayCollectionItem.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"

#include <stdexcept>
#include <string>

namespace qv {

namespace {
void CheckAxisIndex(const char* AName, int32_t AValue)
{
    if (AValue < 0)
        throw std::out_of_range(std::string("TQVOptionalAxesDisplayCollectionItem.") + AName + ": axis index " +
                                std::to_string(AValue) + " is negative");
}

int32_t Round(double AValue)
{
    return QVClampRound(AValue, -int32_t(QVPixelClipBound), int32_t(QVPixelClipBound));
}

double NonZero(double AWidth)
{
    return AWidth == 0.0 ? 0.00001 : AWidth;
}
} // namespace

double TQVElementAxesWindow::XWidth() const
{
    return NonZero(XLog ? QVLog10a(XMax) - QVLog10a(XMin) : XMax - XMin);
}

double TQVElementAxesWindow::YWidth() const
{
    return NonZero(YLog ? QVLog10a(YMax) - QVLog10a(YMin) : YMax - YMin);
}

void TQVOptionalAxesDisplayCollectionItem::SetXAxisIndex(int32_t AValue)
{
    CheckAxisIndex("XAxisIndex", AValue);
    Set(FXAxisIndex, AValue);
}

void TQVOptionalAxesDisplayCollectionItem::SetYAxisIndex(int32_t AValue)
{
    CheckAxisIndex("YAxisIndex", AValue);
    Set(FYAxisIndex, AValue);
}

TQVDisplayAxis* TQVOptionalAxesDisplayCollectionItem::GetXAxis() const
{
    const TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetXAxisByIndex(FXAxisIndex);
    return Axis ? Axis : Display->GetXAxis();
}

TQVDisplayAxis* TQVOptionalAxesDisplayCollectionItem::GetYAxis() const
{
    const TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetYAxisByIndex(FYAxisIndex);
    return Axis ? Axis : Display->GetYAxis();
}

bool TQVOptionalAxesDisplayCollectionItem::GetAxesWindow(TQVElementAxesWindow& AWindow, bool AWidenEmptyX) const
{
    AWindow.XAxis = GetXAxis();
    AWindow.YAxis = GetYAxis();
    if (!AWindow.XAxis || !AWindow.YAxis)
        return false;
    AWindow.XMin = AWindow.XAxis->GetScaleTick().GetZoomed().GetMin().GetValue();
    AWindow.XMax = AWindow.XAxis->GetScaleTick().GetZoomed().GetMax().GetValue();
    if (AWidenEmptyX && AWindow.XMin == AWindow.XMax) {
        AWindow.XMin -= 1.0;
        AWindow.XMax += 1.0;
    }
    // Read from the axis, not from its cache.
    AWindow.YMax = AWindow.YAxis->GetScaleZoomedTickMax();
    AWindow.YMin = AWindow.YAxis->GetScaleZoomedTickMin();
    double Offset = 0.0;
    AWindow.XAxis->GetScaleInfo(Offset, AWindow.XScale, AWindow.XMin, AWindow.XMax);
    AWindow.XScale = 0.0 - AWindow.XScale;
    AWindow.YAxis->GetScaleInfo(Offset, AWindow.YScale, AWindow.YMin, AWindow.YMax);
    AWindow.XLog = AWindow.XAxis->GetScaleMode() != smLinear;
    AWindow.YLog = AWindow.YAxis->GetScaleMode() != smLinear;
    return true;
}

int32_t TQVOptionalAxesDisplayCollectionItem::GetVAt(double AValue, bool ATurned, const TRect& ARect, double AMin,
                                                     double /*AMax*/, double AScale, double AWidth) const
{
    const TQVDisplayAxis* Axis = GetXAxis();
    const int32_t P0 = ATurned ? ARect.Top : ARect.Left;
    const int32_t P1 = ATurned ? ARect.Bottom : ARect.Right;
    if (Axis && Axis->GetScaleMode() != smLinear)
        return P0 + Round((QVLog10a(AValue) - QVLog10a(AMin)) * AScale);
    return P0 + Round((double(P1) - P0 - 1) * (AValue - AMin) / AWidth);
}

int32_t TQVOptionalAxesDisplayCollectionItem::GetHAt(double AValue, bool ATurned, const TRect& ARect, double AMin,
                                                     double AMax, double AScale, double AWidth) const
{
    const TQVDisplayAxis* Axis = GetYAxis();
    const int32_t P0 = ATurned ? ARect.Left : ARect.Top;
    const int32_t P1 = ATurned ? ARect.Right : ARect.Bottom;
    const bool Reversed = Axis && Axis->GetIsReversedDirect();
    if (Axis && Axis->GetScaleMode() != smLinear) {
        if (!Reversed)
            return P0 + Round((QVLog10a(AMax) - QVLog10a(AValue)) * AScale);
        return P0 + Round((QVLog10a(AValue) - QVLog10a(AMin)) * (0.0 - AScale));
    }
    if (!Reversed)
        return P0 + Round((double(P1) - P0) * (AMax - AValue) / AWidth);
    return P0 + Round((double(P1) - P0) * (AValue - AMin) / AWidth);
}

const TQLClassInfo& TQVOptionalAxesDisplayCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVOptionalAxesDisplayCollectionItem>("TQVOptionalAxesDisplayCollectionItem",
                                                              &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Property("XAxisIndex", &TQVOptionalAxesDisplayCollectionItem::GetXAxisIndex,
                      &TQVOptionalAxesDisplayCollectionItem::SetXAxisIndex, 0)
            .Property("YAxisIndex", &TQVOptionalAxesDisplayCollectionItem::GetYAxisIndex,
                      &TQVOptionalAxesDisplayCollectionItem::SetYAxisIndex, 0)
            .Build();
    return Info;
}

} // namespace qv
