// Title settings: the default text and when it is stored, relayout on change, and the stored
// form of a title with its additional titles.
#include "decor/TitleTestSupport.h"

#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

using namespace qv;
using namespace qv::test;

TEST(TitleSettings, TextFollowsTheDefaultUntilSetAndIsStoredOnlyWhenItDiffers)
{
    TTitleDisplay D;
    TQVDisplayTitle* T = D.Title();
    EXPECT_TRUE(QLSaveObject(*T).Members.empty()) << "a new title stores nothing";
    T->SetTextDefault("Waterfall");
    EXPECT_EQ(T->GetText(), "Waterfall");
    EXPECT_EQ(QLSaveObject(*T).Find("Text"), nullptr);

    T->SetText("Bus voltage");
    EXPECT_NE(QLSaveObject(*T).Find("Text"), nullptr);
    T->SetTextDefault("Scope");
    EXPECT_EQ(T->GetText(), "Bus voltage") << "the user's text stays";
    T->SetText("Scope");
    EXPECT_FALSE(T->GetTextStored()) << "equal to the default again";

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
    D.Title()->SetTextDefault("B"); // the text is not at the default: nothing to show anew
    EXPECT_FALSE(D.GetNeedsRecalc());
    EXPECT_EQ(Repaints, 0);
}

TEST(TitleSettings, StoredFormRoundTripWithAdditionalTitles)
{
    TTitleDisplay Source;
    TQVDisplayTitle* T = Source.Title();
    T->SetText("Main");
    T->SetAlign(vaLeft);
    T->GetFont()->SetStyle(fsBold | fsItalic);
    T->GetBackground()->SetUseControlColor(false);
    T->GetViewSize()->SetAutoSize(false);
    T->GetViewSize()->SetSize(40);
    TQVAdditionalDisplayTitle* Second = T->GetAdditionalTitles()->Add()->GetTitle();
    Second->SetText("Second");
    Second->SetVisible(false);
    T->GetAdditionalTitles()->Add()->GetTitle()->SetText("Third");

    const TQLStoredNode Saved = QLSaveObject(*T);
    TTitleDisplay Target;
    TClientView Data(&Target);
    Target.Title()->GetAdditionalTitles()->Add()->GetTitle()->SetText("Old"); // replaced by the load
    QLLoadObject(*Target.Title(), Saved, "Title");
    EXPECT_EQ(QLSaveObject(*Target.Title()), Saved);
    // The loaded titles stand behind the main title, before the client view.
    TQVDisplayTitleCollection* Loaded = Target.Title()->GetAdditionalTitles();
    const TQVDisplayViews& Views = Target.GetViews();
    ASSERT_EQ(Views.GetCount(), 4);
    EXPECT_EQ(Views.GetItem(1), Loaded->GetItem(0)->GetTitle());
    EXPECT_EQ(Views.GetItem(2), Loaded->GetItem(1)->GetTitle());
    EXPECT_EQ(Views.GetItem(3), &Data);

    TTitleDisplay Copy;
    Copy.Title()->Assign(T);
    EXPECT_EQ(QLSaveObject(*Copy.Title()), Saved);
    EXPECT_EQ(Copy.GetViews().GetCount(), 3);
}
