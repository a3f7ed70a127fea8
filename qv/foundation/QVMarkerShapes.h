#pragma once
// The point symbols that markers, cursor marks and channel points share, and the one routine
// that draws them.

#include "qv/foundation/QLEnumInfo.h"

#include <cstdint>

namespace qv {

class TQLCanvas;

// Symbols by value; stored forms and the logic use the values, so their order is fixed.
enum TQVDisplayMarkerShape : uint8_t {
    msDot,           // 0: a small filled disc in the pen's colour
    msCircle,        // 1
    msSquare,        // 2
    msDiamond,       // 3
    msPlus,          // 4
    msCross,         // 5
    msStar,          // 6: plus and cross
    msTriangleUp,    // 7
    msTriangleDown,  // 8
    msTriangleLeft,  // 9
    msTriangleRight, // 10
    msHorzLine,      // 11
    msVertLine       // 12
};

// The symbols a channel can draw at its samples.
enum TQVScopePointsShape : uint8_t { psCircle, psSquare, psDiamond, psPlus, psCross, psStar };

// The marker shape that draws a channel's point symbol. A value outside the enumeration
// raises std::invalid_argument naming it.
TQVDisplayMarkerShape QVMarkerShapeOf(TQVScopePointsShape AShape);

// Whether a highlighted symbol needs a pen 2 pixels wider to show round it: the line-only
// shapes plus, cross, star and the two lines (bit mask 6256 over values below 16).
constexpr bool QVMarkerShapeNeedsWiderPen(uint32_t AShape)
{
    return AShape < 16 && ((6256u >> AShape) & 1u) != 0;
}

// Draws the symbol of AShape at (X, Y) with the canvas's current pen and brush.
//
// With s = ASize + AExtra the symmetric symbols fill the box from (X - s, Y - s) to
// (X + s + 1, Y + s + 1), right and bottom outside: circle (EllipseRect), square
// (RectangleRect), diamond (Polygon through the four middles of the box's pixel edges),
// plus (a vertical then a horizontal line through the centre), cross (the two diagonals),
// star (plus, then cross), and the horizontal and vertical line (edge to edge through the
// centre). The dot ignores ASize: a 3 by 3 disc grown by AExtra, filled in the pen's colour.
//
// A triangle points at (X, Y): its tip lies on the point and its base, 2 * s wide, lies
// 2 * ASize away on the far side (a triangle "pointing up" hangs below the point). AExtra
// moves the tip and the base AExtra pixels outward, so that a highlight drawn with AExtra 1
// rims the plain symbol.
//
// AVertical turns the symbol with a turned display: the triangles up, down, left and right
// point left, right, down and up, and the horizontal and vertical lines swap.
//
// Values above msVertLine draw nothing. A negative ASize or AExtra raises
// std::invalid_argument naming the value. The brush comes back as it was; the pen position
// is left at the end of the last line drawn.
void QVDisplayMarkerDrawSize(TQLCanvas& ACanvas, int32_t X, int32_t Y, TQVDisplayMarkerShape AShape, int32_t ASize,
                             int32_t AExtra, bool AVertical);

} // namespace qv

QL_DECLARE_ENUM(qv::TQVDisplayMarkerShape, "msDot", "msCircle", "msSquare", "msDiamond", "msPlus", "msCross", "msStar",
                "msTriangleUp", "msTriangleDown", "msTriangleLeft", "msTriangleRight", "msHorzLine", "msVertLine")
QL_DECLARE_ENUM(qv::TQVScopePointsShape, "psCircle", "psSquare", "psDiamond", "psPlus", "psCross", "psStar")
