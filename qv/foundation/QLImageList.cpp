#include "qv/foundation/QLImageList.h"

#include "qv/foundation/QLCanvas.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

namespace {
std::string SizeText(int32_t AWidth, int32_t AHeight)
{
    return std::to_string(AWidth) + " x " + std::to_string(AHeight);
}
} // namespace

TQLImageList::TQLImageList(int32_t AWidth, int32_t AHeight) : FWidth(AWidth), FHeight(AHeight)
{
    if (AWidth < 0 || AHeight < 0)
        throw std::invalid_argument("TQLImageList: invalid image size " + SizeText(AWidth, AHeight));
}

int32_t TQLImageList::Add(const TQLBitmap& AImage)
{
    if (AImage.GetWidth() != FWidth || AImage.GetHeight() != FHeight)
        throw std::invalid_argument("TQLImageList: image of " + SizeText(AImage.GetWidth(), AImage.GetHeight()) +
                                    " does not fit a list of " + SizeText(FWidth, FHeight));
    FImages.push_back(AImage);
    return GetCount() - 1;
}

int32_t TQLImageList::AddStrip(const TQLBitmap& AStrip)
{
    const int32_t W = AStrip.GetWidth();
    if (AStrip.GetHeight() != FHeight || FWidth == 0 || W % FWidth != 0)
        throw std::invalid_argument("TQLImageList: strip of " + SizeText(W, AStrip.GetHeight()) +
                                    " is not a row of images of " + SizeText(FWidth, FHeight));
    const int32_t First = GetCount();
    for (int32_t X0 = 0; X0 < W; X0 += FWidth) {
        TQLBitmap Image(FWidth, FHeight);
        for (int32_t Y = 0; Y < FHeight; ++Y) {
            const uint32_t* Src = AStrip.GetScanLine(Y) + X0;
            std::copy(Src, Src + FWidth, Image.GetScanLine(Y));
        }
        FImages.push_back(std::move(Image));
    }
    return First;
}

const TQLBitmap& TQLImageList::GetImage(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw std::out_of_range("TQLImageList: image index " + std::to_string(AIndex) + " out of range (count " +
                                std::to_string(GetCount()) + ")");
    return FImages[static_cast<size_t>(AIndex)];
}

void TQLImageList::Draw(TQLCanvas& ACanvas, int32_t AX, int32_t AY, int32_t AImageIndex) const
{
    ACanvas.DrawBitmap(AX, AY, GetImage(AImageIndex));
}

} // namespace qv
