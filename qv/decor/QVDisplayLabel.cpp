#include "qv/decor/QVDisplayLabel.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDisplayLabel::TQVDisplayLabel(TQLPersistent* AOwnerProperty, TQLLockPtr ALock, TQLNotifyProc AOnChange,
                                 const TQLCanvasFont& AFontDefault, bool ADefaultVisible)
    : TQVOptionalLabel(AOwnerProperty, std::move(ALock), std::move(AOnChange), AFontDefault, ADefaultVisible)
{}

const TQLClassInfo& TQVDisplayLabel::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayLabel", &TQVOptionalLabel::StaticClassInfo(), {});
    return Info;
}

void TQVDisplayTitleLabel::SetTextDefault(const std::string& AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FText == FTextDefault;
    FTextDefault = AValue;
    if (Follow)
        SetText(AValue);
}

const TQLClassInfo& TQVDisplayTitleLabel::StaticClassInfo()
{
    // Text takes the inherited entry's place with this label's own default: stored only when
    // it differs, and put back to the default when a stored form leaves it out.
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayTitleLabel>("TQVDisplayTitleLabel", &TQVDisplayLabel::StaticClassInfo())
            .Property("Text", &TQVDisplayTitleLabel::GetText, &TQVDisplayTitleLabel::SetText,
                      &TQVDisplayTitleLabel::GetTextDefault)
            .StoredWhen(&TQVDisplayTitleLabel::GetTextStored)
            .Build();
    return Info;
}

} // namespace qv
