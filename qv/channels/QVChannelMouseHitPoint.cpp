#include "qv/channels/QVChannelMouseHitPoint.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVDisplayOptionalHighlighting::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayOptionalHighlighting>(
                                         "TQVDisplayOptionalHighlighting", &TQVDisplayPersistent::StaticClassInfo())
                                         .Property("Enabled", &TQVDisplayOptionalHighlighting::GetEnabled,
                                                   &TQVDisplayOptionalHighlighting::SetEnabled, true)
                                         .Color("Color", &TQVDisplayOptionalHighlighting::GetColor,
                                                &TQVDisplayOptionalHighlighting::SetColor, TAlphaColor(0xFFFF0000))
                                         .Build();
    return Info;
}

TQVChannelMouseHitPoint::TQVChannelMouseHitPoint(TQVDisplayOwner* ADisplay)
    : TQVDisplayOptionalHighlighting(ADisplay),
      // A change of the label repaints the display like any other setting.
      FPointLabel(std::make_unique<TQVOptionalLabel>(ADisplay, ADisplay->GetLock(),
                                                     [ADisplay] { ADisplay->InvalidateRefresh(); }))
{}

TQVChannelMouseHitPoint::~TQVChannelMouseHitPoint() = default;

const TQLClassInfo& TQVChannelMouseHitPoint::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVChannelMouseHitPoint>(
                                         "TQVChannelMouseHitPoint", &TQVDisplayOptionalHighlighting::StaticClassInfo())
                                         .Object("PointLabel", &TQVChannelMouseHitPoint::GetPointLabel)
                                         .Property("UseChannelColor", &TQVChannelMouseHitPoint::GetUseChannelColor,
                                                   &TQVChannelMouseHitPoint::SetUseChannelColor, true)
                                         .Build();
    return Info;
}

} // namespace qv
