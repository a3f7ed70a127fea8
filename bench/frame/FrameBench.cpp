// Frame cost of a scope against a peer plotting widget, on the same data and the same
// 1000x600 picture rendered offscreen into an image.
//
// FullFrame/<n>/<library>: a ramp channel of n noisy samples is replaced by new samples
//   (not timed: that is intake), then one frame is rendered and timed: for the scope the
//   refresh tick that hands the data to the draw stage and the paint; for the peer its render
//   with adaptive sampling on.
// IdleFrame/<n>/<library>: a frame with no new data.
// ReadFloor/<n>: one plain read of the n samples, the memory-bandwidth floor of any frame
//   that looks at every sample.
// RollingWindow: 1,000,000 samples kept, blocks of 4096 arriving at 10 million samples per
//   second, a frame every 100 ms; paint_cpu_share is the paint's CPU time per 100 ms
//   of signal.
//
// The peer (QCustomPlot) is used only when it was found at configure time.

#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QVScopeWidget.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#if QV_HAVE_QCUSTOMPLOT
#include <qcustomplot.h>
#endif

#include <cmath>
#include <ctime>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 600;

std::vector<double> NoisySine(int64_t ACount, uint32_t ASeed)
{
    std::mt19937 Gen(ASeed);
    std::normal_distribution<double> Noise(0.0, 0.2);
    std::vector<double> Y(static_cast<size_t>(ACount));
    for (int64_t i = 0; i < ACount; ++i)
        Y[size_t(i)] = std::sin(2.0 * std::numbers::pi * double(i) / double(ACount) * 7.0) + Noise(Gen);
    return Y;
}

// CPU time of the process: the paint runs on this thread, and the offscreen platform keeps
// no other thread busy.
double CpuSeconds()
{
    return double(std::clock()) / double(CLOCKS_PER_SEC);
}

// A scope sized to the picture, with a surface over its own bitmap.
struct TScopeRig {
    explicit TScopeRig(int64_t ACount)
    {
        Scope.SetCanvasFactory(qv::QLQtCanvasFactory());
        Scope.SetBounds(0, 0, kWidth, kHeight);
        Scope.SetSizeLimit(uint32_t(ACount));
    }
    void Feed(const std::vector<double>& AY)
    {
        Scope.GetChannels()->GetItem(0)->GetData()->SetYData(AY.data(), uint32_t(AY.size()));
    }
    void Frame()
    {
        Scope.RefreshView();
        Scope.Paint();
        benchmark::DoNotOptimize(Scope.GetBitmap().GetBits());
    }
    qv::TQVScope Scope;
};

void BM_FullFrameScope(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    const auto A = NoisySine(N, 1), B = NoisySine(N, 2);
    TScopeRig Rig(N);
    bool Flip = false;
    double HandOver = 0, Paint = 0;
    for (auto _ : AState) {
        AState.PauseTiming();
        Rig.Feed((Flip = !Flip) ? A : B);
        AState.ResumeTiming();
        // The two halves of the frame are reported apart: the refresh tick's hand-over of
        // the new samples (the only part that reads them all) and the paint.
        const double T0 = CpuSeconds();
        Rig.Scope.RefreshView();
        const double T1 = CpuSeconds();
        Rig.Scope.Paint();
        benchmark::DoNotOptimize(Rig.Scope.GetBitmap().GetBits());
        HandOver += T1 - T0;
        Paint += CpuSeconds() - T1;
    }
    AState.SetItemsProcessed(AState.iterations() * N);
    AState.counters["handover_ms"] = 1e3 * HandOver / double(AState.iterations());
    AState.counters["paint_ms"] = 1e3 * Paint / double(AState.iterations());
}

// One frame of new data painted at a device pixel ratio (the argument in tenths): the cost
// of a HiDPI screen against ratio 1.
void BM_FullFrameScopeAtRatio(benchmark::State& AState)
{
    const auto A = NoisySine(1'000'000, 1), B = NoisySine(1'000'000, 2);
    TScopeRig Rig(1'000'000);
    Rig.Scope.SetDevicePixelRatio(double(AState.range(0)) / 10.0);
    bool Flip = false;
    double Paint = 0;
    for (auto _ : AState) {
        AState.PauseTiming();
        Rig.Feed((Flip = !Flip) ? A : B);
        Rig.Scope.RefreshView();
        AState.ResumeTiming();
        const double T0 = CpuSeconds();
        Rig.Scope.Paint();
        benchmark::DoNotOptimize(Rig.Scope.GetBitmap().GetBits());
        Paint += CpuSeconds() - T0;
    }
    AState.counters["paint_ms"] = 1e3 * Paint / double(AState.iterations());
}

void BM_IdleFrameScope(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    TScopeRig Rig(N);
    Rig.Feed(NoisySine(N, 1));
    Rig.Frame();
    for (auto _ : AState)
        Rig.Frame();
}

void BM_ReadFloor(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    const auto Y = NoisySine(N, 1);
    // Four independent sums: a single running sum would wait on the latency of each addition
    // and measure the adder, not the memory.
    for (auto _ : AState) {
        double S0 = 0, S1 = 0, S2 = 0, S3 = 0;
        size_t i = 0;
        for (; i + 4 <= Y.size(); i += 4) {
            S0 += Y[i];
            S1 += Y[i + 1];
            S2 += Y[i + 2];
            S3 += Y[i + 3];
        }
        for (; i < Y.size(); ++i)
            S0 += Y[i];
        benchmark::DoNotOptimize((S0 + S1) + (S2 + S3));
    }
    AState.SetItemsProcessed(AState.iterations() * N);
}

void BM_RollingWindowScope(benchmark::State& AState)
{
    constexpr int64_t Kept = 1'000'000;
    constexpr int32_t Block = 4096;
    constexpr int64_t PerFrame = 1'000'000; // 10 MS/s for 100 ms
    TScopeRig Rig(Kept);
    const auto Source = NoisySine(Kept, 3);
    qv::TQVChannelData& Data = *Rig.Scope.GetChannels()->GetItem(0)->GetData();
    int64_t Pos = 0;
    double PaintSeconds = 0;
    int64_t Frames = 0;
    for (auto _ : AState) {
        AState.PauseTiming();
        for (int64_t Done = 0; Done < PerFrame; Done += Block) {
            Data.AddYData(Source.data() + Pos, Block);
            Pos = (Pos + Block) % (Kept - Block);
        }
        AState.ResumeTiming();
        // CPU time: on a loaded machine the wall clock also counts the time spent waiting for
        // a core.
        const double T0 = CpuSeconds();
        Rig.Frame();
        PaintSeconds += CpuSeconds() - T0;
        ++Frames;
    }
    AState.counters["paint_ms"] = 1e3 * PaintSeconds / double(Frames);
    AState.counters["paint_cpu_share"] = PaintSeconds / (0.1 * double(Frames));
}

#if QV_HAVE_QCUSTOMPLOT
// The peer with its adaptive sampling on, rendered through a painter into an image.
struct TPeerRig {
    explicit TPeerRig() : Image(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied)
    {
        Plot.resize(kWidth, kHeight);
        Plot.setNotAntialiasedElements(QCP::aeAll);
        Graph = Plot.addGraph();
        Graph->setAdaptiveSampling(true);
    }
    void Feed(const QVector<double>& AKeys, const QVector<double>& AY)
    {
        Graph->setData(AKeys, AY, true);
        Plot.rescaleAxes();
    }
    void Frame()
    {
        QCPPainter Painter(&Image);
        Plot.toPainter(&Painter, kWidth, kHeight);
        benchmark::DoNotOptimize(Image.constBits());
    }
    QImage Image;
    QCustomPlot Plot;
    QCPGraph* Graph = nullptr;
};

QVector<double> ToQVector(const std::vector<double>& AV)
{
    return QVector<double>(AV.begin(), AV.end());
}

QVector<double> Keys(int64_t ACount)
{
    QVector<double> K(ACount);
    for (int64_t i = 0; i < ACount; ++i)
        K[i] = double(i);
    return K;
}

void BM_FullFramePeer(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    const auto K = Keys(N);
    const auto A = ToQVector(NoisySine(N, 1)), B = ToQVector(NoisySine(N, 2));
    TPeerRig Rig;
    bool Flip = false;
    for (auto _ : AState) {
        AState.PauseTiming();
        Rig.Feed(K, (Flip = !Flip) ? A : B);
        AState.ResumeTiming();
        Rig.Frame();
    }
    AState.SetItemsProcessed(AState.iterations() * N);
}

void BM_IdleFramePeer(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    TPeerRig Rig;
    Rig.Feed(Keys(N), ToQVector(NoisySine(N, 1)));
    Rig.Frame();
    for (auto _ : AState)
        Rig.Frame();
}

BENCHMARK(BM_FullFramePeer)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdleFramePeer)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(BM_ReadFloor)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FullFrameScope)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdleFrameScope)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FullFrameScopeAtRatio)->Arg(10)->Arg(15)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RollingWindowScope)->Unit(benchmark::kMillisecond)->Iterations(30);

} // namespace

int main(int argc, char** argv)
{
    // Offscreen unless a platform was chosen: the benchmark needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
