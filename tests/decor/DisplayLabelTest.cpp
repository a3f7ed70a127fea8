// Labels of display elements: defaults, the change closure, the title label's default text
// and the stored form.
#include "qv/decor/QVDisplayLabel.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

#include <string>

using namespace qv;

namespace {

// An owner that counts the changes climbing up to it.
class TLabelOwner : public TQLPersistent {
public:
    TLabelOwner() : TQLPersistent(nullptr, QLMakeLock()) {}
    void ClasicNotifyProp(TQLPersistent*) override { ++Changes; }
    int Changes = 0;
};

} // namespace

TEST(DisplayLabel, DefaultsAreNotStoredAndEveryRealChangeRunsTheClosure)
{
    TLabelOwner Owner;
    int Changes = 0;
    TQVDisplayLabel Label(&Owner, Owner.GetLock(), [&] { ++Changes; });
    EXPECT_TRUE(Label.GetVisible());
    EXPECT_EQ(Label.GetText(), "");
    EXPECT_EQ(Label.GetFont()->ToCanvasFont(), QVDefaultLabelFont());
    EXPECT_EQ(Label.GetOwner(), &Owner);
    EXPECT_TRUE(QLSaveObject(Label).Members.empty());

    Label.SetText("Volts");
    Label.SetText("Volts");
    Label.SetVisible(false);
    Label.SetVisible(false);
    Label.GetFont()->SetSize(12);
    Label.GetFont()->SetSize(12);
    EXPECT_EQ(Changes, 3);
    EXPECT_EQ(Owner.Changes, 0) << "the closure takes the change; it does not climb as well";

    const TQLStoredNode Saved = QLSaveObject(Label);
    TQVDisplayLabel Copy(&Owner, Owner.GetLock(), {});
    QLLoadObject(Copy, Saved);
    EXPECT_EQ(Copy.GetText(), "Volts");
    EXPECT_FALSE(Copy.GetVisible());
    EXPECT_EQ(Copy.GetFont()->GetSize(), 12);
    EXPECT_EQ(QLSaveObject(Copy), Saved);
}

TEST(DisplayLabel, WithoutAClosureChangesClimbToTheOwner)
{
    TLabelOwner Owner;
    TQVOptionalLabel Label(&Owner, Owner.GetLock(), {});
    Label.SetText("x");
    Label.GetFont()->SetColor(0xFF00FF00);
    EXPECT_EQ(Owner.Changes, 2);
}

TEST(DisplayLabel, OwnersChooseTheirOwnDefaults)
{
    TLabelOwner Owner;
    const TQLCanvasFont Bold10{"Arial", 10, fsBold, 0xFFFFFFFF};
    TQVOptionalLabel Label(&Owner, Owner.GetLock(), {}, Bold10, false);
    EXPECT_FALSE(Label.GetVisible());
    EXPECT_EQ(Label.GetFont()->ToCanvasFont(), Bold10);
    EXPECT_TRUE(QLSaveObject(Label).Members.empty());
    Label.SetVisible(true);
    const TQLStoredNode Saved = QLSaveObject(Label);
    ASSERT_NE(Saved.Find("Visible"), nullptr);
    EXPECT_TRUE(Saved.Find("Visible")->Bool);
    // Absent from a stored form, a property returns to this label's default.
    QLLoadObject(Label, TQLStoredNode::MakeObject());
    EXPECT_FALSE(Label.GetVisible());
}

TEST(DisplayTitleLabel, TextFollowsTheDefaultUntilSetAndIsStoredOnlyWhenItDiffers)
{
    TLabelOwner Owner;
    int Changes = 0;
    TQVDisplayTitleLabel Label(&Owner, Owner.GetLock(), [&] { ++Changes; });
    Label.SetTextDefault("Time (Sec)");
    EXPECT_EQ(Label.GetText(), "Time (Sec)");
    EXPECT_EQ(Changes, 1) << "the shown text changed";
    EXPECT_FALSE(Label.GetTextStored());
    EXPECT_EQ(QLSaveObject(Label).Find("Text"), nullptr);

    Label.SetTextDefault("Time (mSec)");
    EXPECT_EQ(Label.GetText(), "Time (mSec)");

    Label.SetText("Elapsed");
    EXPECT_TRUE(Label.GetTextStored());
    Label.SetTextDefault("Time (uSec)");
    EXPECT_EQ(Label.GetText(), "Elapsed");
    ASSERT_NE(QLSaveObject(Label).Find("Text"), nullptr);
    EXPECT_EQ(QLSaveObject(Label).Find("Text")->String, "Elapsed");

    // Loading a form without a text shows the default; with one, the stored text.
    TQVDisplayTitleLabel Other(&Owner, Owner.GetLock(), {});
    Other.SetTextDefault("Y Axis");
    QLLoadObject(Other, QLSaveObject(Label));
    EXPECT_EQ(Other.GetText(), "Elapsed");
    QLLoadObject(Other, TQLStoredNode::MakeObject());
    EXPECT_EQ(Other.GetText(), "Y Axis");
}
