// Value lookup on a painted channel: a mouse move's hit test, and the crossings of a cursor,
// on ramp channels of 1,000 to 10,000,000 samples in a 1000-pixel-wide view. The first
// lookup after a frame fills nothing in: a downsampled frame's lookups map single samples.
//
// HitTest: the mouse walks along the line, on a plotted point each call.
// Crossings: a vertical cursor's crossings (GetYPointsAtValue), at a value that moves.
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/display/QVScope.h"

#include "support/BenchCanvas.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

using namespace qv;

const TRect kView{0, 0, 1000, 600};

class TBenchScope : public TQVScope {
public:
    explicit TBenchScope(int32_t ASamples)
    {
        View.SetDrawRect(kView);
        TQVScopeYAxis* Y = GetYAxis();
        Y->GetAutoScaling()->SetEnabled(false);
        Y->GetMin()->SetValue(-2.0);
        Y->GetMax()->SetValue(2.0);
        std::vector<double> Samples(static_cast<size_t>(ASamples));
        for (int32_t j = 0; j < ASamples; ++j)
            Samples[size_t(j)] = std::sin(j * 6.0 / ASamples) + 0.01 * std::sin(j * 0.37);
        Channel()->GetData()->AddYData(Samples.data(), uint32_t(ASamples));
        PopulateDrawBuffers();
        qvbench::TBenchCanvas Canvas;
        Channel()->Draw(Canvas, kView, false);
    }
    TQVScopeChannel* Channel() const { return GetChannels()->GetItem(0); }
    TQVScopeDataView* GetDataView() const override { return const_cast<TQVScopeDataView*>(&View); }
    TQVScopeDataView View{this};
};

void HitTest(benchmark::State& AState)
{
    const int32_t N = int32_t(AState.range(0));
    TBenchScope Scope(N);
    TQVScopeChannel* Channel = Scope.Channel();
    // Mouse points on the line: every other plotted point, which for a downsampled frame is a
    // column's lowest pixel.
    const IQVIntegerBuffer& PX = *Channel->GetDownsampledIntDrawBufferX();
    const IQVIntegerBuffer& PY = *Channel->GetDownsampledIntDrawBufferY();
    std::vector<TPoint> Mouse;
    for (int32_t i = 0; i < PY.GetSize(); i += 2)
        Mouse.push_back(TPoint{PX.GetItem(i), PY.GetItem(i)});
    size_t Next = 0;
    int32_t Hits = 0;
    for (auto _ : AState) {
        const int32_t X = Mouse[Next].X, Y = Mouse[Next].Y;
        Next = (Next + 7) % Mouse.size();
        TPoint Point{};
        TQVHitDetectDirection Direction = hddBoth;
        double Fraction = 0.0;
        int32_t Begin = 0, End = 0;
        const double D = Channel->HitTest(X, Y, Point, Direction, Fraction, Begin, End);
        Hits += D < 3.0;
        benchmark::DoNotOptimize(D);
    }
    AState.counters["hit share"] = double(Hits) / double(AState.iterations());
}
BENCHMARK(HitTest)->Arg(1000)->Arg(100000)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

void Crossings(benchmark::State& AState)
{
    const int32_t N = int32_t(AState.range(0));
    TBenchScope Scope(N);
    TQVScopeChannel* Channel = Scope.Channel();
    int32_t Step = 0;
    size_t Found = 0;
    for (auto _ : AState) {
        const double Value = (N - 1) * double(Step) / 1000.0;
        Found += Channel->GetYPointsAtValue(Value).size();
        Step = (Step + 7) % 997;
    }
    AState.counters["per call"] = double(Found) / double(AState.iterations());
}
BENCHMARK(Crossings)->Arg(1000)->Arg(100000)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMicrosecond);

} // namespace
