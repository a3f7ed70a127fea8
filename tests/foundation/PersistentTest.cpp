// Settings objects: the change climb to the owner, own notifications, pen, brush and font
// defaults, the property registry and Assign.
#include "foundation/SettingsSamples.h"

#include "qv/foundation/QLStoredForm.h"

#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayFont.h"
#include "qv/foundation/QVDisplayPen.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace qv;
using namespace qvtest;

namespace {

// Records which owned object reported a change.
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
    ASSERT_EQ(Owner.Senders.size(), 1u);
    EXPECT_EQ(Owner.Senders[0], &Climbing);

    int Closure = 0;
    TQVDisplayPen Own(&Owner, Owner.GetLock(), [&] { ++Closure; });
    Own.SetWidth(2);
    EXPECT_EQ(Closure, 1);
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

TEST(PersistentNotify, OwnLockIsChainedToTheGivenOne)
{
    auto Root = QLMakeLock();
    TQVDisplayPen Pen(nullptr, Root);
    EXPECT_NE(Pen.GetLock(), Root);
    {
        auto Guard = Root->AcquireDestroy();
        EXPECT_TRUE(Pen.GetLock()->IsDestroying());
    }
}

TEST(PersistentNotify, LockOutlivingItsObjectNoLongerCallsBack)
{
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
    EXPECT_EQ(Pen.GetColor(), 0xFF00FF00u);
    EXPECT_EQ(Pen.GetWidth(), 1) << "a default width below 1 is raised";
    EXPECT_EQ(Pen.GetWidthDefault(), 1);

    Pen.SetColorDefault(0xFFFF0000);
    EXPECT_EQ(Pen.GetColor(), 0xFFFF0000u);
    Pen.SetColor(0xFF123456);
    Pen.SetColorDefault(0xFF0000FF);
    EXPECT_EQ(Pen.GetColor(), 0xFF123456u);
    EXPECT_EQ(Pen.GetColorDefault(), 0xFF0000FFu);

    TQVDisplayBrush Brush(nullptr, QLMakeLock(), {}, 0xFF111111, bkNone);
    EXPECT_EQ(Brush.GetKind(), bkNone);
    Brush.SetColorDefault(0xFF222222);
    EXPECT_EQ(Brush.GetColor(), 0xFF222222u);
    Brush.SetColor(0xFF333333);
    Brush.SetColorDefault(0xFF444444);
    EXPECT_EQ(Brush.GetColor(), 0xFF333333u);
}

TEST(ClassRegistry, RedeclaredPropertyTakesTheAncestorsPlace)
{
    TQLPropertyInfo A;
    A.Name = "A";
    TQLPropertyInfo B;
    B.Name = "B";
    const TQLClassInfo Base("TBase", nullptr, {A, B});
    TQLPropertyInfo A2;
    A2.Name = "A";
    A2.Kind = pkString;
    TQLPropertyInfo C;
    C.Name = "C";
    const TQLClassInfo Derived("TDerived", &Base, {A2, C});
    ASSERT_EQ(Derived.GetProperties().size(), 3u);
    EXPECT_EQ(Derived.GetProperties()[0]->Name, "A");
    EXPECT_EQ(Derived.GetProperties()[0]->Kind, pkString);
    EXPECT_EQ(Derived.GetProperties()[1]->Name, "B");
    EXPECT_EQ(Derived.GetProperties()[2]->Name, "C");
}

TEST(PersistentAssign, CopiesEveryPropertyOwnedObjectAndCollection)
{
    TSampleSettings Source;
    FillSample(Source);
    TSampleSettings Target(QLMakeLock(), 0xFF000001, 0xFF000002);
    Target.GetItems()->Add()->SetName("to be replaced");
    Target.GetItems()->Add();
    Target.GetItems()->Add();

    Target.Assign(&Source);
    // Everything published is equal: the stored forms match, items and nested objects included.
    EXPECT_EQ(QLSaveObject(Target), QLSaveObject(Source));
    ASSERT_EQ(Target.GetItems()->GetCount(), 2);
    const TSampleItem* First = Target.GetItems()->GetItem(0);
    EXPECT_EQ(First->GetName(), "first");
    EXPECT_EQ(First->GetFont()->GetStyle(), fsBold | fsItalic);
    EXPECT_EQ(Target.GetItems()->GetItem(1)->GetMarker()->GetOffset(), -3.5);
    EXPECT_EQ(Target.GetAxisIndex(), 2);

    // Defaults are the target's own: they are not published and not copied.
    EXPECT_EQ(Target.GetBackDefault(), 0xFF000001u);
    EXPECT_EQ(Target.GetPen()->GetColorDefault(), 0xFF000002u);
    // The source is untouched and separate.
    EXPECT_EQ(Source.GetItems()->GetCount(), 2);
    EXPECT_NE(Source.GetItems()->GetItem(0), First);
}

TEST(PersistentAssign, WorksAlongTheClassLineAndRefusesUnrelatedClasses)
{
    TSampleSettingsEx Derived;
    FillSample(Derived);
    Derived.SetExtra(9);
    TSampleSettings Base;
    Base.Assign(&Derived);
    EXPECT_EQ(Base.GetPercent(), 75);
    EXPECT_EQ(Base.GetItems()->GetCount(), 2);

    TSampleSettingsEx Other;
    Other.SetExtra(5);
    Base.SetPercent(10);
    Other.Assign(&Base);
    EXPECT_EQ(Other.GetPercent(), 10);
    EXPECT_EQ(Other.GetExtra(), 5) << "a property the source lacks stays";

    TQVDisplayPen Pen(nullptr, QLMakeLock());
    Pen.SetWidth(4);
    try {
        Base.Assign(&Pen);
        FAIL() << "assigned a pen to a settings object";
    } catch (const std::invalid_argument& E) {
        const std::string Message = E.what();
        EXPECT_NE(Message.find("TQVDisplayPen"), std::string::npos) << Message;
        EXPECT_NE(Message.find("TSampleSettings"), std::string::npos) << Message;
    }
    EXPECT_EQ(Base.GetPercent(), 10);
    EXPECT_THROW(Pen.Assign(&Base), std::invalid_argument);
    EXPECT_EQ(Pen.GetWidth(), 4);

    // A null source and the object itself change nothing.
    Base.Assign(nullptr);
    Base.Assign(&Base);
    EXPECT_EQ(Base.GetPercent(), 10);
}

TEST(PersistentAssign, NotifiesOncePerChangedPropertyAndNotForEqualOnes)
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
    EXPECT_EQ(Target.GetSize(), 20);

    // InitDefaults copies from a prototype the same way.
    TQVDisplayFont Fresh(nullptr, QLMakeLock());
    Fresh.InitDefaults(&Source);
    EXPECT_EQ(Fresh.GetName(), "Times");
    Fresh.InitDefaults(nullptr);
    EXPECT_EQ(Fresh.GetName(), "Times");
}
