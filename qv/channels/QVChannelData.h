#pragma once
// The sample intake of a scope channel (Channel->GetData()). Every call may come from any
// thread: it runs under the channel's data section, changes the data stage, marks the channel
// as having new data and the scope as needing a recalculation, and returns. Nothing is drawn
// on the caller's thread; the scope's refresh tick moves the data to the draw stage.
//
// SizeLimit (L, from the scope; 0 keeps everything) holds the data stage to the newest L
// samples:
//  - SetYData / SetXYData replace the data with the last L elements of the source (each side
//    by its own size in the buffer forms). SetYData makes X the ramp 0, 1, 2, ...;
//    SetXYData leaves the ramp flag as it is. Neither touches the gap list.
//  - AddYData appends; at the limit the oldest samples drop out. X is then continued as a
//    ramp: at the limit it moves by the block size and keeps counting, so X values exceed
//    the limit on a long run, and the gap list moves by one sample per block, whatever the
//    block size. Below the limit X grows by the block size without being held to the limit,
//    so X can end longer than Y and then stays so. An AddYData on a channel with no X starts
//    the ramp at 0.
//  - AddXYData clears the ramp flag. Without a limit it replaces both sides (the old samples
//    are gone, a separating gap still goes in at the old size); with one it appends and
//    moves the gap list by the number of samples dropped. A block of exactly L samples
//    replaces the data.
//  - AddYPoint / AddXYPoint append one sample; at the limit each side drops its oldest
//    sample and the gap list moves by one. AddYPoint's X is the previous X plus 1 (0 for the
//    first sample).
//  - ASeparate breaks the line before the new samples: a gap at the size Y had (or, for the
//    point forms, at the new sample). A gap at 0 is never stored.
//
// The draw-stage getters take only the draw section and so never wait for a producer.
//
// Errors: a null pointer with a non-zero size, or a null buffer, raises std::invalid_argument;
// a size that cannot be held (beyond INT32_MAX) raises std::length_error; the channel is left
// unchanged in both cases. Draw-sample indexes outside the draw stage raise std::out_of_range.

#include "qv/channels/QVChannelBuffer.h"
#include "qv/foundation/QVBuffers.h"

#include <cstdint>
#include <memory>

namespace qv {

class TQVScopeChannel;

// X and Y samples as they were when the snapshot was taken. The snapshot may outlive its
// channel. Each call returns a buffer object of its own over the same samples, so writing to
// it leaves the snapshot unchanged.
class IQVChannelDataSnapshot {
public:
    virtual ~IQVChannelDataSnapshot() = default;
    virtual std::shared_ptr<IQVRealBuffer> GetXData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetYData() const = 0;
};

class TQVChannelData {
public:
    explicit TQVChannelData(TQVScopeChannel* AChannel) : FChannel(AChannel) {}
    TQVChannelData(const TQVChannelData&) = delete;
    TQVChannelData& operator=(const TQVChannelData&) = delete;

    TQVScopeChannel* GetChannel() const { return FChannel; }

    // ---- Set family: replaces the data ----
    template <QVChannelElement T>
    void SetYData(const T* ABuffer, uint32_t ASize);
    void SetYData(const std::shared_ptr<IQVRealBuffer>& ABuffer);
    void SetYData(const std::shared_ptr<IQVIntegerBuffer>& ABuffer);
    // As SetYData, but the channel reads the samples in place, without a copy, for as long as
    // it keeps them: both stages share the caller's memory (a memory-mapped file of doubles,
    // say) and only the summary of their extremes is made, with one read. The memory must
    // stay unchanged and alive while the channel reads it; the buffer's owner, when it has
    // one, is held for that. A later intake that appends copies the kept samples into the
    // channel's own memory first; dropping samples does not. A buffer already written since
    // it was made (no longer foreign) is copied as SetYData copies. X becomes the ramp.
    void SetYDataNoCopy(const std::shared_ptr<TQVForeignRealBuffer>& ABuffer);
    template <QVChannelElement T>
    void SetXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize);
    void SetXYData(const std::shared_ptr<IQVRealBuffer>& XBuffer, const std::shared_ptr<IQVRealBuffer>& YBuffer);
    void SetXYData(const std::shared_ptr<IQVIntegerBuffer>& XBuffer, const std::shared_ptr<IQVIntegerBuffer>& YBuffer);

    // ---- Add family: appends ----
    template <QVChannelElement T>
    void AddYData(const T* ABuffer, uint32_t ASize, bool ASeparate = false);
    void AddYData(const std::shared_ptr<IQVRealBuffer>& ABuffer, bool ASeparate = false);
    void AddYData(const std::shared_ptr<IQVIntegerBuffer>& ABuffer, bool ASeparate = false);
    template <QVChannelElement T>
    void AddXYData(const T* XBuffer, const T* YBuffer, uint32_t ASize, bool ASeparate = false);
    // The buffer forms trim X and Y each by its own size, so the sides may end up differing
    // in length; the gap list moves by the samples Y dropped.
    void AddXYData(const std::shared_ptr<IQVRealBuffer>& XBuffer, const std::shared_ptr<IQVRealBuffer>& YBuffer,
                   bool ASeparate = false);
    void AddXYData(const std::shared_ptr<IQVIntegerBuffer>& XBuffer, const std::shared_ptr<IQVIntegerBuffer>& YBuffer,
                   bool ASeparate = false);
    void AddYPoint(double AValue, bool ASeparate = false);
    void AddXYPoint(double XValue, double YValue, bool ASeparate = false);

    // Empties the data stage and the gap list; the draw stage keeps its samples until the next
    // refresh, and the ramp flag stays. The scope's history is invalidated.
    void Clear();

    // ---- Reading the data stage ----
    // The number of Y samples.
    int32_t GetSize() const;
    // Copy all X (Y) samples into ABuffer, which must hold them. X can be longer than Y (see
    // above), and producers may add samples between GetSize and these calls: the forms with
    // ACapacity copy at most ACapacity samples and return how many they copied.
    void GetXData(double* ABuffer) const;
    void GetYData(double* ABuffer) const;
    void GetXYData(double* XBuffer, double* YBuffer) const;
    int32_t GetXData(double* ABuffer, int32_t ACapacity) const;
    int32_t GetYData(double* ABuffer, int32_t ACapacity) const;

    // ---- Reading the draw stage ----
    int32_t GetDrawSize() const;
    void GetDrawXData(double* ABuffer) const;
    void GetDrawYData(double* ABuffer) const;
    void GetDrawXYData(double* XBuffer, double* YBuffer) const;
    int32_t GetDrawXData(double* ABuffer, int32_t ACapacity) const;
    int32_t GetDrawYData(double* ABuffer, int32_t ACapacity) const;
    double GetDrawSampleX(int32_t AIndex) const;
    double GetDrawSampleY(int32_t AIndex) const;

    // ---- Snapshots (no copy of the samples unless the data stage runs round its ring) ----
    std::shared_ptr<IQVChannelDataSnapshot> GetDataSnapshot() const;
    std::shared_ptr<IQVChannelDataSnapshot> GetDrawDataSnapshot() const;

    // Samples per second of the stream; 0 until set. A negative or non-finite rate raises
    // std::invalid_argument.
    double GetSampleRate() const;
    void SetSampleRate(double AValue);

private:
    template <class B>
    void AddXYSides(const B& XBuffer, const B& YBuffer, bool ASeparate);

    TQVScopeChannel* FChannel;
};

} // namespace qv
