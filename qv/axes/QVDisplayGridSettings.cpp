#include "qv/axes/QVDisplayGridSettings.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVDisplayGridLineSettings::TQVDisplayGridLineSettings(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify,
                                                       TAlphaColor AColor, bool AVisible)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FVisible(AVisible), FVisibleDefault(AVisible),
      FPen(std::make_unique<TQVDisplayPen>(this, GetLock(), TQLNotifyProc{}, AColor))
{}

TQVDisplayGridLineSettings::~TQVDisplayGridLineSettings() = default;

const TQLClassInfo& TQVDisplayGridLineSettings::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayGridLineSettings>("TQVDisplayGridLineSettings",
                                                    &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &TQVDisplayGridLineSettings::GetVisible, &TQVDisplayGridLineSettings::SetVisible,
                      &TQVDisplayGridLineSettings::GetVisibleDefault)
            .Object("Pen", &TQVDisplayGridLineSettings::GetPen)
            .Build();
    return Info;
}

TQVDisplayGridDirectionalLinesSettings::TQVDisplayGridDirectionalLinesSettings(TQLPersistent* AOwner, TQLLockPtr ALock,
                                                                               TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)),
      FLines(std::make_unique<TQVDisplayGridLineSettings>(this, GetLock(), TQLNotifyProc{}, 0xFF004000, true)),
      FZeroLine(std::make_unique<TQVDisplayGridLineSettings>(this, GetLock(), TQLNotifyProc{}, 0xFF008000, true))
{}

TQVDisplayGridDirectionalLinesSettings::~TQVDisplayGridDirectionalLinesSettings() = default;

const TQLClassInfo& TQVDisplayGridDirectionalLinesSettings::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayGridDirectionalLinesSettings>("TQVDisplayGridDirectionalLinesSettings",
                                                                &TQLPersistentNotify::StaticClassInfo())
            .Object("Lines", &TQVDisplayGridDirectionalLinesSettings::GetLines)
            .Object("ZeroLine", &TQVDisplayGridDirectionalLinesSettings::GetZeroLine)
            .Build();
    return Info;
}

} // namespace qv
