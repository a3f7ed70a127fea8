#include "qv/foundation/QVBlockExtremes.h"

#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <cstring>
#include <limits>

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

QV_BLOCK_CLONES
bool WholeBlockExtremes(const double* AData, size_t ABlocks, TQVBlockExtremes::TBlock* AOut)
{
    static_assert(TQVBlockExtremes::BlockSize % 8 == 0);
    constexpr double Inf = std::numeric_limits<double>::infinity();
    bool Infinite = false;
    for (size_t b = 0; b < ABlocks; ++b) {
        const double* P = AData + b * TQVBlockExtremes::BlockSize;
        TQuad L0 = {Inf, Inf, Inf, Inf}, L1 = L0;
        TQuad H0 = -L0, H1 = -L0;
        for (int32_t i = 0; i < TQVBlockExtremes::BlockSize; i += 8) {
            TQuad X0, X1;
            std::memcpy(&X0, P + i, sizeof X0);
            std::memcpy(&X1, P + i + 4, sizeof X1);
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
        TQVBlockExtremes::TBlock& Out = AOut[b];
        Out.Lo = Out.FiniteLo = Lo;
        Out.Hi = Out.FiniteHi = Hi;
        Infinite |= (Lo == -Inf) | (Hi == Inf);
    }
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
#endif

} // namespace

void TQVBlockExtremes::Build(const double* AData, int32_t ACount)
{
    FCount = std::max(ACount, 0);
    const size_t Blocks = (size_t(FCount) + BlockSize - 1) / BlockSize;
    const size_t Whole = size_t(FCount) / BlockSize;
    FBlocks.resize(Blocks);
    // Whole blocks in one pass, written straight into the summary with the finite extremes
    // equal to the others; only a block holding an infinity, which real records rarely
    // have, is read a second time for its finite extremes.
    constexpr double Inf = std::numeric_limits<double>::infinity();
    if (WholeBlockExtremes(AData, Whole, FBlocks.data()))
        for (size_t b = 0; b < Whole; ++b) {
            TBlock& B = FBlocks[b];
            if (B.Lo == -Inf || B.Hi == Inf) {
                double L, H;
                QVArrayExtremes(AData + b * BlockSize, BlockSize, L, H, B.FiniteLo, B.FiniteHi);
            }
        }
    if (Whole < Blocks) {
        TBlock& B = FBlocks[Whole];
        QVArrayExtremes(AData + Whole * BlockSize, size_t(FCount) - Whole * BlockSize, B.Lo, B.Hi, B.FiniteLo,
                        B.FiniteHi);
    }
    FGroups.resize((Blocks + GroupBlocks - 1) / GroupBlocks);
    for (size_t g = 0; g < FGroups.size(); ++g) {
        TBlock G{Inf, -Inf, Inf, -Inf};
        for (size_t b = g * GroupBlocks, e = std::min(Blocks, b + GroupBlocks); b < e; ++b) {
            const TBlock& B = FBlocks[b];
            G.Lo = std::min(G.Lo, B.Lo);
            G.Hi = std::max(G.Hi, B.Hi);
            G.FiniteLo = std::min(G.FiniteLo, B.FiniteLo);
            G.FiniteHi = std::max(G.FiniteHi, B.FiniteHi);
        }
        FGroups[g] = G;
    }
}

void TQVBlockExtremes::TakeBlocks(int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const
{
    const auto Take = [&](const TBlock& B) {
        const double L = AFinite ? B.FiniteLo : B.Lo;
        const double H = AFinite ? B.FiniteHi : B.Hi;
        ALo = L < ALo ? L : ALo;
        AHi = H > AHi ? H : AHi;
    };
    const int32_t FirstGroup = (AFirst + GroupBlocks - 1) / GroupBlocks;
    const int32_t EndGroup = AEnd / GroupBlocks;
    if (FirstGroup >= EndGroup) {
        for (int32_t b = AFirst; b < AEnd; ++b)
            Take(FBlocks[size_t(b)]);
        return;
    }
    for (int32_t b = AFirst; b < FirstGroup * GroupBlocks; ++b)
        Take(FBlocks[size_t(b)]);
    for (int32_t g = FirstGroup; g < EndGroup; ++g)
        Take(FGroups[size_t(g)]);
    for (int32_t b = EndGroup * GroupBlocks; b < AEnd; ++b)
        Take(FBlocks[size_t(b)]);
}

bool TQVBlockExtremes::MinMax(const double* AData, int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo,
                              double& AHi) const
{
    const int32_t First = std::clamp(AFirst, 0, FCount);
    const int32_t End = std::clamp(AEnd, First, FCount);
    double Lo = std::numeric_limits<double>::infinity();
    double Hi = -Lo;
    // The comparisons below never see NaN: every kept extreme is a number or an infinity.
    const auto Take = [&](double ALow, double AHigh) {
        Lo = ALow < Lo ? ALow : Lo;
        Hi = AHigh > Hi ? AHigh : Hi;
    };
    const auto Samples = [&](int32_t AFrom, int32_t ATo) {
        if (ATo <= AFrom)
            return;
        double L, H, FL, FH;
        QVArrayExtremes(AData + AFrom, size_t(ATo - AFrom), L, H, FL, FH);
        if (AFinite)
            Take(FL, FH);
        else
            Take(L, H);
    };
    const int32_t FirstWhole = (First + BlockSize - 1) / BlockSize;
    const int32_t EndWhole = End / BlockSize;
    if (FirstWhole >= EndWhole) {
        Samples(First, End);
    } else {
        Samples(First, FirstWhole * BlockSize);
        TakeBlocks(FirstWhole, EndWhole, AFinite, Lo, Hi);
        Samples(EndWhole * BlockSize, End);
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
