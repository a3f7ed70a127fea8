// Labels of display elements: the change closure, owner defaults and the stored form.
#include "qv/decor/QVDisplayLabel.h"
#include "qv/foundation/QLStoredForm.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class TLabelOwner : public TQLPersistent {
public:
    TLabelOwner() : TQLPersistent(nullptr, QLMakeLock()) {}
    void ClasicNotifyProp(TQLPersistent*) override { ++Changes; }
    int Changes = 0;
};

} // namespace

TEST(DisplayLabel, RealChangesRunTheClosureOrClimbAndRoundTrip)
{
    TLabelOwner Owner;
    int Changes = 0;
    TQVDisplayLabel Label(&Owner, Owner.GetLock(), [&] { ++Changes; });
    EXPECT_TRUE(QLSaveObject(Label).Members.empty());
    for (int I = 0; I < 2; ++I) {
        Label.SetText("Volts");
        Label.SetVisible(false);
        Label.GetFont()->SetSize(12);
    }
    EXPECT_EQ(Changes, 3);
    EXPECT_EQ(Owner.Changes, 0) << "the closure takes the change; it does not climb as well";

    const TQLStoredNode Saved = QLSaveObject(Label);
    TQVDisplayLabel Copy(&Owner, Owner.GetLock(), {});
    QLLoadObject(Copy, Saved);
    EXPECT_EQ(QLSaveObject(Copy), Saved);

    Owner.Changes = 0;
    TQVOptionalLabel Climbing(&Owner, Owner.GetLock(), {});
    Climbing.SetText("x");
    Climbing.GetFont()->SetColor(0xFF00FF00);
    EXPECT_EQ(Owner.Changes, 2);
}

TEST(DisplayLabel, OwnersChooseTheirOwnDefaults)
{
    TLabelOwner Owner;
    const TQLCanvasFont Bold10{"Arial", 10, fsBold, 0xFFFFFFFF};
    TQVOptionalLabel Label(&Owner, Owner.GetLock(), {}, Bold10, false);
    EXPECT_EQ(Label.GetFont()->ToCanvasFont(), Bold10);
    EXPECT_TRUE(QLSaveObject(Label).Members.empty()) << "its own defaults are not stored";
    Label.SetVisible(true);
    EXPECT_NE(QLSaveObject(Label).Find("Visible"), nullptr) << "visible differs from this label's default";
    QLLoadObject(Label, TQLStoredNode::MakeObject());
    EXPECT_FALSE(Label.GetVisible()) << "absent from a stored form: back to this label's default";
}

TEST(DisplayTitleLabel, TextFollowsTheDefaultUntilSetAndIsStoredOnlyWhenItDiffers)
{
    TLabelOwner Owner;
    int Changes = 0;
    TQVDisplayTitleLabel Label(&Owner, Owner.GetLock(), [&] { ++Changes; });
    Label.SetTextDefault("Time (Sec)");
    EXPECT_EQ(Label.GetText(), "Time (Sec)");
    EXPECT_EQ(Changes, 1) << "the shown text changed";
    EXPECT_EQ(QLSaveObject(Label).Find("Text"), nullptr);

    Label.SetText("Elapsed");
    Label.SetTextDefault("Time (uSec)");
    EXPECT_EQ(Label.GetText(), "Elapsed") << "the user's text stays";

    TQVDisplayTitleLabel Other(&Owner, Owner.GetLock(), {});
    Other.SetTextDefault("Y Axis");
    QLLoadObject(Other, QLSaveObject(Label));
    EXPECT_EQ(Other.GetText(), "Elapsed");
    QLLoadObject(Other, TQLStoredNode::MakeObject());
    EXPECT_EQ(Other.GetText(), "Y Axis");
}
