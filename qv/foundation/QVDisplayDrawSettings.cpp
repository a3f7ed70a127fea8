// Pen, brush and font settings objects.
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayFont.h"
#include "qv/foundation/QVDisplayPen.h"

#include <limits>

namespace qv {

TQLPenStyle QVPenStyleOf(TQVStrokeDash ADash)
{
    switch (ADash) {
    case sdSolid: return psSolid;
    case sdDash: return psDash;
    case sdDot: return psDot;
    case sdDashDot: return psDashDot;
    case sdDashDotDot: return psDashDotDot;
    }
    return psSolid;
}

// ---- TQVDisplayPen ----

TQVDisplayPen::TQVDisplayPen(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify, TAlphaColor ADefaultColor,
                             int32_t ADefaultWidth)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FColor(ADefaultColor),
      FColorDefault(ADefaultColor), FWidth(ADefaultWidth < 1 ? 1 : ADefaultWidth), FWidthDefault(FWidth)
{}

void TQVDisplayPen::SetColorDefault(TAlphaColor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FColor == FColorDefault;
    FColorDefault = AValue;
    if (Follow)
        SetColor(AValue);
}

const TQLClassInfo& TQVDisplayPen::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayPen>("TQVDisplayPen", &TQLPersistentNotify::StaticClassInfo())
            .Color("Color", &TQVDisplayPen::GetColor, &TQVDisplayPen::SetColor, &TQVDisplayPen::GetColorDefault)
            .Property("Width", &TQVDisplayPen::GetWidth, &TQVDisplayPen::SetWidth, &TQVDisplayPen::GetWidthDefault)
            .Limits(1, std::numeric_limits<int32_t>::max())
            .Property("Dash", &TQVDisplayPen::GetDash, &TQVDisplayPen::SetDash, sdSolid)
            .Build();
    return Info;
}

// ---- TQVDisplayBrush ----

TQVDisplayBrush::TQVDisplayBrush(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify,
                                 TAlphaColor ADefaultColor, TQVBrushKind ADefaultKind)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FColor(ADefaultColor),
      FColorDefault(ADefaultColor), FKind(ADefaultKind), FKindDefault(ADefaultKind)
{}

void TQVDisplayBrush::SetColorDefault(TAlphaColor AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const bool Follow = FColor == FColorDefault;
    FColorDefault = AValue;
    if (Follow)
        SetColor(AValue);
}

const TQLClassInfo& TQVDisplayBrush::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayBrush>("TQVDisplayBrush", &TQLPersistentNotify::StaticClassInfo())
            .Color("Color", &TQVDisplayBrush::GetColor, &TQVDisplayBrush::SetColor, &TQVDisplayBrush::GetColorDefault)
            .Property("Kind", &TQVDisplayBrush::GetKind, &TQVDisplayBrush::SetKind, &TQVDisplayBrush::GetKindDefault)
            .Build();
    return Info;
}

// ---- TQVDisplayFont ----

const TQLEnumInfo& QVFontStylesInfo()
{
    static const TQLEnumInfo Info{
        "TFontStyles",
        {{fsBold, "fsBold"}, {fsItalic, "fsItalic"}, {fsUnderline, "fsUnderline"}, {fsStrikeOut, "fsStrikeOut"}},
        true};
    return Info;
}

TQVDisplayFont::TQVDisplayFont(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify, std::string ADefaultName,
                               int32_t ADefaultSize, TAlphaColor ADefaultColor, TFontStyles ADefaultStyle)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)), FDefault{std::move(ADefaultName), ADefaultSize,
                                                                                  ADefaultStyle, ADefaultColor},
      FName(FDefault.Name), FSize(ADefaultSize), FStyle(ADefaultStyle), FColor(ADefaultColor)
{}

const TQLClassInfo& TQVDisplayFont::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayFont>("TQVDisplayFont", &TQLPersistentNotify::StaticClassInfo())
            .Property("Name", &TQVDisplayFont::GetName, &TQVDisplayFont::SetName, &TQVDisplayFont::GetNameDefault)
            .Property("Size", &TQVDisplayFont::GetSize, &TQVDisplayFont::SetSize, &TQVDisplayFont::GetSizeDefault)
            .Limits(1, 1000)
            .Set("Style", &TQVDisplayFont::GetStyle, &TQVDisplayFont::SetStyle, &TQVDisplayFont::GetStyleDefault,
                 QVFontStylesInfo())
            .Color("Color", &TQVDisplayFont::GetColor, &TQVDisplayFont::SetColor, &TQVDisplayFont::GetColorDefault)
            .Build();
    return Info;
}

} // namespace qv
