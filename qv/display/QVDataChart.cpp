#include "qv/display/QVDataChart.h"
#include "qv/component/QVLabelTemplate.h"

#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDataChart::TQVDataChart() : FHighlighting(std::make_unique<TQVDataDisplayHighlighting>(this))
{}

TQVDataChart::~TQVDataChart() = default;

TQVHighlightInfo* TQVDataChart::GetHighlightInfo() const
{
    TQVScopeDataView* View = TQVScopeDataView::Of(this);
    return View ? &View->GetHighlightInfo() : nullptr;
}

int32_t TQVDataChart::GetXAxisIndexOf(const TQVDisplayAxis* AAxis) const
{
    if (!AAxis || !FXAxis)
        return -1;
    if (AAxis == FXAxis.get())
        return 0;
    const TQVScopeXAxesCollection* Additional = FXAxis->GetAdditionalAxes();
    for (int32_t I = 0; I < Additional->GetCount(); ++I)
        if (Additional->GetNoLockItem(I)->GetAxis() == AAxis)
            return I + 1;
    return -1;
}

int32_t TQVDataChart::GetYAxisIndexOf(const TQVDisplayAxis* AAxis) const
{
    if (!AAxis || !FYAxis)
        return -1;
    if (AAxis == FYAxis.get())
        return 0;
    const TQVScopeYAxesCollection* Additional = FYAxis->GetAdditionalAxes();
    for (int32_t I = 0; I < Additional->GetCount(); ++I)
        if (Additional->GetNoLockItem(I)->GetAxis() == AAxis)
            return I + 1;
    return -1;
}

int32_t TQVDataChart::GetAxisIndex(const TQVDisplayAxis* AAxis) const
{
    const int32_t XIndex = GetXAxisIndexOf(AAxis);
    if (XIndex >= 0)
        return XIndex;
    const int32_t YIndex = GetYAxisIndexOf(AAxis);
    if (YIndex < 0 || !FXAxis)
        return -1;
    return FXAxis->GetAdditionalAxes()->GetCount() + 1 + YIndex;
}

void TQVDataChart::DoAxisClick(int32_t AIndex)
{
    TQVDisplayAxis* Axis = nullptr;
    if (FXAxis) {
        const int32_t XCount = FXAxis->GetAdditionalAxes()->GetCount();
        Axis = AIndex <= XCount ? static_cast<TQVDisplayAxis*>(GetXAxisByIndex(AIndex))
                                : static_cast<TQVDisplayAxis*>(GetYAxisByIndex(AIndex - XCount - 1));
    }
    ShowSetupDialogFor(Axis);
}

TQVBasicScopeXAxis* TQVDataChart::GetXAxisByIndex(int32_t AIndex) const
{
    if (!FXAxis || AIndex < 0)
        return nullptr;
    if (AIndex == 0)
        return FXAxis.get();
    const TQVScopeXAxesCollection* Additional = FXAxis->GetAdditionalAxes();
    if (AIndex > Additional->GetCount())
        return nullptr;
    return Additional->GetNoLockItem(AIndex - 1)->GetAxis();
}

TQVBasicScopeYAxis* TQVDataChart::GetYAxisByIndex(int32_t AIndex) const
{
    if (!FYAxis || AIndex < 0)
        return nullptr;
    if (AIndex == 0)
        return FYAxis.get();
    const TQVScopeYAxesCollection* Additional = FYAxis->GetAdditionalAxes();
    if (AIndex > Additional->GetCount())
        return nullptr;
    return Additional->GetNoLockItem(AIndex - 1)->GetAxis();
}

void TQVDataChart::InvalidateHistory()
{
    if (FYAxis) {
        FYAxis->InvalidateHistory();
        for (TQVScopeYAxesCollectionItem* Item : *FYAxis->GetAdditionalAxes())
            Item->GetAxis()->InvalidateHistory();
    }
    InvalidateRefresh();
}

void TQVDataChart::InvalidateChannelAxes()
{
    for (TQVDisplayAxis* Axis : GetXAxes()) {
        if (auto* XAxis = dynamic_cast<TQVBasicScopeXAxis*>(Axis))
            XAxis->InvalidateFreq();
        Axis->InvalidateMinMaxCache(true);
    }
    for (TQVDisplayAxis* Axis : GetYAxes())
        Axis->InvalidateMinMaxCache(true);
    InvalidateRecalc();
}

std::vector<IQVAxisChannel*> TQVDataChart::GetAxisChannels() const
{
    std::vector<IQVAxisChannel*> Result;
    if (const TQVScopeChannels* Channels = GetChannels())
        for (TQVScopeChannel* Channel : *Channels)
            Result.push_back(Channel);
    return Result;
}

const TQLClassInfo& TQVDataChart::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDataChart>("TQVDataChart", &TQVDataDisplay::StaticClassInfo())
                                         .Object("XAxis", &TQVDataChart::GetXAxis)
                                         .Object("YAxis", &TQVDataChart::GetYAxis)
                                         .Object("Highlighting", &TQVDataChart::GetHighlighting)
                                         .Build();
    return Info;
}

std::string TQVDataChart::GetFormatLabelText(const TPoint& /*APoint*/, double AX, double AY,
                                             const std::string& ALabelText, const std::string& ADefaultText) const
{
    return QVFormatLabelText(
        ALabelText, ADefaultText, [&] { return FXAxis->GetTickText(AX); }, [&] { return FYAxis->GetTickText(AY); });
}

} // namespace qv
