#pragma once
// The root of every settings object: an owner, a lock, the change climb to the owner and the
// published-property description used by Assign and the stored form.

#include "qv/foundation/QLClassInfo.h"
#include "qv/foundation/QLLock.h"

#include <string>

namespace qv {

class IQLStoredList;

class TQLPersistent {
public:
    TQLPersistent(TQLPersistent* AOwner, TQLLockPtr ALock);
    TQLPersistent(const TQLPersistent&) = delete;
    TQLPersistent& operator=(const TQLPersistent&) = delete;
    virtual ~TQLPersistent() = default;

    TQLPersistent* GetOwner() const { return FOwner; }
    const TQLLockPtr& GetLock() const { return FLock; }
    TQLBasicLock& GetBasicLock() const { return *FLock->GetBasicLock(); }

    // Copies every published property of ASource into this object, owned objects and
    // collections included. Raises std::invalid_argument when the classes do not match.
    virtual void Assign(const TQLPersistent* ASource);
    // A change of this object: the base passes it to the owner.
    virtual void NotifyProp();
    // A change reported by an owned object.
    virtual void ClasicNotifyProp(TQLPersistent* ASender);
    virtual void OwnerNameChanged(const std::string& AOldName, const std::string& ANewName);
    // Takes the defaults of a prototype of the same class.
    virtual void InitDefaults(const TQLPersistent* AOther);
    // Runs once after the stored form has been loaded into this object and all it owns.
    virtual void Loaded();

    // The placeholder of the published properties whose names begin with an underscore.
    std::string GetHidden_() const { return {}; }
    void SetHidden_(const std::string&) {}

    static const TQLClassInfo& StaticClassInfo();
    virtual const TQLClassInfo& GetClassInfo() const { return StaticClassInfo(); }
    // Settings objects of several classes that this object holds beyond its published
    // properties and stores with them (QLStoredForm.h); null when it holds none.
    virtual IQLStoredList* GetStoredList() const { return nullptr; }

protected:
    void SetOwner(TQLPersistent* AOwner) { FOwner = AOwner; }
    void SetLock(TQLLockPtr ALock) { FLock = std::move(ALock); }

    // Shorthand for the setter family on this object's lock.
    template <class T, class V, class F = std::nullptr_t>
    bool Set(T& AField, V&& AValue, F&& AProc = nullptr)
    {
        return GetBasicLock().Setter(AField, std::forward<V>(AValue), std::forward<F>(AProc));
    }

private:
    TQLPersistent* FOwner;
    TQLLockPtr FLock;
};

// A settings object that runs its own closure on every change: it writes through a lock
// chained to the one it was given, whose notification is this object's NotifyProp.
class TQLPersistentNotify : public TQLPersistent {
public:
    TQLPersistentNotify(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify);
    ~TQLPersistentNotify() override;

    void NotifyProp() override;
    void SetOnNotify(TQLNotifyProc ANotify) { FNotify = std::move(ANotify); }

    static const TQLClassInfo& StaticClassInfo();
    const TQLClassInfo& GetClassInfo() const override { return StaticClassInfo(); }

private:
    TQLNotifyProc FNotify;
};

} // namespace qv

// Declares the class-info accessors of a settings class; the definition builds the
// description with TQLClassBuilder.
#define QL_CLASS_INFO()                                                                                                \
public:                                                                                                                \
    static const qv::TQLClassInfo& StaticClassInfo();                                                                  \
    const qv::TQLClassInfo& GetClassInfo() const override                                                              \
    {                                                                                                                  \
        return StaticClassInfo();                                                                                      \
    }
