#include "qv/channels/QVChannelData.h"

#include "qv/axes/QVScopeXAxis.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVDisplayOwner.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string OpName(const char* AOperation)
{
    return std::string("TQVChannelData::") + AOperation;
}

void CheckPointer(const char* AOperation, const void* ABuffer, uint64_t ASize)
{
    if (ASize > 0 && !ABuffer)
        throw std::invalid_argument(OpName(AOperation) + ": null buffer with size " + std::to_string(ASize));
}

template <class B>
void CheckBuffer(const char* AOperation, const std::shared_ptr<B>& ABuffer)
{
    if (!ABuffer)
        throw std::invalid_argument(OpName(AOperation) + ": null buffer");
}

// A count the buffers can hold.
int32_t CheckedCount(const char* AOperation, uint64_t ACount)
{
    if (ACount > uint64_t(INT32_MAX))
        throw std::length_error(OpName(AOperation) + ": size " + std::to_string(ACount) + " exceeds " +
                                std::to_string(INT32_MAX));
    return static_cast<int32_t>(ACount);
}

// The newest ALimit elements of a source of ASize (all of it without a limit).
template <class T>
void TrimToLimit(const T*& ABuffer, uint32_t& ASize, uint32_t ALimit)
{
    if (ALimit != 0 && ASize > ALimit) {
        ABuffer += ASize - ALimit;
        ASize = ALimit;
    }
}

// Before AValues new samples go in at the back, keeps the newest AKeep samples of ABuffer; a
// side shorter than that is padded at the front with NaN, samples it never had.
void KeepNewest(TQVChannelBuffer& ABuffer, int64_t AKeep)
{
    const int32_t Size = ABuffer.GetSize();
    if (Size >= AKeep)
        ABuffer.DropFront(static_cast<int32_t>(Size - AKeep));
    else
        ABuffer.PrependFill(static_cast<int32_t>(AKeep - Size), kNaN);
}

// The size a side takes below the limit when ACount samples come to a Y of ASizeY samples:
// unchanged at the limit, else grown by ACount up to the limit.
int64_t TargetSize(int64_t ASizeY, int64_t ACount, uint32_t ALimit)
{
    return ASizeY == int64_t(ALimit) ? ASizeY : std::min<int64_t>(ASizeY + ACount, ALimit);
}

class TQVChannelDataSnapshot final : public IQVChannelDataSnapshot {
public:
    TQVChannelDataSnapshot(std::shared_ptr<TQVChannelBuffer> AX, std::shared_ptr<TQVChannelBuffer> AY)
        : FX(std::move(AX)), FY(std::move(AY))
    {}
    std::shared_ptr<IQVRealBuffer> GetXData() const override { return FX->Share(); }
    std::shared_ptr<IQVRealBuffer> GetYData() const override { return FY->Share(); }

private:
    const std::shared_ptr<TQVChannelBuffer> FX;
    const std::shared_ptr<TQVChannelBuffer> FY;
};

std::shared_ptr<TQVChannelBuffer> ShareOf(const IQVRealBuffer& ABuffer)
{
    if (auto* Own = dynamic_cast<const TQVChannelBuffer*>(&ABuffer))
        return Own->Share();
    return std::make_shared<TQVChannelBuffer>(ABuffer.Read(), ABuffer.GetSize());
}

void CopyOut(const char* AOperation, const IQVRealBuffer& ABuffer, double* ADest, int32_t ACount)
{
    if (ACount <= 0)
        return;
    if (!ADest)
        throw std::invalid_argument(OpName(AOperation) + ": null destination for " + std::to_string(ACount) +
                                    " samples");
    std::memcpy(ADest, ABuffer.Read(), size_t(ACount) * sizeof(double));
}

void CopyOut(const char* AOperation, const TQVChannelBuffer& ABuffer, double* ADest, int32_t ACount)
{
    if (ACount <= 0)
        return;
    if (!ADest)
        throw std::invalid_argument(OpName(AOperation) + ": null destination for " + std::to_string(ACount) +
                                    " samples");
    ABuffer.CopyTo(ADest, 0, ACount);
}

int32_t CheckedCapacity(const char* AOperation, int32_t ACapacity)
{
    if (ACapacity < 0)
        throw std::invalid_argument(OpName(AOperation) + ": negative capacity " + std::to_string(ACapacity));
    return ACapacity;
}

} // namespace

// ---- Set family ----

template <QVChannelElement T>
void TQVChannelData::SetYData(const T* ABuffer, uint32_t ASize)
{
    CheckPointer("SetYData", ABuffer, ASize);
    FChannel->FDataCriticalSection.Execute([&] {
        TrimToLimit(ABuffer, ASize, FChannel->GetSizeLimit());
        FChannel->FYDataBuffer.Assign(ABuffer, CheckedCount("SetYData", ASize));
        FChannel->IntPopulateRamp();
        FChannel->SetFlags();
    });
}

void TQVChannelData::SetYDataNoCopy(const std::shared_ptr<TQVForeignRealBuffer>& ABuffer)
{
    CheckBuffer("SetYDataNoCopy", ABuffer);
    if (!ABuffer->GetIsForeign()) {
        // Written since it was made: its samples are its own now, and it could change them
        // under the channel. They are copied as SetYData copies.
        SetYData(std::static_pointer_cast<IQVRealBuffer>(ABuffer));
        return;
    }
    FChannel->FDataCriticalSection.Execute([&] {
        const double* Data = ABuffer->Read();
        auto Size = uint32_t(ABuffer->GetSize());
        TrimToLimit(Data, Size, FChannel->GetSizeLimit());
        // Both sides are made before either replaces the channel's, so that a failure (no
        // memory for the ramp) leaves the channel as it was.
        TQVChannelBuffer Y;
        Y.SetKeepExtremes(true);
        Y.AssignForeign(Data, int32_t(Size), ABuffer->GetOwner());
        TQVChannelBuffer X;
        X.AssignRamp(int32_t(Size));
        FChannel->FYDataBuffer.AssignShared(Y);
        FChannel->FXDataBuffer.AssignShared(X);
        FChannel->FIsRamp.store(true, std::memory_order_release);
        FChannel->SetFlags();
    });
}

void TQVChannelData::SetYData(const std::shared_ptr<IQVRealBuffer>& ABuffer)
{
    CheckBuffer("SetYData", ABuffer);
    SetYData(ABuffer->Read(), uint32_t(ABuffer->GetSize()));
}

void TQVChannelData::SetYData(const std::shared_ptr<IQVIntegerBuffer>& ABuffer)
{
    CheckBuffer("SetYData", ABuffer);
    SetYData(ABuffer->Read(), uint32_t(ABuffer->GetSize()));
}

template <QVChannelElement T>
void TQVChannelData::SetXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize)
{
    CheckPointer("SetXYData", XBuffer, ASize);
    CheckPointer("SetXYData", YBuffer, ASize);
    FChannel->FDataCriticalSection.Execute([&] {
        const uint32_t Limit = FChannel->GetSizeLimit();
        uint32_t YSize = ASize;
        TrimToLimit(XBuffer, ASize, Limit);
        TrimToLimit(YBuffer, YSize, Limit);
        const int32_t Count = CheckedCount("SetXYData", ASize);
        FChannel->FXDataBuffer.Assign(XBuffer, Count);
        FChannel->FYDataBuffer.Assign(YBuffer, Count);
        FChannel->SetFlags();
    });
}

namespace {
// SetXYData of two buffers: each side trimmed to the limit by its own size.
template <class B>
void SetSides(TQVChannelBuffer& AX, TQVChannelBuffer& AY, const B& XBuffer, const B& YBuffer, uint32_t ALimit)
{
    auto XData = XBuffer->Read();
    auto YData = YBuffer->Read();
    uint32_t XSize = uint32_t(XBuffer->GetSize()), YSize = uint32_t(YBuffer->GetSize());
    TrimToLimit(XData, XSize, ALimit);
    TrimToLimit(YData, YSize, ALimit);
    AX.Assign(XData, int32_t(XSize));
    AY.Assign(YData, int32_t(YSize));
}
} // namespace

void TQVChannelData::SetXYData(const std::shared_ptr<IQVRealBuffer>& XBuffer,
                               const std::shared_ptr<IQVRealBuffer>& YBuffer)
{
    CheckBuffer("SetXYData", XBuffer);
    CheckBuffer("SetXYData", YBuffer);
    FChannel->FDataCriticalSection.Execute([&] {
        SetSides(FChannel->FXDataBuffer, FChannel->FYDataBuffer, XBuffer, YBuffer, FChannel->GetSizeLimit());
        FChannel->SetFlags();
    });
}

void TQVChannelData::SetXYData(const std::shared_ptr<IQVIntegerBuffer>& XBuffer,
                               const std::shared_ptr<IQVIntegerBuffer>& YBuffer)
{
    CheckBuffer("SetXYData", XBuffer);
    CheckBuffer("SetXYData", YBuffer);
    FChannel->FDataCriticalSection.Execute([&] {
        SetSides(FChannel->FXDataBuffer, FChannel->FYDataBuffer, XBuffer, YBuffer, FChannel->GetSizeLimit());
        FChannel->SetFlags();
    });
}

// ---- Add family ----

template <QVChannelElement T>
void TQVChannelData::AddYData(const T* ABuffer, uint32_t ASize, bool ASeparate)
{
    CheckPointer("AddYData", ABuffer, ASize);
    FChannel->FDataCriticalSection.Execute([&] {
        TQVScopeChannel& C = *FChannel;
        const uint32_t Limit = C.GetSizeLimit();
        const int32_t Size = C.FYDataBuffer.GetSize();
        TrimToLimit(ABuffer, ASize, Limit);
        const int32_t Count = CheckedCount("AddYData", ASize);
        if (Limit == 0)
            CheckedCount("AddYData", uint64_t(Size) + Count);
        if (ASeparate && Size != 0)
            C.FGapsBuffer.Add(Size);
        if (Limit == 0) {
            C.FYDataBuffer.Append(ABuffer, Count);
        } else if (uint32_t(Count) == Limit) {
            C.FYDataBuffer.Assign(ABuffer, Count);
        } else {
            // Keep the newest samples that leave room for the block, then append it.
            const int64_t Target = TargetSize(Size, Count, Limit);
            KeepNewest(C.FYDataBuffer, Target - Count);
            C.FYDataBuffer.Append(ABuffer, Count, Limit);
        }
        C.IntShiftPopulateRamp(Count, Limit);
        C.SetFlags();
    });
}

void TQVChannelData::AddYData(const std::shared_ptr<IQVRealBuffer>& ABuffer, bool ASeparate)
{
    CheckBuffer("AddYData", ABuffer);
    AddYData(ABuffer->Read(), uint32_t(ABuffer->GetSize()), ASeparate);
}

void TQVChannelData::AddYData(const std::shared_ptr<IQVIntegerBuffer>& ABuffer, bool ASeparate)
{
    CheckBuffer("AddYData", ABuffer);
    AddYData(ABuffer->Read(), uint32_t(ABuffer->GetSize()), ASeparate);
}

namespace {

// One side of AddXYData at a limit: a full block replaces the side; a smaller one keeps the
// newest samples that leave room for it (the room worked out from Y's size) and is appended.
// Returns whether the side was replaced, and the side's target size in ATarget.
template <class T>
bool AddSide(TQVChannelBuffer& ABuffer, const T* AData, int32_t ACount, int32_t ASizeY, uint32_t ALimit,
             int64_t& ATarget)
{
    if (uint32_t(ACount) == ALimit) {
        ABuffer.Assign(AData, ACount);
        ATarget = ACount;
        return true;
    }
    ATarget = TargetSize(ASizeY, ACount, ALimit);
    KeepNewest(ABuffer, ATarget - ACount);
    ABuffer.Append(AData, ACount, ALimit);
    return false;
}

} // namespace

template <QVChannelElement T>
void TQVChannelData::AddXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize, bool ASeparate)
{
    CheckPointer("AddXYData", XBuffer, ASize);
    CheckPointer("AddXYData", YBuffer, ASize);
    FChannel->FDataCriticalSection.Execute([&] {
        TQVScopeChannel& C = *FChannel;
        const uint32_t Limit = C.GetSizeLimit();
        const int32_t Size = C.FYDataBuffer.GetSize();
        uint32_t YSize = ASize;
        TrimToLimit(XBuffer, ASize, Limit);
        TrimToLimit(YBuffer, YSize, Limit);
        const int32_t Count = CheckedCount("AddXYData", ASize);
        C.FIsRamp.store(false, std::memory_order_release);
        if (ASeparate && Size != 0)
            C.FGapsBuffer.Add(Size);
        if (Limit == 0 || uint32_t(Count) == Limit) {
            // Without a limit the block replaces the data: old samples are gone, a separating
            // gap stays at the old size.
            C.FXDataBuffer.Assign(XBuffer, Count);
            C.FYDataBuffer.Assign(YBuffer, Count);
        } else {
            int64_t Target = 0;
            AddSide(C.FXDataBuffer, XBuffer, Count, Size, Limit, Target);
            AddSide(C.FYDataBuffer, YBuffer, Count, Size, Limit, Target);
            C.FGapsBuffer.Shift(Count - (Target - Size)); // the samples dropped
        }
        C.SetFlags();
    });
}

// The buffer forms of AddXYData: X and Y trimmed each by its own size; the gaps move by
// the samples Y dropped.
template <class B>
void TQVChannelData::AddXYSides(const B& XBuffer, const B& YBuffer, bool ASeparate)
{
    CheckBuffer("AddXYData", XBuffer);
    CheckBuffer("AddXYData", YBuffer);
    TQVScopeChannel& C = *FChannel;
    TQWCriticalSectionLock Lock(C.FDataCriticalSection);
    const uint32_t Limit = C.GetSizeLimit();
    C.FIsRamp.store(false, std::memory_order_release);
    auto XData = XBuffer->Read();
    auto YData = YBuffer->Read();
    uint32_t XSize = uint32_t(XBuffer->GetSize()), YSize = uint32_t(YBuffer->GetSize());
    const int32_t Size = C.FYDataBuffer.GetSize();
    TrimToLimit(XData, XSize, Limit);
    TrimToLimit(YData, YSize, Limit);
    if (ASeparate && Size != 0)
        C.FGapsBuffer.Add(Size);
    if (Limit == 0) {
        C.FXDataBuffer.Assign(XData, int32_t(XSize));
        C.FYDataBuffer.Assign(YData, int32_t(YSize));
    } else {
        int64_t XTarget = 0, YTarget = 0;
        AddSide(C.FXDataBuffer, XData, int32_t(XSize), Size, Limit, XTarget);
        if (!AddSide(C.FYDataBuffer, YData, int32_t(YSize), Size, Limit, YTarget))
            C.FGapsBuffer.Shift(int64_t(YSize) - (YTarget - Size));
    }
    C.SetFlags();
}

void TQVChannelData::AddXYData(const std::shared_ptr<IQVRealBuffer>& XBuffer,
                               const std::shared_ptr<IQVRealBuffer>& YBuffer, bool ASeparate)
{
    AddXYSides(XBuffer, YBuffer, ASeparate);
}

void TQVChannelData::AddXYData(const std::shared_ptr<IQVIntegerBuffer>& XBuffer,
                               const std::shared_ptr<IQVIntegerBuffer>& YBuffer, bool ASeparate)
{
    AddXYSides(XBuffer, YBuffer, ASeparate);
}

namespace {

// The Y side of the point forms: at the limit the oldest sample leaves and the gaps move by
// one; a separating gap goes in at the new sample.
void AddYSide(TQVChannelBuffer& AY, TQVGapList& AGaps, double AValue, bool ASeparate, uint32_t ALimit)
{
    if (ALimit != 0 && uint32_t(AY.GetSize()) >= ALimit) {
        AY.DropFront(1);
        AGaps.Shift(1);
    }
    AY.AppendValue(AValue, ALimit);
    if (ASeparate && AY.GetSize() > 1)
        AGaps.Add(AY.GetSize() - 1);
}

} // namespace

void TQVChannelData::AddYPoint(double AValue, bool ASeparate)
{
    TQVScopeChannel& C = *FChannel;
    TQWCriticalSectionLock Lock(C.FDataCriticalSection);
    const uint32_t Limit = C.GetSizeLimit();
    TQVChannelBuffer& X = C.FXDataBuffer;
    const int32_t XSize = X.GetSize();
    const bool XAtLimit = Limit != 0 && uint32_t(XSize) >= Limit;
    // The new X is the previous one plus 1, or 0 when X holds a single sample afterwards.
    const int32_t XNewSize = XAtLimit ? XSize : XSize + 1;
    const double XValue = XNewSize < 2 ? 0.0 : X.At(XSize - 1) + 1.0;
    if (XAtLimit)
        X.DropFront(1);
    X.AppendValue(XValue, Limit);
    AddYSide(C.FYDataBuffer, C.FGapsBuffer, AValue, ASeparate, Limit);
    C.SetFlags();
}

void TQVChannelData::AddXYPoint(double XValue, double YValue, bool ASeparate)
{
    TQVScopeChannel& C = *FChannel;
    TQWCriticalSectionLock Lock(C.FDataCriticalSection);
    const uint32_t Limit = C.GetSizeLimit();
    TQVChannelBuffer& X = C.FXDataBuffer;
    if (Limit != 0 && uint32_t(X.GetSize()) >= Limit)
        X.DropFront(1);
    X.AppendValue(XValue, Limit);
    AddYSide(C.FYDataBuffer, C.FGapsBuffer, YValue, ASeparate, Limit);
    C.SetFlags();
}

void TQVChannelData::Clear()
{
    FChannel->FDataCriticalSection.Execute([&] {
        FChannel->FXDataBuffer.Clear();
        FChannel->FYDataBuffer.Clear();
        FChannel->FGapsBuffer.Clear();
        // A cleared record gives its memory back, spare blocks included.
        FChannel->FBlockRecycler->Clear();
        FChannel->FHasNewBuffer.store(true, std::memory_order_release);
    });
    // Outside the data section: the scope's history belongs to the display's side of the
    // lock order.
    if (TQVDisplayOwner* Display = FChannel->GetDisplay())
        Display->InvalidateHistory();
}

// ---- Reading the data stage ----

int32_t TQVChannelData::GetSize() const
{
    return FChannel->FDataCriticalSection.Execute([&] { return FChannel->FYDataBuffer.GetSize(); });
}

void TQVChannelData::GetXData(double* ABuffer) const
{
    FChannel->FDataCriticalSection.Execute(
        [&] { CopyOut("GetXData", FChannel->FXDataBuffer, ABuffer, FChannel->FXDataBuffer.GetSize()); });
}

void TQVChannelData::GetYData(double* ABuffer) const
{
    FChannel->FDataCriticalSection.Execute(
        [&] { CopyOut("GetYData", FChannel->FYDataBuffer, ABuffer, FChannel->FYDataBuffer.GetSize()); });
}

void TQVChannelData::GetXYData(double* XBuffer, double* YBuffer) const
{
    FChannel->FDataCriticalSection.Execute([&] {
        CopyOut("GetXYData", FChannel->FXDataBuffer, XBuffer, FChannel->FXDataBuffer.GetSize());
        CopyOut("GetXYData", FChannel->FYDataBuffer, YBuffer, FChannel->FYDataBuffer.GetSize());
    });
}

int32_t TQVChannelData::GetXData(double* ABuffer, int32_t ACapacity) const
{
    CheckedCapacity("GetXData", ACapacity);
    return FChannel->FDataCriticalSection.Execute([&] {
        const int32_t Count = std::min(ACapacity, FChannel->FXDataBuffer.GetSize());
        CopyOut("GetXData", FChannel->FXDataBuffer, ABuffer, Count);
        return Count;
    });
}

int32_t TQVChannelData::GetYData(double* ABuffer, int32_t ACapacity) const
{
    CheckedCapacity("GetYData", ACapacity);
    return FChannel->FDataCriticalSection.Execute([&] {
        const int32_t Count = std::min(ACapacity, FChannel->FYDataBuffer.GetSize());
        CopyOut("GetYData", FChannel->FYDataBuffer, ABuffer, Count);
        return Count;
    });
}

// ---- Reading the draw stage ----

int32_t TQVChannelData::GetDrawSize() const
{
    return FChannel->FDrawCriticalSection.Execute([&] { return FChannel->FYDrawDataBuffer->GetSize(); });
}

void TQVChannelData::GetDrawXData(double* ABuffer) const
{
    FChannel->FDrawCriticalSection.Execute([&] {
        const IQVRealBuffer& X = *FChannel->FXDrawDataBuffer;
        CopyOut("GetDrawXData", X, ABuffer, X.GetSize());
    });
}

void TQVChannelData::GetDrawYData(double* ABuffer) const
{
    FChannel->FDrawCriticalSection.Execute([&] {
        const IQVRealBuffer& Y = *FChannel->FYDrawDataBuffer;
        CopyOut("GetDrawYData", Y, ABuffer, Y.GetSize());
    });
}

void TQVChannelData::GetDrawXYData(double* XBuffer, double* YBuffer) const
{
    FChannel->FDrawCriticalSection.Execute([&] {
        const IQVRealBuffer& X = *FChannel->FXDrawDataBuffer;
        const IQVRealBuffer& Y = *FChannel->FYDrawDataBuffer;
        CopyOut("GetDrawXYData", X, XBuffer, X.GetSize());
        CopyOut("GetDrawXYData", Y, YBuffer, Y.GetSize());
    });
}

int32_t TQVChannelData::GetDrawXData(double* ABuffer, int32_t ACapacity) const
{
    CheckedCapacity("GetDrawXData", ACapacity);
    return FChannel->FDrawCriticalSection.Execute([&] {
        const IQVRealBuffer& X = *FChannel->FXDrawDataBuffer;
        const int32_t Count = std::min(ACapacity, X.GetSize());
        CopyOut("GetDrawXData", X, ABuffer, Count);
        return Count;
    });
}

int32_t TQVChannelData::GetDrawYData(double* ABuffer, int32_t ACapacity) const
{
    CheckedCapacity("GetDrawYData", ACapacity);
    return FChannel->FDrawCriticalSection.Execute([&] {
        const IQVRealBuffer& Y = *FChannel->FYDrawDataBuffer;
        const int32_t Count = std::min(ACapacity, Y.GetSize());
        CopyOut("GetDrawYData", Y, ABuffer, Count);
        return Count;
    });
}

double TQVChannelData::GetDrawSampleX(int32_t AIndex) const
{
    return FChannel->FDrawCriticalSection.Execute([&] { return FChannel->FXDrawDataBuffer->GetItem(AIndex); });
}

double TQVChannelData::GetDrawSampleY(int32_t AIndex) const
{
    return FChannel->FDrawCriticalSection.Execute([&] { return FChannel->FYDrawDataBuffer->GetItem(AIndex); });
}

// ---- Snapshots ----

std::shared_ptr<IQVChannelDataSnapshot> TQVChannelData::GetDataSnapshot() const
{
    return FChannel->FDataCriticalSection.Execute([&] {
        return std::make_shared<TQVChannelDataSnapshot>(FChannel->FXDataBuffer.Share(), FChannel->FYDataBuffer.Share());
    });
}

std::shared_ptr<IQVChannelDataSnapshot> TQVChannelData::GetDrawDataSnapshot() const
{
    return FChannel->FDrawCriticalSection.Execute([&] {
        return std::make_shared<TQVChannelDataSnapshot>(ShareOf(*FChannel->FXDrawDataBuffer),
                                                        ShareOf(*FChannel->FYDrawDataBuffer));
    });
}

// ---- Sample rate ----

double TQVChannelData::GetSampleRate() const
{
    return FChannel->FSampleRate.load(std::memory_order_relaxed);
}

void TQVChannelData::SetSampleRate(double AValue)
{
    if (!std::isfinite(AValue) || AValue < 0.0)
        throw std::invalid_argument(OpName("SetSampleRate") + ": invalid sample rate " + std::to_string(AValue));
    // The X axis learns the new rate at once (its unit and limits follow it); the picture
    // follows with the next refresh tick, like new samples do.
    if (FChannel->FSampleRate.exchange(AValue, std::memory_order_relaxed) != AValue) {
        if (TQVBasicScopeXAxis* Axis = FChannel->GetXAxis())
            Axis->InvalidateFreq();
        FChannel->SetFlags();
    }
}

// ---- Element types ----

#define QV_CHANNEL_DATA_INSTANCES(T)                                                                                   \
    template void TQVChannelData::SetYData<T>(const T*, uint32_t);                                                     \
    template void TQVChannelData::SetXYData<T>(const T*, const T*, uint32_t);                                          \
    template void TQVChannelData::AddYData<T>(const T*, uint32_t, bool);                                               \
    template void TQVChannelData::AddXYData<T>(const T*, const T*, uint32_t, bool);
QV_CHANNEL_DATA_INSTANCES(double)
QV_CHANNEL_DATA_INSTANCES(float)
QV_CHANNEL_DATA_INSTANCES(int32_t)
QV_CHANNEL_DATA_INSTANCES(uint32_t)
QV_CHANNEL_DATA_INSTANCES(int64_t)
QV_CHANNEL_DATA_INSTANCES(uint64_t)
QV_CHANNEL_DATA_INSTANCES(int16_t)
QV_CHANNEL_DATA_INSTANCES(uint16_t)
#undef QV_CHANNEL_DATA_INSTANCES

} // namespace qv
