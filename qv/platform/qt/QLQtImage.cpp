#include "QLQtImage.h"

#include <QImageWriter>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv::qt {

QImage QLWrapBitmap(TQLBitmap& ABitmap)
{
    if (ABitmap.IsEmpty())
        return QImage();
    QImage Image(reinterpret_cast<uchar*>(ABitmap.GetBits()), ABitmap.GetWidth(), ABitmap.GetHeight(),
                 ABitmap.GetStride(), QImage::Format_ARGB32_Premultiplied);
    Image.setDevicePixelRatio(ABitmap.GetDevicePixelRatio());
    return Image;
}

QImage QLWrapBitmapReadOnly(const TQLBitmap& ABitmap)
{
    if (ABitmap.IsEmpty())
        return QImage();
    QImage Image(reinterpret_cast<const uchar*>(ABitmap.GetBits()), ABitmap.GetWidth(), ABitmap.GetHeight(),
                 ABitmap.GetStride(), QImage::Format_ARGB32_Premultiplied);
    Image.setDevicePixelRatio(ABitmap.GetDevicePixelRatio());
    return Image;
}

QImage QLBitmapToImage(const TQLBitmap& ABitmap)
{
    // copy() detaches from the bitmap's memory.
    return QLWrapBitmapReadOnly(ABitmap).copy();
}

TQLBitmap QLImageToBitmap(const QImage& AImage)
{
    if (AImage.isNull())
        return TQLBitmap();
    const QImage Src = AImage.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    TQLBitmap Result(Src.width(), Src.height());
    // QImage rows may be padded; the bitmap's are not.
    for (int32_t Y = 0; Y < Src.height(); ++Y) {
        const auto* Row = reinterpret_cast<const uint32_t*>(Src.constScanLine(Y));
        std::copy(Row, Row + Src.width(), Result.GetScanLine(Y));
    }
    return Result;
}

void QLSaveBitmapPng(const TQLBitmap& ABitmap, const QString& APath)
{
    const std::string Path = APath.toStdString();
    if (ABitmap.IsEmpty())
        throw std::runtime_error("QLSaveBitmapPng: cannot write '" + Path + "': the bitmap is empty (" +
                                 std::to_string(ABitmap.GetWidth()) + " x " + std::to_string(ABitmap.GetHeight()) +
                                 ")");
    QImageWriter Writer(APath, "png");
    if (!Writer.write(QLWrapBitmapReadOnly(ABitmap)))
        throw std::runtime_error("QLSaveBitmapPng: cannot write '" + Path + "': " + Writer.errorString().toStdString());
}

} // namespace qv::qt
