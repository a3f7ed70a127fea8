#include "qv/platform/qt/QVScopeWidget.h"

namespace qv {

TQVScopeWidget::TQVScopeWidget(QWidget* AParent) : TQVDisplayWidget(std::make_unique<TQVScope>(), AParent)
{}

} // namespace qv
