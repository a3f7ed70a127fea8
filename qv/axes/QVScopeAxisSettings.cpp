#include "qv/axes/QVScopeAxisSettings.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScopeAutoScaling::TQVScopeAutoScaling(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify))
{
    FSpaceAbove = std::make_unique<TQVScopeAutoScalingSpace>(this, GetLock(), nullptr);
    FSpaceBelow = std::make_unique<TQVScopeAutoScalingSpace>(this, GetLock(), nullptr);
    MakeBuffers();
}

TQVScopeAutoScaling::~TQVScopeAutoScaling() = default;

void TQVScopeAutoScaling::MakeBuffers()
{
    FMaxValuesBuffer = std::make_shared<TQVRealBuffer>(FMaxHistory);
    FMinValuesBuffer = std::make_shared<TQVRealBuffer>(FMaxHistory);
}

void TQVScopeAutoScaling::SetMaxHistory(uint32_t AValue)
{
    // Far more frames than a refresh rate can fill in minutes; the buffers would be huge.
    constexpr uint32_t CMaxFrames = 1u << 24;
    if (AValue > CMaxFrames)
        throw std::out_of_range("TQVScopeAutoScaling.MaxHistory: " + std::to_string(AValue) +
                                " frames exceed the limit of " + std::to_string(CMaxFrames));
    Set(FMaxHistory, AValue, [this] { MakeBuffers(); });
}

const TQLClassInfo& TQVScopeMaxSample::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeMaxSample>("TQVScopeMaxSample", &TQLPersistentNotify::StaticClassInfo())
            .Property("Autosize", &TQVScopeMaxSample::GetAutosize, &TQVScopeMaxSample::SetAutosize, true)
            .Property("Value", &TQVScopeMaxSample::GetValue, &TQVScopeMaxSample::SetValue, uint32_t(1024))
            .Build();
    return Info;
}

const TQLClassInfo& TQVScopeXAxisUnitScale::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeXAxisUnitScale>("TQVScopeXAxisUnitScale", &TQLPersistentNotify::StaticClassInfo())
            .Property("AutoScale", &TQVScopeXAxisUnitScale::GetAutoScale, &TQVScopeXAxisUnitScale::SetAutoScale, true)
            .Property("Exponent", &TQVScopeXAxisUnitScale::GetExponent, &TQVScopeXAxisUnitScale::SetExponent,
                      int32_t(0))
            .Build();
    return Info;
}

const TQLClassInfo& TQVDisplayAxisCursorSettings::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayAxisCursorSettings>(
                                         "TQVDisplayAxisCursorSettings", &TQVDisplayPersistent::StaticClassInfo())
                                         .Property("SnapToSample", &TQVDisplayAxisCursorSettings::GetSnapToSample,
                                                   &TQVDisplayAxisCursorSettings::SetSnapToSample, false)
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVScopeAutoScalingSpace::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeAutoScalingSpace>("TQVScopeAutoScalingSpace", &TQLPersistentNotify::StaticClassInfo())
            .Property("Space", &TQVScopeAutoScalingSpace::GetSpace, &TQVScopeAutoScalingSpace::SetSpace, uint32_t(20))
            .Property("Threshold", &TQVScopeAutoScalingSpace::GetThreshold, &TQVScopeAutoScalingSpace::SetThreshold,
                      uint32_t(10))
            .Build();
    return Info;
}

const TQLClassInfo& TQVScopeAutoScaling::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeAutoScaling>("TQVScopeAutoScaling", &TQLPersistentNotify::StaticClassInfo())
            .Property("Enabled", &TQVScopeAutoScaling::GetEnabled, &TQVScopeAutoScaling::SetEnabled, true)
            .Object("SpaceAbove", &TQVScopeAutoScaling::GetSpaceAbove)
            .Object("SpaceBelow", &TQVScopeAutoScaling::GetSpaceBelow)
            .Property("MaxHistory", &TQVScopeAutoScaling::GetMaxHistory, &TQVScopeAutoScaling::SetMaxHistory,
                      uint32_t(20))
            .Build();
    return Info;
}

} // namespace qv
