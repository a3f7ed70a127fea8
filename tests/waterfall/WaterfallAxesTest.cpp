// The waterfall's axes: the frequency scale and its unit label, and zooming that never shows
// fewer than two rows or two samples, whatever way the zoom comes.
#include "qv/QVWaterfall.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace qv;

TEST(WaterfallAxes, FrequencyScaleAndUnitLabel)
{
    struct TCase {
        double Rate;
        bool Spectrum, Intensity;
        TQVDisplayAxisTicksMode Mode;
        double TickMax; // checked only in a frequency axis
        const char* Label;
    };
    const TCase Cases[] = {
        {44100, true, false, atmAuto, 22.05, "kHz"},
        {0.5, false, false, atmFrequency, 0.25, "Hz"}, // log10 0.5 / 3 truncates to 0
        {2e9, true, false, atmAuto, 1.0, "Hz (E-9)"},
        {2e6, true, false, atmAuto, 1.0, "Mhz"},
        {0.001, false, false, atmFrequency, 0.5, "mHz"},
        {44100, false, true, atmAuto, 0, "Intensity"},
        {44100, false, false, atmAuto, 0, "Samples"},
        {44100, true, false, atmBufferSamples, 0, "Samples"},
    };
    for (const TCase& C : Cases) {
        TQVWaterfall Waterfall;
        Waterfall.GetData()->SetSampleRate(C.Rate);
        Waterfall.SetDomains(C.Spectrum, C.Intensity);
        TQVWaterfallYAxis& Axis = *Waterfall.GetYAxis();
        Axis.SetTicksMode(C.Mode);
        EXPECT_EQ(Axis.GetAxisLabelText(), C.Label) << C.Rate << " " << C.Label;
        if (Axis.InFreqAxis()) {
            EXPECT_DOUBLE_EQ(Axis.GetScaleFullTickMax(), C.TickMax) << C.Rate;
            EXPECT_EQ(Axis.GetScaleFullTickMin(), 0.0);
        } else {
            EXPECT_EQ(Axis.GetScaleFullTickMax(), Axis.GetDataFullMax()) << C.Label;
        }
    }
    // The label's own text wins over the unit.
    TQVWaterfall Waterfall;
    Waterfall.GetYAxis()->SetTicksMode(atmFrequency);
    Waterfall.GetYAxis()->GetAxisLabel()->SetText("Pitch");
    EXPECT_EQ(Waterfall.GetYAxis()->GetAxisLabelText(), "Pitch");
}

TEST(WaterfallAxes, ZoomNeverShowsFewerThanTwoRowsOrSamples)
{
    struct TCase {
        const char* Name;
        std::function<void(TQVWaterfall&, const TPoint&)> Zoom;
    };
    const TCase Cases[] = {
        {"ZoomIn repeated",
         [](TQVWaterfall& W, const TPoint&) {
             for (int32_t I = 0; I < 12; ++I) {
                 W.GetXAxis()->ZoomIn();
                 W.GetYAxis()->ZoomIn();
             }
         }},
        {"one deep ZoomBy",
         [](TQVWaterfall& W, const TPoint&) {
             W.GetXAxis()->ZoomBy(0.001);
             W.GetYAxis()->ZoomBy(0.001);
         }},
        {"wheel notches",
         [](TQVWaterfall& W, const TPoint& P) {
             for (int32_t I = 0; I < 40; ++I)
                 W.MouseWheelZoom(P, 0.5, 0.5);
         }},
        {"a narrow window", [](TQVWaterfall& W, const TPoint&) { W.ZoomTo(3.0, 3.2, 1.0, 1.1); }},
    };
    for (const TCase& C : Cases) {
        TQVWaterfall Waterfall;
        TQLBitmap Bitmap{320, 240};
        TQLRecordingCanvas Canvas;
        Waterfall.SetBounds(0, 0, 320, 240);
        Waterfall.GetXAxis()->SetSamples(10);
        const std::vector<double> Row{0, 1, 2, 3, 4, 5, 6};
        for (int32_t R = 0; R < 10; ++R)
            Waterfall.GetData()->AddData(Row.data(), 7);
        Waterfall.PaintToCanvas(Bitmap, Canvas, false);
        EXPECT_TRUE(Waterfall.GetXAxis()->GetCanZoomIn()) << C.Name;
        EXPECT_FALSE(Waterfall.GetXAxis()->GetCanZoomOut()) << C.Name;

        const TRect V = Waterfall.GetDataView()->GetDrawRect();
        C.Zoom(Waterfall, TPoint{(V.Left + V.Right) / 2, (V.Top + V.Bottom) / 2});
        Waterfall.PaintToCanvas(Bitmap, Canvas, false);

        const TQVWaterfallXAxis& X = *Waterfall.GetXAxis();
        const TQVWaterfallYAxis& Y = *Waterfall.GetYAxis();
        EXPECT_TRUE(X.IsZoomed()) << C.Name;
        EXPECT_GE(X.GetMaxSample() - X.GetMinSample(), 2.0 - 1e-9) << C.Name;
        EXPECT_GE(Y.GetMaxSample() - Y.GetMinSample(), 2.0 - 1e-9) << C.Name;
        EXPECT_LT(X.GetMaxSample() - X.GetMinSample(), 9.0) << C.Name;
        EXPECT_FALSE(X.GetCanZoomIn()) << C.Name;
        EXPECT_TRUE(X.GetCanZoomOut()) << C.Name;
    }
}
