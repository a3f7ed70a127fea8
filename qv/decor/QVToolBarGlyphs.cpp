// The tool bar glyphs: each one a few lines, polygons and ellipses on a 16-pixel grid.
#include "qv/decor/QVToolBarGlyphs.h"

#include <initializer_list>
#include <vector>

namespace qv {

namespace {

// Drawing in cell coordinates.
struct TGlyphPen {
    TQLCanvas& C;
    int32_t X0, Y0;

    void Line(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
    {
        C.MoveTo(X0 + AX0, Y0 + AY0);
        C.LineTo(X0 + AX1, Y0 + AY1);
    }
    void Fill(int32_t AL, int32_t AT, int32_t AR, int32_t AB) { C.FillRect(TRect{X0 + AL, Y0 + AT, X0 + AR, Y0 + AB}); }
    void Frame(int32_t AL, int32_t AT, int32_t AR, int32_t AB)
    {
        C.GetBrush().SetStyle(bsClear);
        C.Rectangle(X0 + AL, Y0 + AT, X0 + AR, Y0 + AB);
        C.GetBrush().SetStyle(bsSolid);
    }
    void Poly(std::initializer_list<TPoint> APoints)
    {
        std::vector<TPoint> P;
        for (const TPoint& Q : APoints)
            P.push_back(TPoint{X0 + Q.X, Y0 + Q.Y});
        C.Polygon(P.data(), static_cast<int32_t>(P.size()) - 1);
    }
    // A magnifier: a ring with its handle to the lower right.
    void Magnifier()
    {
        C.GetBrush().SetStyle(bsClear);
        C.Ellipse(X0 + 1, Y0 + 1, X0 + 11, Y0 + 11);
        C.GetBrush().SetStyle(bsSolid);
        C.SetPenWidth(2);
        Line(10, 10, 14, 14);
        C.SetPenWidth(1);
    }
    // An arrow head pointing left (ADir -1) or right (1) with its tip at (AX, AY).
    void Head(int32_t AX, int32_t AY, int32_t ADir)
    {
        Poly({{AX, AY}, {AX - 4 * ADir, AY - 4}, {AX - 4 * ADir, AY + 4}});
    }
};

} // namespace

void QVDrawToolBarGlyph(TQLCanvas& ACanvas, int32_t AIndex, int32_t AX, int32_t AY, TAlphaColor AColor)
{
    ACanvas.SetPenStyle(psSolid);
    ACanvas.SetPenWidth(1);
    ACanvas.GetPen().SetColor(AColor);
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(AColor);
    TGlyphPen G{ACanvas, AX, AY};
    switch (AIndex) {
    case 2: // run: a play triangle
        G.Poly({{5, 3}, {12, 8}, {5, 13}});
        break;
    case 3: // hold: two bars
        G.Fill(4, 3, 7, 13);
        G.Fill(9, 3, 12, 13);
        break;
    case 4: // zoom in: magnifier with a plus
        G.Magnifier();
        G.Line(4, 6, 9, 6);
        G.Line(6, 4, 6, 9);
        break;
    case 5: // zoom out: magnifier with a minus
        G.Magnifier();
        G.Line(4, 6, 9, 6);
        break;
    case 6: // zoom off: a frame with arrows out to its corners
        G.Frame(4, 4, 12, 12);
        G.Line(1, 1, 5, 5);
        G.Line(1, 1, 4, 1);
        G.Line(1, 1, 1, 4);
        G.Line(14, 14, 10, 10);
        G.Line(14, 14, 11, 14);
        G.Line(14, 14, 14, 11);
        break;
    case 7: // print: a printer with its sheet
        G.Frame(4, 1, 12, 6);
        G.Fill(1, 6, 15, 12);
        G.Frame(4, 10, 12, 15);
        break;
    case 8: // save: a disk outline with its shutter and label
        ACanvas.GetBrush().SetStyle(bsClear);
        G.Poly({{1, 1}, {12, 1}, {14, 3}, {14, 14}, {1, 14}});
        ACanvas.GetBrush().SetStyle(bsSolid);
        G.Fill(4, 2, 11, 6);
        G.Frame(3, 9, 12, 14);
        break;
    case 9: // copy: two sheets
        G.Frame(1, 1, 9, 11);
        G.Frame(6, 5, 14, 15);
        G.Line(8, 8, 12, 8);
        G.Line(8, 11, 12, 11);
        break;
    case 10: // setup: three sliders
        for (int32_t Y : {3, 8, 13})
            G.Line(1, Y, 15, Y);
        G.Fill(3, 1, 6, 6);
        G.Fill(9, 6, 12, 11);
        G.Fill(5, 11, 8, 16);
        break;
    case 11: // previous zoom: an arrow to the left
        G.Head(2, 8, -1);
        G.Line(5, 8, 14, 8);
        break;
    case 12: // next zoom: an arrow to the right
        G.Head(13, 8, 1);
        G.Line(1, 8, 10, 8);
        break;
    case 13: // zoom both directions: a frame with a cross of arrows
        G.Frame(3, 3, 13, 13);
        G.Line(8, 1, 8, 15);
        G.Line(1, 8, 15, 8);
        break;
    case 14: // zoom mode: a magnifier over a dashed box
        G.Magnifier();
        G.Frame(3, 3, 9, 9);
        break;
    case 15: // pan mode: arrows in four directions
        G.Line(8, 1, 8, 15);
        G.Line(1, 8, 15, 8);
        G.Poly({{8, 0}, {5, 3}, {11, 3}});
        G.Poly({{8, 15}, {5, 12}, {11, 12}});
        G.Poly({{0, 8}, {3, 5}, {3, 11}});
        G.Poly({{15, 8}, {12, 5}, {12, 11}});
        break;
    case 16: // zoom one direction: a double arrow across
        G.Line(2, 8, 13, 8);
        G.Head(1, 8, -1);
        G.Head(14, 8, 1);
        break;
    default: break;
    }
}

} // namespace qv
