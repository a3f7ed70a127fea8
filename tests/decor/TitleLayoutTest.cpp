// Titles in the layout: strips in every alignment, additional titles stacked behind the main
// title in collection order, hidden and fixed-size titles, controls too small for them.
#include "decor/TitleTestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>

using namespace qv;
using namespace qv::test;

namespace {

using TNames = std::map<const TQVDisplayView*, std::string>;

std::string ViewOrder(const TQVDataDisplay& ADisplay, const TNames& ANames)
{
    std::string Order;
    for (TQVDisplayView* View : ADisplay.GetViews()) {
        auto It = ANames.find(View);
        Order += (Order.empty() ? "" : " ") + (It == ANames.end() ? std::string("?") : It->second);
    }
    return Order;
}

TQVAdditionalDisplayTitle* AddTitle(TQVDisplayTitle* ATitle, const std::string& AText)
{
    TQVAdditionalDisplayTitle* Title = ATitle->GetAdditionalTitles()->Add()->GetTitle();
    Title->SetText(AText);
    return Title;
}

} // namespace

TEST(TitleLayout, MainAndAdditionalTitleDockInEachAlignment)
{
    struct TCase {
        TQVViewAlign Align;
        TRect Main, Additional, Client;
    };
    const TCase Cases[] = {
        {vaTop, {0, 0, 400, 29}, {0, 29, 400, 58}, {0, 58, 400, 300}},
        {vaBottom, {0, 271, 400, 300}, {0, 242, 400, 271}, {0, 0, 400, 242}},
        {vaLeft, {0, 0, 29, 300}, {29, 0, 58, 300}, {58, 0, 400, 300}},
        {vaRight, {371, 0, 400, 300}, {342, 0, 371, 300}, {0, 0, 342, 300}},
    };
    for (const TCase& C : Cases) {
        SCOPED_TRACE(testing::Message() << "align " << int(C.Align));
        TTitleDisplay D;
        TClientView Data(&D); // made before the additional title, laid out after it
        D.Title()->SetAlign(C.Align);
        TQVAdditionalDisplayTitle* Second = AddTitle(D.Title(), "Second");
        Second->SetAlign(C.Align);
        D.Layout();
        EXPECT_EQ(D.Title()->GetDrawRect(), C.Main);
        EXPECT_EQ(Second->GetDrawRect(), C.Additional);
        EXPECT_EQ(Data.GetDrawRect(), C.Client);
    }
}

TEST(TitleLayout, StripFollowsFontChangesAndHasMarginsOnlyWithoutACanvas)
{
    TTitleDisplay D;
    D.Layout();
    D.Title()->GetFont()->SetSize(30);
    EXPECT_TRUE(D.GetNeedsRecalc()) << "the strip's height depends on the font";
    D.Layout();
    EXPECT_EQ(D.Recorder().GetFont().Size, 30) << "measured with the title's own font";

    TTitleDisplay Headless(tmNone);
    Headless.Title()->SetAlign(vaLeft);
    Headless.Layout();
    EXPECT_EQ(Headless.Title()->GetDrawRect(), (TRect{0, 0, 16, 300}));
}

TEST(TitleLayout, HiddenTitleTakesNoStripAndFixedSizeOverridesTheFont)
{
    TTitleDisplay D;
    TClientView Data(&D);
    TQVAdditionalDisplayTitle* Second = AddTitle(D.Title(), "Second");
    D.Title()->SetVisible(false);
    D.Layout();
    EXPECT_EQ(D.Title()->GetDrawRect(), (TRect{}));
    EXPECT_EQ(Second->GetDrawRect(), (TRect{0, 0, 400, 29}));
    EXPECT_EQ(Data.GetDrawRect(), (TRect{0, 29, 400, 300}));
    Second->SetVisible(false);

    D.Title()->SetVisible(true);
    D.Title()->SetAlign(vaLeft);
    D.Title()->GetViewSize()->SetAutoSize(false);
    D.Title()->GetViewSize()->SetSize(40);
    D.Layout();
    EXPECT_EQ(Data.GetDrawRect(), (TRect{40, 0, 400, 300}));
    D.Title()->SetAlign(vaBottom);
    EXPECT_EQ(D.Title()->GetDefaultSize(), (TSize{-1, 40}));
    D.Title()->GetViewSize()->SetSize(UINT32_MAX);
    EXPECT_EQ(D.Title()->GetDefaultSize(), (TSize{-1, INT32_MAX})) << "held to the pixel range";
}

TEST(TitleLayout, ControlsTooSmallForTheTitlesRaiseNothingAndHideWhatHasNoRoom)
{
    // Left and right titles eat the whole width: the top title after them has no width.
    TTitleDisplay D;
    TClientView Data(&D);
    D.SetBounds(0, 0, 40, 100);
    D.Title()->SetAlign(vaLeft);
    AddTitle(D.Title(), "Right")->SetAlign(vaRight);
    TQVAdditionalDisplayTitle* Top = AddTitle(D.Title(), "Top");
    D.Layout();
    EXPECT_EQ(Top->GetLayoutRect(), (TRect{29, 0, 11, 100})); // no room: it takes no strip
    EXPECT_FALSE(Top->IsVisible());
    EXPECT_EQ(Top->GetDrawRect(), (TRect{}));

    D.SetBounds(0, 0, 0, 0);
    D.Layout();
    for (TQVDisplayView* View : D.GetViews()) {
        EXPECT_FALSE(View->IsVisible());
        EXPECT_NO_THROW(View->Draw(ddpFeatures, D.Recorder(), false, false));
    }
}

TEST(AdditionalTitles, StandBehindTheMainTitleInCollectionOrder)
{
    TTitleDisplay D;
    TClientView Data(&D);
    TQVDisplayTitleCollection* Titles = D.Title()->GetAdditionalTitles();
    TQVAdditionalDisplayTitle* A = AddTitle(D.Title(), "A");
    TQVAdditionalDisplayTitle* B = AddTitle(D.Title(), "B");
    TQVAdditionalDisplayTitle* C = AddTitle(D.Title(), "C");
    TNames Names{{D.Title(), "Main"}, {&Data, "Data"}, {A, "A"}, {B, "B"}, {C, "C"}};
    EXPECT_EQ(ViewOrder(D, Names), "Main A B C Data");

    auto* Z = static_cast<TQVDisplayTitleCollectionItem*>(Titles->InsertItem(0))->GetTitle();
    Names[Z] = "Z";
    EXPECT_EQ(ViewOrder(D, Names), "Main Z A B C Data");
    D.Layout();
    Titles->Move(0, 3);
    EXPECT_EQ(ViewOrder(D, Names), "Main A B C Z Data");
    EXPECT_TRUE(D.GetNeedsRecalc());
    D.Layout();
    EXPECT_EQ(Z->GetDrawRect(), (TRect{0, 116, 400, 145}));

    Titles->Delete(0);
    EXPECT_EQ(ViewOrder(D, Names), "Main B C Z Data");
    D.Layout();
    EXPECT_EQ(Data.GetDrawRect(), (TRect{0, 116, 400, 300}));
    Titles->Clear();
    EXPECT_EQ(ViewOrder(D, Names), "Main Data");
}

TEST(AdditionalTitles, BelongToATitleCollectionAndReportChangesThroughIt)
{
    TTitleDisplay D;
    TQVDisplayTitleCollectionItem* Item = D.Title()->GetAdditionalTitles()->Add();
    TQVAdditionalDisplayTitle* Title = Item->GetTitle();
    Title->SetText("Units: V");
    EXPECT_EQ(Item->GetDisplayName(), "Units: V");

    int Repaints = 0;
    D.SetOnInvalidate([&] { ++Repaints; });
    D.ClearNeedsRecalc();
    D.Changes = 0;
    Title->SetText("Units: mV");
    EXPECT_TRUE(D.GetNeedsRecalc());
    EXPECT_GE(Repaints, 1);
    EXPECT_EQ(D.Changes, 1);

    TQLTypedCollection<TQVDisplayTitleCollectionItem> Plain(nullptr, QLMakeLock());
    EXPECT_THROW(Plain.Add(), std::invalid_argument);
    EXPECT_EQ(Plain.GetCount(), 0);
}
