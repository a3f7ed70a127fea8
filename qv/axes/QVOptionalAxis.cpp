#include "qv/axes/QVOptionalAxis.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <cstdlib>

namespace qv {

namespace {

// log2(10), as the step construction uses it.
constexpr double CLog2Of10 = 3.32192809488736;
// Decimal logarithms of the mantissas 1, 2, 2.5 and 5.
constexpr double CMantissaLogs[4] = {0.0, 0.301029995663981, 0.397940008672038, 0.698970004336019};
// The candidate search moves up one mantissa at a time; no finite double is more than about
// 650 decades away from another, so this many candidates cover every range.
constexpr int32_t CMaxStepCandidates = 4 * 700;
// Doubling a finite step overflows after at most about 2100 rounds.
constexpr int32_t CMaxDoublings = 2100;

// mantissa * 10^ADecade, built from powers of two with the whole power in single precision,
// so that every axis arrives at the very same step for the same inputs.
double StepOf(int32_t ADecade, int32_t AIndex)
{
    const double M = (ADecade + CMantissaLogs[AIndex]) * CLog2Of10;
    const double R = std::nearbyint(M);
    const float WholePower = std::ldexp(1.0f, static_cast<int>(R));
    return std::exp2(M - R) * static_cast<double>(WholePower);
}

} // namespace

TQLCanvas* TQVOptionalAxis::GetMeasureCanvas(const TQVDisplayFont* AFont) const
{
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (Canvas && AFont)
        Canvas->ApplyFont(*AFont);
    return Canvas;
}

TRect TQVOptionalAxis::GetDataViewRect() const
{
    const TQVDisplayComponent* View = GetDisplay()->GetDataView();
    return View ? View->GetDrawRect() : TRect{};
}

double TQVOptionalAxis::ComputeValueStep()
{
    if (GetWidth() == 0)
        return 1.0;
    FOldRangeWidth = GetRangeWidth(false);
    FOldSizeWidth = GetDimentionLength();
    FOldScaleMode = GetIntScaleMode();
    if (FOldRangeWidth == 0.0)
        return 1.0;
    const int32_t Size = FOldSizeWidth == 0 ? 1 : FOldSizeWidth;

    // The value width of the smallest permitted spacing; on a logarithmic axis in decades.
    double Raw = FOldRangeWidth * GetMinScaleLineDistance() / Size;
    if (FOldScaleMode != smLinear)
        Raw = QVLog10a(Raw);
    const double Decimal = std::log10(Raw == 0.0 ? 0.00001 : std::fabs(Raw));
    if (!std::isfinite(Decimal))
        return 1.0; // an unbounded range has no step to offer

    // Round the raw step up to the next mantissa of 1, 2, 2.5, 5; a fraction exactly at a
    // mantissa's logarithm stays on it.
    const double Floor = std::floor(Decimal);
    int32_t Decade = static_cast<int32_t>(Floor);
    const double Fraction = Decimal - Floor;
    int32_t Index = 0;
    if (Fraction > CMantissaLogs[3]) {
        ++Decade;
        Index = 0;
    } else if (Fraction > CMantissaLogs[2])
        Index = 3;
    else if (Fraction > CMantissaLogs[1])
        Index = 2;
    else if (Fraction > 0.0)
        Index = 1;

    GetMeasureCanvas(GetFont());
    const int64_t Need = static_cast<int64_t>(GetMaxTextLength()) + 2;
    if (FOldScaleMode == smLogDecascale)
        return 1.0;

    // Then the first candidate whose ticks leave room for a text plus two pixels.
    const bool Logarithmic = FOldScaleMode != smLinear;
    const double Goal = Logarithmic ? QLRoundToInt(QVLog10a(static_cast<double>(Need))) : static_cast<double>(Need);
    double Width = GetRangeWidth(Logarithmic);
    if (Width == 0.0)
        Width = 0.000001;
    for (int32_t Candidate = 0; Candidate < CMaxStepCandidates; ++Candidate) {
        double Step = StepOf(Decade, Index);
        if (Raw < 0.0)
            Step = -Step;
        if (Step / Width * Size >= Goal)
            return Step;
        if (++Index > 3) {
            Index = 0;
            ++Decade;
        }
    }
    return 1.0;
}

double TQVOptionalAxis::ValidateStep(double AStep, TQVMajorTicksMode AMode, bool ADecascaleExempt)
{
    const TQVScaleMode Mode = GetIntScaleMode();
    if (ADecascaleExempt && Mode == smLogDecascale)
        return AStep;
    const double Range = GetRangeWidth(Mode != smLinear);
    const int32_t Size = GetDimentionLength();
    GetMeasureCanvas(GetFont());
    const double Limit = AMode == mtmOverride ? 1.0 : static_cast<double>(GetMaxTextLength()) + 2.0;
    // Doubling cannot help a zero step or an axis without pixels.
    if (AStep == 0.0 || Size <= 0)
        return AStep;

    double Factor = 1.0;
    double Result = AStep;
    for (int32_t Round = 0; Round < CMaxDoublings; ++Round) {
        const double Pixels = Result * Size / Range;
        // A zero range makes any step far enough apart.
        if (!std::isfinite(Pixels) || std::fabs(std::trunc(Pixels)) > Limit)
            break;
        Factor *= 2.0;
        Result = AStep * Factor;
    }
    return Result;
}

bool TQVOptionalAxis::IsValidStep() const
{
    return GetIntScaleMode() == FOldScaleMode && GetRangeWidth(false) == FOldRangeWidth &&
           GetDimentionLength() == FOldSizeWidth && FValidStep;
}

const TQLClassInfo& TQVOptionalAxis::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVOptionalAxis", &TQVOptionalView::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
