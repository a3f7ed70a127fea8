#include "qv/channels/QVDisplayChannel.h"

#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

TQVDisplayChannel::TQVDisplayChannel(TQLCollection* ACollection)
    : TQVOptionalDisplayCollectionItem(ACollection), FDrawGapsBuffer(std::make_shared<TQVIntegerBuffer>()),
      FBlockRecycler(std::make_shared<TQVChannelBuffer::TRecycler>()),
      FXDrawDataBuffer(std::make_shared<TQVChannelBuffer>()), FYDrawDataBuffer(std::make_shared<TQVChannelBuffer>()),
      FPoints(std::make_unique<TQVScopePoints>(this, GetLock())),
      FDownsampledGapsBuffer(std::make_shared<TQVIntegerBuffer>()),
      FXScreenDataBuffer(std::make_shared<TQVRealBuffer>()), FYScreenDataBuffer(std::make_shared<TQVRealBuffer>()),
      FScaledIntDrawBufferX(std::make_shared<TQVIntegerBuffer>()),
      FScaledIntDrawBufferY(std::make_shared<TQVIntegerBuffer>()),
      FScaledRealDrawBufferX(std::make_shared<TQVRealBuffer>()), FDownsampledIntDrawBufferX(FScaledIntDrawBufferX),
      FDownsampledIntDrawBufferY(FScaledIntDrawBufferY)
{
    FXDataBuffer.SetRecycler(FBlockRecycler);
    FYDataBuffer.SetRecycler(FBlockRecycler);
    // Y's extremes are kept as samples arrive and travel with them to the draw stage, where
    // downsampling and the Y axis' range read them instead of the samples.
    FYDataBuffer.SetKeepExtremes(true);
}

TQVDisplayChannel::~TQVDisplayChannel()
{
    ForgetHighlights();
    // Each link removes itself from the list as it lets go.
    while (!FElementLinks.empty())
        FElementLinks.back()->ChannelGone(this);
}

void TQVDisplayChannel::AddElementLink(IQVChannelLinkEnd* ALink)
{
    if (ALink && std::find(FElementLinks.begin(), FElementLinks.end(), ALink) == FElementLinks.end())
        FElementLinks.push_back(ALink);
}

void TQVDisplayChannel::RemoveElementLink(IQVChannelLinkEnd* ALink)
{
    std::erase(FElementLinks, ALink);
}

void TQVDisplayChannel::AddZoneLink(IQVChannelZoneLink* ALink)
{
    if (ALink && std::find(FHighlightZonesList.begin(), FHighlightZonesList.end(), ALink) == FHighlightZonesList.end())
        FHighlightZonesList.push_back(ALink);
}

void TQVDisplayChannel::RemoveZoneLink(IQVChannelZoneLink* ALink)
{
    std::erase(FHighlightZonesList, ALink);
}

void TQVDisplayChannel::SetColor(TAlphaColor AValue)
{
    GetBasicLock().Setter(FColor, AValue, nullptr, false);
}

void TQVDisplayChannel::SetColorDefault(TAlphaColor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FColor == FColorDefault;
    FColorDefault = AValue;
    if (Follow)
        SetColor(AValue);
}

void TQVDisplayChannel::SetWidth(int32_t AValue)
{
    GetBasicLock().SetterMinMax(FWidth, AValue, 1, 2000);
}

void TQVDisplayChannel::SetChannelMode(TQVScopeChannelMode AValue)
{
    if (AValue > cmPoint)
        throw std::invalid_argument("TQVDisplayChannel: invalid channel mode " + std::to_string(int(AValue)));
    Set(FChannelMode, AValue);
}

void TQVDisplayChannel::SetStrokeDash(TQVStrokeDash AValue)
{
    if (AValue > sdDashDotDot)
        throw std::invalid_argument("TQVDisplayChannel: invalid stroke dash " + std::to_string(int(AValue)));
    Set(FStrokeDash, AValue);
}

namespace {
TRect DataViewRect(const TQVDisplayOwner* ADisplay)
{
    const TQVDisplayComponent* View = ADisplay ? ADisplay->GetDataView() : nullptr;
    return View ? View->GetDrawRect() : TRect{};
}
} // namespace

int32_t TQVDisplayChannel::GetDisplayOffset() const
{
    const TRect R = DataViewRect(GetDisplay());
    return GetDisplay() && GetDisplay()->GetIsVertical() ? R.Top : R.Left;
}

int32_t TQVDisplayChannel::GetDisplayWidth() const
{
    const TRect R = DataViewRect(GetDisplay());
    const int64_t Size =
        GetDisplay() && GetDisplay()->GetIsVertical() ? int64_t(R.Bottom) - R.Top : int64_t(R.Right) - R.Left;
    return static_cast<int32_t>(Size < 0 ? -Size : Size);
}

namespace {

void CheckAxisIndex(const char* AName, int32_t AValue)
{
    if (AValue < 0)
        throw std::out_of_range(std::string("TQVDisplayChannel.") + AName + ": axis index " + std::to_string(AValue) +
                                " is negative");
}

} // namespace

void TQVDisplayChannel::SetXAxisIndex(int32_t AValue)
{
    CheckAxisIndex("XAxisIndex", AValue);
    Set(FXAxisIndex, AValue, [this] { AxesChanged(); });
}

void TQVDisplayChannel::SetYAxisIndex(int32_t AValue)
{
    CheckAxisIndex("YAxisIndex", AValue);
    Set(FYAxisIndex, AValue, [this] { AxesChanged(); });
}

TQVBasicScopeXAxis* TQVDisplayChannel::GetXAxis() const
{
    const TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetXAxisByIndex(FXAxisIndex);
    return dynamic_cast<TQVBasicScopeXAxis*>(Axis ? Axis : Display->GetXAxis());
}

TQVBasicScopeYAxis* TQVDisplayChannel::GetYAxis() const
{
    const TQVDisplayOwner* Display = GetDisplay();
    if (!Display)
        return nullptr;
    TQVDisplayAxis* Axis = Display->GetYAxisByIndex(FYAxisIndex);
    return dynamic_cast<TQVBasicScopeYAxis*>(Axis ? Axis : Display->GetYAxis());
}

void TQVDisplayChannel::SetFrequencyDomain(bool AValue)
{
    Set(FFrequencyDomain, AValue, [this] { AxesChanged(); });
}

void TQVDisplayChannel::SetIntensityDomain(bool AValue)
{
    Set(FIntensityDomain, AValue, [this] { AxesChanged(); });
}

void TQVDisplayChannel::SetInAxisDomain(bool AValue)
{
    Set(FInAxisDomain, AValue, [this] { AxesChanged(); });
}

void TQVDisplayChannel::VisibleChanged()
{
    TQVOptionalDisplayCollectionItem::VisibleChanged();
    AxesChanged();
}

void TQVDisplayChannel::BeforeDestruction()
{
    TQVOptionalDisplayCollectionItem::BeforeDestruction();
    AxesChanged();
}

void TQVDisplayChannel::AxesChanged()
{
    // A display on its way out has nothing left to recompute.
    if (GetLock()->IsDestroying())
        return;
    if (TQVDisplayOwner* Display = GetDisplay())
        Display->InvalidateChannelAxes();
}

const TQLClassInfo& TQVDisplayChannel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayChannel>("TQVDisplayChannel", &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Color("Color", &TQVDisplayChannel::GetColor, &TQVDisplayChannel::SetColor,
                   &TQVDisplayChannel::GetColorDefault)
            .Property("Width", &TQVDisplayChannel::GetWidth, &TQVDisplayChannel::SetWidth, 1)
            .Object("Points", &TQVDisplayChannel::GetPoints)
            .Property("ChannelMode", &TQVDisplayChannel::GetChannelMode, &TQVDisplayChannel::SetChannelMode, cmLine)
            .Property("MouseCursor", &TQVDisplayChannel::GetMouseCursor, &TQVDisplayChannel::SetMouseCursor, TCursor(0))
            .Property("StrokeDash", &TQVDisplayChannel::GetStrokeDash, &TQVDisplayChannel::SetStrokeDash, sdSolid)
            .Property("XAxisIndex", &TQVDisplayChannel::GetXAxisIndex, &TQVDisplayChannel::SetXAxisIndex, 0)
            .Property("YAxisIndex", &TQVDisplayChannel::GetYAxisIndex, &TQVDisplayChannel::SetYAxisIndex, 0)
            .Build();
    return Info;
}

} // namespace qv
