#include "qv/component/QVViewButtonSettings.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVBasicViewButtonSettings::StaticClassInfo()
{
    using C = TQVBasicViewButtonSettings;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVBasicViewButtonSettings", &TQLPersistentNotify::StaticClassInfo())
            .Property("Enabled", &C::GetEnabled, &C::SetEnabled, true)
            .Property("Cursor", &C::GetCursor, &C::SetCursor, crHandPoint)
            .Color("MouseOverBorderColor", &C::GetMouseOverBorderColor, &C::SetMouseOverBorderColor,
                   TAlphaColor(0xFF00FF00))
            .Color("MouseOverColor", &C::GetMouseOverColor, &C::SetMouseOverColor, TAlphaColor(0xFF008000))
            .Color("MouseDownBorderColor", &C::GetMouseDownBorderColor, &C::SetMouseDownBorderColor,
                   TAlphaColor(0xFFFFFF00))
            .Color("MouseDownColor", &C::GetMouseDownColor, &C::SetMouseDownColor, TAlphaColor(0xFF808000))
            .Build();
    return Info;
}

const TQLClassInfo& TQVViewButtonSettings::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVViewButtonSettings>("TQVViewButtonSettings", &TQVBasicViewButtonSettings::StaticClassInfo())
            .Build();
    return Info;
}

} // namespace qv
