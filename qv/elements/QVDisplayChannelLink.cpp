#include "qv/elements/QVDisplayChannelLink.h"

#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

namespace {
const TQVChannelItemHighlighting* LinkSettings(const TQVDisplayOwner* ADisplay)
{
    const auto* Highlighting =
        ADisplay ? dynamic_cast<const TQVDataDisplayHighlighting*>(ADisplay->GetHighlighting()) : nullptr;
    return Highlighting ? Highlighting->GetChannelLinks() : nullptr;
}
} // namespace

TQVDisplayChannelLink::TQVDisplayChannelLink(TQLCollection* ACollection)
    : TQVOptionalDisplayCollectionItem(ACollection),
      FBrush(std::make_unique<TQVDisplayBrush>(
          this, GetLock(), [this] { NotifyProp(); }, 0xFF808080, bkSolid))
{}

TQVDisplayChannelLink::~TQVDisplayChannelLink()
{
    if (FFirstChannel)
        FFirstChannel->RemoveElementLink(this);
    if (FSecondChannel)
        FSecondChannel->RemoveElementLink(this);
}

void TQVDisplayChannelLink::BeforeDestruction()
{
    TQVOptionalDisplayCollectionItem::BeforeDestruction();
    if (TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay())) {
        View->ForgetItem(this);
        if (View->GetExtHighlightChannelLink() == this)
            View->SetExtHighlightChannelLink(nullptr);
    }
}

TQLCollection* TQVDisplayChannelLink::Channels() const
{
    const auto* Scope = dynamic_cast<const TQVScopeOwner*>(GetDisplay());
    return Scope ? Scope->GetChannels() : nullptr;
}

void TQVDisplayChannelLink::SetEnd(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther,
                                   TQVDisplayChannel* AChannel)
{
    auto Guard = GetLock()->AcquireWrite();
    if (AChannel == AEnd)
        return;
    // The channel keeps one registration while either end names it.
    if (AEnd && AEnd != AOther)
        AEnd->RemoveElementLink(this);
    AEnd = AChannel;
    AIndex = AChannel ? AChannel->GetIndex() : -1;
    if (AChannel)
        AChannel->AddElementLink(this);
    if (TQVDisplayOwner* Display = GetDisplay())
        Display->InvalidateRefresh();
}

void TQVDisplayChannelLink::SetFirstChannel(TQVDisplayChannel* AChannel)
{
    SetEnd(FFirstChannel, FFirstChannelIndex, FSecondChannel, AChannel);
}

void TQVDisplayChannelLink::SetSecondChannel(TQVDisplayChannel* AChannel)
{
    SetEnd(FSecondChannel, FSecondChannelIndex, FFirstChannel, AChannel);
}

void TQVDisplayChannelLink::SetEndIndex(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther,
                                        int32_t AValue)
{
    TQLCollection* List = Channels();
    if (AValue < -1 || AValue >= (List ? List->GetCount() : 0))
        throw std::out_of_range("TQVDisplayChannelLink: no channel " + std::to_string(AValue));
    SetEnd(AEnd, AIndex, AOther, AValue < 0 ? nullptr : static_cast<TQVDisplayChannel*>(List->GetBaseItem(AValue)));
}

int32_t TQVDisplayChannelLink::GetFirstChannelIndex() const
{
    return FFirstChannel ? FFirstChannel->GetIndex() : FFirstChannelIndex;
}

void TQVDisplayChannelLink::SetFirstChannelIndex(int32_t AValue)
{
    SetEndIndex(FFirstChannel, FFirstChannelIndex, FSecondChannel, AValue);
}

int32_t TQVDisplayChannelLink::GetSecondChannelIndex() const
{
    return FSecondChannel ? FSecondChannel->GetIndex() : FSecondChannelIndex;
}

void TQVDisplayChannelLink::SetSecondChannelIndex(int32_t AValue)
{
    SetEndIndex(FSecondChannel, FSecondChannelIndex, FFirstChannel, AValue);
}

void TQVDisplayChannelLink::SetWidth(int32_t AValue)
{
    Set(FWidth, std::clamp(AValue, 1, 1000));
}

void TQVDisplayChannelLink::SetChannelLinkMode(TQVScopeChannelLinkMode AValue)
{
    if (AValue > clmBar)
        throw std::invalid_argument("TQVDisplayChannelLink: invalid channel link mode " + std::to_string(int(AValue)));
    Set(FChannelLinkMode, AValue);
}

bool TQVDisplayChannelLink::IsVisible() const
{
    return FVisible && FFirstChannel && FSecondChannel && FFirstChannel->GetVisible() && FSecondChannel->GetVisible();
}

bool TQVDisplayChannelLink::HitTest(int32_t X, int32_t Y, const TRect& DispRect) const
{
    return IsVisible() && X >= DispRect.Left && X < DispRect.Right && Y >= DispRect.Top && Y < DispRect.Bottom;
}

void TQVDisplayChannelLink::MoveEnd(TQVDisplayChannel*& AEnd, int32_t& AIndex, TQVDisplayChannel* AOther,
                                    TQVDisplayChannel* AChannel)
{
    if (AEnd != AChannel)
        return;
    // Where the channel stood: its place while it is still listed, else the place last
    // known, which the next channel now holds.
    const int32_t Listed = AChannel->GetIndex();
    const int32_t Start = Listed >= 0 ? Listed + 1 : AIndex;
    // Let go of the channel first, whatever the other end holds: it is going.
    auto Guard = GetLock()->AcquireWrite();
    AChannel->RemoveElementLink(this);
    AEnd = nullptr;
    AIndex = -1;
    TQLCollection* List = Channels();
    const int32_t Count = List ? List->GetCount() : 0;
    for (int32_t k = 0; k < Count; ++k) {
        auto* Candidate = static_cast<TQVDisplayChannel*>(List->GetBaseItem((std::max(Start, 0) + k) % Count));
        if (Candidate != AChannel && Candidate != AOther) {
            SetEnd(AEnd, AIndex, AOther, Candidate);
            break;
        }
    }
    // The other end may hold the channel too: it keeps its registration until it moves.
    if (AOther == AChannel)
        AChannel->AddElementLink(this);
    if (TQVDisplayOwner* Display = GetDisplay())
        Display->InvalidateRefresh();
}

void TQVDisplayChannelLink::RemoveChannel(TQVDisplayChannel* AChannel)
{
    if (!AChannel)
        return;
    MoveEnd(FFirstChannel, FFirstChannelIndex, FSecondChannel, AChannel);
    MoveEnd(FSecondChannel, FSecondChannelIndex, FFirstChannel, AChannel);
}

void TQVDisplayChannelLink::PopulateLink()
{
    TQLCollection* List = Channels();
    const int32_t Count = List ? List->GetCount() : 0;
    if (!FFirstChannel && FFirstChannelIndex >= 0 && FFirstChannelIndex < Count)
        SetFirstChannelIndex(FFirstChannelIndex);
    if (!FSecondChannel && FSecondChannelIndex >= 0 && FSecondChannelIndex < Count)
        SetSecondChannelIndex(FSecondChannelIndex);
}

uint32_t TQVDisplayChannelLink::Collect(TQVDisplayChannel* AChannel, TQLCanvas& ACanvas, const TRect& ARect,
                                        bool Printing, bool AReverse)
{
    auto* Channel = dynamic_cast<TQVScopeChannel*>(AChannel);
    if (!Channel)
        return 0;
    // The channel brings its screen stage up to date for this frame and plots nothing; the
    // points are read from what it would plot.
    Channel->DrawCall(&TQVScopeChannel::ChannelDataPrepare, ACanvas, 0xFF000000, ARect, Printing);
    const IQVIntegerBuffer& PX = *Channel->GetDownsampledIntDrawBufferX();
    const IQVIntegerBuffer& PY = *Channel->GetDownsampledIntDrawBufferY();
    const int32_t m = std::min(PX.GetSize(), PY.GetSize());
    const bool Turned = GetDisplay() && GetDisplay()->GetIsVertical();
    const size_t From = FPoints.size();
    for (int32_t i = 0; i < m; ++i) {
        const int32_t X = PX.Read()[i], Y = PY.Read()[i];
        // A sample that is not drawn (NaN) leaves no corner.
        if (X == QVMissingPixel || Y == QVMissingPixel)
            continue;
        FPoints.push_back(Turned ? TPoint{Y, X} : TPoint{X, Y});
    }
    if (AReverse)
        std::reverse(FPoints.begin() + std::ptrdiff_t(From), FPoints.end());
    return uint32_t(FPoints.size() - From);
}

bool TQVDisplayChannelLink::DrawnHighlighted(bool APrinting) const
{
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = LinkSettings(GetDisplay());
    if (!View || !Settings)
        return false;
    return QVIsItemDrawnHighlighted<TQVDisplayChannelLink>(this, View->GetHighlightInfo().FHighlightedItem,
                                                           View->GetExtHighlightChannelLink(), *Settings, APrinting);
}

void TQVDisplayChannelLink::Draw(TQLCanvas& ACanvas, const TRect& ARect, bool Printing)
{
    if (!IsVisible() || FFirstChannel == FSecondChannel)
        return;
    // The places of the ends as they stand, for a channel that goes later.
    FFirstChannelIndex = FFirstChannel->GetIndex();
    FSecondChannelIndex = FSecondChannel->GetIndex();
    // The first channel's points, then the second's backwards: the array runs round the area.
    FPoints.clear();
    FBuffer1Count = Collect(FFirstChannel, ACanvas, ARect, Printing, false);
    FBuffer2Count = Collect(FSecondChannel, ACanvas, ARect, Printing, true);
    if (FBuffer1Count == 0 || FBuffer2Count == 0)
        return;
    const bool Highlighted = DrawnHighlighted(Printing);
    TQLCanvasSave Save(ACanvas);
    ACanvas.SetPenStyle(psSolid);
    if (FChannelLinkMode == clmBar) {
        // A bar joins the i-th point of each channel; the longer channel's extra points have
        // no partner.
        const uint32_t n = std::min(FBuffer1Count, FBuffer2Count);
        const bool Turned = GetDisplay() && GetDisplay()->GetIsVertical();
        const int32_t Half = FWidth / 2;
        const auto Bars = [&] {
            for (uint32_t i = 0; i < n; ++i) {
                const TPoint A = FPoints[i];
                const TPoint B = FPoints[FPoints.size() - 1 - i];
                if (Turned)
                    ACanvas.Rectangle(std::min(A.X, B.X), A.Y - Half, std::max(A.X, B.X), A.Y - Half + FWidth);
                else
                    ACanvas.Rectangle(A.X - Half, std::min(A.Y, B.Y), A.X - Half + FWidth, std::max(A.Y, B.Y));
            }
        };
        const TQVChannelItemHighlighting* Settings = LinkSettings(GetDisplay());
        if (Highlighted && Settings) {
            ACanvas.GetBrush().SetStyle(bsClear);
            ACanvas.GetPen().SetColor(Settings->GetColor());
            ACanvas.SetPenWidth(3);
            Bars();
        }
        ACanvas.ApplyBrush(*FBrush);
        ACanvas.GetPen().SetColor(FBrush->GetColor());
        ACanvas.SetPenWidth(1);
        Bars();
        return;
    }
    const int32_t High = int32_t(FPoints.size()) - 1;
    if (Highlighted) {
        // The highlight of an area is always this green, whatever the settings' colour.
        ACanvas.GetBrush().SetStyle(bsClear);
        ACanvas.SetPenWidth(3);
        ACanvas.GetPen().SetColor(0x0000FF00);
        ACanvas.Polygon(FPoints.data(), High);
    }
    // The outline takes the colour the canvas fills with before the link's brush applies.
    ACanvas.SetPenWidth(1);
    ACanvas.GetPen().SetColor(ACanvas.GetBrush().GetColor());
    ACanvas.ApplyBrush(*FBrush);
    ACanvas.Polygon(FPoints.data(), High);
}

bool TQVDisplayChannelLink::CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    TQLCanvasSave Save(ACanvas);
    ACanvas.ApplyBrush(*FBrush);
    if (FChannelLinkMode == clmBar)
        ACanvas.FillRect(TRect{AX + 4, AY - 4, AX + 9, AY + 5});
    else
        ACanvas.FillRect(TRect{AX, AY - 4, AX + 13, AY + 5});
    ACanvas.SetPenStyle(psSolid);
    ACanvas.SetPenWidth(1);
    if (FFirstChannel && FSecondChannel) {
        ACanvas.GetPen().SetColor(FFirstChannel->GetColor());
        ACanvas.MoveTo(AX, AY - 4);
        ACanvas.LineTo(AX + 13, AY - 4);
        ACanvas.GetPen().SetColor(FSecondChannel->GetColor());
        ACanvas.MoveTo(AX, AY + 4);
        ACanvas.LineTo(AX + 13, AY + 4);
    }
    return true;
}

bool TQVDisplayChannelLink::GetHighlighted() const
{
    const TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = LinkSettings(GetDisplay());
    if (!View || !Settings)
        return false;
    return QVGetItemHighlighted<TQVDisplayChannelLink>(this, View->GetHighlightInfo().FHighlightedItem,
                                                       View->GetExtHighlightChannelLink(), *Settings);
}

void TQVDisplayChannelLink::SetHighlighted(bool AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    TQVScopeDataView* View = TQVScopeDataView::Of(GetDisplay());
    const TQVChannelItemHighlighting* Settings = LinkSettings(GetDisplay());
    if (!View || !Settings)
        return;
    TQVDisplayChannelLink* Ext = View->GetExtHighlightChannelLink();
    if (QVSetItemHighlighted(Ext, this, AValue, *Settings)) {
        View->SetExtHighlightChannelLink(Ext);
        View->InvalidateView();
    }
}

const TQLClassInfo& TQVDisplayChannelLink::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayChannelLink>("TQVDisplayChannelLink",
                                               &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Property("FirstChannelIndex", &TQVDisplayChannelLink::GetFirstChannelIndex,
                      &TQVDisplayChannelLink::SetFirstChannelIndex, -1)
            .Property("SecondChannelIndex", &TQVDisplayChannelLink::GetSecondChannelIndex,
                      &TQVDisplayChannelLink::SetSecondChannelIndex, -1)
            .Object("Brush", &TQVDisplayChannelLink::GetBrush)
            .Property("Width", &TQVDisplayChannelLink::GetWidth, &TQVDisplayChannelLink::SetWidth, 5)
            .Property("ChannelLinkMode", &TQVDisplayChannelLink::GetChannelLinkMode,
                      &TQVDisplayChannelLink::SetChannelLinkMode, clmZone)
            .Build();
    return Info;
}

// ---- Collection ----

TQVDisplayChannelLink* TQVDisplayChannelLinks::Add(TQVDisplayChannel* AFirst, TQVDisplayChannel* ASecond)
{
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayChannelLink* Link = Add();
    Link->SetFirstChannel(AFirst);
    Link->SetSecondChannel(ASecond);
    return Link;
}

void TQVDisplayChannelLinks::NewItemCreated(TQLCollectionItem* AItem)
{
    static_cast<TQVDisplayChannelLink*>(AItem)->SetName("ChannelLink" + std::to_string(GetCount()));
    TQVOptionalDisplayCollection<TQVDisplayChannelLink>::NewItemCreated(AItem);
}

void TQVDisplayChannelLinks::DrawElements(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& AClip,
                                          bool APrinting)
{
    for (TQVDisplayChannelLink* Link : *this)
        Link->Draw(ACanvas, AClip, APrinting);
}

void TQVDisplayChannelLinks::PopulateLinks()
{
    for (TQVDisplayChannelLink* Link : *this)
        Link->PopulateLink();
}

const TQLClassInfo& TQVDisplayChannelLinks::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayChannelLinks", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
