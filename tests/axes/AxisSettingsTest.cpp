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

} // namespace

TEST(AxisLog, PassesThroughZeroAndIsOddAndInvertible)
{
    EXPECT_EQ(QVLog10a(0.0), 0.0);
    EXPECT_DOUBLE_EQ(QVLog10a(99.0), 2.0);
    EXPECT_DOUBLE_EQ(QVLog10a(-9.0), -1.0); // mirrored below zero
    for (double V : {-12345.0, -9.0, -0.25, 0.0, 0.25, 3.0, 1e6})
        EXPECT_NEAR(QVExp10a(QVLog10a(V)), V, 1e-9 * std::max(1.0, std::fabs(V))) << V;
    EXPECT_DOUBLE_EQ(QVExp10a(-2.0), -99.0);
}

TEST(AxisCache, ComputesOnceUntilInvalidatedReportsEveryMoveAndNeverRecurses)
{
    int Calls = 0;
    double Limit = 5.0;
    TQVDisplayCachedValue Value([&] {
        ++Calls;
        return Limit;
    });
    std::vector<double> Deltas;
    Value.SetOnChange([&](double ADelta) { Deltas.push_back(ADelta); });
    Value.GetValue();
    Limit = 7.5;
    EXPECT_EQ(Value.GetValue(), 5.0); // still cached
    Value.Invalidate();
    EXPECT_EQ(Value.GetValue(), 7.5);
    Value.Invalidate();
    Value.GetValue(); // the same number again still reports, with 0
    // The first computation reports the move from the initial 0.
    EXPECT_EQ(Deltas, (std::vector<double>{5.0, 2.5, 0.0}));
    Value.SetCahce(false); // with caching off every read computes
    Value.GetValue();
    Value.GetValue();
    EXPECT_EQ(Calls, 5);

    // Invalidating the zoomed pair keeps the full one.
    auto Getter = [&] { return static_cast<double>(++Calls); };
    TQVLimitCachedMinMaxValue Limits(Getter, Getter, Getter, Getter);
    Limits.GetFull().GetMin().GetValue();
    Limits.GetZoomed().Invalidate();
    EXPECT_TRUE(Limits.GetFull().GetMin().GetPopulated());
    Limits.Invalidate();
    EXPECT_FALSE(Limits.GetFull().GetMin().GetPopulated());

    // A getter reading its own value sees the old one instead of recursing.
    TQVDisplayCachedValue* Self = nullptr;
    TQVDisplayCachedValue Own([&] { return Self->GetValue() + 1.0; });
    Self = &Own;
    EXPECT_EQ(Own.GetValue(), 1.0);
    Own.Invalidate();
    EXPECT_EQ(Own.GetValue(), 2.0);
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
    Bound.SetValue(2.0);  // no change
    Bound.SetValue(-3.0); // positive only: becomes 0
    EXPECT_EQ(Bound.GetValue(), 0.0);
    EXPECT_EQ(Changes, 1);
    Bound.SetEnabled(true);
    EXPECT_EQ(Changes, 2);
    ExpectInvalidArgumentNaming([&] { Bound.SetValue(std::nan("")); }, "nan");
    EXPECT_EQ(Bound.GetValue(), 0.0);
}

TEST(AxisLimitSettings, AxisValuesStoreOnlyWhatDiffersFromTheirDefaults)
{
    TAxisTestDisplay Display;
    int Notified = 0;
    TQVMaxAxisValue Max(
        nullptr, &Display, [&] { ++Notified; }, 10.0, 9.0);
    EXPECT_TRUE(QLSaveObject(Max).Members.empty());

    Max.SetValue(12.0);
    Max.SetDataValue(-1.0);
    Max.GetRange()->GetLow()->SetEnabled(true);
    Max.GetTick()->SetValue(4.0);
    Max.SetMode(mamOffset);
    EXPECT_EQ(Notified, 5) << "own, bound and tick changes all reach the owner";
    TQLStoredNode Node = QLSaveObject(Max);
    ASSERT_NE(Node.Find("Value"), nullptr);
    EXPECT_EQ(Node.Find("Value")->Real, 12.0);
    TQVMaxAxisValue Copy(nullptr, &Display, {}, 10.0, 9.0);
    QLLoadObject(Copy, Node);
    EXPECT_EQ(QLSaveObject(Copy), Node);

    // A new default carries the value along and is then not stored.
    Max.SetValueDefault(3.0);
    Max.SetDataValueDefault(2.0);
    EXPECT_EQ(Max.GetValue(), 3.0);
    Node = QLSaveObject(Max);
    EXPECT_EQ(Node.Find("Value"), nullptr);
    EXPECT_EQ(Node.Find("DataValue"), nullptr);

    TQVAxisValue Min(nullptr, &Display, {});
    ExpectInvalidArgumentNaming([&] { Min.SetDataValue(std::nan("")); }, "DataValue: value nan");
    Min.SetValue(-std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isinf(Min.GetValue()));
}

TEST(TickSettings, BoundsStoredFormAndStepModeChanges)
{
    TAxisTestDisplay Display;
    TTestAxis Axis(&Display, true, vaLeft);
    Axis.GetMinorTicks()->SetCount(-4);
    EXPECT_EQ(Axis.GetMinorTicks()->GetCount(), 0);
    ExpectInvalidArgumentNaming([&] { Axis.GetMajorTicks()->SetStep(std::nan("")); }, "TQVMajorTicks.Step");
    const TQLStoredNode Node = QLSaveObject(Axis);
    for (const char* Name : {"MinorTicks", "MajorTicks", "Min", "Max"})
        EXPECT_EQ(Node.Find(Name), nullptr) << Name;

    // A changed step mode forgets the remembered step and asks for a layout.
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
    Display.GetAxes().Add(&Second); // already there: no second entry
    EXPECT_EQ(Display.GetAxes().GetCount(), 2);
    EXPECT_THROW(Display.GetAxes().GetItem(2), std::out_of_range);
    First.reset();
    EXPECT_EQ(Display.GetAxes().GetCount(), 1);
    EXPECT_EQ(Display.GetAxes().IndexOf(&Second), 0);
    EXPECT_EQ(Display.GetXAxes().GetCount(), 0) << "a plain axis is in neither the X nor the Y list";
}
