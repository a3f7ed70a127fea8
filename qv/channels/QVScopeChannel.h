#pragma once
// A channel of the scope: samples arrive through its Data object on any thread, are held to
// the scope's SizeLimit in the data stage, and reach the draw stage when the scope's refresh
// tick calls PopulateDrawBuffers.

#include "qv/channels/QVChannelBuffer.h"
#include "qv/channels/QVDisplayChannel.h"
#include "qv/display/QVDisplayCollection.h"

#include <atomic>
#include <memory>

namespace qv {

class TQVChannelData;
class TQVScope;

class TQVScopeChannel : public TQVDisplayChannel {
public:
    explicit TQVScopeChannel(TQLCollection* ACollection);
    ~TQVScopeChannel() override;

    // The intake object; every sample call goes through it. Never null while the channel lives.
    TQVChannelData* GetData() const { return FData.get(); }
    // The scope the channel belongs to; null for a channel outside a scope, which then has no
    // size limit.
    TQVScope* GetScope() const { return FOwner; }

    // The hand-over: the draw stage becomes a frozen copy of the data stage. Called by the
    // scope on the control's thread; takes the channel's property lock, then the data
    // section, then the draw section.
    void PopulateDrawBuffers();
    // Marks the line as broken between samples AIndex - 1 and AIndex; nothing for 0. Raises
    // std::out_of_range above INT32_MAX.
    void AddGapAt(uint32_t AIndex);
    // Drops the leading gap entries below ACount and subtracts ACount from the others.
    // Raises std::out_of_range above INT32_MAX.
    void ShiftGaps(uint32_t ACount);
    // The extent and size of the draw stage's X values (NaN extremes when it is empty).
    void GetMinMaxSize(double& AMin, double& AMax, int32_t& ASize) const;
    // From another scope channel: the settings, both stages and the gaps. The source's stages
    // are taken under its own sections before this channel's sections are entered.
    void Assign(const TQLPersistent* ASource) override;
    // What a new SizeLimit does to the channel: when ALimit is not 0 and Y holds more, Y and
    // then X are cut to their newest ALimit samples (an X that held fewer is padded in front
    // with NaN). The gaps stay as they are.
    void ApplySizeLimit(uint32_t ALimit);
    // X becomes 0, 1, 2, ... over the size of Y, and the channel counts as a ramp.
    void PopulateRamp();
    // Extends the ramp by ACount values after a block of ACount Y samples (see QVChannelData.h).
    void ShiftPopulateRamp(uint32_t ACount);

    // The data stage changed since the last hand-over.
    bool GetHasNewBuffer() const { return FHasNewBuffer.load(std::memory_order_acquire); }
    // The draw stage was renewed and what is derived from it must be recomputed.
    bool GetDataChanged() const { return FDataChanged.load(std::memory_order_acquire); }
    void ClearDataChanged() { FDataChanged.store(false, std::memory_order_release); }
    // The data stage's gap indexes, as a buffer of their own.
    std::shared_ptr<IQVIntegerBuffer> GetGapsBuffer() const;

    QL_CLASS_INFO()

private:
    friend class TQVChannelData;

    uint32_t GetSizeLimit() const;
    // The end of every intake operation: new data for the next hand-over, and a recalculation
    // of the picture (without a repaint, which the refresh tick makes).
    void SetFlags();
    // The workers, for callers that hold the data section.
    void IntPopulateRamp();
    void IntShiftPopulateRamp(int32_t ACount, uint32_t ALimit);

    TQVScope* FOwner;
    TQVGapList FGapsBuffer;
    std::atomic<bool> FDataChanged{false};
    std::atomic<bool> FHasNewBuffer{false};
    std::atomic<double> FSampleRate{0.0};
    std::unique_ptr<TQVChannelData> FData;
};

class TQVScopeChannels : public TQVPaletteDisplayCollection<TQVScopeChannel> {
public:
    TQVScopeChannels(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDataDisplay* ADisplay);

    QL_CLASS_INFO()
};

} // namespace qv
