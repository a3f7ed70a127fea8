// A display's collections and items: changes repaint the display, new coloured items take
// the least used palette colour, selectable items report the mouse, optional items hide.
#include "qv/display/QVDataDisplay.h"
#include "qv/display/QVDisplayCollection.h"
#include "qv/display/QVDisplayCollectionItem.h"
#include "qv/display/QVDisplayPersistent.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLStoredForm.h"
#include "qv/foundation/QVDisplayPen.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace qv;

namespace {

class TTestDisplay : public TQVDataDisplay {
public:
    TTestDisplay()
    {
        SetOnInvalidate([this] { ++Invalidations; });
    }
    bool PopulateDrawBuffers() override { return false; }
    void ResetFlags()
    {
        FNeedsRecalc = false;
        FRefreshImage = false;
        Invalidations = 0;
    }
    int Invalidations = 0;
};

// An item with a pen whose colour default the collection hands out.
class TColouredItem : public TQVOptionalDisplayCollectionItem {
public:
    explicit TColouredItem(TQLCollection* ACollection)
        : TQVOptionalDisplayCollectionItem(ACollection),
          FPen(std::make_unique<TQVDisplayPen>(this, GetLock(), TQLNotifyProc{}, 0xFFFFFFFF))
    {
    }
    TQVDisplayPen* GetPen() const { return FPen.get(); }
    TAlphaColor GetColorDefault() const { return FPen->GetColorDefault(); }
    void SetColorDefault(TAlphaColor AValue) { FPen->SetColorDefault(AValue); }
    void SetVisible(bool AValue) override
    {
        VisibleCalls.push_back(AValue);
        TQVOptionalDisplayCollectionItem::SetVisible(AValue);
    }
    std::vector<bool> VisibleCalls;

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayPen> FPen;
};

const TQLClassInfo& TColouredItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TColouredItem>("TColouredItem", &TQVOptionalDisplayCollectionItem::StaticClassInfo())
            .Object("Pen", &TColouredItem::GetPen)
            .Build();
    return Info;
}

using TColouredItems = TQVPaletteDisplayCollection<TColouredItem>;

// A settings object of the display.
class TZoomSettings : public TQVDisplayPersistent {
public:
    using TQVDisplayPersistent::TQVDisplayPersistent;
    int32_t GetSteps() const { return FSteps; }
    void SetSteps(int32_t AValue) { Set(FSteps, AValue); }

private:
    int32_t FSteps = 1;
};

struct DisplayFixture : ::testing::Test {
    TTestDisplay Display;
    TColouredItems Items{&Display, Display.GetLock(), &Display};
};

std::vector<TAlphaColor> DefaultsOf(const TColouredItems& AItems)
{
    std::vector<TAlphaColor> Result;
    AItems.ForEach([&](TColouredItem* AItem) { Result.push_back(AItem->GetColorDefault()); });
    return Result;
}

} // namespace

TEST_F(DisplayFixture, ItemChangesRepaintTheDisplay)
{
    TColouredItem* Item = Items.Add();
    EXPECT_EQ(Item->GetDisplay(), &Display);
    Display.ResetFlags();

    Item->SetTag(5);
    EXPECT_EQ(Display.Invalidations, 1);
    EXPECT_TRUE(Display.GetRefreshImage());
    EXPECT_FALSE(Display.GetNeedsRecalc()) << "a plain change repaints without a recalculation";

    Item->SetTag(5);
    Item->SetName("");
    Item->GetPen()->SetWidth(1);
    EXPECT_EQ(Display.Invalidations, 1) << "equal values repaint nothing";

    Item->GetPen()->SetWidth(2); // a change of an owned object climbs through the item
    EXPECT_EQ(Display.Invalidations, 2);
    Item->SetName("trace");
    EXPECT_EQ(Display.Invalidations, 3);

    Display.ResetFlags();
    Items.Delete(0);
    EXPECT_GE(Display.Invalidations, 1);
    EXPECT_TRUE(Display.GetRefreshImage());
}

TEST_F(DisplayFixture, NewItemsRecalculateTheDisplay)
{
    Display.ResetFlags();
    Items.Add();
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_GE(Display.Invalidations, 1);
}

TEST_F(DisplayFixture, PaletteHandsOutThirteenColoursThenStartsOver)
{
    for (int I = 0; I < 14; ++I)
        Items.Add();
    EXPECT_EQ(DefaultsOf(Items),
              (std::vector<TAlphaColor>{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00, 0xFF00FFFF, 0xFFF0FBFF,
                                        0xFF808000, 0xFFFFFFFF, 0xFFD3D3D3, 0xFF800080, 0xFFFF00FF, 0xFF008080,
                                        0xFF000080, 0xFFFF0000}));
    // The pen colour followed its new default.
    EXPECT_EQ(Items.GetItem(2)->GetPen()->GetColor(), 0xFF0000FFu);
    Items.Add();
    EXPECT_EQ(Items.GetItem(14)->GetColorDefault(), 0xFF00FF00u);
}

TEST_F(DisplayFixture, DeletedItemFreesItsColour)
{
    Items.Add();
    Items.Add();
    Items.Add();
    Items.Delete(1);
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFF00FF00u);
    Items.Delete(0);
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFFFF0000u);
}

TEST_F(DisplayFixture, PaletteCountsDefaultsNotPresentColours)
{
    TColouredItem* First = Items.Add();
    ASSERT_EQ(First->GetColorDefault(), 0xFFFF0000u);
    First->GetPen()->SetColor(0xFF00FF00); // shows green, default still red
    // Counting present colours would pick red again; the default is what counts.
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFF00FF00u);
    EXPECT_EQ(Items.GetCountOfColor(0xFF00FF00), 1);
    EXPECT_EQ(Items.GetCountOfColor(0xFFFF0000), 1);
    EXPECT_EQ(Items.GetCountOfColor(0xFFFF0000, First), 0);
}

TEST_F(DisplayFixture, IndexOfAForeignItemIsMinusOne)
{
    TColouredItems Other(&Display, Display.GetLock(), &Display);
    TColouredItem* Foreign = Other.Add();
    Items.Add();
    TColouredItem* Own = Items.Add();
    EXPECT_EQ(Items.IndexOf(Own), 1);
    EXPECT_EQ(Items.IndexOf(Foreign), -1);
    EXPECT_EQ(Other.IndexOf(Own), -1);
}

TEST_F(DisplayFixture, VisibleHidesAndRepaints)
{
    TColouredItem* Item = Items.Add();
    EXPECT_TRUE(Item->GetVisible());
    EXPECT_TRUE(Item->IsVisible());
    Display.ResetFlags();

    Item->SetVisible(true);
    EXPECT_EQ(Display.Invalidations, 0);
    Item->SetVisible(false);
    EXPECT_FALSE(Item->IsVisible());
    EXPECT_GE(Display.Invalidations, 1);
    EXPECT_TRUE(Display.GetRefreshImage());

    // The published property reaches the virtual setter.
    const TQLPropertyInfo* Prop = TColouredItem::StaticClassInfo().FindProperty("Visible");
    ASSERT_NE(Prop, nullptr);
    Item->VisibleCalls.clear();
    Prop->Set(*Item, TQLValue(true));
    EXPECT_EQ(Item->VisibleCalls, std::vector<bool>{true});
    EXPECT_TRUE(Item->IsVisible());

    // Stored only when hidden.
    EXPECT_EQ(QLSaveObject(*Item).Find("Visible"), nullptr);
    Item->SetVisible(false);
    const TQLStoredNode Node = QLSaveObject(*Item);
    const TQLStoredNode* Stored = Node.Find("Visible");
    ASSERT_NE(Stored, nullptr);
    EXPECT_FALSE(Stored->Bool);
}

TEST_F(DisplayFixture, SelectableItemReportsTheMouse)
{
    TColouredItem* Item = Items.Add();
    std::vector<std::string> Events;
    Item->SetOnMouseEnter([&](TQLPersistent* S) { Events.push_back(S == Item ? "enter" : "enter?"); });
    Item->SetOnMouseLeave([&](TQLPersistent* S) { Events.push_back(S == Item ? "leave" : "leave?"); });
    Item->SetOnClick([&](TQLPersistent* S) { Events.push_back(S == Item ? "click" : "click?"); });
    Item->SetOnMouseDown([&](TQLPersistent* S, TMouseButton B, TShiftState Shift, float X, float Y) {
        Events.push_back("down " + std::to_string(B) + " " + std::to_string(Shift) + " " +
                         std::to_string(static_cast<int>(X)) + "," + std::to_string(static_cast<int>(Y)));
        EXPECT_EQ(S, Item);
    });
    Item->SetOnMouseUp([&](TQLPersistent*, TMouseButton B, TShiftState, float X, float Y) {
        Events.push_back("up " + std::to_string(B) + " " + std::to_string(static_cast<int>(X)) + "," +
                         std::to_string(static_cast<int>(Y)));
    });

    // A release with no press before it reports nothing.
    Item->MouseUp(mbLeft, 0, 1, 1, true);
    EXPECT_TRUE(Events.empty());
    EXPECT_FALSE(Item->GetMouseDown());

    Item->MouseEnter();
    Item->MouseDown(mbRight, ssCtrl, 3, 4, true);
    EXPECT_TRUE(Item->GetMouseDown());
    Item->MouseUp(mbRight, 0, 5, 6, true);
    Item->MouseDown(mbLeft, 0, 7, 8, true);
    Item->MouseDown(mbMiddle, 0, 9, 9, true);
    Item->MouseLeave();
    EXPECT_EQ(Events, (std::vector<std::string>{"enter", "down 1 4 3,4", "up 1 5,6", "down 0 0 7,8", "click",
                                                "down 2 0 9,9", "leave"}));
    // The pressed flag stays after a release: a second release reports again.
    Item->MouseUp(mbLeft, 0, 0, 0, false);
    EXPECT_EQ(Events.back(), "up 0 0,0");
    EXPECT_TRUE(Item->GetMouseDown());

    // No handlers: nothing happens, nothing fails.
    TColouredItem* Quiet = Items.Add();
    Quiet->MouseEnter();
    Quiet->MouseDown(mbLeft, 0, 0, 0, true);
    Quiet->MouseUp(mbLeft, 0, 0, 0, true);
    Quiet->MouseLeave();
    EXPECT_TRUE(Quiet->GetMouseDown());
}

TEST(DisplayBase, OwnSettingsChangesRepaintOrRecalculate)
{
    TTestDisplay Display;
    Display.ResetFlags();
    Display.SetColor(0xFF000000);
    EXPECT_EQ(Display.Invalidations, 0);
    Display.SetColor(0xFF102030);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_TRUE(Display.GetRefreshImage());
    EXPECT_GE(Display.Invalidations, 1);

    // A settings object of the display notifies through the display's lock.
    TZoomSettings Zoom(&Display);
    EXPECT_EQ(Zoom.GetLock(), Display.GetLock());
    EXPECT_EQ(Zoom.GetDisplay(), &Display);
    Display.ResetFlags();
    Zoom.SetSteps(1);
    EXPECT_EQ(Display.Invalidations, 0);
    Zoom.SetSteps(3);
    EXPECT_EQ(Display.Invalidations, 1);
    EXPECT_FALSE(Display.GetNeedsRecalc());

    // PostRefresh marks without invalidating, unless the control is being designed.
    Display.ResetFlags();
    Display.PostRefresh();
    EXPECT_TRUE(Display.GetRefreshImage());
    EXPECT_EQ(Display.Invalidations, 0);
    Display.SetDesigning(true);
    Display.PostRefresh();
    EXPECT_EQ(Display.Invalidations, 1);
}

TEST(DisplayBase, CollectionWithoutADisplayStillWorks)
{
    auto Lock = QLMakeLock();
    TColouredItems Items(nullptr, Lock, nullptr);
    TColouredItem* Item = Items.Add();
    EXPECT_EQ(Item->GetDisplay(), nullptr);
    EXPECT_EQ(Item->GetColorDefault(), 0xFFFF0000u);
    Item->SetTag(3);
    Item->InvalidateItem();
    EXPECT_EQ(Item->GetLegendPen(), TQLCanvasPen());
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFF00FF00u);
}

TEST(DisplayBase, DisplayGoingAwayStopsNotifications)
{
    int Calls = 0;
    TQLLockPtr Lock;
    {
        TTestDisplay Display;
        Display.SetOnInvalidate([&] { ++Calls; });
        Lock = Display.GetLock();
    }
    // The lock outlives the display: it is marked as going away and calls back nobody.
    EXPECT_TRUE(Lock->IsDestroying());
    TAlphaColor Field = 0;
    Lock->GetBasicLock()->Setter(Field, 1u);
    EXPECT_EQ(Calls, 0);
}
