// The titles of a scope's axes as the axes name them, and the labels' and highlighting
// settings as part of the scope's stored form.
#include "qv/QVScope.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(ScopeAxisTitle, XAxisNamesItsUnitFromTheSampleRateAndTicksMode)
{
    TQVScope Scope;
    TQVScopeXAxis* X = Scope.GetXAxis();
    EXPECT_EQ(X->GetAxisLabelText(), "Samples");
    // 10000 samples a second when no channel sets a rate: milliseconds and kilohertz.
    X->SetTicksMode(atmTime);
    EXPECT_EQ(X->GetAxisLabelText(), "mSec");
    X->SetTicksMode(atmFrequency);
    EXPECT_EQ(X->GetAxisLabelText(), "kHz");
    Scope.GetChannels()->GetItem(0)->GetData()->SetSampleRate(2e6);
    Scope.InvalidateChannelAxes();
    EXPECT_EQ(X->GetAxisLabelText(), "MHz");
    X->GetUnitScale()->SetAutoScale(false);
    X->GetUnitScale()->SetExponent(-12);
    EXPECT_EQ(X->GetAxisLabelText(), "Hz (E12)");
    X->SetTicksMode(atmTime);
    X->GetUnitScale()->SetExponent(12);
    EXPECT_EQ(X->GetAxisLabelText(), "Sec (E-12)");

    X->SetTicksMode(atmIntensity);
    EXPECT_EQ(X->GetAxisLabelText(), "Intensity");
    X->SetTicksMode(atmAxis);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    X->SetTicksMode(atmManual);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    X->SetTicksMode(atmAuto);
    Scope.SetDesigning(true);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    // The user's text beats every unit.
    X->GetAxisLabel()->SetText("Distance");
    EXPECT_EQ(X->GetAxisLabelText(), "Distance");
}

TEST(ScopeAxisTitle, YAxesTitlesAndTheAxesNumberFormatGoThroughTheStoredForm)
{
    TQVScope Scope;
    EXPECT_EQ(Scope.GetYAxis()->GetAxisLabelText(), "Y Axis");
    TQVBasicScopeYAxis* Second = Scope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
    TQVBasicScopeYAxis* Third = Scope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
    EXPECT_NE(Second->GetAxisLabelText(), Third->GetAxisLabelText());
    EXPECT_EQ(Second->GetAxisLabelText().rfind("Y Axis ", 0), 0u);
    // A default title is not stored; the user's is, and survives a new default.
    EXPECT_EQ(QLSaveObject(*Scope.GetYAxis()).Find("AxisLabel"), nullptr);
    Second->GetAxisLabel()->SetText("Pressure");
    Second->SetAxisLabelDefault("Y Axis 9");
    EXPECT_EQ(Second->GetAxisLabelText(), "Pressure");

    Scope.GetXAxis()->GetFormat()->SetPrecisionMode(dpmScientific);
    Scope.GetXAxis()->GetButton()->SetMouseDownColor(0xFF123456);
    Scope.GetHighlighting()->GetChannels()->SetHiglightFromMouse(true);
    EXPECT_EQ(QLSaveObject(TQVScope()).Find("Highlighting"), nullptr);
    TQVScope Copy;
    QLLoadObject(Copy, QLSaveObject(Scope));
    EXPECT_EQ(Copy.GetXAxis()->GetFormat()->GetPrecisionMode(), dpmScientific);
    EXPECT_EQ(Copy.GetXAxis()->GetButton()->GetMouseDownColor(), 0xFF123456u);
    EXPECT_TRUE(Copy.GetHighlighting()->GetChannels()->GetHiglightFromMouse());
    EXPECT_EQ(Copy.GetYAxis()->GetAdditionalAxes()->GetItem(0)->GetAxis()->GetAxisLabelText(), "Pressure");
    // Elements reach the settings and the highlight record through their display.
    const TQVDataDisplay& Display = Copy;
    EXPECT_EQ(Display.GetHighlighting(), Copy.GetHighlighting());
    EXPECT_NE(Display.GetHighlightInfo(), nullptr);
}
