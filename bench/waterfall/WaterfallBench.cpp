// Frame cost of a waterfall against a peer colour map, on the same rows and the same
// 1000x600 picture rendered offscreen into an image. Rows are 4096 samples.
//
// RowFrame/<rows>/waterfall: a history of <rows> rows is full and every row has been shown
//   once (see RowFrames); one new row arrives and one frame is rendered (the row's intake
//   and the paint are timed together).
// RowFramePeer/1000: QCustomPlot's QCPColorMap of 1000 x 4096 cells; one new row is written
//   into its column (a ring: no cell moves) and the plot is rendered, which recolours the
//   whole map.
// Intake: a producer thread hands 10,000 rows a second to the waterfall for 3 seconds while
//   this thread paints at 30 Hz; rows_per_s is the rate the history took in, lost_rows the
//   rows that never reached it, paint_ms the mean frame.
//
// The peer is used only when it was found at configure time.

#include <qv/QVWaterfall.h>
#include <qv/qt/QVDisplayWidget.h>

#include "support/QtBenchMain.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#if QV_HAVE_QCUSTOMPLOT
#include "support/PeerFrame.h"
#endif

#include <atomic>
#include <chrono>
#include <cmath>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 600;
constexpr int kSamples = 4096;

// Row I: a peak that drifts with I over noise, with the row number in sample 0. The rows
// come from a bank made once, so that making a row costs a copy, as a producer's would.
void MakeRow(std::vector<double>& ARow, int64_t AIndex)
{
    constexpr int CBank = 64;
    static const std::vector<std::vector<double>> Bank = [] {
        std::mt19937 Gen(3);
        std::normal_distribution<double> Noise(0.0, 2.0);
        std::vector<std::vector<double>> Rows(CBank, std::vector<double>(kSamples));
        for (int R = 0; R < CBank; ++R) {
            const double Peak = kSamples / 2 + kSamples / 3 * std::sin(2 * 3.14159265 * R / CBank);
            for (int J = 0; J < kSamples; ++J)
                Rows[size_t(R)][size_t(J)] = -80.0 + 70.0 * std::exp(-std::pow((J - Peak) / 20.0, 2)) + Noise(Gen);
        }
        return Rows;
    }();
    ARow = Bank[size_t(AIndex % CBank)];
    ARow[0] = double(AIndex);
}

struct TWaterfallRig {
    explicit TWaterfallRig(int32_t ARows)
    {
        Waterfall.SetCanvasFactory(qv::QLQtCanvasFactory());
        Waterfall.SetBounds(0, 0, kWidth, kHeight);
        Waterfall.GetXAxis()->SetSamples(ARows);
        qv::TQVLevelAxis& Levels = *Waterfall.GetLevels()->GetAxis();
        Levels.SetAutoscale(false);
        Levels.SetMin(-100.0);
        Levels.SetMax(0.0);
    }
    void Add(int64_t AIndex)
    {
        MakeRow(Row, AIndex);
        Waterfall.GetData()->AddData(Row.data(), kSamples);
    }
    void Frame()
    {
        Waterfall.Paint();
        benchmark::DoNotOptimize(Waterfall.GetBitmap().GetBits());
    }
    qv::TQVWaterfall Waterfall;
    std::vector<double> Row = std::vector<double>(kSamples);
};

// A frame after each new row, once the rig has filled its history.
template <class TRig>
void RowFrames(benchmark::State& AState)
{
    const int32_t Rows = int32_t(AState.range(0));
    TRig Rig(Rows);
    int64_t Next = 0;
    for (; Next < Rows; ++Next)
        Rig.Add(Next);
    Rig.Frame();
    // Warm-up: a history longer than the picture is wide shows each frame other rows, and a
    // row is sampled at the picture's lines the first time it is shown, so the steady state
    // begins once every row has been shown (Rows / width frames).
    for (int32_t Warm = 0; Warm < Rows / kWidth + 1; ++Warm, ++Next) {
        Rig.Add(Next);
        Rig.Frame();
    }
    for (auto _ : AState) {
        Rig.Add(Next++);
        Rig.Frame();
    }
}

void BM_RowFrame(benchmark::State& AState)
{
    RowFrames<TWaterfallRig>(AState);
}

// CPU time of the painting thread.
double ThreadCpuSeconds()
{
    timespec T{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &T);
    return double(T.tv_sec) + double(T.tv_nsec) * 1e-9;
}

void BM_Intake(benchmark::State& AState)
{
    for (auto _ : AState) {
        TWaterfallRig Rig(1000);
        std::atomic<bool> Stop{false};
        std::atomic<int64_t> Sent{0};
        std::thread Producer([&] {
            std::vector<double> Row(kSamples);
            auto Next = std::chrono::steady_clock::now();
            for (int64_t I = 0; !Stop.load(); ++I) {
                MakeRow(Row, I);
                Rig.Waterfall.GetData()->AddData(Row.data(), kSamples);
                Sent = I + 1;
                if (I % 100 == 99) { // 100 rows every 10 ms
                    Next += std::chrono::milliseconds(10);
                    std::this_thread::sleep_until(Next);
                }
            }
        });
        int64_t Taken = 0, Lost = 0, Frames = 0;
        double Last = -1.0, Paint = 0.0;
        const auto Start = std::chrono::steady_clock::now();
        auto NextFrame = Start;
        while (std::chrono::steady_clock::now() - Start < std::chrono::seconds(3)) {
            const double T0 = ThreadCpuSeconds();
            Rig.Frame();
            Paint += ThreadCpuSeconds() - T0;
            ++Frames;
            // The rows that reached the history since the last frame follow on without a gap.
            for (const auto& Row : Rig.Waterfall.GetDrawData()) {
                const double Index = Row->GetItem(0);
                if (Index > Last) {
                    Lost += int64_t(Index - Last) - 1;
                    ++Taken;
                    Last = Index;
                }
            }
            NextFrame += std::chrono::microseconds(33333);
            std::this_thread::sleep_until(NextFrame);
        }
        Stop = true;
        Producer.join();
        const double Seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
        AState.counters["rows_per_s"] = double(Taken) / Seconds;
        AState.counters["sent_per_s"] = double(Sent.load()) / Seconds;
        AState.counters["lost_rows"] = double(Lost);
        AState.counters["paint_ms"] = 1e3 * Paint / double(Frames);
        AState.counters["frames_per_s"] = double(Frames) / Seconds;
    }
}

#if QV_HAVE_QCUSTOMPLOT
struct TPeerRig {
    explicit TPeerRig(int ARows) : Image(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied), Rows(ARows)
    {
        Plot.resize(kWidth, kHeight);
        Map = new QCPColorMap(Plot.xAxis, Plot.yAxis);
        Map->data()->setSize(ARows, kSamples);
        Map->data()->setRange(QCPRange(0, ARows - 1), QCPRange(0, kSamples - 1));
        Map->setGradient(QCPColorGradient::gpJet);
        Map->setDataRange(QCPRange(-100.0, 0.0));
        Map->setInterpolate(false);
        Plot.rescaleAxes();
    }
    void Add(int64_t AIndex)
    {
        MakeRow(Row, AIndex);
        const int Column = int(AIndex % Rows);
        for (int J = 0; J < kSamples; ++J)
            Map->data()->setCell(Column, J, Row[size_t(J)]);
    }
    void Frame() { qvbench::PaintPeerFrame(Plot, Image); }
    QImage Image;
    QCustomPlot Plot;
    QCPColorMap* Map = nullptr;
    int Rows;
    std::vector<double> Row = std::vector<double>(kSamples);
};

void BM_RowFramePeer(benchmark::State& AState)
{
    RowFrames<TPeerRig>(AState);
}

BENCHMARK(BM_RowFramePeer)->Arg(1000)->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(BM_RowFrame)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Intake)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    return qvbench::RunQtBenchmarks(argc, argv);
}
