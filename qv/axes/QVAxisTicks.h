#pragma once
// Settings of the ticks of an axis: how the major step is chosen and where the ticks start,
// and how many minor ticks fall between two major ones.

#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"

#include <functional>
#include <memory>

namespace qv {

// mtmAuto: the axis picks the step (or aligns the start to it). mtmCustom: the given step,
// doubled until its tick texts fit. mtmOverride: the given step, doubled only until ticks are
// more than a pixel apart.
enum TQVMajorTicksMode : uint8_t { mtmAuto, mtmCustom, mtmOverride };

// Asked for every major tick when assigned: may change the step to the next tick (for that
// tick only) and may skip drawing the tick while keeping its place.
using TQVCustomStepEvent = std::function<void(TQLPersistent* Sender, double SampleValue, double& Step, bool& Draw)>;

class TQVMajorTicksParam : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    TQVMajorTicksMode GetMode() const { return FMode; }
    void SetMode(TQVMajorTicksMode AValue) { Set(FMode, AValue); }

    QL_CLASS_INFO()

private:
    TQVMajorTicksMode FMode = mtmAuto;
};

// Where the tick walk starts: in mtmAuto at a multiple of the step, otherwise at StartFrom
// going up and at -StartFrom going down.
class TQVTicksStart : public TQVMajorTicksParam {
public:
    using TQVMajorTicksParam::TQVMajorTicksParam;

    double GetStartFrom() const { return FStartFrom; }
    // A NaN raises std::invalid_argument.
    void SetStartFrom(double AValue);

    QL_CLASS_INFO()

private:
    double FStartFrom = 0.0;
};

class TQVMajorTicks : public TQVMajorTicksParam {
public:
    TQVMajorTicks(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQVMajorTicks() override;

    // The step used when Mode is not mtmAuto. A NaN raises std::invalid_argument.
    double GetStep() const { return FStep; }
    void SetStep(double AValue);
    TQVTicksStart* GetStartFrom() const { return FStartFrom.get(); }
    void SetStartFrom(const TQVTicksStart* AValue) { FStartFrom->Assign(AValue); }

    QL_CLASS_INFO()

private:
    double FStep = 1.0;
    std::unique_ptr<TQVTicksStart> FStartFrom;
};

class TQVMinorTicks : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    // Minor ticks between two major ticks; a negative count is kept at 0.
    int32_t GetCount() const { return FCount; }
    void SetCount(int32_t AValue) { GetBasicLock().SetterMin(FCount, AValue, 0); }

    QL_CLASS_INFO()

private:
    int32_t FCount = 0;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVMajorTicksMode, "mtmAuto", "mtmCustom", "mtmOverride")
