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

namespace {

// One scope serves every input, as in the intake target. It starts from a fresh scope's
// settings, its first channel holding four samples. A failed load must leave it exactly so,
// which each such input checks, so only a load that succeeded is undone before the next
// input: the fresh settings are loaded back and the samples given again.
class TTarget {
public:
    TTarget()
    {
        FScope.SetBounds(0, 0, 320, 200);
        FFresh = QLSaveObject(FScope);
        GiveSamples();
    }

    void Run(const QByteArray& AJson)
    {
        if (FChanged) {
            QLLoadObject(FScope, FFresh);
            FScope.ZoomOff();
            GiveSamples();
            FChanged = false;
        }
        try {
            QLLoadFromJson(FScope, AJson);
        } catch (const EQLPropertyError&) {
            if (!(QLSaveObject(FScope) == FFresh))
                std::abort(); // a failed load changed the settings
            return;
        }
        FChanged = true;
        FScope.RefreshView();
        TQLRecordingCanvas Canvas;
        FScope.PaintToCanvas(FBitmap, Canvas, false);
    }

private:
    void GiveSamples()
    {
        const double Samples[] = {0.0, 1.5, -2.0, 3.25};
        FScope.GetChannels()->GetItem(0)->GetData()->SetYData(Samples, 4);
    }

    TQVScope FScope;
    TQLStoredNode FFresh;
    TQLBitmap FBitmap{320, 200};
    bool FChanged = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* AData, size_t ASize)
{
    static TTarget Target;
    Target.Run(QByteArray(reinterpret_cast<const char*>(AData), int(ASize)));
    return 0;
}
