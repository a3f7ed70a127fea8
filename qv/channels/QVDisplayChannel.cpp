#include "qv/channels/QVDisplayChannel.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDisplayChannel::TQVDisplayChannel(TQLCollection* ACollection)
    : TQVOptionalDisplayCollectionItem(ACollection), FDrawGapsBuffer(std::make_shared<TQVIntegerBuffer>()),
      FXDrawDataBuffer(std::make_shared<TQVChannelBuffer>()), FYDrawDataBuffer(std::make_shared<TQVChannelBuffer>())
{
}

TQVDisplayChannel::~TQVDisplayChannel() = default;

void TQVDisplayChannel::SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }

void TQVDisplayChannel::SetColorDefault(TAlphaColor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FColor == FColorDefault;
    FColorDefault = AValue;
    if (Follow)
        SetColor(AValue);
}

void TQVDisplayChannel::SetWidth(int32_t AValue) { GetBasicLock().SetterMinMax(FWidth, AValue, 1, 2000); }

const TQLClassInfo& TQVDisplayChannel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayChannel>("TQVDisplayChannel", &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Color("Color", &TQVDisplayChannel::GetColor, &TQVDisplayChannel::SetColor,
                   &TQVDisplayChannel::GetColorDefault)
            .Property("Width", &TQVDisplayChannel::GetWidth, &TQVDisplayChannel::SetWidth, 1)
            .Build();
    return Info;
}

} // namespace qv
