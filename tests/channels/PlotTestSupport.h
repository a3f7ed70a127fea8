#pragma once
// A scope with a data view, for plotting channels against its own axes. The data view is
// 500 by 400 pixels at (0, 0); the Y axis runs 0..100; the X axis spans the samples unless a
// test fixes its range.

#include "axes/AxisTestSupport.h"
#include "channels/ChannelTestSupport.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/display/QVScope.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

namespace qvtest {

using namespace qv;

class TPlotScope : public TQVScope {
public:
    TQVDisplayComponent* GetDataView() const override { return View; }
    TQVDisplayComponent* View = nullptr;
};

class TPlotFixture : public ::testing::Test {
protected:
    TPlotFixture()
    {
        Scope.SetBounds(0, 0, 600, 500);
        Scope.View = &View;
        View.SetDrawRect(Rect);
        SetYRange(0.0, 100.0);
    }

    TQVScopeXAxis& XAxis() { return *Scope.GetXAxis(); }
    TQVScopeYAxis& YAxis() { return *Scope.GetYAxis(); }
    // The X axis fixed to samples ALow..AHigh instead of following the data; its scales
    // count samples too.
    void SetXRange(double ALow, double AHigh)
    {
        XAxis().GetMin()->SetAutoScale(false);
        XAxis().GetMin()->SetValue(ALow);
        XAxis().GetMin()->SetDataValue(ALow);
        XAxis().GetMax()->SetAutoScale(false);
        XAxis().GetMax()->SetMode(mamValue);
        XAxis().GetMax()->SetValue(AHigh);
        XAxis().GetMax()->SetDataValue(AHigh);
        XAxis().InvalidateMinMaxCache(true);
    }
    // The Y axis fixed to ALow..AHigh, with no room added above or below.
    void SetYRange(double ALow, double AHigh)
    {
        YAxis().GetAutoScaling()->SetEnabled(false);
        YAxis().GetAutoScaling()->GetSpaceAbove()->SetSpace(0);
        YAxis().GetAutoScaling()->GetSpaceBelow()->SetSpace(0);
        YAxis().GetMin()->SetValue(ALow);
        YAxis().GetMax()->SetValue(AHigh);
        YAxis().InvalidateMinMaxCache(true);
    }

    TQVScopeChannel* Channel(int32_t AIndex = 0)
    {
        while (Scope.GetChannels()->GetCount() <= AIndex)
            Scope.GetChannels()->Add();
        return Scope.GetChannels()->GetItem(AIndex);
    }
    // Y samples on a ramp; the X axis spans them unless told otherwise.
    void Ramp(const std::vector<double>& AY, int32_t AChannel = 0, bool ASeparate = false)
    {
        Channel(AChannel)->GetData()->AddYData(AY.data(), uint32_t(AY.size()), ASeparate);
        Hand();
    }
    void XY(const std::vector<double>& AX, const std::vector<double>& AY, int32_t AChannel = 0)
    {
        Channel(AChannel)->GetData()->AddXYData(AX.data(), AY.data(), uint32_t(AY.size()));
        Hand();
    }
    // The refresh tick's hand-over.
    void Hand() { Scope.PopulateDrawBuffers(); }
    void Draw(int32_t AChannel = 0)
    {
        Canvas.ClearRecords();
        Channel(AChannel)->Draw(Canvas, Rect, false);
    }

    // The plotted points of a channel, as (pixel X, pixel Y) pairs of the last frame.
    std::vector<std::pair<int32_t, int32_t>> Plotted(int32_t AChannel = 0)
    {
        const auto& X = *Channel(AChannel)->GetDownsampledIntDrawBufferX();
        const auto& Y = *Channel(AChannel)->GetDownsampledIntDrawBufferY();
        std::vector<std::pair<int32_t, int32_t>> Result;
        for (int32_t i = 0; i < std::min(X.GetSize(), Y.GetSize()); ++i)
            Result.emplace_back(X.GetItem(i), Y.GetItem(i));
        return Result;
    }
    // Smallest and largest Y pixel in each X column of the view, over the points given.
    std::map<int32_t, std::pair<int32_t, int32_t>> ColumnExtents(
        const std::vector<std::pair<int32_t, int32_t>>& APoints) const
    {
        std::map<int32_t, std::pair<int32_t, int32_t>> Result;
        for (const auto& [X, Y] : APoints) {
            if (X < Rect.Left || X >= Rect.Right || Y == QVMissingPixel)
                continue;
            auto [It, New] = Result.emplace(X, std::make_pair(Y, Y));
            if (!New) {
                It->second.first = std::min(It->second.first, Y);
                It->second.second = std::max(It->second.second, Y);
            }
        }
        return Result;
    }

    TRect Rect{0, 0, 500, 400};
    TPlotScope Scope;
    TTestDataView View{&Scope};
    TQLRecordingCanvas Canvas;
};

} // namespace qvtest
