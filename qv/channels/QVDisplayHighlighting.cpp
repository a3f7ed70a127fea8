#include "qv/channels/QVDisplayHighlighting.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVDisplayItemHighlighting::StaticClassInfo()
{
    using C = TQVDisplayItemHighlighting;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayItemHighlighting", &TQVDisplayPersistent::StaticClassInfo())
            .Property("HiglightLegendButton", &C::GetHiglightLegendButton, &C::SetHiglightLegendButton, true)
            .Property("HiglightFromLegend", &C::GetHiglightFromLegend, &C::SetHiglightFromLegend, true)
            .Property("HiglightFromMouse", &C::GetHiglightFromMouse, &C::SetHiglightFromMouse,
                      &C::GetHiglightFromMouseDefault)
            .Color("Color", &C::GetColor, &C::SetColor, TAlphaColor(0xFFE67FE7))
            .Build();
    return Info;
}

const TQLClassInfo& TQVChannelItemHighlighting::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVChannelItemHighlighting>(
                                         "TQVChannelItemHighlighting", &TQVDisplayItemHighlighting::StaticClassInfo())
                                         .Build();
    return Info;
}

TQVDisplayHighlighting::TQVDisplayHighlighting(TQVDisplayOwner* ADisplay)
    : TQVDisplayPersistent(ADisplay), FMarkers(std::make_unique<TQVDisplayItemHighlighting>(ADisplay)),
      FCursors(std::make_unique<TQVDisplayItemHighlighting>(ADisplay)),
      FLabels(std::make_unique<TQVDisplayItemHighlighting>(ADisplay)),
      FCursorLinks(std::make_unique<TQVDisplayItemHighlighting>(ADisplay)),
      FMouseHitPoint(std::make_unique<TQVChannelMouseHitPoint>(ADisplay))
{}

TQVDisplayHighlighting::~TQVDisplayHighlighting() = default;

const TQLClassInfo& TQVDisplayHighlighting::StaticClassInfo()
{
    using C = TQVDisplayHighlighting;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayHighlighting", &TQVDisplayPersistent::StaticClassInfo())
            .Object("Markers", &C::GetMarkers)
            .Object("Cursors", &C::GetCursors)
            .Object("Labels", &C::GetLabels)
            .Object("CursorLinks", &C::GetCursorLinks)
            .Object("MouseHitPoint", &C::GetMouseHitPoint)
            .Build();
    return Info;
}

TQVDataDisplayHighlighting::TQVDataDisplayHighlighting(TQVDisplayOwner* ADisplay)
    : TQVDisplayHighlighting(ADisplay), FChannels(std::make_unique<TQVChannelItemHighlighting>(ADisplay)),
      FChannelLinks(std::make_unique<TQVChannelItemHighlighting>(ADisplay)),
      FZones(std::make_unique<TQVDisplayItemHighlighting>(ADisplay)),
      FEllipses(std::make_unique<TQVDisplayItemHighlighting>(ADisplay))
{}

TQVDataDisplayHighlighting::~TQVDataDisplayHighlighting() = default;

const TQLClassInfo& TQVDataDisplayHighlighting::StaticClassInfo()
{
    using C = TQVDataDisplayHighlighting;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDataDisplayHighlighting", &TQVDisplayHighlighting::StaticClassInfo())
            .Object("Channels", &C::GetChannels)
            .Object("ChannelLinks", &C::GetChannelLinks)
            .Object("Zones", &C::GetZones)
            .Object("Ellipses", &C::GetEllipses)
            .Build();
    return Info;
}

} // namespace qv
