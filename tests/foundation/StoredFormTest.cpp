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

TNode Int(int64_t A)
{
    TNode N = TNode::Of(TNode::snInteger);
    N.Integer = A;
    return N;
}
TNode Real(double A)
{
    TNode N = TNode::Of(TNode::snReal);
    N.Real = A;
    return N;
}
TNode Str(std::string A)
{
    TNode N = TNode::Of(TNode::snString);
    N.String = std::move(A);
    return N;
}
TNode Bool(bool A)
{
    TNode N = TNode::Of(TNode::snBool);
    N.Bool = A;
    return N;
}
TNode Names(std::vector<std::string> A)
{
    TNode N = TNode::Of(TNode::snNames);
    N.Names = std::move(A);
    return N;
}
TNode Obj(std::vector<std::pair<std::string, TNode>> AMembers)
{
    TNode N = TNode::MakeObject();
    for (auto& [Name, Child] : AMembers)
        N.Add(Name, std::move(Child));
    return N;
}
TNode List(std::vector<TNode> AItems)
{
    TNode N = TNode::Of(TNode::snList);
    N.Items = std::move(AItems);
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
        const std::vector<TSampleItem*> ItemsBefore(AObject.GetItems()->begin(), AObject.GetItems()->end());
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
        EXPECT_EQ(AObject.GetItems()->GetCount(), static_cast<int32_t>(ItemsBefore.size()));
        EXPECT_TRUE(LoadedLog().empty());
    }
};

} // namespace

TEST_F(StoredFormFixture, FreshObjectStoresOnlyItsDefinedProperty)
{
    TSampleSettings Settings;
    const TNode Node = QLSaveObject(Settings);
    // No defaults, no empty collection, no untouched owned object, no read-only property.
    EXPECT_EQ(MemberNames(Node), (std::vector<std::string>{"AxisIndex_"}));
    EXPECT_EQ(*Node.Find("AxisIndex_"), Int(0));
}

TEST_F(StoredFormFixture, ChangedValuesAreWrittenInTheirForms)
{
    TSampleSettings Settings;
    FillSample(Settings);
    const TNode Node = QLSaveObject(Settings);
    EXPECT_EQ(MemberNames(Node), (std::vector<std::string>{"Enabled", "Small", "Percent", "Big", "Mask", "Gain",
                                                           "Level", "Title", "Back", "Shape", "Flags", "Pen",
                                                           "Marker", "Items", "AxisIndex_"}));
    EXPECT_EQ(*Node.Find("Enabled"), Bool(false));
    EXPECT_EQ(*Node.Find("Small"), Int(-1234));
    EXPECT_EQ(*Node.Find("Mask"), Int(0xDEADBEEF));
    EXPECT_EQ(*Node.Find("Gain"), Real(42.125));
    EXPECT_EQ(*Node.Find("Back"), Str("#80112233"));
    EXPECT_EQ(*Node.Find("Shape"), Str("ssTriangle"));
    EXPECT_EQ(*Node.Find("Flags"), Names({"sfLabels", "sfTicks"}));
    EXPECT_EQ(*Node.Find("Pen"), Obj({{"Color", Str("#FF0000FF")}, {"Width", Int(3)}, {"Dash", Str("sdDot")}}));

    const TNode& Items = *Node.Find("Items");
    ASSERT_EQ(Items.Kind, TNode::snList);
    ASSERT_EQ(Items.Items.size(), 2u);
    EXPECT_EQ(Items.Items[0], Obj({{"Name", Str("first")},
                                   {"Weight", Int(10)},
                                   {"Font", Obj({{"Size", Int(14)}, {"Style", Names({"fsBold", "fsItalic"})}})}}));
    EXPECT_EQ(Items.Items[1], Obj({{"Name", Str("second")},
                                   {"Ratio", Real(0.75)},
                                   {"Font", Obj({{"Name", Str("Courier")}, {"Color", Str("#FFABCDEF")}})},
                                   {"Marker", Obj({{"Offset", Real(-3.5)}})}}));
}

TEST_F(StoredFormFixture, RoundTripRestoresEveryValue)
{
    TSampleSettings Source;
    FillSample(Source);
    const TNode Saved = QLSaveObject(Source);

    TSampleSettings Target;
    QLLoadObject(Target, Saved);
    EXPECT_EQ(QLSaveObject(Target), Saved);
    // Equal stored forms could hide a value lost both ways: check values of each kind.
    EXPECT_FALSE(Target.GetEnabled());
    EXPECT_EQ(Target.GetSmall(), -1234);
    EXPECT_EQ(Target.GetBig(), int64_t(1) << 40);
    EXPECT_EQ(Target.GetMask(), 0xDEADBEEFu);
    EXPECT_EQ(Target.GetLevel(), -0.1);
    EXPECT_EQ(Target.GetTitle(), Source.GetTitle());
    EXPECT_EQ(Target.GetBack(), 0x80112233u);
    EXPECT_EQ(Target.GetShape(), ssTriangle);
    EXPECT_EQ(Target.GetFlags(), sfLabels | sfTicks);
    ASSERT_EQ(Target.GetItems()->GetCount(), 2);
    EXPECT_EQ(Target.GetItems()->GetItem(1)->GetMarker()->GetOffset(), -3.5);

    // A value that the enumeration does not name survives as a number.
    Source.SetShape(static_cast<TSampleShape>(7));
    const TNode Odd = QLSaveObject(Source);
    EXPECT_EQ(*Odd.Find("Shape"), Int(7));
    QLLoadObject(Target, Odd);
    EXPECT_EQ(Target.GetShape(), 7);
    // So do set bits without a name.
    Source.SetFlags(sfGrid | 0x40);
    QLLoadObject(Target, QLSaveObject(Source));
    EXPECT_EQ(Target.GetFlags(), sfGrid | 0x40u);
}

TEST_F(StoredFormFixture, AbsentPropertiesGoBackToTheirDefaults)
{
    TSampleSettings Settings;
    FillSample(Settings);
    QLLoadObject(Settings, Obj({{"Percent", Int(10)}}));
    EXPECT_EQ(Settings.GetPercent(), 10);
    EXPECT_TRUE(Settings.GetEnabled());
    EXPECT_EQ(Settings.GetSmall(), 0);
    EXPECT_EQ(Settings.GetTitle(), "scope");
    EXPECT_EQ(Settings.GetBack(), Settings.GetBackDefault());
    EXPECT_EQ(Settings.GetShape(), ssSquare);
    EXPECT_EQ(Settings.GetFlags(), sfGrid);
    EXPECT_EQ(Settings.GetPen()->GetColor(), 0xFF00FF00u);
    EXPECT_EQ(Settings.GetPen()->GetWidth(), 1);
    EXPECT_EQ(Settings.GetMarker()->GetRadius(), 3);
    EXPECT_EQ(Settings.GetItems()->GetCount(), 0);
    // The defined property has no default and keeps its value when absent.
    EXPECT_EQ(Settings.GetAxisIndex(), 2);
    EXPECT_EQ(MemberNames(QLSaveObject(Settings)), (std::vector<std::string>{"Percent", "AxisIndex_"}));
}

TEST_F(StoredFormFixture, DefaultsAreThoseOfTheInstance)
{
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
    ASSERT_NE(Node.Find("Pen"), nullptr);
    Blue.SetBack(0xFF111111);
    QLLoadObject(Blue, Node);
    EXPECT_EQ(Blue.GetBack(), 0xFF0000FFu);
}

TEST_F(StoredFormFixture, AcceptedAlternativeForms)
{
    TSampleSettings Settings;
    QLLoadObject(Settings, Obj({{"Percent", Real(30.0)},       // an integral number for an integer
                                {"Gain", Int(7)},              // an integer for a real
                                {"Back", Int(0xFF010203)},     // a colour as a number
                                {"Shape", Int(ssCircle)},      // an enumeration by value
                                {"Flags", Names({})},          // the empty set
                                {"Items", Names({})},          // an empty list as formats give it
                                {"Title", Str("")}}));
    EXPECT_EQ(Settings.GetPercent(), 30);
    EXPECT_EQ(Settings.GetGain(), 7.0);
    EXPECT_EQ(Settings.GetBack(), 0xFF010203u);
    EXPECT_EQ(Settings.GetShape(), ssCircle);
    EXPECT_EQ(Settings.GetFlags(), 0u);
    EXPECT_EQ(Settings.GetTitle(), "");
    // Lower-case colours read the same.
    QLLoadObject(Settings, Obj({{"Back", Str("#ff0a0b0c")}}));
    EXPECT_EQ(Settings.GetBack(), 0xFF0A0B0Cu);
    // A setter's clamp still applies to loaded values.
    QLLoadObject(Settings, Obj({{"Percent", Int(250)}}));
    EXPECT_EQ(Settings.GetPercent(), 100);
}

TEST_F(StoredFormFixture, NonFiniteRealsSurvive)
{
    TSampleSettings Settings;
    for (double Value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                         -std::numeric_limits<double>::infinity(), 1e-300, 1e300}) {
        Settings.SetLevel(Value);
        TSampleSettings Copy;
        QLLoadObject(Copy, QLSaveObject(Settings));
        if (std::isnan(Value))
            EXPECT_TRUE(std::isnan(Copy.GetLevel()));
        else
            EXPECT_EQ(Copy.GetLevel(), Value);
    }
    // Formats without NaN and infinity give them by name.
    QLLoadObject(Settings, Obj({{"Level", Str("-Infinity")}}));
    EXPECT_EQ(Settings.GetLevel(), -std::numeric_limits<double>::infinity());
    QLLoadObject(Settings, Obj({{"Level", Str("NaN")}}));
    EXPECT_TRUE(std::isnan(Settings.GetLevel()));
}

TEST_F(StoredFormFixture, LoadedRunsOncePerObjectInnermostFirst)
{
    TSampleSettings Source;
    FillSample(Source);
    TSampleSettings Target;
    LoadedLog().clear();
    QLLoadObject(Target, QLSaveObject(Source));
    EXPECT_EQ(LoadedLog(), (std::vector<std::string>{"Root.Marker", "Item.Marker", "Item first", "Item.Marker",
                                                     "Item second", "Root"}));
    // Objects whose values were all absent still take part.
    LoadedLog().clear();
    QLLoadObject(Target, Obj({}));
    EXPECT_EQ(LoadedLog(), (std::vector<std::string>{"Root.Marker", "Root"}));
}

TEST_F(StoredFormFixture, BadValuesFailWithTheirPathAndChangeNothing)
{
    TSampleSettings Settings;
    FillSample(Settings);
    const double NaN = std::numeric_limits<double>::quiet_NaN();

    ExpectFailure(Settings, Obj({{"Bogus", Int(1)}}), "Bogus", "unknown property");
    ExpectFailure(Settings, FailingLate(Str("big")), "Items[1].Font.Size", "\"big\"");
    ExpectFailure(Settings, FailingLate(Int(99999999999)), "Items[1].Font.Size", "99999999999");
    ExpectFailure(Settings, FailingLate(Real(12.5)), "Items[1].Font.Size", "12.5");
    ExpectFailure(Settings, Obj({{"Small", Int(40000)}}), "Small", "40000");
    ExpectFailure(Settings, Obj({{"Mask", Int(-1)}}), "Mask", "-1");
    ExpectFailure(Settings, Obj({{"Mask", Int(0x100000000)}}), "Mask", "4294967296");
    ExpectFailure(Settings, Obj({{"Enabled", Int(1)}}), "Enabled", "integer 1");
    ExpectFailure(Settings, Obj({{"Gain", Str("loud")}}), "Gain", "\"loud\"");
    ExpectFailure(Settings, Obj({{"Gain", Real(NaN)}}), "Gain", "nan");
    ExpectFailure(Settings, Obj({{"Title", Int(3)}}), "Title", "integer 3");
    ExpectFailure(Settings, Obj({{"Shape", Str("ssHexagon")}}), "Shape", "ssHexagon");
    ExpectFailure(Settings, Obj({{"Shape", Int(300)}}), "Shape", "300");
    ExpectFailure(Settings, Obj({{"Flags", Names({"sfGrid", "sfBogus"})}}), "Flags", "sfBogus");
    ExpectFailure(Settings, Obj({{"Flags", Str("sfGrid")}}), "Flags", "\"sfGrid\"");
    ExpectFailure(Settings, Obj({{"Back", Str("#12345")}}), "Back", "#12345");
    ExpectFailure(Settings, Obj({{"Back", Str("#GG000000")}}), "Back", "#GG000000");
    ExpectFailure(Settings, Obj({{"Back", Int(-5)}}), "Back", "-5");
    ExpectFailure(Settings, Obj({{"Revision", Int(7)}}), "Revision", "read-only");
    ExpectFailure(Settings, Obj({{"Pen", Int(5)}}), "Pen", "object");
    ExpectFailure(Settings, Obj({{"Pen", Obj({{"Dash", Str("sdWavy")}})}}), "Pen.Dash", "sdWavy");
    ExpectFailure(Settings, Obj({{"Items", Obj({})}}), "Items", "list");
    ExpectFailure(Settings, Obj({{"Items", List({Obj({}), Int(2)})}}), "Items[1]", "object");
    ExpectFailure(Settings, Obj({{"Items", List({Obj({{"Marker", Obj({{"Radius", Str("x")}})}})})}}),
                  "Items[0].Marker.Radius", "\"x\"");
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
    EXPECT_EQ(Settings.GetItems()->GetCount(), 0);
    EXPECT_EQ(Settings.GetPercent(), 50);
}

TEST_F(StoredFormFixture, DefinedPropertyIsAlwaysStoredAndRestored)
{
    TSampleSettings Settings;
    Settings.SetAxisIndex(4);
    const TNode Node = QLSaveObject(Settings);
    EXPECT_EQ(*Node.Find("AxisIndex_"), Int(4));
    TSampleSettings Copy;
    QLLoadObject(Copy, Node);
    EXPECT_EQ(Copy.GetAxisIndex(), 4);
    const TQLPropertyInfo* Prop = TSampleSettings::StaticClassInfo().FindProperty("AxisIndex_");
    ASSERT_NE(Prop, nullptr);
    EXPECT_TRUE(Prop->Defined);
}
