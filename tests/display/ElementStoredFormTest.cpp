// Hosted elements in their host's stored form: they come back by class with their settings,
// load in place when the classes match, and a bad document changes none of them.
#include "qv/QVScope.h"
#include "qv/display/QVExternalScopeElement.h"
#include "qv/display/QVExternalWaterfallElement.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace qv;

namespace {

// A scope hosting a waterfall moved right, a hidden scope and a half-size matrix layer.
void AddElements(TQVScope& AHost)
{
    TQVDisplayElements& List = *AHost.GetElements();
    List.Add<TQVExternalWaterfallElement>()->GetPosition()->SetX(0.25);
    List.Add<TQVExternalScopeElement>()->SetVisible(false);
    auto* Layer = List.Add<TQVExternalScopeMatrixLayer>();
    Layer->GetSize()->SetX(0.5);
    Layer->GetChannels()->Add();
}

std::vector<const IQLDrawComponentElement*> Items(const TQVScope& AHost)
{
    std::vector<const IQLDrawComponentElement*> Result;
    for (const auto& Item : *AHost.GetElements())
        Result.push_back(Item.get());
    return Result;
}

} // namespace

TEST(ElementStoredForm, ElementsRoundTripByClassAndLoadInPlace)
{
    TQVScope Source;
    AddElements(Source);
    const TQLStoredNode Saved = QLSaveObject(Source);
    const TQLStoredNode* List = Saved.Find("Elements");
    ASSERT_NE(List, nullptr);
    ASSERT_EQ(List->Items.size(), 3u);
    EXPECT_EQ(List->Items[0].Members.front().second.String, "TQVExternalWaterfallElement");

    TQVScope Fresh;
    QLLoadObject(Fresh, Saved);
    ASSERT_EQ(Fresh.GetElements()->GetCount(), 3);
    EXPECT_NE(dynamic_cast<TQVExternalWaterfallElement*>(Fresh.GetElements()->GetItem(0)), nullptr);
    auto* Layer = dynamic_cast<TQVExternalScopeMatrixLayer*>(Fresh.GetElements()->GetItem(2));
    ASSERT_NE(Layer, nullptr);
    EXPECT_EQ(Layer->GetSize()->GetX(), 0.5);
    EXPECT_EQ(Layer->GetChannels()->GetCount(), 2);
    EXPECT_FALSE(Fresh.GetElements()->GetItem(1)->GetVisible());
    EXPECT_EQ(QLSaveObject(Fresh), Saved);

    // The same classes again: the elements stay the same objects.
    const auto Before = Items(Fresh);
    QLLoadObject(Fresh, Saved);
    EXPECT_EQ(Items(Fresh), Before);
    // A document without elements empties the list.
    QLLoadObject(Fresh, QLSaveObject(TQVScope()));
    EXPECT_EQ(Fresh.GetElements()->GetCount(), 0);
}

TEST(ElementStoredForm, BadElementDocumentsFailWithTheirPathAndChangeNothing)
{
    struct TCase {
        const char* Path;
        std::function<void(TQLStoredNode&)> Spoil;
    };
    const auto Member = [](TQLStoredNode& AItem, const std::string& AName) -> TQLStoredNode& {
        for (auto& [Name, Node] : AItem.Members)
            if (Name == AName)
                return Node;
        AItem.Add(AName, TQLStoredNode::MakeObject());
        return AItem.Members.back().second;
    };
    const TCase Cases[] = {
        {"Elements[1].Class", [](TQLStoredNode& L) { L.Items[1].Members.front().second.String = "TQVNoSuchElement"; }},
        {"Elements[0].Class", [](TQLStoredNode& L) { L.Items[0].Members.erase(L.Items[0].Members.begin()); }},
        {"Elements[1].Bogus",
         [](TQLStoredNode& L) { L.Items[1].Add("Bogus", TQLStoredNode::Of(TQLStoredNode::snBool)); }},
        // A class other than the element's at that index, and a size its setter refuses
        // after the elements before it were loaded.
        {"Elements[2].Size.X",
         [&](TQLStoredNode& L) {
             Member(L.Items[0], "Position").Members.clear();
             TQLStoredNode Class = TQLStoredNode::Of(TQLStoredNode::snString);
             Class.String = "TQVExternalWaterfallMatrixElement";
             TQLStoredNode Bad = TQLStoredNode::Of(TQLStoredNode::snReal);
             Bad.Real = -1.0;
             TQLStoredNode Size = TQLStoredNode::MakeObject();
             Size.Add("X", Bad);
             L.Items[2] = TQLStoredNode::MakeObject();
             L.Items[2].Add("Class", Class);
             L.Items[2].Add("Size", Size);
         }},
    };
    TQVScope Host;
    AddElements(Host);
    const TQLStoredNode Saved = QLSaveObject(Host);
    const auto Before = Items(Host);
    for (const TCase& C : Cases) {
        TQLStoredNode Doc = Saved;
        for (auto& [Name, Node] : Doc.Members)
            if (Name == "Elements")
                C.Spoil(Node);
        try {
            QLLoadObject(Host, Doc);
            ADD_FAILURE() << C.Path << ": accepted";
        } catch (const EQLPropertyError& E) {
            EXPECT_EQ(E.GetPath(), C.Path) << E.what();
        }
        EXPECT_EQ(Items(Host), Before) << C.Path;
        EXPECT_EQ(QLSaveObject(Host), Saved) << C.Path;
    }
}
