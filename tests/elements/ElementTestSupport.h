#pragma once
// A scope of 500 by 400 with Y fixed to 0..100 and one channel of 101 samples on a ramp, so
// that X runs over samples 0..100; painted onto a recording canvas.

#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace qvtest {

using namespace qv;

class TElementFixture : public ::testing::Test {
protected:
    TElementFixture()
    {
        Scope.SetBounds(0, 0, 500, 400);
        // Elements added by a test would widen the legend and move the view under it.
        Scope.GetLegend()->SetVisible(false);
        TQVScopeYAxis& Y = *Scope.GetYAxis();
        Y.GetAutoScaling()->SetEnabled(false);
        Y.GetAutoScaling()->GetSpaceAbove()->SetSpace(0);
        Y.GetAutoScaling()->GetSpaceBelow()->SetSpace(0);
        Y.GetMin()->SetValue(0.0);
        Y.GetMax()->SetValue(100.0);
        std::vector<double> Samples(101);
        for (size_t i = 0; i < Samples.size(); ++i)
            Samples[i] = double(i);
        Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
        Scope.RefreshView();
        Paint();
        View = Scope.GetScopeDataView()->GetDrawRect();
    }
    void Paint()
    {
        Canvas.ClearRecords();
        TQLBitmap Bitmap(500, 400);
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    TQVScopeCursor* AddCursor(TQVDisplayCursorKind AKind, double AX, double AY)
    {
        TQVScopeCursor* C = Scope.GetCursors()->Add();
        C->SetKind(AKind);
        C->GetPosition()->SetX(AX);
        C->GetPosition()->SetY(AY);
        return C;
    }
    // The pixel of value AX on the X axis and AY on the Y axis, as zones place their points.
    int32_t XPixel(double AX) const { return Scope.GetXAxis()->GetPosFromValue(AX); }
    int32_t YPixel(double AY) const { return Scope.GetYAxis()->GetPosFromValue(AY); }
    // The pixel of a cursor's line at AX over the whole width of the view (channels plot
    // their samples the same way), and at AY over its height.
    int32_t LineX(double AX) const
    {
        const auto& Z = Scope.GetXAxis()->GetScaleTick().GetZoomed();
        const double Min = Z.GetMin().GetValue(), Max = Z.GetMax().GetValue();
        return View.Left + int32_t(std::nearbyint((View.Width() - 1) * (AX - Min) / (Max - Min)));
    }
    int32_t LineY(double AY) const { return View.Top + int32_t(std::nearbyint(View.Height() * (100.0 - AY) / 100.0)); }
    void Move(int32_t AX, int32_t AY) { Scope.MouseMove({}, float(AX), float(AY)); }
    void Drag(TPoint AFrom, TPoint ATo)
    {
        Move(AFrom.X, AFrom.Y);
        Scope.MouseDown(mbLeft, {}, float(AFrom.X), float(AFrom.Y));
        Move(ATo.X, ATo.Y);
        Scope.MouseUp(mbLeft, {}, float(ATo.X), float(ATo.Y));
    }
    TQVHighlightInfo& Info() { return Scope.GetScopeDataView()->GetHighlightInfo(); }

    TQVScope Scope;
    TQLRecordingCanvas Canvas;
    TRect View;
};

} // namespace qvtest
