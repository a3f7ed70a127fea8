// The channel's stream intake through its pins, and the wait that keeps synchronised
// channels together.
//
// Every operation arrives on the sender's thread. The dispatch runs under the display's lock
// (so that the channel cannot go away meanwhile and the domain settings go through their
// setters), then, for group decisions, the scope's all-channel section, then the channel's
// data section: the one lock order of the library.

#include "qv/axes/QVScopeXAxis.h"
#include "qv/channels/QVChannelData.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVDisplayOwner.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <stdexcept>

namespace qv {

namespace {

// The rate of a stream whose start names none.
constexpr double CDefaultStreamRate = 10000.0;

template <class T>
const T* As(const TQWOperation& AOperation)
{
    return dynamic_cast<const T*>(&AOperation);
}

// A stopped stream leaves nothing queued and nobody waiting for it.
void StopQueue(TQWBlockQueue& AQueue)
{
    while (AQueue.TakeNext())
        ;
    AQueue.SetIgnore(true);
}

// The scope's all-channel section when there is a scope.
std::unique_lock<std::recursive_mutex> AllChannelLock(TQVScopeOwner* AScope)
{
    if (!AScope)
        return {};
    return std::unique_lock<std::recursive_mutex>(AScope->GetAllChannelSection().GetMutex());
}

} // namespace

void TQVScopeChannel::CreatePins()
{
    // The procedures keep the lock alive: a sender may be waiting for it while the channel
    // goes away, and then finds the pin closed.
    const TQLLockPtr Lock = GetLock();
    using TDispatch = bool (TQVScopeChannel::*)(TQWPin*, TQVDataKind, const TQWOperation&, uint64_t);
    auto Guarded = [this, Lock](TDispatch ADispatch) {
        return
            [this, Lock, ADispatch](TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState) {
                auto Guard = Lock->AcquireWrite();
                const auto* Sink = dynamic_cast<const TQWSinkPin*>(APin);
                if (!Guard || !Sink || Sink->IsClosed())
                    return false;
                return (this->*ADispatch)(APin, AIID, AOperation, AState);
            };
    };
    FInputPin = std::make_shared<TQVQWComboRealIntComplexPairedQueuedSinkPin>(Guarded(&TQVScopeChannel::YSinkDispatch));
    FXInputPin = std::make_shared<TQVQWQueuedIntegerRealSinkPin>(Guarded(&TQVScopeChannel::XSinkDispatch));
    if (FOwner) {
        FName = "Channel" + std::to_string(FOwner->GetInputPins().GetCount());
        FOwner->GetInputPins().Add(FName, FInputPin);
        FOwner->GetXInputPins().Add(FName, FXInputPin);
    }
}

void TQVScopeChannel::ReleasePins()
{
    // Runs under the display's lock (the collection frees its items under it): no dispatch
    // is inside the channel, and none enters once the pins are closed.
    for (TQWSinkPin* Pin : {static_cast<TQWSinkPin*>(FInputPin.get()), static_cast<TQWSinkPin*>(FXInputPin.get())}) {
        Pin->Close();
        Pin->Disconnect();
    }
    if (FOwner) {
        FOwner->GetInputPins().Remove(FInputPin.get());
        FOwner->GetXInputPins().Remove(FXInputPin.get());
    }
}

void TQVScopeChannel::SetSynchronize(bool AValue)
{
    Set(FSynchronize, AValue);
}

void TQVScopeChannel::CollectPinConnections()
{
    FXIsConnected = FXInputPin->IsConnected();
    FYIsConnected = FInputPin->IsConnected();
}

// ---- Dispatch ----

bool TQVScopeChannel::YSinkDispatch(TQWPin* /*APin*/, TQVDataKind /*AIID*/, const TQWOperation& AOperation,
                                    uint64_t /*AState*/)
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return false;
    if (const auto* Start = As<TQWStartOperation>(AOperation)) {
        StartStream(*Start);
    } else if (As<TQWStopOperation>(AOperation)) {
        StopQueue(FInputPin->GetQueue());
        if (FOwner)
            GetDisplay()->InvalidateHistory();
    } else if (const auto* Block = As<TQWSuppliedBufferOperation>(AOperation)) {
        if (Block->GetBuffer())
            ReceiveBlock(*Block->GetBuffer());
    } else if (const auto* Single = As<TQWSuppliedSingleOperation>(AOperation)) {
        FData->AddYPoint(Single->GetValue());
    } else if (const auto* Real = As<TQWSuppliedRealOperation>(AOperation)) {
        FData->AddYPoint(Real->GetValue());
    } else if (const auto* Integer = As<TQWSuppliedIntegerOperation>(AOperation)) {
        FData->AddYPoint(static_cast<double>(Integer->GetValue()));
    } else if (const auto* Complex = As<TQWSuppliedRealComplexOperation>(AOperation)) {
        FData->AddXYPoint(Complex->GetValue().real(), Complex->GetValue().imag());
    } else if (As<TQWIgnoreStreamOperation>(AOperation)) {
        FInputPin->GetQueue().SetIgnore(true);
    } else if (const auto* Pair = As<TQWSuppliedBufferPairOperation>(AOperation)) {
        const auto& Buffers = Pair->GetBuffers();
        const bool Readable = std::all_of(Buffers.begin(), Buffers.end(), [](const auto& ABuffer) {
            return ABuffer && ABuffer->GetDataKind() != dkByte && ABuffer->GetDataKind() != dkComplex;
        });
        if (Readable && Buffers.size() == 1) {
            AddBuffer(*Buffers[0]);
        } else if (Readable && Buffers.size() > 1) {
            SetInAxisDomain(true);
            AddBuffers(*Buffers[0], *Buffers[1]);
        }
    }
    return false;
}

bool TQVScopeChannel::XSinkDispatch(TQWPin* /*APin*/, TQVDataKind /*AIID*/, const TQWOperation& AOperation,
                                    uint64_t /*AState*/)
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return false;
    TQWBlockQueue& Queue = FXInputPin->GetQueue();
    if (const auto* Start = As<TQWStartSampleRateOperation>(AOperation)) {
        Queue.SetIgnore(false);
        Queue.SetSampleRate(Start->GetSampleRate());
    } else if (As<TQWStopOperation>(AOperation)) {
        StopQueue(Queue);
    } else if (As<TQWIgnoreStreamOperation>(AOperation)) {
        Queue.SetIgnore(true);
    } else if (const auto* Block = As<TQWSuppliedBufferOperation>(AOperation)) {
        const std::shared_ptr<const IQVData>& Buffer = Block->GetBuffer();
        if (Buffer && Buffer->GetDataKind() != dkComplex && Buffer->GetDataKind() != dkByte)
            Queue.Append(*Buffer);
    }
    return false;
}

void TQVScopeChannel::StartStream(const TQWStartOperation& AOperation)
{
    FInputPin->GetQueue().SetIgnore(false);
    if (FOwner)
        GetDisplay()->InvalidateHistory();
    const auto* Rate = As<TQWStartRateOperation>(AOperation);
    FSampleRate.store(Rate ? Rate->GetSampleRate() : CDefaultStreamRate, std::memory_order_relaxed);
    SetFrequencyDomain(As<TQWStartSpectrumOperation>(AOperation) != nullptr);
    SetIntensityDomain(As<TQWStartIntensityOperation>(AOperation) != nullptr);
    FDataCriticalSection.Execute([&] {
        FYDataBuffer.Clear();
        FXDataBuffer.Clear();
    });
    // Streams that are connected but idle answer that nobody should wait for them.
    if (FOwner)
        for (const std::shared_ptr<TQWSinkPin>& Pin : FOwner->GetInputPins().GetPins())
            Pin->Notify(TQWQueryStreamOperation());
    FXInputPin->GetQueue().SetIgnore(false);
    FXInputPin->Notify(TQWQueryStreamOperation());
    FXPinActive = FXInputPin->IsConnected() && !FXInputPin->GetQueue().GetIgnore();
    SetInAxisDomain(FXPinActive);
    SetFlags();
    if (TQVBasicScopeXAxis* Axis = GetXAxis())
        Axis->InvalidateFreq();
}

void TQVScopeChannel::ReceiveBlock(const IQVData& ABlock)
{
    if (ABlock.GetDataKind() == dkComplex) {
        AddBuffer(ABlock);
        return;
    }
    TQWBlockQueue& Queue = FInputPin->GetQueue();
    if (FXPinActive) {
        Queue.Append(ABlock);
        FXIsConnected = FXInputPin->IsConnected();
        FYIsConnected = true;
        ProcessQueuedBuffers();
        return;
    }
    if (!FOwner) { // alone: nobody to wait for
        AddBuffer(ABlock);
        return;
    }
    FOwner->CollectActiveChannels();
    const auto AllLock = AllChannelLock(FOwner);
    const double Rate = FSampleRate.load(std::memory_order_relaxed);
    if (Queue.GetNextBlockSize() == 0) {
        if (FOwner->ProcessEnoughChannelData(this, uint32_t(ABlock.GetCount()), Rate))
            AddBuffer(ABlock);
        else
            Queue.Append(ABlock);
        return;
    }
    // Under pressure the queue drains as far as the group allows, and the block that
    // arrived is dropped: the picture stays with the blocks the others are matched to.
    for (uint32_t Size = Queue.GetNextBlockSize(); Size != 0 && FOwner->ProcessEnoughChannelData(this, Size, Rate);
         Size = Queue.GetNextBlockSize())
        if (const std::shared_ptr<const IQVData> Next = Queue.TakeNext())
            AddBuffer(*Next);
}

// ---- Group steps ----

bool TQVScopeChannel::HasEnoughData(uint32_t ASize, double ASampleRate)
{
    if (!GetVisible() || !FSynchronize || !FYIsConnected)
        return true;
    const TQWBlockQueue& Queue = FInputPin->GetQueue();
    if (Queue.GetIgnore())
        return true;
    double Rate = FSampleRate.load(std::memory_order_relaxed);
    if (ASampleRate != Rate)
        return true;
    const uint32_t Next = Queue.GetNextBlockSize();
    if (Next != 0 && Next != ASize)
        return true;
    if (Rate == 0.0) {
        Rate = 1.0;
        FSampleRate.store(Rate, std::memory_order_relaxed);
    }
    if (double(ASize) > double(Queue.GetTotalSize()) * ASampleRate / Rate)
        return false;
    if (!FXIsConnected)
        return true;
    const TQWBlockQueue& XQueue = FXInputPin->GetQueue();
    if (XQueue.GetIgnore())
        return true;
    // An X stream without a rate holds nobody; its own channel waits (ProcessBuffers).
    const double XRate = XQueue.GetSampleRate();
    return !(XRate > 0.0) || !(double(ASize) > double(XQueue.GetTotalSize()) * ASampleRate / XRate);
}

void TQVScopeChannel::ProcessQueuedData(uint32_t /*ASize*/, double /*ASampleRate*/)
{
    const TQWBlockQueue& Queue = FInputPin->GetQueue();
    if (GetVisible() && FYIsConnected && !Queue.GetIgnore() && Queue.GetNextBlockSize() != 0)
        ProcessBuffers();
}

void TQVScopeChannel::ProcessQueuedBuffers()
{
    if (!FOwner) {
        ProcessBuffers();
        return;
    }
    FOwner->CollectActiveChannels();
    const auto AllLock = AllChannelLock(FOwner);
    const uint32_t Size = FInputPin->GetQueue().GetNextBlockSize();
    if (FOwner->ProcessEnoughChannelData(this, Size, FSampleRate.load(std::memory_order_relaxed)))
        ProcessBuffers();
}

void TQVScopeChannel::ProcessBuffers()
{
    TQWBlockQueue& Queue = FInputPin->GetQueue();
    if (!FXPinActive) {
        if (const std::shared_ptr<const IQVData> Next = Queue.TakeNext())
            AddBuffer(*Next);
        return;
    }
    TQWBlockQueue& XQueue = FXInputPin->GetQueue();
    const uint32_t Size = Queue.GetNextBlockSize();
    const double XRate = XQueue.GetSampleRate();
    const double Rate = FSampleRate.load(std::memory_order_relaxed);
    if (Size == 0 || !(XRate > 0.0))
        return;
    // Wait until the X stream has covered the time of the Y block.
    if (double(XQueue.GetTotalSize()) * Rate / XRate < double(Size))
        return;
    const double Stretch = std::nearbyint(XRate * Size / Rate);
    XQueue.SetStretchSize(uint32_t(std::clamp(Stretch, 1.0, double(UINT32_MAX))));
    const std::shared_ptr<const IQVData> Y = Queue.TakeNext();
    const std::shared_ptr<IQVRealBuffer> X = XQueue.StretchLoadBufferSize(Size);
    AddBuffers(*X, *Y);
}

// ---- Data ----

void TQVScopeChannel::AddBuffer(const IQVData& ABuffer)
{
    const TQVDataKind Kind = ABuffer.GetDataKind();
    if (Kind == dkComplex) {
        const TQVComplexBuffer Complex(ABuffer);
        AddBuffers(*Complex.GetRealPart(), *Complex.GetImaginaryPart());
        return;
    }
    if (Kind == dkByte)
        throw std::invalid_argument("TQVScopeChannel::AddBuffer: cannot plot " + QVDataKindName(Kind));
    auto Add = [this](const auto* AValues, int32_t ASize) {
        FDataCriticalSection.Execute([&] {
            const uint32_t Limit = GetSizeLimit();
            const uint32_t Size = uint32_t(ASize);
            if (Limit != 0 && Size > Limit)
                FYDataBuffer.Assign(AValues + (Size - Limit), int32_t(Limit));
            else if (Limit != 0 && Size < Limit)
                FData->AddYData(AValues, Size);
            else
                FYDataBuffer.Assign(AValues, ASize);
            // Blocks restart X at 0, also when they accumulate.
            IntPopulateRamp();
            SetFlags();
        });
    };
    if (Kind == dkInteger) {
        const TQVIntegerBuffer Values(ABuffer);
        Add(Values.Read(), Values.GetSize());
    } else {
        const TQVRealBuffer Values(ABuffer);
        Add(Values.Read(), Values.GetSize());
    }
}

void TQVScopeChannel::AddBuffers(const IQVData& AXBuffer, const IQVData& AYBuffer)
{
    const TQVRealBuffer X(AXBuffer);
    const TQVRealBuffer Y(AYBuffer);
    FDataCriticalSection.Execute([&] {
        if (GetSizeLimit() != 0) {
            FData->AddXYData(X.Read(), Y.Read(), uint32_t(std::min(X.GetSize(), Y.GetSize())));
        } else {
            FXDataBuffer.Assign(X.Read(), X.GetSize());
            FYDataBuffer.Assign(Y.Read(), Y.GetSize());
            FIsRamp.store(false, std::memory_order_release);
        }
        SetFlags();
    });
}

} // namespace qv
