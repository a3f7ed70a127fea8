#pragma once
// A scope in a Qt window: the widget owns its TQVScope.

#include "QVDisplayWidget.h"
#include "qv/display/QVScope.h"

namespace qv {

class TQVScopeWidget : public TQVDisplayWidget {
    Q_OBJECT
public:
    explicit TQVScopeWidget(QWidget* AParent = nullptr);

    TQVScope& GetScope() const { return static_cast<TQVScope&>(GetDisplay()); }
};

} // namespace qv
