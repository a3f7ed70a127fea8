#pragma once
// Collections of settings items. A collection owns its items and creates them through a
// factory fixed at construction; each item writes through a lock chained to the
// collection's, so that a change of an item reaches the collection's Update.

#include "qv/foundation/QLPersistent.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace qv {

class TQLCollection;

// The list-index error of collections and lists: the message carries the index.
class EQLListError : public std::out_of_range {
public:
    explicit EQLListError(int64_t AIndex)
        : std::out_of_range("List index out of bounds (" + std::to_string(AIndex) + ")"), FIndex(AIndex)
    {}
    int64_t GetIndex() const { return FIndex; }

private:
    int64_t FIndex;
};

class TQLCollectionItem : public TQLPersistent {
public:
    explicit TQLCollectionItem(TQLCollection* ACollection);
    ~TQLCollectionItem() override;

    TQLCollection* GetCollection() const { return FCollection; }
    // Position in the collection; -1 once detached.
    int32_t GetIndex() const;
    // A number given at creation, unique within the collection for its lifetime.
    int32_t GetID() const { return FID; }
    virtual std::string GetDisplayName() const;

    // A change of this item: tells the collection.
    void NotifyProp() override;
    // The point to unhook an item from its neighbours; runs before the item is freed.
    virtual void BeforeDestruction();

    QL_CLASS_INFO()

private:
    friend class TQLCollection;
    TQLCollection* FCollection;
    int32_t FID = 0;
};

class TQLNamedCollectionItem : public TQLCollectionItem {
public:
    using TQLCollectionItem::TQLCollectionItem;

    const std::string& GetName() const { return FName; }
    void SetName(const std::string& AValue);
    std::string GetDisplayName() const override { return FName; }

    QL_CLASS_INFO()

protected:
    std::string FName;
};

class TQLCollection : public TQLPersistent {
public:
    using TItemFactory = std::function<std::unique_ptr<TQLCollectionItem>(TQLCollection*)>;

    TQLCollection(TQLPersistent* AOwner, TQLLockPtr ALock, TItemFactory AFactory);
    ~TQLCollection() override;

    int32_t GetCount() const { return static_cast<int32_t>(FItems.size()); }
    // The number of items a new owner makes, and a stored form that omits the collection
    // restores; 0 unless the owner says otherwise.
    int32_t GetDefaultCount() const { return FDefaultCount; }
    void SetDefaultCount(int32_t AValue) { FDefaultCount = AValue; }
    // Unchecked by the lock; raises EQLListError for a bad index.
    TQLCollectionItem* GetBaseItem(int32_t AIndex) const;
    // Creates an item of the collection's class at the end.
    TQLCollectionItem* AddItem();
    TQLCollectionItem* InsertItem(int32_t AIndex);
    void Delete(int32_t AIndex);
    void Clear();
    // Moves an item to another position.
    void Move(int32_t AFromIndex, int32_t AToIndex);
    int32_t IndexOfItem(const TQLCollectionItem* AItem) const;
    TQLPersistent* IntGetOwner() const { return GetOwner(); }

    // A change of one item (or of the whole collection when AItem is null).
    virtual void Update(TQLCollectionItem* AItem);
    // A new item exists and lies in the collection.
    virtual void NewItemCreated(TQLCollectionItem* AItem) {}

    void Assign(const TQLPersistent* ASource) override;
    void InitDefaults(const TQLPersistent* AOther) override;

    // The class description of the items.
    virtual const TQLClassInfo& GetItemClassInfo() const;

    QL_CLASS_INFO()

protected:
    std::vector<std::unique_ptr<TQLCollectionItem>> FItems;
    int32_t FDefaultCount = 0;

private:
    void FreeItem(std::unique_ptr<TQLCollectionItem> AItem);

    TItemFactory FFactory;
    int32_t FNextID = 0;
};

// A collection of items of class T. TBase is TQLCollection or a class derived from it that
// adds context (the display of a display collection).
template <class T, class TBase = TQLCollection>
class TQLTypedCollection : public TBase {
public:
    template <class... Args>
    explicit TQLTypedCollection(Args&&... AArgs)
        : TBase(std::forward<Args>(AArgs)..., [](TQLCollection* ACollection) -> std::unique_ptr<TQLCollectionItem> {
              return std::make_unique<T>(ACollection);
          })
    {}

    const TQLClassInfo& GetItemClassInfo() const override { return T::StaticClassInfo(); }

    // Free of the lock: for code that holds a guard already or runs on the painting thread.
    virtual T* GetNoLockItem(int32_t AIndex) const { return static_cast<T*>(this->GetBaseItem(AIndex)); }
    virtual T* GetItem(int32_t AIndex) const
    {
        auto Guard = this->GetLock()->AcquireRead();
        return static_cast<T*>(this->GetBaseItem(AIndex));
    }
    // Copies the settings of AItem into the item at AIndex.
    virtual void SetItem(int32_t AIndex, const T* AItem)
    {
        auto Guard = this->GetLock()->AcquireWrite();
        this->GetBaseItem(AIndex)->Assign(AItem);
    }
    virtual T* Add()
    {
        auto Guard = this->GetLock()->AcquireWrite();
        return static_cast<T*>(this->AddItem());
    }

    int32_t IndexOf(const T* AItem) const
    {
        for (int32_t I = 0; I < this->GetCount(); ++I)
            if (GetItem(I) == AItem)
                return I;
        return -1;
    }

    class iterator {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = T*;
        iterator() = default;
        iterator(const TQLTypedCollection* ACollection, int32_t APos, int32_t AStep)
            : FCollection(ACollection), FPos(APos), FStep(AStep)
        {}
        T* operator*() const { return FCollection->GetNoLockItem(FPos); }
        iterator& operator++()
        {
            FPos += FStep;
            return *this;
        }
        iterator operator++(int)
        {
            iterator Old = *this;
            ++*this;
            return Old;
        }
        bool operator==(const iterator& AOther) const { return FPos == AOther.FPos; }

    private:
        const TQLTypedCollection* FCollection = nullptr;
        int32_t FPos = 0;
        int32_t FStep = 1;
    };

    // Forward enumeration, first to last; holds no guard.
    iterator begin() const { return iterator(this, 0, 1); }
    iterator end() const { return iterator(this, this->GetCount(), 1); }

    // Reverse enumeration, last to first.
    struct TReverse {
        const TQLTypedCollection* FCollection;
        iterator begin() const { return iterator(FCollection, FCollection->GetCount() - 1, -1); }
        iterator end() const { return iterator(FCollection, -1, -1); }
    };
    TReverse GetReverse() const { return TReverse{this}; }

    template <class F>
    void ForEach(F&& AProc) const
    {
        for (int32_t I = 0; I < this->GetCount(); ++I)
            AProc(GetNoLockItem(I));
    }
    template <class F>
    void ForEachBack(F&& AProc) const
    {
        for (int32_t I = this->GetCount(); I > 0; --I)
            AProc(GetNoLockItem(I - 1));
    }
};

} // namespace qv
