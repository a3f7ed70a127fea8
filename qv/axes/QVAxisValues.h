#pragma once
// The settings that describe an axis limit: the limit itself in printed (scale) units and in
// data units, whether it follows the data, the range it may be zoomed or panned within, and a
// separate printed value for the ticks.

#include "qv/component/QVDisplayPersistent.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLEvents.h"

#include <memory>

namespace qv {

// How Max.Value is read: as the limit itself, or as an offset from the minimum.
enum TQVMaxAxisMode : uint8_t { mamValue, mamOffset };

// A value that can be switched on and off: a bound of a range. A NaN value raises
// std::invalid_argument; with PositiveOnly a negative value becomes 0.
class TQVDisplayOptionalValue : public TQVDisplayPersistent {
public:
    explicit TQVDisplayOptionalValue(TQVDisplayOwner* ADisplay, double AValueDefault = 0.0,
                                     bool AEnabledDefault = false, bool APositiveOnly = false);

    double GetValue() const { return FValue; }
    void SetValue(double AValue);
    bool GetEnabled() const { return FEnabled; }
    void SetEnabled(bool AValue);
    double GetValueDefault() const { return FValueDefault; }
    bool GetEnabledDefault() const { return FEnabledDefault; }
    bool GetPositiveOnly() const { return FPositiveOnly; }

    // Runs after every real change, once the display has been asked to repaint.
    void SetOnChange(TNotifyEvent AHandler) { FOnChange = std::move(AHandler); }
    const TNotifyEvent& GetOnChange() const { return FOnChange; }

    QL_CLASS_INFO()

private:
    void Changed();

    double FValue;
    double FValueDefault;
    bool FEnabled;
    bool FEnabledDefault;
    bool FPositiveOnly;
    TNotifyEvent FOnChange;
};

// A pair of optional bounds.
class TQVDisplayValueRange : public TQLPersistent {
public:
    TQVDisplayValueRange(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay, bool APositiveOnly = false);
    ~TQVDisplayValueRange() override;

    TQVDisplayOptionalValue* GetHigh() const { return FHigh.get(); }
    void SetHigh(const TQVDisplayOptionalValue* AValue) { FHigh->Assign(AValue); }
    TQVDisplayOptionalValue* GetLow() const { return FLow.get(); }
    void SetLow(const TQVDisplayOptionalValue* AValue) { FLow->Assign(AValue); }

    // Hands the change event to both bounds.
    void SetOnChange(const TNotifyEvent& AHandler);

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayOptionalValue> FHigh;
    std::unique_ptr<TQVDisplayOptionalValue> FLow;
};

// A limit in scale units (what the ticks show), and whether the axis takes it from the data
// instead. Value is stored only when it differs from its default. A NaN value raises
// std::invalid_argument; infinities are accepted.
class TQVBasicAxisValue : public TQLPersistentNotify {
public:
    TQVBasicAxisValue(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify, double ADefaultValue = 0.0);

    bool GetAutoScale() const { return FAutoScale; }
    void SetAutoScale(bool AValue) { Set(FAutoScale, AValue); }
    double GetValue() const { return FValue; }
    void SetValue(double AValue);
    double GetDefaultValue() const { return FDefaultValue; }
    // Sets the default and the value together.
    void SetValueDefault(double AValue);

    QL_CLASS_INFO()

private:
    bool FAutoScale = true;
    double FValue;
    double FDefaultValue;
};

// A limit that also knows its value in data units (samples on a scope X axis) and the range
// that zooming and panning keep it in.
class TQVBasicRangedAxisValue : public TQVBasicAxisValue {
public:
    TQVBasicRangedAxisValue(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay, TQLNotifyProc ANotify,
                            double ADefaultValue = 0.0, double ADataValueDefault = 0.0);
    ~TQVBasicRangedAxisValue() override;

    TQVDisplayValueRange* GetRange() const { return FRange.get(); }
    void SetRange(const TQVDisplayValueRange* AValue) { FRange->Assign(AValue); }
    double GetDataValue() const { return FDataValue; }
    void SetDataValue(double AValue);
    double GetDataValueDefault() const { return FDataValueDefault; }
    // Sets the default and the data value together.
    void SetDataValueDefault(double AValue);

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayValueRange> FRange;
    double FDataValue;
    double FDataValueDefault;
};

// An axis minimum: adds the printed limit for the ticks when they are not to follow Value.
class TQVAxisValue : public TQVBasicRangedAxisValue {
public:
    TQVAxisValue(TQLPersistent* AOwner, TQVDisplayOwner* ADisplay, TQLNotifyProc ANotify, double ADefaultValue = 0.0,
                 double ADataValueDefault = 0.0);
    ~TQVAxisValue() override;

    TQVBasicAxisValue* GetTick() const { return FTick.get(); }
    void SetTick(const TQVBasicAxisValue* AValue) { FTick->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVBasicAxisValue> FTick;
};

// An axis maximum: Value is the limit itself or, in mamOffset, the width from the minimum.
class TQVMaxAxisValue : public TQVAxisValue {
public:
    using TQVAxisValue::TQVAxisValue;

    TQVMaxAxisMode GetMode() const { return FMode; }
    void SetMode(TQVMaxAxisMode AValue) { Set(FMode, AValue); }

    QL_CLASS_INFO()

private:
    TQVMaxAxisMode FMode = mamValue;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVMaxAxisMode, "mamValue", "mamOffset")
