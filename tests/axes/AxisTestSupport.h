#pragma once
// Small concrete X and Y axes that answer orientation as the scope's axes do, with limits
// given directly and every limit computation counted. TAxisFixture: a 500 by 400 display, the
// data view at (60, 20)-(461, 321), an X strip below it and a Y strip left of it.

#include "qv/axes/QVDisplayAxis.h"
#include "qv/display/QVDataDisplay.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace qvtest {

using namespace qv;

class TAxisTestDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override { return false; }
    TQVDisplayComponent* GetDataView() const override { return DataView; }
    bool GetIsVertical() const override { return Turned; }
    TQLCanvas* GetCanvas() const override { return Canvas; }
    void ClearRecalc() { FNeedsRecalc = false; }
    void DoAxisClick(int32_t AIndex) override { AxisClicks.push_back(AIndex); }

    std::vector<int32_t> AxisClicks;
    TQVDisplayComponent* DataView = nullptr;
    bool Turned = false;
    TQLCanvas* Canvas = nullptr;
};

class TTestDataView : public TQVCustomColorDisplayView {
public:
    using TQVCustomColorDisplayView::TQVCustomColorDisplayView;
};

// How many times each limit getter ran.
struct TLimitCalls {
    int DataFullMin = 0, DataFullMax = 0, DataZoomedMin = 0, DataZoomedMax = 0;
    int ScaleZoomedTickMin = 0, ScaleZoomedTickMax = 0;
};

class TTestAxis : public TQVDisplayAxis {
public:
    TTestAxis(TQVDataDisplay* ADisplay, bool AYAxis, TQVViewAlign AAlign)
        : TQVDisplayAxis(ADisplay, AAlign), IsY(AYAxis)
    {}

    TQVScaleMode GetIntScaleMode() const override { return Mode; }
    void SetIntScaleMode(TQVScaleMode AValue) override { Mode = AValue; }
    bool GetIsVertical() const override { return IsY ? !GetDisplay()->GetIsVertical() : GetDisplay()->GetIsVertical(); }
    bool GetIsYAxis() const override { return IsY; }
    bool GetIsOposite() const override
    {
        return IsY ? GetIsReversed() != !GetIsVertical() : GetIsReversed() != GetIsVertical();
    }
    bool GetScaleReversed() const override { return IsY ? GetIsReversedDirect() : !FReversed; }
    TQVAxisDirection GetDefaultHorizDir() const override { return IsY ? adToLeft : adToRight; }
    TQVAxisDirection GetDefaultVertDir() const override { return IsY ? adToUp : adToDown; }
    int32_t GetDimentionLength() const override
    {
        const bool Turned = GetDisplay()->GetIsVertical();
        if (IsY)
            return Turned ? GetWidth() : GetHeight();
        const TRect View = GetDataViewRect();
        return Turned ? QVRectHeight(View) : QVRectWidth(View);
    }
    double GetRangeWidth(bool ALogarithmic) const override
    {
        const TQVScaleCachedMinMaxValue& Z = IsY ? FDataTotal.GetZoomed() : FScaleTick.GetZoomed();
        const double Lo = Z.GetMin().GetValue();
        const double Hi = Z.GetMax().GetValue();
        return ALogarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
    }
    TQVViewScreenAlign GetScreenAlign() const override
    {
        if (!GetDisplay()->GetIsVertical())
            return static_cast<TQVViewScreenAlign>(FAlign);
        switch (FAlign) {
        case vaTop: return vsaRight;
        case vaBottom: return vsaLeft;
        case vaLeft: return vsaBottom;
        case vaRight: return vsaTop;
        }
        return vsaClient;
    }

    double GetDataFullMin() const override
    {
        ++Calls.DataFullMin;
        return UseBaseFullMin ? TQVDisplayAxis::GetDataFullMin() : Lo;
    }
    double GetDataFullMax() const override
    {
        ++Calls.DataFullMax;
        return Hi;
    }
    double GetDataZoomedMin() const override
    {
        ++Calls.DataZoomedMin;
        return FZoomed ? FZoomMin : FDataTotal.GetFull().GetMin().GetValue();
    }
    double GetDataZoomedMax() const override
    {
        ++Calls.DataZoomedMax;
        return FZoomed ? FZoomMax : FDataTotal.GetFull().GetMax().GetValue();
    }
    double GetScaleZoomedTickMin() const override
    {
        ++Calls.ScaleZoomedTickMin;
        return TQVDisplayAxis::GetScaleZoomedTickMin();
    }
    double GetScaleZoomedTickMax() const override
    {
        ++Calls.ScaleZoomedTickMax;
        return TQVDisplayAxis::GetScaleZoomedTickMax();
    }
    const TQVDisplayValueRange* GetZoomWidthRange() const override
    {
        return ZoomWidth ? ZoomWidth : TQVDisplayAxis::GetZoomWidthRange();
    }

    void SetLimits(double ALo, double AHi)
    {
        Lo = ALo;
        Hi = AHi;
        InvalidateMinMaxCache(true);
    }
    void ZoomWindow(double AMin, double AMax)
    {
        FZoomMin = AMin;
        FZoomMax = AMax;
        FZoomed = true;
        InvalidateMinMaxCache(false);
    }
    // Runs the zoom window correction on the given window and returns the result.
    std::pair<double, double> Correct(double AMin, double AMax)
    {
        FZoomMin = AMin;
        FZoomMax = AMax;
        CorrectMinMax();
        return {FZoomMin, FZoomMax};
    }

    bool IsY;
    TQVScaleMode Mode = smLinear;
    double Lo = 0.0;
    double Hi = 100.0;
    bool UseBaseFullMin = false;
    const TQVDisplayValueRange* ZoomWidth = nullptr;
    mutable TLimitCalls Calls;
};

// X axis 0..100, Y axis 0..100.
class TAxisFixture : public ::testing::Test {
protected:
    TAxisFixture()
    {
        Display.SetBounds(0, 0, 500, 400);
        Display.DataView = &DataView;
        Display.Canvas = &Canvas;
        DataView.SetDrawRect(TRect{60, 20, 461, 321});
        XAxis.SetDrawRect(TRect{60, 321, 461, 361});
        YAxis.SetDrawRect(TRect{0, 20, 60, 321});
    }

    TAxisTestDisplay Display;
    TQLRecordingCanvas Canvas;
    TTestDataView DataView{&Display};
    TTestAxis XAxis{&Display, false, vaBottom};
    TTestAxis YAxis{&Display, true, vaLeft};
};

// Sets an optional bound and switches it on.
inline void Bound(TQVDisplayOptionalValue* ABound, double AValue)
{
    ABound->SetValue(AValue);
    ABound->SetEnabled(true);
}

struct TDrawnLine {
    TPoint From;
    TPoint To;
};

inline std::vector<TDrawnLine> DrawnLines(const TQLRecordingCanvas& ACanvas)
{
    std::vector<TDrawnLine> Lines;
    for (const TQLCanvasRecord& R : ACanvas.Of("LineTo"))
        Lines.push_back(TDrawnLine{R.PenPos, TPoint{R.Args[0], R.Args[1]}});
    return Lines;
}

// Writes down what the tick walk handed it.
struct TTickLog {
    struct TTick {
        double Value;
        int32_t Position;
        bool Minor;
        bool Zero;
    };
    std::vector<TTick> Ticks;

    TQVAxisTickProc Proc()
    {
        return [this](TQVTrackingOptionalAxis*, TQLCanvas&, bool AZero, int32_t, bool AMinor, double AValue,
                      int32_t APosition) {
            Ticks.push_back(TTick{AValue, APosition, AMinor, AZero});
        };
    }
    std::vector<int32_t> Positions(bool AMinor) const
    {
        std::vector<int32_t> Result;
        for (const TTick& T : Ticks)
            if (T.Minor == AMinor)
                Result.push_back(T.Position);
        return Result;
    }
    std::vector<double> MajorValues() const
    {
        std::vector<double> Result;
        for (const TTick& T : Ticks)
            if (!T.Minor)
                Result.push_back(T.Value);
        return Result;
    }
};

} // namespace qvtest
