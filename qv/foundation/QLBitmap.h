#pragma once
// The core's own image: 32-bit premultiplied ARGB pixels (0xAARRGGBB in a uint32_t), rows
// top to bottom with no padding. A platform canvas draws into it; the display keeps one as
// its off-screen picture.

#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <vector>

namespace qv {

class TQLBitmap {
public:
    TQLBitmap() = default;
    TQLBitmap(int32_t AWidth, int32_t AHeight);

    int32_t GetWidth() const { return FWidth; }
    int32_t GetHeight() const { return FHeight; }
    // Row length in bytes.
    int32_t GetStride() const { return FWidth * 4; }
    bool IsEmpty() const { return FWidth == 0 || FHeight == 0; }

    // Changes the size; the content is cleared to transparent black when the size changes.
    // A negative size raises std::invalid_argument naming the value.
    void SetSize(int32_t AWidth, int32_t AHeight);

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
    std::vector<uint32_t> FPixels;
};

// Premultiplies a straight 0xAARRGGBB colour.
uint32_t QLPremultiply(TAlphaColor AColor);

} // namespace qv
