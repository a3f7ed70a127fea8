#pragma once
// A scope whose recalculation flag tests can reset, and readers of a channel's stages.
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/display/QVScope.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace qvtest {

class TTestScope : public qv::TQVScope {
public:
    void ResetNeedsRecalc() { FNeedsRecalc = false; }
};

inline std::vector<double> Seq(double AFirst, int ACount)
{
    std::vector<double> Result(static_cast<size_t>(ACount));
    std::iota(Result.begin(), Result.end(), AFirst);
    return Result;
}

inline std::vector<int32_t> Ints(const qv::IQVIntegerBuffer& ABuffer)
{
    return std::vector<int32_t>(ABuffer.Read(), ABuffer.Read() + ABuffer.GetSize());
}

class TChannelFixture : public ::testing::Test {
protected:
    TTestScope Scope;
    qv::TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    qv::TQVChannelData* Data = Channel->GetData();

    template <class F>
    static std::vector<double> Read(F&& AGetter)
    {
        std::vector<double> Result(1 << 16);
        Result.resize(static_cast<size_t>(AGetter(Result.data(), int32_t(Result.size()))));
        return Result;
    }
    std::vector<double> X() const
    {
        return Read([&](double* P, int32_t N) { return Data->GetXData(P, N); });
    }
    std::vector<double> Y() const
    {
        return Read([&](double* P, int32_t N) { return Data->GetYData(P, N); });
    }
    std::vector<double> DrawX() const
    {
        return Read([&](double* P, int32_t N) { return Data->GetDrawXData(P, N); });
    }
    std::vector<double> DrawY() const
    {
        return Read([&](double* P, int32_t N) { return Data->GetDrawYData(P, N); });
    }
    std::vector<int32_t> Gaps() const { return Ints(*Channel->GetGapsBuffer()); }
    std::vector<int32_t> DrawGaps() const { return Ints(*Channel->GetDrawGapsBuffer()); }
    void Add(std::vector<double> AValues, bool ASeparate = false)
    {
        Data->AddYData(AValues.data(), uint32_t(AValues.size()), ASeparate);
    }
};

template <class F>
void ExpectError(F&& AFunc, const std::string& APart)
{
    try {
        AFunc();
        ADD_FAILURE() << "no exception";
    } catch (const std::exception& Error) {
        EXPECT_NE(std::string(Error.what()).find(APart), std::string::npos) << Error.what();
    }
}

} // namespace qvtest
