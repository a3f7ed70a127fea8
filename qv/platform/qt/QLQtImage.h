#pragma once
// TQLBitmap and QImage: both ways, with or without a copy, and PNG files.

#include "qv/foundation/QLBitmap.h"

#include <QImage>
#include <QString>

namespace qv::qt {

// A QImage of Format_ARGB32_Premultiplied over the bitmap's own pixels, no copy: drawing on
// the image changes the bitmap. It is valid while the bitmap keeps its size and pixels. An
// empty bitmap gives a null image. The image carries the bitmap's device pixel ratio, so a
// painter on it draws in logical units and drawing it places it at its logical size.
QImage QLWrapBitmap(TQLBitmap& ABitmap);
// The same, read-only: writing to the image detaches it into a copy of its own.
QImage QLWrapBitmapReadOnly(const TQLBitmap& ABitmap);

// A copy of the bitmap as an image of Format_ARGB32_Premultiplied that owns its pixels.
QImage QLBitmapToImage(const TQLBitmap& ABitmap);
// A copy of an image of any format as a bitmap; a null image gives an empty bitmap.
TQLBitmap QLImageToBitmap(const QImage& AImage);

// Writes the bitmap as a PNG file (straight alpha). Raises std::runtime_error naming the
// path when the file cannot be written or the bitmap is empty.
void QLSaveBitmapPng(const TQLBitmap& ABitmap, const QString& APath);

} // namespace qv::qt
