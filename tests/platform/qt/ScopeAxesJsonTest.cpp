// A scope's axes as JSON: additional axes and the channels on them survive a document, and
// the older flat lists of the Y limits are read from one.
#include <qv/QVScope.h>
#include <qv/qt/QLJsonForm.h>

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace qv;

TEST(ScopeAxesJson, AdditionalAxesAndTheirChannelsSurviveADocument)
{
    TQVScope Scope;
    Scope.GetXAxis()->SetTicksMode(atmFrequency);
    Scope.GetXAxis()->GetAdditionalAxes()->Add()->GetAxis()->GetUnitScale()->SetExponent(6);
    TQVAdditionalScopeYAxis* Y1 = Scope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
    Y1->GetAutoScaling()->GetSpaceAbove()->SetSpace(0);
    Y1->SetReversed(true);
    Scope.GetChannels()->Add()->SetYAxisIndex(1);

    const QByteArray Json = QLSaveToJson(Scope, QJsonDocument::Compact);
    const QJsonObject Doc = QJsonDocument::fromJson(Json).object();
    EXPECT_EQ(Doc.value("XAxis").toObject().value("TicksMode").toString(), "atmFrequency");
    EXPECT_EQ(Doc.value("YAxis").toObject().value("AdditionalAxes").toArray().size(), 1);

    TQVScope Copy;
    QLLoadFromJson(Copy, Json);
    EXPECT_EQ(QLSaveToJson(Copy, QJsonDocument::Compact), Json);
    TQVBasicScopeYAxis* CopyY1 = Copy.GetYAxisByIndex(1);
    ASSERT_NE(CopyY1, nullptr);
    EXPECT_TRUE(CopyY1->GetReversed());
    EXPECT_EQ(CopyY1->GetAutoScaling()->GetSpaceAbove()->GetSpace(), 0u);
    EXPECT_EQ(Copy.GetChannels()->GetItem(1)->GetYAxis(), CopyY1);
    EXPECT_EQ(Copy.GetXAxisByIndex(1)->GetUnitScale()->GetExponent(), 6);
}

TEST(ScopeAxesJson, OlderYLimitsAreReadAndBadOnesNamed)
{
    TQVScope Scope;
    QLLoadFromJson(Scope, R"({"YAxis": {"Data": "-10 10 -20"}})");
    EXPECT_DOUBLE_EQ(Scope.GetYAxis()->GetMin()->GetValue(), -10.0);
    EXPECT_DOUBLE_EQ(Scope.GetYAxis()->GetMax()->GetValue(), 10.0);
    EXPECT_DOUBLE_EQ(Scope.GetYAxis()->GetMin()->GetRange()->GetLow()->GetValue(), -20.0);
    try {
        QLLoadFromJson(Scope, R"({"YAxis": {"Data": "-10 ten"}})");
        ADD_FAILURE() << "accepted a word";
    } catch (const EQLPropertyError& E) {
        EXPECT_EQ(E.GetPath(), "YAxis.Data");
        EXPECT_NE(std::string(E.what()).find("ten"), std::string::npos) << E.what();
    }
}
