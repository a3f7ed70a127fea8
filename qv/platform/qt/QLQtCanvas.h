#pragma once
// The drawing surface over a QPainter.
//
// Pixel conventions (the library's pixel arithmetic relies on them):
// - No anti-aliasing for shapes and lines; text keeps Qt's text anti-aliasing.
// - A pen of width 1 draws a line from the pen position up to, but not including, the end
//   pixel: the pen position moves to the end and the next line starts there. Pixels run in
//   the line's own direction, so a line and its reverse leave out opposite ends. A line of
//   zero length draws nothing. Lines of width 1 keep the dash phase from one LineTo to the
//   next, and MoveTo starts the pattern again, so a dashed polyline of short steps still
//   shows its dashes. Wider pens stroke the segment with round ends (square-cut ends for
//   dashed pens), end pixel included.
// - Rectangle, RectangleRect, FillRect, Ellipse and EllipseRect cover columns left..right-1
//   and rows top..bottom-1; the outline lies inside that box, pen width 1 on its outermost
//   pixels, a wider pen growing inward. A box with right <= left or bottom <= top draws
//   nothing.
// - Polygon(points, high) fills points[0..high] by the even-odd rule and outlines them back
//   to points[0]; with a pen of width 1 each edge is drawn like a LineTo from its first
//   vertex, so every vertex is drawn and no outline pixel twice where edges meet.
// - Pen styles: 0 solid, 1 dot (1 on, 2 off), 2 dash (6 on, 3 off), 3 dash-dot, 4
//   dash-dot-dot, 5 clear (no outline, no line). Other values draw solid. Pattern lengths
//   are pixels for width 1 and multiples of the width for wider pens.
// - SetPixel composes the colour over the pixel (source-over), like every other operation;
//   an opaque colour therefore simply sets it. Colours given to the canvas are straight
//   (not premultiplied) 0xAARRGGBB.
// - Text: TextOut(x, y) puts the top-left corner of the text box at (x, y); the baseline is
//   the font's ascent below it. Unless the brush style is clear, the text box (TextExtent
//   in size) is filled with the brush first. The text angle turns the box about (x, y),
//   counter-clockwise on screen: at 90 the text reads bottom to top and covers
//   [x, x + height) by [y - width, y); at 270 it reads top to bottom and covers
//   [x - height, x) by [y, y + width).
// - TextExtent gives the advance width and the font's line height (ascent + descent); the
//   height is the same for every one-line text, so TextHeight("Xg") is the line height.
// - Font size is in points and maps to a pixel size of round(size * 96 / 72), at least 1,
//   whatever the screen's resolution: the same font makes the same pixels on every screen
//   and in every image.
// - SaveState/RestoreState save and restore the clip together with pen, brush and font.
//
// Pen, brush and font go to the QPainter lazily: each drawing call compares the current
// state with what it last gave the painter, so SetPixel and MoveTo/LineTo with a pen of width
// 1 do not allocate. Code that changes the painter directly through GetPlatformCanvas should
// call InvalidatePlatformState afterwards.
//
// Over a bitmap with a device pixel ratio other than 1 the canvas draws in logical units and
// the painter scales them: a line of width 1 is `ratio` device pixels wide, text keeps its
// logical size and is rendered at the device's resolution.
//
// Over a painter on a vector device (SVG, PDF, QPicture) lines go out as lines, not as runs
// of pixels: each thin line is one stroke through the centres of its end pixels, so the
// file rasterised at 1:1 gives the bitmap's picture and scaled stays smooth.
//
// Text needs a QGuiApplication; without one the text operations raise std::logic_error.

#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLCanvas.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygon>
#include <QPolygonF>
#include <QRect>
#include <QRegion>

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace qv {

class TQLQtCanvas : public TQLCanvas {
public:
    // Over a painter the caller owns and keeps active for the canvas's life. The painter's
    // state is saved here and restored when the canvas goes; a clip it already has stays in
    // force under every clip region set here. An inactive painter raises
    // std::invalid_argument.
    explicit TQLQtCanvas(QPainter& APainter);
    // Over a bitmap: its pixels are drawn in place (no copy). The bitmap must outlive the
    // canvas; it may be resized meanwhile, and drawing follows it into its new pixels (the
    // clip is kept). Over an empty bitmap drawing does nothing; text metrics still work.
    explicit TQLQtCanvas(TQLBitmap& ABitmap);
    ~TQLQtCanvas() override;

    // The QPainter.
    void* GetPlatformCanvas() override;
    // The QPaintDevice the painter draws on; null over an empty bitmap.
    void* GetDeviceHandle() override;
    // The painter. Until InvalidatePlatformState, drawing goes through the painter only, so
    // that what its borrower changed (a clip, a transform) is obeyed.
    QPainter* GetPainter();

    void SetPixel(int32_t AX, int32_t AY, TAlphaColor AColor) override;
    void Ellipse(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) override;
    void Rectangle(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) override;
    void FillRect(const TRect& ARect) override;
    // A dotted frame inside the rectangle that inverts the pixels it touches; drawing it
    // twice restores them.
    void DrawFocusRect(const TRect& ARect) override;
    void Polygon(const TPoint* APoints, int32_t AHigh) override;
    void LineTo(int32_t AX, int32_t AY) override;
    void MoveTo(int32_t AX, int32_t AY) override;
    TSize TextExtent(const std::string& AText) override;
    void TextOut(int32_t AX, int32_t AY, const std::string& AText) override;
    void ClearClipRegion() override;
    // An empty region clips everything away.
    void SetClipRegion(const TQLRegion& ARegion) override;
    void IntersectClipPolygon(const TPoint* APoints, int32_t AHigh) override;
    void IntersectClipEllipse(const TRect& ARect) override;
    void DrawBitmap(int32_t AX, int32_t AY, const TQLBitmap& ABitmap) override;
    // Nearest-neighbour scaling, alpha-composed.
    void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ASource) override;
    void SaveState() override;

    // Forgets what was given to the painter, so that the next call applies pen, brush, font
    // and clip again.
    void InvalidatePlatformState();
    // Whether the painter draws onto a vector device.
    bool GetIsVector() const { return FVector; }

protected:
    void StateRestored() override;

private:
    struct TClipState {
        bool Active = false;
        QRegion Region;
    };

    // Whether there is an active painter to draw with; over a bitmap, rewraps the pixels
    // first when the bitmap was reallocated or resized.
    bool Ready();
    // The same without drawing the gathered polyline first: for a line that may continue it.
    bool ReadyKeepingLine();
    void BeginOnBitmap();
    void PreparePainter();
    void ApplyClip();
    // The clip in force narrowed to ARegion.
    void IntersectClip(const QRegion& ARegion);
    void SyncPen();
    void SyncBrush();
    void SyncFont();
    const QColor& LineColor();
    void ThinLine(TPoint AFrom, TPoint ATo);
    void VectorThinLine(TPoint AFrom, TPoint ATo);
    // Draws the thin lines gathered on a vector device as one polyline.
    void FlushLine();
    bool InsideSoftClip(QPointF AFrom, QPointF ATo) const;
    // A line on a vector device, cut to the canvas's own clip where it clips itself.
    void DrawVectorLine(QPointF AFrom, QPointF ATo);
    // Where the canvas clips itself and AShape is not wholly inside the clip: draws the
    // shape's fill and outline cut to the clip with the painter's brush and pen, and
    // returns true. Returns false when the shape is to be drawn as it is.
    bool SoftClipDraws(const QPainterPath& AShape);
    void FillSpan(int32_t AX, int32_t AY, int32_t AW, int32_t AH, const QColor& AColor);
    // Where opaque spans may be written straight into the bitmap's pixels: the pixels, or
    // null when the painter must draw them (no bitmap of our own, a transform, another
    // composition mode, or a clip that is not one rectangle).
    uint32_t* DirectPixels();
    void RequireGui() const;
    // The advance width of a text in the current font, remembered per font: axes ask for the
    // same tick texts on every frame, and shaping them is the dearest part of text.
    int CachedTextWidth(const std::string& AText, const QString& AQText);

    QPainter* FPainter = nullptr;
    std::unique_ptr<QPainter> FOwnPainter;
    bool FExternal = false;
    bool FVector = false;
    // The device ignores clipping (Qt's SVG generator): lines, spans and shapes are cut to
    // the clip here; FSoftClipActive while a clip is in force.
    bool FSoftClip = false;
    bool FSoftClipActive = false;
    QRegion FSoftRegion;
    QPainterPath FSoftPath;
    // Thin lines gathered on a vector device, and the pen they are drawn with.
    QPolygonF FLine;
    TQLCanvasPen FLinePen;

    TQLBitmap* FBitmap = nullptr;
    QImage FImage;
    const uint32_t* FWrappedBits = nullptr;
    int32_t FWrappedWidth = 0;
    int32_t FWrappedHeight = 0;
    double FWrappedRatio = 1.0;
    // Stored pixels per logical pixel for spans written directly; 0 at a fractional ratio.
    int32_t FDirectScale = 1;

    // Area worth drawing a thin line through, in painter coordinates.
    QRect FVisible;
    // The clip as one rectangle in pixels (the whole bitmap without a clip), and whether the
    // clip is such a rectangle; kept by ApplyClip.
    QRect FDirectClip;
    bool FDirectClipSimple = false;
    bool FPainterLent = false;

    // What the painter holds now.
    bool FPenValid = false;
    TQLCanvasPen FAppliedPen;
    bool FBrushValid = false;
    TQLCanvasBrush FAppliedBrush;
    bool FFontValid = false;
    TQLCanvasFont FAppliedFont;
    QFont FQFont;
    std::optional<QFontMetrics> FMetrics;
    struct TTextWidths {
        TQLCanvasFont Font;
        std::unordered_map<std::string, int> Widths;
    };
    // Most recently used font first; a few fonts, each with a bounded number of texts.
    std::vector<TTextWidths> FTextWidths;
    TAlphaColor FLineColorArgb = 0;
    QColor FLineColor;
    bool FLineColorValid = false;

    // Pixels of the dash pattern already drawn since the last MoveTo.
    uint32_t FDashPhase = 0;

    bool FHasBaseClip = false;
    QRegion FBaseClip;
    TClipState FClip;
    std::vector<TClipState> FSavedClips;
};

} // namespace qv
