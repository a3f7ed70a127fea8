#include "qv/foundation/QLPersistent.h"

#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QLCollection.h"

#include <stdexcept>

namespace qv {

TQLPersistent::TQLPersistent(TQLPersistent* AOwner, TQLLockPtr ALock) : FOwner(AOwner), FLock(std::move(ALock))
{
    if (!FLock)
        throw std::invalid_argument("TQLPersistent: a settings object needs a lock");
}

const TQLClassInfo& TQLPersistent::StaticClassInfo()
{
    static const TQLClassInfo Info("TQLPersistent", nullptr, {});
    return Info;
}

void TQLPersistent::Assign(const TQLPersistent* ASource)
{
    if (!ASource || ASource == this)
        return;
    const TQLClassInfo& Mine = GetClassInfo();
    const TQLClassInfo& Theirs = ASource->GetClassInfo();
    // The properties both classes publish: those of the less derived one.
    const TQLClassInfo* Common = nullptr;
    if (Theirs.InheritsFrom(Mine))
        Common = &Mine;
    else if (Mine.InheritsFrom(Theirs))
        Common = &Theirs;
    if (!Common)
        throw std::invalid_argument("Cannot assign a " + Theirs.GetName() + " to a " + Mine.GetName());

    auto Guard = GetLock()->AcquireWrite();
    for (const TQLPropertyInfo* Prop : Common->GetProperties()) {
        switch (Prop->Kind) {
        case pkObject: {
            TQLPersistent* Target = Prop->Object(*this);
            const TQLPersistent* Source = Prop->Object(*ASource);
            if (Target && Source)
                Target->Assign(Source);
            break;
        }
        case pkCollection: {
            TQLCollection* Target = Prop->Collection(*this);
            const TQLCollection* Source = Prop->Collection(*ASource);
            if (Target && Source)
                Target->Assign(Source);
            break;
        }
        default:
            if (Prop->Set)
                Prop->Set(*this, Prop->Get(*ASource));
            break;
        }
    }
}

void TQLPersistent::NotifyProp()
{
    if (FOwner)
        FOwner->ClasicNotifyProp(this);
}

void TQLPersistent::ClasicNotifyProp(TQLPersistent* /*ASender*/)
{
    NotifyProp();
}

void TQLPersistent::OwnerNameChanged(const std::string&, const std::string&)
{}

void TQLPersistent::InitDefaults(const TQLPersistent* AOther)
{
    if (AOther)
        Assign(AOther);
}

void TQLPersistent::Loaded()
{}

TQLPersistentNotify::TQLPersistentNotify(TQLPersistent* AOwner, TQLLockPtr ALock, TQLNotifyProc ANotify)
    : TQLPersistent(AOwner, ALock), FNotify(std::move(ANotify))
{
    SetLock(QLMakeChainedLock(std::move(ALock), [this] { NotifyProp(); }));
}

TQLPersistentNotify::~TQLPersistentNotify()
{
    // Someone may still hold the chained lock; it must not call back into a freed object.
    auto Guard = GetLock()->AcquireWrite();
    GetBasicLock().SetNotify({});
}

void TQLPersistentNotify::NotifyProp()
{
    if (FNotify)
        FNotify();
    else
        TQLPersistent::NotifyProp();
}

const TQLClassInfo& TQLPersistentNotify::StaticClassInfo()
{
    static const TQLClassInfo Info("TQLPersistentNotify", &TQLPersistent::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
