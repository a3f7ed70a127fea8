#include "qv/waterfall/QVWaterfallBuffers.h"

#include "qv/foundation/QLCollection.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

const std::shared_ptr<IQVRealBuffer>& TQPRealBufferList::GetItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    return FItems[static_cast<size_t>(AIndex)];
}

void TQPRealBufferList::SetItem(int32_t AIndex, std::shared_ptr<IQVRealBuffer> AValue)
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    FItems[static_cast<size_t>(AIndex)] = std::move(AValue);
}

void TQPRealBufferList::Delete(int32_t AIndex)
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    FItems.erase(FItems.begin() + AIndex);
}

void QVFiniteExtremes(const double* AData, int32_t ACount, double& AMin, double& AMax)
{
    double Lo = INFINITY, Hi = -INFINITY;
    for (int32_t I = 0; I < ACount; ++I) {
        const double V = AData[I];
        // NaN fails both comparisons; infinities are cut off below.
        if (V < Lo && V != -INFINITY)
            Lo = V;
        if (V > Hi && V != INFINITY)
            Hi = V;
    }
    AMin = Lo == INFINITY ? NAN : Lo;
    AMax = Hi == -INFINITY ? NAN : Hi;
}

namespace {
// Folds AValue into ARunning: the smaller (AMin) or greater value, a NaN on either side giving
// way to a number.
bool Fold(double& ARunning, double AValue, bool AMin)
{
    if (std::isnan(AValue))
        return false;
    if (std::isnan(ARunning) || (AMin ? AValue < ARunning : AValue > ARunning)) {
        ARunning = AValue;
        return true;
    }
    return false;
}

double FoldQueue(const TQVTypedDataQueue<double>& AQueue, int32_t AFirst, bool AMin)
{
    double Result = NAN;
    for (int32_t I = AFirst; I < AQueue.GetCount(); ++I)
        Fold(Result, AQueue.GetItem(I), AMin);
    return Result;
}
} // namespace

TQVWaterfallBuffers::TQVWaterfallBuffers(IQVWaterfallRowHost& AHost, TQWCriticalSection& ABufferSection)
    : FHost(AHost), FBufferSection(ABufferSection)
{}

void TQVWaterfallBuffers::CheckRow(const IQVRealBuffer& ABuffer)
{
    const int32_t Size = ABuffer.GetSize();
    if (Size <= 0)
        throw std::invalid_argument("TQVWaterfall: a row of " + std::to_string(Size) +
                                    " samples cannot be added; a row needs at least 1 sample");
    int32_t Expected = 0;
    if (FRowSize.compare_exchange_strong(Expected, Size, std::memory_order_acq_rel))
        return;
    if (Expected != Size)
        throw std::invalid_argument("TQVWaterfall: a row of " + std::to_string(Size) +
                                    " samples does not fit the waterfall's rows of " + std::to_string(Expected) +
                                    " samples");
}

void TQVWaterfallBuffers::AddBuffer(const IQVRealBuffer& ABuffer)
{
    CheckRow(ABuffer);
    auto Row = std::make_shared<TQVRealBuffer>(ABuffer);
    const int32_t Bound = FHost.GetRowBound();
    {
        TQWCriticalSectionLock Lock(FInputBufferSection);
        FInputBufferList.Add(std::move(Row));
        if (FInputBufferList.GetCount() > Bound)
            FInputBufferList.Delete(0);
    }
    FBuffersAdded.store(true, std::memory_order_release);
}

void TQVWaterfallBuffers::UpdateIntBuffers()
{
    TQWCriticalSectionLock Lock(FBufferSection);
    // The waiting rows change hands in one swap, so that producers wait for no colouring.
    TQPRealBufferList Rows;
    {
        TQWCriticalSectionLock InputLock(FInputBufferSection);
        std::swap(Rows, FInputBufferList);
    }
    if (Rows.GetCount() == 0)
        return;
    const int32_t Bound = FHost.GetRowBound();
    for (const auto& Row : Rows) {
        if (!FHost.GetRowHold()) {
            PopulateDrawBuffers();
            AddHoldBuffer(Row);
        } else {
            FNewBufferList.Add(Row);
            if (FNewBufferList.GetCount() > Bound)
                FNewBufferList.Delete(0);
        }
    }
}

bool TQVWaterfallBuffers::PopulateDrawBuffers()
{
    TQWCriticalSectionLock Lock(FBufferSection);
    if (FWasCleared) {
        ClearHistory();
        FWasCleared = false;
    }
    for (int32_t I = 0; I < FReplaceBufferList.GetCount(); ++I)
        if (const auto& Row = FReplaceBufferList.GetItem(I); Row && I < FHoldBufferList.GetCount())
            ReplaceHoldBuffer(I, Row);
    for (const auto& Row : FNewBufferList)
        AddHoldBuffer(Row);
    FReplaceBufferList.Clear();
    FNewBufferList.Clear();
    return false;
}

bool TQVWaterfallBuffers::Widen(double AMin, double AMax)
{
    bool Changed = false;
    if (Fold(FCurrentMin, AMin, true)) {
        Changed = true;
        FHost.RowRangeChanged();
    }
    if (Fold(FCurrentMax, AMax, false)) {
        Changed = true;
        FHost.RowRangeChanged();
    }
    return Changed;
}

void TQVWaterfallBuffers::AddHoldBuffer(std::shared_ptr<IQVRealBuffer> ABuffer)
{
    TQWCriticalSectionLock Lock(FBufferSection);
    FBuffersChanged.store(true, std::memory_order_release);
    double Lo, Hi;
    QVFiniteExtremes(ABuffer->Read(), ABuffer->GetSize(), Lo, Hi);
    FHoldBufferList.Add(std::move(ABuffer));
    FMaxValuesList.Add(Hi);
    FMinValuesList.Add(Lo);
    if (FHoldBufferList.GetCount() == 1) {
        // The first row sets the range without telling anyone.
        FCurrentMin = Lo;
        FCurrentMax = Hi;
    } else
        Widen(Lo, Hi);

    if (FHoldBufferList.GetCount() > FHost.GetRowBound()) {
        // One row out for one in, also when the bound was lowered further.
        FHoldBufferList.Delete(0);
        if (FMaxValuesList.GetCount() > 1 && FCurrentMax == FMaxValuesList.GetItem(0)) {
            FCurrentMax = FoldQueue(FMaxValuesList, 1, false);
            FHost.RowRangeChanged();
        }
        FMaxValuesList.Remove();
        if (FMinValuesList.GetCount() > 1 && FCurrentMin == FMinValuesList.GetItem(0)) {
            FCurrentMin = FoldQueue(FMinValuesList, 1, true);
            FHost.RowRangeChanged();
        }
        FMinValuesList.Remove();
    }
    FHost.RowSizeChanged(FHoldBufferList.GetItem(0)->GetSize());
    ++FNewBuffersCount;
}

void TQVWaterfallBuffers::ReplaceHoldBuffer(int32_t AIndex, std::shared_ptr<IQVRealBuffer> ABuffer)
{
    TQWCriticalSectionLock Lock(FBufferSection);
    // Only a row that held the running minimum forces a rescan: the maximum never falls on
    // a replacement (the second test compares the old maximum with the minimum too).
    const bool Rescan = FMinValuesList.GetItem(AIndex) == FCurrentMin || FMaxValuesList.GetItem(AIndex) == FCurrentMin;
    double Lo, Hi;
    QVFiniteExtremes(ABuffer->Read(), ABuffer->GetSize(), Lo, Hi);
    FHoldBufferList.SetItem(AIndex, std::move(ABuffer));
    FMaxValuesList.SetItem(AIndex, Hi);
    FMinValuesList.SetItem(AIndex, Lo);
    if (Rescan) {
        this->Rescan();
        FHost.RowRangeChanged();
    } else
        Widen(Lo, Hi);
}

void TQVWaterfallBuffers::Rescan()
{
    FCurrentMin = FoldQueue(FMinValuesList, 0, true);
    FCurrentMax = FoldQueue(FMaxValuesList, 0, false);
}

bool TQVWaterfallBuffers::SetBufferInt(uint32_t AIndex, const IQVRealBuffer& ABuffer)
{
    FBuffersAdded.store(true, std::memory_order_release);
    TQWCriticalSectionLock Lock(FBufferSection);
    UpdateIntBuffers();
    // After a clear that waits for the hold to end, the drawn rows are no longer part of the
    // logical history.
    const uint32_t Drawn = FWasCleared ? 0u : static_cast<uint32_t>(FHoldBufferList.GetCount());
    const uint32_t Waiting = static_cast<uint32_t>(FNewBufferList.GetCount());
    if (AIndex >= Drawn && AIndex - Drawn >= Waiting)
        return false;
    CheckRow(ABuffer);
    auto Row = std::make_shared<TQVRealBuffer>(ABuffer);
    if (AIndex < Drawn) {
        const int32_t Index = static_cast<int32_t>(AIndex);
        if (FHost.GetRowHold()) {
            while (FReplaceBufferList.GetCount() <= Index)
                FReplaceBufferList.Add(nullptr);
            FReplaceBufferList.SetItem(Index, std::move(Row));
        } else {
            PopulateDrawBuffers();
            ReplaceHoldBuffer(Index, std::move(Row));
        }
    } else
        FNewBufferList.SetItem(static_cast<int32_t>(AIndex - Drawn), std::move(Row));
    // The whole image is coloured anew at the next draw.
    FNewBuffersCount = FHoldBufferList.GetCount() + FNewBufferList.GetCount();
    return true;
}

void TQVWaterfallBuffers::ClearHistory()
{
    FCurrentMin = 0.0;
    FCurrentMax = 0.0;
    FMaxValuesList.Clear();
    FMinValuesList.Clear();
    FHoldBufferList.Clear();
}

void TQVWaterfallBuffers::Clear(bool AHold)
{
    TQWCriticalSectionLock Lock(FBufferSection);
    FReplaceBufferList.Clear();
    FNewBufferList.Clear();
    FNewBuffersCount = 0;
    if (AHold)
        FWasCleared = true;
    else
        ClearHistory();
    // Rows of another length may follow a clear.
    TQWCriticalSectionLock InputLock(FInputBufferSection);
    if (FInputBufferList.GetCount() == 0)
        FRowSize.store(0, std::memory_order_release);
}

TQVRealBufferArray TQVWaterfallBuffers::GetIntData()
{
    TQWCriticalSectionLock Lock(FBufferSection);
    UpdateIntBuffers();
    const int32_t Drawn = FHoldBufferList.GetCount();
    TQVRealBufferArray Result;
    for (int32_t I = 0; I < Drawn; ++I) {
        const bool Replaced = I < FReplaceBufferList.GetCount() && FReplaceBufferList.GetItem(I);
        Result.push_back(
            std::make_shared<TQVRealBuffer>(*(Replaced ? FReplaceBufferList.GetItem(I) : FHoldBufferList.GetItem(I))));
    }
    if (Drawn < FHost.GetRowBound())
        for (const auto& Row : FNewBufferList)
            Result.push_back(std::make_shared<TQVRealBuffer>(*Row));
    return Result;
}

TQVRealBufferArray TQVWaterfallBuffers::GetDrawData()
{
    TQWCriticalSectionLock Lock(FBufferSection);
    TQVRealBufferArray Result;
    for (const auto& Row : FHoldBufferList)
        Result.push_back(std::make_shared<TQVRealBuffer>(*Row));
    return Result;
}

int32_t TQVWaterfallBuffers::GetBufferSize() const
{
    return FHoldBufferList.GetCount() > 0 ? FHoldBufferList.GetItem(0)->GetSize() : 0;
}

int32_t TQVWaterfallBuffers::GetPendingCount() const
{
    return FNewBufferList.GetCount();
}

} // namespace qv
