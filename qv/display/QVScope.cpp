#include "qv/display/QVScope.h"

#include "qv/channels/QVScopeChannel.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScope::TQVScope()
{
    GetTitle()->SetTextDefault("Scope");
    FChannels = std::make_unique<TQVScopeChannels>(this, GetLock(), this);
    FChannels->Add();
}

TQVScope::~TQVScope()
{
    // Paint and refresh stop before anything is freed.
    BeginDestroy();
    FChannels.reset();
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
    FAllChannelSection.Execute([this] {
        for (TQVScopeChannel* Channel : *FChannels)
            if (Channel->GetHasNewBuffer()) {
                InvalidateRecalc();
                Channel->PopulateDrawBuffers();
            }
    });
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

void TQVScope::InvalidateHistory() { InvalidateRefresh(); }

const TQLClassInfo& TQVScope::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVScope>("TQVScope", &TQVDataDisplay::StaticClassInfo())
                                         .Collection("Channels", &TQVScope::GetChannels)
                                         .Property("SizeLimit", &TQVScope::GetSizeLimit, &TQVScope::SetSizeLimit,
                                                   uint32_t(0))
                                         .Build();
    return Info;
}

} // namespace qv
