#include "qv/foundation/QVBlockExtremes.h"

#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <limits>

namespace qv {

void TQVBlockExtremes::Build(const double* AData, int32_t ACount)
{
    FCount = std::max(ACount, 0);
    const size_t Blocks = (size_t(FCount) + BlockSize - 1) / BlockSize;
    FBlocks.resize(Blocks);
    for (size_t b = 0; b < Blocks; ++b) {
        const size_t First = b * BlockSize;
        const size_t Count = std::min<size_t>(BlockSize, size_t(FCount) - First);
        TBlock& B = FBlocks[b];
        QVArrayExtremes(AData + First, Count, B.Lo, B.Hi, B.FiniteLo, B.FiniteHi);
    }
    FGroups.resize((Blocks + GroupBlocks - 1) / GroupBlocks);
    for (size_t g = 0; g < FGroups.size(); ++g) {
        const double Inf = std::numeric_limits<double>::infinity();
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
