#pragma once
// The row store of a waterfall. A row is an IQVRealBuffer, handed over from any thread and
// never copied on its way: every list holds shared references. A row passes three stages:
//   FInputBufferList  rows handed over by AddBuffer, guarded by FInputBufferSection only, so
//                     that a producer never waits for a paint;
//   FNewBufferList    rows taken in while the picture is held, applied when the hold ends;
//   FHoldBufferList   the drawn history, oldest first, at most XAxis.Samples rows.
// While held, replacements of drawn rows wait in FReplaceBufferList and a clear only marks
// the history to be dropped, so the frozen picture stays as it is.
//
// Each row's extremes are computed once, on entry to the history, and kept in two queues
// beside it, so that the running level range is rescanned only when the row that leaves held
// the extreme. NaN samples and infinities take no part in the extremes.
//
// Lock order: the control's update lock, FBufferSection, FInputBufferSection.

#include "qv/foundation/QVBuffers.h"
#include "qv/foundation/QVTypedDataQueue.h"
#include "qv/foundation/QWCriticalSection.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <stdexcept>
#include <vector>

namespace qv {

// An index past the end of a range of rows.
class ERangeError : public std::out_of_range {
public:
    using std::out_of_range::out_of_range;
};

using TQVRealBufferArray = std::vector<std::shared_ptr<IQVRealBuffer>>;

// An ordered list of rows; it accepts null items, and Delete(0) removes the oldest row.
class TQPRealBufferList {
public:
    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    // An index outside 0..GetCount()-1 raises EQLListError naming the index.
    const std::shared_ptr<IQVRealBuffer>& GetItem(int32_t AIndex) const;
    void SetItem(int32_t AIndex, std::shared_ptr<IQVRealBuffer> AValue);
    void Add(std::shared_ptr<IQVRealBuffer> AValue) { FItems.push_back(std::move(AValue)); }
    void Delete(int32_t AIndex);
    void Clear() { FItems.clear(); }
    auto begin() const { return FItems.begin(); }
    auto end() const { return FItems.end(); }

private:
    std::deque<std::shared_ptr<IQVRealBuffer>> FItems;
};

// What the row store needs of its control.
class IQVWaterfallRowHost {
public:
    virtual ~IQVWaterfallRowHost() = default;
    // XAxis.Samples: the bound of the history and of the waiting lists.
    virtual int32_t GetRowBound() const = 0;
    // The picture is frozen (Hold, or a zoom box being dragged).
    virtual bool GetRowHold() const = 0;
    // The running level range moved: the level view repaints and reads its track value anew.
    virtual void RowRangeChanged() = 0;
    // The oldest row of the history has ASize samples: the Y axis counts them.
    virtual void RowSizeChanged(int32_t ASize) = 0;
};

// The finite extremes of ACount samples; both NaN when there is no finite sample.
void QVFiniteExtremes(const double* AData, int32_t ACount, double& AMin, double& AMax);

class TQVWaterfallBuffers {
public:
    TQVWaterfallBuffers(IQVWaterfallRowHost& AHost, TQWCriticalSection& ABufferSection);
    TQVWaterfallBuffers(const TQVWaterfallBuffers&) = delete;
    TQVWaterfallBuffers& operator=(const TQVWaterfallBuffers&) = delete;

    // ---- Intake, any thread ----
    // Queues one row; its samples are shared, not copied. When more rows wait than the
    // history holds, the oldest waiting row goes. An empty row, or one whose length differs
    // from the rows already accepted, raises std::invalid_argument naming both lengths and
    // changes nothing. Returns after taking only FInputBufferSection.
    void AddBuffer(const IQVRealBuffer& ABuffer);
    // Set by every intake; read and reset by the refresh tick.
    bool TakeBuffersAdded() { return FBuffersAdded.exchange(false, std::memory_order_acq_rel); }
    bool TakeBuffersChanged() { return FBuffersChanged.exchange(false, std::memory_order_acq_rel); }
    bool GetBuffersChanged() const { return FBuffersChanged.load(std::memory_order_acquire); }

    // ---- The control's thread ----
    // Takes every waiting row in: into the history, or while held into the new rows.
    void UpdateIntBuffers();
    // Applies what a hold kept back: the clear, the replacements, then the new rows.
    bool PopulateDrawBuffers();
    // Replaces row AIndex of the logical history (drawn rows, then rows waiting for a hold
    // to end); false when AIndex lies past them. Checks the row as AddBuffer does.
    bool SetBufferInt(uint32_t AIndex, const IQVRealBuffer& ABuffer);
    // Empties the history; while AHold only marks it, so the frozen picture stays.
    void Clear(bool AHold);
    // The history as it will be once every pending row is applied; new shared references.
    TQVRealBufferArray GetIntData();
    // The rows drawn now.
    TQVRealBufferArray GetDrawData();

    // ---- Reading the history (callers hold FBufferSection) ----
    const TQPRealBufferList& GetHoldBufferList() const { return FHoldBufferList; }
    int32_t GetBuffersCount() const { return FHoldBufferList.GetCount(); }
    // Samples in a row of the history; 0 with an empty history.
    int32_t GetBufferSize() const;
    int32_t GetNewBuffersCount() const { return FNewBuffersCount; }
    void ResetNewBuffersCount() { FNewBuffersCount = 0; }
    double GetCurrentMin() const { return FCurrentMin; }
    double GetCurrentMax() const { return FCurrentMax; }
    // Rows whose extremes are known: the history's rows.
    int32_t GetExtremesCount() const { return FMaxValuesList.GetCount(); }
    int32_t GetPendingCount() const;

    // The levels with which the pixel image was last coloured (the renderer keeps them).
    double FBufferMax = 0.0;
    double FBufferMin = 0.0;
    bool FWasLogarithmic = false;

private:
    // Checks a row against the accepted length and adopts its length when none is set yet.
    void CheckRow(const IQVRealBuffer& ABuffer);
    void AddHoldBuffer(std::shared_ptr<IQVRealBuffer> ABuffer);
    void ReplaceHoldBuffer(int32_t AIndex, std::shared_ptr<IQVRealBuffer> ABuffer);
    void ClearHistory();
    // Folds a row's extremes into the running range; true when it widened.
    bool Widen(double AMin, double AMax);
    // The running range from the queues alone.
    void Rescan();

    IQVWaterfallRowHost& FHost;
    TQWCriticalSection& FBufferSection;
    TQVTypedDataQueue<double> FMaxValuesList;
    TQVTypedDataQueue<double> FMinValuesList;
    TQWCriticalSection FInputBufferSection;
    TQPRealBufferList FInputBufferList;
    TQPRealBufferList FNewBufferList;
    TQPRealBufferList FReplaceBufferList;
    TQPRealBufferList FHoldBufferList;
    int32_t FNewBuffersCount = 0;
    double FCurrentMax = 0.0;
    double FCurrentMin = 0.0;
    bool FWasCleared = false;
    std::atomic<bool> FBuffersAdded{false};
    std::atomic<bool> FBuffersChanged{false};
    // The length every row must have; 0 until a row is accepted, and again after a clear.
    std::atomic<int32_t> FRowSize{0};
};

} // namespace qv
