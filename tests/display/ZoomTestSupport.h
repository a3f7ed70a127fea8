#pragma once
// A display with a main X and Y axis (data 0..100 each) that are also in the display's X
// and Y lists, the data view at (60, 20)-(461, 321), and a log of zoom change reports.

#include "axes/AxisTestSupport.h"
#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/display/QVDisplayZoomList.h"

#include <memory>
#include <vector>

namespace qvtest {

// A test axis in the display's X or Y list for its lifetime.
class TListedAxis : public TTestAxis {
public:
    TListedAxis(TQVDataDisplay* ADisplay, bool AYAxis, double ALo = 0.0, double AHi = 100.0)
        : TTestAxis(ADisplay, AYAxis, AYAxis ? vaLeft : vaBottom)
    {
        List().Add(this);
        SetLimits(ALo, AHi);
    }
    ~TListedAxis() override { List().Remove(this); }

    double WindowMin() const { return GetScaleTick().GetZoomed().GetMin().GetValue(); }
    double WindowMax() const { return GetScaleTick().GetZoomed().GetMax().GetValue(); }

private:
    TQVDisplayAxisList& List() { return IsY ? GetDisplay()->GetYAxes() : GetDisplay()->GetXAxes(); }
};

// A display whose main axes are the first of its X and Y lists.
class TZoomTestDisplay : public TAxisTestDisplay {
public:
    TQVDisplayAxis* GetXAxis() const override { return GetXAxes().GetCount() ? GetXAxes().GetItem(0) : nullptr; }
    TQVDisplayAxis* GetYAxis() const override { return GetYAxes().GetCount() ? GetYAxes().GetItem(0) : nullptr; }
};

struct TZoomReport {
    TQVZoomOperation Operation;
    TQVRealRanges Ranges;
};

class TZoomFixture : public ::testing::Test {
protected:
    TZoomFixture()
    {
        Display.SetBounds(0, 0, 500, 400);
        Display.DataView = &DataView;
        Display.Canvas = &Canvas;
        DataView.SetDrawRect(TRect{60, 20, 461, 321});
        X.SetDrawRect(TRect{60, 321, 461, 361});
        Y.SetDrawRect(TRect{0, 20, 60, 321});
        Display.SetOnZoomChanged([this](TQLPersistent*, TQVZoomOperation AOperation, TQVRealRanges ARanges) {
            Reports.push_back(TZoomReport{AOperation, ARanges});
        });
    }

    // The windows of the main axes as (x min, x max, y min, y max).
    std::vector<double> Windows() const { return {X.WindowMin(), X.WindowMax(), Y.WindowMin(), Y.WindowMax()}; }

    TZoomTestDisplay Display;
    TQLRecordingCanvas Canvas;
    TTestDataView DataView{&Display};
    TListedAxis X{&Display, false};
    TListedAxis Y{&Display, true};
    std::vector<TZoomReport> Reports;
};

} // namespace qvtest
