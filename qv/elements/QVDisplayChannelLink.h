#pragma once
// A channel link fills the area between two channels of the chart: as one polygon running
// along the first channel and back along the second (clmZone), or as bars joining the points
// of the two channels that stand at the same place in their plotted sequences (clmBar). It is
// drawn under the channels. The ends are stored by the channels' indexes; when a channel at
// an end goes, the end moves to a neighbouring channel rather than stay empty.

#include "qv/channels/QVDisplayChannel.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVScopeElements.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QVDisplayBrush.h"

#include <memory>
#include <vector>

namespace qv {

enum TQVScopeChannelLinkMode : uint8_t { clmZone, clmBar };

class TQVDisplayChannelLink : public TQVOptionalDisplayCollectionItem, public IQVChannelLinkEnd {
public:
    explicit TQVDisplayChannelLink(TQLCollection* ACollection);
    ~TQVDisplayChannelLink() override;

    TQVDisplayChannel* GetFirstChannel() const { return FFirstChannel; }
    void SetFirstChannel(TQVDisplayChannel* AChannel);
    TQVDisplayChannel* GetSecondChannel() const { return FSecondChannel; }
    void SetSecondChannel(TQVDisplayChannel* AChannel);
    // The stored form of the ends: indexes among the chart's channels, -1 for none. An index
    // beyond the channels raises std::out_of_range naming it.
    int32_t GetFirstChannelIndex() const;
    void SetFirstChannelIndex(int32_t AValue);
    int32_t GetSecondChannelIndex() const;
    void SetSecondChannelIndex(int32_t AValue);
    TQVDisplayBrush* GetBrush() const { return FBrush.get(); }
    void SetBrush(const TQVDisplayBrush* AValue) { FBrush->Assign(AValue); }
    // The bars' width in clmBar, pixels; kept in 1..1000.
    int32_t GetWidth() const { return FWidth; }
    void SetWidth(int32_t AValue);
    TQVScopeChannelLinkMode GetChannelLinkMode() const { return FChannelLinkMode; }
    // A value outside the enumeration raises std::invalid_argument naming it.
    void SetChannelLinkMode(TQVScopeChannelLinkMode AValue);
    bool GetIsDynamic() const { return FIsDynamic; }

    // Both ends set and shown, and the link itself visible.
    bool IsVisible() const override;
    // Fills between the two channels' plotted points of this frame, inside ARect (the data
    // view's draw rectangle). Nothing with an end missing or hidden, or one channel at both.
    void Draw(TQLCanvas& ACanvas, const TRect& ARect, bool Printing);
    // The area is not tested: while both ends are shown, any point of the view hits the link.
    bool HitTest(int32_t X, int32_t Y, const TRect& DispRect) const;
    // The swatch: a patch of the brush (narrow for bars) between lines in the two channels'
    // colours.
    bool CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY) override;
    TAlphaColor GetLegendPenColor() const override { return FBrush->GetColor(); }
    bool GetHighlighted() const override;
    void SetHighlighted(bool AValue) override;

    // AChannel goes: each end holding it moves to the next channel after it (round to the
    // first), never to AChannel itself nor to the other end; with none left it stays empty.
    void RemoveChannel(TQVDisplayChannel* AChannel);
    // Ends stored by index and not yet resolved take their channels.
    void PopulateLink();
    void ChannelGone(TQVDisplayChannel* AChannel) override { RemoveChannel(AChannel); }

    QL_CLASS_INFO()

protected:
    void BeforeDestruction() override;

private:
    // The chart's channels; null outside a chart.
    TQLCollection* Channels() const;
    void SetEnd(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther, TQVDisplayChannel* AChannel);
    void SetEndIndex(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther, int32_t AValue);
    void MoveEnd(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther, TQVDisplayChannel* AChannel);
    // The plotted points of AChannel in this frame, appended to FPoints (reversed when
    // AReverse); returns how many.
    uint32_t Collect(TQVDisplayChannel* AChannel, TQLCanvas& ACanvas, const TRect& ARect, bool Printing, bool AReverse);
    bool DrawnHighlighted(bool APrinting) const;

    TQVDisplayChannel* FFirstChannel = nullptr;
    TQVDisplayChannel* FSecondChannel = nullptr;
    // The ends' indexes as last known: the stored form before loading resolves them, and the
    // place a removed channel held.
    int32_t FFirstChannelIndex = -1;
    int32_t FSecondChannelIndex = -1;
    std::unique_ptr<TQVDisplayBrush> FBrush;
    int32_t FWidth = 5;
    TQVScopeChannelLinkMode FChannelLinkMode = clmZone;
    bool FIsDynamic = false;
    std::vector<TPoint> FPoints;
    uint32_t FBuffer1Count = 0;
    uint32_t FBuffer2Count = 0;
};

// The channel links of a chart, drawn under the channels in index order. New links are named
// "ChannelLink" with the count of links.
class TQVDisplayChannelLinks : public TQVOptionalDisplayCollection<TQVDisplayChannelLink>,
                               public IQVScopeElementFamily {
public:
    using TQVOptionalDisplayCollection<TQVDisplayChannelLink>::TQVOptionalDisplayCollection;

    // A new link between two channels.
    TQVDisplayChannelLink* Add(TQVDisplayChannel* AFirst, TQVDisplayChannel* ASecond);
    using TQVOptionalDisplayCollection<TQVDisplayChannelLink>::Add;
    void NewItemCreated(TQLCollectionItem* AItem) override;
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;
    // Every link repairs its ends from their stored indexes.
    void PopulateLinks();

    QL_CLASS_INFO()
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVScopeChannelLinkMode, "clmZone", "clmBar")
