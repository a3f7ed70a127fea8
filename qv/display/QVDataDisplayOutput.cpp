// Picture output of a display: printer, clipboard, bitmap objects and image files. Every
// operation runs the screen's paint with the print flag into a bitmap of its own, so what
// leaves the control carries no highlight, drag ghost or mouse mark.
#include "qv/display/QVDataDisplay.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

// Ends the print job however the print ends. On the normal path End() reports a failing
// EndDoc to the caller; while another exception passes, a second failure of the printer is
// dropped so that the first one reaches the caller.
class TPrintJob {
public:
    explicit TPrintJob(IQLPrinter& APrinter) : FPrinter(APrinter) { FPrinter.BeginDoc(); }
    ~TPrintJob()
    {
        if (FOpen) {
            try {
                FPrinter.EndDoc();
            } catch (...) {
            }
        }
    }
    TPrintJob(const TPrintJob&) = delete;
    TPrintJob& operator=(const TPrintJob&) = delete;
    void End()
    {
        FOpen = false;
        FPrinter.EndDoc();
    }

private:
    IQLPrinter& FPrinter;
    bool FOpen = true;
};

} // namespace

IQLPictureServices& TQVDataDisplay::RequirePictureServices(const char* AOperation) const
{
    if (!FPictureServices)
        throw std::runtime_error(std::string("TQVDataDisplay::") + AOperation +
                                 ": no picture services installed (printer, clipboard and image files)");
    return *FPictureServices;
}

const TQLCanvasFactory& TQVDataDisplay::RequireCanvasFactory(const char* AOperation) const
{
    if (!FCanvasFactory)
        throw std::runtime_error(std::string("TQVDataDisplay::") + AOperation + ": no canvas factory set");
    return FCanvasFactory;
}

void TQVDataDisplay::PaintPicture(const char* AOperation, TQLBitmap& ABitmap)
{
    std::unique_ptr<TQLCanvas> Canvas = RequireCanvasFactory(AOperation)(ABitmap);
    PaintToCanvas(ABitmap, *Canvas, true);
}

void TQVDataDisplay::Print()
{
    IQLPrinter* Printer = RequirePictureServices("Print").GetPrinter();
    if (!Printer)
        throw std::runtime_error("TQVDataDisplay::Print: the picture services offer no printer");
    RequireCanvasFactory("Print"); // before a print job is begun
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    TQLBitmap Bitmap(10, 10);
    // Destroyed after the job has ended: the next paint lays out anew at the control's size.
    struct TPrintState {
        TQVDataDisplay& Display;
        ~TPrintState()
        {
            Display.FNeedsRecalc.store(true, std::memory_order_release);
            Display.FPrinting = false;
            Display.InvalidateRefresh();
        }
    } State{*this};
    TPrintJob Job(*Printer);
    FPrinting = true;
    FNeedsRecalc.store(true, std::memory_order_release);
    const int32_t PageWidth = Printer->GetPageWidth(), PageHeight = Printer->GetPageHeight();
    FPrintSize = TSize{PageWidth, PageHeight};
    Bitmap.SetSize(PageWidth, PageHeight);
    PaintPicture("Print", Bitmap);
    // The bitmap has the page's size: the stretch is one to one.
    Printer->StretchDrawBitmap(TRect{0, 0, PageWidth, PageHeight}, Bitmap);
    Job.End();
}

void TQVDataDisplay::CopyToClipboard()
{
    IQLPictureServices& Services = RequirePictureServices("CopyToClipboard");
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    TQLBitmap Bitmap(static_cast<int32_t>(FWidth), static_cast<int32_t>(FHeight));
    PaintPicture("CopyToClipboard", Bitmap);
    Services.CopyBitmapToClipboard(Bitmap);
}

void TQVDataDisplay::CopyToBitmap(TQLBitmap& ABitmap)
{
    PaintPicture("CopyToBitmap", ABitmap);
}

void TQVDataDisplay::SaveToBitmap(const std::string& AFileName)
{
    IQLPictureServices& Services = RequirePictureServices("SaveToBitmap");
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    // The plot size: inside a print, the page's.
    TQLBitmap Bitmap(GetPlotWidth(), GetPlotHeight());
    PaintPicture("SaveToBitmap", Bitmap);
    Services.SaveBitmapToFile(Bitmap, AFileName);
}

void TQVDataDisplay::SaveToJpeg(const std::string& AFileName)
{
    IQLPictureServices& Services = RequirePictureServices("SaveToJpeg");
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    TQLBitmap Bitmap(static_cast<int32_t>(FWidth), static_cast<int32_t>(FHeight));
    PaintPicture("SaveToJpeg", Bitmap);
    Services.SaveBitmapToJpeg(Bitmap, AFileName);
}

void TQVDataDisplay::SaveToSvg(const std::string& AFileName)
{
    SaveToVector("SaveToSvg", vfSvg, AFileName);
}

void TQVDataDisplay::SaveToPdf(const std::string& AFileName)
{
    SaveToVector("SaveToPdf", vfPdf, AFileName);
}

void TQVDataDisplay::SaveToVector(const char* AOperation, TQLVectorFormat AFormat, const std::string& AFileName)
{
    IQLPictureServices& Services = RequirePictureServices(AOperation);
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    const int32_t Width = std::max(static_cast<int32_t>(FWidth), 0);
    const int32_t Height = std::max(static_cast<int32_t>(FHeight), 0);
    Services.SaveVectorPicture(
        AFormat, Width, Height,
        [&](TQLCanvas& ACanvas) {
            // No pixels are drawn: the bitmap only stands for the picture's size.
            TQLBitmap NoPixels;
            PaintToCanvasSized(NoPixels, ACanvas, TRect{0, 0, Width, Height}, true);
        },
        AFileName);
}

} // namespace qv
