// Whole-buffer operations against the simplest loops over the same memory.
//
// MinMax: Min() + Max() of a 10,000,000-sample real buffer against a plain sum of the same
// samples. BM_MinMaxAgainstSum runs both in each iteration and reports speed_ratio =
// sum time / (Min + Max) time; at 1.0 the two extremes cost what one sum costs. It also runs
// on the first 100,000 samples, which stay in cache, where the loop code rather than memory
// sets the pace.
//
// Convert: int16 -> double into an existing block against memcpy of the same number of
// destination bytes; BM_ConvertAgainstMemcpy reports speed_ratio = memcpy time / convert time.

#include "qv/foundation/QVArrayOps.h"
#include "qv/foundation/QVBuffers.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr int32_t kSamples = 10'000'000;

const qv::TQVRealBuffer& Signal()
{
    static const qv::TQVRealBuffer Buffer = [] {
        qv::TQVRealBuffer B(static_cast<uint32_t>(kSamples));
        double* P = B.Write();
        for (int32_t i = 0; i < kSamples; ++i)
            P[i] = 1000.0 * std::sin(i * 0.001) + (i % 97);
        return B;
    }();
    return Buffer;
}

const std::vector<int16_t>& Samples16()
{
    static const std::vector<int16_t> Data = [] {
        std::vector<int16_t> V(kSamples);
        for (int32_t i = 0; i < kSamples; ++i)
            V[i] = static_cast<int16_t>((i * 7919) & 0xFFFF);
        return V;
    }();
    return Data;
}

double PlainSum(const double* AData, int32_t ACount)
{
    double S = 0.0;
    for (int32_t i = 0; i < ACount; ++i)
        S += AData[i];
    return S;
}

void SetBytes(benchmark::State& AState, int64_t ABytesPerIteration)
{
    AState.SetBytesProcessed(int64_t(AState.iterations()) * ABytesPerIteration);
}

void BM_PlainSum(benchmark::State& AState)
{
    const auto& B = Signal();
    for (auto _ : AState)
        benchmark::DoNotOptimize(PlainSum(B.Read(), B.GetSize()));
    SetBytes(AState, int64_t(kSamples) * 8);
}
BENCHMARK(BM_PlainSum)->Unit(benchmark::kMillisecond);

void BM_MinMax(benchmark::State& AState)
{
    const auto& B = Signal();
    for (auto _ : AState) {
        benchmark::DoNotOptimize(B.Min());
        benchmark::DoNotOptimize(B.Max());
    }
    SetBytes(AState, int64_t(kSamples) * 8);
}
BENCHMARK(BM_MinMax)->Unit(benchmark::kMillisecond);

using TClock = std::chrono::steady_clock;

template <class F>
double Seconds(F&& AFunc)
{
    const auto T0 = TClock::now();
    AFunc();
    return std::chrono::duration<double>(TClock::now() - T0).count();
}

// Both contenders in every iteration, alternating, so that they see the same machine state;
// the iteration's time is ours. Reports each one's mean in ms under its name, and the peer's
// time over ours as speed_ratio.
template <class TPeer, class TOurs>
void Contest(benchmark::State& AState, const char* APeerName, TPeer&& APeer, const char* AOurName, TOurs&& AOurs)
{
    double PeerTime = 0.0, OurTime = 0.0;
    for (auto _ : AState) {
        PeerTime += Seconds(APeer);
        const double T = Seconds(AOurs);
        OurTime += T;
        AState.SetIterationTime(T);
    }
    const double Count = double(AState.iterations());
    AState.counters[APeerName] = 1000.0 * PeerTime / Count;
    AState.counters[AOurName] = 1000.0 * OurTime / Count;
    AState.counters["speed_ratio"] = PeerTime / OurTime;
}

// The argument is the number of samples: the full buffer, and a run that stays in cache.
void BM_MinMaxAgainstSum(benchmark::State& AState)
{
    const auto& B = Signal();
    const auto N = static_cast<int32_t>(AState.range(0));
    Contest(
        AState, "sum_ms", [&] { benchmark::DoNotOptimize(PlainSum(B.Read(), N)); }, "minmax_ms",
        [&] {
            benchmark::DoNotOptimize(B.Min(0, N - 1));
            benchmark::DoNotOptimize(B.Max(0, N - 1));
        });
}
BENCHMARK(BM_MinMaxAgainstSum)->Arg(kSamples)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ConvertInt16(benchmark::State& AState)
{
    const auto& S = Samples16();
    std::vector<double> D(S.size());
    for (auto _ : AState) {
        qv::QVArrayConvert(S.data(), D.data(), S.size());
        benchmark::ClobberMemory();
    }
    SetBytes(AState, int64_t(kSamples) * 8);
}
BENCHMARK(BM_ConvertInt16)->Unit(benchmark::kMillisecond);

void BM_MemcpyDoubles(benchmark::State& AState)
{
    const auto& B = Signal();
    std::vector<double> D(static_cast<size_t>(kSamples));
    for (auto _ : AState) {
        std::memcpy(D.data(), B.Read(), size_t(kSamples) * 8);
        benchmark::ClobberMemory();
    }
    SetBytes(AState, int64_t(kSamples) * 8);
}
BENCHMARK(BM_MemcpyDoubles)->Unit(benchmark::kMillisecond);

void BM_ConvertAgainstMemcpy(benchmark::State& AState)
{
    const auto& S = Samples16();
    const auto& B = Signal();
    std::vector<double> D(S.size());
    Contest(
        AState, "memcpy_ms",
        [&] {
            std::memcpy(D.data(), B.Read(), size_t(kSamples) * 8);
            benchmark::ClobberMemory();
        },
        "convert_ms",
        [&] {
            qv::QVArrayConvert(S.data(), D.data(), S.size());
            benchmark::ClobberMemory();
        });
}
BENCHMARK(BM_ConvertAgainstMemcpy)->UseManualTime()->Unit(benchmark::kMillisecond);

// The whole constructor: a fresh 80 MB block (page faults included) filled by conversion.
void BM_RealBufferFromInt16(benchmark::State& AState)
{
    const auto& S = Samples16();
    for (auto _ : AState) {
        qv::TQVRealBuffer B(S.data(), int64_t(S.size()));
        benchmark::DoNotOptimize(B.Read());
    }
    SetBytes(AState, int64_t(kSamples) * 8);
}
BENCHMARK(BM_RealBufferFromInt16)->Unit(benchmark::kMillisecond);

} // namespace
