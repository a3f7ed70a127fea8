// The chart's point label: codes, the default template spliced in, and the ends of the text.

#include "qv/component/QVLabelTemplate.h"

#include <gtest/gtest.h>

namespace {

std::string Format(const std::string& AText, const std::string& ADefault)
{
    int XCalls = 0;
    return qv::QVFormatLabelText(
        AText, ADefault, [&] { return std::string("x").append(std::to_string(++XCalls)); },
        [] { return std::string("y"); });
}

TEST(LabelTemplate, CodesExpandCaseBlindUnknownCodesVanishAndTheDefaultSplicesIn)
{
    EXPECT_EQ(Format("", "%X : %Y"), "x1 : y");
    EXPECT_EQ(Format("t=%x v=%y", "unused"), "t=x1 v=y");
    EXPECT_EQ(Format("100%% %Q!", ""), "100% !");
    // Each code asks its axis anew.
    EXPECT_EQ(Format("%X %X", ""), "x1 x2");
    // The default splices in and is expanded in place.
    EXPECT_EQ(Format("[%D] ok", "%X : %Y"), "[x1 : y] ok");
    // The default standing for itself expands "%D" to nothing instead of without end.
    EXPECT_EQ(Format("", "a%Db"), "ab");
    EXPECT_EQ(Format("<%D>", "a%Db"), "<ab>");
    // A percent at the end ends the text.
    EXPECT_EQ(Format("value %Y%", ""), "value y");
    EXPECT_EQ(Format("%", "x"), "");
    EXPECT_EQ(Format("", ""), "");
}

} // namespace

// The scope's hit label: the axes' tick texts in the default "%X : %Y", the hit label's own
// template when set, and the user's replacement through SetLabelText.
#include "qv/QVScope.h"
#include "qv/channels/QVDisplayHighlighting.h"

TEST(ScopeHitLabel, AxesTextsTemplateAndUserReplacement)
{
    qv::TQVScope Scope;
    const std::string Plain = Scope.GetFormatedMouseHitLabelText();
    EXPECT_EQ(Plain, Scope.GetXAxis()->GetTickText(0) + " : " + Scope.GetYAxis()->GetTickText(0));

    Scope.GetHighlighting()->GetMouseHitPoint()->GetPointLabel()->SetText("y=%Y (%D)");
    EXPECT_EQ(Scope.GetFormatedMouseHitLabelText(), "y=" + Scope.GetYAxis()->GetTickText(0) + " (" + Plain + ")");

    int Calls = 0;
    Scope.SetOnCustomMouseHitLabel([&](qv::TQLPersistent*, double, double, const std::string& AText) {
        if (++Calls == 1)
            Scope.SetLabelText("custom " + AText.substr(0, 2));
    });
    EXPECT_EQ(Scope.GetFormatedMouseHitLabelText(), "custom y=");
    // A handler that does not call SetLabelText leaves the text as it was.
    EXPECT_EQ(Scope.GetFormatedMouseHitLabelText(), "y=" + Scope.GetYAxis()->GetTickText(0) + " (" + Plain + ")");
    EXPECT_EQ(Calls, 2);
}
