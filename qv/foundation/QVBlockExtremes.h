#pragma once
// The extremes of a record kept block by block and in a tree of groups of blocks, so that the
// extremes of any range of it cost a few summary entries per level and at most two part
// blocks of samples, instead of a read of every sample.
//
// The summary follows the record as it changes at its two ends: Append takes new samples at
// the back in amortised constant work per sample, DropFront lets the oldest go in amortised
// constant work per dropped block. Blocks are counted from the first sample the summary ever
// saw, so dropping samples never moves a block's edges; a block that lost some of its samples
// is only ever read sample by sample, like the block still being filled at the back.
//
// The entries live in chunks shared by reference count. A copy of a summary shares them and
// costs a pointer per chunk, not a read of the entries: a record's summary can thus go with
// its samples wherever they are handed. Once written an entry never changes; the summary that
// appends writes only entries that its copies do not count yet, and a copy that appends first
// takes its own copy of the chunks it would write into. A copy may be read on one thread
// while the original appends on another, as long as the copy was made under the same
// serialisation as the appends.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>

namespace qv {

class TQVBlockExtremes {
public:
    // Samples per block: small enough that the part blocks at a range's ends are a few cache
    // lines, large enough that the summary is a small fraction of the record (1/16 of it).
    static constexpr int32_t BlockSize = 64;
    // Entries of one level per entry of the next.
    static constexpr int32_t Fanout = 16;
    // Levels of entries, blocks first; the top one spans 2^30 samples an entry, so that a
    // record of 2^31 samples takes at most a handful of them.
    static constexpr int32_t Levels = 7;

    // The summary of one block or group.
    struct TBlock {
        double Lo, Hi;             // NaN skipped; +inf and -inf when there is no number
        double FiniteLo, FiniteHi; // finite only; +inf and -inf when there is none
    };

    TQVBlockExtremes() = default;
    // Copies share the entries (see above); the copy does not write into them.
    TQVBlockExtremes(const TQVBlockExtremes& ASource);
    TQVBlockExtremes& operator=(const TQVBlockExtremes& ASource);
    TQVBlockExtremes(TQVBlockExtremes&&) noexcept = default;
    TQVBlockExtremes& operator=(TQVBlockExtremes&&) noexcept = default;

    // Summarises AData[0..ACount) anew; a negative count counts as 0.
    void Build(const double* AData, int32_t ACount);
    // Takes ACount samples that follow the ones summarised (nothing for a count of 0 or below).
    // Raises std::length_error when the record would pass INT32_MAX samples.
    void Append(const double* AData, int32_t ACount);
    // Stores ACount elements of ASource into ADest as doubles and takes them as Append does,
    // in the same pass: a whole block is summarised from the values on their way to ADest, so
    // the samples are read once. AStream: the stores bypass the cache, for a destination far
    // larger than it that nothing reads soon. The ranges must not overlap. On an error (the
    // count, as Append) nothing is stored.
    template <class T>
    void AppendConverted(const T* ASource, double* ADest, int32_t ACount, bool AStream);
    // Forgets the ACount oldest samples; raises std::out_of_range beyond the count.
    void DropFront(int32_t ACount);
    // No samples, and no entries held.
    void Clear();
    // The samples summarised now.
    int32_t GetCount() const { return FCount; }

    // The extremes of AData[AFirst..AEnd), AData being the record as the summary counts it now
    // (its first element the oldest sample kept; the part blocks are read from it). AFinite
    // false: NaN skipped, infinities count; AFinite true: only finite samples count. False,
    // with ALo and AHi untouched, when no sample counts. The range is held to 0..GetCount().
    bool MinMax(const double* AData, int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const;

    // A hint that MinMax will soon be asked for a range starting or ending near AIndex: the
    // block of AData around it and the summary entries there are fetched into the cache
    // meanwhile. No effect on results.
    void Prefetch(const double* AData, int32_t AIndex) const;

private:
    static constexpr int32_t ChunkEntries = 256;
    struct TChunk {
        TBlock Items[ChunkEntries];
    };
    struct TLevel {
        std::deque<std::shared_ptr<TChunk>> Chunks;
        int64_t FirstChunk = 0; // the chunk number of Chunks.front()
        // The entry being gathered (its children so far); empty to start with.
        TBlock Open{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                    std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    };

    TBlock& Entry(int32_t ALevel, int64_t AIndex);
    const TBlock& Entry(int32_t ALevel, int64_t AIndex) const;
    // Stores the finished entry AIndex of level ALevel and passes it on to the level above.
    void Finish(int32_t ALevel, int64_t AIndex, const TBlock& AValue);
    // Before the first write after a copy: the chunks that may be written are made private.
    void OwnTail();
    // Append's walk over the blocks: AWhole(offset, blocks, out) summarises whole blocks into
    // out and tells whether any holds an infinity, APart(offset, count) summarises a part
    // block; AStored is where the samples can be read again afterwards.
    template <class FWhole, class FPart>
    void AppendWith(const double* AStored, int32_t ACount, FWhole&& AWhole, FPart&& APart);
    // Folds the whole blocks AFirst..AEnd - 1 (absolute block numbers) into ALo/AHi.
    void TakeBlocks(int64_t AFirst, int64_t AEnd, bool AFinite, double& ALo, double& AHi) const;

    std::array<TLevel, Levels> FLevels;
    int64_t FBase = 0; // samples dropped before the first one kept
    int32_t FCount = 0;
    bool FWriter = true; // the chunks' last entries are this summary's to write
};

} // namespace qv
