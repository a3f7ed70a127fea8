#include "qv/waterfall/QVLevelColors.h"

#include "qv/foundation/QVLog10a.h"

#include <array>
#include <cmath>

namespace qv {

namespace {
constexpr TAlphaColor CAlpha = 0xFF000000;

// Rounds to nearest, ties to even; NaN gives 0.
int64_t RoundEven(double AValue)
{
    if (std::isnan(AValue))
        return 0;
    return static_cast<int64_t>(std::nearbyint(std::fmax(std::fmin(AValue, 9.0e15), -9.0e15)));
}

double Ratio(double AValue, double MaxValue)
{
    return std::isnan(AValue) ? 0.0 : AValue / MaxValue;
}

TAlphaColor Rgb(uint32_t ARed, uint32_t AGreen, uint32_t ABlue)
{
    return CAlpha | ((ARed & 0xFF) << 16) | ((AGreen & 0xFF) << 8) | (ABlue & 0xFF);
}
// Round to nearest, ties to even, for |AValue| below 2^51, without a library call: adding
// and taking away 1.5 * 2^52 leaves the value rounded in the current (nearest-even) mode.
inline double FastRound(double AValue)
{
    constexpr double CMagic = 6755399441055744.0;
    return (AValue + CMagic) - CMagic;
}
} // namespace

TAlphaColor QVLevelBuiltInColor(int32_t AIndex)
{
    const uint32_t B = static_cast<uint32_t>(AIndex) & 0xFF;
    if (AIndex < 256)
        return Rgb(0, 0, B);
    if (AIndex < 512)
        return Rgb(0, B, 255);
    if (AIndex < 768)
        return Rgb(0, 255, 255 - B);
    if (AIndex < 1024)
        return Rgb(B, 255, 0);
    if (AIndex < 1280)
        return Rgb(255, 255 - B, 0);
    return Rgb(255, 0, B);
}

TAlphaColor TQVLevelColorMap::Gray(double AValue, double MaxValue) const
{
    const uint32_t G = static_cast<uint32_t>(RoundEven(Ratio(AValue, MaxValue) * 255.0)) & 0xFF;
    return Rgb(G, G, G);
}

TAlphaColor TQVLevelColorMap::BuiltIn(double AValue, double MaxValue) const
{
    int64_t I = RoundEven(Ratio(AValue, MaxValue) * 1408.0);
    if (I > 1408)
        I = 1408;
    if (I < 0)
        I = 0;
    return QVLevelBuiltInColor(static_cast<int32_t>(I));
}

TAlphaColor TQVLevelColorMap::Fade(double AValue, double MaxValue) const
{
    const double T = Ratio(AValue, MaxValue);
    const TAlphaColor C = FColors.empty() ? 0 : FColors.front();
    const auto Part = [T](uint32_t AByte) { return static_cast<uint32_t>(RoundEven(T * AByte)); };
    return Rgb(Part((C >> 16) & 0xFF), Part((C >> 8) & 0xFF), Part(C & 0xFF));
}

TAlphaColor TQVLevelColorMap::Gradient(double AValue, double MaxValue) const
{
    if (std::isnan(AValue))
        AValue = 0.0;
    const int32_t N = static_cast<int32_t>(FColors.size()) - 1;
    const double T = AValue / MaxValue;
    int64_t K = T == 1.0 ? N - 1 : static_cast<int64_t>(std::trunc(T * N));
    // Values outside 0..MaxValue stay on the first or last pair.
    if (K < 0 || std::isnan(T))
        K = 0;
    if (K > N - 1)
        K = N - 1;
    const double U = (AValue - MaxValue * static_cast<double>(K) / N) / (MaxValue / N);
    const TAlphaColor C0 = FColors[static_cast<size_t>(K)];
    const TAlphaColor C1 = FColors[static_cast<size_t>(K + 1)];
    TAlphaColor Result = CAlpha;
    for (int Shift = 0; Shift <= 16; Shift += 8) {
        const int32_t A = static_cast<int32_t>((C0 >> Shift) & 0xFF);
        const int32_t B = static_cast<int32_t>((C1 >> Shift) & 0xFF);
        const int64_t V = A + RoundEven(U * (B - A));
        Result |= (static_cast<uint32_t>(V) & 0xFF) << Shift;
    }
    return Result;
}

void TQVLevelColorMap::ColourRun(const double* AValues, int32_t ACount, uint32_t* AOut, double ALow, double AHigh,
                                 double ARange, bool ALogarithmic) const
{
    // The value clamped into the levels, as the distance from the low end.
    const auto Clamped = [ALow, AHigh, ALogarithmic](double AValue) {
        if (ALogarithmic)
            AValue = QVLog10a(AValue);
        if (std::isnan(AValue) || ALow > AValue)
            AValue = ALow;
        else if (AValue > AHigh)
            AValue = AHigh;
        return AValue - ALow;
    };
    // A ratio outside 0..1 (levels given upside down) goes the slow way, where every rule
    // keeps it in hand.
    const auto Table = [&](const auto& ATable, double AScale) {
        const int32_t Last = static_cast<int32_t>(ATable.size()) - 1;
        for (int32_t J = 0; J < ACount; ++J) {
            const double V = Clamped(AValues[J]);
            const double T = FastRound(V / ARange * AScale);
            AOut[J] = T >= 0.0 && T <= Last ? ATable[static_cast<size_t>(T)] : ValueToColorGBR(V, ARange);
        }
    };
    if (FGrayScale) {
        static const std::array<TAlphaColor, 256> Grays = [] {
            std::array<TAlphaColor, 256> A{};
            for (uint32_t G = 0; G < 256; ++G)
                A[G] = Rgb(G, G, G);
            return A;
        }();
        Table(Grays, 255.0);
    } else if (FColors.size() > 1) {
        for (int32_t J = 0; J < ACount; ++J)
            AOut[J] = Gradient(Clamped(AValues[J]), ARange);
    } else {
        static const std::array<TAlphaColor, 1409> BuiltIns = [] {
            std::array<TAlphaColor, 1409> A{};
            for (int32_t I = 0; I <= 1408; ++I)
                A[static_cast<size_t>(I)] = QVLevelBuiltInColor(I);
            return A;
        }();
        Table(BuiltIns, 1408.0);
    }
}

TAlphaColor TQVLevelColorMap::ValueToColorGBR(double AValue, double MaxValue) const
{
    if (FGrayScale)
        return Gray(AValue, MaxValue);
    if (FColors.size() > 1)
        return Gradient(AValue, MaxValue);
    return BuiltIn(AValue, MaxValue);
}

TAlphaColor TQVLevelColorMap::ValueToColor(double AValue, double MaxValue) const
{
    if (FGrayScale)
        return Gray(AValue, MaxValue);
    if (FColors.size() > 1)
        return Gradient(AValue, MaxValue);
    if (FColors.size() == 1)
        return Fade(AValue, MaxValue);
    // No colour: the built-in scale, at its middle when the range has no length.
    return MaxValue == 0.0 ? QVLevelBuiltInColor(704) : BuiltIn(AValue, MaxValue);
}

} // namespace qv
