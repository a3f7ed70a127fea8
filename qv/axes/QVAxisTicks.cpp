#include "qv/axes/QVAxisTicks.h"

#include "qv/foundation/QLClassBuilder.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

void CheckNumber(const char* AName, double AValue)
{
    if (std::isnan(AValue))
        throw std::invalid_argument(std::string(AName) + ": value " + std::to_string(AValue) + " is not a number");
}

} // namespace

const TQLClassInfo& TQVMajorTicksParam::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVMajorTicksParam>("TQVMajorTicksParam", &TQLPersistentNotify::StaticClassInfo())
            .Property("Mode", &TQVMajorTicksParam::GetMode, &TQVMajorTicksParam::SetMode, mtmAuto)
            .Build();
    return Info;
}

void TQVTicksStart::SetStartFrom(double AValue)
{
    CheckNumber("TQVTicksStart.StartFrom", AValue);
    Set(FStartFrom, AValue);
}

const TQLClassInfo& TQVTicksStart::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVTicksStart>("TQVTicksStart", &TQVMajorTicksParam::StaticClassInfo())
            .Property("StartFrom", &TQVTicksStart::GetStartFrom, &TQVTicksStart::SetStartFrom, 0.0)
            .Build();
    return Info;
}

TQVMajorTicks::TQVMajorTicks(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQVMajorTicksParam(AOwner, ALock, std::move(ANotify)),
      FStartFrom(std::make_unique<TQVTicksStart>(this, ALock, [this] { NotifyProp(); }))
{}

TQVMajorTicks::~TQVMajorTicks() = default;

void TQVMajorTicks::SetStep(double AValue)
{
    CheckNumber("TQVMajorTicks.Step", AValue);
    Set(FStep, AValue);
}

const TQLClassInfo& TQVMajorTicks::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVMajorTicks>("TQVMajorTicks", &TQVMajorTicksParam::StaticClassInfo())
            .Property("Step", &TQVMajorTicks::GetStep, &TQVMajorTicks::SetStep, 1.0)
            .Object("StartFrom", &TQVMajorTicks::GetStartFrom)
            .Build();
    return Info;
}

const TQLClassInfo& TQVMinorTicks::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVMinorTicks>("TQVMinorTicks", &TQLPersistentNotify::StaticClassInfo())
            .Property("Count", &TQVMinorTicks::GetCount, &TQVMinorTicks::SetCount, int32_t(0))
            .Build();
    return Info;
}

} // namespace qv
