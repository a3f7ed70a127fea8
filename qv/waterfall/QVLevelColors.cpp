#include "qv/waterfall/QVLevelColors.h"

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
