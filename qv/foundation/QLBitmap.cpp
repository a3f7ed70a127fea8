#include "qv/foundation/QLBitmap.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

TQLBitmap::TQLBitmap(int32_t AWidth, int32_t AHeight)
{
    SetSize(AWidth, AHeight);
}

void TQLBitmap::SetSize(int32_t AWidth, int32_t AHeight)
{
    if (AWidth < 0 || AHeight < 0)
        throw std::invalid_argument("TQLBitmap: invalid size " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight));
    if (AWidth == FWidth && AHeight == FHeight)
        return;
    FWidth = AWidth;
    FHeight = AHeight;
    FPixels.assign(static_cast<size_t>(AWidth) * static_cast<size_t>(AHeight), 0u);
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
