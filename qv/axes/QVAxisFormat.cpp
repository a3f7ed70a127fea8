#include "qv/axes/QVAxisFormat.h"

#include "qv/axes/QVScaleTickText.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>

namespace qv {

// ---- TQVAxisFormat ----

TQVAxisFormat::TQVAxisFormat(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{}

void TQVAxisFormat::SetPrecision(int32_t AValue)
{
    GetBasicLock().SetterMinMax(FPrecision, AValue, 0, CQVMaxTickPrecision);
}

void TQVAxisFormat::SetPrecisionDefault(int32_t AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    FPrecisionDefault = std::clamp(AValue, 0, CQVMaxTickPrecision);
    SetPrecision(FPrecisionDefault);
}

const TQLClassInfo& TQVAxisFormat::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVAxisFormat>("TQVAxisFormat", &TQLPersistentNotify::StaticClassInfo())
            .Property("Precision", &TQVAxisFormat::GetPrecision, &TQVAxisFormat::SetPrecision,
                      &TQVAxisFormat::GetPrecisionDefault)
            .StoredWhen(&TQVAxisFormat::GetPrecisionStored)
            .Property("FixedPrecision", &TQVAxisFormat::GetFixedPrecision, &TQVAxisFormat::SetFixedPrecision, false)
            .Property("PrecisionMode", &TQVAxisFormat::GetPrecisionMode, &TQVAxisFormat::SetPrecisionMode, dpmGeneral)
            .Build();
    return Info;
}

// ---- Unit texts ----

int32_t QVGetUnitExponent(double ASampleRate, bool AAutoScale, int32_t AExponent)
{
    if (!AAutoScale)
        return AExponent;
    if (!(ASampleRate > 0.0) || !std::isfinite(ASampleRate))
        return 0;
    return static_cast<int32_t>(std::trunc(std::log10(ASampleRate) / 3.0)) * 3;
}

int32_t QVGetUnitExponent(double ASampleRate, const TQVScopeXAxisUnitScale& AUnitScale)
{
    return QVGetUnitExponent(ASampleRate, AUnitScale.GetAutoScale(), AUnitScale.GetExponent());
}

namespace {

// "(E" and the power of ten that turns a value of the unit into one of the base unit. The
// negation is taken in 64 bits: the lowest exponent has no 32-bit opposite.
std::string ExponentSuffix(int32_t AExponent)
{
    return " (E" + std::to_string(0 - static_cast<int64_t>(AExponent)) + ")";
}

} // namespace

std::string QVGetTimeUnitText(int32_t AExponent)
{
    switch (AExponent) {
    case 0: return "Sec";
    case 3: return "mSec";
    case 6: return "uSec";
    case 9: return "nSec";
    default: return "Sec" + ExponentSuffix(AExponent);
    }
}

std::string QVGetFrequencyUnitText(int32_t AExponent)
{
    switch (AExponent) {
    case -9: return "nHz";
    case -6: return "uHz";
    case -3: return "mHz";
    case 0: return "Hz";
    case 3: return "kHz";
    case 6: return "MHz";
    case 9: return "GHz";
    default: return "Hz" + ExponentSuffix(AExponent);
    }
}

std::string QVGetScopeXAxisTitle(const std::string& ALabelText, const TQVXAxisTitleState& AState)
{
    if (!ALabelText.empty())
        return ALabelText;
    if (AState.TicksMode == atmManual || (AState.TicksMode == atmAuto && AState.Designing))
        return "X Axis";
    if (AState.InTimeAxis)
        return QVGetTimeUnitText(AState.Exponent);
    if (AState.InFreqAxis)
        return QVGetFrequencyUnitText(AState.Exponent);
    if (AState.InIntensityAxis)
        return "Intensity";
    if (AState.InXModeAxis)
        return "X Axis";
    return "Samples";
}

} // namespace qv
