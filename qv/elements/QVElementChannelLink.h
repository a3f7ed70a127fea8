#pragma once
// The ties of a measurement element to a channel: a cursor's link marks where the cursor
// crosses the channel, a zone's link recolours the part of the channel inside the zone. A
// link names its channel by pointer and is stored by the channel's index; it lets go when
// the channel goes.

#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/channels/QVDisplayChannel.h"
#include "qv/channels/QVScopePoints.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/decor/QVDisplayLabel.h"
#include "qv/elements/QVChannelLinkData.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayPen.h"
#include "qv/foundation/QVMarkerShapes.h"

#include <memory>
#include <string>

namespace qv {

class TQVDisplayCursor;
class TQVBasicDisplayZone;

class TQVDisplayElementChannelLink : public TQVDisplaySelectableCollectionItem, public IQVChannelLinkEnd {
public:
    explicit TQVDisplayElementChannelLink(TQLCollection* ACollection);
    ~TQVDisplayElementChannelLink() override;

    TQVDisplayChannel* GetChannel() const { return FChannel; }
    void SetChannel(TQVDisplayChannel* AChannel);
    // The channel's index among the display's channels, -1 for none; the stored form of
    // Channel. An index beyond the channels raises std::out_of_range naming it.
    int32_t GetChannelIndex() const;
    void SetChannelIndex(int32_t AValue);
    // The channel's name, or the item's own when it has none.
    std::string GetDisplayName() const override;

    void ChannelGone(TQVDisplayChannel* AChannel) override;

    QL_CLASS_INFO()

protected:
    // The derived link joining and leaving its channel.
    virtual void IntAddLink() {}
    virtual void IntRemoveLink() {}

private:
    TQVDisplayChannel* FChannel = nullptr;
};

// A cursor's mark on a channel.
class TQVDisplayCursorChannelLink : public TQVDisplayElementChannelLink {
public:
    explicit TQVDisplayCursorChannelLink(TQLCollection* ACollection);
    ~TQVDisplayCursorChannelLink() override;

    bool GetUseChannelColor() const { return FUseChannelColor; }
    void SetUseChannelColor(bool AValue) { Set(FUseChannelColor, AValue); }
    // Half the mark's size in pixels; kept at 1000 at most.
    uint32_t GetSize() const { return FSize; }
    void SetSize(uint32_t AValue) { Set(FSize, AValue > 1000u ? 1000u : AValue); }
    TQVDisplayMarkerShape GetShape() const { return FShape; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetShape(TQVDisplayMarkerShape AValue);
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }
    // The text beside the mark (hidden by default): the chart's label template with the
    // crossing's values.
    TQVDisplayLabel* GetChannelLabel() const { return FChannelLabel.get(); }
    void SetChannelLabel(const TQVDisplayLabel* AValue) { FChannelLabel->Assign(AValue); }
    // The cursor that owns the link.
    TQVDisplayCursor* GetCursor() const;
    // Where the cursor's lines cross the channel, for the host.
    TQVDisplayCursorChannelLinkData* GetData() const { return FData.get(); }

    // The mark at the crossing (AX, AY) on screen. The highlight pass keeps the caller's pen
    // and draws no fill. AXValue and AYValue are the crossing's values in data units.
    void Draw(TQLCanvas& ACanvas, bool AHighlightPass, double AXValue, double AYValue, int32_t AX, int32_t AY,
              bool AVertical, const std::string& AText);

    QL_CLASS_INFO()

private:
    bool FUseChannelColor = true;
    uint32_t FSize = 3;
    TQVDisplayMarkerShape FShape = msDot;
    std::unique_ptr<TQVDisplayPen> FPen;
    std::unique_ptr<TQVDisplayBrush> FBrush;
    std::unique_ptr<TQVDisplayLabel> FChannelLabel;
    std::unique_ptr<TQVDisplayCursorChannelLinkData> FData;
};

using TQVDisplayCursorChannelLinks = TQVDisplayCollection<TQVDisplayCursorChannelLink>;

// The point symbols of a channel inside a zone: hidden unless asked for.
class TQVScopeZonePoints : public TQVScopePoints {
public:
    TQVScopeZonePoints(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {});

    QL_CLASS_INFO()
};

// A zone's tie to a channel: inside the zone the channel is drawn again in Highlighting's
// colour while Highlighting is enabled, and its samples there take the link's Points while
// those are visible (the channel keeps the link in its zone list for that).
class TQVDisplayZoneChannelLink : public TQVDisplayElementChannelLink, public IQVChannelZoneLink {
public:
    explicit TQVDisplayZoneChannelLink(TQLCollection* ACollection);
    ~TQVDisplayZoneChannelLink() override;

    TQVDisplayOptionalHighlighting* GetHighlighting() const { return FHighlighting.get(); }
    void SetHighlighting(const TQVDisplayOptionalHighlighting* AValue) { FHighlighting->Assign(AValue); }
    TQVScopeZonePoints* GetPoints() const { return FPoints.get(); }
    void SetPoints(const TQVScopeZonePoints* AValue) { FPoints->Assign(AValue); }
    // The zone that owns the link.
    TQVBasicDisplayZone* GetZone() const;
    // The channel's samples inside the zone, for the host.
    TQVDisplayZoneChannelLinkData* GetData() const { return FData.get(); }

    const TQVScopePoints& GetZonePoints() const override { return *FPoints; }
    bool HoldsSample(double AX, double AY) const override;

    QL_CLASS_INFO()

protected:
    void IntAddLink() override;
    void IntRemoveLink() override;

private:
    // The channel lists the link while its symbols are visible.
    void ChangePointVisible();

    std::unique_ptr<TQVDisplayOptionalHighlighting> FHighlighting;
    std::unique_ptr<TQVScopeZonePoints> FPoints;
    std::unique_ptr<TQVDisplayZoneChannelLinkData> FData;
};

using TQVDisplayZoneChannelLinks = TQVDisplayCollection<TQVDisplayZoneChannelLink>;

} // namespace qv
