// Settings objects: the change climb to the owner, own notifications, pen, brush and font
// defaults, the property registry and Assign.
#include "foundation/SettingsSamples.h"

#include "qv/foundation/QLStoredForm.h"

#include "qv/foundation/QVDisplayBrush.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace qv;
using namespace qvtest;

namespace {

class TRecordingOwner : public TQLPersistent {
public:
    TRecordingOwner() : TQLPersistent(nullptr, QLMakeLock()) {}
    void ClasicNotifyProp(TQLPersistent* ASender) override
    {
        Senders.push_back(ASender);
        TQLPersistent::ClasicNotifyProp(ASender);
    }
    std::vector<TQLPersistent*> Senders;
};

} // namespace

TEST(PersistentNotify, ChangesClimbToTheOwnerUnlessAClosureTakesThem)
{
    TRecordingOwner Owner;
    TQVDisplayPen Climbing(&Owner, Owner.GetLock());
    Climbing.SetWidth(2);
    EXPECT_EQ(Owner.Senders, std::vector<TQLPersistent*>{&Climbing});

    int Closure = 0;
    TQVDisplayPen Own(&Owner, Owner.GetLock(), [&] { ++Closure; });
    Own.SetWidth(2);
    EXPECT_EQ(Owner.Senders.size(), 1u) << "a closure replaces the climb";

    // An equal value reports nothing; the clamp to the minimum counts as equal.
    Own.SetWidth(2);
    Climbing.SetWidth(2);
    Own.SetWidth(1);
    Own.SetWidth(-4);
    EXPECT_EQ(Closure, 2);
    EXPECT_EQ(Own.GetWidth(), 1);

    Own.SetOnNotify({});
    Own.SetDash(sdDash);
    EXPECT_EQ(Owner.Senders.size(), 2u) << "without a closure the change climbs again";
}

// The object's own lock hangs below the given one and may outlive the object; a write
// through it afterwards reaches nobody.
TEST(PersistentNotify, OwnLockIsChainedAndOutlivesItsObjectSilently)
{
    auto Root = QLMakeLock();
    TQVDisplayPen Pen(nullptr, Root);
    EXPECT_NE(Pen.GetLock(), Root);
    {
        auto Guard = Root->AcquireDestroy();
        EXPECT_TRUE(Pen.GetLock()->IsDestroying());
    }

    TQLLockPtr Survivor;
    int Calls = 0;
    {
        TQVDisplayBrush Brush(nullptr, QLMakeLock(), [&] { ++Calls; });
        Brush.SetKind(bkNone);
        Survivor = Brush.GetLock();
    }
    int32_t Field = 0;
    Survivor->GetBasicLock()->Setter(Field, 1);
    EXPECT_EQ(Calls, 1);
}

TEST(DrawSettings, ColourFollowsItsDefaultOnlyWhileUntouched)
{
    TQVDisplayPen Pen(nullptr, QLMakeLock(), {}, 0xFF00FF00, 0);
    EXPECT_EQ(Pen.GetWidth(), 1) << "a default width below 1 is raised";
    Pen.SetColorDefault(0xFFFF0000);
    EXPECT_EQ(Pen.GetColor(), 0xFFFF0000u);
    Pen.SetColor(0xFF123456);
    Pen.SetColorDefault(0xFF0000FF);
    EXPECT_EQ(Pen.GetColor(), 0xFF123456u);
}

TEST(ClassRegistry, RedeclaredPropertyTakesTheAncestorsPlace)
{
    auto Prop = [](const char* AName, TQLPropertyKind AKind = TQLPropertyInfo{}.Kind) {
        TQLPropertyInfo P;
        P.Name = AName;
        P.Kind = AKind;
        return P;
    };
    const TQLClassInfo Base("TBase", nullptr, {Prop("A"), Prop("B")});
    const TQLClassInfo Derived("TDerived", &Base, {Prop("A", pkString), Prop("C")});
    ASSERT_EQ(Derived.GetProperties().size(), 3u);
    EXPECT_EQ(Derived.GetProperties()[0]->Name, "A");
    EXPECT_EQ(Derived.GetProperties()[0]->Kind, pkString);
    EXPECT_EQ(Derived.GetProperties()[1]->Name, "B");
    EXPECT_EQ(Derived.GetProperties()[2]->Name, "C");
}

TEST(PersistentAssign, CopiesEveryPropertyOwnedObjectAndCollectionButNotDefaults)
{
    TSampleSettings Source;
    FillSample(Source);
    TSampleSettings Target(QLMakeLock(), 0xFF000001, 0xFF000002);
    for (int I = 0; I < 3; ++I)
        Target.GetItems()->Add()->SetName("to be replaced");

    Target.Assign(&Source);
    EXPECT_EQ(QLSaveObject(Target), QLSaveObject(Source)); // defined properties included
    EXPECT_EQ(Target.GetBackDefault(), 0xFF000001u);
    EXPECT_EQ(Target.GetPen()->GetColorDefault(), 0xFF000002u);
}

TEST(PersistentAssign, WorksAlongTheClassLineAndRefusesUnrelatedClasses)
{
    TSampleSettingsEx Derived;
    FillSample(Derived);
    TSampleSettings Base;
    Base.Assign(&Derived);
    EXPECT_EQ(Base.GetPercent(), 75);

    TSampleSettingsEx Other;
    Other.SetExtra(5);
    Base.SetPercent(10);
    Other.Assign(&Base);
    EXPECT_EQ(Other.GetPercent(), 10);
    EXPECT_EQ(Other.GetExtra(), 5) << "a property the source lacks stays";

    TQVDisplayPen Pen(nullptr, QLMakeLock());
    Pen.SetWidth(4);
    try {
        Pen.Assign(&Base);
        FAIL() << "assigned a settings object to a pen";
    } catch (const std::invalid_argument& E) {
        const std::string Message = E.what();
        EXPECT_NE(Message.find("TQVDisplayPen"), std::string::npos) << Message;
        EXPECT_NE(Message.find("TSampleSettings"), std::string::npos) << Message;
    }
    EXPECT_EQ(Pen.GetWidth(), 4);

    Base.Assign(nullptr);
    Base.Assign(&Base);
    EXPECT_EQ(Base.GetPercent(), 10);
}

TEST(PersistentAssign, NotifiesOncePerChangedPropertyAndInitDefaultsCopiesAlike)
{
    int Changes = 0;
    TQVDisplayFont Source(nullptr, QLMakeLock());
    TQVDisplayFont Target(nullptr, QLMakeLock(), [&] { ++Changes; });
    Target.Assign(&Source);
    EXPECT_EQ(Changes, 0);
    Source.SetSize(20);
    Source.SetName("Times");
    Target.Assign(&Source);
    EXPECT_EQ(Changes, 2);

    TQVDisplayFont Fresh(nullptr, QLMakeLock());
    Fresh.InitDefaults(&Source);
    Fresh.InitDefaults(nullptr);
    EXPECT_EQ(Fresh.GetName(), "Times");
}
