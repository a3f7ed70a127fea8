#pragma once
// Plain value types shared by every subsystem: pixels, rectangles, real points, colours.

#include <cstdint>
#include <string>

namespace qv {

using TAlphaColor = uint32_t; // 0xAARRGGBB

struct TPoint {
    int32_t X = 0;
    int32_t Y = 0;
    friend bool operator==(const TPoint&, const TPoint&) = default;
};

// Right and bottom lie outside the rectangle.
struct TRect {
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Right = 0;
    int32_t Bottom = 0;

    int32_t Width() const { return Right - Left; }
    int32_t Height() const { return Bottom - Top; }
    bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    bool Contains(const TPoint& P) const { return P.X >= Left && P.X < Right && P.Y >= Top && P.Y < Bottom; }
    friend bool operator==(const TRect&, const TRect&) = default;
};

struct TSize {
    int32_t cx = 0;
    int32_t cy = 0;
    friend bool operator==(const TSize&, const TSize&) = default;
};

struct TQVRealPoint {
    double X = 0.0;
    double Y = 0.0;
    friend bool operator==(const TQVRealPoint&, const TQVRealPoint&) = default;
};

// Old and new limits of a zoom operation, in this order.
struct TQVRealRanges {
    double XOldMin = 0.0;
    double YOldMin = 0.0;
    double XOldMax = 0.0;
    double YOldMax = 0.0;
    double XMin = 0.0;
    double YMin = 0.0;
    double XMax = 0.0;
    double YMax = 0.0;
    friend bool operator==(const TQVRealRanges&, const TQVRealRanges&) = default;
};

inline TRect QLMakeRect(int32_t X0, int32_t Y0, int32_t X1, int32_t Y1)
{
    return TRect{X0, Y0, X1, Y1};
}
inline TPoint QLMakePoint(int32_t X, int32_t Y)
{
    return TPoint{X, Y};
}

// Rounds to the nearest integer, ties to even, the one rounding of value to pixel. NaN
// gives 0 and values beyond the 32-bit range are held to it, so no conversion is undefined.
int32_t QLRoundToInt(double AValue);

// Intersection of two rectangles; empty (all zero) when they do not overlap.
TRect QLIntersectRect(const TRect& A, const TRect& B);

// Mouse and keyboard state passed with mouse events.
enum TMouseButton : uint8_t { mbLeft, mbRight, mbMiddle };

using TShiftState = uint16_t;
inline constexpr TShiftState ssShift = 0x01;
inline constexpr TShiftState ssAlt = 0x02;
inline constexpr TShiftState ssCtrl = 0x04;
inline constexpr TShiftState ssLeft = 0x08;
inline constexpr TShiftState ssRight = 0x10;
inline constexpr TShiftState ssMiddle = 0x20;
inline constexpr TShiftState ssDouble = 0x40;

using TCursor = int16_t;
inline constexpr TCursor crDefault = 0;
inline constexpr TCursor crArrow = -2;
inline constexpr TCursor crCross = -3;
inline constexpr TCursor crIBeam = -4;
inline constexpr TCursor crSizeNESW = -6;
inline constexpr TCursor crSizeNS = -7;
inline constexpr TCursor crSizeNWSE = -8;
inline constexpr TCursor crSizeWE = -9;
inline constexpr TCursor crHourGlass = -11;
inline constexpr TCursor crDrag = -12;
inline constexpr TCursor crNo = -18;
inline constexpr TCursor crSizeAll = -22;
inline constexpr TCursor crHandPoint = -21;

} // namespace qv
