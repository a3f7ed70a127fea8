#pragma once
// A display with axes and channels: the base of the scope. It owns the main X and Y axes
// (each with its additional axes) and resolves the axis indexes by which channels and
// elements refer to axes: index 0 is the main axis, index N the additional axis N - 1.
// Across both kinds (GetAxisIndex) the X axes come first, then the Y axes.

#include "qv/axes/QVAxisChannel.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/pins/QWPins.h"

#include <memory>

namespace qv {

class TQVScopeChannels;

class TQVDataChart : public TQVDataDisplay, public IQVAxisChannelSource {
public:
    TQVDataChart();
    ~TQVDataChart() override;

    // The chart's channels; a derived chart owns them.
    virtual TQVScopeChannels* GetChannels() const = 0;

    // ---- Axes ----
    TQVScopeXAxis* GetXAxis() const override { return FXAxis.get(); }
    void SetXAxis(const TQVScopeXAxis* AValue) { FXAxis->Assign(AValue); }
    TQVScopeYAxis* GetYAxis() const override { return FYAxis.get(); }
    void SetYAxis(const TQVScopeYAxis* AValue) { FYAxis->Assign(AValue); }

    // The position of AAxis among all axes: the main X axis 0, the additional X axes 1 to
    // N, the main Y axis N + 1, the additional Y axes after it; -1 for a foreign axis.
    int32_t GetAxisIndex(const TQVDisplayAxis* AAxis) const override;
    // 0 for the main axis, N for the additional axis N - 1, -1 for a foreign axis.
    int32_t GetXAxisIndexOf(const TQVDisplayAxis* AAxis) const override;
    int32_t GetYAxisIndexOf(const TQVDisplayAxis* AAxis) const override;
    // The axis of an index; null when there is none (an index read before its axis exists).
    TQVBasicScopeXAxis* GetXAxisByIndex(int32_t AIndex) const override;
    TQVBasicScopeYAxis* GetYAxisByIndex(int32_t AIndex) const override;
    // Opens the setup dialog on the axis AIndex (GetAxisIndex): an X axis up to the count
    // of additional X axes, a Y axis beyond it. An index of no axis opens the display's page.
    void DoAxisClick(int32_t AIndex) override;

    // ---- Highlighting ----
    // How the chart's elements light up; made before any element that reads it.
    TQVDataDisplayHighlighting* GetHighlighting() const override { return FHighlighting.get(); }
    void SetHighlighting(const TQVDataDisplayHighlighting* AValue) { FHighlighting->Assign(AValue); }
    // The plot's run-time record of what is lit and dragged, kept by the data view; null
    // while the chart has none.
    TQVHighlightInfo* GetHighlightInfo() const override;
    // Limits a pan of AX and AY printed units of the main axes: each main axis clamps its
    // own offset, then each additional axis, given the same share of its own window, may
    // pull the offset of its direction down so that every axis moves by one proportion.
    void AdjustOffsets(double& AX, double& AY) const;

    // Forgets the autoscaling history of every Y axis, then repaints.
    void InvalidateHistory() override;
    // What the X axes learn from the channels (domains, sample rates, ranges) and what the
    // Y axes take from them is stale: a channel changed its axis, visibility or domain.
    void InvalidateChannelAxes() override;
    // Every channel, as the axes read it.
    std::vector<IQVAxisChannel*> GetAxisChannels() const override;

    // ---- Pins ----
    // The channels' Y and X input pins, each under its channel's name. A channel registers
    // its pins when it is made and removes them when it goes.
    TQWPinList& GetInputPins() { return FInputPins; }
    const TQWPinList& GetInputPins() const { return FInputPins; }
    TQWPinList& GetXInputPins() { return FXInputPins; }
    const TQWPinList& GetXInputPins() const { return FXInputPins; }

    // ---- Label templates ----
    // ALabelText, or ADefaultText when it is empty, with "%X" and "%Y" replaced by the main
    // axes' texts of AX and AY, "%D" by the default template and "%%" by a percent sign.
    virtual std::string GetFormatLabelText(const TPoint& APoint, double AX, double AY, const std::string& ALabelText,
                                           const std::string& ADefaultText) const;

    QL_CLASS_INFO()

protected:
    // Created by the derived chart's constructor in its order of views; freed before it.
    std::unique_ptr<TQVScopeXAxis> FXAxis;
    std::unique_ptr<TQVScopeYAxis> FYAxis;

private:
    // Made before any channel, freed after the last one.
    TQWPinList FInputPins;
    TQWPinList FXInputPins;
    std::unique_ptr<TQVDataDisplayHighlighting> FHighlighting;
};

} // namespace qv
