#pragma once
// An indexed store of same-sized images, such as the glyphs of a tool bar. The size is fixed
// when the list is made; every image added must have it.

#include "qv/foundation/QLBitmap.h"

#include <cstdint>
#include <vector>

namespace qv {

class TQLCanvas;

class TQLImageList {
public:
    // A negative width or height raises std::invalid_argument naming the size.
    TQLImageList(int32_t AWidth, int32_t AHeight);

    int32_t GetWidth() const { return FWidth; }
    int32_t GetHeight() const { return FHeight; }
    int32_t GetCount() const { return static_cast<int32_t>(FImages.size()); }

    // Stores a copy of the image and returns its index. An image of another size raises
    // std::invalid_argument naming both sizes.
    int32_t Add(const TQLBitmap& AImage);
    // Cuts a horizontal strip into images of the list's size, left to right, and adds them
    // in that order; returns the index of the first. The strip must be exactly one image
    // high and a whole number of images wide (std::invalid_argument otherwise).
    int32_t AddStrip(const TQLBitmap& AStrip);
    void Clear() { FImages.clear(); }

    // An index outside 0..count-1 raises std::out_of_range naming the index.
    const TQLBitmap& GetImage(int32_t AIndex) const;

    // Draws image AImageIndex with its top-left corner at (AX, AY), alpha-composed over the
    // canvas (TQLCanvas::DrawBitmap).
    void Draw(TQLCanvas& ACanvas, int32_t AX, int32_t AY, int32_t AImageIndex) const;

private:
    int32_t FWidth;
    int32_t FHeight;
    std::vector<TQLBitmap> FImages;
};

} // namespace qv
