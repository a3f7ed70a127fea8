#include "qv/channels/QVScopePoints.h"

#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QLClassBuilder.h"

#include <stdexcept>
#include <string>

namespace qv {

TQVScopePoints::TQVScopePoints(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistentNotify(AOwner, std::move(ALock), std::move(ANotify)),
      FBrush(std::make_unique<TQVDisplayBrush>(this, GetLock(), TQLNotifyProc{}, 0xFFFFFFFF, bkSolid)),
      FPen(std::make_unique<TQVDisplayPen>(this, GetLock(), TQLNotifyProc{}, 0xFF000000, 1))
{}

TQVScopePoints::~TQVScopePoints() = default;

void TQVScopePoints::SetShape(TQVScopePointsShape AValue)
{
    if (AValue > psStar)
        throw std::invalid_argument("TQVScopePoints: invalid shape " + std::to_string(static_cast<int>(AValue)));
    Set(FShape, AValue);
}

void TQVScopePoints::SetSize(uint32_t AValue)
{
    Set(FSize, AValue > 1000u ? 1000u : AValue);
}

const TQLClassInfo& TQVScopePoints::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopePoints>("TQVScopePoints", &TQLPersistentNotify::StaticClassInfo())
            .Property("Visible", &TQVScopePoints::GetVisible, &TQVScopePoints::SetVisible, false)
            .Property("Shape", &TQVScopePoints::GetShape, &TQVScopePoints::SetShape, psCircle)
            .Property("Size", &TQVScopePoints::GetSize, &TQVScopePoints::SetSize, 3u)
            .Object("Brush", &TQVScopePoints::GetBrush)
            .Object("Pen", &TQVScopePoints::GetPen)
            .Property("UseChannelColor", &TQVScopePoints::GetUseChannelColor, &TQVScopePoints::SetUseChannelColor, true)
            .Build();
    return Info;
}

void QVDrawPointSymbolRect(TQLCanvas& ACanvas, TQVScopePointsShape AShape, const TRect& ARect, int32_t AInset)
{
    const int32_t L = ARect.Left, T = ARect.Top, R = ARect.Right, B = ARect.Bottom;
    const int32_t MX = L + (R - L) / 2;
    const int32_t MY = T + (B - T) / 2;
    const auto Plus = [&] {
        ACanvas.MoveTo(MX, T);
        ACanvas.LineTo(MX, B - AInset);
        ACanvas.MoveTo(L, MY);
        ACanvas.LineTo(R - AInset, MY);
    };
    const auto Cross = [&] {
        ACanvas.MoveTo(L, T);
        ACanvas.LineTo(R - AInset, B - AInset);
        ACanvas.MoveTo(R - 1, T);
        ACanvas.LineTo(L + AInset - 1, B - AInset);
    };
    switch (AShape) {
    case psCircle: ACanvas.EllipseRect(ARect); break;
    case psSquare: ACanvas.RectangleRect(ARect); break;
    case psDiamond: {
        const TPoint Points[4] = {{MX, T}, {L, MY}, {MX, B - 1}, {R - 1, MY}};
        ACanvas.Polygon(Points, 3);
        break;
    }
    case psPlus: Plus(); break;
    case psCross: Cross(); break;
    case psStar:
        Plus();
        Cross();
        break;
    }
}

void QVDrawPointSymbol(TQLCanvas& ACanvas, TQVScopePointsShape AShape, int32_t AX, int32_t AY, int32_t ASize,
                       int32_t AInset)
{
    QVDrawPointSymbolRect(ACanvas, AShape, TRect{AX - ASize, AY - ASize, AX + ASize + 1, AY + ASize + 1}, AInset);
}

} // namespace qv
