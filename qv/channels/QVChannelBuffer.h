#pragma once
// Sample storage of a channel.
//
// TQVChannelBuffer is a real buffer (IQVRealBuffer) kept as a ring: the oldest samples leave at
// the front and new ones enter at the back at a cost that does not depend on the number of
// samples kept, which is what a channel running at its size limit does for every sample.
//
// The samples live in a block shared by reference count. Share() hands out another buffer over
// the same samples, contiguous, without copying them (a ring that wraps round the end of its
// block is copied once into a contiguous block instead). The buffer that last wrote a block
// is its writer; the block remembers the hull of the ranges the writer handed out (its guard).
// The writer keeps writing in place outside the guard, and moves to a fresh block only when a
// write would land inside it while others still hold the block. A buffer handed out thus
// never sees its samples change, and the writer copies at most once after each hand-over.
// Any other holder writes in place only while it is the last one.
//
// A buffer object is not guarded: its holder serialises calls on it. Distinct buffer objects
// that share a block may be used on different threads; handing one out (Share) is a call on
// the source object and is serialised with its writes.
//
// Read() of a ring that wraps straightens it first (one pass over the samples); buffers from
// Share() never wrap, so reading them never writes, unless they hold a ramp kept without a
// block (below), which their first Read() writes out.
//
// A ramp (0, 1, 2, ... or any run of whole numbers counting up by one, as a channel's X is
// while it follows its Y) is kept as its first value and its size, without a block: appending
// to it, dropping from its front and sharing it cost nothing per sample. The samples are
// written out the first time anything needs them in memory (Read, Write, an append of other
// values); a buffer that holds a written-out ramp remembers so, and a hand-over of the same
// ramp to it (CopyFrom) then writes nothing.
//
// TQVGapList holds a channel's gap indexes with a running offset, so that shifting every
// index by the number of dropped samples costs no pass over the list.

#include "qv/foundation/QVBlockExtremes.h"
#include "qv/foundation/QVBuffers.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <type_traits>
#include <vector>

namespace qv {

// The element types a channel takes samples in.
template <class T>
concept QVChannelElement = std::is_same_v<T, double> || std::is_same_v<T, float> || std::is_same_v<T, int32_t> ||
    std::is_same_v<T, uint32_t> || std::is_same_v<T, int64_t> || std::is_same_v<T, uint64_t> ||
    std::is_same_v<T, int16_t> || std::is_same_v<T, uint16_t>;

class TQVChannelBuffer final : public IQVRealBuffer {
public:
    TQVChannelBuffer() = default;
    // A converted copy of ACount elements; raises std::invalid_argument for a negative count or
    // a null pointer with a count.
    template <QVChannelElement T>
    TQVChannelBuffer(const T* AData, int32_t ACount)
    {
        Assign(AData, ACount);
    }
    ~TQVChannelBuffer() override;
    TQVChannelBuffer(const TQVChannelBuffer&) = delete;
    TQVChannelBuffer& operator=(const TQVChannelBuffer&) = delete;

    // ---- IQVRealBuffer ----
    int32_t GetSize() const override { return FSize; }
    void Resize(int32_t ASize, bool AKeepContent) override;
    const double* Read() const override;
    double* Write() override;
    double GetItem(int32_t AIndex) const override;
    void SetItem(int32_t AIndex, double AValue) override;
    double Min() const override;
    double Max() const override;
    double Min(int32_t AFirst, int32_t ALast) const override;
    double Max(int32_t AFirst, int32_t ALast) const override;

    // ---- Ring operations ----
    // ALimit, where given, is the size the owner holds the buffer to (0: none): growth of the
    // block stops there while the size stays within it, so a full ring wastes no room.

    // Replaces the content by ACount converted elements.
    template <QVChannelElement T>
    void Assign(const T* AData, int32_t ACount);
    // Reads ACount doubles at AData in place, without a copy: memory the caller owns and keeps
    // unchanged (a mapped file, say), held alive by AOwner when given. The buffer never writes
    // it: any change that would (a write, an append in place, a grown block) first moves the
    // samples into memory of the buffer's own. Dropping samples at the front stays in place.
    // Raises std::invalid_argument as the constructor does.
    void AssignForeign(const double* AData, int32_t ACount, std::shared_ptr<const void> AOwner);
    // Whether the samples are read in place from foreign memory.
    bool GetIsForeign() const;
    // Takes the samples of ASource as they are now, sharing them as Share() does.
    void AssignShared(const TQVChannelBuffer& ASource);
    // Takes a contiguous copy of the samples of ASource, into this buffer's own block when it
    // holds it alone and it fits (no fresh memory), else into a new one.
    void CopyFrom(const TQVChannelBuffer& ASource);
    // Appends ACount converted elements.
    template <QVChannelElement T>
    void Append(const T* AData, int32_t ACount, uint32_t ALimit = 0);
    // Replaces the content by 0, 1, 2, ... (ACount values).
    void AssignRamp(int32_t ACount);
    // Appends ABase + AStep, ABase + (AStep + 1), ABase + (AStep + 2), ... (ACount values).
    void AppendRamp(int32_t ACount, double ABase, double AStep, uint32_t ALimit = 0);
    // Whether the samples are a ramp kept without a block (see above).
    bool GetIsRamp() const { return FRamp; }
    // Whether this buffer holds the same samples as ARamp, a ramp kept without a block:
    // kept the same way, or written out and unchanged since.
    bool GetHoldsRampOf(const TQVChannelBuffer& ARamp) const
    {
        return ARamp.FRamp && HoldsRamp(ARamp.FRampFirst, ARamp.FSize);
    }
    // Appends ACount copies of AValue.
    void AppendFill(int32_t ACount, double AValue, uint32_t ALimit = 0);
    void AppendValue(double AValue, uint32_t ALimit = 0) { AppendFill(1, AValue, ALimit); }
    // Inserts ACount copies of AValue before the first sample.
    void PrependFill(int32_t ACount, double AValue);
    // Removes the ACount oldest samples; raises std::out_of_range beyond the size.
    void DropFront(int32_t ACount);
    // Empty, with no block.
    void Clear();

    // Unchecked access by logical index.
    double At(int32_t AIndex) const { return FRamp ? FRampFirst + double(AIndex) : FBlock->Items[Physical(AIndex)]; }
    // Copies ACount samples from AFirst on into ADest; the range must lie within the size.
    void CopyTo(double* ADest, int32_t AFirst, int32_t ACount) const;

    // A new buffer holding these samples, contiguous, that no later write to this one
    // changes. Shares the block unless the ring wraps.
    // AWithExtremes false leaves the summary behind, for a reader that only needs samples.
    std::shared_ptr<TQVChannelBuffer> Share(bool AWithExtremes = true) const;

    int32_t GetCapacity() const;
    // The samples run round the end of the block.
    bool GetIsWrapped() const;
    // This buffer holds its block alone.
    bool GetIsSole() const;

    // Where the large blocks of a channel's buffers go when their last holder lets them go,
    // to be written again as a later fresh block instead of being returned to the system and
    // asked for anew. A live record swaps blocks with its draw stage on every refresh, and
    // each fresh block of megabytes would cost a page fault per page when first written and a
    // page-table tear-down when freed. It keeps at most two blocks (a channel's X and Y), the
    // most recently released; blocks outliving it are freed as usual. Thread-safe.
    class TRecycler;
    // Blocks this buffer makes from now on return to ARecycler (null: none).
    void SetRecycler(std::shared_ptr<TRecycler> ARecycler) { FRecycler = std::move(ARecycler); }
    const std::shared_ptr<TRecycler>& GetRecycler() const { return FRecycler; }

    // A summary of the samples' extremes kept with them (TQVBlockExtremes): every change at
    // either end updates it in amortised constant work per sample, and Share() hands it out
    // with the samples, so that a reader of the shared buffer never summarises them again.
    // A write through Write() or SetItem, which may change any sample, leaves it to be made
    // anew on the next Share() or GetExtremes(). Off by default.
    void SetKeepExtremes(bool AValue);
    bool GetKeepExtremes() const { return FKeepExtremes; }
    // The summary of the samples as they are now; null when none is kept.
    const TQVBlockExtremes* GetExtremes() const;

    // Bytes of sample storage held by all channel buffers of the process now, and the most
    // held at once since the last ResetPeakBytes.
    static int64_t GetLiveBytes();
    static int64_t GetPeakBytes();
    static void ResetPeakBytes();

private:
    struct TBlock {
        explicit TBlock(int32_t ACapacity);
        // Foreign memory, read only; never freed here.
        TBlock(const double* AItems, int32_t ACount, std::shared_ptr<const void> AOwner);
        ~TBlock();
        TBlock(const TBlock&) = delete;
        TBlock& operator=(const TBlock&) = delete;
        // Grows the block keeping its samples; the memory may move (large blocks usually are
        // remapped rather than copied).
        void Grow(int32_t ACapacity);

        std::atomic<int32_t> Refs{1};
        int32_t Capacity;
        std::weak_ptr<TRecycler> Recycler;
        // Physical positions [GuardLo, GuardHi) that the writer handed out; empty when
        // equal. Only the writer reads and changes them, under its holder's serialisation.
        int32_t GuardLo = 0;
        int32_t GuardHi = 0;
        double* Items;
        // Set for foreign memory: what keeps it alive. Such a block is never written.
        std::shared_ptr<const void> Foreign;
        bool IsForeign = false;
    };

    int32_t Physical(int32_t AIndex) const;
    // Makes sure ACount more samples fit and that the positions they go to may be written;
    // returns the physical position of the first.
    int32_t PrepareAppend(int32_t ACount, uint32_t ALimit);
    // Whether the ACount positions from physical APos on may be written in place now.
    bool CanWrite(int32_t APos, int32_t ACount) const;
    // Moves the samples to the start of a fresh block of ACapacity, leaving AGap free slots
    // in front of them.
    void Relocate(int32_t ACapacity, int32_t AGap = 0) const;
    void Straighten() const;
    void Release() const;
    // A block of ACapacity (or a little more, when a recycled one fits), not shared.
    TBlock* NewBlock(int32_t ACapacity) const;
    // Frees a block nobody holds, or hands it to its recycler.
    static void Drop(TBlock* ABlock);
    template <class F>
    void ForSegments(int32_t AFirst, int32_t ACount, F&& AProc) const;
    template <class F>
    void FillPositions(int32_t APos, int32_t ACount, F&& AProc);
    // Whether appends store past the cache (a block far larger than it).
    bool GetStreams() const;
    // A ramp kept without a block is written out into one.
    void Materialize() const;
    // Appends ACount values from AFirst on to the ramp kept without a block (starting one in
    // an empty buffer); the caller checked ContinuesRamp.
    void KeepRamp(double AFirst, int32_t ACount);
    // Whether ACount samples from AFirst on, counting up by one, continue the samples as a
    // ramp kept without a block; AMayStart: an empty buffer may start one.
    bool ContinuesRamp(double AFirst, int32_t ACount, bool AMayStart) const;
    // Whether the samples are the ramp AFirst, AFirst + 1, ... (ACount values), kept or written.
    bool HoldsRamp(double AFirst, int32_t ACount) const
    {
        return FSize == ACount && (FRamp || FRampWritten) && FRampFirst == AFirst;
    }
    // Whether a fresh content of ACount samples goes into the present block.
    bool ReuseFor(int32_t ACount) const;
    // The summary after a change: the last ACount samples are new, or all of them are.
    void ExtremesAppended(int32_t ACount);
    void ExtremesRenewed() const;
    // The summary of ASource's samples, which this buffer now holds.
    void TakeExtremesOf(const TQVChannelBuffer& ASource);

    // Straightening a ring inside Read() changes where the samples lie, not what they are.
    mutable TBlock* FBlock = nullptr;
    mutable int32_t FHead = 0;
    mutable bool FWriter = false;
    int32_t FSize = 0;
    std::shared_ptr<TRecycler> FRecycler;
    bool FKeepExtremes = false;
    // Made anew lazily after a write that may have changed any sample.
    mutable bool FExtremesStale = false;
    // The samples are FRampFirst + i: kept so without a block (FRamp), or written out and
    // unchanged since (FRampWritten).
    mutable bool FRamp = false;
    mutable bool FRampWritten = false;
    double FRampFirst = 0.0;
    mutable TQVBlockExtremes FExtremes;
};

class TQVChannelBuffer::TRecycler {
public:
    TRecycler() = default;
    ~TRecycler();
    TRecycler(const TRecycler&) = delete;
    TRecycler& operator=(const TRecycler&) = delete;
    // Frees the blocks kept.
    void Clear();
    // Bytes kept.
    int64_t GetBytes() const;

private:
    friend class TQVChannelBuffer;
    static constexpr size_t MaxBlocks = 2;
    mutable std::mutex FLock;
    std::vector<TBlock*> FBlocks; // oldest first
};

// Indexes of samples that begin a separated segment, oldest entry first. Entries are kept
// with a running offset; Shift moves every entry at once.
class TQVGapList {
public:
    int32_t GetCount() const { return static_cast<int32_t>(FItems.size() - FFirst); }
    int32_t GetItem(int32_t AIndex) const;
    // Appends AIndex; raises std::out_of_range above INT32_MAX.
    void Add(int64_t AIndex);
    // Drops the leading entries below ACount and subtracts ACount from the rest.
    void Shift(int64_t ACount);
    void Clear();
    // The entries as a new integer buffer (sharing its samples with earlier results while
    // the list did not change).
    std::shared_ptr<IQVIntegerBuffer> ToBuffer() const;
    std::vector<int32_t> ToVector() const;

private:
    void Changed() { FCache.reset(); }

    std::vector<int64_t> FItems; // entry + FOffset
    size_t FFirst = 0;           // entries before it were dropped
    int64_t FOffset = 0;
    mutable std::shared_ptr<TQVIntegerBuffer> FCache;
};

} // namespace qv
