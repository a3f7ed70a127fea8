// The logarithm of logarithmic axes, the cached limits, the limit settings and the tick
// settings of an axis.
#include "AxisTestSupport.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

using namespace qv;
using namespace qvtest;

namespace {

// Expects AFunction to raise std::invalid_argument whose message holds AText.
template <class F>
void ExpectInvalidArgumentNaming(F AFunction, const std::string& AText)
{
    try {
        AFunction();
        ADD_FAILURE() << "no error raised";
    } catch (const std::invalid_argument& E) {
        EXPECT_NE(std::string(E.what()).find(AText), std::string::npos) << E.what();
    }
}

const TQLStoredNode* Member(const TQLStoredNode& ANode, const std::string& AName) { return ANode.Find(AName); }

} // namespace

TEST(AxisLog, PassesThroughZeroAndIsOddAndInvertible)
{
    EXPECT_EQ(QVLog10a(0.0), 0.0);
    EXPECT_DOUBLE_EQ(QVLog10a(9.0), 1.0);   // the first decade runs from 0 to 9
    EXPECT_DOUBLE_EQ(QVLog10a(99.0), 2.0);
    EXPECT_DOUBLE_EQ(QVLog10a(-9.0), -1.0); // mirrored below zero
    EXPECT_DOUBLE_EQ(QVLog10a(-0.5), -QVLog10a(0.5));
    for (double V : {-12345.0, -9.0, -0.25, 0.0, 0.25, 3.0, 1e6})
        EXPECT_NEAR(QVExp10a(QVLog10a(V)), V, 1e-9 * std::max(1.0, std::fabs(V))) << V;
    EXPECT_DOUBLE_EQ(QVExp10a(-2.0), -99.0);
}

TEST(AxisCache, ComputesOnceUntilInvalidatedAndReportsTheMove)
{
    int Calls = 0;
    double Limit = 5.0;
    TQVDisplayCachedValue Value([&] {
        ++Calls;
        return Limit;
    });
    std::vector<double> Deltas;
    Value.SetOnChange([&](double ADelta) { Deltas.push_back(ADelta); });

    EXPECT_EQ(Value.GetValue(), 5.0);
    EXPECT_EQ(Value.GetValue(), 5.0);
    EXPECT_EQ(Calls, 1);
    Limit = 7.5;
    EXPECT_EQ(Value.GetValue(), 5.0); // still cached
    Value.Invalidate();
    EXPECT_FALSE(Value.GetPopulated());
    EXPECT_EQ(Value.GetValue(), 7.5);
    EXPECT_EQ(Calls, 2);
    Value.Invalidate();
    EXPECT_EQ(Value.GetValue(), 7.5); // the same number again still reports, with 0
    // The first computation reports the move from the initial 0.
    EXPECT_EQ(Deltas, (std::vector<double>{5.0, 2.5, 0.0}));

    // With caching off every read computes.
    Value.SetCahce(false);
    Value.GetValue();
    Value.GetValue();
    EXPECT_EQ(Calls, 5);
}

TEST(AxisCache, AValueWithoutHandlerStoresAndInvalidationPassesDown)
{
    int Calls = 0;
    auto Getter = [&] { return static_cast<double>(++Calls); };
    TQVLimitCachedMinMaxValue Limits(Getter, Getter, Getter, Getter);
    EXPECT_EQ(Limits.GetFull().GetMin().GetValue(), 1.0);
    EXPECT_EQ(Limits.GetFull().GetMax().GetValue(), 2.0);
    EXPECT_EQ(Limits.GetZoomed().GetMin().GetValue(), 3.0);
    EXPECT_EQ(Limits.GetZoomed().GetMax().GetValue(), 4.0);
    Limits.GetZoomed().Invalidate();
    EXPECT_TRUE(Limits.GetFull().GetMin().GetPopulated());
    EXPECT_FALSE(Limits.GetZoomed().GetMax().GetPopulated());
    EXPECT_EQ(Limits.GetZoomed().GetMax().GetValue(), 5.0);
    Limits.Invalidate();
    EXPECT_EQ(Limits.GetFull().GetMin().GetValue(), 6.0);
}

TEST(AxisCache, AGetterReadingItsOwnValueSeesTheOldOneInsteadOfRecursing)
{
    TQVDisplayCachedValue* Self = nullptr;
    TQVDisplayCachedValue Value([&] { return Self->GetValue() + 1.0; });
    Self = &Value;
    EXPECT_EQ(Value.GetValue(), 1.0);
    Value.Invalidate();
    EXPECT_EQ(Value.GetValue(), 2.0);
}

TEST(AxisLimitSettings, OptionalBoundsNotifyOnRealChangesAndRefuseNaN)
{
    TAxisTestDisplay Display;
    TQVDisplayOptionalValue Bound(&Display, 2.0, false, true);
    int Changes = 0;
    Bound.SetOnChange([&](TQLPersistent* ASender) {
        EXPECT_EQ(ASender, &Bound);
        ++Changes;
    });
    Bound.SetValue(2.0); // no change
    EXPECT_EQ(Changes, 0);
    Bound.SetValue(-3.0); // positive only: becomes 0
    EXPECT_EQ(Bound.GetValue(), 0.0);
    EXPECT_EQ(Changes, 1);
    Bound.SetEnabled(true);
    EXPECT_EQ(Changes, 2);
    ExpectInvalidArgumentNaming([&] { Bound.SetValue(std::nan("")); }, "nan");
    EXPECT_EQ(Bound.GetValue(), 0.0);

    TQVDisplayOptionalValue Signed(&Display);
    Signed.SetValue(-3.0);
    EXPECT_EQ(Signed.GetValue(), -3.0);
}

TEST(AxisLimitSettings, AxisValuesStoreOnlyWhatDiffersFromTheirDefaults)
{
    TAxisTestDisplay Display;
    int Notified = 0;
    TQVMaxAxisValue Max(nullptr, &Display, [&] { ++Notified; }, 10.0, 9.0);
    EXPECT_TRUE(Max.GetAutoScale());
    EXPECT_EQ(Max.GetValue(), 10.0);
    EXPECT_EQ(Max.GetDataValue(), 9.0);
    EXPECT_EQ(Max.GetMode(), mamValue);

    TQLStoredNode Node = QLSaveObject(Max);
    EXPECT_EQ(Member(Node, "Value"), nullptr);
    EXPECT_EQ(Member(Node, "DataValue"), nullptr);

    Max.SetValue(12.0);
    Max.SetDataValue(-1.0);
    Max.GetRange()->GetLow()->SetEnabled(true);
    Max.GetTick()->SetValue(4.0);
    Max.SetMode(mamOffset);
    Node = QLSaveObject(Max);
    ASSERT_NE(Member(Node, "Value"), nullptr);
    EXPECT_EQ(Member(Node, "Value")->Real, 12.0);
    EXPECT_EQ(Member(Node, "DataValue")->Real, -1.0);
    ASSERT_NE(Member(Node, "Range"), nullptr);
    EXPECT_NE(Member(*Member(Node, "Range"), "Low"), nullptr);
    EXPECT_NE(Member(Node, "Tick"), nullptr);
    EXPECT_EQ(Member(Node, "Mode")->String, "mamOffset");
    // Own changes, a bound's change and the tick value's change all reach the owner.
    EXPECT_EQ(Notified, 5);

    // A new default carries the value along and is then not stored.
    Max.SetValueDefault(3.0);
    Max.SetDataValueDefault(2.0);
    EXPECT_EQ(Max.GetValue(), 3.0);
    EXPECT_EQ(Max.GetDataValue(), 2.0);
    Node = QLSaveObject(Max);
    EXPECT_EQ(Member(Node, "Value"), nullptr);
    EXPECT_EQ(Member(Node, "DataValue"), nullptr);

    // A round trip restores the settings exactly.
    TQVMaxAxisValue Copy(nullptr, &Display, {}, 10.0, 9.0);
    Max.SetValue(-7.25);
    QLLoadObject(Copy, QLSaveObject(Max));
    EXPECT_EQ(Copy.GetValue(), -7.25);
    EXPECT_EQ(Copy.GetMode(), mamOffset);
    EXPECT_TRUE(Copy.GetRange()->GetLow()->GetEnabled());
    EXPECT_EQ(Copy.GetTick()->GetValue(), 4.0);
}

TEST(AxisLimitSettings, NotANumberIsRefusedAndInfinityAccepted)
{
    TAxisTestDisplay Display;
    TQVAxisValue Min(nullptr, &Display, {});
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    ExpectInvalidArgumentNaming([&] { Min.SetValue(NaN); }, "Value: value nan");
    ExpectInvalidArgumentNaming([&] { Min.SetDataValue(NaN); }, "DataValue: value nan");
    ExpectInvalidArgumentNaming([&] { Min.SetValueDefault(NaN); }, "nan");
    EXPECT_EQ(Min.GetValue(), 0.0);
    Min.SetValue(-std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isinf(Min.GetValue()));
}

TEST(TickSettings, BoundsAndPublishedProperties)
{
    TAxisTestDisplay Display;
    TTestAxis Axis(&Display, false, vaBottom);
    TQVMajorTicks* Major = Axis.GetMajorTicks();
    Axis.GetMinorTicks()->SetCount(-4);
    EXPECT_EQ(Axis.GetMinorTicks()->GetCount(), 0);
    ExpectInvalidArgumentNaming([&] { Major->SetStep(std::nan("")); }, "TQVMajorTicks.Step");
    ExpectInvalidArgumentNaming([&] { Major->GetStartFrom()->SetStartFrom(std::nan("")); }, "StartFrom");
    for (const char* Name : {"TrackCursor", "TrackColor", "MinorTicks", "MajorTicks", "Color", "Font", "Min", "Max",
                             "Visible"})
        EXPECT_NE(Axis.GetClassInfo().FindProperty(Name), nullptr) << Name;
    // Nothing differs from its default yet, so nothing is stored but the view's own settings.
    const TQLStoredNode Node = QLSaveObject(Axis);
    for (const char* Name : {"TrackCursor", "TrackColor", "MinorTicks", "MajorTicks", "Color", "Font", "Min", "Max"})
        EXPECT_EQ(Member(Node, Name), nullptr) << Name;
}

TEST(TickSettings, AChangedStepModeForgetsTheRememberedStepAndAsksForALayout)
{
    TAxisTestDisplay Display;
    TTestAxis Axis(&Display, true, vaLeft);
    Axis.SetDrawRect(TRect{0, 0, 50, 101});
    Axis.GetStep();
    EXPECT_TRUE(Axis.IsValidStep());
    Display.ClearRecalc();
    Axis.GetMajorTicks()->SetMode(mtmCustom);
    EXPECT_FALSE(Axis.IsValidStep());
    EXPECT_TRUE(Display.GetNeedsRecalc());
}

TEST(AxisList, AxesJoinTheDisplayListAndLeaveIt)
{
    TAxisTestDisplay Display;
    auto First = std::make_unique<TTestAxis>(&Display, false, vaBottom);
    TTestAxis Second(&Display, true, vaLeft);
    ASSERT_EQ(Display.GetAxes().GetCount(), 2);
    EXPECT_EQ(Display.GetAxes().GetItem(0), First.get());
    EXPECT_EQ(Display.GetAxes().IndexOf(&Second), 1);
    Display.GetAxes().Add(&Second); // already there: no second entry
    EXPECT_EQ(Display.GetAxes().GetCount(), 2);
    try {
        Display.GetAxes().GetItem(2);
        ADD_FAILURE() << "no error raised";
    } catch (const std::out_of_range& E) {
        EXPECT_NE(std::string(E.what()).find("(2)"), std::string::npos) << E.what();
    }
    First.reset();
    EXPECT_EQ(Display.GetAxes().GetCount(), 1);
    EXPECT_EQ(Display.GetAxes().IndexOf(&Second), 0);
    // The X and Y lists belong to the X and Y classes; a plain axis is in neither.
    EXPECT_EQ(Display.GetXAxes().GetCount(), 0);
    EXPECT_EQ(Display.GetYAxes().GetCount(), 0);
}
