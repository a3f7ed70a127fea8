// Collections: item lifetime and order, index errors, enumeration in both directions, the
// change climb from an item to the collection and its owner, Assign.
#include "foundation/SettingsSamples.h"

#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLCollection.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace qv;

namespace {

using Strings = std::vector<std::string>;

// The BeforeDestruction calls of every item, by name.
Strings& Unhooked()
{
    static Strings Log;
    return Log;
}

class TNamedItem : public TQLNamedCollectionItem {
public:
    explicit TNamedItem(TQLCollection* ACollection) : TQLNamedCollectionItem(ACollection) {}
    int32_t GetValue() const { return FValue; }
    void SetValue(int32_t AValue) { Set(FValue, AValue); }
    void BeforeDestruction() override { Unhooked().push_back(FName); }

    QL_CLASS_INFO()

private:
    int32_t FValue = 0;
};

const TQLClassInfo& TNamedItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TNamedItem>("TNamedItem", &TQLNamedCollectionItem::StaticClassInfo())
            .Property("Value", &TNamedItem::GetValue, &TNamedItem::SetValue, 0)
            .Build();
    return Info;
}

// A collection that records what it is told.
class TRecordingCollection : public TQLTypedCollection<TNamedItem> {
public:
    using TQLTypedCollection<TNamedItem>::TQLTypedCollection;
    void Update(TQLCollectionItem* AItem) override
    {
        Updates.push_back(AItem);
        TQLTypedCollection<TNamedItem>::Update(AItem);
    }
    void NewItemCreated(TQLCollectionItem* AItem) override { CreatedAt.push_back(AItem->GetIndex()); }
    std::vector<TQLCollectionItem*> Updates;
    std::vector<int32_t> CreatedAt;
};

struct CollectionFixture : ::testing::Test {
    int OwnerNotifies = 0;
    TQLPersistentNotify Owner{nullptr, QLMakeLock(), [this] { ++OwnerNotifies; }};
    TRecordingCollection Items{&Owner, Owner.GetLock()};

    void SetUp() override { Unhooked().clear(); }

    void AddNamed(std::initializer_list<const char*> ANames)
    {
        for (const char* Name : ANames)
            Items.Add()->SetName(Name);
    }
    Strings Names() const
    {
        Strings Result;
        for (TNamedItem* Item : Items)
            Result.push_back(Item->GetName());
        return Result;
    }
};

} // namespace

TEST_F(CollectionFixture, AddInsertDeleteMoveAndClearKeepOrderAndIds)
{
    AddNamed({"a", "b", "c"});
    EXPECT_EQ(Items.CreatedAt, (std::vector<int32_t>{0, 1, 2}));
    static_cast<TNamedItem*>(Items.InsertItem(1))->SetName("x");
    EXPECT_EQ(Names(), (Strings{"a", "x", "b", "c"}));
    EXPECT_EQ(Items.GetItem(2)->GetIndex(), 2);
    Items.Move(0, 3);
    EXPECT_EQ(Names(), (Strings{"x", "b", "c", "a"}));
    Items.Move(3, 1);
    EXPECT_EQ(Names(), (Strings{"x", "a", "b", "c"}));

    const int32_t DeletedId = Items.GetItem(1)->GetID();
    Items.Delete(1);
    EXPECT_EQ(Names(), (Strings{"x", "b", "c"}));
    EXPECT_EQ(Unhooked(), (Strings{"a"}));
    EXPECT_NE(Items.Add()->GetID(), DeletedId) << "ids are never reused";

    TRecordingCollection Other(&Owner, Owner.GetLock());
    EXPECT_EQ(Items.IndexOf(Items.GetItem(2)), 2);
    EXPECT_EQ(Items.IndexOf(Other.Add()), -1);

    Items.Clear();
    EXPECT_EQ(Items.GetCount(), 0);
    EXPECT_EQ(Unhooked().size(), 5u);
}

TEST_F(CollectionFixture, BadIndexesRaiseListErrorsNamingTheIndex)
{
    AddNamed({"a", "b", "c"});
    auto ExpectListError = [](auto&& ACall, int64_t AIndex) {
        try {
            ACall();
            ADD_FAILURE() << "no error for index " << AIndex;
        } catch (const EQLListError& E) {
            EXPECT_EQ(E.GetIndex(), AIndex);
            EXPECT_NE(std::string(E.what()).find("(" + std::to_string(AIndex) + ")"), std::string::npos) << E.what();
        }
    };
    ExpectListError([&] { Items.GetItem(3); }, 3);
    ExpectListError([&] { Items.Delete(5); }, 5);
    ExpectListError([&] { Items.Move(-2, 0); }, -2);
    ExpectListError([&] { Items.InsertItem(4); }, 4);
    EXPECT_EQ(Names(), (Strings{"a", "b", "c"})) << "nothing changed on the way";
}

TEST_F(CollectionFixture, EnumerationRunsForwardAndBackward)
{
    auto Enumerate = [&] {
        Strings Seen;
        Items.ForEach([&](TNamedItem* AItem) { Seen.push_back(AItem->GetName()); });
        Items.ForEachBack([&](TNamedItem* AItem) { Seen.push_back(AItem->GetName()); });
        for (TNamedItem* Item : Items.GetReverse())
            Seen.push_back(Item->GetName());
        return Seen;
    };
    EXPECT_TRUE(Enumerate().empty()) << "an empty collection never calls";
    AddNamed({"a", "b", "c"});
    EXPECT_EQ(Enumerate(), (Strings{"a", "b", "c", "c", "b", "a", "c", "b", "a"}));
}

TEST_F(CollectionFixture, ItemChangesReachCollectionAndOwner)
{
    TNamedItem* Item = Items.Add();
    EXPECT_EQ(Items.Updates, (std::vector<TQLCollectionItem*>{nullptr})) << "adding updates the whole collection";
    const int AfterAdd = OwnerNotifies;

    Items.Updates.clear();
    Item->SetValue(4);
    EXPECT_EQ(Items.Updates, (std::vector<TQLCollectionItem*>{Item}));
    EXPECT_EQ(OwnerNotifies, AfterAdd + 1);
    // Equal values and a move to the same place climb nowhere.
    Item->SetValue(4);
    Item->SetName("");
    Items.Move(0, 0);
    EXPECT_EQ(Items.Updates.size(), 1u);
    EXPECT_EQ(OwnerNotifies, AfterAdd + 1);

    Items.Updates.clear();
    Items.Clear();
    Items.Clear();
    EXPECT_EQ(Items.Updates, (std::vector<TQLCollectionItem*>{nullptr}))
        << "clearing an empty collection changes nothing";
}

TEST_F(CollectionFixture, ItemLocksAreChainedAndDestroyUnhooksEveryItem)
{
    {
        TRecordingCollection Local(&Owner, Owner.GetLock());
        Local.Add()->SetName("p");
        Local.Add()->SetName("q");
    }
    EXPECT_EQ(Unhooked(), (Strings{"q", "p"}));

    TNamedItem* Item = Items.Add();
    EXPECT_NE(Item->GetLock(), Items.GetLock());
    auto Destroy = Owner.GetLock()->AcquireDestroy();
    EXPECT_TRUE(Item->GetLock()->IsDestroying());
    EXPECT_FALSE(Item->GetLock()->AcquireWrite());
}

TEST_F(CollectionFixture, AssignSetItemAndInitDefaultsCopySettings)
{
    AddNamed({"a", "b"});
    Items.GetItem(0)->SetValue(11);
    Items.GetItem(1)->SetValue(22);

    TRecordingCollection Copy(&Owner, Owner.GetLock());
    Copy.Add()->SetName("old");
    Copy.Assign(&Items);
    ASSERT_EQ(Copy.GetCount(), 2);
    EXPECT_EQ(Copy.GetItem(0)->GetName(), "a");
    EXPECT_EQ(Copy.GetItem(1)->GetValue(), 22);
    Copy.Assign(&Copy);
    EXPECT_EQ(Copy.GetCount(), 2) << "assigning itself changes nothing";

    Items.SetItem(0, Items.GetItem(1));
    EXPECT_EQ(Items.GetItem(0)->GetValue(), 22);

    TRecordingCollection Fresh(&Owner, Owner.GetLock());
    Fresh.InitDefaults(&Copy);
    EXPECT_EQ(Fresh.GetItem(1)->GetValue(), 22);

    // Items of another class, or a plain settings object, are refused and the items kept.
    qvtest::TSampleItems Foreign(&Owner, Owner.GetLock());
    Foreign.Add();
    try {
        Copy.Assign(&Foreign);
        FAIL() << "items of another class were accepted";
    } catch (const std::invalid_argument& E) {
        EXPECT_NE(std::string(E.what()).find("TSampleItem"), std::string::npos) << E.what();
    }
    EXPECT_THROW(Copy.Assign(&Owner), std::invalid_argument);
    EXPECT_EQ(Copy.GetCount(), 2);
}
