#include "qv/foundation/QLCollection.h"

#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>

namespace qv {

// ---- TQLCollectionItem ----

TQLCollectionItem::TQLCollectionItem(TQLCollection* ACollection)
    : TQLPersistent(ACollection, ACollection ? ACollection->GetLock() : QLMakeLock()), FCollection(ACollection)
{
    SetLock(QLMakeChainedLock(TQLPersistent::GetLock(), [this] { NotifyProp(); }));
}

TQLCollectionItem::~TQLCollectionItem()
{
    auto Guard = GetLock()->AcquireWrite();
    GetBasicLock().SetNotify({});
}

int32_t TQLCollectionItem::GetIndex() const
{
    return FCollection ? FCollection->IndexOfItem(this) : -1;
}

std::string TQLCollectionItem::GetDisplayName() const
{
    return GetClassInfo().GetName();
}

void TQLCollectionItem::NotifyProp()
{
    if (FCollection)
        FCollection->Update(this);
}

void TQLCollectionItem::BeforeDestruction()
{}

const TQLClassInfo& TQLCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info("TQLCollectionItem", &TQLPersistent::StaticClassInfo(), {});
    return Info;
}

void TQLNamedCollectionItem::SetName(const std::string& AValue)
{
    Set(FName, AValue);
}

const TQLClassInfo& TQLNamedCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQLNamedCollectionItem>("TQLNamedCollectionItem", &TQLCollectionItem::StaticClassInfo())
            .Property("Name", &TQLNamedCollectionItem::GetName, &TQLNamedCollectionItem::SetName, "")
            .Build();
    return Info;
}

// ---- TQLCollection ----

TQLCollection::TQLCollection(TQLPersistent* AOwner, TQLLockPtr ALock, TItemFactory AFactory)
    : TQLPersistent(AOwner, std::move(ALock)), FFactory(std::move(AFactory))
{
    if (!FFactory)
        throw std::invalid_argument("TQLCollection: an item factory is required");
}

TQLCollection::~TQLCollection()
{
    while (!FItems.empty()) {
        std::unique_ptr<TQLCollectionItem> Item = std::move(FItems.back());
        FItems.pop_back();
        Item->BeforeDestruction();
        Item->FCollection = nullptr;
    }
}

TQLCollectionItem* TQLCollection::GetBaseItem(int32_t AIndex) const
{
    if (AIndex < 0 || AIndex >= GetCount())
        throw EQLListError(AIndex);
    return FItems[static_cast<size_t>(AIndex)].get();
}

TQLCollectionItem* TQLCollection::AddItem()
{
    return InsertItem(GetCount());
}

TQLCollectionItem* TQLCollection::InsertItem(int32_t AIndex)
{
    auto Guard = GetLock()->AcquireWrite();
    if (AIndex < 0 || AIndex > GetCount())
        throw EQLListError(AIndex);
    std::unique_ptr<TQLCollectionItem> Item = FFactory(this);
    Item->FID = FNextID++;
    TQLCollectionItem* Result = Item.get();
    FItems.insert(FItems.begin() + AIndex, std::move(Item));
    NewItemCreated(Result);
    Update(nullptr);
    return Result;
}

void TQLCollection::FreeItem(std::unique_ptr<TQLCollectionItem> AItem)
{
    AItem->BeforeDestruction();
    AItem->FCollection = nullptr;
    AItem.reset();
}

void TQLCollection::Delete(int32_t AIndex)
{
    auto Guard = GetLock()->AcquireWrite();
    GetBaseItem(AIndex); // range check
    std::unique_ptr<TQLCollectionItem> Item = std::move(FItems[static_cast<size_t>(AIndex)]);
    FItems.erase(FItems.begin() + AIndex);
    FreeItem(std::move(Item));
    Update(nullptr);
}

void TQLCollection::Clear()
{
    auto Guard = GetLock()->AcquireWrite();
    if (FItems.empty())
        return;
    while (!FItems.empty()) {
        std::unique_ptr<TQLCollectionItem> Item = std::move(FItems.back());
        FItems.pop_back();
        FreeItem(std::move(Item));
    }
    Update(nullptr);
}

void TQLCollection::Move(int32_t AFromIndex, int32_t AToIndex)
{
    auto Guard = GetLock()->AcquireWrite();
    GetBaseItem(AFromIndex);
    GetBaseItem(AToIndex);
    if (AFromIndex == AToIndex)
        return;
    std::unique_ptr<TQLCollectionItem> Item = std::move(FItems[static_cast<size_t>(AFromIndex)]);
    FItems.erase(FItems.begin() + AFromIndex);
    FItems.insert(FItems.begin() + AToIndex, std::move(Item));
    Update(nullptr);
}

int32_t TQLCollection::IndexOfItem(const TQLCollectionItem* AItem) const
{
    for (size_t I = 0; I < FItems.size(); ++I)
        if (FItems[I].get() == AItem)
            return static_cast<int32_t>(I);
    return -1;
}

void TQLCollection::Update(TQLCollectionItem* /*AItem*/)
{
    NotifyProp();
}

void TQLCollection::Assign(const TQLPersistent* ASource)
{
    const auto* Source = dynamic_cast<const TQLCollection*>(ASource);
    if (!Source) {
        TQLPersistent::Assign(ASource);
        return;
    }
    if (Source == this)
        return;
    // Check every item before clearing, so that a mismatch leaves this collection as it was.
    const TQLClassInfo& Mine = GetItemClassInfo();
    for (const auto& Item : Source->FItems) {
        const TQLClassInfo& Theirs = Item->GetClassInfo();
        if (!Theirs.InheritsFrom(Mine) && !Mine.InheritsFrom(Theirs))
            throw std::invalid_argument("Cannot assign a " + Theirs.GetName() + " to a collection of " +
                                        Mine.GetName());
    }
    auto Guard = GetLock()->AcquireWrite();
    Clear();
    for (const auto& Item : Source->FItems)
        AddItem()->Assign(Item.get());
}

void TQLCollection::InitDefaults(const TQLPersistent* AOther)
{
    if (AOther)
        Assign(AOther);
}

const TQLClassInfo& TQLCollection::GetItemClassInfo() const
{
    return FItems.empty() ? TQLCollectionItem::StaticClassInfo() : FItems.front()->GetClassInfo();
}

const TQLClassInfo& TQLCollection::StaticClassInfo()
{
    static const TQLClassInfo Info("TQLCollection", &TQLPersistent::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
