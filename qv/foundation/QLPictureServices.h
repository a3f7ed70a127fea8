#pragma once
// What a display needs of the platform to put its picture outside itself: a printer, the
// clipboard and image files. The core knows only these operations; a platform library
// (qv::qt) implements them, and a display holds one set through SetPictureServices.

#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <string>

namespace qv {

// One print job at a time: BeginDoc opens a document of one page, EndDoc sends it.
class IQLPrinter {
public:
    virtual ~IQLPrinter() = default;
    virtual void BeginDoc() = 0;
    virtual void EndDoc() = 0;
    // The printable page in device pixels; meaningful between BeginDoc and EndDoc.
    virtual int32_t GetPageWidth() const = 0;
    virtual int32_t GetPageHeight() const = 0;
    // Draws the whole bitmap onto the page, stretched into ADest, fully opaque.
    virtual void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ABitmap) = 0;
};

class IQLPictureServices {
public:
    virtual ~IQLPictureServices() = default;
    // The printer that Print uses; null when the platform offers none.
    virtual IQLPrinter* GetPrinter() = 0;
    // Puts the bitmap on the clipboard as a 32-bit image.
    virtual void CopyBitmapToClipboard(const TQLBitmap& ABitmap) = 0;
    // Writes a bitmap file; the format follows the file name's suffix when the platform
    // knows it, else a plain bitmap. An empty bitmap writes an empty file.
    virtual void SaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AFileName) = 0;
    // Writes a JPEG file at the encoder's default quality. An empty bitmap writes an empty file.
    virtual void SaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AFileName) = 0;
};

} // namespace qv
