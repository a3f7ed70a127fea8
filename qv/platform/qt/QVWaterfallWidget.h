#pragma once
// A waterfall in a Qt window: the widget owns its TQVWaterfall.

#include "QVDisplayWidget.h"
#include "qv/display/QVWaterfall.h"

namespace qv {

class TQVWaterfallWidget : public TQVDisplayWidget {
    Q_OBJECT
public:
    explicit TQVWaterfallWidget(QWidget* AParent = nullptr);

    TQVWaterfall& GetWaterfall() const { return static_cast<TQVWaterfall&>(GetDisplay()); }
};

} // namespace qv
