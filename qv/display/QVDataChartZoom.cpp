// TQVDataChart: the pan limiter over the main and the additional axes.
#include "qv/display/QVDataChart.h"

namespace qv {

namespace {

// AOffset is in printed units of the main axis. An additional axis is asked about the same
// share of its own window; what it allows, carried back, caps the offset. An axis without
// width has no share to give and is passed over.
template <class TMainAxis>
void AdjustDirection(const TMainAxis* AMain, double& AOffset)
{
    if (!AMain)
        return;
    AMain->AdjustOffset(AOffset);
    const double MainRange = AMain->GetScaleZoomedTickRange();
    for (const auto* Item : *AMain->GetAdditionalAxes()) {
        const auto* Axis = Item->GetAxis();
        const double Range = Axis->GetScaleZoomedTickRange();
        if (MainRange == 0.0 || Range == 0.0)
            continue;
        double Scaled = AOffset * Range / MainRange;
        Axis->AdjustOffset(Scaled);
        const double Back = Scaled * MainRange / Range;
        if (AOffset > Back)
            AOffset = Back;
    }
}

} // namespace

void TQVDataChart::AdjustOffsets(double& AX, double& AY) const
{
    AdjustDirection(FYAxis.get(), AY);
    AdjustDirection(FXAxis.get(), AX);
}

} // namespace qv
