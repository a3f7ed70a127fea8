#pragma once
// Nearest-neighbour resampling of a span of the waterfall's image into a destination
// rectangle. The source position of every destination column and line is computed once per
// geometry, so a frame allocates nothing: the span of width W is spread over D pixels
// (factor D / W) about its centre C, and destination pixel d reads source pixel
// Floor(C + (d + 0.5 - D / 2) * W / D), kept inside the image.
//
// The image is a ring of row slots (see TQVBasicWaterfallDataView). When the slots are the
// picture's columns, each slot is kept sampled at the destination lines as a compact column
// of 16-bit indices into a palette of the colours met so far. A frame then reads two bytes
// a shown pixel from a cache of two bytes a pixel and slot, small enough to stay in the
// processor's cache for a long history: as the history scrolls, each frame shows other
// slots, and reading them costs the same whether the history holds 1000 rows or 10,000.

#include "qv/foundation/QLBitmap.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace qv {

class TQVNearestResampler {
public:
    // Prepares the tables; cheap when nothing changed.
    void Prepare(int32_t ASourceWidth, int32_t ASourceHeight, double AXCentre, double AYCentre, double ASpanWidth,
                 double ASpanHeight, int32_t ADestWidth, int32_t ADestHeight);
    // Where the source pixels lie in memory: the image is a ring of ASlots row slots of
    // AStride pixels, logical slot 0 at AOrigin. With AColumnsAreSlots the source columns are
    // the slots and source line l is sample ALastSample - l; otherwise the lines are the
    // slots and the columns the samples.
    void Place(bool AColumnsAreSlots, int32_t AOrigin, int32_t ASlots, int32_t AStride, int32_t ALastSample);
    // Copies the source into ADest at (ALeft, ATop), clipped to it.
    void Resample(const uint32_t* ASource, TQLBitmap& ADest, int32_t ALeft, int32_t ATop);
    // A slot's pixels changed (it was coloured or filled), or all of them did.
    void InvalidateSlot(int32_t APhysicalSlot);
    void InvalidateAll();
    const std::vector<int32_t>& GetSourceColumns() const { return FColumns; }
    const std::vector<int32_t>& GetSourceLines() const { return FLines; }
    // Colours the palette holds (for inspection).
    size_t GetPaletteSize() const { return FPalette.size(); }

private:
    static void Fill(std::vector<int32_t>& ATable, int32_t ACount, int32_t ASourceSize, double ACentre, double ASpan);
    // Samples the slots shown in columns AX0..AX1-1 that are out of date into the cache;
    // false when the palette ran full.
    bool UpdateColumns(const uint32_t* ASource, int32_t AX0, int32_t AX1);
    // The palette index of a colour, added when new; -1 when the palette is full.
    int32_t PaletteIndex(uint32_t AColour);
    void ResampleColumns(TQLBitmap& ADest, int32_t ALeft, int32_t ATop, int32_t AX0, int32_t AX1, int32_t AY0,
                         int32_t AY1) const;
    // Reads every pixel straight from the image: for slots as lines, and for the rare picture
    // with more colours than a palette holds.
    void ResampleDirect(const uint32_t* ASource, TQLBitmap& ADest, int32_t ALeft, int32_t ATop, int32_t AX0,
                        int32_t AX1, int32_t AY0, int32_t AY1) const;

    std::vector<int32_t> FColumns;
    std::vector<int32_t> FLines;
    // Offsets of the destination's columns and lines in the image: with FColumnsAreSlots
    // the columns give physical slots and the lines samples, else the columns give samples
    // and the lines slot offsets.
    std::vector<ptrdiff_t> FColumnOffsets;
    std::vector<ptrdiff_t> FLineOffsets;
    bool FColumnsAreSlots = false;
    int32_t FStride = 0;
    // Each slot sampled at the destination lines (FCachedLines) as palette indices, and
    // which slots are up to date.
    std::vector<uint16_t> FColumnCache;
    std::vector<ptrdiff_t> FCachedLines;
    std::vector<bool> FColumnValid;
    std::vector<uint32_t> FPalette;
    std::unordered_map<uint32_t, uint16_t> FPaletteIndex;
    struct TKey {
        int32_t SW = -1, SH = -1, DW = -1, DH = -1;
        double XC = 0, YC = 0, W = 0, H = 0;
        bool operator==(const TKey&) const = default;
    } FKey;
};

} // namespace qv
