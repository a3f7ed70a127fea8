// Soak run: four producer threads feed four channels of a scope, and a fifth feeds rows to a
// waterfall, while the controls' thread ticks and paints both at 30 Hz, zooms and drags, saves
// and reloads their settings, and deletes a channel and adds it back. At the end it says whether
// every sample a channel took and every row the waterfall took reached the draw stage, whether
// memory stayed flat after the warm-up, and how long frames took.
//
// Usage: qv_soak [--seconds N] [--rate SAMPLES_PER_SECOND_PER_CHANNEL] [--rows ROWS_PER_SECOND]
// Exit status 0 when every check holds, 1 otherwise.
#include <qv/QVScope.h>
#include <qv/QVWaterfall.h>
#include <qv/qt/QLJsonForm.h>
#include <qv/qt/QVDisplayWidget.h>

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace qv;
using TClock = std::chrono::steady_clock;

namespace {

constexpr int kChannels = 4;
constexpr uint32_t kBlock = 4096;
constexpr uint32_t kSizeLimit = 1'000'000;
constexpr int32_t kRowSize = 1024;
constexpr int32_t kHistoryRows = 512;

// Resident memory of the process in bytes.
uint64_t ResidentBytes()
{
    std::ifstream Statm("/proc/self/statm");
    uint64_t Pages = 0, Resident = 0;
    Statm >> Pages >> Resident;
    return Resident * 4096;
}

// One producer: consecutive numbers 0, 1, 2, ... into its channel's writer, paced to a rate.
// A write refused because the channel went ends that run of numbers; the producer waits for
// the channel that replaces it and starts again from 0.
struct TProducer {
    std::mutex Section;
    std::shared_ptr<TQVChannelWriter> Writer; // replaced by the control's thread
    std::atomic<uint64_t> Taken{0};           // of the present writer
    std::atomic<uint64_t> Generation{0};      // counts writers handed over
    uint64_t Dropped = 0;                     // written only by the producer
    uint64_t Sent = 0;

    void SetWriter(std::shared_ptr<TQVChannelWriter> AWriter)
    {
        std::lock_guard Lock(Section);
        Writer = std::move(AWriter);
        ++Generation;
    }

    void Run(const std::atomic<bool>& AStop, double ARate)
    {
        std::vector<double> Block(kBlock);
        std::shared_ptr<TQVChannelWriter> Mine;
        uint64_t MyGeneration = 0, Next = 0;
        const auto Start = TClock::now();
        uint64_t Total = 0;
        while (!AStop.load()) {
            {
                std::lock_guard Lock(Section);
                if (Generation != MyGeneration) {
                    Mine = Writer;
                    MyGeneration = Generation;
                    Next = 0;
                    Taken = 0;
                }
            }
            for (uint32_t I = 0; I < kBlock; ++I)
                Block[I] = double(Next + I);
            Sent += kBlock;
            if (Mine && Mine->AddYData(Block.data(), kBlock)) {
                Next += kBlock;
                Taken += kBlock;
            } else {
                Dropped += kBlock;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            Total += kBlock;
            const auto Due = Start + std::chrono::duration<double>(double(Total) / ARate);
            std::this_thread::sleep_until(std::chrono::time_point_cast<TClock::duration>(Due));
        }
    }
};

// What the control's thread has seen of one channel's draw stage: its samples must always be
// consecutive numbers, and each tick's first sample must follow on from the last tick's end, so
// that every number reached the draw stage at least once.
struct TChecker {
    uint64_t Generation = 0;
    double LastEnd = -1.0; // the last number seen at the end of the draw stage
    uint64_t Faults = 0;

    // AMaySkip: the tick came so late that the kept window may have scrolled past numbers
    // unseen; they reached the draw stage, this thread only missed them.
    void Check(const TQVChannelData& AData, std::mt19937& ARandom, bool AMaySkip = false)
    {
        const int32_t N = AData.GetDrawSize();
        if (N == 0)
            return;
        const double First = AData.GetDrawSampleY(0);
        const double Last = AData.GetDrawSampleY(N - 1);
        if (Last - First != double(N - 1) || (First > LastEnd + 1.0 && !AMaySkip))
            ++Faults;
        // Spot checks inside: a sample out of place breaks the numbering.
        for (int K = 0; K < 64; ++K) {
            const int32_t I = int32_t(ARandom() % uint32_t(N));
            if (AData.GetDrawSampleY(I) != First + I)
                ++Faults;
        }
        LastEnd = Last;
    }
};

// The waterfall's producer: rows whose first sample is the row's number 0, 1, 2, ..., the
// rest a pattern, paced to a rate.
struct TRowProducer {
    uint64_t Sent = 0;

    void Run(TQVWaterfall& AWaterfall, const std::atomic<bool>& AStop, double ARate)
    {
        std::vector<double> Row(kRowSize);
        const auto Start = TClock::now();
        while (!AStop.load()) {
            Row[0] = double(Sent);
            for (int32_t I = 1; I < kRowSize; ++I)
                Row[size_t(I)] = std::sin(0.01 * double(I) * double(1 + Sent % 64));
            AWaterfall.GetData()->AddData(Row.data(), kRowSize);
            ++Sent;
            const auto Due = Start + std::chrono::duration<double>(double(Sent) / ARate);
            std::this_thread::sleep_until(std::chrono::time_point_cast<TClock::duration>(Due));
        }
    }
};

// What the controls' thread has seen of the waterfall's drawn rows: consecutive numbers, each
// tick following on from the last, so that every row reached the picture.
struct TRowChecker {
    double LastEnd = -1.0;
    uint64_t Faults = 0;

    void Check(const TQVRealBufferArray& ARows, bool AMaySkip = false)
    {
        if (ARows.empty())
            return;
        const double First = ARows.front()->GetItem(0);
        for (size_t I = 0; I < ARows.size(); ++I)
            if (ARows[I]->GetSize() != kRowSize || ARows[I]->GetItem(0) != First + double(I))
                ++Faults;
        if (First > LastEnd + 1.0 && !AMaySkip)
            ++Faults;
        LastEnd = ARows.back()->GetItem(0);
    }
};

double Percentile(std::vector<double> AValues, double AShare)
{
    if (AValues.empty())
        return 0.0;
    std::sort(AValues.begin(), AValues.end());
    return AValues[std::min(AValues.size() - 1, size_t(AShare * double(AValues.size())))];
}

} // namespace

int main(int argc, char** argv)
{
    int Seconds = 600;
    double Rate = 2'000'000.0;
    double RowRate = 1000.0;
    for (int I = 1; I < argc; ++I) {
        const std::string Arg = argv[I];
        if (Arg == "--seconds" && I + 1 < argc)
            Seconds = std::atoi(argv[++I]);
        else if (Arg == "--rate" && I + 1 < argc)
            Rate = std::atof(argv[++I]);
        else if (Arg == "--rows" && I + 1 < argc)
            RowRate = std::atof(argv[++I]);
        else {
            std::fprintf(stderr, "usage: qv_soak [--seconds N] [--rate SAMPLES_PER_SECOND_PER_CHANNEL] "
                                 "[--rows ROWS_PER_SECOND]\n");
            return 2;
        }
    }
    // A tick must not take more rows than the history holds, or rows would scroll out unseen.
    if (Seconds < 1 || !(Rate >= 1000.0 && Rate <= 1e9) || !(RowRate >= 1.0 && RowRate <= 10000.0)) {
        std::fprintf(stderr, "qv_soak: --seconds takes a whole number of at least 1, --rate 1000 to 1e9 and "
                             "--rows 1 to 10000\n");
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication App(argc, argv);

    TQVScope Scope;
    Scope.SetCanvasFactory(QLQtCanvasFactory());
    Scope.SetBounds(0, 0, 1000, 600);
    Scope.SetSizeLimit(kSizeLimit);
    Scope.GetZooming()->SetHoldOnZoom(false);
    while (Scope.GetChannels()->GetCount() < kChannels)
        Scope.GetChannels()->Add();
    std::array<TProducer, kChannels> Producers;
    std::array<TChecker, kChannels> Checkers;
    for (int C = 0; C < kChannels; ++C)
        Producers[size_t(C)].SetWriter(Scope.GetChannels()->GetItem(C)->GetWriter());

    TQVWaterfall Waterfall;
    Waterfall.SetCanvasFactory(QLQtCanvasFactory());
    Waterfall.SetBounds(0, 0, 1000, 400);
    Waterfall.GetXAxis()->SetSamples(kHistoryRows);
    Waterfall.GetZooming()->SetHoldOnZoom(false);
    TRowProducer RowProducer;
    TRowChecker RowChecker;

    std::atomic<bool> Stop{false};
    std::vector<std::thread> Threads;
    for (auto& P : Producers)
        Threads.emplace_back([&P, &Stop, Rate] { P.Run(Stop, Rate); });
    Threads.emplace_back([&RowProducer, &Waterfall, &Stop, RowRate] { RowProducer.Run(Waterfall, Stop, RowRate); });

    std::mt19937 Random(12345);
    std::vector<double> FrameMs;
    const auto Start = TClock::now();
    const auto End = Start + std::chrono::seconds(Seconds);
    const auto WarmUp = Start + std::chrono::seconds(std::max(5, Seconds / 5));
    uint64_t RssAtWarmUp = 0, RssMax = 0, RssStart = ResidentBytes();
    uint64_t Reloads = 0, Recreated = 0, Gestures = 0;
    int Tick = 0, LateTicks = 0;
    // How long the kept window of a channel and the waterfall's history span: a tick later
    // than that may miss samples or rows that scrolled through unseen.
    const double ChannelWindow = 0.8 * double(kSizeLimit) / Rate, RowWindow = 0.8 * double(kHistoryRows) / RowRate;
    auto LastCheck = Start;
    for (auto Next = Start; TClock::now() < End; ++Tick) {
        Next += std::chrono::microseconds(33333);
        std::this_thread::sleep_until(Next);

        const auto FrameStart = TClock::now();
        Scope.RefreshView();
        Scope.Paint();
        Waterfall.RefreshView();
        Waterfall.Paint();
        FrameMs.push_back(std::chrono::duration<double, std::milli>(TClock::now() - FrameStart).count());

        const double SinceCheck = std::chrono::duration<double>(FrameStart - LastCheck).count();
        LastCheck = FrameStart;
        LateTicks += SinceCheck > std::min(ChannelWindow, RowWindow);
        for (int C = 0; C < kChannels; ++C) {
            TChecker& Checker = Checkers[size_t(C)];
            const uint64_t Generation = Producers[size_t(C)].Generation.load();
            if (Checker.Generation != Generation)
                Checker = TChecker{Generation, -1.0, Checker.Faults};
            Checker.Check(*Scope.GetChannels()->GetItem(C)->GetData(), Random, SinceCheck > ChannelWindow);
        }
        RowChecker.Check(Waterfall.GetData()->GetDrawData(), SinceCheck > RowWindow);

        if (Tick % 60 == 30) { // a zoom and a drag in the plot, then back
            const TRect View = Scope.GetDataView()->GetDrawRect();
            Scope.ZoomBy(0.5);
            Scope.MouseDown(mbLeft, ssLeft, float(View.Left + 50), float(View.Top + 40));
            Scope.MouseMove(ssLeft, float(View.Left + 200), float(View.Top + 150));
            Scope.MouseUp(mbLeft, 0, float(View.Left + 200), float(View.Top + 150));
            Scope.UndoZoom();
            Scope.ZoomOff();
            Waterfall.ZoomBy(0.5);
            Waterfall.UndoZoom();
            ++Gestures;
        }
        if (Tick % 150 == 75) { // settings saved and loaded back
            QLLoadFromJson(Scope, QLSaveToJson(Scope));
            QLLoadFromJson(Waterfall, QLSaveToJson(Waterfall));
            ++Reloads;
        }
        if (Tick % 210 == 105) { // the last channel deleted and added back
            Scope.GetChannels()->Delete(kChannels - 1);
            Scope.GetChannels()->Add();
            Producers[kChannels - 1].SetWriter(Scope.GetChannels()->GetItem(kChannels - 1)->GetWriter());
            ++Recreated;
        }
        if (Tick % 30 == 0) {
            const uint64_t Rss = ResidentBytes();
            if (TClock::now() >= WarmUp) {
                if (RssAtWarmUp == 0)
                    RssAtWarmUp = Rss;
                RssMax = std::max(RssMax, Rss);
            }
        }
    }
    Stop = true;
    for (auto& T : Threads)
        T.join();

    bool Ok = true;
    // The last numbers every channel took, and the last rows, reach the draw stage with one
    // more tick.
    Scope.RefreshView();
    Waterfall.RefreshView();
    Waterfall.Paint();
    RowChecker.Check(Waterfall.GetData()->GetDrawData());
    if (RowProducer.Sent > 0 && RowChecker.LastEnd != double(RowProducer.Sent - 1)) {
        std::printf("waterfall: the last row drawn is %.0f, the producer's last row is %llu\n", RowChecker.LastEnd,
                    static_cast<unsigned long long>(RowProducer.Sent - 1));
        Ok = false;
    }
    if (RowChecker.Faults > 0) {
        std::printf("waterfall: %llu drawn histories were not consecutive rows following on from the last tick\n",
                    static_cast<unsigned long long>(RowChecker.Faults));
        Ok = false;
    }
    uint64_t Sent = 0, Dropped = 0, Faults = 0;
    for (int C = 0; C < kChannels; ++C) {
        TChecker& Checker = Checkers[size_t(C)];
        Checker.Check(*Scope.GetChannels()->GetItem(C)->GetData(), Random);
        const uint64_t Taken = Producers[size_t(C)].Taken.load();
        if (Taken > 0 && Checker.LastEnd != double(Taken - 1)) {
            std::printf("channel %d: the draw stage ends at %.0f, the producer's last number is %llu\n", C,
                        Checker.LastEnd, static_cast<unsigned long long>(Taken - 1));
            Ok = false;
        }
        Sent += Producers[size_t(C)].Sent;
        Dropped += Producers[size_t(C)].Dropped;
        Faults += Checker.Faults;
    }
    if (Faults > 0) {
        std::printf("%llu draw stages were not consecutive numbers following on from the last tick\n",
                    static_cast<unsigned long long>(Faults));
        Ok = false;
    }
    const double P50 = Percentile(FrameMs, 0.50), P99 = Percentile(FrameMs, 0.99);
    if (P99 >= 33.0) {
        std::printf("99th percentile frame %.2f ms is not under 33 ms\n", P99);
        Ok = false;
    }
    const uint64_t Allowed = RssAtWarmUp + RssAtWarmUp / 10 + (32u << 20);
    if (RssMax > Allowed) {
        std::printf("memory grew after the warm-up: %.1f MB then, %.1f MB at most since\n", RssAtWarmUp / 1048576.0,
                    RssMax / 1048576.0);
        Ok = false;
    }
    std::printf("soak: %d s, %d frames (p50 %.2f ms, p99 %.2f ms), %.1f M samples sent, %.1f M dropped by "
                "channels that went, %llu waterfall rows, %llu gestures, %llu reloads, %llu channels recreated, %d "
                "ticks too late to see every sample, memory "
                "%.1f MB at "
                "start, %.1f MB after warm-up, %.1f MB at most: %s\n",
                Seconds, Tick, P50, P99, Sent / 1e6, Dropped / 1e6, static_cast<unsigned long long>(RowProducer.Sent),
                static_cast<unsigned long long>(Gestures), static_cast<unsigned long long>(Reloads),
                static_cast<unsigned long long>(Recreated), LateTicks, RssStart / 1048576.0, RssAtWarmUp / 1048576.0,
                RssMax / 1048576.0, Ok ? "passed" : "FAILED");
    return Ok ? 0 : 1;
}
