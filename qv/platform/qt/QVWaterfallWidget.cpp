#include "qv/platform/qt/QVWaterfallWidget.h"

namespace qv {

TQVWaterfallWidget::TQVWaterfallWidget(QWidget* AParent) : TQVDisplayWidget(std::make_unique<TQVWaterfall>(), AParent)
{}

} // namespace qv
