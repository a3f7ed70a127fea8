// Plotting a scope channel of a million samples into a 1000-pixel-wide view.
//
// DrawNewData: every frame follows a hand-over of new data, so the whole pipeline runs:
// extents, slice, X and Y mapping and the min/max cut to two points per column.
// DrawUnchanged: frames with nothing new; the cached pixels are drawn again.
// Downsample: the min/max cut alone, a million samples into 1000 columns, read sample by sample.
// Drawing goes to a surface that only counts calls, so the figures are the channel's own.

#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVDisplayView.h"
#include "qv/display/QVScope.h"

#include "support/BenchCanvas.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

using namespace qv;

constexpr int32_t kSamples = 1000000;
const TRect kView{0, 0, 1000, 600};

using TCountingCanvas = qvbench::TBenchCanvas;

class TBenchScope : public TQVScope {
public:
    TBenchScope()
    {
        View.SetDrawRect(kView);
        TQVScopeYAxis* Y = GetYAxis();
        Y->GetAutoScaling()->SetEnabled(false);
        Y->GetMin()->SetValue(-2.0);
        Y->GetMax()->SetValue(2.0);
    }
    TQVScopeDataView* GetDataView() const override { return const_cast<TQVScopeDataView*>(&View); }
    TQVScopeDataView View{this};
};

std::vector<double> Signal()
{
    std::vector<double> Y(kSamples);
    for (int32_t j = 0; j < kSamples; ++j)
        Y[size_t(j)] = std::sin(j * 0.001) + 0.1 * std::sin(j * 0.37);
    return Y;
}

void DrawNewData(benchmark::State& AState)
{
    TBenchScope Scope;
    Scope.SetSizeLimit(kSamples);
    TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    const std::vector<double> Y = Signal();
    Channel->GetData()->AddYData(Y.data(), kSamples);
    TCountingCanvas Canvas;
    for (auto _ : AState) {
        AState.PauseTiming();
        // One more sample and a hand-over: the draw stage is new and everything is computed.
        Channel->GetData()->AddYPoint(0.5);
        Scope.PopulateDrawBuffers();
        AState.ResumeTiming();
        Channel->Draw(Canvas, kView, false);
    }
    AState.SetItemsProcessed(AState.iterations() * kSamples);
    AState.counters["points"] = double(Channel->GetDownsampledIntDrawBufferY()->GetSize());
}
BENCHMARK(DrawNewData)->Unit(benchmark::kMillisecond);

void DrawUnchanged(benchmark::State& AState)
{
    TBenchScope Scope;
    TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    const std::vector<double> Y = Signal();
    Channel->GetData()->AddYData(Y.data(), kSamples);
    Scope.PopulateDrawBuffers();
    TCountingCanvas Canvas;
    Channel->Draw(Canvas, kView, false);
    for (auto _ : AState)
        Channel->Draw(Canvas, kView, false);
}
BENCHMARK(DrawUnchanged)->Unit(benchmark::kMicrosecond);

void Downsample(benchmark::State& AState)
{
    const std::vector<double> Y = Signal();
    std::vector<int32_t> OG(1);
    std::vector<double> OY(2000);
    for (auto _ : AState) {
        const TQVDownsampled R =
            QVDownsampleColumns(Y.data(), kSamples, 1000, nullptr, 0, OY.data(), nullptr, OG.data());
        benchmark::DoNotOptimize(R);
        benchmark::DoNotOptimize(OY.data());
    }
    AState.SetItemsProcessed(AState.iterations() * kSamples);
}
BENCHMARK(Downsample)->Unit(benchmark::kMicrosecond);

} // namespace
