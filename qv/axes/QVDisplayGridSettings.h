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

// The lines an axis draws across the data view at its major ticks: Lines at every tick, and
// ZeroLine, brighter, at the tick of zero.
class TQVDisplayGridDirectionalLinesSettings : public TQLPersistentNotify {
public:
    TQVDisplayGridDirectionalLinesSettings(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {});
    ~TQVDisplayGridDirectionalLinesSettings() override;

    TQVDisplayGridLineSettings* GetLines() const { return FLines.get(); }
    void SetLines(const TQVDisplayGridLineSettings* AValue) { FLines->Assign(AValue); }
    TQVDisplayGridLineSettings* GetZeroLine() const { return FZeroLine.get(); }
    void SetZeroLine(const TQVDisplayGridLineSettings* AValue) { FZeroLine->Assign(AValue); }
    // The settings of the line at a tick that counts as zero, or at any other.
    const TQVDisplayGridLineSettings& GetLineAt(bool AZero) const { return AZero ? *FZeroLine : *FLines; }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayGridLineSettings> FLines;
    std::unique_ptr<TQVDisplayGridLineSettings> FZeroLine;
};

} // namespace qv
