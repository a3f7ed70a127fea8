#include "qv/foundation/QVMarkerShapes.h"

#include "qv/foundation/QLCanvas.h"

#include <stdexcept>
#include <string>

namespace qv {

TQVDisplayMarkerShape QVMarkerShapeOf(TQVScopePointsShape AShape)
{
    switch (AShape) {
    case psCircle: return msCircle;
    case psSquare: return msSquare;
    case psDiamond: return msDiamond;
    case psPlus: return msPlus;
    case psCross: return msCross;
    case psStar: return msStar;
    }
    throw std::invalid_argument("QVMarkerShapeOf: invalid points shape " + std::to_string(static_cast<int>(AShape)));
}

namespace {

enum TTriangleDirection { tdUp, tdDown, tdLeft, tdRight };

void DrawPlus(TQLCanvas& C, int32_t X, int32_t Y, int32_t S)
{
    C.MoveTo(X, Y - S);
    C.LineTo(X, Y + S + 1);
    C.MoveTo(X - S, Y);
    C.LineTo(X + S + 1, Y);
}

void DrawCross(TQLCanvas& C, int32_t X, int32_t Y, int32_t S)
{
    // A line leaves out its end pixel, so each diagonal ends one step past the box corner.
    C.MoveTo(X - S, Y - S);
    C.LineTo(X + S + 1, Y + S + 1);
    C.MoveTo(X + S, Y - S);
    C.LineTo(X - S - 1, Y + S + 1);
}

void DrawHorzLine(TQLCanvas& C, int32_t X, int32_t Y, int32_t S)
{
    C.MoveTo(X - S, Y);
    C.LineTo(X + S + 1, Y);
}

void DrawVertLine(TQLCanvas& C, int32_t X, int32_t Y, int32_t S)
{
    C.MoveTo(X, Y - S);
    C.LineTo(X, Y + S + 1);
}

// Tip on the point moved AExtra outward; base at 2 * ASize + AExtra behind it, half as wide
// as ASize + AExtra on each side.
void DrawTriangle(TQLCanvas& C, int32_t X, int32_t Y, int32_t ASize, int32_t AExtra, TTriangleDirection ADir)
{
    const int32_t H = ASize + AExtra;
    const int32_t D = 2 * ASize + AExtra;
    TPoint P[3];
    switch (ADir) {
    case tdUp: P[0] = {X, Y - AExtra}, P[1] = {X + H, Y + D}, P[2] = {X - H, Y + D}; break;
    case tdDown: P[0] = {X, Y + AExtra}, P[1] = {X - H, Y - D}, P[2] = {X + H, Y - D}; break;
    case tdLeft: P[0] = {X - AExtra, Y}, P[1] = {X + D, Y - H}, P[2] = {X + D, Y + H}; break;
    case tdRight: P[0] = {X + AExtra, Y}, P[1] = {X - D, Y + H}, P[2] = {X - D, Y - H}; break;
    }
    C.Polygon(P, 2);
}

} // namespace

void QVDisplayMarkerDrawSize(TQLCanvas& ACanvas, int32_t X, int32_t Y, TQVDisplayMarkerShape AShape, int32_t ASize,
                             int32_t AExtra, bool AVertical)
{
    if (ASize < 0)
        throw std::invalid_argument("QVDisplayMarkerDrawSize: negative size " + std::to_string(ASize));
    if (AExtra < 0)
        throw std::invalid_argument("QVDisplayMarkerDrawSize: negative extra " + std::to_string(AExtra));

    const int32_t S = ASize + AExtra;
    const TRect Box{X - S, Y - S, X + S + 1, Y + S + 1};
    switch (AShape) {
    case msDot: {
        TQLCanvasBrush& Brush = ACanvas.GetBrush();
        const TQLCanvasBrush Saved = Brush;
        Brush.SetColor(ACanvas.GetPen().GetColor());
        Brush.SetStyle(bsSolid);
        ACanvas.Ellipse(X - 1 - AExtra, Y - 1 - AExtra, X + 2 + AExtra, Y + 2 + AExtra);
        ACanvas.GetBrush() = Saved;
        break;
    }
    case msCircle: ACanvas.EllipseRect(Box); break;
    case msSquare: ACanvas.RectangleRect(Box); break;
    case msDiamond: {
        const TPoint P[4] = {{X, Y - S}, {X - S, Y}, {X, Y + S}, {X + S, Y}};
        ACanvas.Polygon(P, 3);
        break;
    }
    case msPlus: DrawPlus(ACanvas, X, Y, S); break;
    case msCross: DrawCross(ACanvas, X, Y, S); break;
    case msStar:
        DrawPlus(ACanvas, X, Y, S);
        DrawCross(ACanvas, X, Y, S);
        break;
    case msTriangleUp: DrawTriangle(ACanvas, X, Y, ASize, AExtra, AVertical ? tdLeft : tdUp); break;
    case msTriangleDown: DrawTriangle(ACanvas, X, Y, ASize, AExtra, AVertical ? tdRight : tdDown); break;
    case msTriangleLeft: DrawTriangle(ACanvas, X, Y, ASize, AExtra, AVertical ? tdDown : tdLeft); break;
    case msTriangleRight: DrawTriangle(ACanvas, X, Y, ASize, AExtra, AVertical ? tdUp : tdRight); break;
    case msHorzLine:
        if (AVertical)
            DrawVertLine(ACanvas, X, Y, S);
        else
            DrawHorzLine(ACanvas, X, Y, S);
        break;
    case msVertLine:
        if (AVertical)
            DrawHorzLine(ACanvas, X, Y, S);
        else
            DrawVertLine(ACanvas, X, Y, S);
        break;
    }
}

} // namespace qv
