#include "qv/pins/QWBlockQueue.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace qv {

namespace {

std::shared_ptr<const IQVData> CopyOf(const IQVData& ABlock)
{
    switch (ABlock.GetDataKind()) {
    case dkInteger: return std::make_shared<TQVIntegerBuffer>(ABlock);
    case dkComplex: return std::make_shared<TQVComplexBuffer>(ABlock);
    case dkByte:
        throw std::invalid_argument("TQWBlockQueue: cannot queue a block of " + QVDataKindName(ABlock.GetDataKind()));
    default: return std::make_shared<TQVRealBuffer>(ABlock);
    }
}

// The rest of a block from AOffset on, as a block of its own.
std::shared_ptr<const IQVData> RestOf(const std::shared_ptr<const IQVData>& ABlock, int32_t AOffset)
{
    if (AOffset == 0)
        return ABlock;
    const int32_t Count = ABlock->GetCount() - AOffset;
    switch (ABlock->GetDataKind()) {
    case dkInteger:
        return std::make_shared<TQVIntegerBuffer>(static_cast<const int32_t*>(ABlock->ReadData()) + AOffset, Count);
    case dkComplex:
        return std::make_shared<TQVComplexBuffer>(
            static_cast<const std::complex<double>*>(ABlock->ReadData()) + AOffset, Count);
    default: return std::make_shared<TQVRealBuffer>(static_cast<const double*>(ABlock->ReadData()) + AOffset, Count);
    }
}

} // namespace

uint32_t TQWBlockQueue::GetNextBlockSize() const
{
    std::lock_guard Lock(FSection);
    return FBlocks.empty() ? 0 : uint32_t(FBlocks.front()->GetCount() - FFrontOffset);
}

uint64_t TQWBlockQueue::GetTotalSize() const
{
    std::lock_guard Lock(FSection);
    return FTotal;
}

std::shared_ptr<const IQVData> TQWBlockQueue::TakeNext()
{
    std::lock_guard Lock(FSection);
    if (FBlocks.empty())
        return nullptr;
    std::shared_ptr<const IQVData> Result = RestOf(FBlocks.front(), FFrontOffset);
    FBlocks.pop_front();
    FFrontOffset = 0;
    FTotal -= uint64_t(Result->GetCount());
    return Result;
}

void TQWBlockQueue::Append(const IQVData& ABlock)
{
    std::shared_ptr<const IQVData> Copy = CopyOf(ABlock); // outside the lock: it may take long
    std::lock_guard Lock(FSection);
    FTotal += uint64_t(Copy->GetCount());
    FBlocks.push_back(std::move(Copy));
}

uint32_t TQWBlockQueue::GetStretchSize() const
{
    std::lock_guard Lock(FSection);
    return FStretchSize;
}

void TQWBlockQueue::SetStretchSize(uint32_t AValue)
{
    std::lock_guard Lock(FSection);
    FStretchSize = AValue;
}

std::shared_ptr<IQVRealBuffer> TQWBlockQueue::StretchLoadBufferSize(uint32_t ACount)
{
    if (ACount > uint32_t(INT32_MAX))
        throw std::length_error("TQWBlockQueue: cannot read " + std::to_string(ACount) + " samples");
    std::vector<double> Taken;
    {
        std::lock_guard Lock(FSection);
        const uint64_t Wanted = std::min<uint64_t>(FStretchSize, FTotal);
        Taken.reserve(size_t(Wanted));
        while (Taken.size() < Wanted) {
            const std::shared_ptr<const IQVData>& Front = FBlocks.front();
            // Integer blocks convert; a complex one raises before anything is consumed.
            const TQVRealBuffer Values(*Front);
            const int32_t Available = Values.GetSize() - FFrontOffset;
            const int32_t Take = int32_t(std::min<uint64_t>(uint64_t(Available), Wanted - Taken.size()));
            Taken.insert(Taken.end(), Values.Read() + FFrontOffset, Values.Read() + FFrontOffset + Take);
            FTotal -= uint64_t(Take);
            if (Take == Available) {
                FBlocks.pop_front();
                FFrontOffset = 0;
            } else {
                FFrontOffset += Take;
            }
        }
    }
    auto Result = std::make_shared<TQVRealBuffer>(ACount);
    double* Out = Result->Write();
    const size_t Count = Taken.size();
    if (Count == 0) {
        std::fill(Out, Out + ACount, std::numeric_limits<double>::quiet_NaN());
    } else if (Count == ACount) {
        std::copy(Taken.begin(), Taken.end(), Out);
    } else if (Count == 1 || ACount <= 1) {
        std::fill(Out, Out + ACount, Taken[0]);
    } else {
        // Result i lies at i * (Count - 1) / (ACount - 1) among the consumed samples; the
        // position is kept as a whole part and a remainder so that exact ratios stay exact.
        const uint64_t Den = ACount - 1;
        for (uint64_t i = 0; i < ACount; ++i) {
            const uint64_t Num = i * (Count - 1);
            const size_t Lo = size_t(Num / Den);
            const uint64_t Rem = Num % Den;
            Out[i] = Rem == 0 ? Taken[Lo] : Taken[Lo] + (Taken[Lo + 1] - Taken[Lo]) * double(Rem) / double(Den);
        }
    }
    return Result;
}

} // namespace qv
