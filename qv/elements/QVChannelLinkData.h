#pragma once
// What a zone's or a cursor's tie to a channel reads out for the host, on any thread: the
// samples of the channel inside the zone, and the places where the cursor's lines cross the
// channel, as counts, index arrays and snapshots.
//
// The pointer forms write into the caller's memory without a bound: it must hold as many
// entries as the matching size call returned, and new samples may arrive between the two
// calls. The std::vector forms count and copy from one hold of the channel's section, so
// they always agree with themselves. Snapshots keep their samples when new data arrive.

#include "qv/channels/QVChannelData.h"
#include "qv/foundation/QVBuffers.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qv {

class TQVDisplayZoneChannelLink;
class TQVDisplayCursorChannelLink;

// The samples of a channel together with the indexes of those inside a zone, in ascending
// order.
class IQVZoneChannelDataSnapshot : public IQVChannelDataSnapshot {
public:
    virtual std::shared_ptr<IQVIntegerBuffer> GetIndexData() const = 0;
};

// The draw-stage samples of a channel together with the crossings of a cursor's vertical and
// horizontal lines: for each crossing its sample position (index into the snapshot's buffers
// plus the fraction towards the next sample) and its X and Y values.
class IQVCursorChannelDataSnapshot : public IQVChannelDataSnapshot {
public:
    virtual std::shared_ptr<IQVRealBuffer> GetVerticalIntersectIndexData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetVerticalXIntersectData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetVerticalYIntersectData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetHorizontalIntersectIndexData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetHorizontalXIntersectData() const = 0;
    virtual std::shared_ptr<IQVRealBuffer> GetHorizontalYIntersectData() const = 0;
};

// The samples of the link's channel that lie inside the link's zone: those of the data stage
// (as they arrive) or of the draw stage (as last shown). With no channel or zone there are
// none, and the snapshots are null.
class TQVDisplayZoneChannelLinkData {
public:
    explicit TQVDisplayZoneChannelLinkData(const TQVDisplayZoneChannelLink* ALink) : FChannelLink(ALink) {}

    int32_t GetSize() const;
    void GetDataIndexes(uint32_t* AIndexes) const;
    std::vector<uint32_t> GetDataIndexes() const;
    int32_t GetDrawSize() const;
    void GetDrawDataIndexes(uint32_t* AIndexes) const;
    std::vector<uint32_t> GetDrawDataIndexes() const;
    std::shared_ptr<IQVZoneChannelDataSnapshot> GetDataSnapshot() const;
    std::shared_ptr<IQVZoneChannelDataSnapshot> GetDrawDataSnapshot() const;

private:
    // The samples of one stage and the indexes inside the zone, taken together.
    std::shared_ptr<IQVZoneChannelDataSnapshot> Take(bool ADrawStage) const;

    const TQVDisplayZoneChannelLink* FChannelLink;
};

// The crossings of the cursor's lines with the link's channel on the last painted frame: the
// vertical line at the cursor's X, the horizontal one at its Y. Positions are draw-stage
// sample indexes plus the fraction between a sample and the next. Nothing before the first
// paint; with no channel or cursor the counts are 0 and the snapshot is null.
class TQVDisplayCursorChannelLinkData {
public:
    explicit TQVDisplayCursorChannelLinkData(const TQVDisplayCursorChannelLink* ALink) : FChannelLink(ALink) {}

    int32_t GetVerticalDrawSize() const;
    void GetVerticalDrawDataIndexes(double* AIndexes) const;
    std::vector<double> GetVerticalDrawDataIndexes() const;
    int32_t GetHorizontalDrawSize() const;
    void GetHorizontalDrawDataIndexes(double* AIndexes) const;
    std::vector<double> GetHorizontalDrawDataIndexes() const;
    std::shared_ptr<IQVCursorChannelDataSnapshot> GetDrawDataSnapshot() const;

private:
    struct TCrossings {
        std::vector<double> Position, X, Y;
    };
    // The crossings of one line, under the channel's draw section; false without a channel,
    // cursor or axis.
    bool Cross(bool AVertical, TCrossings& AResult) const;

    const TQVDisplayCursorChannelLink* FChannelLink;
};

} // namespace qv
