#include "qv/platform/qt/QVScopeWidget.h"

#include "qv/channels/QVScopeChannel.h"
#include "qv/decor/QVDisplayTitle.h"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <string>

namespace qv {

TQVScopeWidget::TQVScopeWidget(QWidget* AParent) : TQVDisplayWidget(std::make_unique<TQVScope>(), AParent)
{
    HostTimer(GetScope().GetLegend()->GetRepeatTimer());
}

QString TQVScopeWidget::GetTitleText() const
{
    return QString::fromStdString(GetScope().GetTitle()->GetText());
}

void TQVScopeWidget::SetTitleText(const QString& AValue)
{
    GetScope().GetTitle()->SetText(AValue.toStdString());
}

int TQVScopeWidget::GetChannelCount() const
{
    return GetScope().GetChannels()->GetCount();
}

void TQVScopeWidget::SetChannelCount(int AValue)
{
    if (AValue < 0)
        throw std::invalid_argument("TQVScopeWidget::SetChannelCount: invalid count " + std::to_string(AValue));
    TQVScopeChannels* Channels = GetScope().GetChannels();
    while (Channels->GetCount() < AValue)
        Channels->Add();
    while (Channels->GetCount() > AValue)
        Channels->Delete(Channels->GetCount() - 1);
}

int TQVScopeWidget::GetSizeLimit() const
{
    return static_cast<int>(std::min<uint32_t>(GetScope().GetSizeLimit(), INT_MAX));
}

void TQVScopeWidget::SetSizeLimit(int AValue)
{
    if (AValue < 0)
        throw std::invalid_argument("TQVScopeWidget::SetSizeLimit: invalid limit " + std::to_string(AValue));
    GetScope().SetSizeLimit(static_cast<uint32_t>(AValue));
}

} // namespace qv
