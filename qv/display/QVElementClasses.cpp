// The display classes that a display's element list can make by name: what a stored form
// of hosted elements may hold.

#include "qv/display/QVDisplayElements.h"
#include "qv/display/QVExternalScopeElement.h"
#include "qv/display/QVExternalWaterfallElement.h"

namespace qv {

namespace {

template <class T>
std::unique_ptr<IQLDrawComponentElement> Make()
{
    return std::make_unique<T>();
}

struct TElementClass {
    const TQLClassInfo& (*Info)();
    std::unique_ptr<IQLDrawComponentElement> (*Make)();
};

const TElementClass* FindClass(const std::string& AName)
{
    static const TElementClass Classes[] = {
        {&TQVExternalScopeElement::StaticClassInfo, &Make<TQVExternalScopeElement>},
        {&TQVExternalScopeMatrixLayer::StaticClassInfo, &Make<TQVExternalScopeMatrixLayer>},
        {&TQVExternalScopeMatrixElement::StaticClassInfo, &Make<TQVExternalScopeMatrixElement>},
        {&TQVExternalWaterfallElement::StaticClassInfo, &Make<TQVExternalWaterfallElement>},
        {&TQVExternalWaterfallMatrixElement::StaticClassInfo, &Make<TQVExternalWaterfallMatrixElement>},
    };
    for (const TElementClass& Class : Classes)
        if (Class.Info().GetName() == AName)
            return &Class;
    return nullptr;
}

} // namespace

const TQLClassInfo* QVFindElementClass(const std::string& AName)
{
    const TElementClass* Class = FindClass(AName);
    return Class ? &Class->Info() : nullptr;
}

std::unique_ptr<IQLDrawComponentElement> QVMakeElement(const std::string& AName)
{
    const TElementClass* Class = FindClass(AName);
    return Class ? Class->Make() : nullptr;
}

} // namespace qv
