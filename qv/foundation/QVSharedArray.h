#pragma once
// Copy-on-write element storage of the buffer classes. Copies of a TQVSharedArray share one
// block of elements; the block is copied only when a holder asks to write while it is still
// held elsewhere. Reading never copies.
//
// A holder itself is not guarded: whoever owns it serialises access to it. Different holders
// of one block may live on different threads; the block's count of holders decides who may
// write in place, and only a sole holder does.

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace qv {

// Raises std::out_of_range: "<AOwner>: index <AIndex> out of range (size <ASize>)".
[[noreturn]] void QVRaiseIndexError(const char* AOwner, int64_t AIndex, int64_t ASize);

template <class T>
class TQVSharedArray {
public:
    TQVSharedArray() = default;
    TQVSharedArray(const TQVSharedArray& AOther) noexcept
        : FBlock(AOther.FBlock), FItems(AOther.FItems), FSize(AOther.FSize)
    {
        if (FBlock)
            FBlock->FRefs.fetch_add(1, std::memory_order_relaxed);
    }
    TQVSharedArray(TQVSharedArray&& AOther) noexcept
        : FBlock(std::exchange(AOther.FBlock, nullptr)), FItems(std::exchange(AOther.FItems, nullptr)),
          FSize(std::exchange(AOther.FSize, 0))
    {}
    TQVSharedArray& operator=(TQVSharedArray AOther) noexcept
    {
        std::swap(FBlock, AOther.FBlock);
        std::swap(FItems, AOther.FItems);
        std::swap(FSize, AOther.FSize);
        return *this;
    }
    ~TQVSharedArray() { Release(); }

    // ASize elements, left as allocated (indeterminate for plain numbers): for callers that
    // overwrite every element at once. ASize must not be negative.
    static TQVSharedArray ForOverwrite(int32_t ASize)
    {
        TQVSharedArray R;
        R.Adopt(ASize);
        R.FSize = ASize;
        return R;
    }

    int32_t GetSize() const { return FSize; }
    // Null while nothing was ever allocated.
    const T* Read() const { return FItems; }
    T* Write()
    {
        if (!IsSole())
            Reallocate(FSize);
        return FItems;
    }

    // Index-checked element access; AOwner names the class in the error message.
    T Get(int32_t AIndex, const char* AOwner) const
    {
        CheckIndex(AIndex, AOwner);
        return FItems[AIndex];
    }
    void Set(int32_t AIndex, const T& AValue, const char* AOwner)
    {
        CheckIndex(AIndex, AOwner);
        Write()[AIndex] = AValue;
    }
    void CheckIndex(int32_t AIndex, const char* AOwner) const
    {
        if (AIndex < 0 || AIndex >= FSize)
            QVRaiseIndexError(AOwner, AIndex, FSize);
    }

    // With AKeepContent the first min(old, new) elements stay and new ones are zero;
    // without it every element is zero. Shrinking a shared block keeps sharing it.
    // ASize must not be negative.
    void Resize(int32_t ASize, bool AKeepContent)
    {
        if (AKeepContent && ASize <= FSize) {
            FSize = ASize;
            return;
        }
        const bool Sole = IsSole();
        if (AKeepContent) {
            if (!Sole || ASize > Capacity()) {
                // Growing in steps keeps repeated appends linear.
                const int64_t Grown = Sole ? int64_t(Capacity()) + Capacity() / 2 : 0;
                Reallocate(static_cast<int32_t>(std::min<int64_t>(std::max<int64_t>(ASize, Grown), INT32_MAX)));
            }
            std::fill(FItems + FSize, FItems + ASize, T{});
        } else {
            if (!Sole || ASize > Capacity()) {
                TQVSharedArray Fresh;
                Fresh.Adopt(ASize);
                *this = std::move(Fresh);
            }
            std::fill(FItems, FItems + ASize, T{});
        }
        FSize = ASize;
    }

private:
    struct TBlock {
        std::atomic<int32_t> FRefs;
        int32_t FCapacity;
        std::unique_ptr<T[]> FItems;
    };

    int32_t Capacity() const { return FBlock ? FBlock->FCapacity : 0; }

    // Only a sole holder may change the block in place. The acquire load pairs with the
    // release in the other holders' Release: their last reads of the block happen before
    // our writes into it.
    bool IsSole() const { return !FBlock || FBlock->FRefs.load(std::memory_order_acquire) == 1; }

    // Takes a fresh block of ACapacity elements; only for a holder that has none.
    void Adopt(int32_t ACapacity)
    {
        if (ACapacity <= 0)
            return;
        auto Items = std::make_unique_for_overwrite<T[]>(static_cast<size_t>(ACapacity));
        FBlock = new TBlock{{1}, ACapacity, std::move(Items)};
        FItems = FBlock->FItems.get();
    }

    void Release() noexcept
    {
        if (FBlock && FBlock->FRefs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete FBlock;
        FBlock = nullptr;
        FItems = nullptr;
    }

    // Moves the first min(size, ACapacity) elements into a fresh block of ACapacity.
    void Reallocate(int32_t ACapacity)
    {
        TQVSharedArray Fresh;
        Fresh.Adopt(ACapacity);
        std::copy_n(FItems, std::min(FSize, ACapacity), Fresh.FItems);
        Fresh.FSize = FSize;
        *this = std::move(Fresh);
    }

    TBlock* FBlock = nullptr;
    T* FItems = nullptr; // FBlock->FItems, kept here for one indirection less on reads
    int32_t FSize = 0;
};

} // namespace qv
