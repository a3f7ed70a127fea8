#include "qv/elements/QVOptionalAxesDisplayCollectionItem.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVLegacyAxisData.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

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

void IQVOptionalAxesDisplayCollectionItem::SetXAxisIndex(int32_t AValue)
{
    CheckAxisIndex("XAxisIndex", AValue);
    FItem.GetLock()->GetBasicLock()->Setter(FXAxisIndex, AValue, [this] { AxisIndexChanged(); });
}

void IQVOptionalAxesDisplayCollectionItem::SetYAxisIndex(int32_t AValue)
{
    CheckAxisIndex("YAxisIndex", AValue);
    FItem.GetLock()->GetBasicLock()->Setter(FYAxisIndex, AValue, [this] { AxisIndexChanged(); });
}

std::string IQVOptionalAxesDisplayCollectionItem::GetAxisIndex_() const
{
    return std::to_string(FYAxisIndex) + " " + std::to_string(FXAxisIndex);
}

void IQVOptionalAxesDisplayCollectionItem::ReadAxisIndex(const std::string& AText)
{
    const std::vector<double> Values = QVParseRealList(AText, "AxisIndex_");
    const bool Whole = std::all_of(Values.begin(), Values.end(), [](double AValue) {
        return AValue >= 0.0 && AValue <= double(std::numeric_limits<int32_t>::max()) && std::floor(AValue) == AValue;
    });
    if (Values.empty() || Values.size() > 2 || !Whole)
        throw std::invalid_argument("AxisIndex_: \"" + AText +
                                    "\" is not a Y axis index and an X axis index (whole numbers from 0)");
    auto Guard = FItem.GetLock()->AcquireWrite();
    SetYAxisIndex(int32_t(Values[0]));
    if (Values.size() == 2)
        SetXAxisIndex(int32_t(Values[1]));
}

TQVDisplayAxis* IQVOptionalAxesDisplayCollectionItem::GetXAxis() const
{
    const TQVDisplayOwner* Display = FItem.GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetXAxisByIndex(FXAxisIndex);
    return Axis ? Axis : Display->GetXAxis();
}

TQVDisplayAxis* IQVOptionalAxesDisplayCollectionItem::GetYAxis() const
{
    const TQVDisplayOwner* Display = FItem.GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetYAxisByIndex(FYAxisIndex);
    return Axis ? Axis : Display->GetYAxis();
}

bool IQVOptionalAxesDisplayCollectionItem::GetAxesWindow(TQVElementAxesWindow& AWindow, bool AWidenEmptyX) const
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

int32_t IQVOptionalAxesDisplayCollectionItem::GetVAt(double AValue, bool ATurned, const TRect& ARect, double AMin,
                                                     double /*AMax*/, double AScale, double AWidth) const
{
    const TQVDisplayAxis* Axis = GetXAxis();
    const int32_t P0 = ATurned ? ARect.Top : ARect.Left;
    const int32_t P1 = ATurned ? ARect.Bottom : ARect.Right;
    if (Axis && Axis->GetScaleMode() != smLinear)
        return P0 + Round((QVLog10a(AValue) - QVLog10a(AMin)) * AScale);
    return P0 + Round((double(P1) - P0 - 1) * (AValue - AMin) / AWidth);
}

int32_t IQVOptionalAxesDisplayCollectionItem::GetHAt(double AValue, bool ATurned, const TRect& ARect, double AMin,
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
            .Property("XAxisIndex", &IQVOptionalAxesDisplayCollectionItem::GetXAxisIndex,
                      &IQVOptionalAxesDisplayCollectionItem::SetXAxisIndex, 0)
            .Property("YAxisIndex", &IQVOptionalAxesDisplayCollectionItem::GetYAxisIndex,
                      &IQVOptionalAxesDisplayCollectionItem::SetYAxisIndex, 0)
            .Build();
    return Info;
}

} // namespace qv
