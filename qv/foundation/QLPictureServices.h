#pragma once
// What a display needs of the platform to put its picture outside itself: a printer, the
// clipboard and image files. The core knows only these operations; a platform library
// (qv::qt) implements them, and a display holds one set through SetPictureServices.

#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace qv {

class TQLCanvas;

// Vector picture files.
enum TQLVectorFormat : uint8_t { vfSvg, vfPdf };
// Draws a picture onto the canvas it is handed.
using TQLVectorPaint = std::function<void(TQLCanvas& ACanvas)>;

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
    // Writes a vector picture file of AWidth by AHeight pixels: APaint draws onto a canvas
    // whose lines, shapes and text go into the file as such. An empty size writes an empty
    // file. Services without vector output raise std::runtime_error.
    virtual void SaveVectorPicture(TQLVectorFormat AFormat, int32_t AWidth, int32_t AHeight,
                                   const TQLVectorPaint& APaint, const std::string& AFileName)
    {
        throw std::runtime_error("SaveVectorPicture: these picture services write no vector files ('" + AFileName +
                                 "')");
    }
};

} // namespace qv
