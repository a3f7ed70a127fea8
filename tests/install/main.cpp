// Uses the installed headers and libraries: a settings object saved as JSON and a canvas
// drawing into a bitmap.
#include <qv/foundation/QLBitmap.h>
#include <qv/foundation/QVDisplayPen.h>
#include <qv/qt/QLJsonForm.h>
#include <qv/qt/QLQtCanvas.h>

#include <QGuiApplication>

int main(int argc, char** argv)
{
    QGuiApplication App(argc, argv);
    qv::TQVDisplayPen Pen(nullptr, qv::QLMakeLock(), {}, 0xFF00FF00);
    Pen.SetWidth(3);
    const QByteArray Json = qv::QLSaveToJson(Pen);
    qv::TQVDisplayPen Copy(nullptr, qv::QLMakeLock(), {}, 0xFF00FF00);
    qv::QLLoadFromJson(Copy, Json);

    qv::TQLBitmap Bitmap(8, 8);
    {
        qv::TQLQtCanvas Canvas(Bitmap);
        Canvas.ApplyPen(Copy);
        Canvas.MoveTo(0, 4);
        Canvas.LineTo(8, 4);
    }
    return Copy.GetWidth() == 3 && Bitmap.GetPixel(3, 4) == 0xFF00FF00 ? 0 : 1;
}
