#pragma once
// Pen settings of a display element: colour, width and dash. The colour's default is given
// by the owner (collections hand out palette colours), and the colour is stored only when it
// differs from that default.

#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"

namespace qv {

enum TQVStrokeDash : uint8_t { sdSolid, sdDash, sdDot, sdDashDot, sdDashDotDot };

// The raw pen style that draws a dash pattern.
TQLPenStyle QVPenStyleOf(TQVStrokeDash ADash);

class TQVDisplayPen : public TQLPersistentNotify {
public:
    TQVDisplayPen(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {},
                  TAlphaColor ADefaultColor = 0xFFFFFFFF, int32_t ADefaultWidth = 1);

    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }
    TAlphaColor GetColorDefault() const { return FColorDefault; }
    // A new default; the colour follows when it still held the old default.
    void SetColorDefault(TAlphaColor AValue);
    // Width in pixels, kept at 1 or more.
    int32_t GetWidth() const { return FWidth; }
    void SetWidth(int32_t AValue) { GetBasicLock().SetterMin(FWidth, AValue, 1); }
    int32_t GetWidthDefault() const { return FWidthDefault; }
    TQVStrokeDash GetDash() const { return FDash; }
    void SetDash(TQVStrokeDash AValue) { Set(FDash, AValue); }

    QL_CLASS_INFO()

private:
    TAlphaColor FColor;
    TAlphaColor FColorDefault;
    int32_t FWidth;
    int32_t FWidthDefault;
    TQVStrokeDash FDash = sdSolid;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVStrokeDash, "sdSolid", "sdDash", "sdDot", "sdDashDot", "sdDashDotDot")
