#pragma once
// The scope as its channels and the elements over its plot see it: the channels, the size
// limit, the section that guards the hand-over of all channels, the input pins, and the
// synchronisation of channels fed through pins. TQVScope implements it; the display-wide
// services (invalidation, locks, axes) come through TQVDisplayOwner.

#include "qv/foundation/QWCriticalSection.h"
#include "qv/pins/QWPins.h"

#include <cstdint>

namespace qv {

class TQVScopeChannel;
class TQVScopeChannels;
class TQVScopeDataView;
class TQLCollection;

class TQVScopeOwner {
public:
    virtual ~TQVScopeOwner() = default;

    virtual TQVScopeChannels* GetChannels() const = 0;
    // The longest kept channel buffer; 0 keeps everything. Read on producer threads.
    virtual uint32_t GetSizeLimit() const = 0;
    // Guards the hand-over of all channels; taken before any channel's own sections.
    virtual TQWCriticalSection& GetAllChannelSection() = 0;
    // The channels' Y and X input pins, each under its channel's name.
    virtual TQWPinList& GetInputPins() = 0;
    virtual TQWPinList& GetXInputPins() = 0;
    // Each channel takes the connection state of its pins.
    virtual void CollectActiveChannels() = 0;
    // Whether a block of ASize samples at ASampleRate on AChannel may go on.
    virtual bool ProcessEnoughChannelData(TQVScopeChannel* AChannel, uint32_t ASize, double ASampleRate) = 0;
    // Set by a channel around its user draw event: invalidation requests are ignored meanwhile.
    virtual void SetInDraw(bool AValue) = 0;
    // The plot area.
    virtual TQVScopeDataView* GetScopeDataView() const = 0;
    // The scope's marker groups, whose items are TQVDisplayMarkerGroup; null without them.
    virtual TQLCollection* GetMarkerGroupCollection() const { return nullptr; }
};

} // namespace qv
