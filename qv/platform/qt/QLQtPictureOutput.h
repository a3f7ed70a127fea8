#pragma once
// Picture output through Qt: the clipboard (QClipboard), image files (QImageWriter) and the
// printer (QPrinter). TQLQtPictureServices gives them to a display; every display widget
// installs one, and QLInstallQtPictureServices does the same for a display without a widget.

#include "qv/display/QVDataDisplay.h"
#include "qv/foundation/QLPictureServices.h"

#include <QPainter>
#include <QPrinter>

#include <memory>
#include <string>

namespace qv {

// The bitmap on the clipboard as a 32-bit image. Needs a QGuiApplication.
void QLCopyBitmapToClipboard(const TQLBitmap& ABitmap);
// The bitmap as a JPEG file at the encoder's default quality.
void QLSaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AFileName);
// The bitmap as an image file in the format of the name's suffix when Qt can write it
// (".png", ".jpg", ...), else as a BMP file.
void QLSaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AFileName);
// Both savers write an empty file for an empty bitmap, and raise std::runtime_error naming
// the file when it cannot be written.

// A vector picture file of AWidth by AHeight pixels, drawn by APaint onto a canvas over
// QSvgGenerator (vfSvg) or QPdfWriter (vfPdf). Lines, shapes and text stay vectors. The SVG
// is laid out at 96 pixels per inch with a view box of the picture's size; the PDF has one
// page of exactly the picture's size at 96 pixels per inch, with no margins. An empty size
// writes an empty file. The file is written whole or not at all: when it cannot be written
// or the paint fails, an existing file keeps its content and std::runtime_error names the
// file (a failing paint passes its own exception on). SVG needs qv::qt built with Qt SVG
// (QLHasSvgOutput).
void QLSaveVectorPicture(TQLVectorFormat AFormat, int32_t AWidth, int32_t AHeight, const TQLVectorPaint& APaint,
                         const std::string& AFileName);
// Whether this build of qv::qt writes SVG files.
bool QLHasSvgOutput();

// One document of one page on a QPrinter that the caller keeps alive.
class TQLQtPrinter : public IQLPrinter {
public:
    explicit TQLQtPrinter(QPrinter& APrinter) : FPrinter(APrinter) {}
    void BeginDoc() override;
    void EndDoc() override;
    int32_t GetPageWidth() const override;
    int32_t GetPageHeight() const override;
    void StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ABitmap) override;

private:
    QPrinter& FPrinter;
    QPainter FPainter;
};

class TQLQtPictureServices : public IQLPictureServices {
public:
    TQLQtPictureServices();
    ~TQLQtPictureServices() override;

    // The QPrinter that Print uses: the system's default printer at screen resolution,
    // made on first use. A print dialog configures it; a PdfFormat printer with an output
    // file name prints to that file.
    QPrinter& GetQPrinter();

    IQLPrinter* GetPrinter() override;
    void CopyBitmapToClipboard(const TQLBitmap& ABitmap) override { QLCopyBitmapToClipboard(ABitmap); }
    void SaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AFileName) override
    {
        QLSaveBitmapToFile(ABitmap, AFileName);
    }
    void SaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AFileName) override
    {
        QLSaveBitmapToJpeg(ABitmap, AFileName);
    }
    void SaveVectorPicture(TQLVectorFormat AFormat, int32_t AWidth, int32_t AHeight, const TQLVectorPaint& APaint,
                           const std::string& AFileName) override
    {
        QLSaveVectorPicture(AFormat, AWidth, AHeight, APaint, AFileName);
    }

private:
    std::unique_ptr<QPrinter> FQPrinter;
    std::unique_ptr<TQLQtPrinter> FPrinter;
};

// Gives a display the Qt picture services, and the Qt canvas factory when it has none yet,
// so that Print, CopyToClipboard, SaveToBitmap, SaveToJpeg, SaveToSvg and SaveToPdf work
// with no widget. Returns
// the services, whose GetQPrinter chooses the printer.
std::shared_ptr<TQLQtPictureServices> QLInstallQtPictureServices(TQVDataDisplay& ADisplay);

} // namespace qv
