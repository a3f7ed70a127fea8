#include "qv/display/QVScope.h"

#include "qv/channels/QVScopeChannel.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScope::TQVScope()
{
    GetTitle()->SetTextDefault("Scope");
    FChannels = std::make_unique<TQVScopeChannels>(this, GetLock(), this);
    // The views dock in the order they are made: the axes before the data view.
    FXAxis = std::make_unique<TQVScopeXAxis>(this);
    FYAxis = std::make_unique<TQVScopeYAxis>(this);
    FChannels->Add();
}

TQVScope::~TQVScope()
{
    // Paint and refresh stop before anything is freed.
    BeginDestroy();
    FChannels.reset();
    FYAxis.reset();
    FXAxis.reset();
}

void TQVScope::SetVertical(bool AValue)
{
    Set(FVertical, AValue, [this] {
        SetNeedsRecalc();
        InvalidateRefresh();
    });
}

void TQVScope::PopulateMaxSample()
{
    for (TQVDisplayAxis* Axis : GetXAxes())
        if (auto* XAxis = dynamic_cast<TQVBasicDisplayXAxis*>(Axis))
            XAxis->PopulateMaxSample();
}

void TQVScope::Loaded()
{
    TQVDataChart::Loaded();
    TQVAxisValue* Min = FYAxis->GetMin();
    if (Min->GetValue() == FYAxis->GetMax()->GetValue())
        Min->SetValue(0.0 - Min->GetValue());
}

void TQVScope::SetChannels(const TQVScopeChannels* AValue) { FChannels->Assign(AValue); }

void TQVScope::SetSizeLimit(uint32_t AValue)
{
    Set(FSizeLimit, AValue, [this] {
        // Cut every channel to its newest samples; gaps stay as they are.
        for (TQVScopeChannel* Channel : *FChannels)
            Channel->ApplySizeLimit(GetSizeLimit());
    });
}

bool TQVScope::PopulateDrawBuffers()
{
    if (GetHold())
        return false;
    bool Changed = false;
    FAllChannelSection.Execute([this, &Changed] {
        for (TQVScopeChannel* Channel : *FChannels)
            if (Channel->GetHasNewBuffer()) {
                Changed = true;
                InvalidateRecalc();
                Channel->PopulateDrawBuffers();
            }
    });
    PopulateMaxSample();
    if (Changed) {
        for (TQVDisplayAxis* Axis : GetAxes())
            Axis->InvalidateMinMaxCache(true);
        for (TQVDisplayAxis* Axis : GetYAxes())
            if (auto* YAxis = dynamic_cast<TQVBasicScopeYAxis*>(Axis))
                YAxis->PopulateScaleHistory();
    }
    return GetNeedsRecalc();
}

void TQVScope::InvalidateRecalc()
{
    if (!GetInDraw())
        TQVDataDisplay::InvalidateRecalc();
}

void TQVScope::Invalidate()
{
    if (!GetInDraw())
        TQVDataDisplay::Invalidate();
}

const TQLClassInfo& TQVScope::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVScope>("TQVScope", &TQVDataChart::StaticClassInfo())
                                         .Property("Vertical", &TQVScope::GetVertical, &TQVScope::SetVertical, false)
                                         .Collection("Channels", &TQVScope::GetChannels)
                                         .Property("SizeLimit", &TQVScope::GetSizeLimit, &TQVScope::SetSizeLimit,
                                                   uint32_t(0))
                                         .Build();
    return Info;
}

} // namespace qv
