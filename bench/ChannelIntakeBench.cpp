// Channel intake under a running refresh tick.
//
// AddYDataWithRefresh/<limit>: one producer adds blocks of 4096 doubles while another thread
// calls RefreshView every 100 ms (the hand-over to the draw stage). Each iteration also copies
// the same 4096 doubles with memcpy into a destination as large as what the channel keeps,
// alternating with the intake so that both see the same machine state; speed_ratio = memcpy
// time / intake time. Without a limit the channel is cleared every 16 Mi samples to bound its
// memory; the clear and the fresh pages after it count in the intake time, and the memcpy
// destination is fresh memory each 16 Mi samples as well. (Fresh pages cost far more than the
// copying on machines without transparent huge pages for malloc; with glibc,
// GLIBC_TUNABLES=glibc.malloc.hugetlb=1 turns them on for a run.)
//
// AddYPointAtLimit/<limit>, AddXYPointAtLimit/<limit>: single points into a full channel
// (every point drops the oldest), with the same refresh thread. The cost per point should not
// depend on the limit. ShiftByCopyPerPoint/<limit> is what a copy of both buffers per point
// costs, for comparison.
//
// PeakMemory/<limit>: the most bytes of sample storage the channel held at once (data and draw
// stage, as counted by the storage itself) while blocks and points arrive and the draw stage
// is renewed every millisecond; peak_per_16N = peak / (16 * limit), i.e. in units of one
// stage of X and Y.

#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/display/QVScope.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using TClock = std::chrono::steady_clock;
constexpr int32_t kBlock = 4096;
constexpr int64_t kClearEvery = int64_t(1) << 24;

// Calls RefreshView on the scope every AInterval until destroyed, as the control's timer does.
class TRefresher {
public:
    TRefresher(qv::TQVScope& AScope, std::chrono::microseconds AInterval)
        : FThread([this, &AScope, AInterval] {
              std::unique_lock<std::mutex> Lock(FMutex);
              while (!FStop) {
                  if (FWake.wait_for(Lock, AInterval, [this] { return FStop; }))
                      break;
                  Lock.unlock();
                  AScope.RefreshView();
                  ++FTicks;
                  Lock.lock();
              }
          })
    {}
    ~TRefresher()
    {
        {
            std::lock_guard<std::mutex> Lock(FMutex);
            FStop = true;
        }
        FWake.notify_one();
        FThread.join();
    }
    int GetTicks() const { return FTicks; }

private:
    std::mutex FMutex;
    std::condition_variable FWake;
    bool FStop = false;
    std::atomic<int> FTicks{0};
    std::thread FThread;
};

template <class F>
double Seconds(F&& AFunc)
{
    const auto T0 = TClock::now();
    AFunc();
    return std::chrono::duration<double>(TClock::now() - T0).count();
}

std::vector<double> Signal(int32_t ACount)
{
    std::vector<double> Result(static_cast<size_t>(ACount));
    for (int32_t i = 0; i < ACount; ++i)
        Result[size_t(i)] = double(i % 1000) * 0.25;
    return Result;
}

void Fill(qv::TQVChannelData& AData, int64_t ACount)
{
    const auto Block = Signal(kBlock);
    for (int64_t Done = 0; Done < ACount; Done += kBlock)
        AData.AddYData(Block.data(), uint32_t(std::min<int64_t>(kBlock, ACount - Done)));
}

void BM_AddYDataWithRefresh(benchmark::State& AState)
{
    const auto Limit = uint32_t(AState.range(0));
    qv::TQVScope Scope;
    Scope.SetSizeLimit(Limit);
    qv::TQVChannelData& Data = *Scope.GetChannels()->GetItem(0)->GetData();
    const auto Block = Signal(kBlock);
    // The copy's destination is as large as what the channel keeps. Without a limit it is
    // fresh memory each round, as the channel's is after each clear.
    const size_t DestSize = Limit != 0 ? Limit : size_t(kClearEvery);
    auto Dest = std::make_unique_for_overwrite<double[]>(DestSize);
    std::fill_n(Dest.get(), DestSize, 1.0);
    size_t DestPos = 0;
    int64_t SinceClear = 0;
    double AddTime = 0.0, CopyTime = 0.0;
    TRefresher Refresher(Scope, std::chrono::milliseconds(100));
    for (auto _ : AState) {
        const double T = Seconds([&] {
            Data.AddYData(Block.data(), kBlock);
            if (Limit == 0 && (SinceClear += kBlock) >= kClearEvery) {
                Data.Clear();
                SinceClear = 0;
            }
        });
        CopyTime += Seconds([&] {
            if (DestPos + kBlock > DestSize) {
                DestPos = 0;
                if (Limit == 0) {
                    Dest.reset();
                    Dest = std::make_unique_for_overwrite<double[]>(DestSize);
                }
            }
            std::memcpy(Dest.get() + DestPos, Block.data(), kBlock * sizeof(double));
            DestPos += kBlock;
            benchmark::ClobberMemory();
        });
        AddTime += T;
        AState.SetIterationTime(T);
    }
    const double Samples = double(AState.iterations()) * kBlock;
    AState.counters["Msamples_per_s"] = Samples / AddTime / 1e6;
    AState.counters["memcpy_Msamples_per_s"] = Samples / CopyTime / 1e6;
    AState.counters["speed_ratio"] = CopyTime / AddTime;
    AState.counters["refreshes"] = Refresher.GetTicks();
}
BENCHMARK(BM_AddYDataWithRefresh)->Arg(0)->Arg(1'000'000)->UseManualTime()->MinTime(3.0)->Unit(benchmark::kMicrosecond);

template <bool AWithX>
void AddPointsAtLimit(benchmark::State& AState)
{
    const auto Limit = uint32_t(AState.range(0));
    qv::TQVScope Scope;
    Scope.SetSizeLimit(Limit);
    qv::TQVChannelData& Data = *Scope.GetChannels()->GetItem(0)->GetData();
    Fill(Data, Limit);
    TRefresher Refresher(Scope, std::chrono::milliseconds(100));
    double V = 0.0;
    for (auto _ : AState) {
        if constexpr (AWithX)
            Data.AddXYPoint(V, V * 0.5);
        else
            Data.AddYPoint(V);
        V += 1.0;
    }
    AState.SetItemsProcessed(int64_t(AState.iterations()));
    AState.counters["refreshes"] = Refresher.GetTicks();
}

void BM_AddYPointAtLimit(benchmark::State& AState)
{
    AddPointsAtLimit<false>(AState);
}
void BM_AddXYPointAtLimit(benchmark::State& AState)
{
    AddPointsAtLimit<true>(AState);
}
BENCHMARK(BM_AddYPointAtLimit)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_AddXYPointAtLimit)->Arg(1'000'000)->UseRealTime()->MinTime(2.0);

// One point the costly way: a private copy of both buffers, shifted by one.
void BM_ShiftByCopyPerPoint(benchmark::State& AState)
{
    const auto Limit = size_t(AState.range(0));
    std::vector<double> X(Limit, 1.0), Y(Limit, 2.0), CopyX(Limit), CopyY(Limit);
    for (auto _ : AState) {
        std::memcpy(CopyX.data(), X.data() + 1, (Limit - 1) * sizeof(double));
        std::memcpy(CopyY.data(), Y.data() + 1, (Limit - 1) * sizeof(double));
        CopyX.back() = CopyX[Limit - 2] + 1.0;
        CopyY.back() = 0.0;
        std::swap(X, CopyX);
        std::swap(Y, CopyY);
        benchmark::ClobberMemory();
    }
    AState.SetItemsProcessed(int64_t(AState.iterations()));
}
BENCHMARK(BM_ShiftByCopyPerPoint)->Arg(1'000'000);

void BM_PeakMemory(benchmark::State& AState)
{
    const auto Limit = uint32_t(AState.range(0));
    const auto Block = Signal(kBlock);
    for (auto _ : AState) {
        qv::TQVScope Scope;
        Scope.SetSizeLimit(Limit);
        qv::TQVChannelData& Data = *Scope.GetChannels()->GetItem(0)->GetData();
        const int64_t Base = qv::TQVChannelBuffer::GetLiveBytes();
        qv::TQVChannelBuffer::ResetPeakBytes();
        {
            TRefresher Refresher(Scope, std::chrono::milliseconds(1));
            // Fill to the limit, then run round it with blocks and points, through at least
            // 200 hand-overs.
            const int64_t Rounds = 8 * int64_t(Limit);
            for (int64_t Done = 0; Done < Rounds || Refresher.GetTicks() < 200; Done += kBlock) {
                Data.AddYData(Block.data(), kBlock);
                for (int i = 0; i < 64; ++i)
                    Data.AddYPoint(double(i));
            }
        }
        const double Peak = double(qv::TQVChannelBuffer::GetPeakBytes() - Base);
        AState.counters["peak_MB"] = Peak / 1e6;
        AState.counters["peak_per_16N"] = Peak / (16.0 * Limit);
    }
}
BENCHMARK(BM_PeakMemory)->Arg(100'000)->Arg(1'000'000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
