// Fuzzes the JSON form loader with a scope as its target. Any input either loads, and the
// scope then paints, or fails with EQLPropertyError and leaves the scope's settings exactly as
// they were (the load is all or nothing). Anything else (another exception, a crash, a
// sanitizer report, settings changed by a failed load) is a finding.
#include "qv/QVScope.h"
#include "qv/platform/qt/QLJsonForm.h"
#include "support/RecordingCanvas.h"

#include <cstdint>
#include <cstdlib>

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize)
{
    TQVScope Scope;
    Scope.SetBounds(0, 0, 320, 200);
    const double Samples[] = {0.0, 1.5, -2.0, 3.25};
    Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples, 4);
    const TQLStoredNode Before = QLSaveObject(Scope);
    try {
        QLLoadFromJson(Scope, QByteArray(reinterpret_cast<const char*>(AData), int(ASize)));
    } catch (const EQLPropertyError&) {
        if (!(QLSaveObject(Scope) == Before))
            std::abort(); // a failed load changed the settings
        return 0;
    }
    Scope.RefreshView();
    TQLBitmap Bitmap(320, 200);
    TQLRecordingCanvas Canvas;
    Scope.PaintToCanvas(Bitmap, Canvas, false);
    return 0;
}
