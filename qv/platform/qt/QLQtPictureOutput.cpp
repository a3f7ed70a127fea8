#include "qv/platform/qt/QLQtPictureOutput.h"

#include "qv/platform/qt/QLQtCanvas.h"
#include "qv/platform/qt/QLQtImage.h"
#include "qv/platform/qt/QVDisplayWidget.h"

#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageWriter>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QSaveFile>
#if QV_HAVE_SVG
#include <QSvgGenerator>
#endif

#include <stdexcept>

namespace qv {

namespace {

// The bitmap with straight alpha, rows top to bottom as in the bitmap.
QImage StraightImage(const TQLBitmap& ABitmap)
{
    return qt::QLWrapBitmapReadOnly(ABitmap).convertToFormat(QImage::Format_ARGB32);
}

// Writes AImage in AFormat; an empty bitmap gives an empty file.
void WriteImageFile(const char* AOperation, const TQLBitmap& ABitmap, const QImage& AImage,
                    const std::string& AFileName, const QByteArray& AFormat)
{
    const QString Name = QString::fromStdString(AFileName);
    if (ABitmap.IsEmpty()) {
        QFile File(Name);
        if (!File.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw std::runtime_error(std::string(AOperation) + ": cannot write '" + AFileName +
                                     "': " + File.errorString().toStdString());
        return;
    }
    QImageWriter Writer(Name, AFormat);
    if (!Writer.write(AImage))
        throw std::runtime_error(std::string(AOperation) + ": cannot write '" + AFileName +
                                 "': " + Writer.errorString().toStdString());
}

} // namespace

void QLCopyBitmapToClipboard(const TQLBitmap& ABitmap)
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        throw std::runtime_error("QLCopyBitmapToClipboard: the clipboard needs a running QGuiApplication");
    QClipboard* Clipboard = QGuiApplication::clipboard();
    if (!Clipboard)
        throw std::runtime_error("QLCopyBitmapToClipboard: the platform has no clipboard");
    Clipboard->setImage(StraightImage(ABitmap));
}

void QLSaveBitmapToJpeg(const TQLBitmap& ABitmap, const std::string& AFileName)
{
    // JPEG has no alpha: the colours go as they are.
    const QImage Image = ABitmap.IsEmpty() ? QImage() : StraightImage(ABitmap).convertToFormat(QImage::Format_RGB32);
    WriteImageFile("QLSaveBitmapToJpeg", ABitmap, Image, AFileName, "jpg");
}

void QLSaveBitmapToFile(const TQLBitmap& ABitmap, const std::string& AFileName)
{
    QByteArray Format = QFileInfo(QString::fromStdString(AFileName)).suffix().toLower().toLatin1();
    if (Format.isEmpty() || !QImageWriter::supportedImageFormats().contains(Format))
        Format = "bmp";
    const QImage Image = ABitmap.IsEmpty() ? QImage() : StraightImage(ABitmap);
    WriteImageFile("QLSaveBitmapToFile", ABitmap, Image, AFileName, Format);
}

bool QLHasSvgOutput()
{
    return QV_HAVE_SVG != 0;
}

namespace {

// Paints onto the file's generator. The painter, the canvas over it included, is gone
// before the generator goes, also when the paint fails.
void PaintVector(const char* AOperation, QPaintDevice& ADevice, const TQLVectorPaint& APaint,
                 const std::string& AFileName)
{
    QPainter Painter;
    if (!Painter.begin(&ADevice))
        throw std::runtime_error(std::string(AOperation) + ": cannot start drawing into '" + AFileName + "'");
    {
        TQLQtCanvas Canvas(Painter);
        APaint(Canvas);
    }
    if (!Painter.end())
        throw std::runtime_error(std::string(AOperation) + ": cannot finish '" + AFileName + "'");
}

} // namespace

void QLSaveVectorPicture(TQLVectorFormat AFormat, int32_t AWidth, int32_t AHeight, const TQLVectorPaint& APaint,
                         const std::string& AFileName)
{
    const char* Operation = AFormat == vfSvg ? "QLSaveVectorPicture (SVG)" : "QLSaveVectorPicture (PDF)";
    if (AFormat != vfSvg && AFormat != vfPdf)
        throw std::invalid_argument("QLSaveVectorPicture: unknown vector format " + std::to_string(int(AFormat)) +
                                    " for '" + AFileName + "'");
    if (AFormat == vfSvg && !QLHasSvgOutput())
        throw std::runtime_error(std::string(Operation) + ": cannot write '" + AFileName +
                                 "': qv::qt was built without Qt SVG");
    if (AWidth < 0 || AHeight < 0)
        throw std::invalid_argument(std::string(Operation) + ": invalid size " + std::to_string(AWidth) + " x " +
                                    std::to_string(AHeight) + " for '" + AFileName + "'");
    // Written to a temporary file that replaces the target only when the whole picture is in.
    QSaveFile File(QString::fromStdString(AFileName));
    if (!File.open(QIODevice::WriteOnly))
        throw std::runtime_error(std::string(Operation) + ": cannot write '" + AFileName +
                                 "': " + File.errorString().toStdString());
    if (AWidth > 0 && AHeight > 0) {
        if (AFormat == vfPdf) {
            QPdfWriter Writer(&File);
            Writer.setCreator("QVScope");
            Writer.setResolution(96);
            const QPageSize Page(QSizeF(AWidth * 72.0 / 96.0, AHeight * 72.0 / 96.0), QPageSize::Point, QString(),
                                 QPageSize::ExactMatch);
            Writer.setPageLayout(QPageLayout(Page, QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
            PaintVector(Operation, Writer, APaint, AFileName);
        } else {
#if QV_HAVE_SVG
            QSvgGenerator Generator;
            Generator.setOutputDevice(&File);
            Generator.setResolution(96);
            Generator.setSize(QSize(AWidth, AHeight));
            Generator.setViewBox(QRect(0, 0, AWidth, AHeight));
            PaintVector(Operation, Generator, APaint, AFileName);
#endif
        }
    }
    if (!File.commit())
        throw std::runtime_error(std::string(Operation) + ": cannot write '" + AFileName +
                                 "': " + File.errorString().toStdString());
}

// ---- TQLQtPrinter ----

void TQLQtPrinter::BeginDoc()
{
    if (FPainter.isActive())
        throw std::runtime_error("TQLQtPrinter::BeginDoc: a print job is already open");
    if (!FPainter.begin(&FPrinter)) {
        QString Target = FPrinter.outputFileName().isEmpty() ? FPrinter.printerName() : FPrinter.outputFileName();
        if (Target.isEmpty())
            Target = "the default printer (none installed?)";
        throw std::runtime_error("TQLQtPrinter::BeginDoc: cannot start printing on '" + Target.toStdString() + "'");
    }
}

void TQLQtPrinter::EndDoc()
{
    if (!FPainter.isActive())
        throw std::runtime_error("TQLQtPrinter::EndDoc: no print job is open");
    if (!FPainter.end())
        throw std::runtime_error("TQLQtPrinter::EndDoc: the printer did not accept the document");
}

int32_t TQLQtPrinter::GetPageWidth() const
{
    return FPrinter.width();
}

int32_t TQLQtPrinter::GetPageHeight() const
{
    return FPrinter.height();
}

void TQLQtPrinter::StretchDrawBitmap(const TRect& ADest, const TQLBitmap& ABitmap)
{
    if (!FPainter.isActive())
        throw std::runtime_error("TQLQtPrinter::StretchDrawBitmap: no print job is open");
    if (ABitmap.IsEmpty())
        return;
    FPainter.setOpacity(1.0);
    FPainter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    // A copy: a print engine may keep the image until the page is sent.
    FPainter.drawImage(QRect(ADest.Left, ADest.Top, ADest.Width(), ADest.Height()), qt::QLBitmapToImage(ABitmap));
}

// ---- TQLQtPictureServices ----

TQLQtPictureServices::TQLQtPictureServices() = default;
TQLQtPictureServices::~TQLQtPictureServices() = default;

QPrinter& TQLQtPictureServices::GetQPrinter()
{
    if (!FQPrinter)
        FQPrinter = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
    return *FQPrinter;
}

IQLPrinter* TQLQtPictureServices::GetPrinter()
{
    if (!FPrinter)
        FPrinter = std::make_unique<TQLQtPrinter>(GetQPrinter());
    return FPrinter.get();
}

std::shared_ptr<TQLQtPictureServices> QLInstallQtPictureServices(TQVDataDisplay& ADisplay)
{
    auto Services = std::make_shared<TQLQtPictureServices>();
    if (!ADisplay.GetCanvasFactory())
        ADisplay.SetCanvasFactory(QLQtCanvasFactory());
    ADisplay.SetPictureServices(Services);
    return Services;
}

} // namespace qv
