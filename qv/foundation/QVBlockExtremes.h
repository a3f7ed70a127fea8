#pragma once
// The extremes of a record kept block by block, so that the extremes of any range of it cost
// a look at the blocks inside the range and at most two part blocks of samples, instead of a
// read of every sample. Built with one read of the record; the record must stay unchanged
// while the summary is used with it.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv {

class TQVBlockExtremes {
public:
    // Samples per block: small enough that the part blocks at a range's ends are a few
    // cache lines, large enough that the summary is a small fraction of the record.
    static constexpr int32_t BlockSize = 64;
    // Blocks per group: a second level, so that a range of millions of samples costs a few
    // thousand summary entries rather than a hundred thousand. Groups of 1024 samples keep
    // the part groups at a pixel column's two ends short when a column holds thousands of
    // samples, which is where a long record's frame spends its summary reads.
    static constexpr int32_t GroupBlocks = 16;

    // Summarises AData[0..ACount); a negative count counts as 0.
    void Build(const double* AData, int32_t ACount);
    // The samples the summary was built over.
    int32_t GetCount() const { return FCount; }

    // The extremes of AData[AFirst..AEnd), AData being the record the summary was built over
    // (the part blocks are read from it). AFinite false: NaN skipped, infinities count;
    // AFinite true: only finite samples count. False, with ALo and AHi untouched, when no
    // sample counts. The range is held to 0..GetCount().
    bool MinMax(const double* AData, int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const;

    // The summary of one block.
    struct TBlock {
        double Lo, Hi;             // NaN skipped; +inf and -inf when the block has no number
        double FiniteLo, FiniteHi; // finite only; +inf and -inf when the block has none
    };

private:
    // Folds blocks AFirst..AEnd - 1 into ALo/AHi, by group where a whole group lies inside.
    void TakeBlocks(int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const;

    std::vector<TBlock> FBlocks;
    std::vector<TBlock> FGroups; // the extremes of GroupBlocks blocks each
    int32_t FCount = 0;
};

} // namespace qv
