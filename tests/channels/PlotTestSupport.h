#pragma once
// A scope with a 500 by 400 data view at (0, 0), for plotting channels against its own axes:
// Y fixed to 0..100, X following the samples unless a test fixes its range.

#include "axes/AxisTestSupport.h"
#include "channels/ChannelTestSupport.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVScopeDataView.h"

#include <map>
#include <utility>
#include <vector>

namespace qvtest {

using namespace qv;

class TPlotScope : public TQVScope {
public:
    TQVScopeDataView* GetDataView() const override { return View; }
    TQVScopeDataView* View = nullptr;
};

class TPlotFixture : public ::testing::Test {
protected:
    using TPoints = std::vector<std::pair<int32_t, int32_t>>;

    TPlotFixture()
    {
        Scope.View = &View;
        View.SetDrawRect(Rect);
        SetYRange(0.0, 100.0);
    }

    TQVScopeXAxis& XAxis() { return *Scope.GetXAxis(); }
    TQVScopeChannel* Channel(int32_t AIndex = 0)
    {
        while (Scope.GetChannels()->GetCount() <= AIndex)
            Scope.GetChannels()->Add();
        return Scope.GetChannels()->GetItem(AIndex);
    }
    // The X axis fixed to samples ALow..AHigh; its scales count samples too.
    void SetXRange(double ALow, double AHigh)
    {
        for (TQVAxisValue* V : {XAxis().GetMin(), static_cast<TQVAxisValue*>(XAxis().GetMax())}) {
            const double Value = V == XAxis().GetMin() ? ALow : AHigh;
            V->SetAutoScale(false);
            V->SetValue(Value);
            V->SetDataValue(Value);
        }
        XAxis().InvalidateMinMaxCache(true);
    }
    // The Y axis fixed to ALow..AHigh, with no room added above or below.
    void SetYRange(double ALow, double AHigh)
    {
        TQVScopeYAxis& Y = *Scope.GetYAxis();
        Y.GetAutoScaling()->SetEnabled(false);
        Y.GetAutoScaling()->GetSpaceAbove()->SetSpace(0);
        Y.GetAutoScaling()->GetSpaceBelow()->SetSpace(0);
        Y.GetMin()->SetValue(ALow);
        Y.GetMax()->SetValue(AHigh);
        Y.InvalidateMinMaxCache(true);
    }
    // Y samples on a ramp, handed over to the draw stage.
    void Ramp(const std::vector<double>& AY, int32_t AChannel = 0, bool ASeparate = false)
    {
        Channel(AChannel)->GetData()->AddYData(AY.data(), uint32_t(AY.size()), ASeparate);
        Scope.PopulateDrawBuffers();
    }
    void Draw(int32_t AChannel = 0)
    {
        Canvas.ClearRecords();
        Channel(AChannel)->Draw(Canvas, Rect, false);
    }
    // The plotted points of the last frame, as (X pixel, Y pixel).
    TPoints Plotted(int32_t AChannel = 0)
    {
        const auto& X = *Channel(AChannel)->GetDownsampledIntDrawBufferX();
        const auto& Y = *Channel(AChannel)->GetDownsampledIntDrawBufferY();
        TPoints Result;
        for (int32_t i = 0; i < Y.GetSize(); ++i)
            Result.emplace_back(X.GetItem(i), Y.GetItem(i));
        return Result;
    }
    // The smallest and largest Y pixel of each X column of the view.
    std::map<int32_t, std::pair<int32_t, int32_t>> ColumnExtents(const TPoints& APoints) const
    {
        std::map<int32_t, std::pair<int32_t, int32_t>> Result;
        for (const auto& [X, Y] : APoints) {
            if (X < Rect.Left || X >= Rect.Right || Y == QVMissingPixel)
                continue;
            auto [It, New] = Result.emplace(X, std::make_pair(Y, Y));
            It->second = {std::min(It->second.first, Y), std::max(It->second.second, Y)};
        }
        return Result;
    }

    TRect Rect{0, 0, 500, 400};
    TPlotScope Scope;
    TQVScopeDataView View{&Scope};
    TQLRecordingCanvas Canvas;
};

} // namespace qvtest
