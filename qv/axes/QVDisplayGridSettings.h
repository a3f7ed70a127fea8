#pragma once
// Grid line settings: one line kind (visible or not, and its pen), and the pair of line kinds
// an axis draws across the data view at its major and minor ticks.

#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QVDisplayPen.h"

#include <memory>

namespace qv {

class TQVDisplayGridLineSettings : public TQLPersistentNotify {
public:
    TQVDisplayGridLineSettings(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {},
                               TAlphaColor AColor = 0xFF008000, bool AVisible = true);
    ~TQVDisplayGridLineSettings() override;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    bool GetVisibleDefault() const { return FVisibleDefault; }
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    void SetPen(const TQVDisplayPen* AValue) { FPen->Assign(AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible;
    bool FVisibleDefault;
    std::unique_ptr<TQVDisplayPen> FPen;
};

// The lines an axis draws across the data view: MajorLines at major ticks (shown by default),
// MinorLines at minor ticks (hidden by default).
class TQVDisplayGridDirectionalLinesSettings : public TQLPersistentNotify {
public:
    TQVDisplayGridDirectionalLinesSettings(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {});
    ~TQVDisplayGridDirectionalLinesSettings() override;

    TQVDisplayGridLineSettings* GetMajorLines() const { return FMajorLines.get(); }
    void SetMajorLines(const TQVDisplayGridLineSettings* AValue) { FMajorLines->Assign(AValue); }
    TQVDisplayGridLineSettings* GetMinorLines() const { return FMinorLines.get(); }
    void SetMinorLines(const TQVDisplayGridLineSettings* AValue) { FMinorLines->Assign(AValue); }
    // The settings of a major (AMinor false) or a minor line.
    const TQVDisplayGridLineSettings& GetLines(bool AMinor) const { return AMinor ? *FMinorLines : *FMajorLines; }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayGridLineSettings> FMajorLines;
    std::unique_ptr<TQVDisplayGridLineSettings> FMinorLines;
};

} // namespace qv
