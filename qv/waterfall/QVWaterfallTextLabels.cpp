#include "qv/waterfall/QVWaterfallTextLabels.h"

#include "qv/channels/QVHighlightInfo.h"
#include "qv/elements/QVElementDrag.h"
#include "qv/foundation/QLClassBuilder.h"

#include <string>

namespace qv {

void TQVWaterfallTextLabel::BeforeDestruction()
{
    TQVDisplayTextLabel::BeforeDestruction();
    if (TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr) {
        if (Info->FHighlightedItem == this)
            Info->FHighlightedItem = nullptr;
        if (Info->FExtHighlightTextLabel == this)
            Info->FExtHighlightTextLabel = nullptr;
    }
}

const TQLClassInfo& TQVWaterfallTextLabel::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallTextLabel", &TQVDisplayTextLabel::StaticClassInfo(), {});
    return Info;
}

void TQVWaterfallTextLabels::NewItemCreated(TQLCollectionItem* AItem)
{
    TQVOptionalDisplayCollection<TQVWaterfallTextLabel>::NewItemCreated(AItem);
    static_cast<TQVWaterfallTextLabel*>(AItem)->SetName("Label" + std::to_string(GetCount()));
}

void TQVWaterfallTextLabels::Draw(TQLCanvas& ACanvas, const TRect& AClip, bool APrinting)
{
    for (TQVWaterfallTextLabel* Label : *this)
        Label->Draw(ACanvas, AClip, APrinting);
}

TQVWaterfallTextLabel* TQVWaterfallTextLabels::HitTest(int32_t AX, int32_t AY, const TRect& ARect) const
{
    return QVTopElementAt<TQVWaterfallTextLabel>(*this, AX, AY, ARect);
}

const TQLClassInfo& TQVWaterfallTextLabels::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallTextLabels", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
