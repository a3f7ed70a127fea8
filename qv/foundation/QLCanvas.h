#pragma once
// The one abstract drawing surface of the library: integer pixels, a current pen, brush and
// font. Picture code holds a TQLCanvas and never knows the platform; qv::qt provides the
// surface over QPainter, tests use a recording surface.

#include "qv/foundation/QLRegion.h"
#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qv {

class TQLBitmap;
class TQVDisplayPen;
class TQVDisplayBrush;
class TQVDisplayFont;

// Line styles of the raw pen.
// Style 2 is the dashed form that clamped cursors and markers use.
enum TQLPenStyle : uint8_t { psSolid = 0, psDot = 1, psDash = 2, psDashDot = 3, psDashDotDot = 4, psClear = 5 };
// Fill styles of the raw brush.
enum TQLBrushStyle : uint8_t { bsSolid = 0, bsClear = 1 };

using TFontStyles = uint8_t;
inline constexpr TFontStyles fsBold = 0x01;
inline constexpr TFontStyles fsItalic = 0x02;
inline constexpr TFontStyles fsUnderline = 0x04;
inline constexpr TFontStyles fsStrikeOut = 0x08;

// The surface's current raw pen. Drawing operations read it when they draw.
class TQLCanvasPen {
public:
    int32_t GetWidth() const { return FWidth; }
    void SetWidth(int32_t AValue) { FWidth = AValue < 1 ? 1 : AValue; }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { FColor = AValue; }
    uint8_t GetStyle() const { return FStyle; }
    void SetStyle(uint8_t AValue) { FStyle = AValue; }
    friend bool operator==(const TQLCanvasPen&, const TQLCanvasPen&) = default;

private:
    int32_t FWidth = 1;
    TAlphaColor FColor = 0xFF000000;
    uint8_t FStyle = psSolid;
};

// The surface's current raw brush.
class TQLCanvasBrush {
public:
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { FColor = AValue; }
    uint8_t GetStyle() const { return FStyle; }
    void SetStyle(uint8_t AValue) { FStyle = AValue; }
    friend bool operator==(const TQLCanvasBrush&, const TQLCanvasBrush&) = default;

private:
    TAlphaColor FColor = 0xFFFFFFFF;
    uint8_t FStyle = bsSolid;
};

// The surface's current font.
struct TQLCanvasFont {
    std::string Name = "Arial";
    int32_t Size = 8; // points
    TFontStyles Style = 0;
    TAlphaColor Color = 0xFF000000;
    friend bool operator==(const TQLCanvasFont&, const TQLCanvasFont&) = default;
};

class TQLCanvas {
public:
    TQLCanvas() = default;
    TQLCanvas(const TQLCanvas&) = delete;
    TQLCanvas& operator=(const TQLCanvas&) = delete;
    virtual ~TQLCanvas() = default;

    // The operations, in their fixed order.
    virtual TQLCanvasPen& GetPen() { return FPen; }
    virtual TQLCanvasBrush& GetBrush() { return FBrush; }
    virtual void* GetPlatformCanvas() = 0;
    virtual void SetTextColor(TAlphaColor AColor) { FFont.Color = AColor; }
    virtual void* GetDeviceHandle() = 0;
    virtual int32_t GetPenWidth() { return FPen.GetWidth(); }
    virtual void SetPenWidth(int32_t AWidth) { FPen.SetWidth(AWidth); }
    virtual void SetPenStyle(uint8_t AStyle) { FPen.SetStyle(AStyle); }
    virtual void SetPixel(int32_t AX, int32_t AY, TAlphaColor AColor) = 0;
    virtual void EllipseRect(const TRect& ARect) { Ellipse(ARect.Left, ARect.Top, ARect.Right, ARect.Bottom); }
    virtual void Ellipse(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) = 0;
    virtual void RectangleRect(const TRect& ARect) { Rectangle(ARect.Left, ARect.Top, ARect.Right, ARect.Bottom); }
    virtual void Rectangle(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) = 0;
    virtual void FillRect(const TRect& ARect) = 0;
    virtual void DrawFocusRect(const TRect& ARect) = 0;
    // AHigh is the last valid index: the count minus 1.
    virtual void Polygon(const TPoint* APoints, int32_t AHigh) = 0;
    virtual void LineTo(int32_t AX, int32_t AY) = 0;
    virtual void MoveTo(int32_t AX, int32_t AY) { FPenPos = TPoint{AX, AY}; }
    virtual TSize TextExtent(const std::string& AText) = 0;
    virtual int32_t TextWidth(const std::string& AText) { return TextExtent(AText).cx; }
    virtual int32_t TextHeight(const std::string& AText) { return TextExtent(AText).cy; }
    virtual void TextOut(int32_t AX, int32_t AY, const std::string& AText) = 0;
    virtual void ClearClipRegion() = 0;
    virtual void SetClipRegion(const TQLRegion& ARegion) = 0;
    // Narrow the clip in force to the inside of a polygon (even-odd rule; points 0..AHigh) or
    // of the ellipse inscribed in ARect. RestoreState brings the wider clip back.
    virtual void IntersectClipPolygon(const TPoint* APoints, int32_t AHigh) = 0;
    virtual void IntersectClipEllipse(const TRect& ARect) = 0;
    virtual void SetTextAngle(int32_t ADegrees) { FTextAngle = ADegrees; }
    virtual void ApplyPen(const TQVDisplayPen& APen);
    virtual void ApplyBrush(const TQVDisplayBrush& ABrush);
    virtual void ApplyFont(const TQVDisplayFont& AFont);
    virtual void* GetGraphics() { return GetPlatformCanvas(); }
    virtual void ResetDrawState();

    // Beyond the fixed operations: images, state saving and the read-back of current state.

    // Draws an image with its top-left corner at (AX, AY), alpha-composed over the surface.
    virtual void DrawBitmap(int32_t AX, int32_t AY, const TQLBitmap& ABitmap) = 0;
    // Draws ASource stretched into ADest.
    virtual void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ASource) = 0;

    // Pushes and pops the whole drawing state, clip included. TQLCanvasSave pairs them.
    virtual void SaveState();
    virtual void RestoreState();

    const TQLCanvasFont& GetFont() const { return FFont; }
    void SetFont(const TQLCanvasFont& AFont) { FFont = AFont; }
    TAlphaColor GetTextColor() const { return FFont.Color; }
    int32_t GetTextAngle() const { return FTextAngle; }
    TPoint GetPenPos() const { return FPenPos; }

protected:
    // Called after RestoreState has put back the base state, so that a platform surface can
    // reapply the clip it keeps.
    virtual void StateRestored() {}

    TQLCanvasPen FPen;
    TQLCanvasBrush FBrush;
    TQLCanvasFont FFont;
    TPoint FPenPos;
    int32_t FTextAngle = 0;

private:
    struct TSavedState {
        TQLCanvasPen Pen;
        TQLCanvasBrush Brush;
        TQLCanvasFont Font;
        TPoint PenPos;
        int32_t TextAngle;
    };
    std::vector<TSavedState> FSaved;
};

// Saves the canvas state when built; the state, clip included, comes back when it goes.
class TQLCanvasSave {
public:
    explicit TQLCanvasSave(TQLCanvas& ACanvas) : FCanvas(&ACanvas) { FCanvas->SaveState(); }
    TQLCanvasSave(TQLCanvasSave&& AOther) noexcept : FCanvas(AOther.FCanvas) { AOther.FCanvas = nullptr; }
    TQLCanvasSave(const TQLCanvasSave&) = delete;
    TQLCanvasSave& operator=(const TQLCanvasSave&) = delete;
    TQLCanvasSave& operator=(TQLCanvasSave&&) = delete;
    ~TQLCanvasSave()
    {
        if (FCanvas)
            FCanvas->RestoreState();
    }

private:
    TQLCanvas* FCanvas;
};

} // namespace qv
