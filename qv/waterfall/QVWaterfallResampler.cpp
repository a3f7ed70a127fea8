#include "qv/waterfall/QVWaterfallResampler.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace qv {

namespace {
constexpr size_t CPaletteCapacity = size_t(std::numeric_limits<uint16_t>::max()) + 1;
} // namespace

void TQVNearestResampler::Fill(std::vector<int32_t>& ATable, int32_t ACount, int32_t ASourceSize, double ACentre,
                               double ASpan)
{
    ATable.resize(static_cast<size_t>(std::max(ACount, 0)));
    const double PerPixel = ACount > 0 ? ASpan / ACount : 0.0;
    for (int32_t D = 0; D < ACount; ++D) {
        const double S = std::floor(ACentre + (D + 0.5 - ACount / 2.0) * PerPixel);
        ATable[static_cast<size_t>(D)] = static_cast<int32_t>(std::clamp(S, 0.0, ASourceSize - 1.0));
    }
}

void TQVNearestResampler::Prepare(int32_t ASourceWidth, int32_t ASourceHeight, double AXCentre, double AYCentre,
                                  double ASpanWidth, double ASpanHeight, int32_t ADestWidth, int32_t ADestHeight)
{
    const TKey Key{ASourceWidth, ASourceHeight, ADestWidth, ADestHeight, AXCentre, AYCentre, ASpanWidth, ASpanHeight};
    if (Key == FKey)
        return;
    FKey = Key;
    Fill(FColumns, ADestWidth, ASourceWidth, AXCentre, ASpanWidth);
    Fill(FLines, ADestHeight, ASourceHeight, AYCentre, ASpanHeight);
}

void TQVNearestResampler::Place(bool AColumnsAreSlots, int32_t AOrigin, int32_t ASlots, int32_t AStride,
                                int32_t ALastSample)
{
    const auto Slot = [AOrigin, ASlots](int32_t ALogical) {
        const int32_t P = ALogical + AOrigin;
        return P >= ASlots ? P - ASlots : P;
    };
    FColumnsAreSlots = AColumnsAreSlots;
    FStride = AStride;
    FColumnOffsets.resize(FColumns.size());
    FLineOffsets.resize(FLines.size());
    for (size_t I = 0; I < FColumns.size(); ++I)
        FColumnOffsets[I] = AColumnsAreSlots ? Slot(FColumns[I]) : FColumns[I];
    for (size_t I = 0; I < FLines.size(); ++I)
        FLineOffsets[I] =
            AColumnsAreSlots ? ALastSample - FLines[I] : static_cast<ptrdiff_t>(Slot(FLines[I])) * AStride;
    if (!AColumnsAreSlots)
        return;
    // The slot columns sampled at these lines are kept while the lines stay the same.
    const size_t Size = static_cast<size_t>(ASlots) * FLines.size();
    if (FCachedLines != FLineOffsets || FColumnCache.size() != Size) {
        FCachedLines = FLineOffsets;
        FColumnCache.resize(Size);
        FColumnValid.assign(static_cast<size_t>(ASlots), false);
    }
}

void TQVNearestResampler::InvalidateSlot(int32_t APhysicalSlot)
{
    if (APhysicalSlot >= 0 && static_cast<size_t>(APhysicalSlot) < FColumnValid.size())
        FColumnValid[static_cast<size_t>(APhysicalSlot)] = false;
}

void TQVNearestResampler::InvalidateAll()
{
    FColumnValid.assign(FColumnValid.size(), false);
}

int32_t TQVNearestResampler::PaletteIndex(uint32_t AColour)
{
    const auto Found = FPaletteIndex.find(AColour);
    if (Found != FPaletteIndex.end())
        return Found->second;
    if (FPalette.size() == CPaletteCapacity)
        return -1;
    const auto Index = static_cast<uint16_t>(FPalette.size());
    FPalette.push_back(AColour);
    FPaletteIndex.emplace(AColour, Index);
    return Index;
}

bool TQVNearestResampler::UpdateColumns(const uint32_t* ASource, int32_t AX0, int32_t AX1)
{
    const size_t Lines = FLineOffsets.size();
    for (int32_t X = AX0; X < AX1; ++X) {
        const size_t Slot = static_cast<size_t>(FColumnOffsets[static_cast<size_t>(X)]);
        if (FColumnValid[Slot])
            continue;
        const uint32_t* In = ASource + Slot * static_cast<size_t>(FStride);
        uint16_t* Column = FColumnCache.data() + Slot * Lines;
        // Neighbouring pixels mostly share their colour: one look-up a run.
        int32_t Index = -1;
        uint32_t Last = 0;
        for (size_t Y = 0; Y < Lines; ++Y) {
            const uint32_t Colour = In[FLineOffsets[Y]];
            if (Index < 0 || Colour != Last) {
                Index = PaletteIndex(Colour);
                if (Index < 0)
                    return false;
                Last = Colour;
            }
            Column[Y] = static_cast<uint16_t>(Index);
        }
        FColumnValid[Slot] = true;
    }
    return true;
}

void TQVNearestResampler::Resample(const uint32_t* ASource, TQLBitmap& ADest, int32_t ALeft, int32_t ATop)
{
    const int32_t Width = static_cast<int32_t>(FColumnOffsets.size());
    const int32_t Height = static_cast<int32_t>(FLineOffsets.size());
    const int32_t X0 = std::max(0, -ALeft), X1 = std::min(Width, ADest.GetWidth() - ALeft);
    const int32_t Y0 = std::max(0, -ATop), Y1 = std::min(Height, ADest.GetHeight() - ATop);
    if (X0 >= X1 || Y0 >= Y1)
        return;
    if (!FColumnsAreSlots) {
        ResampleDirect(ASource, ADest, ALeft, ATop, X0, X1, Y0, Y1);
        return;
    }
    if (!UpdateColumns(ASource, X0, X1)) {
        // The palette ran full of colours that are no longer shown: start it anew. A picture
        // that by itself shows more colours than it holds is read from the image.
        FPalette.clear();
        FPaletteIndex.clear();
        InvalidateAll();
        if (!UpdateColumns(ASource, X0, X1)) {
            FPalette.clear();
            FPaletteIndex.clear();
            InvalidateAll();
            ResampleDirect(ASource, ADest, ALeft, ATop, X0, X1, Y0, Y1);
            return;
        }
    }
    ResampleColumns(ADest, ALeft, ATop, X0, X1, Y0, Y1);
}

void TQVNearestResampler::ResampleColumns(TQLBitmap& ADest, int32_t ALeft, int32_t ATop, int32_t AX0, int32_t AX1,
                                          int32_t AY0, int32_t AY1) const
{
    // Columns in blocks of 16: each destination line gets a whole cache line at a time, and
    // at most 16 columns are read side by side.
    constexpr int32_t CBlock = 16;
    const size_t Lines = FLineOffsets.size();
    const uint32_t* Palette = FPalette.data();
    const uint16_t* Columns[CBlock];
    const uint16_t* Next[CBlock];
    const auto Column = [&](int32_t AX) {
        return FColumnCache.data() + static_cast<size_t>(FColumnOffsets[static_cast<size_t>(AX)]) * Lines;
    };
    for (int32_t Bx = AX0; Bx < AX1; Bx += CBlock) {
        const int32_t Bn = std::min(CBlock, AX1 - Bx);
        const int32_t Nn = std::max(0, std::min(CBlock, AX1 - Bx - CBlock));
        for (int32_t I = 0; I < Bn; ++I)
            Columns[I] = Column(Bx + I);
        for (int32_t I = 0; I < Nn; ++I)
            Next[I] = Column(Bx + CBlock + I);
        for (int32_t Y = AY0; Y < AY1; ++Y) {
            // The next block's columns are fetched while this one is copied.
            if ((Y & 31) == 0)
                for (int32_t I = 0; I < Nn; ++I)
                    __builtin_prefetch(Next[I] + Y);
            uint32_t* Out = ADest.GetScanLine(ATop + Y) + ALeft + Bx;
            for (int32_t I = 0; I < Bn; ++I)
                Out[I] = Palette[Columns[I][Y]];
        }
    }
}

void TQVNearestResampler::ResampleDirect(const uint32_t* ASource, TQLBitmap& ADest, int32_t ALeft, int32_t ATop,
                                         int32_t AX0, int32_t AX1, int32_t AY0, int32_t AY1) const
{
    const ptrdiff_t* Columns = FColumnOffsets.data();
    const ptrdiff_t ColumnStep = FColumnsAreSlots ? FStride : 1;
    for (int32_t Y = AY0; Y < AY1; ++Y) {
        uint32_t* Out = ADest.GetScanLine(ATop + Y) + ALeft;
        // A line that reads the same source as the one above is a copy of it.
        if (Y > AY0 && FLineOffsets[static_cast<size_t>(Y)] == FLineOffsets[static_cast<size_t>(Y - 1)]) {
            std::memcpy(Out + AX0, ADest.GetScanLine(ATop + Y - 1) + ALeft + AX0, size_t(AX1 - AX0) * 4);
            continue;
        }
        const uint32_t* In = ASource + FLineOffsets[static_cast<size_t>(Y)];
        for (int32_t X = AX0; X < AX1; ++X)
            Out[X] = In[Columns[X] * ColumnStep];
    }
}

} // namespace qv
