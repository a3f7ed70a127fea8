// The axes' share of a refresh tick.
//
// AutoscaledTick/<samples>: one channel of <samples> noisy samples renewed every tick; the
// tick hands the data over, refreshes the X axis' sample count, writes the Y axis' history,
// and then the limits a paint reads (the X and Y zoomed printed scales) are computed. The
// hand-over copies the samples, so compare with HandOverOnly/<samples>, the same tick with
// no history kept and the limits left unread: the difference is what the axes cost.
//
// CachedLimits: the same limits read again without new data: only the caches answer.
//
// PaintAt/<offset>: a whole 800x400 paint whose Y axis shows 100 units from <offset>. Far
// from zero (1e12) the tick walks start 2^31 steps from zero and never reach the range.

#include "qv/QVScope.h"

#include "support/BenchCanvas.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

using namespace qv;

std::vector<double> Noise(int64_t ACount)
{
    std::vector<double> V(static_cast<size_t>(ACount));
    uint32_t State = 12345;
    for (double& X : V) {
        State = State * 1664525u + 1013904223u;
        X = std::sin(static_cast<double>(&X - V.data()) / 500.0) + (State >> 8) / double(1 << 24) * 0.1;
    }
    return V;
}

void RunTicks(benchmark::State& AState, bool AReadLimits)
{
    TQVScope Scope;
    if (!AReadLimits)
        Scope.GetYAxis()->GetAutoScaling()->SetMaxHistory(0);
    const std::vector<double> Data = Noise(AState.range(0));
    TQVChannelData& Channel = *Scope.GetChannels()->GetItem(0)->GetData();
    for (auto _ : AState) {
        Channel.SetYData(Data.data(), static_cast<uint32_t>(Data.size()));
        Scope.PopulateDrawBuffers();
        if (AReadLimits) {
            benchmark::DoNotOptimize(Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMax().GetValue());
            benchmark::DoNotOptimize(Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMin().GetValue());
            benchmark::DoNotOptimize(Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMax().GetValue());
        }
    }
    AState.SetItemsProcessed(AState.iterations() * AState.range(0));
}

void AutoscaledTick(benchmark::State& AState)
{
    RunTicks(AState, true);
}
void HandOverOnly(benchmark::State& AState)
{
    RunTicks(AState, false);
}

void CachedLimits(benchmark::State& AState)
{
    TQVScope Scope;
    const std::vector<double> Data = Noise(1 << 20);
    Scope.GetChannels()->GetItem(0)->GetData()->SetYData(Data.data(), static_cast<uint32_t>(Data.size()));
    Scope.PopulateDrawBuffers();
    for (auto _ : AState) {
        benchmark::DoNotOptimize(Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMax().GetValue());
        benchmark::DoNotOptimize(Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMin().GetValue());
    }
}

void PaintAt(benchmark::State& AState)
{
    TQVScope Scope;
    Scope.SetBounds(0, 0, 800, 400);
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Y.GetAutoScaling()->SetEnabled(false);
    Y.GetMin()->SetValue(double(AState.range(0)));
    Y.GetMax()->SetValue(double(AState.range(0)) + 100.0);
    const std::vector<double> Data = Noise(1000);
    Scope.GetChannels()->GetItem(0)->GetData()->SetYData(Data.data(), static_cast<uint32_t>(Data.size()));
    Scope.RefreshView();
    TQLBitmap Bitmap(800, 400);
    qvbench::TBenchCanvas Canvas;
    for (auto _ : AState)
        Scope.PaintToCanvas(Bitmap, Canvas, false);
}

} // namespace

BENCHMARK(PaintAt)->Arg(0)->Arg(1'000'000'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(AutoscaledTick)->Arg(1 << 12)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(HandOverOnly)->Arg(1 << 12)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(CachedLimits);
