#include "qv/foundation/QVBlockExtremes.h"

#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace qv {

namespace {

// The extremes of whole blocks, NaN skipped: `x < a ? x : a` takes a sample only when the
// comparison is true, and every comparison with NaN is false; it is also exactly what the
// packed min and max instructions compute. Four-wide vectors, two of each: with AVX2 the
// loop is one load, one min and one max per four samples, which keeps up with memory; the
// default build splits each vector into two SSE2 halves. The AVX2 copy is chosen at load
// time on processors that have it.
// Sanitizer builds keep one copy: the load-time choice runs before their runtime is ready.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(__SANITIZE_THREAD__) &&                \
    !defined(__SANITIZE_ADDRESS__)
#define QV_BLOCK_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QV_BLOCK_CLONES
#endif

#if defined(__GNUC__) || defined(__clang__)
using TQuad = double __attribute__((vector_size(32)));

// One block of samples: its extremes, and the samples stored at ADest on the way when AStore.
// Streaming stores need ADest on 16 bytes; the caller checks.
template <bool AStore, bool AStream>
__attribute__((always_inline)) inline bool OneBlock(const double* P, double* ADest, TQVBlockExtremes::TBlock& AOut)
{
    constexpr double Inf = std::numeric_limits<double>::infinity();
    TQuad L0 = {Inf, Inf, Inf, Inf}, L1 = L0;
    TQuad H0 = -L0, H1 = -L0;
    for (int32_t i = 0; i < TQVBlockExtremes::BlockSize; i += 8) {
        TQuad X0, X1;
        std::memcpy(&X0, P + i, sizeof X0);
        std::memcpy(&X1, P + i + 4, sizeof X1);
        if constexpr (AStream) {
#if defined(__SSE2__)
            __m128d Q[4];
            std::memcpy(Q, &X0, sizeof X0);
            std::memcpy(Q + 2, &X1, sizeof X1);
            for (int k = 0; k < 4; ++k)
                _mm_stream_pd(ADest + i + 2 * k, Q[k]);
#endif
        } else if constexpr (AStore) {
            std::memcpy(ADest + i, &X0, sizeof X0);
            std::memcpy(ADest + i + 4, &X1, sizeof X1);
        }
        L0 = X0 < L0 ? X0 : L0;
        L1 = X1 < L1 ? X1 : L1;
        H0 = X0 > H0 ? X0 : H0;
        H1 = X1 > H1 ? X1 : H1;
    }
    L0 = L1 < L0 ? L1 : L0;
    H0 = H1 > H0 ? H1 : H0;
    const double Lo01 = L0[1] < L0[0] ? L0[1] : L0[0], Lo23 = L0[3] < L0[2] ? L0[3] : L0[2];
    const double Hi01 = H0[1] > H0[0] ? H0[1] : H0[0], Hi23 = H0[3] > H0[2] ? H0[3] : H0[2];
    const double Lo = Lo23 < Lo01 ? Lo23 : Lo01;
    const double Hi = Hi23 > Hi01 ? Hi23 : Hi01;
    AOut.Lo = AOut.FiniteLo = Lo;
    AOut.Hi = AOut.FiniteHi = Hi;
    return (Lo == -Inf) | (Hi == Inf);
}

QV_BLOCK_CLONES
bool WholeBlockExtremes(const double* AData, size_t ABlocks, TQVBlockExtremes::TBlock* AOut)
{
    static_assert(TQVBlockExtremes::BlockSize % 8 == 0);
    bool Infinite = false;
    for (size_t b = 0; b < ABlocks; ++b)
        Infinite |= OneBlock<false, false>(AData + b * TQVBlockExtremes::BlockSize, nullptr, AOut[b]);
    return Infinite;
}

// WholeBlockExtremes that also copies the blocks to ADest.
QV_BLOCK_CLONES
bool CopyBlockExtremes(const double* AData, double* ADest, size_t ABlocks, TQVBlockExtremes::TBlock* AOut, bool AStream)
{
    bool Infinite = false;
    constexpr size_t N = TQVBlockExtremes::BlockSize;
#if defined(__SSE2__)
    if (AStream && reinterpret_cast<uintptr_t>(ADest) % 16 == 0) {
        for (size_t b = 0; b < ABlocks; ++b)
            Infinite |= OneBlock<true, true>(AData + b * N, ADest + b * N, AOut[b]);
        // Streamed stores are weakly ordered: they are made visible before the samples are
        // handed to another thread.
        _mm_sfence();
        return Infinite;
    }
#endif
    (void)AStream;
    for (size_t b = 0; b < ABlocks; ++b)
        Infinite |= OneBlock<true, false>(AData + b * N, ADest + b * N, AOut[b]);
    return Infinite;
}
#else
bool WholeBlockExtremes(const double* AData, size_t ABlocks, TQVBlockExtremes::TBlock* AOut)
{
    constexpr double Inf = std::numeric_limits<double>::infinity();
    bool Infinite = false;
    for (size_t b = 0; b < ABlocks; ++b) {
        TQVBlockExtremes::TBlock& Out = AOut[b];
        double FL, FH;
        QVArrayExtremes(AData + b * TQVBlockExtremes::BlockSize, TQVBlockExtremes::BlockSize, Out.Lo, Out.Hi, FL, FH);
        Out.FiniteLo = Out.Lo;
        Out.FiniteHi = Out.Hi;
        Infinite |= (Out.Lo == -Inf) | (Out.Hi == Inf);
    }
    return Infinite;
}

bool CopyBlockExtremes(const double* AData, double* ADest, size_t ABlocks, TQVBlockExtremes::TBlock* AOut, bool)
{
    QVArrayConvert(AData, ADest, ABlocks * TQVBlockExtremes::BlockSize);
    return WholeBlockExtremes(ADest, ABlocks, AOut);
}
#endif

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr TQVBlockExtremes::TBlock kEmpty{kInf, -kInf, kInf, -kInf};

// The comparisons never see NaN: every kept extreme is a number or an infinity.
inline void Merge(TQVBlockExtremes::TBlock& AInto, const TQVBlockExtremes::TBlock& AFrom)
{
    AInto.Lo = AFrom.Lo < AInto.Lo ? AFrom.Lo : AInto.Lo;
    AInto.Hi = AFrom.Hi > AInto.Hi ? AFrom.Hi : AInto.Hi;
    AInto.FiniteLo = AFrom.FiniteLo < AInto.FiniteLo ? AFrom.FiniteLo : AInto.FiniteLo;
    AInto.FiniteHi = AFrom.FiniteHi > AInto.FiniteHi ? AFrom.FiniteHi : AInto.FiniteHi;
}

inline TQVBlockExtremes::TBlock SamplesOf(const double* AData, size_t ACount)
{
    TQVBlockExtremes::TBlock B;
    QVArrayExtremes(AData, ACount, B.Lo, B.Hi, B.FiniteLo, B.FiniteHi);
    return B;
}

// Entries of a level per entry of level ALevel, as a power: Fanout^ALevel.
inline int64_t Span(int32_t ALevel)
{
    int64_t S = 1;
    for (int32_t i = 0; i < ALevel; ++i)
        S *= TQVBlockExtremes::Fanout;
    return S;
}

} // namespace

TQVBlockExtremes::TQVBlockExtremes(const TQVBlockExtremes& ASource)
    : FLevels(ASource.FLevels), FBase(ASource.FBase), FCount(ASource.FCount), FWriter(false)
{}

TQVBlockExtremes& TQVBlockExtremes::operator=(const TQVBlockExtremes& ASource)
{
    if (this != &ASource) {
        FLevels = ASource.FLevels;
        FBase = ASource.FBase;
        FCount = ASource.FCount;
        FWriter = false;
    }
    return *this;
}

void TQVBlockExtremes::Clear()
{
    for (TLevel& L : FLevels) {
        L.Chunks.clear();
        L.FirstChunk = 0;
        L.Open = kEmpty;
    }
    FBase = 0;
    FCount = 0;
    FWriter = true;
}

void TQVBlockExtremes::Build(const double* AData, int32_t ACount)
{
    Clear();
    Append(AData, ACount);
}

const TQVBlockExtremes::TBlock& TQVBlockExtremes::Entry(int32_t ALevel, int64_t AIndex) const
{
    const TLevel& L = FLevels[size_t(ALevel)];
    return L.Chunks[size_t(AIndex / ChunkEntries - L.FirstChunk)]->Items[AIndex % ChunkEntries];
}

TQVBlockExtremes::TBlock& TQVBlockExtremes::Entry(int32_t ALevel, int64_t AIndex)
{
    TLevel& L = FLevels[size_t(ALevel)];
    const int64_t Chunk = AIndex / ChunkEntries;
    if (L.Chunks.empty())
        L.FirstChunk = Chunk;
    while (Chunk >= L.FirstChunk + int64_t(L.Chunks.size()))
        L.Chunks.push_back(std::make_shared_for_overwrite<TChunk>());
    return L.Chunks[size_t(Chunk - L.FirstChunk)]->Items[AIndex % ChunkEntries];
}

void TQVBlockExtremes::Finish(int32_t ALevel, int64_t AIndex, const TBlock& AValue)
{
    // Entry AIndex of level ALevel is complete and stored: the level above gathers it, and
    // stores its own entry when this was the last of its children.
    const int32_t Level = ALevel + 1;
    if (Level >= Levels)
        return;
    TBlock& Open = FLevels[size_t(Level)].Open;
    Merge(Open, AValue);
    if ((AIndex + 1) % Fanout != 0)
        return;
    const int64_t Parent = AIndex / Fanout;
    const TBlock Done = Open;
    Open = kEmpty;
    Entry(Level, Parent) = Done;
    Finish(Level, Parent, Done);
}

void TQVBlockExtremes::OwnTail()
{
    // Only the entries this summary counts are copied: the one it was copied from may be
    // writing the rest of the chunk meanwhile.
    const int64_t EndBlock = (FBase + FCount) / BlockSize;
    for (int32_t Level = 0; Level < Levels; ++Level) {
        TLevel& L = FLevels[size_t(Level)];
        if (L.Chunks.empty())
            continue;
        const int64_t Done = EndBlock / Span(Level); // finished entries of this level
        const int64_t BackFirst = (L.FirstChunk + int64_t(L.Chunks.size()) - 1) * ChunkEntries;
        auto Own = std::make_shared_for_overwrite<TChunk>();
        const int64_t Keep = std::clamp<int64_t>(Done - BackFirst, 0, ChunkEntries);
        std::copy_n(L.Chunks.back()->Items, Keep, Own->Items);
        L.Chunks.back() = std::move(Own);
    }
    FWriter = true;
}

template <class FWhole, class FPart>
void TQVBlockExtremes::AppendWith(const double* AStored, int32_t ACount, FWhole&& AWhole, FPart&& APart)
{
    if (ACount <= 0)
        return;
    if (int64_t(FCount) + ACount > INT32_MAX)
        throw std::length_error("TQVBlockExtremes: " + std::to_string(int64_t(FCount) + ACount) + " samples exceed " +
                                std::to_string(INT32_MAX));
    if (!FWriter)
        OwnTail();
    int64_t End = FBase + FCount;
    int32_t i = 0;
    TBlock& Open = FLevels[0].Open;
    // The block being filled.
    if (const int32_t Fill = int32_t(End % BlockSize); Fill != 0) {
        const int32_t Take = std::min(ACount, BlockSize - Fill);
        Merge(Open, APart(0, Take));
        i = Take;
        End += Take;
        if (End % BlockSize == 0) {
            const TBlock Done = Open;
            Open = kEmpty;
            Entry(0, End / BlockSize - 1) = Done;
            Finish(0, End / BlockSize - 1, Done);
        }
    }
    // Whole blocks, straight into the chunks, a chunk's room at a time.
    while (ACount - i >= BlockSize) {
        const int64_t First = End / BlockSize;
        const int32_t Room = ChunkEntries - int32_t(First % ChunkEntries);
        const int32_t Blocks = std::min((ACount - i) / BlockSize, Room);
        TBlock* Out = &Entry(0, First);
        // Only a block holding an infinity, which real records rarely have, is read a second
        // time for its finite extremes.
        if (AWhole(i, Blocks, Out))
            for (int32_t b = 0; b < Blocks; ++b) {
                TBlock& B = Out[b];
                if (B.Lo == -kInf || B.Hi == kInf) {
                    double L, H;
                    QVArrayExtremes(AStored + i + size_t(b) * BlockSize, BlockSize, L, H, B.FiniteLo, B.FiniteHi);
                }
            }
        for (int32_t b = 0; b < Blocks; ++b)
            Finish(0, First + b, Out[b]);
        i += Blocks * BlockSize;
        End += int64_t(Blocks) * BlockSize;
    }
    // The start of the next block.
    if (i < ACount)
        Open = APart(i, ACount - i);
    FCount += ACount;
}

void TQVBlockExtremes::Append(const double* AData, int32_t ACount)
{
    AppendWith(
        AData, ACount,
        [AData](int32_t AOffset, int32_t ABlocks, TBlock* AOut) {
            return WholeBlockExtremes(AData + AOffset, size_t(ABlocks), AOut);
        },
        [AData](int32_t AOffset, int32_t ACountPart) { return SamplesOf(AData + AOffset, size_t(ACountPart)); });
}

template <class T>
void TQVBlockExtremes::AppendConverted(const T* ASource, double* ADest, int32_t ACount, bool AStream)
{
    const auto Part = [ASource, ADest](int32_t AOffset, int32_t ACountPart) {
        QVArrayConvert(ASource + AOffset, ADest + AOffset, size_t(ACountPart));
        return SamplesOf(ADest + AOffset, size_t(ACountPart));
    };
    if constexpr (std::is_same_v<T, double>) {
        AppendWith(
            ADest, ACount,
            [ASource, ADest, AStream](int32_t AOffset, int32_t ABlocks, TBlock* AOut) {
                return CopyBlockExtremes(ASource + AOffset, ADest + AOffset, size_t(ABlocks), AOut, AStream);
            },
            Part);
    } else {
        // Converted a block at a time and summarised while the block is still in the cache.
        (void)AStream;
        AppendWith(
            ADest, ACount,
            [ASource, ADest](int32_t AOffset, int32_t ABlocks, TBlock* AOut) {
                bool Infinite = false;
                for (int32_t b = 0; b < ABlocks; ++b) {
                    const size_t At = size_t(AOffset) + size_t(b) * BlockSize;
                    QVArrayConvert(ASource + At, ADest + At, BlockSize);
                    Infinite |= WholeBlockExtremes(ADest + At, 1, AOut + b);
                }
                return Infinite;
            },
            Part);
    }
}

template void TQVBlockExtremes::AppendConverted<double>(const double*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<float>(const float*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<int32_t>(const int32_t*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<uint32_t>(const uint32_t*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<int64_t>(const int64_t*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<uint64_t>(const uint64_t*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<int16_t>(const int16_t*, double*, int32_t, bool);
template void TQVBlockExtremes::AppendConverted<uint16_t>(const uint16_t*, double*, int32_t, bool);

void TQVBlockExtremes::DropFront(int32_t ACount)
{
    if (ACount < 0 || ACount > FCount)
        throw std::out_of_range("TQVBlockExtremes: cannot drop " + std::to_string(ACount) + " of " +
                                std::to_string(FCount) + " samples");
    FBase += ACount;
    FCount -= ACount;
    // Chunks whose entries all lie before the first block still kept go.
    const int64_t FirstBlock = FBase / BlockSize;
    for (int32_t Level = 0; Level < Levels; ++Level) {
        TLevel& L = FLevels[size_t(Level)];
        const int64_t Needed = FirstBlock / Span(Level);
        while (!L.Chunks.empty() && (L.FirstChunk + 1) * ChunkEntries <= Needed) {
            L.Chunks.pop_front();
            ++L.FirstChunk;
        }
    }
}

void TQVBlockExtremes::TakeBlocks(int64_t AFirst, int64_t AEnd, bool AFinite, double& ALo, double& AHi) const
{
    const auto Take = [&](const TBlock& B) {
        const double L = AFinite ? B.FiniteLo : B.Lo;
        const double H = AFinite ? B.FiniteHi : B.Hi;
        ALo = L < ALo ? L : ALo;
        AHi = H > AHi ? H : AHi;
    };
    // Bottom up: the loose entries at both ends of a level, then the whole groups of the
    // level above; at most 2 * (Fanout - 1) entries a level.
    int64_t Lo = AFirst, Hi = AEnd;
    for (int32_t Level = 0; Lo < Hi; ++Level) {
        if (Level == Levels - 1) {
            for (int64_t k = Lo; k < Hi; ++k)
                Take(Entry(Level, k));
            break;
        }
        while (Lo < Hi && Lo % Fanout != 0)
            Take(Entry(Level, Lo++));
        while (Lo < Hi && Hi % Fanout != 0)
            Take(Entry(Level, --Hi));
        Lo /= Fanout;
        Hi /= Fanout;
    }
}

void TQVBlockExtremes::Prefetch(const double* AData, int32_t AIndex) const
{
#if defined(__GNUC__) || defined(__clang__)
    if (AIndex < 0 || AIndex >= FCount)
        return;
    // The block around AIndex, in absolute numbers as the summary counts them, and the
    // cache lines of its samples that lie in the record.
    const int64_t Block = (FBase + AIndex) / BlockSize;
    const int64_t From = std::max<int64_t>(Block * BlockSize - FBase, 0);
    const int64_t To = std::min<int64_t>(From + BlockSize, FCount);
    for (int64_t i = From; i < To; i += 8)
        __builtin_prefetch(AData + i);
    for (int32_t Level = 0, Shift = 1; Level < 3; ++Level, Shift *= Fanout) {
        const TLevel& L = FLevels[size_t(Level)];
        const int64_t k = Block / Shift;
        const int64_t Chunk = k / ChunkEntries - L.FirstChunk;
        if (Chunk < 0 || Chunk >= int64_t(L.Chunks.size()))
            break;
        __builtin_prefetch(&L.Chunks[size_t(Chunk)]->Items[k % ChunkEntries]);
    }
#else
    (void)AData;
    (void)AIndex;
#endif
}

bool TQVBlockExtremes::MinMax(const double* AData, int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo,
                              double& AHi) const
{
    const int32_t First = std::clamp(AFirst, 0, FCount);
    const int32_t End = std::clamp(AEnd, First, FCount);
    double Lo = kInf;
    double Hi = -kInf;
    const auto Samples = [&](int32_t AFrom, int32_t ATo) {
        if (ATo <= AFrom)
            return;
        const TBlock B = SamplesOf(AData + AFrom, size_t(ATo - AFrom));
        const double L = AFinite ? B.FiniteLo : B.Lo;
        const double H = AFinite ? B.FiniteHi : B.Hi;
        Lo = L < Lo ? L : Lo;
        Hi = H > Hi ? H : Hi;
    };
    // Whole blocks in absolute numbers; a block cut by a drop at the front is never whole.
    const int64_t FirstWhole = (FBase + First + BlockSize - 1) / BlockSize;
    const int64_t EndWhole = (FBase + End) / BlockSize;
    if (FirstWhole >= EndWhole) {
        Samples(First, End);
    } else {
        Samples(First, int32_t(FirstWhole * BlockSize - FBase));
        TakeBlocks(FirstWhole, EndWhole, AFinite, Lo, Hi);
        Samples(int32_t(EndWhole * BlockSize - FBase), End);
    }
    // Nothing counted leaves the starting infinities the wrong way round; a record of only
    // +inf (or -inf) gives both extremes equal.
    if (Lo > Hi)
        return false;
    ALo = Lo;
    AHi = Hi;
    return true;
}

} // namespace qv
