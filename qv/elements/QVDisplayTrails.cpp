#include "qv/elements/QVDisplayTrails.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDisplayTrails::TQVDisplayTrails(TQVDisplayOwner* ADisplay)
    : TQVDisplayPersistent(ADisplay), FFont(std::make_unique<TQVDisplayFont>(
                                          this, GetLock(), [this] { NotifyProp(); }, "Arial", 8, 0xFFFFFF00))
{}

TQVDisplayTrails::~TQVDisplayTrails() = default;

const TQLClassInfo& TQVDisplayTrails::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayTrails>("TQVDisplayTrails", &TQVDisplayPersistent::StaticClassInfo())
            .Property("Color", &TQVDisplayTrails::GetColor, &TQVDisplayTrails::SetColor, TAlphaColor(0xFFFFFF00))
            .Object("Font", &TQVDisplayTrails::GetFont)
            .Build();
    return Info;
}

} // namespace qv
