#pragma once
// How an axis writes its numbers and names its unit: the number format of the tick texts,
// the unit and title texts of a scope X axis (whose ticks mode and unit scale stand with the
// scope axes' settings), and the event through which the host may write tick texts itself.
//
// The unit texts are free functions of what they depend on (the domain, the unit exponent),
// so that every axis class can ask them without knowing the others.

#include "qv/axes/QVScopeAxisSettings.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"

#include <cstdint>
#include <functional>
#include <string>

namespace qv {

enum TQVPrecisionMode : uint8_t { dpmGeneral, dpmScientific };

// Asked for every tick text when assigned: may replace AxisLabel, the text about to be drawn.
using TQVCustomAxisLabelEvent = std::function<void(TQLPersistent* Sender, double SampleValue, std::string& AxisLabel)>;

// The number format of an axis' tick texts.
class TQVAxisFormat : public TQLPersistentNotify {
public:
    TQVAxisFormat(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);

    // Decimals: the least resolution in free mode, the exact count with FixedPrecision.
    // Kept between 0 and 18; stored only when it differs from the default.
    int32_t GetPrecision() const { return FPrecision; }
    void SetPrecision(int32_t AValue);
    int32_t GetPrecisionDefault() const { return FPrecisionDefault; }
    // Sets the default and the precision with it; for owners whose numbers need another one.
    void SetPrecisionDefault(int32_t AValue);
    bool GetPrecisionStored() const { return FPrecision != FPrecisionDefault; }
    bool GetFixedPrecision() const { return FFixedPrecision; }
    void SetFixedPrecision(bool AValue) { Set(FFixedPrecision, AValue); }
    TQVPrecisionMode GetPrecisionMode() const { return FPrecisionMode; }
    void SetPrecisionMode(TQVPrecisionMode AValue) { Set(FPrecisionMode, AValue); }

    QL_CLASS_INFO()

private:
    int32_t FPrecision = 3;
    int32_t FPrecisionDefault = 3;
    bool FFixedPrecision = false;
    TQVPrecisionMode FPrecisionMode = dpmGeneral;
};

// The unit exponent of a scope X axis' title: AExponent when not AAutoScale, else the power
// of ten of the sample rate truncated to a multiple of 3 (toward zero, so a rate below 1 gives
// 0). A rate that is not positive and finite gives 0.
int32_t QVGetUnitExponent(double ASampleRate, bool AAutoScale, int32_t AExponent);
// The unit exponent an axis' UnitScale asks for at the given sample rate.
int32_t QVGetUnitExponent(double ASampleRate, const TQVScopeXAxisUnitScale& AUnitScale);

// "Sec", "mSec", "uSec", "nSec" for exponents 0, 3, 6, 9; otherwise "Sec (E-12)" and the like.
std::string QVGetTimeUnitText(int32_t AExponent);
// "nHz" to "GHz" for exponents -9 to 9 in steps of 3; otherwise "Hz (E12)" and the like.
std::string QVGetFrequencyUnitText(int32_t AExponent);

// What the title of a scope X axis depends on.
struct TQVXAxisTitleState {
    TQVDisplayAxisTicksMode TicksMode = atmAuto;
    bool Designing = false; // the display is being laid out in a designer
    bool InTimeAxis = false;
    bool InFreqAxis = false;
    bool InIntensityAxis = false;
    bool InXModeAxis = false;
    int32_t Exponent = 0; // the unit exponent
};

// The title of a scope X axis: ALabelText when not empty, else "X Axis" for atmManual and for
// atmAuto in a designer, else the unit of the time or frequency axis, "Intensity", "X Axis"
// for the channels' own X values, and "Samples" when nothing else applies.
std::string QVGetScopeXAxisTitle(const std::string& ALabelText, const TQVXAxisTitleState& AState);

} // namespace qv

QL_DECLARE_ENUM(qv::TQVPrecisionMode, "dpmGeneral", "dpmScientific")
