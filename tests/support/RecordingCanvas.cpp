#include "support/RecordingCanvas.h"

#include "qv/foundation/QLBitmap.h"

#include <algorithm>
#include <stdexcept>

namespace qv {

TRect TQLCanvasRecord::ArgRect() const
{
    if (Args.size() < 4)
        throw std::logic_error("TQLCanvasRecord: " + Op + " has no rectangle argument");
    return TRect{Args[0], Args[1], Args[2], Args[3]};
}

std::vector<TPoint> TQLCanvasRecord::ArgPoints() const
{
    std::vector<TPoint> Points;
    for (size_t I = 0; I + 1 < Args.size(); I += 2)
        Points.push_back(TPoint{Args[I], Args[I + 1]});
    return Points;
}

TQLCanvasRecord& TQLRecordingCanvas::Record(const char* AOp)
{
    TQLCanvasRecord& R = FRecords.emplace_back();
    R.Op = AOp;
    R.PenPos = FPenPos;
    R.PenColor = FPen.GetColor();
    R.PenWidth = FPen.GetWidth();
    R.PenStyle = FPen.GetStyle();
    R.BrushColor = FBrush.GetColor();
    R.BrushStyle = FBrush.GetStyle();
    R.Font = FFont;
    R.TextAngle = FTextAngle;
    return R;
}

void TQLRecordingCanvas::SetPixel(int32_t AX, int32_t AY, TAlphaColor AColor)
{
    TQLCanvasRecord& R = Record("SetPixel");
    R.Args = {AX, AY};
    R.Color = AColor;
}

void TQLRecordingCanvas::EllipseRect(const TRect& ARect)
{
    Record("EllipseRect").Args = {ARect.Left, ARect.Top, ARect.Right, ARect.Bottom};
}

void TQLRecordingCanvas::Ellipse(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
{
    Record("Ellipse").Args = {AX0, AY0, AX1, AY1};
}

void TQLRecordingCanvas::RectangleRect(const TRect& ARect)
{
    Record("RectangleRect").Args = {ARect.Left, ARect.Top, ARect.Right, ARect.Bottom};
}

void TQLRecordingCanvas::Rectangle(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
{
    Record("Rectangle").Args = {AX0, AY0, AX1, AY1};
}

void TQLRecordingCanvas::FillRect(const TRect& ARect)
{
    Record("FillRect").Args = {ARect.Left, ARect.Top, ARect.Right, ARect.Bottom};
}

void TQLRecordingCanvas::DrawFocusRect(const TRect& ARect)
{
    Record("DrawFocusRect").Args = {ARect.Left, ARect.Top, ARect.Right, ARect.Bottom};
}

void TQLRecordingCanvas::Polygon(const TPoint* APoints, int32_t AHigh)
{
    TQLCanvasRecord& R = Record("Polygon");
    for (int32_t I = 0; I <= AHigh; ++I) {
        R.Args.push_back(APoints[I].X);
        R.Args.push_back(APoints[I].Y);
    }
}

void TQLRecordingCanvas::LineTo(int32_t AX, int32_t AY)
{
    Record("LineTo").Args = {AX, AY};
    FPenPos = TPoint{AX, AY};
}

void TQLRecordingCanvas::MoveTo(int32_t AX, int32_t AY)
{
    Record("MoveTo").Args = {AX, AY};
    FPenPos = TPoint{AX, AY};
}

TSize TQLRecordingCanvas::TextExtent(const std::string& AText)
{
    // Count code points: every byte that does not continue a UTF-8 sequence.
    const auto Chars = std::count_if(AText.begin(), AText.end(),
                                     [](char C) { return (static_cast<unsigned char>(C) & 0xC0) != 0x80; });
    return TSize{static_cast<int32_t>(Chars) * CharWidth, LineHeight};
}

void TQLRecordingCanvas::TextOut(int32_t AX, int32_t AY, const std::string& AText)
{
    TQLCanvasRecord& R = Record("TextOut");
    R.Args = {AX, AY};
    R.Text = AText;
}

void TQLRecordingCanvas::ClearClipRegion()
{
    Record("ClearClipRegion");
    FClip.reset();
}

void TQLRecordingCanvas::SetClipRegion(const TQLRegion& ARegion)
{
    TQLCanvasRecord& R = Record("SetClipRegion");
    for (const TRect& Rect : ARegion.GetRects())
        R.Args.insert(R.Args.end(), {Rect.Left, Rect.Top, Rect.Right, Rect.Bottom});
    FClip = ARegion;
}

void TQLRecordingCanvas::IntersectClipPolygon(const TPoint* APoints, int32_t AHigh)
{
    TQLCanvasRecord& R = Record("IntersectClipPolygon");
    for (int32_t i = 0; i <= AHigh; ++i)
        R.Args.insert(R.Args.end(), {APoints[i].X, APoints[i].Y});
}

void TQLRecordingCanvas::IntersectClipEllipse(const TRect& ARect)
{
    Record("IntersectClipEllipse").Args = {ARect.Left, ARect.Top, ARect.Right, ARect.Bottom};
}

void TQLRecordingCanvas::ResetDrawState()
{
    Record("ResetDrawState");
    TQLCanvas::ResetDrawState();
}

void TQLRecordingCanvas::DrawBitmap(int32_t AX, int32_t AY, const TQLBitmap& ABitmap)
{
    TQLCanvasRecord& R = Record("DrawBitmap");
    R.Args = {AX, AY, ABitmap.GetWidth(), ABitmap.GetHeight()};
    R.Bitmap = &ABitmap;
}

void TQLRecordingCanvas::StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ASource)
{
    TQLCanvasRecord& R = Record("StretchDrawBitmap");
    R.Args = {ADest.Left, ADest.Top, ADest.Right, ADest.Bottom, ASource.GetWidth(), ASource.GetHeight()};
    R.Bitmap = &ASource;
}

void TQLRecordingCanvas::SaveState()
{
    Record("SaveState");
    FSavedClips.push_back(FClip);
    TQLCanvas::SaveState();
}

void TQLRecordingCanvas::RestoreState()
{
    Record("RestoreState");
    TQLCanvas::RestoreState();
}

void TQLRecordingCanvas::StateRestored()
{
    if (FSavedClips.empty())
        return;
    FClip = std::move(FSavedClips.back());
    FSavedClips.pop_back();
}

std::vector<TQLCanvasRecord> TQLRecordingCanvas::Of(const std::string& AOp) const
{
    std::vector<TQLCanvasRecord> Result;
    for (const TQLCanvasRecord& R : FRecords)
        if (R.Op == AOp)
            Result.push_back(R);
    return Result;
}

std::vector<TQLCanvasRecord> TQLRecordingCanvas::Of(std::initializer_list<const char*> AOps) const
{
    std::vector<TQLCanvasRecord> Result;
    for (const TQLCanvasRecord& R : FRecords)
        for (const char* Op : AOps)
            if (R.Op == Op) {
                Result.push_back(R);
                break;
            }
    return Result;
}

size_t TQLRecordingCanvas::Count(const std::string& AOp) const
{
    return static_cast<size_t>(
        std::count_if(FRecords.begin(), FRecords.end(), [&](const TQLCanvasRecord& R) { return R.Op == AOp; }));
}

} // namespace qv
