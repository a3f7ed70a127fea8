#pragma once
// The set-up most waterfall tests share: a 320 by 240 waterfall keeping ASamples rows, painted
// onto a recording canvas.
#include "qv/QVWaterfall.h"
#include "support/RecordingCanvas.h"

#include <vector>

namespace qv {

struct TWaterfallSurface {
    TQVWaterfall Waterfall;
    TQLBitmap Bitmap{320, 240};
    TQLRecordingCanvas Canvas;

    explicit TWaterfallSurface(int32_t ASamples)
    {
        Waterfall.SetBounds(0, 0, 320, 240);
        Waterfall.GetXAxis()->SetSamples(ASamples);
    }
    void Add(const std::vector<double>& ARow)
    {
        Waterfall.GetData()->AddData(ARow.data(), static_cast<int32_t>(ARow.size()));
    }
    void Paint() { Waterfall.PaintToCanvas(Bitmap, Canvas, false); }
    TRect View() const { return Waterfall.GetDataView()->GetDrawRect(); }
};

} // namespace qv
