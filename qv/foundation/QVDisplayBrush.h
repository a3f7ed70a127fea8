#pragma once
// Fill settings of a display element: a kind (none or solid) and a colour.

#include "qv/foundation/QLEnumInfo.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLTypes.h"

namespace qv {

enum TQVBrushKind : uint8_t { bkNone, bkSolid };

class TQVDisplayBrush : public TQLPersistentNotify {
public:
    TQVDisplayBrush(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {},
                    TAlphaColor ADefaultColor = 0xFFFFFFFF, TQVBrushKind ADefaultKind = bkSolid);

    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }
    TAlphaColor GetColorDefault() const { return FColorDefault; }
    void SetColorDefault(TAlphaColor AValue);
    TQVBrushKind GetKind() const { return FKind; }
    void SetKind(TQVBrushKind AValue) { Set(FKind, AValue); }
    TQVBrushKind GetKindDefault() const { return FKindDefault; }

    QL_CLASS_INFO()

private:
    TAlphaColor FColor;
    TAlphaColor FColorDefault;
    TQVBrushKind FKind;
    TQVBrushKind FKindDefault;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVBrushKind, "bkNone", "bkSolid")
