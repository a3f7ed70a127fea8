#pragma once
// Channel markers: markers placed at a sample index of one channel, owned by the channel and
// drawn by it at the interpolated point of that index. Their look comes from one of the
// scope's marker groups, chosen by MarkerGroupIndex.

#include "qv/channels/QVScopeMarkerBase.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/foundation/QLListError.h"

#include <cmath>
#include <limits>

namespace qv {

class TQVScopeChannel;

class TQVScopeChannelMarker : public TQVBasicDisplayMarker {
public:
    explicit TQVScopeChannelMarker(TQLCollection* ACollection);

    // The sample index; a fraction lies between two samples.
    double GetPosition() const { return FPosition; }
    void SetPosition(double AValue);
    // The scope's marker group at that index: an index at or past the count takes the last
    // group; a negative one (or a scope without groups) changes nothing.
    int32_t GetMarkerGroupIndex() const;
    void SetGroupIndex(int32_t AValue);
    void SetMarkerGroupIndex(int32_t AValue) { SetGroupIndex(AValue); }
    // The channel that owns the marker; null outside a channel.
    TQVScopeChannel* GetChannel() const;

    // A drag in progress shows the marker's ghost at ADragPosition; EndDrag moves the marker
    // there (firing OnDragged when it moved) or, with ACommit false, leaves it where it was.
    void BeginDrag();
    void DragTo(double APosition) { FDragPosition = APosition; }
    double GetDragPosition() const { return FDragPosition; }
    bool GetIsDragging() const { return FDragging; }
    void EndDrag(bool ACommit);
    // Dragged, and the ghost stands elsewhere than the marker (a NaN on either side counts as
    // elsewhere).
    bool GetInDragging() const override;

    void SetOnDragged(TQVScopeMarkerDraggedEvent AHandler) { FOnDragged = std::move(AHandler); }
    const TQVScopeMarkerDraggedEvent& GetOnDragged() const { return FOnDragged; }

    // The position, then the group by index.
    void Assign(const TQLPersistent* ASource) override;

    QL_CLASS_INFO()

protected:
    TQVDisplayAxis* GetLabelXAxis() const override;
    TQVDisplayAxis* GetLabelYAxis() const override;

private:
    friend class TQVScopeChannelMarkers;
    double FPosition = 0.0;
    double FDragPosition = std::numeric_limits<double>::quiet_NaN();
    bool FDragging = false;
    TQVScopeMarkerDraggedEvent FOnDragged;
};

// The markers of one channel.
class TQVScopeChannelMarkers : public TQVDisplayCollection<TQVScopeChannelMarker> {
public:
    TQVScopeChannelMarkers(TQVScopeChannel* AChannel, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    TQVScopeChannel* GetChannel() const { return FChannel; }
    // A new marker at sample XValue in marker group AMarkerGroupIndex. An index outside the
    // scope's groups raises EListError "Index out of range : " and the index, adding nothing.
    TQVScopeChannelMarker* AddMarkerAt(int32_t AMarkerGroupIndex, int32_t XValue);
    // The same at the channel's newest sample index (its size).
    TQVScopeChannelMarker* AddMarkerAtCurrentPos(int32_t AMarkerGroupIndex);

    QL_CLASS_INFO()

private:
    TQVScopeChannel* FChannel;
};

} // namespace qv
