#include "qv/foundation/QLClassInfo.h"

namespace qv {

bool TQLPropertyInfo::IsStored(const TQLPersistent& AObject) const
{
    if (Stored)
        return Stored(AObject);
    if (!Default)
        return true;
    return Get(AObject) != Default(AObject);
}

TQLClassInfo::TQLClassInfo(std::string AName, const TQLClassInfo* AParent, std::vector<TQLPropertyInfo> AOwn)
    : FName(std::move(AName)), FParent(AParent), FOwn(std::move(AOwn))
{
    if (FParent)
        FAll = FParent->GetProperties();
    for (const TQLPropertyInfo& Prop : FOwn) {
        bool Replaced = false;
        for (const TQLPropertyInfo*& Inherited : FAll)
            if (Inherited->Name == Prop.Name) {
                Inherited = &Prop;
                Replaced = true;
                break;
            }
        if (!Replaced)
            FAll.push_back(&Prop);
    }
}

const TQLPropertyInfo* TQLClassInfo::FindProperty(const std::string& AName) const
{
    for (const TQLPropertyInfo* Prop : FAll)
        if (Prop->Name == AName)
            return Prop;
    return nullptr;
}

bool TQLClassInfo::InheritsFrom(const TQLClassInfo& AOther) const
{
    for (const TQLClassInfo* Info = this; Info; Info = Info->FParent)
        if (Info == &AOther)
            return true;
    return false;
}

} // namespace qv
