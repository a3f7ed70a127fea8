#pragma once
// A canvas that draws nothing and writes down every drawing call instead, with its arguments
// and the pen, brush and font in force at that moment. Tests assert on the log: what was
// drawn, where, and in which colours.
//
// Text metrics are fixed so that layouts are predictable: every character (UTF-8 code point)
// is 6 pixels wide and every text, the empty one included, is 13 pixels high.

#include "qv/foundation/QLCanvas.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace qv {

struct TQLCanvasRecord {
    // The operation as the caller named it: "MoveTo", "LineTo", "SetPixel", "Rectangle",
    // "RectangleRect", "Ellipse", "EllipseRect", "FillRect", "DrawFocusRect", "Polygon",
    // "TextOut", "SetClipRegion", "ClearClipRegion", "DrawBitmap", "StretchDrawBitmap",
    // "SaveState", "RestoreState", "ResetDrawState".
    std::string Op;
    // Integer arguments in call order. Rectangles give left, top, right, bottom; Polygon gives
    // x0, y0, x1, y1, ... for points[0..high]; SetClipRegion gives each rectangle's four
    // values; DrawBitmap gives x, y, width, height; StretchDrawBitmap the destination's four
    // values then the source's width and height.
    std::vector<int32_t> Args;
    std::string Text;                  // TextOut only
    TAlphaColor Color = 0;             // SetPixel only
    const TQLBitmap* Bitmap = nullptr; // DrawBitmap and StretchDrawBitmap only
    TPoint PenPos;                     // the pen position before the call (a LineTo's start)
    TAlphaColor PenColor = 0;
    int32_t PenWidth = 0;
    uint8_t PenStyle = 0;
    TAlphaColor BrushColor = 0;
    uint8_t BrushStyle = 0;
    TQLCanvasFont Font;
    int32_t TextAngle = 0;

    // A rectangle argument (the first four Args) as a TRect.
    TRect ArgRect() const;
    // Polygon points.
    std::vector<TPoint> ArgPoints() const;
};

class TQLRecordingCanvas : public TQLCanvas {
public:
    static constexpr int32_t CharWidth = 6;
    static constexpr int32_t LineHeight = 13;

    // No platform below: both return null.
    void* GetPlatformCanvas() override { return nullptr; }
    void* GetDeviceHandle() override { return nullptr; }

    void SetPixel(int32_t AX, int32_t AY, TAlphaColor AColor) override;
    void EllipseRect(const TRect& ARect) override;
    void Ellipse(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) override;
    void RectangleRect(const TRect& ARect) override;
    void Rectangle(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1) override;
    void FillRect(const TRect& ARect) override;
    void DrawFocusRect(const TRect& ARect) override;
    void Polygon(const TPoint* APoints, int32_t AHigh) override;
    void LineTo(int32_t AX, int32_t AY) override;
    void MoveTo(int32_t AX, int32_t AY) override;
    TSize TextExtent(const std::string& AText) override;
    void TextOut(int32_t AX, int32_t AY, const std::string& AText) override;
    void ClearClipRegion() override;
    void SetClipRegion(const TQLRegion& ARegion) override;
    // Recorded as "IntersectClipPolygon" (the points) and "IntersectClipEllipse" (the
    // rectangle); the recorded clip stays as it was.
    void IntersectClipPolygon(const TPoint* APoints, int32_t AHigh) override;
    void IntersectClipEllipse(const TRect& ARect) override;
    void ResetDrawState() override;
    void DrawBitmap(int32_t AX, int32_t AY, const TQLBitmap& ABitmap) override;
    void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ASource) override;
    void SaveState() override;
    void RestoreState() override;

    const std::vector<TQLCanvasRecord>& GetRecords() const { return FRecords; }
    // The records of one operation, in call order.
    std::vector<TQLCanvasRecord> Of(const std::string& AOp) const;
    // The records of any of the given operations, in call order.
    std::vector<TQLCanvasRecord> Of(std::initializer_list<const char*> AOps) const;
    size_t Count(const std::string& AOp) const;
    void ClearRecords() { FRecords.clear(); }

    // The clip in force: none when clipping is off.
    const std::optional<TQLRegion>& GetClip() const { return FClip; }

protected:
    void StateRestored() override;

private:
    TQLCanvasRecord& Record(const char* AOp);

    std::vector<TQLCanvasRecord> FRecords;
    std::optional<TQLRegion> FClip;
    std::vector<std::optional<TQLRegion>> FSavedClips;
};

} // namespace qv
