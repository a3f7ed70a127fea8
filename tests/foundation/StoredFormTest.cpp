// The stored form: what is written, what a load restores, and how a bad document fails.
#include "foundation/SettingsSamples.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

using TNode = TQLStoredNode;

template <class T>
TNode Leaf(TNode::TKind AKind, T TNode::*AField, T AValue)
{
    TNode N = TNode::Of(AKind);
    N.*AField = std::move(AValue);
    return N;
}
TNode Int(int64_t A)
{
    return Leaf(TNode::snInteger, &TNode::Integer, A);
}
TNode Real(double A)
{
    return Leaf(TNode::snReal, &TNode::Real, A);
}
TNode Str(std::string A)
{
    return Leaf(TNode::snString, &TNode::String, std::move(A));
}
TNode Bool(bool A)
{
    return Leaf(TNode::snBool, &TNode::Bool, A);
}
TNode Names(std::vector<std::string> A)
{
    return Leaf(TNode::snNames, &TNode::Names, std::move(A));
}
TNode List(std::vector<TNode> A)
{
    return Leaf(TNode::snList, &TNode::Items, std::move(A));
}
TNode Obj(std::vector<std::pair<std::string, TNode>> AMembers)
{
    TNode N = TNode::MakeObject();
    for (auto& [Name, Child] : AMembers)
        N.Add(Name, std::move(Child));
    return N;
}

std::vector<std::string> MemberNames(const TNode& ANode)
{
    std::vector<std::string> Result;
    for (const auto& [Name, Child] : ANode.Members)
        Result.push_back(Name);
    return Result;
}

// A document that sets root values, then fails deep inside the second item.
TNode FailingLate(TNode ABad)
{
    return Obj({{"Percent", Int(5)},
                {"Title", Str("changed")},
                {"Items", List({Obj({{"Name", Str("one")}}),
                                Obj({{"Name", Str("two")}, {"Font", Obj({{"Size", std::move(ABad)}})}})})}});
}

struct StoredFormFixture : ::testing::Test {
    void SetUp() override { LoadedLog().clear(); }

    // Loads ANode into AObject and expects an error at APath whose message also holds
    // AValueText; the object must be left as it was, and no Loaded hook may run.
    void ExpectFailure(TSampleSettings& AObject, const TNode& ANode, const std::string& APath,
                       const std::string& AValueText)
    {
        const TNode Before = QLSaveObject(AObject);
        const int32_t ItemsBefore = AObject.GetItems()->GetCount();
        LoadedLog().clear();
        try {
            QLLoadObject(AObject, ANode);
            ADD_FAILURE() << "no error for " << APath;
        } catch (const EQLPropertyError& E) {
            const std::string Message = E.what();
            EXPECT_EQ(E.GetPath(), APath) << Message;
            EXPECT_EQ(Message.rfind(APath + ": ", 0), 0u) << Message;
            EXPECT_NE(Message.find(AValueText), std::string::npos) << Message;
        }
        EXPECT_EQ(QLSaveObject(AObject), Before) << "a failed load changed " << APath;
        EXPECT_EQ(AObject.GetItems()->GetCount(), ItemsBefore);
        EXPECT_TRUE(LoadedLog().empty());
    }
};

} // namespace

TEST_F(StoredFormFixture, FreshObjectStoresOnlyItsDefinedPropertyWhichAlwaysRoundTrips)
{
    TSampleSettings Settings;
    // No defaults, no empty collection, no untouched owned object, no read-only property.
    EXPECT_EQ(QLSaveObject(Settings), Obj({{"AxisIndex_", Int(0)}}));
    Settings.SetAxisIndex(4);
    TSampleSettings Copy;
    QLLoadObject(Copy, QLSaveObject(Settings));
    EXPECT_EQ(Copy.GetAxisIndex(), 4);
    // Absent, it keeps its value.
    QLLoadObject(Copy, Obj({}));
    EXPECT_EQ(Copy.GetAxisIndex(), 4);
}

TEST_F(StoredFormFixture, ChangedValuesAreWrittenInTheirFormsAndRoundTripWithLoadedHooks)
{
    TSampleSettings Source;
    FillSample(Source);
    const TNode Node = QLSaveObject(Source);
    EXPECT_EQ(MemberNames(Node),
              (std::vector<std::string>{"Enabled", "Small", "Percent", "Big", "Mask", "Gain", "Level", "Title", "Back",
                                        "Shape", "Flags", "Pen", "Marker", "Items", "AxisIndex_"}));
    EXPECT_EQ(*Node.Find("Enabled"), Bool(false));
    EXPECT_EQ(*Node.Find("Mask"), Int(0xDEADBEEF));
    EXPECT_EQ(*Node.Find("Gain"), Real(42.125));
    EXPECT_EQ(*Node.Find("Back"), Str("#80112233"));
    EXPECT_EQ(*Node.Find("Shape"), Str("ssTriangle"));
    EXPECT_EQ(*Node.Find("Flags"), Names({"sfLabels", "sfTicks"}));
    EXPECT_EQ(*Node.Find("Pen"), Obj({{"Color", Str("#FF0000FF")}, {"Width", Int(3)}, {"Dash", Str("sdDot")}}));
    EXPECT_EQ(*Node.Find("Items"),
              List({Obj({{"Name", Str("first")},
                         {"Weight", Int(10)},
                         {"Font", Obj({{"Size", Int(14)}, {"Style", Names({"fsBold", "fsItalic"})}})}}),
                    Obj({{"Name", Str("second")},
                         {"Ratio", Real(0.75)},
                         {"Font", Obj({{"Name", Str("Courier")}, {"Color", Str("#FFABCDEF")}})},
                         {"Marker", Obj({{"Offset", Real(-3.5)}})}})}));

    TSampleSettings Target;
    LoadedLog().clear();
    QLLoadObject(Target, Node);
    EXPECT_EQ(QLSaveObject(Target), Node);
    // Loaded runs once per object, innermost first.
    EXPECT_EQ(LoadedLog(), (std::vector<std::string>{"Root.Marker", "Item.Marker", "Item first", "Item.Marker",
                                                     "Item second", "Root"}));
    // Equal stored forms could hide a value lost both ways: check values of several kinds.
    EXPECT_EQ(Target.GetBig(), int64_t(1) << 40);
    EXPECT_EQ(Target.GetBack(), 0x80112233u);
    ASSERT_EQ(Target.GetItems()->GetCount(), 2);
    EXPECT_EQ(Target.GetItems()->GetItem(1)->GetMarker()->GetOffset(), -3.5);

    // Values and set bits that have no name survive as numbers.
    Source.SetShape(static_cast<TSampleShape>(7));
    Source.SetFlags(sfGrid | 0x40);
    const TNode Odd = QLSaveObject(Source);
    EXPECT_EQ(*Odd.Find("Shape"), Int(7));
    QLLoadObject(Target, Odd);
    EXPECT_EQ(Target.GetShape(), 7);
    EXPECT_EQ(Target.GetFlags(), sfGrid | 0x40u);
}

TEST_F(StoredFormFixture, AbsentPropertiesGoBackToTheDefaultsOfTheInstance)
{
    TSampleSettings Settings;
    FillSample(Settings);
    LoadedLog().clear();
    QLLoadObject(Settings, Obj({{"Percent", Int(10)}}));
    // Objects whose values were all absent still take part in Loaded.
    EXPECT_EQ(LoadedLog(), (std::vector<std::string>{"Root.Marker", "Root"}));
    EXPECT_EQ(Settings.GetTitle(), "scope");
    EXPECT_EQ(Settings.GetItems()->GetCount(), 0);
    EXPECT_EQ(MemberNames(QLSaveObject(Settings)), (std::vector<std::string>{"Percent", "AxisIndex_"}));

    TSampleSettings Red(QLMakeLock(), 0xFFFF0000, 0xFFFF0000);
    TSampleSettings Blue(QLMakeLock(), 0xFF0000FF, 0xFF0000FF);
    // Red at its own default stores nothing; loaded into Blue, Blue takes its own default.
    Blue.SetBack(0xFF00FF00);
    QLLoadObject(Blue, QLSaveObject(Red));
    EXPECT_EQ(Blue.GetBack(), 0xFF0000FFu);
    EXPECT_EQ(Blue.GetPen()->GetColor(), 0xFF0000FFu);
    // Red holding Blue's default is a change for Red, and is stored.
    Red.SetBack(0xFF0000FF);
    Red.GetPen()->SetColor(0xFF0000FF);
    const TNode Node = QLSaveObject(Red);
    EXPECT_EQ(*Node.Find("Back"), Str("#FF0000FF"));
    EXPECT_NE(Node.Find("Pen"), nullptr);
}

TEST_F(StoredFormFixture, AcceptedAlternativeFormsAndNonFiniteReals)
{
    TSampleSettings Settings;
    QLLoadObject(Settings, Obj({{"Percent", Real(30.0)},   // an integral number for an integer
                                {"Gain", Int(7)},          // an integer for a real
                                {"Back", Int(0xFF010203)}, // a colour as a number
                                {"Shape", Int(ssCircle)},  // an enumeration by value
                                {"Flags", Names({})},      // the empty set
                                {"Items", Names({})}}));   // an empty list as formats give it
    EXPECT_EQ(Settings.GetPercent(), 30);
    EXPECT_EQ(Settings.GetGain(), 7.0);
    EXPECT_EQ(Settings.GetBack(), 0xFF010203u);
    EXPECT_EQ(Settings.GetShape(), ssCircle);
    EXPECT_EQ(Settings.GetFlags(), 0u);
    QLLoadObject(Settings, Obj({{"Back", Str("#ff0a0b0c")}, {"Percent", Int(250)}, {"Level", Str("-Infinity")}}));
    EXPECT_EQ(Settings.GetBack(), 0xFF0A0B0Cu) << "lower-case colours read the same";
    EXPECT_EQ(Settings.GetPercent(), 100) << "a setter's clamp still applies";
    EXPECT_EQ(Settings.GetLevel(), -std::numeric_limits<double>::infinity()) << "formats without infinity name it";

    for (double Value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e-300}) {
        Settings.SetLevel(Value);
        TSampleSettings Copy;
        QLLoadObject(Copy, QLSaveObject(Settings));
        EXPECT_TRUE(Copy.GetLevel() == Value || (std::isnan(Value) && std::isnan(Copy.GetLevel()))) << Value;
    }
}

TEST_F(StoredFormFixture, BadValuesFailWithTheirPathAndChangeNothing)
{
    TSampleSettings Settings;
    FillSample(Settings);
    ExpectFailure(Settings, Obj({{"Bogus", Int(1)}}), "Bogus", "unknown property");
    ExpectFailure(Settings, FailingLate(Str("big")), "Items[1].Font.Size", "\"big\"");
    ExpectFailure(Settings, FailingLate(Real(12.5)), "Items[1].Font.Size", "12.5");
    ExpectFailure(Settings, Obj({{"Small", Int(40000)}}), "Small", "40000");
    ExpectFailure(Settings, Obj({{"Mask", Int(-1)}}), "Mask", "-1");
    ExpectFailure(Settings, Obj({{"Enabled", Int(1)}}), "Enabled", "integer 1");
    ExpectFailure(Settings, Obj({{"Gain", Real(std::numeric_limits<double>::quiet_NaN())}}), "Gain", "nan");
    ExpectFailure(Settings, Obj({{"Flags", Names({"sfGrid", "sfBogus"})}}), "Flags", "sfBogus");
    ExpectFailure(Settings, Obj({{"Back", Str("#12345")}}), "Back", "#12345");
    ExpectFailure(Settings, Obj({{"Revision", Int(7)}}), "Revision", "read-only");
    ExpectFailure(Settings, Obj({{"Pen", Obj({{"Dash", Str("sdWavy")}})}}), "Pen.Dash", "sdWavy");
    ExpectFailure(Settings, Obj({{"Items", List({Obj({}), Int(2)})}}), "Items[1]", "object");
    ExpectFailure(Settings, Obj({{"Items", List({Obj({}), Obj({{"Weight", Int(1)}, {"Bogus", Int(1)}})})}}),
                  "Items[1].Bogus", "TSampleItem");
}

TEST_F(StoredFormFixture, RootNameLeadsThePathAndTheRootMustBeAnObject)
{
    TSampleSettings Settings;
    try {
        QLLoadObject(Settings, FailingLate(Str("x")), "Scope");
        FAIL();
    } catch (const EQLPropertyError& E) {
        EXPECT_EQ(E.GetPath(), "Scope.Items[1].Font.Size");
    }
    try {
        QLLoadObject(Settings, List({}));
        FAIL();
    } catch (const EQLPropertyError& E) {
        EXPECT_EQ(E.GetPath(), "TSampleSettings");
    }
    EXPECT_EQ(Settings.GetPercent(), 50);
}
