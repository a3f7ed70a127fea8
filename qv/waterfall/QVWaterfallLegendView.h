#pragma once
// The waterfall's legend: marker groups, cursors, cursor links, labels, then the host's
// custom groups. The waterfall binds each group to the collection it lists.

#include "qv/elements/QVLegendView.h"

namespace qv {

class TQVWaterfallLegendView : public TQVLegendView {
public:
    explicit TQVWaterfallLegendView(TQVDisplayOwner* ADisplay) : TQVLegendView(ADisplay, QVWaterfallLegendOrder) {}

    QL_CLASS_INFO()
};

} // namespace qv
