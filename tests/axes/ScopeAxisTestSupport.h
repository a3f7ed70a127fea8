#pragma once
// A scope fed through its channels, with shorthands for the limits of its axes.

#include "axes/AxisTestSupport.h"
#include "qv/QVScope.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace qvtest {

using namespace qv;

inline TQVChannelData& ChannelData(TQVScope& AScope, int32_t AIndex = 0)
{
    return *AScope.GetChannels()->GetItem(AIndex)->GetData();
}

// Replaces channel AIndex's samples and runs one refresh tick.
inline void Feed(TQVScope& AScope, const std::vector<double>& AValues, int32_t AIndex = 0)
{
    ChannelData(AScope, AIndex).SetYData(AValues.data(), static_cast<uint32_t>(AValues.size()));
    AScope.RefreshView();
}

// ACount samples running from ALo to AHi.
inline std::vector<double> Line(int32_t ACount, double ALo, double AHi)
{
    std::vector<double> V(static_cast<size_t>(ACount));
    for (int32_t I = 0; I < ACount; ++I)
        V[static_cast<size_t>(I)] = ACount == 1 ? ALo : ALo + (AHi - ALo) * I / (ACount - 1);
    return V;
}

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// An axis of the scope whose zoom window a test can set; no channel draws against it.
template <class TBase>
class TWindowAxis : public TBase {
public:
    using TBase::TBase;
    void Window(double AMin, double AMax)
    {
        this->FZoomMin = AMin;
        this->FZoomMax = AMax;
        this->FZoomed = true;
        this->InvalidateMinMaxCache(false);
    }
    double Pan(double AOffset) const
    {
        this->AdjustOffset(AOffset);
        return AOffset;
    }
};

struct TLimits {
    double Min, Max;
};
inline TLimits Full(const TQVLimitCachedMinMaxValue& AScale)
{
    return {AScale.GetFull().GetMin().GetValue(), AScale.GetFull().GetMax().GetValue()};
}
inline TLimits Zoomed(const TQVLimitCachedMinMaxValue& AScale)
{
    return {AScale.GetZoomed().GetMin().GetValue(), AScale.GetZoomed().GetMax().GetValue()};
}

#define EXPECT_LIMITS(ALimits, AMin, AMax)                                                                             \
    do {                                                                                                               \
        const ::qvtest::TLimits L_ = (ALimits);                                                                        \
        EXPECT_NEAR(L_.Min, (AMin), 1e-9);                                                                             \
        EXPECT_NEAR(L_.Max, (AMax), 1e-9);                                                                             \
    } while (0)

} // namespace qvtest
