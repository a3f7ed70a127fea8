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
        for (int32_t b = FirstWhole; b < EndWhole; ++b) {
            const TBlock& B = FBlocks[size_t(b)];
            if (AFinite)
                Take(B.FiniteLo, B.FiniteHi);
            else
                Take(B.Lo, B.Hi);
        }
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
