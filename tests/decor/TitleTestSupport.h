#pragma once
// A display with a title for the title tests: 400 by 300, measuring text on a recording
// canvas (6 pixels a character, 13 high), so that a title strip is 13 + 16 = 29 pixels.

#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDataDisplay.h"
#include "support/RecordingCanvas.h"

#include <memory>
#include <string>

namespace qv::test {

// Measures every text one pixel wider than the recording canvas does, so that text widths
// come out odd and the rounding of the centring shows.
class TOddWidthCanvas : public TQLRecordingCanvas {
public:
    TSize TextExtent(const std::string& AText) override
    {
        TSize Size = TQLRecordingCanvas::TextExtent(AText);
        ++Size.cx;
        return Size;
    }
};

enum TMeasure { tmNone, tmRecording, tmOddWidth };

class TTitleDisplay : public TQVDataDisplay {
public:
    explicit TTitleDisplay(TMeasure AMeasure = tmRecording)
    {
        if (AMeasure == tmRecording)
            SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TQLRecordingCanvas>(); });
        else if (AMeasure == tmOddWidth)
            SetCanvasFactory([](TQLBitmap&) { return std::make_unique<TOddWidthCanvas>(); });
        SetBounds(0, 0, 400, 300);
    }

    bool PopulateDrawBuffers() override { return false; }

    TQVDisplayTitle* Title() const { return GetTitle(); }
    TQLRecordingCanvas& Recorder() const { return static_cast<TQLRecordingCanvas&>(*GetCanvas()); }

    // One layout pass, as a paint would run it.
    void Layout()
    {
        SetNeedsRecalc();
        RecalculateViewRects();
        FNeedsRecalc = false;
    }
    void ClearNeedsRecalc() { FNeedsRecalc = false; }

    // Changes that climbed up to the display from what it owns.
    void ClasicNotifyProp(TQLPersistent* ASender) override
    {
        ++Changes;
        TQVDataDisplay::ClasicNotifyProp(ASender);
    }
    int Changes = 0;
};

// A client view: takes what the strips leave.
class TClientView : public TQVCustomColorDisplayView {
public:
    using TQVCustomColorDisplayView::TQVCustomColorDisplayView;
};

// A strip of a fixed thickness.
class TFixedStrip : public TQVOptionalView {
public:
    TFixedStrip(TQVDataDisplay* ADisplay, TQVViewAlign AAlign, int32_t AThickness)
        : TQVOptionalView(ADisplay, AAlign), Thickness(AThickness)
    {}
    TSize GetAutoSize() const override { return TSize{Thickness, Thickness}; }
    int32_t Thickness;
};

} // namespace qv::test
