#pragma once
// The core's own image: 32-bit premultiplied ARGB pixels (0xAARRGGBB in a uint32_t), rows
// top to bottom with no padding. A platform canvas draws into it; the display keeps one as
// its off-screen picture.
//
// A bitmap has a logical size, in which pictures are laid out and drawn, and a device pixel
// ratio: its pixels number ceil(logical size * ratio) each way, so that on a screen of
// ratio 1.5 or 2 a picture keeps its logical size and stays sharp. At ratio 1 (the
// default) the two sizes are one. GetWidth, GetHeight, the scan lines and the pixel access
// are in device pixels; a canvas over the bitmap draws in logical units.

#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <vector>

namespace qv {

class TQLBitmap {
public:
    TQLBitmap() = default;
    TQLBitmap(int32_t AWidth, int32_t AHeight, double ADevicePixelRatio = 1.0);

    // Device pixels.
    int32_t GetWidth() const { return FWidth; }
    int32_t GetHeight() const { return FHeight; }
    // The size the picture is laid out in.
    int32_t GetLogicalWidth() const { return FLogicalWidth; }
    int32_t GetLogicalHeight() const { return FLogicalHeight; }
    double GetDevicePixelRatio() const { return FDevicePixelRatio; }
    // Row length in bytes.
    int32_t GetStride() const { return FWidth * 4; }
    bool IsEmpty() const { return FWidth == 0 || FHeight == 0; }

    // Changes the logical size and the ratio; the content is cleared to transparent black
    // when the size in device pixels changes. A negative size, a ratio that is not a finite
    // number in (0, 16], or a device size beyond 32-bit pixels raises std::invalid_argument
    // naming the value, and the bitmap stays as it was.
    void SetSize(int32_t AWidth, int32_t AHeight, double ADevicePixelRatio = 1.0);

    uint32_t* GetBits() { return FPixels.data(); }
    const uint32_t* GetBits() const { return FPixels.data(); }
    uint32_t* GetScanLine(int32_t AY) { return FPixels.data() + static_cast<size_t>(AY) * FWidth; }
    const uint32_t* GetScanLine(int32_t AY) const { return FPixels.data() + static_cast<size_t>(AY) * FWidth; }

    // Checked single-pixel access; out-of-range coordinates raise std::out_of_range.
    uint32_t GetPixel(int32_t AX, int32_t AY) const;
    void SetPixel(int32_t AX, int32_t AY, uint32_t AValue);

    void Fill(uint32_t APremultipliedColor);

private:
    int32_t FWidth = 0;
    int32_t FHeight = 0;
    int32_t FLogicalWidth = 0;
    int32_t FLogicalHeight = 0;
    double FDevicePixelRatio = 1.0;
    std::vector<uint32_t> FPixels;
};

// Premultiplies a straight 0xAARRGGBB colour.
uint32_t QLPremultiply(TAlphaColor AColor);

} // namespace qv
