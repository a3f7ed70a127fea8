#pragma once
// The glyphs of the tool bar buttons, drawn as vector shapes with the canvas's primitives
// into a 16 by 16 cell. Indexes name roles: 2 run, 3 hold, 4 zoom in, 5 zoom out, 6 zoom
// off, 7 print, 8 save, 9 copy, 10 setup, 11 previous zoom, 12 next zoom, 13 zoom both
// directions, 14 zoom mode, 15 pan mode, 16 zoom one direction. Any other index draws
// nothing.

#include "qv/foundation/QLCanvas.h"

#include <cstdint>

namespace qv {

inline constexpr int32_t QVToolBarGlyphCount = 17;

// Draws glyph AIndex in AColor into the cell whose top left is (AX, AY). The pen and brush
// are left in AColor.
void QVDrawToolBarGlyph(TQLCanvas& ACanvas, int32_t AIndex, int32_t AX, int32_t AY, TAlphaColor AColor);

} // namespace qv
