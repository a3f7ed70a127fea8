#pragma once
// The level display: the colour key of a waterfall, a strip beside the data view with the
// gradient from the lowest to the highest level, a scale of ticks, a caption that can act as
// a button, and a track line at the value under the mouse. It owns the colour list and the
// value-to-colour rules with which the waterfall colours its pixels. It knows nothing of
// waterfalls: it is given the low and high level and the value at a pixel as functions.
//
// The class line: TQVBasicLevelDisplayLevelView (bar, ticks, track line, colours),
// TQVAxisDisplayLevelView (adds Axis), TQVDisplayLevelView (adds LevelLabel),
// TQVWaterfallDisplayLevelView (adds Button).

#include "qv/axes/QVTrackingOptionalAxis.h"
#include "qv/component/QVViewButtonSettings.h"
#include "qv/waterfall/QVLevelAxis.h"
#include "qv/waterfall/QVLevelColors.h"

#include <functional>
#include <memory>
#include <string>

namespace qv {

class TQVWaterfallOwner;

using TQVLevelFunc = std::function<double()>;
using TQVGetValueAtFunc = std::function<double(int32_t X, int32_t Y)>;
using TValueToColorGBRFunc = std::function<TAlphaColor(double AValue, double MaxValue)>;

class TQVBasicLevelDisplayLevelView : public TQVTrackingOptionalAxis {
public:
    TQVBasicLevelDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc, TQVLevelFunc AMaxFunc,
                                  TQVGetValueAtFunc AGetValueAtFunc);
    ~TQVBasicLevelDisplayLevelView() override;

    // ---- Settings ----
    // The tick step in force.
    double GetStepValue() const { return FStep; }
    // Thickness of the gradient bar; below 1 raises std::out_of_range naming the value.
    int32_t GetBarWidth() const { return FBarWidth; }
    void SetBarWidth(int32_t AValue);
    // Greys in place of the colour list, in the bar and in the picture.
    bool GetGrayScale() const { return FGrayScale; }
    void SetGrayScale(bool AValue);
    TQVLevelDisplayColors* GetColors() const { return FColors.get(); }
    void SetColors(const TQVLevelDisplayColors* AValue) { FColors->Assign(AValue); }
    void SetAlign(TQVViewAlign AValue) override;

    // ---- The parts the derived views add ----
    virtual TQVBasicViewButtonSettings* GetButtonSettings() const = 0;
    virtual TQVLevelAxis* GetAxis() const = 0;
    virtual std::string GetLabelText() const = 0;
    // The caption; null when the view has none.
    virtual TQVBasicLevelDisplayLabel* GetLevelLabel() const { return nullptr; }

    // ---- Colours ----
    // The colour rules with the present colour list, for colouring many values at once.
    TQVLevelColorMap GetColorMap() const;
    // The colour of the bar, and of a pixel of the picture (see QVLevelColors.h).
    TAlphaColor ValueToColor(double AValue, double MaxValue) const;
    virtual TAlphaColor ValueToColorGBR(double AValue, double MaxValue) const;
    // The built-in scale, at its middle when MaxValue is 0.
    virtual TAlphaColor CalculateDefault(double AValue, double MaxValue) const;
    TValueToColorGBRFunc GetValueToColorGBRFunc() const;

    // ---- Levels ----
    double GetMinLevel() const { return FMinFunc ? FMinFunc() : 0.0; }
    double GetMaxLevel() const { return FMaxFunc ? FMaxFunc() : 0.0; }
    // The value that the track line shows.
    double GetCurrentLevelValue() const { return FCurrentLevelValue; }
    // The range or the picture under the mouse moved: repaints with AForceInvalidate, and
    // reads the value under the last mouse position anew.
    void MainViewScrolled(bool AForceInvalidate);

    // ---- Scale ----
    TQVScaleMode GetIntScaleMode() const override;
    void SetIntScaleMode(TQVScaleMode AValue) override;
    int32_t GetDimentionLength() const override;
    double GetRangeWidth(bool ALogarithmic) const override;
    uint32_t GetMaxTextLength() const override;
    uint32_t GetMinScaleLineDistance() const override;
    TQVDisplayFont* GetFont() const override;
    double GetStep() override;
    bool GetIsVertical() const override { return FAlign == vaLeft || FAlign == vaRight; }
    // The ticks stand beside the bar.
    int32_t GetAxesSpaceOffset() const override { return FBarWidth + 2; }
    // Decimals from the range and Axis.Precision, then OnCustomLabel.
    std::string GetTickText(double AValue) const override;
    TSize GetAutoSize() const override;

    // ---- Drawing ----
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;
    void DrawEx(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical) override;
    void DrawTicks(TQLCanvas& ACanvas, bool ADrawLine, bool AVertical);
    // The pixel of the track line along the strip; false when there is none to draw.
    bool GetTrackPixel(int32_t& APixel) const;

    // ---- The caption as a button ----
    // The caption's rectangle and its text's angle, measured on ACanvas.
    TRect GetLabelRect(TQLCanvas& ACanvas, int32_t& AAngle) const;
    void ButtonHitTest(int32_t AX, int32_t AY, bool AForceInvalidate);
    bool GetLabelButtonShown() const { return FLabelButtonShown; }
    bool GetLabelButtonDown() const { return FLabelButtonDown; }
    bool GetDialogShown() const { return FDialogShown; }

    // ---- Mouse ----
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    void MouseLeaveView() override;

    QL_CLASS_INFO()

protected:
    // The levels in the colouring domain (QVLog10a on a logarithmic scale) and their range, 1
    // when empty.
    void GetDomain(double& ALow, double& AHigh, double& ARange) const;
    void DrawBar(TQLCanvas& ACanvas, const TRect& AView);
    void DrawLabel(TQLCanvas& ACanvas, bool APrinting);

    int32_t FBarWidth = 14;
    double FStep = 0.0;
    bool FGrayScale = false;
    TQVLevelFunc FMinFunc;
    TQVLevelFunc FMaxFunc;
    TQVGetValueAtFunc FGetValueAtFunc;
    TPoint FOldMousePos{-10000, -10000};
    double FCurrentLevelValue = -10000000.0;
    std::unique_ptr<TQVLevelDisplayColors> FColors;
    bool FLabelButtonShown = false;
    bool FLabelButtonDown = false;
    bool FDialogShown = false;
    bool FToolCursorChanged = false;
};

class TQVAxisDisplayLevelView : public TQVBasicLevelDisplayLevelView {
public:
    TQVAxisDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc, TQVLevelFunc AMaxFunc,
                            TQVGetValueAtFunc AGetValueAtFunc);
    ~TQVAxisDisplayLevelView() override;
    TQVLevelAxis* GetAxis() const override { return FAxis.get(); }
    void SetAxis(const TQVLevelAxis* AValue) { FAxis->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVLevelAxis> FAxis;
};

class TQVDisplayLevelView : public TQVAxisDisplayLevelView {
public:
    TQVDisplayLevelView(TQVDisplayOwner* ADisplay, TQVLevelFunc AMinFunc, TQVLevelFunc AMaxFunc,
                        TQVGetValueAtFunc AGetValueAtFunc);
    ~TQVDisplayLevelView() override;
    TQVLevelDisplayLabel* GetLevelLabel() const override { return FLevelLabel.get(); }
    void SetLevelLabel(const TQVLevelDisplayLabel* AValue) { FLevelLabel->Assign(AValue); }
    std::string GetLabelText() const override { return FLevelLabel->GetText(); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVLevelDisplayLabel> FLevelLabel;
};

// The level view of a waterfall: its caption acts as a button that asks the waterfall for
// the levels' setup.
class TQVWaterfallDisplayLevelView : public TQVDisplayLevelView {
public:
    TQVWaterfallDisplayLevelView(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall, TQVLevelFunc AMinFunc,
                                 TQVLevelFunc AMaxFunc, TQVGetValueAtFunc AGetValueAtFunc);
    ~TQVWaterfallDisplayLevelView() override;
    TQVViewButtonSettings* GetButton() const { return FButton.get(); }
    void SetButton(const TQVViewButtonSettings* AValue) { FButton->Assign(AValue); }
    TQVBasicViewButtonSettings* GetButtonSettings() const override { return FButton.get(); }
    TQVWaterfallOwner* GetWaterfall() const { return FWaterfall; }

    QL_CLASS_INFO()

private:
    TQVWaterfallOwner* FWaterfall;
    std::unique_ptr<TQVViewButtonSettings> FButton;
};

} // namespace qv
