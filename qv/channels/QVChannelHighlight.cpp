// TQVDisplayChannel: how a channel is lit from the legend and under the mouse.
#include "qv/channels/QVDisplayChannel.h"

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/component/QVDisplayOwner.h"

namespace qv {

namespace {

// The channels' highlighting settings of a chart; null on a display without them.
const TQVChannelItemHighlighting* ChannelSettings(const TQVDisplayOwner* ADisplay)
{
    const auto* Highlighting = dynamic_cast<const TQVDataDisplayHighlighting*>(ADisplay->GetHighlighting());
    return Highlighting ? Highlighting->GetChannels() : nullptr;
}

} // namespace

bool TQVDisplayChannel::GetHighlighted() const
{
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = ChannelSettings(GetDisplay());
    if (!View || !Settings)
        return false;
    return QVGetItemHighlighted<TQVDisplayChannel>(this, View->GetHighlightInfo().FHighlightedItem,
                                                   View->GetExtHighlightChannel(), *Settings);
}

void TQVDisplayChannel::SetHighlighted(bool AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = ChannelSettings(GetDisplay());
    if (!View || !Settings)
        return;
    TQVDisplayChannel* Ext = View->GetExtHighlightChannel();
    if (QVSetItemHighlighted(Ext, this, AValue, *Settings)) {
        View->SetExtHighlightChannel(Ext);
        View->InvalidateView();
    }
}

bool TQVDisplayChannel::GetDrawnHighlighted(bool APrinting) const
{
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = ChannelSettings(GetDisplay());
    if (!View || !Settings)
        return false;
    return QVIsItemDrawnHighlighted<TQVDisplayChannel>(this, View->GetHighlightInfo().FHighlightedItem,
                                                       View->GetExtHighlightChannel(), *Settings, APrinting);
}

TAlphaColor TQVDisplayChannel::GetHighlightColor() const
{
    const TQVChannelItemHighlighting* Settings = ChannelSettings(GetDisplay());
    return Settings ? Settings->GetColor() : FColor;
}

void TQVScopeChannel::DrawHitPoint(TQLCanvas& ACanvas)
{
    ACanvas.SetPenStyle(psSolid);
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVDisplayHighlighting* Highlighting = GetDisplay()->GetHighlighting();
    if (!View || !Highlighting)
        return;
    const TQLPersistent* Item = View->GetHighlightInfo().FHighlightedItem;
    if (!Item)
        return;
    const TQLPersistent* Self = this;
    if (Item != Self && View->GetHighlightedChannel() != Self)
        return;
    DrawHitPoint(ACanvas, View->GetHighlightedChannelPoint(), *Highlighting->GetMouseHitPoint());
}

void TQVDisplayChannel::ForgetHighlights()
{
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay()))
        View->ForgetItem(this);
}

} // namespace qv
