#pragma once
// A scope in a Qt window: the widget owns its TQVScope.

#include "QVDisplayWidget.h"
#include "qv/display/QVScope.h"

#include <QString>

namespace qv {

class TQVScopeWidget : public TQVDisplayWidget {
    Q_OBJECT
    Q_PROPERTY(QString title READ GetTitleText WRITE SetTitleText)
    Q_PROPERTY(int channelCount READ GetChannelCount WRITE SetChannelCount)
    Q_PROPERTY(int sizeLimit READ GetSizeLimit WRITE SetSizeLimit)
public:
    explicit TQVScopeWidget(QWidget* AParent = nullptr);

    TQVScope& GetScope() const { return static_cast<TQVScope&>(GetDisplay()); }

    // The main title's text.
    QString GetTitleText() const;
    void SetTitleText(const QString& AValue);
    // Channels are added or the last ones deleted to reach the count; a negative count
    // raises std::invalid_argument.
    int GetChannelCount() const;
    void SetChannelCount(int AValue);
    // The scope's SizeLimit (0 keeps every sample); a negative limit raises
    // std::invalid_argument.
    int GetSizeLimit() const;
    void SetSizeLimit(int AValue);
};

} // namespace qv
