// The titles of a scope's axes as the axes name them, and the chart's highlighting settings
// as part of the scope's stored form.
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
    X->SetTicksMode(atmTime);
    EXPECT_EQ(X->GetAxisLabelText(), "uSec");

    // A given exponent outside the named units.
    X->GetUnitScale()->SetAutoScale(false);
    X->GetUnitScale()->SetExponent(12);
    EXPECT_EQ(X->GetAxisLabelText(), "Sec (E-12)");
    X->SetTicksMode(atmFrequency);
    X->GetUnitScale()->SetExponent(-12);
    EXPECT_EQ(X->GetAxisLabelText(), "Hz (E12)");

    X->SetTicksMode(atmIntensity);
    EXPECT_EQ(X->GetAxisLabelText(), "Intensity");
    X->SetTicksMode(atmAxis);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    X->SetTicksMode(atmManual);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    X->SetTicksMode(atmAuto);
    Scope.SetDesigning(true);
    EXPECT_EQ(X->GetAxisLabelText(), "X Axis");
    Scope.SetDesigning(false);

    // The user's text beats every unit.
    X->GetAxisLabel()->SetText("Distance");
    X->SetTicksMode(atmFrequency);
    EXPECT_EQ(X->GetAxisLabelText(), "Distance");
}

TEST(ScopeAxisTitle, YAxesStartWithTheirOwnTitlesAndKeepTheUsers)
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
    Scope.GetYAxis()->GetAxisLabel()->SetText("");
    EXPECT_EQ(Scope.GetYAxis()->GetAxisLabelText(), "");
}

TEST(ScopeAxisTitle, HighlightingIsStoredWithTheScopeOnlyWhenChanged)
{
    TQVScope Scope;
    ASSERT_NE(Scope.GetHighlighting(), nullptr);
    // Elements reach both through the display they belong to.
    const TQVDataDisplay& Display = Scope;
    EXPECT_EQ(Display.GetHighlighting(), Scope.GetHighlighting());
    ASSERT_NE(Display.GetHighlightInfo(), nullptr);
    EXPECT_EQ(Display.GetHighlightInfo()->FHighlightedItem, nullptr);
    EXPECT_EQ(QLSaveObject(Scope).Find("Highlighting"), nullptr);
    Scope.GetHighlighting()->GetChannels()->SetHiglightFromMouse(true);
    Scope.GetHighlighting()->GetMouseHitPoint()->SetEnabled(false);
    const TQLStoredNode Stored = QLSaveObject(Scope);
    ASSERT_NE(Stored.Find("Highlighting"), nullptr);

    TQVScope Copy;
    QLLoadObject(Copy, Stored);
    EXPECT_TRUE(Copy.GetHighlighting()->GetChannels()->GetHiglightFromMouse());
    EXPECT_FALSE(Copy.GetHighlighting()->GetMouseHitPoint()->GetEnabled());
    EXPECT_FALSE(Copy.GetHighlighting()->GetChannelLinks()->GetHiglightFromMouse());
}
