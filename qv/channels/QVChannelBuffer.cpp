#include "qv/channels/QVChannelBuffer.h"

#include "qv/foundation/QVArrayOps.h"
#include "qv/foundation/QVSharedArray.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace qv {

namespace {

constexpr const char* kOwner = "TQVChannelBuffer";
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// The smallest block a growing buffer takes.
constexpr int64_t kMinCapacity = 16;
// From this block size on, appended samples are stored past the cache: a ring twice the size
// of a large last-level cache is written round long before anything reads it back, so the
// cache lines it would fetch only to overwrite them cost memory bandwidth twice over, and
// they would push out what the paint reads. Smaller rings stay in the cache between hand-overs
// and are written the ordinary way.
constexpr size_t kStreamBytes = size_t(64) << 20;

// ADest[i] = ABase + (AFirst + i) for i < ACount, exactly what that formula gives sample by
// sample: the index counts in a double, exactly, and each value takes the same two additions.
void FillRamp(double* ADest, int32_t ACount, double ABase, double AFirst, bool AStream)
{
    int32_t i = 0;
#if defined(__SSE2__)
    for (; i < ACount && reinterpret_cast<uintptr_t>(ADest + i) % 16 != 0; ++i)
        ADest[i] = ABase + (AFirst + double(i));
    const __m128d Base = _mm_set1_pd(ABase), First = _mm_set1_pd(AFirst), Two = _mm_set1_pd(2.0);
    __m128d Index = _mm_set_pd(double(i + 1), double(i));
    if (AStream) {
        for (; i + 2 <= ACount; i += 2) {
            _mm_stream_pd(ADest + i, _mm_add_pd(Base, _mm_add_pd(First, Index)));
            Index = _mm_add_pd(Index, Two);
        }
        // Streamed stores are weakly ordered: visible before the samples are handed on.
        _mm_sfence();
    } else {
        for (; i + 2 <= ACount; i += 2) {
            _mm_store_pd(ADest + i, _mm_add_pd(Base, _mm_add_pd(First, Index)));
            Index = _mm_add_pd(Index, Two);
        }
    }
#else
    (void)AStream;
#endif
    for (; i < ACount; ++i)
        ADest[i] = ABase + (AFirst + double(i));
}

void CheckCount(const void* AData, int64_t ACount)
{
    if (ACount < 0)
        throw std::invalid_argument(std::string(kOwner) + ": negative count " + std::to_string(ACount));
    if (ACount > 0 && !AData)
        throw std::invalid_argument(std::string(kOwner) + ": null data with count " + std::to_string(ACount));
}

// The extremes of two partial results, a NaN standing for "no sample".
double PickMin(double A, double B)
{
    if (std::isnan(A))
        return B;
    if (std::isnan(B))
        return A;
    return B < A ? B : A;
}
double PickMax(double A, double B)
{
    if (std::isnan(A))
        return B;
    if (std::isnan(B))
        return A;
    return B > A ? B : A;
}

} // namespace

namespace {
std::atomic<int64_t> GLiveBytes{0};
std::atomic<int64_t> GPeakBytes{0};

void CountBytes(int64_t ABytes)
{
    const int64_t Live = GLiveBytes.fetch_add(ABytes, std::memory_order_relaxed) + ABytes;
    int64_t Peak = GPeakBytes.load(std::memory_order_relaxed);
    while (Live > Peak && !GPeakBytes.compare_exchange_weak(Peak, Live, std::memory_order_relaxed)) {
    }
}

size_t BytesOf(int32_t ACapacity)
{
    return static_cast<size_t>(ACapacity) * sizeof(double);
}
} // namespace

int64_t TQVChannelBuffer::GetLiveBytes()
{
    return GLiveBytes.load(std::memory_order_relaxed);
}
int64_t TQVChannelBuffer::GetPeakBytes()
{
    return GPeakBytes.load(std::memory_order_relaxed);
}
void TQVChannelBuffer::ResetPeakBytes()
{
    GPeakBytes.store(GLiveBytes.load(std::memory_order_relaxed));
}

// Blocks live in malloc memory so that a growing block can be reallocated: a large one is
// then remapped by the C library instead of copied and touched anew.
namespace {
// Records of millions of samples live in blocks of many megabytes, each filled once and
// released a frame later. With ordinary pages each 4 KiB costs a fault when first written and
// a page-table entry to tear down when released, which for a ten-million-sample record adds
// up to milliseconds a frame; large pages make both a few hundred times fewer. Only advice:
// where the system has no large pages nothing changes.
void AdviseLargePages(void* AItems, size_t ABytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr uintptr_t Large = uintptr_t(2) << 20;
    if (ABytes < 2 * Large)
        return;
    const uintptr_t Begin = (reinterpret_cast<uintptr_t>(AItems) + Large - 1) & ~(Large - 1);
    const uintptr_t End = (reinterpret_cast<uintptr_t>(AItems) + ABytes) & ~(Large - 1);
    if (End > Begin)
        madvise(reinterpret_cast<void*>(Begin), End - Begin, MADV_HUGEPAGE);
#else
    (void)AItems;
    (void)ABytes;
#endif
}
} // namespace

TQVChannelBuffer::TBlock::TBlock(int32_t ACapacity)
    : Capacity(ACapacity), Items(static_cast<double*>(std::malloc(BytesOf(ACapacity))))
{
    if (!Items)
        throw std::bad_alloc();
    AdviseLargePages(Items, BytesOf(ACapacity));
    CountBytes(int64_t(BytesOf(ACapacity)));
}

TQVChannelBuffer::TBlock::TBlock(const double* AItems, int32_t ACount, std::shared_ptr<const void> AOwner)
    : Capacity(ACount), Items(const_cast<double*>(AItems)), Foreign(std::move(AOwner)), IsForeign(true)
{}

TQVChannelBuffer::TBlock::~TBlock()
{
    if (IsForeign)
        return;
    std::free(Items);
    CountBytes(-int64_t(BytesOf(Capacity)));
}

void TQVChannelBuffer::TBlock::Grow(int32_t ACapacity)
{
    auto* Grown = static_cast<double*>(std::realloc(Items, BytesOf(ACapacity)));
    if (!Grown)
        throw std::bad_alloc();
    AdviseLargePages(Grown, BytesOf(ACapacity));
    CountBytes(int64_t(BytesOf(ACapacity)) - int64_t(BytesOf(Capacity)));
    Items = Grown;
    Capacity = ACapacity;
}

TQVChannelBuffer::~TQVChannelBuffer()
{
    Release();
}

namespace {
// Below this a block comes from malloc's own free lists at no cost worth saving.
constexpr size_t MinRecycledBytes = size_t(1) << 20;
} // namespace

TQVChannelBuffer::TRecycler::~TRecycler()
{
    Clear();
}

void TQVChannelBuffer::TRecycler::Clear()
{
    std::vector<TBlock*> Blocks;
    {
        std::lock_guard<std::mutex> Lock(FLock);
        Blocks.swap(FBlocks);
    }
    for (TBlock* B : Blocks)
        delete B;
}

int64_t TQVChannelBuffer::TRecycler::GetBytes() const
{
    std::lock_guard<std::mutex> Lock(FLock);
    int64_t Bytes = 0;
    for (const TBlock* B : FBlocks)
        Bytes += int64_t(BytesOf(B->Capacity));
    return Bytes;
}

TQVChannelBuffer::TBlock* TQVChannelBuffer::NewBlock(int32_t ACapacity) const
{
    if (!FRecycler || BytesOf(ACapacity) < MinRecycledBytes)
        return new TBlock(ACapacity);
    {
        // A kept block serves when it is large enough and at most an eighth larger.
        std::lock_guard<std::mutex> Lock(FRecycler->FLock);
        auto& Blocks = FRecycler->FBlocks;
        for (auto It = Blocks.rbegin(); It != Blocks.rend(); ++It) {
            TBlock* B = *It;
            if (B->Capacity >= ACapacity && B->Capacity - ACapacity <= ACapacity / 8) {
                Blocks.erase(std::next(It).base());
                B->Refs.store(1, std::memory_order_relaxed);
                B->GuardLo = B->GuardHi = 0;
                return B;
            }
        }
    }
    auto* Fresh = new TBlock(ACapacity);
    Fresh->Recycler = FRecycler;
    return Fresh;
}

void TQVChannelBuffer::Drop(TBlock* ABlock)
{
    if (const auto Recycler = ABlock->Recycler.lock()) {
        TBlock* Evicted = nullptr;
        {
            std::lock_guard<std::mutex> Lock(Recycler->FLock);
            if (Recycler->FBlocks.size() == TRecycler::MaxBlocks) {
                Evicted = Recycler->FBlocks.front();
                Recycler->FBlocks.erase(Recycler->FBlocks.begin());
            }
            Recycler->FBlocks.push_back(ABlock);
        }
        delete Evicted;
        return;
    }
    delete ABlock;
}

void TQVChannelBuffer::Release() const
{
    // The release pairs with the acquire of a holder that later finds itself alone: every
    // read of ours happens before its writes.
    if (FBlock && FBlock->Refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        Drop(FBlock);
    FBlock = nullptr;
    FWriter = false;
    FRamp = false;
    FRampWritten = false;
}

namespace {
// A kept ramp holds only whole numbers well inside the range doubles count exactly, so that
// FRampFirst + i is the very value the samples would have had, written one by one.
constexpr double kRampMax = 4503599627370496.0; // 2^52
bool IsRampValue(double AValue)
{
    return std::trunc(AValue) == AValue && std::abs(AValue) < kRampMax;
}
} // namespace

bool TQVChannelBuffer::ContinuesRamp(double AFirst, int32_t ACount, bool AMayStart) const
{
    if (FKeepExtremes || !IsRampValue(AFirst) || !IsRampValue(AFirst + double(ACount)))
        return false;
    if (FSize == 0)
        return AMayStart || FRamp;
    return FRamp && AFirst == FRampFirst + double(FSize);
}

void TQVChannelBuffer::KeepRamp(double AFirst, int32_t ACount)
{
    if (int64_t(FSize) + ACount > INT32_MAX)
        throw std::length_error(std::string(kOwner) + ": size " + std::to_string(int64_t(FSize) + ACount) +
                                " exceeds " + std::to_string(INT32_MAX));
    if (FSize == 0) {
        // An empty buffer starts a ramp: its block, if any, goes.
        Release();
        FHead = 0;
        FRampFirst = AFirst;
        FRamp = true;
    }
    FSize += ACount;
}

void TQVChannelBuffer::Materialize() const
{
    if (!FRamp)
        return;
    if (FSize == 0) {
        FRamp = false;
        return;
    }
    auto* Fresh = NewBlock(FSize);
    FillRamp(Fresh->Items, FSize, FRampFirst, 0.0, BytesOf(Fresh->Capacity) >= kStreamBytes);
    FBlock = Fresh;
    FHead = 0;
    FWriter = true;
    FRamp = false;
    FRampWritten = true;
}

int32_t TQVChannelBuffer::GetCapacity() const
{
    return FBlock ? FBlock->Capacity : 0;
}

bool TQVChannelBuffer::GetIsWrapped() const
{
    return FBlock && int64_t(FHead) + FSize > FBlock->Capacity;
}

bool TQVChannelBuffer::GetIsSole() const
{
    return FBlock && FBlock->Refs.load(std::memory_order_acquire) == 1;
}

int32_t TQVChannelBuffer::Physical(int32_t AIndex) const
{
    const int32_t Capacity = FBlock->Capacity;
    const int64_t P = int64_t(FHead) + AIndex;
    return static_cast<int32_t>(P >= Capacity ? P - Capacity : P);
}

template <class F>
void TQVChannelBuffer::ForSegments(int32_t AFirst, int32_t ACount, F&& AProc) const
{
    if (ACount <= 0)
        return;
    const int32_t Pos = Physical(AFirst);
    const int32_t First = std::min(ACount, FBlock->Capacity - Pos);
    AProc(FBlock->Items + Pos, First, 0);
    if (First < ACount)
        AProc(FBlock->Items, ACount - First, First);
}

bool TQVChannelBuffer::CanWrite(int32_t APos, int32_t ACount) const
{
    if (FBlock->IsForeign)
        return false;
    if (FBlock->Refs.load(std::memory_order_acquire) == 1) {
        // Alone: whatever was handed out is gone, and this buffer may write anywhere.
        FBlock->GuardLo = FBlock->GuardHi = 0;
        FWriter = true;
        return true;
    }
    if (!FWriter)
        return false;
    const int32_t Lo = FBlock->GuardLo, Hi = FBlock->GuardHi;
    if (Lo == Hi || ACount <= 0)
        return true;
    const int32_t Capacity = FBlock->Capacity;
    const int32_t End1 = static_cast<int32_t>(std::min<int64_t>(int64_t(APos) + ACount, Capacity));
    const int64_t End2 = int64_t(APos) + ACount - Capacity; // positions from 0 on, when the run wraps
    const bool Hit1 = APos < Hi && Lo < End1;
    const bool Hit2 = End2 > 0 && Lo < End2;
    return !Hit1 && !Hit2;
}

void TQVChannelBuffer::Relocate(int32_t ACapacity, int32_t AGap) const
{
    auto* Fresh = NewBlock(ACapacity);
    if (FBlock)
        ForSegments(0, FSize, [&](const double* ASrc, int32_t ACount, int32_t AOffset) {
            std::memcpy(Fresh->Items + AGap + AOffset, ASrc, size_t(ACount) * sizeof(double));
        });
    Release();
    FBlock = Fresh;
    FHead = 0;
    FWriter = true;
}

void TQVChannelBuffer::Straighten() const
{
    if (!GetIsWrapped())
        return;
    if (GetIsSole()) {
        double* Items = FBlock->Items;
        std::rotate(Items, Items + FHead, Items + FBlock->Capacity);
        FBlock->GuardLo = FBlock->GuardHi = 0;
        FHead = 0;
        FWriter = true;
    } else {
        Relocate(FBlock->Capacity);
    }
}

int32_t TQVChannelBuffer::PrepareAppend(int32_t ACount, uint32_t ALimit)
{
    Materialize();
    FRampWritten = false;
    const int64_t Need = int64_t(FSize) + ACount;
    if (Need > INT32_MAX)
        throw std::length_error(std::string(kOwner) + ": size " + std::to_string(Need) + " exceeds " +
                                std::to_string(INT32_MAX));
    const int32_t Capacity = GetCapacity();
    if (Need > Capacity) {
        // Geometric growth keeps a long run of appends linear. A buffer held to a limit does
        // not grow beyond it, and one that passes the limit (a ramp may) keeps its size from
        // then on: it takes exactly what it needs.
        int64_t Grown = std::max({Need, 2 * int64_t(Capacity), kMinCapacity});
        if (ALimit != 0)
            Grown = Need <= int64_t(ALimit) ? std::min<int64_t>(Grown, ALimit) : Need;
        const auto NewCapacity = static_cast<int32_t>(std::min<int64_t>(Grown, INT32_MAX));
        if (FBlock && !FBlock->IsForeign && !GetIsWrapped() && GetIsSole()) {
            // Alone with the block: grow it where it is; the samples keep their positions.
            FBlock->Grow(NewCapacity);
            FBlock->GuardLo = FBlock->GuardHi = 0;
            FWriter = true;
        } else {
            Relocate(NewCapacity);
        }
    } else if (!CanWrite(Physical(FSize), ACount)) {
        Relocate(Capacity);
    }
    return Physical(FSize);
}

template <class F>
void TQVChannelBuffer::FillPositions(int32_t APos, int32_t ACount, F&& AProc)
{
    // AProc(destination, count, offset of the first of them in the run)
    const int32_t First = std::min(ACount, FBlock->Capacity - APos);
    AProc(FBlock->Items + APos, First, 0);
    if (First < ACount)
        AProc(FBlock->Items, ACount - First, First);
    FSize += ACount;
}

bool TQVChannelBuffer::ReuseFor(int32_t ACount) const
{
    // Only a block held alone, large enough and not much larger than needed.
    const int32_t Capacity = GetCapacity();
    return FBlock && !FBlock->IsForeign && ACount > 0 && Capacity >= ACount &&
           int64_t(Capacity) <= 2 * int64_t(ACount) + kMinCapacity && GetIsSole();
}

// ---- IQVRealBuffer ----

void TQVChannelBuffer::Resize(int32_t ASize, bool AKeepContent)
{
    if (ASize < 0)
        throw std::invalid_argument(std::string(kOwner) + ": negative size " + std::to_string(ASize));
    Materialize();
    FRampWritten = false;
    if (AKeepContent) {
        if (ASize <= FSize) {
            FSize = ASize;
            if (FSize == 0)
                FHead = 0;
            // Samples left at the back: the summary is made anew when next asked for.
            FExtremesStale = FKeepExtremes;
        } else {
            AppendFill(ASize - FSize, 0.0);
        }
        return;
    }
    if (ASize == 0) {
        Clear();
        return;
    }
    // Without content every sample is 0. The block is reused when this buffer holds it alone
    // and it is not much larger than needed.
    if (!ReuseFor(ASize)) {
        Release();
        FBlock = NewBlock(ASize);
    }
    FBlock->GuardLo = FBlock->GuardHi = 0;
    std::fill_n(FBlock->Items, ASize, 0.0);
    FWriter = true;
    FHead = 0;
    FSize = ASize;
    FExtremesStale = FKeepExtremes;
}

const double* TQVChannelBuffer::Read() const
{
    Materialize();
    if (!FBlock)
        return nullptr;
    Straighten();
    return FBlock->Items + FHead;
}

double* TQVChannelBuffer::Write()
{
    Materialize();
    FRampWritten = false;
    if (!FBlock)
        return nullptr;
    Straighten();
    if (!CanWrite(FHead, FSize))
        Relocate(FBlock->Capacity);
    // The caller may change any sample through the pointer.
    FExtremesStale = FKeepExtremes;
    return FBlock->Items + FHead;
}

double TQVChannelBuffer::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= FSize)
        QVRaiseIndexError(kOwner, AIndex, FSize);
    return At(AIndex);
}

void TQVChannelBuffer::SetItem(int32_t AIndex, double AValue)
{
    if (AIndex < 0 || AIndex >= FSize)
        QVRaiseIndexError(kOwner, AIndex, FSize);
    Materialize();
    FRampWritten = false;
    if (!CanWrite(Physical(AIndex), 1))
        Relocate(FBlock->Capacity);
    FBlock->Items[Physical(AIndex)] = AValue;
    FExtremesStale = FKeepExtremes;
}

double TQVChannelBuffer::Min() const
{
    return FSize == 0 ? kNaN : Min(0, FSize - 1);
}
double TQVChannelBuffer::Max() const
{
    return FSize == 0 ? kNaN : Max(0, FSize - 1);
}

namespace {
void CheckRange(int32_t AFirst, int32_t ALast, int32_t ASize)
{
    if (AFirst < 0 || ALast >= ASize || AFirst > ALast)
        throw std::out_of_range(std::string(kOwner) + ": index range " + std::to_string(AFirst) + ".." +
                                std::to_string(ALast) + " out of range (size " + std::to_string(ASize) + ")");
}
} // namespace

double TQVChannelBuffer::Min(int32_t AFirst, int32_t ALast) const
{
    CheckRange(AFirst, ALast, FSize);
    if (FRamp)
        return FRampFirst + double(AFirst);
    double Result = kNaN;
    ForSegments(AFirst, ALast - AFirst + 1, [&](const double* AData, int32_t ACount, int32_t) {
        Result = PickMin(Result, QVArrayMin(AData, size_t(ACount)));
    });
    return Result;
}

double TQVChannelBuffer::Max(int32_t AFirst, int32_t ALast) const
{
    CheckRange(AFirst, ALast, FSize);
    if (FRamp)
        return FRampFirst + double(ALast);
    double Result = kNaN;
    ForSegments(AFirst, ALast - AFirst + 1, [&](const double* AData, int32_t ACount, int32_t) {
        Result = PickMax(Result, QVArrayMax(AData, size_t(ACount)));
    });
    return Result;
}

// ---- Ring operations ----

template <QVChannelElement T>
void TQVChannelBuffer::Assign(const T* AData, int32_t ACount)
{
    CheckCount(AData, ACount);
    if (ACount == 0) {
        Clear();
        return;
    }
    // The source may lie in this very block (read through a buffer sharing it); then it
    // must stay readable while the new content is written.
    const auto* Bytes = reinterpret_cast<const unsigned char*>(AData);
    const bool Inside = FBlock &&
                        std::greater_equal<>()(Bytes, reinterpret_cast<const unsigned char*>(FBlock->Items)) &&
                        std::less<>()(Bytes, reinterpret_cast<const unsigned char*>(FBlock->Items + GetCapacity()));
    if (Inside || !ReuseFor(ACount)) {
        auto* Fresh = NewBlock(ACount);
        QVArrayConvert(AData, Fresh->Items, size_t(ACount));
        Release();
        FBlock = Fresh;
    } else {
        FBlock->GuardLo = FBlock->GuardHi = 0;
        QVArrayConvert(AData, FBlock->Items, size_t(ACount));
        FRampWritten = false;
    }
    FWriter = true;
    FHead = 0;
    FSize = ACount;
    if (FKeepExtremes) {
        FExtremes.Build(FBlock->Items, ACount);
        FExtremesStale = false;
    }
}

void TQVChannelBuffer::AssignForeign(const double* AData, int32_t ACount, std::shared_ptr<const void> AOwner)
{
    CheckCount(AData, ACount);
    if (ACount == 0) {
        Clear();
        return;
    }
    // The summary first: when it cannot be made the buffer stays as it was.
    TQVBlockExtremes Extremes;
    if (FKeepExtremes)
        Extremes.Build(AData, ACount);
    auto* Foreign = new TBlock(AData, ACount, std::move(AOwner));
    Release();
    FBlock = Foreign;
    FHead = 0;
    FSize = ACount;
    FWriter = false;
    FExtremes = std::move(Extremes);
    FExtremesStale = false;
}

bool TQVChannelBuffer::GetIsForeign() const
{
    return FBlock && FBlock->IsForeign;
}

void TQVChannelBuffer::AssignShared(const TQVChannelBuffer& ASource)
{
    if (&ASource == this)
        return;
    std::shared_ptr<TQVChannelBuffer> Shared = ASource.Share();
    Release();
    FBlock = std::exchange(Shared->FBlock, nullptr);
    FHead = Shared->FHead;
    FSize = std::exchange(Shared->FSize, 0);
    FWriter = false;
    FRamp = Shared->FRamp;
    FRampWritten = Shared->FRampWritten;
    FRampFirst = Shared->FRampFirst;
    TakeExtremesOf(*Shared);
}

void TQVChannelBuffer::CopyFrom(const TQVChannelBuffer& ASource)
{
    if (&ASource == this)
        return;
    const int32_t Count = ASource.FSize;
    if (ASource.FRamp) {
        if (HoldsRamp(ASource.FRampFirst, Count))
            return; // these very values are here already
        if (ReuseFor(Count) && !FKeepExtremes) {
            // Written out into the block this buffer holds alone: no fresh memory.
            FBlock->GuardLo = FBlock->GuardHi = 0;
            FWriter = true;
            FHead = 0;
            FillRamp(FBlock->Items, Count, ASource.FRampFirst, 0.0, GetStreams());
            FSize = Count;
            FRampFirst = ASource.FRampFirst;
            FRampWritten = true;
            return;
        }
        Release();
        FHead = 0;
        FSize = Count;
        FRampFirst = ASource.FRampFirst;
        FRamp = true;
        TakeExtremesOf(ASource);
        return;
    }
    FRampWritten = false;
    if (!ReuseFor(Count)) {
        // The old block goes first: the copy never needs room for both.
        Release();
        if (Count == 0) {
            FHead = FSize = 0;
            TakeExtremesOf(ASource);
            return;
        }
        FBlock = NewBlock(Count);
    }
    FBlock->GuardLo = FBlock->GuardHi = 0;
    FWriter = true;
    FHead = 0;
    FSize = 0;
    ASource.CopyTo(FBlock->Items, 0, Count);
    FSize = Count;
    FRampWritten = ASource.FRampWritten;
    FRampFirst = ASource.FRampFirst;
    TakeExtremesOf(ASource);
}

template <QVChannelElement T>
void TQVChannelBuffer::Append(const T* AData, int32_t ACount, uint32_t ALimit)
{
    CheckCount(AData, ACount);
    if (ACount == 0)
        return;
    const int32_t Pos = PrepareAppend(ACount, ALimit);
    if (FKeepExtremes && !FExtremesStale) {
        // The summary takes the samples on their way in: the block is read once.
        const bool Stream = GetStreams();
        FillPositions(Pos, ACount, [&](double* ADest, int32_t ARun, int32_t AOffset) {
            FExtremes.AppendConverted(AData + AOffset, ADest, ARun, Stream);
        });
        return;
    }
    FillPositions(Pos, ACount, [AData](double* ADest, int32_t ARun, int32_t AOffset) {
        QVArrayConvert(AData + AOffset, ADest, size_t(ARun));
    });
    ExtremesAppended(ACount);
}

bool TQVChannelBuffer::GetStreams() const
{
    return FBlock && BytesOf(FBlock->Capacity) >= kStreamBytes;
}

void TQVChannelBuffer::AssignRamp(int32_t ACount)
{
    CheckCount(this, ACount);
    if (ACount > 0 && !FKeepExtremes) {
        Release();
        FHead = 0;
        FSize = ACount;
        FRampFirst = 0.0;
        FRamp = true;
        return;
    }
    if (!ReuseFor(ACount)) {
        Clear();
        if (ACount == 0)
            return;
        FBlock = NewBlock(ACount);
    }
    FBlock->GuardLo = FBlock->GuardHi = 0;
    FWriter = true;
    FHead = 0;
    FSize = 0;
    FillPositions(0, ACount, [](double* ADest, int32_t ARun, int32_t) {
        for (int32_t i = 0; i < ARun; ++i)
            ADest[i] = double(i);
    });
    if (FKeepExtremes)
        ExtremesRenewed();
}

void TQVChannelBuffer::AppendRamp(int32_t ACount, double ABase, double AStep, uint32_t ALimit)
{
    CheckCount(this, ACount);
    if (ACount == 0)
        return;
    if (IsRampValue(ABase) && IsRampValue(AStep) && ContinuesRamp(ABase + AStep, ACount, true)) {
        KeepRamp(ABase + AStep, ACount);
        return;
    }
    const int32_t Pos = PrepareAppend(ACount, ALimit);
    const bool Stream = GetStreams();
    FillPositions(Pos, ACount, [ABase, AStep, Stream](double* ADest, int32_t ARun, int32_t AOffset) {
        FillRamp(ADest, ARun, ABase, AStep + double(AOffset), Stream);
    });
    ExtremesAppended(ACount);
}

void TQVChannelBuffer::AppendFill(int32_t ACount, double AValue, uint32_t ALimit)
{
    CheckCount(this, ACount);
    if (ACount == 0)
        return;
    if (ACount == 1 && ContinuesRamp(AValue, 1, false)) {
        KeepRamp(AValue, 1);
        return;
    }
    const int32_t Pos = PrepareAppend(ACount, ALimit);
    FillPositions(Pos, ACount, [AValue](double* ADest, int32_t ARun, int32_t) { std::fill_n(ADest, ARun, AValue); });
    ExtremesAppended(ACount);
}

void TQVChannelBuffer::PrependFill(int32_t ACount, double AValue)
{
    CheckCount(this, ACount);
    if (ACount == 0)
        return;
    const int64_t Need = int64_t(FSize) + ACount;
    if (Need > INT32_MAX)
        throw std::length_error(std::string(kOwner) + ": size " + std::to_string(Need) + " exceeds " +
                                std::to_string(INT32_MAX));
    // Rare (a side shorter than the samples it must keep): a fresh block with room in front.
    Materialize();
    Relocate(static_cast<int32_t>(std::max<int64_t>(Need, GetCapacity())), ACount);
    std::fill_n(FBlock->Items, ACount, AValue);
    FSize += ACount;
    FExtremesStale = FKeepExtremes;
}

void TQVChannelBuffer::DropFront(int32_t ACount)
{
    if (ACount < 0 || ACount > FSize)
        throw std::out_of_range(std::string(kOwner) + ": cannot drop " + std::to_string(ACount) + " of " +
                                std::to_string(FSize) + " samples");
    if (ACount == 0)
        return;
    if (FRamp || FRampWritten)
        FRampFirst += double(ACount);
    if (FRamp) {
        FSize -= ACount;
        return;
    }
    FHead = Physical(ACount);
    FSize -= ACount;
    if (FSize == 0)
        FHead = 0;
    if (FKeepExtremes && !FExtremesStale)
        FExtremes.DropFront(ACount);
}

void TQVChannelBuffer::Clear()
{
    Release();
    FHead = 0;
    FSize = 0;
    FExtremes.Clear();
    FExtremesStale = false;
}

void TQVChannelBuffer::SetKeepExtremes(bool AValue)
{
    if (AValue)
        Materialize();
    FKeepExtremes = AValue;
    if (AValue)
        ExtremesRenewed();
    else
        FExtremes.Clear();
}

const TQVBlockExtremes* TQVChannelBuffer::GetExtremes() const
{
    if (!FKeepExtremes)
        return nullptr;
    if (FExtremesStale)
        ExtremesRenewed();
    return &FExtremes;
}

void TQVChannelBuffer::ExtremesAppended(int32_t ACount)
{
    if (!FKeepExtremes || FExtremesStale)
        return;
    ForSegments(FSize - ACount, ACount,
                [this](const double* AData, int32_t ARun, int32_t) { FExtremes.Append(AData, ARun); });
}

void TQVChannelBuffer::ExtremesRenewed() const
{
    Materialize();
    FExtremes.Clear();
    if (FBlock)
        ForSegments(0, FSize, [this](const double* AData, int32_t ARun, int32_t) { FExtremes.Append(AData, ARun); });
    FExtremesStale = false;
}

void TQVChannelBuffer::TakeExtremesOf(const TQVChannelBuffer& ASource)
{
    if (!FKeepExtremes)
        return;
    if (const TQVBlockExtremes* Source = ASource.GetExtremes()) {
        FExtremes = *Source;
        FExtremesStale = false;
    } else {
        ExtremesRenewed();
    }
}

void TQVChannelBuffer::CopyTo(double* ADest, int32_t AFirst, int32_t ACount) const
{
    if (AFirst < 0 || ACount < 0 || int64_t(AFirst) + ACount > FSize)
        throw std::out_of_range(std::string(kOwner) + ": cannot copy " + std::to_string(ACount) + " samples from " +
                                std::to_string(AFirst) + " (size " + std::to_string(FSize) + ")");
    if (ACount > 0 && !ADest)
        throw std::invalid_argument(std::string(kOwner) + ": null destination for " + std::to_string(ACount) +
                                    " samples");
    if (FRamp) {
        FillRamp(ADest, ACount, FRampFirst, double(AFirst), false);
        return;
    }
    ForSegments(AFirst, ACount, [ADest](const double* ASrc, int32_t ARun, int32_t AOffset) {
        std::memcpy(ADest + AOffset, ASrc, size_t(ARun) * sizeof(double));
    });
}

std::shared_ptr<TQVChannelBuffer> TQVChannelBuffer::Share(bool AWithExtremes) const
{
    auto Result = std::make_shared<TQVChannelBuffer>();
    if (FRamp) {
        // Shared as a ramp; written out, if ever, into blocks this buffer's recycler keeps.
        Result->FRamp = true;
        Result->FRampFirst = FRampFirst;
        Result->FSize = FSize;
        Result->FRecycler = FRecycler;
        return Result;
    }
    if (FSize == 0) {
        Result->FKeepExtremes = AWithExtremes && FKeepExtremes; // an empty summary
        return Result;
    }
    if (GetIsWrapped()) {
        // Readers need the samples in one run: copy them once, into a block of their own.
        auto* Fresh = NewBlock(FSize);
        CopyTo(Fresh->Items, 0, FSize);
        Result->FBlock = Fresh;
    } else {
        if (FWriter) {
            // From now on the writer keeps out of these positions while others hold the block.
            const int32_t Lo = FHead, Hi = FHead + FSize;
            if (FBlock->Refs.load(std::memory_order_acquire) == 1 || FBlock->GuardLo == FBlock->GuardHi) {
                FBlock->GuardLo = Lo;
                FBlock->GuardHi = Hi;
            } else {
                FBlock->GuardLo = std::min(FBlock->GuardLo, Lo);
                FBlock->GuardHi = std::max(FBlock->GuardHi, Hi);
            }
        }
        FBlock->Refs.fetch_add(1, std::memory_order_relaxed);
        Result->FBlock = FBlock;
        Result->FHead = FHead;
    }
    Result->FSize = FSize;
    Result->FRampWritten = FRampWritten;
    Result->FRampFirst = FRampFirst;
    if (const TQVBlockExtremes* Extremes = AWithExtremes ? GetExtremes() : nullptr) {
        Result->FKeepExtremes = true;
        Result->FExtremes = *Extremes;
    }
    return Result;
}

#define QV_CHANNEL_BUFFER_INSTANCES(T)                                                                                 \
    template void TQVChannelBuffer::Assign<T>(const T*, int32_t);                                                      \
    template void TQVChannelBuffer::Append<T>(const T*, int32_t, uint32_t);
QV_CHANNEL_BUFFER_INSTANCES(double)
QV_CHANNEL_BUFFER_INSTANCES(float)
QV_CHANNEL_BUFFER_INSTANCES(int32_t)
QV_CHANNEL_BUFFER_INSTANCES(uint32_t)
QV_CHANNEL_BUFFER_INSTANCES(int64_t)
QV_CHANNEL_BUFFER_INSTANCES(uint64_t)
QV_CHANNEL_BUFFER_INSTANCES(int16_t)
QV_CHANNEL_BUFFER_INSTANCES(uint16_t)
#undef QV_CHANNEL_BUFFER_INSTANCES

// ---- TQVGapList ----

int32_t TQVGapList::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        QVRaiseIndexError("TQVGapList", AIndex, GetCount());
    return static_cast<int32_t>(FItems[FFirst + size_t(AIndex)] - FOffset);
}

void TQVGapList::Add(int64_t AIndex)
{
    if (AIndex < 0 || AIndex > INT32_MAX)
        throw std::out_of_range("TQVGapList: gap index " + std::to_string(AIndex) + " outside 0.." +
                                std::to_string(INT32_MAX));
    FItems.push_back(AIndex + FOffset);
    Changed();
}

void TQVGapList::Shift(int64_t ACount)
{
    if (ACount < 0 || ACount > INT32_MAX)
        throw std::out_of_range("TQVGapList: shift " + std::to_string(ACount) + " outside 0.." +
                                std::to_string(INT32_MAX));
    if (FFirst == FItems.size())
        return;
    bool Dropped = false;
    while (FFirst < FItems.size() && FItems[FFirst] - FOffset < ACount) {
        ++FFirst;
        Dropped = true;
    }
    FOffset += ACount;
    if (FFirst == FItems.size()) {
        FItems.clear();
        FFirst = 0;
        FOffset = 0;
    } else if (FFirst >= 32 && 2 * FFirst >= FItems.size()) {
        // Drop the dead entries now and then, so that the list stays proportional to its count.
        FItems.erase(FItems.begin(), FItems.begin() + std::ptrdiff_t(FFirst));
        FFirst = 0;
    }
    if (Dropped || ACount != 0)
        Changed();
}

void TQVGapList::Clear()
{
    if (FItems.empty())
        return;
    FItems.clear();
    FFirst = 0;
    FOffset = 0;
    Changed();
}

std::vector<int32_t> TQVGapList::ToVector() const
{
    std::vector<int32_t> Result;
    Result.reserve(size_t(GetCount()));
    for (size_t i = FFirst; i < FItems.size(); ++i)
        Result.push_back(static_cast<int32_t>(FItems[i] - FOffset));
    return Result;
}

std::shared_ptr<IQVIntegerBuffer> TQVGapList::ToBuffer() const
{
    if (!FCache) {
        const std::vector<int32_t> Values = ToVector();
        FCache = std::make_shared<TQVIntegerBuffer>(Values.data(), int64_t(Values.size()));
    }
    // A buffer object of its own over the same samples: a write to it separates it.
    return std::make_shared<TQVIntegerBuffer>(static_cast<const IQVIntegerBuffer&>(*FCache));
}

} // namespace qv
