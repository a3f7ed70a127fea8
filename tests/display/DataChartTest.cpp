// The chart's axes: additional axes resolved by index, channels choosing their axes, the
// refresh tick's axis steps, the turned display, and the stored form of every axis setting.
#include "axes/ScopeAxisTestSupport.h"

#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/foundation/QLStoredForm.h"

#include <stdexcept>

using namespace qv;
using namespace qvtest;

namespace {

TQVBasicScopeYAxis* AddYAxis(TQVScope& AScope)
{
    return AScope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
}
TQVBasicScopeXAxis* AddXAxis(TQVScope& AScope)
{
    return AScope.GetXAxis()->GetAdditionalAxes()->Add()->GetAxis();
}

TQLStoredNode Text(const std::string& AText)
{
    TQLStoredNode Node = TQLStoredNode::Of(TQLStoredNode::snString);
    Node.String = AText;
    return Node;
}

TQLStoredNode YAxisWith(const std::string& AName, TQLStoredNode AValue)
{
    TQLStoredNode Axis = TQLStoredNode::MakeObject();
    Axis.Add(AName, std::move(AValue));
    TQLStoredNode Root = TQLStoredNode::MakeObject();
    Root.Add("YAxis", std::move(Axis));
    return Root;
}

} // namespace

TEST(DataChart, AxesResolveByIndexAcrossBothKinds)
{
    TQVScope Scope;
    TQVScopeXAxis* X = Scope.GetXAxis();
    TQVScopeYAxis* Y = Scope.GetYAxis();
    EXPECT_EQ(Scope.GetYAxisByIndex(0), Y);
    EXPECT_EQ(Scope.GetXAxisByIndex(1), nullptr);
    EXPECT_EQ(Scope.GetYAxisByIndex(-1), nullptr);

    TQVBasicScopeXAxis* X1 = AddXAxis(Scope);
    TQVBasicScopeYAxis* Y1 = AddYAxis(Scope);
    TQVBasicScopeYAxis* Y2 = AddYAxis(Scope);
    EXPECT_EQ(Scope.GetXAxisByIndex(1), X1);
    EXPECT_EQ(Scope.GetYAxisByIndex(2), Y2);
    EXPECT_EQ(Scope.GetYAxisIndexOf(Y2), 2);
    EXPECT_EQ(Scope.GetXAxisIndexOf(Y1), -1);
    // All axes: the X axes first, then the Y axes.
    TQVDisplayAxis* All[] = {X, X1, Y, Y1, Y2};
    for (int32_t I = 0; I < 5; ++I)
        EXPECT_EQ(Scope.GetAxisIndex(All[I]), I);
    TQVScope Other;
    EXPECT_EQ(Scope.GetAxisIndex(Other.GetYAxis()), -1);

    // The display's lists know every axis, and the views dock the main axes first.
    EXPECT_EQ(Scope.GetXAxes().GetCount(), 2);
    EXPECT_EQ(Scope.GetYAxes().GetCount(), 3);
    // Each additional strip docks behind the one before it, all ahead of the data view.
    const TQVDisplayViews& Views = Scope.GetViews();
    for (int32_t I = 1; I < 5; ++I)
        EXPECT_EQ(Views.IndexOf(All[I]), Views.IndexOf(All[I - 1]) + 1) << I;
    EXPECT_EQ(Views.GetItem(Views.GetCount() - 1), Scope.GetDataView());

    EXPECT_EQ(Y1->GetAxisLabelDefault(), "Y Axis 0");
    EXPECT_EQ(Y2->GetAxisLabelDefault(), "Y Axis 1");

    // A deleted axis leaves every list.
    Scope.GetYAxis()->GetAdditionalAxes()->Delete(0);
    EXPECT_EQ(Scope.GetYAxes().GetCount(), 2);
    EXPECT_EQ(Scope.GetYAxisByIndex(1), Y2);
}

TEST(DataChart, ChannelsChooseTheirAxesAndEachAxisScalesItsOwn)
{
    TQVScope Scope;
    TQVScopeChannel& A = *Scope.GetChannels()->GetItem(0);
    TQVScopeChannel& B = *Scope.GetChannels()->Add();
    // An index with no axis yet draws against the main axis.
    B.SetYAxisIndex(1);
    B.SetXAxisIndex(1);
    EXPECT_EQ(B.GetYAxis(), Scope.GetYAxis());
    EXPECT_EQ(B.GetXAxis(), Scope.GetXAxis());
    TQVBasicScopeYAxis* Y1 = AddYAxis(Scope);
    TQVBasicScopeXAxis* X1 = AddXAxis(Scope);
    EXPECT_EQ(B.GetYAxis(), Y1);
    EXPECT_EQ(B.GetXAxis(), X1);
    EXPECT_EQ(A.GetYAxis(), Scope.GetYAxis());

    EXPECT_THROW(B.SetYAxisIndex(-1), std::out_of_range);
    EXPECT_EQ(B.GetYAxisIndex(), 1);

    A.GetData()->SetYData(Line(100, 0, 1).data(), 100);
    B.GetData()->SetYData(Line(50, 100, 200).data(), 50);
    B.GetData()->SetSampleRate(2000.0);
    Scope.RefreshView();
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 0.0, 1.0);
    EXPECT_LIMITS(Full(Y1->GetDataTotal()), 100.0, 200.0);
    EXPECT_EQ(Scope.GetXAxis()->GetSamples(), 100);
    EXPECT_EQ(X1->GetSamples(), 50);
    EXPECT_DOUBLE_EQ(Scope.GetXAxis()->GetSampleRate(), 10000.0);
    EXPECT_DOUBLE_EQ(X1->GetSampleRate(), 2000.0);
    EXPECT_EQ(Y1->GetValBufSize(), 1u);

    // Both axes forget their history together.
    Scope.InvalidateHistory();
    EXPECT_EQ(Scope.GetYAxis()->GetValBufSize(), 0u);
    EXPECT_EQ(Y1->GetValBufSize(), 0u);

    // Moving the channel back moves its data with it.
    B.SetYAxisIndex(0);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 0.0, 200.0);
    EXPECT_LIMITS(Full(Y1->GetDataTotal()), -1.0, 1.0);
}

TEST(DataChart, TheTickUpdatesHistoryOnlyWithNewData)
{
    TQVScope Scope;
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Feed(Scope, Line(10, 0, 1));
    EXPECT_EQ(Y.GetValBufSize(), 1u);
    Scope.RefreshView(); // nothing new
    EXPECT_EQ(Y.GetValBufSize(), 1u);
    Scope.SetHold(true);
    ChannelData(Scope).SetYData(Line(10, 0, 5).data(), 10);
    Scope.RefreshView();
    EXPECT_EQ(Y.GetValBufSize(), 1u);
    EXPECT_LIMITS(Full(Y.GetDataTotal()), 0.0, 1.0);
    Scope.SetHold(false);
    Scope.RefreshView();
    EXPECT_EQ(Y.GetValBufSize(), 2u);
    EXPECT_LIMITS(Full(Y.GetDataTotal()), 0.0, 5.0);
}

TEST(DataChart, TurningTheScopeSwapsTheAxesOrientation)
{
    TQVScope Scope;
    EXPECT_EQ(Scope.GetXAxis()->GetScreenAlign(), vsaBottom);
    EXPECT_EQ(Scope.GetYAxis()->GetScreenAlign(), vsaLeft);
    TQLBitmap Bitmap(200, 100);
    TQLRecordingCanvas Canvas;
    Scope.PaintToCanvas(Bitmap, Canvas, false); // lays the scope out: no recalculation due
    Scope.SetVertical(true);
    EXPECT_TRUE(Scope.GetNeedsRecalc());
    EXPECT_TRUE(Scope.GetXAxis()->GetIsVertical());
    EXPECT_FALSE(Scope.GetYAxis()->GetIsVertical());
    EXPECT_EQ(Scope.GetXAxis()->GetScreenAlign(), vsaLeft);
    EXPECT_EQ(Scope.GetYAxis()->GetScreenAlign(), vsaBottom);
    EXPECT_EQ(Scope.GetYAxis()->GetDirection(), adToLeft);
}

TEST(DataChart, StoredFormRoundTripsEveryAxisSetting)
{
    TQVScope Scope;
    Scope.SetVertical(true);
    TQVScopeXAxis& X = *Scope.GetXAxis();
    X.SetTicksMode(atmTime);
    X.GetMaxSampleSettings()->SetAutosize(false);
    X.GetMaxSampleSettings()->SetValue(300);
    X.GetUnitScale()->SetAutoScale(false);
    X.GetUnitScale()->SetExponent(-3);
    X.SetScaleMode(smLogarithmic);
    X.GetCursorSettings()->SetSnapToSample(true);
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Y.GetAutoScaling()->GetSpaceBelow()->SetThreshold(7);
    Y.GetAutoScaling()->SetMaxHistory(9);
    Y.SetReversed(true);
    Y.GetMax()->SetValue(250.0);
    AddXAxis(Scope)->SetTicksMode(atmFrequency);
    AddYAxis(Scope);
    TQVBasicScopeYAxis* Y2 = AddYAxis(Scope);
    Y2->GetAutoScaling()->SetMaxHistory(3);
    Y2->SetAlign(vaRight);
    TQVScopeChannel& B = *Scope.GetChannels()->Add();
    B.SetXAxisIndex(1);
    B.SetYAxisIndex(2);

    // The copy stores the same, and each setting is back where the property belongs (an
    // unregistered property would vanish from both forms alike).
    const TQLStoredNode Stored = QLSaveObject(Scope);
    TQVScope Copy;
    QLLoadObject(Copy, Stored);
    EXPECT_EQ(QLSaveObject(Copy), Stored);
    const TQVScopeXAxis& CX = *Copy.GetXAxis();
    EXPECT_TRUE(Copy.GetIsVertical());
    EXPECT_EQ(CX.GetTicksMode(), atmTime);
    EXPECT_EQ(CX.GetMaxSampleSettings()->GetValue(), 300u);
    EXPECT_EQ(CX.GetUnitScale()->GetExponent(), -3);
    EXPECT_EQ(CX.GetScaleMode(), smLogarithmic);
    EXPECT_TRUE(CX.GetCursorSettings()->GetSnapToSample());
    const TQVScopeYAxis& CY = *Copy.GetYAxis();
    EXPECT_EQ(CY.GetAutoScaling()->GetMaxHistory(), 9u);
    EXPECT_EQ(CY.GetAutoScaling()->GetSpaceBelow()->GetThreshold(), 7u);
    EXPECT_TRUE(CY.GetReversed());
    EXPECT_DOUBLE_EQ(CY.GetMax()->GetValue(), 250.0);
    ASSERT_EQ(CY.GetAdditionalAxes()->GetCount(), 2);
    TQVBasicScopeYAxis* CopyY2 = Copy.GetYAxisByIndex(2);
    EXPECT_EQ(CopyY2->GetAutoScaling()->GetMaxHistory(), 3u);
    EXPECT_EQ(CopyY2->GetAlign(), vaRight);
    EXPECT_EQ(CopyY2->GetAxisLabelDefault(), "Y Axis 1");
    EXPECT_EQ(Copy.GetXAxisByIndex(1)->GetTicksMode(), atmFrequency);
    EXPECT_EQ(Copy.GetChannels()->GetItem(1)->GetYAxis(), CopyY2);
    EXPECT_EQ(Copy.GetChannels()->GetItem(1)->GetXAxis(), Copy.GetXAxisByIndex(1));

    // A default scope stores nothing of its axes.
    const TQLStoredNode Plain = QLSaveObject(TQVScope());
    EXPECT_EQ(Plain.Find("XAxis"), nullptr);
    EXPECT_EQ(Plain.Find("YAxis"), nullptr);
}

TEST(DataChart, OlderFormsOfTheYLimitsAreRead)
{
    TQVScope Scope;
    QLLoadObject(Scope, YAxisWith("Data", Text("-2.5, 8 1 3; 7 9")));
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    EXPECT_DOUBLE_EQ(Y.GetMin()->GetValue(), -2.5);
    EXPECT_DOUBLE_EQ(Y.GetMax()->GetValue(), 8.0);
    EXPECT_DOUBLE_EQ(Y.GetMin()->GetRange()->GetLow()->GetValue(), 1.0);
    EXPECT_DOUBLE_EQ(Y.GetMin()->GetRange()->GetHigh()->GetValue(), 3.0);
    EXPECT_DOUBLE_EQ(Y.GetMax()->GetRange()->GetLow()->GetValue(), 7.0);
    EXPECT_DOUBLE_EQ(Y.GetMax()->GetRange()->GetHigh()->GetValue(), 9.0);
    // Nothing writes the old form back.
    EXPECT_EQ(QLSaveObject(Scope).Find("YAxis")->Find("Data"), nullptr);

    for (const char* Bad : {"1 x", "4", "", "1 nan"}) {
        TQVScope Fresh;
        try {
            QLLoadObject(Fresh, YAxisWith("Data", Text(Bad)));
            ADD_FAILURE() << "accepted \"" << Bad << "\"";
        } catch (const EQLPropertyError& E) {
            EXPECT_EQ(E.GetPath(), "YAxis.Data");
        }
    }
}

TEST(DataChart, OlderFormsOfTheXRangesAreRead)
{
    TQVScope Scope;
    TQLStoredNode Axis = TQLStoredNode::MakeObject();
    Axis.Add("MinMaxRange", Text("1 2 3 4 5 6"));
    Axis.Add("DataTick", Text("0.5 8"));
    TQLStoredNode Root = TQLStoredNode::MakeObject();
    Root.Add("XAxis", std::move(Axis));
    QLLoadObject(Scope, Root);
    TQVScopeXAxis& X = *Scope.GetXAxis();
    EXPECT_DOUBLE_EQ(X.GetMin()->GetRange()->GetLow()->GetValue(), 1.0);
    EXPECT_DOUBLE_EQ(X.GetMin()->GetRange()->GetHigh()->GetValue(), 2.0);
    EXPECT_DOUBLE_EQ(X.GetMax()->GetRange()->GetLow()->GetValue(), 3.0);
    EXPECT_DOUBLE_EQ(X.GetMax()->GetRange()->GetHigh()->GetValue(), 4.0);
    EXPECT_DOUBLE_EQ(X.GetZooming()->GetRange()->GetLow()->GetValue(), 5.0);
    EXPECT_DOUBLE_EQ(X.GetZooming()->GetRange()->GetHigh()->GetValue(), 6.0);
    EXPECT_THROW(X.ReadDataTick("1 two"), std::invalid_argument);
}

TEST(DataChart, ALoadedYRangeOfNoWidthOpensDownwards)
{
    TQVScope Scope;
    Scope.GetYAxis()->GetMin()->SetValue(3.0);
    Scope.GetYAxis()->GetMax()->SetValue(3.0);
    TQVScope Copy;
    QLLoadObject(Copy, QLSaveObject(Scope));
    EXPECT_DOUBLE_EQ(Copy.GetYAxis()->GetMin()->GetValue(), -3.0);
    EXPECT_DOUBLE_EQ(Copy.GetYAxis()->GetMax()->GetValue(), 3.0);
}
