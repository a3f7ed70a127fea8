#include "qv/elements/QVElementChannelLink.h"

#include "qv/axes/QVScopeXAxis.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/elements/QVDisplayCursor.h"
#include "qv/elements/QVDisplayZone.h"
#include "qv/elements/QVElementsOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <stdexcept>

namespace qv {

namespace {
TQVScopeChannels* ChannelsOf(const TQVDisplayOwner* ADisplay)
{
    const auto* Scope = dynamic_cast<const TQVScopeOwner*>(ADisplay);
    return Scope ? Scope->GetChannels() : nullptr;
}
} // namespace

// ---- TQVDisplayElementChannelLink ----

TQVDisplayElementChannelLink::TQVDisplayElementChannelLink(TQLCollection* ACollection)
    : TQVDisplaySelectableCollectionItem(ACollection)
{}

TQVDisplayElementChannelLink::~TQVDisplayElementChannelLink()
{
    if (FChannel)
        FChannel->RemoveElementLink(this);
}

void TQVDisplayElementChannelLink::SetChannel(TQVDisplayChannel* AChannel)
{
    auto Guard = GetLock()->AcquireWrite();
    if (AChannel == FChannel)
        return;
    if (FChannel) {
        FChannel->RemoveElementLink(this);
        IntRemoveLink();
    }
    FChannel = AChannel;
    if (FChannel) {
        FChannel->AddElementLink(this);
        IntAddLink();
    }
    if (TQVDisplayOwner* Display = GetDisplay())
        Display->InvalidateRefresh();
}

int32_t TQVDisplayElementChannelLink::GetChannelIndex() const
{
    return FChannel ? FChannel->GetIndex() : -1;
}

void TQVDisplayElementChannelLink::SetChannelIndex(int32_t AValue)
{
    TQVScopeChannels* Channels = ChannelsOf(GetDisplay());
    if (AValue < -1 || AValue >= (Channels ? Channels->GetCount() : 0))
        throw std::out_of_range("TQVDisplayElementChannelLink.ChannelIndex: no channel " + std::to_string(AValue));
    SetChannel(AValue < 0 ? nullptr : Channels->GetItem(AValue));
}

std::string TQVDisplayElementChannelLink::GetDisplayName() const
{
    return FChannel ? FChannel->GetDisplayName() : TQVDisplaySelectableCollectionItem::GetDisplayName();
}

void TQVDisplayElementChannelLink::ChannelGone(TQVDisplayChannel* AChannel)
{
    if (AChannel != FChannel)
        return;
    AChannel->RemoveElementLink(this);
    IntRemoveLink();
    FChannel = nullptr;
}

const TQLClassInfo& TQVDisplayElementChannelLink::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayElementChannelLink>("TQVDisplayElementChannelLink",
                                                      &TQVDisplaySelectableCollectionItem::StaticClassInfo())
            .Property("ChannelIndex", &TQVDisplayElementChannelLink::GetChannelIndex,
                      &TQVDisplayElementChannelLink::SetChannelIndex, -1)
            .Build();
    return Info;
}

// ---- TQVDisplayCursorChannelLink ----

TQVDisplayCursorChannelLink::TQVDisplayCursorChannelLink(TQLCollection* ACollection)
    : TQVDisplayElementChannelLink(ACollection), FPen(std::make_unique<TQVDisplayPen>(
                                                     this, GetLock(), [this] { NotifyProp(); }, 0xFFFFFFFF, 1)),
      FBrush(std::make_unique<TQVDisplayBrush>(
          this, GetLock(), [this] { NotifyProp(); }, 0xFFFFFFFF, bkNone)),
      FChannelLabel(std::make_unique<TQVDisplayLabel>(
          this, GetLock(), [this] { NotifyProp(); }, QVDefaultLabelFont(), false)),
      FData(std::make_unique<TQVDisplayCursorChannelLinkData>(this))
{}

TQVDisplayCursorChannelLink::~TQVDisplayCursorChannelLink() = default;

void TQVDisplayCursorChannelLink::SetShape(TQVDisplayMarkerShape AValue)
{
    if (AValue > msVertLine)
        throw std::invalid_argument("TQVDisplayCursorChannelLink: invalid shape " + std::to_string(int(AValue)));
    Set(FShape, AValue);
}

TQVDisplayCursor* TQVDisplayCursorChannelLink::GetCursor() const
{
    return GetCollection() ? dynamic_cast<TQVDisplayCursor*>(GetCollection()->IntGetOwner()) : nullptr;
}

void TQVDisplayCursorChannelLink::Draw(TQLCanvas& ACanvas, bool AHighlightPass, double AXValue, double AYValue,
                                       int32_t AX, int32_t AY, bool AVertical, const std::string& AText)
{
    if (!AHighlightPass) {
        ACanvas.ApplyPen(*FPen);
        ACanvas.ApplyBrush(*FBrush);
        if (FUseChannelColor && GetChannel()) {
            ACanvas.GetPen().SetColor(GetChannel()->GetColor());
            ACanvas.GetBrush().SetColor(GetChannel()->GetColor());
        }
    } else {
        ACanvas.GetBrush().SetStyle(bsClear);
    }
    QVDisplayMarkerDrawSize(ACanvas, AX, AY, FShape, int32_t(FSize), 0, AVertical);
    if (!FChannelLabel->GetVisible())
        return;
    const TQVElementsOwner* Owner = TQVElementsOwner::Of(GetDisplay());
    const TQVDisplayChannel* Channel = GetChannel();
    const TQVDisplayAxis* XAxis = Channel ? Channel->GetXAxis() : nullptr;
    if (!Owner)
        return;
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.ApplyFont(*FChannelLabel->GetFont());
    const int32_t H = ACanvas.TextHeight("Xg");
    const double X = XAxis ? XAxis->DataToScaleTick(AXValue) : AXValue;
    ACanvas.TextOut(AX + 4, AY - H,
                    Owner->GetFormatLabelText(TPoint{AX, AY}, X, AYValue, FChannelLabel->GetText(), AText));
}

const TQLClassInfo& TQVDisplayCursorChannelLink::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayCursorChannelLink>("TQVDisplayCursorChannelLink",
                                                     &TQVDisplayElementChannelLink::StaticClassInfo())
            .Property("UseChannelColor", &TQVDisplayCursorChannelLink::GetUseChannelColor,
                      &TQVDisplayCursorChannelLink::SetUseChannelColor, true)
            .Property("Size", &TQVDisplayCursorChannelLink::GetSize, &TQVDisplayCursorChannelLink::SetSize, 3u)
            .Property("Shape", &TQVDisplayCursorChannelLink::GetShape, &TQVDisplayCursorChannelLink::SetShape, msDot)
            .Object("Pen", &TQVDisplayCursorChannelLink::GetPen)
            .Object("Brush", &TQVDisplayCursorChannelLink::GetBrush)
            .Object("ChannelLabel", &TQVDisplayCursorChannelLink::GetChannelLabel)
            .Build();
    return Info;
}

// ---- Zone links ----

TQVScopeZonePoints::TQVScopeZonePoints(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQVScopePoints(AOwner, std::move(ALock), std::move(ANotify))
{}

const TQLClassInfo& TQVScopeZonePoints::StaticClassInfo()
{
    // Visible false is also the base's default, so the stored form is the base's.
    static const TQLClassInfo Info("TQVScopeZonePoints", &TQVScopePoints::StaticClassInfo(), {});
    return Info;
}

TQVDisplayZoneChannelLink::TQVDisplayZoneChannelLink(TQLCollection* ACollection)
    : TQVDisplayElementChannelLink(ACollection),
      FHighlighting(std::make_unique<TQVDisplayOptionalHighlighting>(GetDisplay())),
      FPoints(std::make_unique<TQVScopeZonePoints>(this, GetLock(),
                                                   [this] {
                                                       ChangePointVisible();
                                                       NotifyProp();
                                                   })),
      FData(std::make_unique<TQVDisplayZoneChannelLinkData>(this))
{}

TQVDisplayZoneChannelLink::~TQVDisplayZoneChannelLink()
{
    // The channel outlives the link here: it must not keep drawing through it.
    if (GetChannel())
        GetChannel()->RemoveZoneLink(this);
}

void TQVDisplayZoneChannelLink::IntAddLink()
{
    if (FPoints && FPoints->GetVisible())
        GetChannel()->AddZoneLink(this);
}

void TQVDisplayZoneChannelLink::IntRemoveLink()
{
    GetChannel()->RemoveZoneLink(this);
}

void TQVDisplayZoneChannelLink::ChangePointVisible()
{
    TQVDisplayChannel* Channel = GetChannel();
    if (!Channel || !FPoints)
        return;
    if (FPoints->GetVisible())
        Channel->AddZoneLink(this);
    else
        Channel->RemoveZoneLink(this);
}

bool TQVDisplayZoneChannelLink::HoldsSample(double AX, double AY) const
{
    const TQVBasicDisplayZone* Zone = GetZone();
    return Zone && Zone->PointInZone(AX, AY);
}

TQVBasicDisplayZone* TQVDisplayZoneChannelLink::GetZone() const
{
    return GetCollection() ? dynamic_cast<TQVBasicDisplayZone*>(GetCollection()->IntGetOwner()) : nullptr;
}

const TQLClassInfo& TQVDisplayZoneChannelLink::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayZoneChannelLink>(
                                         "TQVDisplayZoneChannelLink", &TQVDisplayElementChannelLink::StaticClassInfo())
                                         .Object("Highlighting", &TQVDisplayZoneChannelLink::GetHighlighting)
                                         .Object("Points", &TQVDisplayZoneChannelLink::GetPoints)
                                         .Build();
    return Info;
}

} // namespace qv
