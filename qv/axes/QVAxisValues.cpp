#include "qv/axes/QVAxisValues.h"

#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

// A limit must be a number; infinities are allowed (an unbounded data range is handled).
void CheckLimit(const char* AName, double AValue)
{
    if (std::isnan(AValue))
        throw std::invalid_argument(std::string(AName) + ": value " + std::to_string(AValue) + " is not a number");
}

} // namespace

// ---- TQVDisplayOptionalValue ----

TQVDisplayOptionalValue::TQVDisplayOptionalValue(TQVDisplayOwner* ADisplay, double AValueDefault, bool AEnabledDefault,
                                                 bool APositiveOnly)
    : TQVDisplayPersistent(ADisplay), FValue(AValueDefault), FValueDefault(AValueDefault), FEnabled(AEnabledDefault),
      FEnabledDefault(AEnabledDefault), FPositiveOnly(APositiveOnly)
{
    CheckLimit("TQVDisplayOptionalValue.Value", AValueDefault);
}

void TQVDisplayOptionalValue::SetValue(double AValue)
{
    CheckLimit("TQVDisplayOptionalValue.Value", AValue);
    if (FPositiveOnly && AValue < 0.0)
        AValue = 0.0;
    GetBasicLock().Setter(FValue, AValue, [this] { Changed(); });
}

void TQVDisplayOptionalValue::SetEnabled(bool AValue)
{
    GetBasicLock().Setter(FEnabled, AValue, [this] { Changed(); });
}

void TQVDisplayOptionalValue::Changed()
{
    GetDisplay()->InvalidateRefresh();
    if (FOnChange)
        FOnChange(this);
}

const TQLClassInfo& TQVDisplayOptionalValue::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayOptionalValue>("TQVDisplayOptionalValue", &TQVDisplayPersistent::StaticClassInfo())
            .Property("Value", &TQVDisplayOptionalValue::GetValue, &TQVDisplayOptionalValue::SetValue,
                      &TQVDisplayOptionalValue::GetValueDefault)
            .Property("Enabled", &TQVDisplayOptionalValue::GetEnabled, &TQVDisplayOptionalValue::SetEnabled,
                      &TQVDisplayOptionalValue::GetEnabledDefault)
            .Build();
    return Info;
}

// ---- TQVDisplayValueRange ----

TQVDisplayValueRange::TQVDisplayValueRange(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay, bool APositiveOnly)
    : TQLPersistent(AOwner, ADisplay->GetLock()),
      FHigh(std::make_unique<TQVDisplayOptionalValue>(ADisplay, 0.0, false, APositiveOnly)),
      FLow(std::make_unique<TQVDisplayOptionalValue>(ADisplay, 0.0, false, APositiveOnly))
{}

TQVDisplayValueRange::~TQVDisplayValueRange() = default;

void TQVDisplayValueRange::SetOnChange(const TNotifyEvent& AHandler)
{
    FHigh->SetOnChange(AHandler);
    FLow->SetOnChange(AHandler);
}

const TQLClassInfo& TQVDisplayValueRange::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayValueRange>("TQVDisplayValueRange", &TQLPersistent::StaticClassInfo())
            .Object("High", &TQVDisplayValueRange::GetHigh)
            .Object("Low", &TQVDisplayValueRange::GetLow)
            .Build();
    return Info;
}

// ---- TQVBasicAxisValue ----

TQVBasicAxisValue::TQVBasicAxisValue(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify,
                                     double ADefaultValue)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FValue(ADefaultValue),
      FDefaultValue(ADefaultValue)
{
    CheckLimit("TQVBasicAxisValue.Value", ADefaultValue);
}

void TQVBasicAxisValue::SetValue(double AValue)
{
    CheckLimit("TQVBasicAxisValue.Value", AValue);
    Set(FValue, AValue);
}

void TQVBasicAxisValue::SetValueDefault(double AValue)
{
    CheckLimit("TQVBasicAxisValue.Value", AValue);
    auto Guard = GetLock()->AcquireWrite();
    FDefaultValue = AValue;
    Set(FValue, AValue);
}

const TQLClassInfo& TQVBasicAxisValue::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicAxisValue>("TQVBasicAxisValue", &TQLPersistentNotify::StaticClassInfo())
            .Property("AutoScale", &TQVBasicAxisValue::GetAutoScale, &TQVBasicAxisValue::SetAutoScale, true)
            .Property("Value", &TQVBasicAxisValue::GetValue, &TQVBasicAxisValue::SetValue,
                      &TQVBasicAxisValue::GetDefaultValue)
            .Build();
    return Info;
}

// ---- TQVBasicRangedAxisValue ----

TQVBasicRangedAxisValue::TQVBasicRangedAxisValue(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay,
                                                 TQLNotifyProc ANotify, double ADefaultValue, double ADataValueDefault)
    : TQVBasicAxisValue(AOwner, ADisplay->GetLock(), std::move(ANotify), ADefaultValue),
      FRange(std::make_unique<TQVDisplayValueRange>(this, ADisplay)), FDataValue(ADataValueDefault),
      FDataValueDefault(ADataValueDefault)
{
    CheckLimit("TQVBasicRangedAxisValue.DataValue", ADataValueDefault);
    // A bound that moves is a change of this limit.
    FRange->SetOnChange([this](TQLPersistent*) { NotifyProp(); });
}

TQVBasicRangedAxisValue::~TQVBasicRangedAxisValue() = default;

void TQVBasicRangedAxisValue::SetDataValue(double AValue)
{
    CheckLimit("TQVBasicRangedAxisValue.DataValue", AValue);
    Set(FDataValue, AValue);
}

void TQVBasicRangedAxisValue::SetDataValueDefault(double AValue)
{
    CheckLimit("TQVBasicRangedAxisValue.DataValue", AValue);
    auto Guard = GetLock()->AcquireWrite();
    FDataValueDefault = AValue;
    Set(FDataValue, AValue);
}

const TQLClassInfo& TQVBasicRangedAxisValue::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicRangedAxisValue>("TQVBasicRangedAxisValue", &TQVBasicAxisValue::StaticClassInfo())
            .Object("Range", &TQVBasicRangedAxisValue::GetRange)
            .Property("DataValue", &TQVBasicRangedAxisValue::GetDataValue, &TQVBasicRangedAxisValue::SetDataValue,
                      &TQVBasicRangedAxisValue::GetDataValueDefault)
            .Build();
    return Info;
}

// ---- TQVAxisValue, TQVMaxAxisValue ----

TQVAxisValue::TQVAxisValue(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay, TQLNotifyProc ANotify,
                           double ADefaultValue, double ADataValueDefault)
    : TQVBasicRangedAxisValue(AOwner, ADisplay, std::move(ANotify), ADefaultValue, ADataValueDefault),
      FTick(std::make_unique<TQVBasicAxisValue>(this, ADisplay->GetLock(), [this] { NotifyProp(); }))
{}

TQVAxisValue::~TQVAxisValue() = default;

const TQLClassInfo& TQVAxisValue::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVAxisValue>("TQVAxisValue", &TQVBasicRangedAxisValue::StaticClassInfo())
            .Object("Tick", &TQVAxisValue::GetTick)
            .Build();
    return Info;
}

const TQLClassInfo& TQVMaxAxisValue::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVMaxAxisValue>("TQVMaxAxisValue", &TQVAxisValue::StaticClassInfo())
            .Property("Mode", &TQVMaxAxisValue::GetMode, &TQVMaxAxisValue::SetMode, mamValue)
            .Build();
    return Info;
}

} // namespace qv
