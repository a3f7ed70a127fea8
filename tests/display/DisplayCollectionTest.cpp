// A display's collections and items: changes repaint the display, new coloured items take
// the least used palette colour, selectable items report the mouse, optional items hide.
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayPersistent.h"
#include "qv/display/QVDataDisplay.h"
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

class TColouredItem : public TQVOptionalDisplayCollectionItem {
public:
    explicit TColouredItem(TQLCollection* ACollection)
        : TQVOptionalDisplayCollectionItem(ACollection),
          FPen(std::make_unique<TQVDisplayPen>(this, GetLock(), TQLNotifyProc{}, 0xFFFFFFFF))
    {}
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

} // namespace

TEST_F(DisplayFixture, ItemChangesRepaintTheDisplayAndNewItemsRecalculate)
{
    Display.ResetFlags();
    TColouredItem* Item = Items.Add();
    EXPECT_TRUE(Display.GetNeedsRecalc());
    Display.ResetFlags();

    Item->SetTag(5);
    EXPECT_EQ(Display.Invalidations, 1);
    EXPECT_TRUE(Display.GetRefreshImage());
    EXPECT_FALSE(Display.GetNeedsRecalc()) << "a plain change repaints without a recalculation";
    Item->SetTag(5);
    Item->GetPen()->SetWidth(1);
    EXPECT_EQ(Display.Invalidations, 1) << "equal values repaint nothing";
    Item->GetPen()->SetWidth(2); // a change of an owned object climbs through the item
    EXPECT_EQ(Display.Invalidations, 2);

    Display.ResetFlags();
    Items.Delete(0);
    EXPECT_GE(Display.Invalidations, 1);
    EXPECT_TRUE(Display.GetRefreshImage());
}

TEST_F(DisplayFixture, PaletteHandsOutTheLeastUsedDefaultColour)
{
    std::vector<TAlphaColor> Defaults;
    for (int I = 0; I < 14; ++I)
        Defaults.push_back(Items.Add()->GetColorDefault());
    EXPECT_EQ(Defaults, (std::vector<TAlphaColor>{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00, 0xFF00FFFF,
                                                  0xFFF0FBFF, 0xFF808000, 0xFFFFFFFF, 0xFFD3D3D3, 0xFF800080,
                                                  0xFFFF00FF, 0xFF008080, 0xFF000080, 0xFFFF0000}));
    EXPECT_EQ(Items.GetItem(2)->GetPen()->GetColor(), 0xFF0000FFu) << "the pen follows its new default";
    Items.Delete(1);
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFF00FF00u) << "a deleted item frees its colour";

    // The defaults count, not the colours shown.
    TColouredItems Fresh(&Display, Display.GetLock(), &Display);
    TColouredItem* First = Fresh.Add();
    First->GetPen()->SetColor(0xFF00FF00);
    EXPECT_EQ(Fresh.Add()->GetColorDefault(), 0xFF00FF00u);
    EXPECT_EQ(Fresh.GetCountOfColor(0xFFFF0000), 1);
    EXPECT_EQ(Fresh.GetCountOfColor(0xFFFF0000, First), 0);
    EXPECT_EQ(Fresh.IndexOf(Items.GetItem(0)), -1) << "a foreign item has no index";
}

TEST_F(DisplayFixture, VisibleHidesRepaintsAndIsStoredOnlyWhenHidden)
{
    TColouredItem* Item = Items.Add();
    Display.ResetFlags();
    Item->SetVisible(true);
    EXPECT_EQ(Display.Invalidations, 0);
    EXPECT_EQ(QLSaveObject(*Item).Find("Visible"), nullptr);
    Item->SetVisible(false);
    EXPECT_GE(Display.Invalidations, 1);
    const TQLStoredNode Node = QLSaveObject(*Item);
    ASSERT_NE(Node.Find("Visible"), nullptr);
    EXPECT_FALSE(Node.Find("Visible")->Bool);

    // The published property reaches the virtual setter.
    Item->VisibleCalls.clear();
    TColouredItem::StaticClassInfo().FindProperty("Visible")->Set(*Item, TQLValue(true));
    EXPECT_EQ(Item->VisibleCalls, std::vector<bool>{true});
    EXPECT_TRUE(Item->IsVisible());
}

TEST_F(DisplayFixture, SelectableItemReportsTheMouse)
{
    TColouredItem* Item = Items.Add();
    std::vector<std::string> Events;
    auto Named = [&](const char* AName) {
        return [&, AName](TQLPersistent* S) { Events.push_back(S == Item ? AName : "?"); };
    };
    Item->SetOnMouseEnter(Named("enter"));
    Item->SetOnMouseLeave(Named("leave"));
    Item->SetOnClick(Named("click"));
    auto Button = [&](const char* AName) {
        return [&, AName](TQLPersistent*, TMouseButton B, TShiftState Shift, float X, float Y) {
            Events.push_back(std::string(AName) + " " + std::to_string(B) + " " + std::to_string(Shift) + " " +
                             std::to_string(int(X)) + "," + std::to_string(int(Y)));
        };
    };
    Item->SetOnMouseDown(Button("down"));
    Item->SetOnMouseUp(Button("up"));

    Item->MouseUp(mbLeft, 0, 1, 1, true); // a release with no press before it reports nothing
    EXPECT_TRUE(Events.empty());
    Item->MouseEnter();
    Item->MouseDown(mbRight, ssCtrl, 3, 4, true);
    Item->MouseUp(mbRight, 0, 5, 6, true);
    Item->MouseDown(mbLeft, 0, 7, 8, true);
    Item->MouseDown(mbMiddle, 0, 9, 9, true); // only the left button clicks
    Item->MouseLeave();
    Item->MouseUp(mbLeft, 0, 0, 0, false); // the pressed flag stays: a second release reports
    EXPECT_EQ(Events, (std::vector<std::string>{"enter", "down 1 4 3,4", "up 1 0 5,6", "down 0 0 7,8", "click",
                                                "down 2 0 9,9", "leave", "up 0 0 0,0"}));
    EXPECT_TRUE(Item->GetMouseDown());

    TColouredItem* Quiet = Items.Add(); // no handlers: nothing fails
    Quiet->MouseEnter();
    Quiet->MouseDown(mbLeft, 0, 0, 0, true);
    Quiet->MouseUp(mbLeft, 0, 0, 0, true);
    Quiet->MouseLeave();
}

TEST(DisplayBase, OwnSettingsChangesRepaintOrRecalculate)
{
    TTestDisplay Display;
    Display.ResetFlags();
    Display.SetColor(0xFF000000);
    EXPECT_EQ(Display.Invalidations, 0);
    Display.SetColor(0xFF102030);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_GE(Display.Invalidations, 1);

    TZoomSettings Zoom(&Display); // a settings object of the display shares its lock
    Display.ResetFlags();
    Zoom.SetSteps(1);
    EXPECT_EQ(Display.Invalidations, 0);
    Zoom.SetSteps(3);
    EXPECT_EQ(Display.Invalidations, 1);
    EXPECT_FALSE(Display.GetNeedsRecalc());
}

TEST(DisplayBase, CollectionsWithoutADisplayAndLocksOutlivingOneStillWork)
{
    TColouredItems Items(nullptr, QLMakeLock(), nullptr);
    TColouredItem* Item = Items.Add();
    EXPECT_EQ(Item->GetDisplay(), nullptr);
    Item->SetTag(3);
    Item->InvalidateItem();
    EXPECT_EQ(Items.Add()->GetColorDefault(), 0xFF00FF00u);

    int Calls = 0;
    TQLLockPtr Lock;
    {
        TTestDisplay Display;
        Display.SetOnInvalidate([&] { ++Calls; });
        Lock = Display.GetLock();
    }
    EXPECT_TRUE(Lock->IsDestroying());
    TAlphaColor Field = 0;
    Lock->GetBasicLock()->Setter(Field, 1u);
    EXPECT_EQ(Calls, 0);
}
