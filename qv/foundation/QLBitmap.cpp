#include "qv/foundation/QLBitmap.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

TQLBitmap::TQLBitmap(int32_t AWidth, int32_t AHeight, double ADevicePixelRatio)
{
    SetSize(AWidth, AHeight, ADevicePixelRatio);
}

namespace {

// Device pixels that cover a logical length at a ratio. The small allowance keeps a product
// such as 3 * 1.1 from counting a pixel that it only touches through rounding.
int64_t DevicePixels(int32_t ALogical, double ARatio)
{
    if (ARatio == 1.0)
        return ALogical;
    return static_cast<int64_t>(std::ceil(static_cast<double>(ALogical) * ARatio - 1e-9));
}

} // namespace

void TQLBitmap::SetSize(int32_t AWidth, int32_t AHeight, double ADevicePixelRatio)
{
    if (AWidth < 0 || AHeight < 0)
        throw std::invalid_argument("TQLBitmap: invalid size " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight));
    if (!std::isfinite(ADevicePixelRatio) || ADevicePixelRatio <= 0.0 || ADevicePixelRatio > 16.0)
        throw std::invalid_argument("TQLBitmap: invalid device pixel ratio " + std::to_string(ADevicePixelRatio));
    const int64_t Width = DevicePixels(AWidth, ADevicePixelRatio);
    const int64_t Height = DevicePixels(AHeight, ADevicePixelRatio);
    if (Width > INT32_MAX || Height > INT32_MAX)
        throw std::invalid_argument("TQLBitmap: size " + std::to_string(AWidth) + " x " + std::to_string(AHeight) +
                                    " at ratio " + std::to_string(ADevicePixelRatio) + " is too large");
    // The pixels first: when they cannot be had, nothing has changed.
    if (Width != FWidth || Height != FHeight) {
        FPixels.assign(static_cast<size_t>(Width) * static_cast<size_t>(Height), 0u);
        FWidth = static_cast<int32_t>(Width);
        FHeight = static_cast<int32_t>(Height);
    }
    FLogicalWidth = AWidth;
    FLogicalHeight = AHeight;
    FDevicePixelRatio = ADevicePixelRatio;
}

uint32_t TQLBitmap::GetPixel(int32_t AX, int32_t AY) const
{
    if (AX < 0 || AY < 0 || AX >= FWidth || AY >= FHeight)
        throw std::out_of_range("TQLBitmap: pixel (" + std::to_string(AX) + ", " + std::to_string(AY) +
                                ") outside the image");
    return FPixels[static_cast<size_t>(AY) * FWidth + AX];
}

void TQLBitmap::SetPixel(int32_t AX, int32_t AY, uint32_t AValue)
{
    if (AX < 0 || AY < 0 || AX >= FWidth || AY >= FHeight)
        throw std::out_of_range("TQLBitmap: pixel (" + std::to_string(AX) + ", " + std::to_string(AY) +
                                ") outside the image");
    FPixels[static_cast<size_t>(AY) * FWidth + AX] = AValue;
}

void TQLBitmap::Fill(uint32_t APremultipliedColor)
{
    std::fill(FPixels.begin(), FPixels.end(), APremultipliedColor);
}

uint32_t QLPremultiply(TAlphaColor AColor)
{
    const uint32_t A = AColor >> 24;
    if (A == 255)
        return AColor;
    auto Mul = [A](uint32_t C) { return (C * A + 127) / 255; };
    const uint32_t R = Mul((AColor >> 16) & 0xFF);
    const uint32_t G = Mul((AColor >> 8) & 0xFF);
    const uint32_t B = Mul(AColor & 0xFF);
    return (A << 24) | (R << 16) | (G << 8) | B;
}

} // namespace qv
