#pragma once
// The blocks a queued sink pin holds until its owner can use them. Every call is safe from
// any thread and holds the queue's own mutex for that call only.
//
// Blocks are copies of what was appended (sharing the samples until the sender writes to its
// own buffer), kept in arrival order. Most readers take whole blocks; a stretched read takes a
// number of samples from the front, across block boundaries, and leaves the rest of a block
// for the next read.

#include "qv/foundation/QVBuffers.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

namespace qv {

class TQWBlockQueue {
public:
    TQWBlockQueue() = default;
    TQWBlockQueue(const TQWBlockQueue&) = delete;
    TQWBlockQueue& operator=(const TQWBlockQueue&) = delete;

    // Samples in the next block (what is left of it after a stretched read); 0 when empty.
    uint32_t GetNextBlockSize() const;
    // Samples in all blocks.
    uint64_t GetTotalSize() const;
    // Removes the next block (or its rest) and returns it; null when empty.
    std::shared_ptr<const IQVData> TakeNext();
    // Appends a copy of ABlock: real data stays real, 32-bit integers stay integers, complex
    // stays complex, other numeric kinds become reals. Byte data has no samples to plot and
    // raises std::invalid_argument naming its kind.
    void Append(const IQVData& ABlock);

    // The rate of the stream the blocks come from (samples per second); 0 until given.
    double GetSampleRate() const { return FSampleRate.load(std::memory_order_acquire); }
    void SetSampleRate(double AValue) { FSampleRate.store(AValue, std::memory_order_release); }
    // Set when the stream's source has nothing to deliver: nobody should wait for it.
    bool GetIgnore() const { return FIgnore.load(std::memory_order_acquire); }
    void SetIgnore(bool AValue) { FIgnore.store(AValue, std::memory_order_release); }

    // How many queued samples the next stretched read consumes.
    uint32_t GetStretchSize() const;
    void SetStretchSize(uint32_t AValue);
    // Consumes the stretch size of samples (or all there are, when fewer) as reals and
    // returns them stretched or shrunk to ACount samples by linear interpolation: the first
    // and last consumed samples become the first and last results. No sample queued gives
    // ACount NaNs. Complex blocks cannot be read as reals and raise std::invalid_argument.
    std::shared_ptr<IQVRealBuffer> StretchLoadBufferSize(uint32_t ACount);

private:
    mutable std::mutex FSection;
    std::deque<std::shared_ptr<const IQVData>> FBlocks;
    // Samples of the front block already consumed by stretched reads.
    int32_t FFrontOffset = 0;
    uint64_t FTotal = 0;
    uint32_t FStretchSize = 0;
    std::atomic<double> FSampleRate{0.0};
    std::atomic<bool> FIgnore{false};
};

} // namespace qv
