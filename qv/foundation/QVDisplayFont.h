#pragma once
// Font settings of a display element: family, size in points, style and colour, each with
// the default its owner chose.

#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLPersistent.h"

#include <string>

namespace qv {

// The bits of TFontStyles by name.
const TQLEnumInfo& QVFontStylesInfo();

class TQVDisplayFont : public TQLPersistentNotify {
public:
    TQVDisplayFont(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify = {},
                   std::string ADefaultName = "Arial", int32_t ADefaultSize = 8, TAlphaColor ADefaultColor = 0xFFFFFFFF,
                   TFontStyles ADefaultStyle = 0);

    const std::string& GetName() const { return FName; }
    void SetName(const std::string& AValue) { Set(FName, AValue); }
    // Size in points, kept in 1..1000.
    int32_t GetSize() const { return FSize; }
    void SetSize(int32_t AValue) { GetBasicLock().SetterMinMax(FSize, AValue, 1, 1000); }
    TFontStyles GetStyle() const { return FStyle; }
    void SetStyle(TFontStyles AValue) { Set(FStyle, AValue); }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { GetBasicLock().Setter(FColor, AValue, nullptr, false); }

    const std::string& GetNameDefault() const { return FDefault.Name; }
    int32_t GetSizeDefault() const { return FDefault.Size; }
    TFontStyles GetStyleDefault() const { return FDefault.Style; }
    TAlphaColor GetColorDefault() const { return FDefault.Color; }

    // The font as the canvas takes it.
    TQLCanvasFont ToCanvasFont() const { return TQLCanvasFont{FName, FSize, FStyle, FColor}; }

    QL_CLASS_INFO()

private:
    TQLCanvasFont FDefault;
    std::string FName;
    int32_t FSize;
    TFontStyles FStyle;
    TAlphaColor FColor;
};

} // namespace qv
