#include "qv/decor/QVOptionalLabel.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQLCanvasFont QVDefaultLabelFont()
{
    return TQLCanvasFont{"Arial", 8, 0, 0xFFFFFFFF};
}

TQVBasicOptionalLabel::TQVBasicOptionalLabel(TQLPersistent* AOwnerProperty, TQLLockPtr ALock, TQLNotifyProc AOnChange,
                                             const TQLCanvasFont& AFontDefault, bool ADefaultVisible)
    : TQLPersistentNotify(AOwnerProperty, std::move(ALock), std::move(AOnChange)), FVisibleDefault(ADefaultVisible),
      FVisible(ADefaultVisible),
      // A font change is a change of the label: it reaches the same closure.
      FFont(std::make_unique<TQVDisplayFont>(
          this, GetLock(), [this] { NotifyProp(); }, AFontDefault.Name, AFontDefault.Size, AFontDefault.Color,
          AFontDefault.Style))
{}

TQVBasicOptionalLabel::~TQVBasicOptionalLabel() = default;

const TQLClassInfo& TQVBasicOptionalLabel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicOptionalLabel>("TQVBasicOptionalLabel", &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &TQVBasicOptionalLabel::GetVisible, &TQVBasicOptionalLabel::SetVisible,
                      &TQVBasicOptionalLabel::GetVisibleDefault)
            .Object("Font", &TQVBasicOptionalLabel::GetFont)
            .Build();
    return Info;
}

const TQLClassInfo& TQVOptionalLabel::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVOptionalLabel>("TQVOptionalLabel", &TQVBasicOptionalLabel::StaticClassInfo())
            .Property("Text", &TQVOptionalLabel::GetText, &TQVOptionalLabel::SetText, "")
            .Build();
    return Info;
}

} // namespace qv
