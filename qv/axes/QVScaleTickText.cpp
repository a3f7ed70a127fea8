#include "qv/axes/QVScaleTickText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace qv {

namespace {

// Decades between a scale's width and the resolution its texts are rounded to, at the least.
// Ticks closer than a thousandth of the scale would be less than a pixel apart on any screen.
constexpr int32_t CMinScaleDigits = 3;
// A double carries 15 significant decimal digits safely; more may print the noise of its
// binary form (1e300 would read 1000000000000000100...).
constexpr int32_t CMaxSignificantDigits = 15;
// Below the smallest subnormal double nothing is left to print.
constexpr int32_t CMinResolutionExponent = -330;

// The decade of the leading digit of a positive finite number.
int32_t DecadeOf(double AValue)
{
    return static_cast<int32_t>(std::floor(std::log10(AValue)));
}

// The exponent of the resolution texts of values around AValue are rounded to.
int32_t ResolutionExponent(double AValue, double ARange, int32_t APrecision)
{
    double Width = std::fabs(ARange);
    if (!(Width > 0.0) || !std::isfinite(Width)) {
        const double Size = std::fabs(AValue);
        Width = Size > 0.0 && std::isfinite(Size) ? Size : 1.0;
    }
    int32_t Exponent = DecadeOf(Width) - std::max(APrecision, CMinScaleDigits);
    if (AValue != 0.0 && std::isfinite(AValue))
        Exponent = std::max(Exponent, DecadeOf(std::fabs(AValue)) - (CMaxSignificantDigits - 1));
    return std::max(Exponent, CMinResolutionExponent);
}

int32_t ClampPrecision(int64_t APrecision)
{
    return static_cast<int32_t>(std::clamp<int64_t>(APrecision, 0, CQVMaxTickPrecision));
}

const char* NonFiniteText(double AValue)
{
    if (std::isnan(AValue))
        return "NaN";
    return AValue > 0.0 ? "INF" : "-INF";
}

// Drops the sign of a text whose digits are all zero: "-0.00" reads "0.00".
void DropNegativeZero(std::string& AText)
{
    if (!AText.empty() && AText[0] == '-' && AText.find_first_not_of("0.", 1) == std::string::npos)
        AText.erase(0, 1);
}

// The digits of a value rounded to 10^AResolution, as "%e" gives them: the sign, the digit
// string and the power of ten of its first digit. At most 15 significant digits.
struct TDigits {
    bool Negative = false;
    std::string Digits;
    int32_t Power = 0;
};

TDigits DigitsOf(double AValue, int32_t AResolution)
{
    if (DecadeOf(std::fabs(AValue)) < AResolution) {
        // Below the resolution but not rounding to zero: one unit of the resolution.
        return TDigits{AValue < 0.0, "1", AResolution};
    }
    const int32_t Decimals = std::clamp(DecadeOf(std::fabs(AValue)) - AResolution, 0, CMaxSignificantDigits - 1);
    char Buffer[64];
    std::snprintf(Buffer, sizeof Buffer, "%.*e", Decimals, AValue);
    TDigits Result;
    const char* P = Buffer;
    if (*P == '-') {
        Result.Negative = true;
        ++P;
    }
    for (; *P && *P != 'e' && *P != 'E'; ++P)
        if (*P >= '0' && *P <= '9')
            Result.Digits += *P;
    Result.Power = *P ? static_cast<int32_t>(std::strtol(P + 1, nullptr, 10)) : 0;
    return Result;
}

// The plain decimal text of a value rounded to 10^AResolution, with no trailing zero after
// the point, then padded with zeros to AMinDecimals. Digits beyond what a double carries are
// zeros, not the noise of its binary expansion.
std::string PlainText(double AValue, int32_t AResolution, int32_t AMinDecimals)
{
    std::string Text;
    if (AValue != 0.0 && std::fabs(AValue) >= 0.5 * std::pow(10.0, AResolution)) {
        TDigits D = DigitsOf(AValue, AResolution);
        // The power of the last digit; trailing zeros move it up.
        int32_t Last = D.Power - static_cast<int32_t>(D.Digits.size()) + 1;
        while (D.Digits.size() > 1 && D.Digits.back() == '0') {
            D.Digits.pop_back();
            ++Last;
        }
        if (D.Digits != "0") {
            if (D.Negative)
                Text.push_back('-');
            if (Last >= 0) {
                Text.append(D.Digits);
                Text.append(static_cast<size_t>(Last), '0');
            } else {
                const size_t Decimals = static_cast<size_t>(0 - Last);
                const size_t Whole = D.Digits.size() > Decimals ? D.Digits.size() - Decimals : 0;
                if (Whole > 0)
                    Text.append(D.Digits, 0, Whole);
                else
                    Text.push_back('0');
                Text.push_back('.');
                Text.append(Decimals - (D.Digits.size() - Whole), '0');
                Text.append(D.Digits, Whole, std::string::npos);
            }
        }
    }
    if (Text.empty())
        Text.push_back('0');
    if (AMinDecimals > 0) {
        const size_t Point = Text.find('.');
        const size_t Have = Point == std::string::npos ? 0 : Text.size() - Point - 1;
        if (Point == std::string::npos)
            Text += '.';
        Text.append(static_cast<size_t>(AMinDecimals) - std::min(Have, static_cast<size_t>(AMinDecimals)), '0');
    }
    return Text;
}

// "%e" output turned into the mantissa, "E" and a bare exponent: the fixed form.
std::string ScientificText(double AValue, int32_t ADecimals)
{
    char Buffer[64];
    std::snprintf(Buffer, sizeof Buffer, "%.*e", ADecimals, AValue);
    const std::string Raw(Buffer);
    const size_t E = Raw.find_first_of("eE");
    std::string Mantissa = Raw.substr(0, E);
    const long Exponent = E == std::string::npos ? 0 : std::strtol(Raw.c_str() + E + 1, nullptr, 10);
    DropNegativeZero(Mantissa);
    return Mantissa + "E" + std::to_string(Exponent);
}

} // namespace

int32_t QVGetDecimalPoints(double AValue, double ARange, int32_t APrecision, bool AFixedPrecision)
{
    if (AFixedPrecision)
        return ClampPrecision(APrecision);
    return std::max(0, 0 - ResolutionExponent(AValue, ARange, APrecision));
}

std::string QVGetScaleTickText(double AValue, double AMin, double AMax, bool AFixedPrecision, uint32_t APrecision,
                               bool AScientific)
{
    if (!std::isfinite(AValue))
        return NonFiniteText(AValue);
    const int32_t Precision = ClampPrecision(APrecision);
    const double Range = AMax - AMin;

    if (!AScientific) {
        if (!AFixedPrecision)
            return PlainText(AValue, ResolutionExponent(AValue, Range, Precision), 0);
        // Exactly the precision's decimals, of which those beyond a double's digits are zeros.
        int32_t Resolution = 0 - Precision;
        if (AValue != 0.0)
            Resolution = std::max(Resolution, DecadeOf(std::fabs(AValue)) - (CMaxSignificantDigits - 1));
        return PlainText(AValue, Resolution, Precision);
    }

    if (AFixedPrecision)
        return ScientificText(AValue, Precision);
    // The mantissa keeps the digits down to the scale's resolution; a value that rounds away
    // at that resolution is zero.
    const int32_t Resolution = ResolutionExponent(AValue, Range, Precision);
    if (AValue == 0.0 || std::fabs(AValue) < 0.5 * std::pow(10.0, Resolution))
        return "0";
    TDigits D = DigitsOf(AValue, Resolution);
    while (D.Digits.size() > 1 && D.Digits.back() == '0')
        D.Digits.pop_back();
    std::string Text;
    if (D.Negative)
        Text.push_back('-');
    Text.push_back(D.Digits[0]);
    if (D.Digits.size() > 1) {
        Text.push_back('.');
        Text.append(D.Digits, 1, std::string::npos);
    }
    Text.push_back('E');
    Text.append(std::to_string(D.Power));
    return Text;
}

} // namespace qv
