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
// RollingWindow: 10,000,000 samples kept, blocks of 4096 arriving at 10 million samples per
//   second, a frame every 100 ms; paint_cpu_share is the paint's CPU time per 100 ms
//   of signal.
// ZoomPan/<n>: a scripted sequence of 100 zooms and pans over a ramp channel of n samples,
//   one frame (refresh and paint) after each; frames_per_s over the sequence. At 1,000,000
//   samples the record is the channel's own; ZoomPanMapped/1000000000 reads 8 GB of doubles
//   from a memory-mapped file through SetYDataNoCopy. That case runs only when the
//   environment variable QV_BENCH_MAPPED_FILE names the file: it is made there (and kept)
//   when missing.
//
// The peer (QCustomPlot) is used only when it was found at configure time.

#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QVScopeWidget.h>

#include "support/QtBenchMain.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#if QV_HAVE_QCUSTOMPLOT
#include "support/PeerFrame.h"
#endif

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <numbers>
#include <random>
#include <utility>
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
        // the new samples (with the summary of their extremes that intake kept) and the paint.
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
    constexpr int64_t Kept = 10'000'000;
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

// The X windows of the scripted sequence over a record of ACount samples: zoom in around a
// point, pan right, pan left, zoom out, from the whole record down to a few thousand samples.
std::vector<std::pair<double, double>> ZoomPanScript(int64_t ACount)
{
    std::mt19937 Gen(7);
    std::uniform_real_distribution<double> Where(0.2, 0.8);
    std::vector<std::pair<double, double>> Windows;
    double Lo = 0, Hi = double(ACount - 1);
    for (int k = 0; k < 100; ++k) {
        const double Span = Hi - Lo;
        switch (k % 4) {
        case 0: { // in by 4 around a point, not below 2000 samples
            const double C = Lo + Where(Gen) * Span, S = std::max(Span / 4, 2000.0);
            Lo = C - S / 2;
            Hi = C + S / 2;
            break;
        }
        case 1: Lo += 0.25 * Span, Hi += 0.25 * Span; break;
        case 2: Lo -= 0.4 * Span, Hi -= 0.4 * Span; break;
        default: Lo -= Span / 2, Hi += Span / 2; break; // out by 2
        }
        const double W = std::min(Hi - Lo, double(ACount - 1));
        Lo = std::clamp(Lo, 0.0, double(ACount - 1) - W);
        Hi = Lo + W;
        Windows.emplace_back(Lo, Hi);
    }
    return Windows;
}

void RunZoomPan(benchmark::State& AState, TScopeRig& ARig, int64_t ACount)
{
    const auto Script = ZoomPanScript(ACount);
    qv::TQVScopeXAxis& X = *ARig.Scope.GetXAxis();
    ARig.Frame();
    double Seconds = 0;
    int64_t Frames = 0;
    for (auto _ : AState) {
        for (const auto& [Lo, Hi] : Script) {
            const double T0 = CpuSeconds();
            X.ZoomToData(Lo, Hi, false);
            ARig.Frame();
            Seconds += CpuSeconds() - T0;
            ++Frames;
        }
    }
    AState.counters["frame_ms"] = 1e3 * Seconds / double(Frames);
    AState.counters["frames_per_s"] = double(Frames) / Seconds;
}

void BM_ZoomPanScope(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    TScopeRig Rig(N);
    Rig.Feed(NoisySine(N, 1));
    RunZoomPan(AState, Rig, N);
}

// A read-only mapping of a file of doubles, unmapped when the last reader lets it go.
struct TMapping {
    ~TMapping()
    {
        if (Data != MAP_FAILED)
            munmap(Data, Bytes);
    }
    void* Data = MAP_FAILED;
    size_t Bytes = 0;
};

// Writes ACount samples of a noisy sine to APath, a megabyte at a time.
bool MakeSampleFile(const char* APath, int64_t ACount)
{
    FILE* F = std::fopen(APath, "wb");
    if (!F)
        return false;
    std::mt19937 Gen(1);
    std::normal_distribution<double> Noise(0.0, 0.2);
    std::vector<double> Chunk(1 << 17);
    bool Ok = true;
    for (int64_t Done = 0; Done < ACount && Ok; Done += int64_t(Chunk.size())) {
        const size_t Count = size_t(std::min<int64_t>(int64_t(Chunk.size()), ACount - Done));
        for (size_t i = 0; i < Count; ++i)
            Chunk[i] = std::sin(2.0 * std::numbers::pi * double(Done + int64_t(i)) / double(ACount) * 7.0) + Noise(Gen);
        Ok = std::fwrite(Chunk.data(), sizeof(double), Count, F) == Count;
    }
    return std::fclose(F) == 0 && Ok;
}

void BM_ZoomPanMapped(benchmark::State& AState)
{
    const int64_t N = AState.range(0);
    const char* Path = std::getenv("QV_BENCH_MAPPED_FILE");
    if (!Path || !*Path) {
        AState.SkipWithError("set QV_BENCH_MAPPED_FILE to a file path (8 bytes a sample) to run this case");
        return;
    }
    struct stat Info {};
    if ((stat(Path, &Info) != 0 || Info.st_size != N * int64_t(sizeof(double))) && !MakeSampleFile(Path, N)) {
        AState.SkipWithError("cannot write the sample file");
        return;
    }
    auto Map = std::make_shared<TMapping>();
    Map->Bytes = size_t(N) * sizeof(double);
    const int Fd = open(Path, O_RDONLY);
    if (Fd >= 0) {
        Map->Data = mmap(nullptr, Map->Bytes, PROT_READ, MAP_SHARED, Fd, 0);
        close(Fd);
    }
    if (Map->Data == MAP_FAILED) {
        AState.SkipWithError("cannot map the sample file");
        return;
    }
    TScopeRig Rig(0);
    const double T0 = CpuSeconds();
    Rig.Scope.GetChannels()->GetItem(0)->GetData()->SetYDataNoCopy(
        std::make_shared<qv::TQVForeignRealBuffer>(static_cast<const double*>(Map->Data), int32_t(N), Map));
    AState.counters["intake_s"] = CpuSeconds() - T0;
    Map.reset(); // the channel holds the mapping now
    RunZoomPan(AState, Rig, N);
}

BENCHMARK(BM_ZoomPanScope)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ZoomPanMapped)->Arg(1'000'000'000)->Unit(benchmark::kMillisecond)->Iterations(3);

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
    void Frame() { qvbench::PaintPeerFrame(Plot, Image); }
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
    return qvbench::RunQtBenchmarks(argc, argv);
}
