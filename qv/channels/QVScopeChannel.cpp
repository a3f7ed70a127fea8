#include "qv/channels/QVScopeChannel.h"

#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <limits>
#include <mutex>

namespace qv {

TQVScopeChannel::TQVScopeChannel(TQLCollection* ACollection)
    : TQVDisplayChannel(ACollection), FOwner(dynamic_cast<TQVScopeOwner*>(GetDisplay())),
      FData(std::make_unique<TQVChannelData>(this)),
      FMarkers(std::make_unique<TQVScopeChannelMarkers>(this, GetLock(), GetDisplay())),
      FWriter(std::make_shared<TQVChannelWriter>(FData.get()))
{
    CreatePins();
}

TQVScopeChannel::~TQVScopeChannel()
{
    // Producers holding the writer stop reaching the channel before any of it goes.
    FWriter->Detach();
    ReleasePins();
}

double TQVScopeChannel::GetAxisSampleRate() const
{
    return FData->GetSampleRate();
}

uint32_t TQVScopeChannel::GetSizeLimit() const
{
    return FOwner ? FOwner->GetSizeLimit() : 0;
}

void TQVScopeChannel::SetFlags()
{
    FHasNewBuffer.store(true, std::memory_order_release);
    if (FOwner)
        GetDisplay()->SetNeedsRecalc();
}

namespace {
// The draw-stage buffer for the data-stage buffer AData, replacing AOld. An unwrapped ring is
// shared as it is. One that runs round the end of its block is copied contiguous; into the
// old draw buffer's block when nobody else holds that buffer, which spares fresh memory and
// keeps no more than one older copy of the samples alive. A ramp kept without a block (X
// following Y) stays where the draw stage holds the same one already, as after a record
// replaced by one as long; else it is written out here, into the old buffer's block in the
// same way when it can: the draw stage is read without a lock, so reading it must never write.
std::shared_ptr<IQVRealBuffer> HandOver(const TQVChannelBuffer& AData, std::shared_ptr<IQVRealBuffer> AOld)
{
    auto* Old = dynamic_cast<TQVChannelBuffer*>(AOld.get());
    // Blocks the draw stage makes come from, and go back to, the channel's spare blocks.
    if (Old && AOld.use_count() == 1)
        Old->SetRecycler(AData.GetRecycler());
    if (AData.GetIsRamp()) {
        if (Old && Old->GetHoldsRampOf(AData))
            return AOld;
        if (Old && AOld.use_count() == 1) {
            Old->CopyFrom(AData);
            Old->Read();
            return AOld;
        }
        AOld.reset();
        std::shared_ptr<TQVChannelBuffer> Written = AData.Share();
        Written->Read();
        return Written;
    }
    if (AData.GetIsWrapped()) {
        if (Old && AOld.use_count() == 1) {
            Old->CopyFrom(AData);
            return AOld;
        }
    }
    AOld.reset();
    return AData.Share();
}
} // namespace

void TQVScopeChannel::PopulateDrawBuffers()
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard) // the scope is going away
        return;
    std::lock_guard<std::recursive_mutex> DataLock(FDataCriticalSection.GetMutex());
    {
        std::lock_guard<std::recursive_mutex> DrawLock(FDrawCriticalSection.GetMutex());
        try {
            FXDrawDataBuffer = HandOver(FXDataBuffer, std::move(FXDrawDataBuffer));
            FYDrawDataBuffer = HandOver(FYDataBuffer, std::move(FYDrawDataBuffer));
            FDrawGapsBuffer = FGapsBuffer.ToBuffer();
        } catch (...) {
            // Out of memory: painting must still find buffers.
            if (!FXDrawDataBuffer)
                FXDrawDataBuffer = std::make_shared<TQVChannelBuffer>();
            if (!FYDrawDataBuffer)
                FYDrawDataBuffer = std::make_shared<TQVChannelBuffer>();
            throw;
        }
        FDrawIsRamp = FIsRamp.load(std::memory_order_relaxed);
        ++FDrawGeneration;
        FDataChanged.store(true, std::memory_order_release);
    }
    // An empty record plots nothing, and what a hit test reads of the last frame goes too.
    if (FYDrawDataBuffer->GetSize() == 0) {
        FScaledXStale = FScaledYStale = false;
        FScaledIntDrawBufferX->Resize(0, false);
        FScaledIntDrawBufferY->Resize(0, false);
        FDownsampledIntDrawBufferX = FScaledIntDrawBufferX;
        FDownsampledIntDrawBufferY = FScaledIntDrawBufferY;
    }
    // Cleared while producers are still kept out, so that a sample arriving now is not
    // mistaken for one already handed over.
    FHasNewBuffer.store(false, std::memory_order_release);
}

void TQVScopeChannel::AddGapAt(uint32_t AIndex)
{
    FDataCriticalSection.Execute([&] {
        if (AIndex != 0)
            FGapsBuffer.Add(AIndex);
    });
}

void TQVScopeChannel::ShiftGaps(uint32_t ACount)
{
    FDataCriticalSection.Execute([&] { FGapsBuffer.Shift(ACount); });
}

std::shared_ptr<IQVIntegerBuffer> TQVScopeChannel::GetGapsBuffer() const
{
    return FDataCriticalSection.Execute([&] { return FGapsBuffer.ToBuffer(); });
}

void TQVScopeChannel::GetMinMaxSize(double& AMin, double& AMax, int32_t& ASize) const
{
    TQWCriticalSectionLock Lock(FDrawCriticalSection);
    AMin = FXDrawDataBuffer->Min();
    AMax = FXDrawDataBuffer->Max();
    ASize = FXDrawDataBuffer->GetSize();
}

namespace {
// Another buffer object over the samples of a draw-stage buffer.
std::shared_ptr<IQVRealBuffer> ShareOf(const std::shared_ptr<IQVRealBuffer>& ABuffer)
{
    if (auto* Own = dynamic_cast<const TQVChannelBuffer*>(ABuffer.get()))
        return Own->Share();
    return std::make_shared<TQVChannelBuffer>(ABuffer->Read(), ABuffer->GetSize());
}
} // namespace

void TQVScopeChannel::Assign(const TQLPersistent* ASource)
{
    const auto* Source = dynamic_cast<const TQVScopeChannel*>(ASource);
    if (!Source || Source == this) {
        TQVDisplayChannel::Assign(ASource);
        return;
    }
    // The property lock comes first in the lock order; the inherited Assign below takes it.
    auto Guard = GetLock()->AcquireWrite();

    // The source's stages, each under the source's own section; no two channels' sections
    // are ever held together.
    TQVChannelBuffer X, Y;
    TQVGapList Gaps;
    Source->FDataCriticalSection.Execute([&] {
        X.AssignShared(Source->FXDataBuffer);
        Y.AssignShared(Source->FYDataBuffer);
        Gaps = Source->FGapsBuffer;
    });
    std::shared_ptr<IQVRealBuffer> DrawX, DrawY;
    std::shared_ptr<IQVIntegerBuffer> DrawGaps;
    bool DrawIsRamp = false;
    Source->FDrawCriticalSection.Execute([&] {
        DrawX = ShareOf(Source->FXDrawDataBuffer);
        DrawY = ShareOf(Source->FYDrawDataBuffer);
        DrawGaps = std::make_shared<TQVIntegerBuffer>(static_cast<const IQVIntegerBuffer&>(*Source->FDrawGapsBuffer));
        DrawIsRamp = Source->FDrawIsRamp;
    });

    std::unique_lock<std::recursive_mutex> AllLock;
    if (FOwner)
        AllLock = std::unique_lock<std::recursive_mutex>(FOwner->GetAllChannelSection().GetMutex());
    std::lock_guard<std::recursive_mutex> DataLock(FDataCriticalSection.GetMutex());
    std::lock_guard<std::recursive_mutex> DrawLock(FDrawCriticalSection.GetMutex());
    FYDataBuffer.AssignShared(Y);
    FXDataBuffer.AssignShared(X);
    FGapsBuffer = std::move(Gaps);
    TQVDisplayChannel::Assign(ASource);
    FYDrawDataBuffer = std::move(DrawY);
    FXDrawDataBuffer = std::move(DrawX);
    FDrawGapsBuffer = std::move(DrawGaps);
    FDrawIsRamp = DrawIsRamp;
    ++FDrawGeneration;
    FDataChanged.store(true, std::memory_order_release);
}

void TQVScopeChannel::ApplySizeLimit(uint32_t ALimit)
{
    FDataCriticalSection.Execute([&] {
        if (ALimit != 0 && uint32_t(FYDataBuffer.GetSize()) > ALimit) {
            // Both sides end with ALimit samples: the newest ones, so that the picture and the
            // ramp go on from where they were. An X shorter than that reads NaN in front.
            const auto Size = static_cast<int32_t>(ALimit);
            FYDataBuffer.DropFront(FYDataBuffer.GetSize() - Size);
            if (FXDataBuffer.GetSize() >= Size)
                FXDataBuffer.DropFront(FXDataBuffer.GetSize() - Size);
            else
                FXDataBuffer.PrependFill(Size - FXDataBuffer.GetSize(), std::numeric_limits<double>::quiet_NaN());
        }
    });
}

void TQVScopeChannel::IntPopulateRamp()
{
    FIsRamp.store(true, std::memory_order_release);
    FXDataBuffer.AssignRamp(FYDataBuffer.GetSize());
}

void TQVScopeChannel::PopulateRamp()
{
    FDataCriticalSection.Execute([&] { IntPopulateRamp(); });
}

void TQVScopeChannel::IntShiftPopulateRamp(int32_t ACount, uint32_t ALimit)
{
    const int32_t Size = FXDataBuffer.GetSize();
    // At the limit X keeps its size and moves by ACount; below it X grows by ACount, also
    // past the limit.
    const bool AtLimit = ALimit != 0 && uint32_t(Size) >= ALimit;
    const int64_t NewSize = AtLimit ? Size : int64_t(Size) + ACount;
    if (NewSize > ACount) {
        // The value before the new ones is the old last one: the ramp keeps counting from it.
        const double Last = FXDataBuffer.At(Size - 1);
        if (AtLimit)
            FXDataBuffer.DropFront(ACount);
        FXDataBuffer.AppendRamp(ACount, Last, 1.0, ALimit);
    } else {
        IntPopulateRamp();
    }
    // One sample whatever ACount is: gap positions move by one per block at the limit.
    if (AtLimit)
        FGapsBuffer.Shift(1);
}

void TQVScopeChannel::ShiftPopulateRamp(uint32_t ACount)
{
    FDataCriticalSection.Execute([&] {
        const uint32_t Limit = GetSizeLimit();
        const int64_t Count = std::min<int64_t>(ACount, int64_t(INT32_MAX));
        IntShiftPopulateRamp(static_cast<int32_t>(Count), Limit);
    });
}

const TQLClassInfo& TQVScopeChannel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeChannel>("TQVScopeChannel", &TQVDisplayChannel::StaticClassInfo())
            .Property("ShadeMode", &TQVScopeChannel::GetShadeMode, &TQVScopeChannel::SetShadeMode, csmZero)
            .Property("Synchronize", &TQVScopeChannel::GetSynchronize, &TQVScopeChannel::SetSynchronize, true)
            .Collection("Markers", &TQVScopeChannel::GetMarkers)
            .Build();
    return Info;
}

// ---- TQVScopeChannels ----

TQVScopeChannels::TQVScopeChannels(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
    : TQVDisplayChannels<TQVScopeChannel>(AOwner, std::move(ALock), ADisplay)
{}

const TQLClassInfo& TQVScopeChannels::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeChannels", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
