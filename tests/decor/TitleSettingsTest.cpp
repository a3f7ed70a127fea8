// Title settings: the default text and when the text is stored, the change closures, and the
// stored form of a title with its additional titles.
#include "decor/TitleTestSupport.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <string>

using namespace qv;
using namespace qv::test;

namespace {

std::string TextOf(const TQLStoredNode& ANode)
{
    const TQLStoredNode* Text = ANode.Find("Text");
    return Text ? Text->String : "<not stored>";
}

} // namespace

TEST(TitleSettings, DefaultsOfANewTitle)
{
    TTitleDisplay D;
    TQVDisplayTitle* T = D.Title();
    EXPECT_EQ(T->GetText(), "");
    EXPECT_EQ(T->GetAlign(), vaTop);
    EXPECT_TRUE(T->GetVisible());
    EXPECT_EQ(T->GetFont()->ToCanvasFont(), (TQLCanvasFont{"Arial", 16, fsBold, 0xFFFFFFFF}));
    EXPECT_EQ(T->GetAdditionalTitles()->GetCount(), 0);
    // Nothing differs from a default: nothing is stored.
    EXPECT_TRUE(QLSaveObject(*T).Members.empty());
}

TEST(TitleSettings, TextFollowsTheDefaultUntilSetAndIsStoredOnlyWhenItDiffers)
{
    TTitleDisplay D;
    TQVDisplayTitle* T = D.Title();
    T->SetTextDefault("Scope");
    EXPECT_EQ(T->GetText(), "Scope");
    EXPECT_FALSE(T->GetTextStored());
    EXPECT_EQ(TextOf(QLSaveObject(*T)), "<not stored>");

    T->SetTextDefault("Waterfall"); // still at the default: follows
    EXPECT_EQ(T->GetText(), "Waterfall");

    T->SetText("Bus voltage");
    EXPECT_TRUE(T->GetTextStored());
    EXPECT_EQ(TextOf(QLSaveObject(*T)), "Bus voltage");
    T->SetTextDefault("Scope"); // the user's text stays
    EXPECT_EQ(T->GetText(), "Bus voltage");
    EXPECT_EQ(T->GetTextDefault(), "Scope");

    T->SetText("Scope"); // equal to the default again: not stored
    EXPECT_FALSE(T->GetTextStored());

    // A stored form without a text puts the default back.
    T->SetText("Bus voltage");
    QLLoadObject(*T, TQLStoredNode::MakeObject());
    EXPECT_EQ(T->GetText(), "Scope");
}

TEST(TitleSettings, TextChangesRelayoutEqualTextsDoNothing)
{
    TTitleDisplay D;
    int Repaints = 0;
    D.SetOnInvalidate([&] { ++Repaints; });
    D.Title()->SetText("A");
    EXPECT_TRUE(D.GetNeedsRecalc());
    D.ClearNeedsRecalc();
    Repaints = 0;
    D.Title()->SetText("A");
    EXPECT_FALSE(D.GetNeedsRecalc());
    EXPECT_EQ(Repaints, 0);
    D.Title()->SetTextDefault("B"); // the text is not at the default: nothing to show anew
    EXPECT_FALSE(D.GetNeedsRecalc());
}

TEST(TitleSettings, StoredFormRoundTripWithAdditionalTitles)
{
    TTitleDisplay Source;
    TQVDisplayTitle* T = Source.Title();
    T->SetText("Main");
    T->SetAlign(vaLeft);
    T->GetFont()->SetSize(20);
    T->GetFont()->SetStyle(fsBold | fsItalic);
    T->GetFont()->SetColor(0xFFFF0000);
    T->GetBackground()->SetUseControlColor(false);
    T->GetBackground()->SetColor(0xFF102030);
    T->GetViewSize()->SetAutoSize(false);
    T->GetViewSize()->SetSize(40);
    TQVAdditionalDisplayTitle* Second = T->GetAdditionalTitles()->Add()->GetTitle();
    Second->SetText("Second");
    Second->SetAlign(vaBottom);
    Second->SetVisible(false);
    T->GetAdditionalTitles()->Add()->GetTitle()->SetText("Third");

    const TQLStoredNode Saved = QLSaveObject(*T);
    const TQLStoredNode* Align = Saved.Find("Align");
    ASSERT_NE(Align, nullptr);
    EXPECT_EQ(Align->String, "vaLeft");
    const TQLStoredNode* List = Saved.Find("AdditionalTitles");
    ASSERT_NE(List, nullptr);
    ASSERT_EQ(List->Items.size(), 2u);
    ASSERT_NE(List->Items[0].Find("Title"), nullptr);
    EXPECT_EQ(TextOf(*List->Items[0].Find("Title")), "Second");

    TTitleDisplay Target;
    TClientView Data(&Target);
    Target.Title()->GetAdditionalTitles()->Add()->GetTitle()->SetText("Old"); // replaced by the load
    QLLoadObject(*Target.Title(), Saved, "Title");
    EXPECT_EQ(QLSaveObject(*Target.Title()), Saved);
    TQVDisplayTitleCollection* Loaded = Target.Title()->GetAdditionalTitles();
    ASSERT_EQ(Loaded->GetCount(), 2);
    EXPECT_EQ(Loaded->GetItem(0)->GetTitle()->GetText(), "Second");
    EXPECT_FALSE(Loaded->GetItem(0)->GetTitle()->GetVisible());
    EXPECT_EQ(Loaded->GetItem(1)->GetTitle()->GetText(), "Third");
    // The loaded titles stand behind the main title, before the client view.
    const TQVDisplayViews& Views = Target.GetViews();
    ASSERT_EQ(Views.GetCount(), 4);
    EXPECT_EQ(Views.GetItem(0), Target.Title());
    EXPECT_EQ(Views.GetItem(1), Loaded->GetItem(0)->GetTitle());
    EXPECT_EQ(Views.GetItem(2), Loaded->GetItem(1)->GetTitle());
    EXPECT_EQ(Views.GetItem(3), &Data);

    // Copying a title copies its additional titles too.
    TTitleDisplay Copy;
    Copy.Title()->Assign(T);
    EXPECT_EQ(QLSaveObject(*Copy.Title()), Saved);
    EXPECT_EQ(Copy.GetViews().GetCount(), 3);
}
