#include "qv/waterfall/QVWaterfallLegendView.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVWaterfallLegendView::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVWaterfallLegendView>("TQVWaterfallLegendView", &TQVLegendView::StaticClassInfo()).Build();
    return Info;
}

} // namespace qv
