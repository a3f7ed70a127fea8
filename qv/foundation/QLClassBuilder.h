#pragma once
// Builds the published-property description of a class from its getters and setters. The
// kind of each property follows from the getter's type; enumerations need QL_DECLARE_ENUM.
//
//   const TQLClassInfo& TQVDisplayPen::StaticClassInfo()
//   {
//       static const TQLClassInfo Info = TQLClassBuilder<TQVDisplayPen>("TQVDisplayPen",
//               &TQLPersistentNotify::StaticClassInfo())
//           .Color("Color", &TQVDisplayPen::GetColor, &TQVDisplayPen::SetColor,
//                  &TQVDisplayPen::GetColorDefault)
//           .Property("Width", &TQVDisplayPen::GetWidth, &TQVDisplayPen::SetWidth, 1)
//           .Build();
//       return Info;
//   }

#include "qv/foundation/QLClassInfo.h"
#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

namespace qv {

namespace detail {

template <class T>
struct TQLIsString : std::is_same<std::decay_t<T>, std::string> {};

template <class T>
constexpr TQLPropertyKind QLKindOf()
{
    using U = std::decay_t<T>;
    if constexpr (std::is_same_v<U, bool>)
        return pkBool;
    else if constexpr (std::is_enum_v<U>)
        return pkEnum;
    else if constexpr (std::is_integral_v<U> && std::is_signed_v<U>)
        return pkInteger;
    else if constexpr (std::is_integral_v<U>)
        return pkUnsigned;
    else if constexpr (std::is_floating_point_v<U>)
        return pkReal;
    else {
        static_assert(TQLIsString<U>::value, "unsupported published property type");
        return pkString;
    }
}

template <class T>
TQLValue QLToValue(const T& AValue)
{
    using U = std::decay_t<T>;
    if constexpr (std::is_same_v<U, bool>)
        return AValue;
    else if constexpr (std::is_enum_v<U> || std::is_integral_v<U>)
        return static_cast<int64_t>(AValue);
    else if constexpr (std::is_floating_point_v<U>)
        return static_cast<double>(AValue);
    else
        return std::string(AValue);
}

// Converts a registry value to the property's C++ type; the caller has checked the kind.
template <class T>
T QLFromValue(const TQLValue& AValue)
{
    using U = std::decay_t<T>;
    if constexpr (std::is_same_v<U, bool>)
        return std::get<bool>(AValue);
    else if constexpr (std::is_enum_v<U> || std::is_integral_v<U>)
        return static_cast<U>(std::get<int64_t>(AValue));
    else if constexpr (std::is_floating_point_v<U>)
        return static_cast<U>(std::get<double>(AValue));
    else
        return std::get<std::string>(AValue);
}

template <class T>
constexpr int64_t QLMinOf()
{
    using U = std::decay_t<T>;
    if constexpr (std::is_enum_v<U>)
        return std::numeric_limits<std::underlying_type_t<U>>::min();
    else if constexpr (std::is_integral_v<U>)
        return static_cast<int64_t>(std::numeric_limits<U>::min());
    else
        return 0;
}
template <class T>
constexpr int64_t QLMaxOf()
{
    using U = std::decay_t<T>;
    if constexpr (std::is_enum_v<U>)
        return static_cast<int64_t>(std::numeric_limits<std::underlying_type_t<U>>::max());
    else if constexpr (std::is_integral_v<U> && sizeof(U) == 8 && std::is_unsigned_v<U>)
        return std::numeric_limits<int64_t>::max();
    else if constexpr (std::is_integral_v<U>)
        return static_cast<int64_t>(std::numeric_limits<U>::max());
    else
        return 0;
}

template <class M>
struct TQLGetterTraits;
template <class C, class R>
struct TQLGetterTraits<R (C::*)() const> {
    using Value = std::decay_t<R>;
};

} // namespace detail

template <class C>
class TQLClassBuilder {
public:
    TQLClassBuilder(std::string AName, const TQLClassInfo* AParent) : FName(std::move(AName)), FParent(AParent) {}

    // A value property with no default: always stored.
    template <class G, class S>
    TQLClassBuilder& Property(std::string AName, G AGetter, S ASetter)
    {
        using T = typename detail::TQLGetterTraits<G>::Value;
        FProps.push_back(MakeValue<T>(std::move(AName), detail::QLKindOf<T>(), AGetter, ASetter));
        return *this;
    }

    // A value property stored only when it differs from its default. ADefault is a value,
    // or a const member function giving the default of this instance.
    template <class G, class S, class D>
    TQLClassBuilder& Property(std::string AName, G AGetter, S ASetter, D ADefault)
    {
        using T = typename detail::TQLGetterTraits<G>::Value;
        TQLPropertyInfo Info = MakeValue<T>(std::move(AName), detail::QLKindOf<T>(), AGetter, ASetter);
        Info.Default = MakeDefault<T>(ADefault);
        FProps.push_back(std::move(Info));
        return *this;
    }

    // A colour (0xAARRGGBB) property.
    template <class G, class S, class D>
    TQLClassBuilder& Color(std::string AName, G AGetter, S ASetter, D ADefault)
    {
        using T = typename detail::TQLGetterTraits<G>::Value;
        TQLPropertyInfo Info = MakeValue<T>(std::move(AName), pkColor, AGetter, ASetter);
        Info.Default = MakeDefault<T>(ADefault);
        FProps.push_back(std::move(Info));
        return *this;
    }

    // A flag-set property whose bits AInfo names.
    template <class G, class S, class D>
    TQLClassBuilder& Set(std::string AName, G AGetter, S ASetter, D ADefault, const TQLEnumInfo& AInfo)
    {
        using T = typename detail::TQLGetterTraits<G>::Value;
        TQLPropertyInfo Info = MakeValue<T>(std::move(AName), pkSet, AGetter, ASetter);
        Info.Enum = &AInfo;
        Info.Default = MakeDefault<T>(ADefault);
        FProps.push_back(std::move(Info));
        return *this;
    }

    // A defined property ("AxisIndex_"): stored always, hidden from the setup dialogs.
    template <class G, class S>
    TQLClassBuilder& Defined(std::string AName, G AGetter, S ASetter)
    {
        Property(std::move(AName), AGetter, ASetter);
        FProps.back().Defined = true;
        return *this;
    }

    // An owned settings object, stored nested when any of its properties is stored.
    template <class G>
    TQLClassBuilder& Object(std::string AName, G AGetter)
    {
        TQLPropertyInfo Info;
        Info.Name = std::move(AName);
        Info.Kind = pkObject;
        Info.Object = [AGetter](const TQLPersistent& AObject) -> TQLPersistent* {
            return (static_cast<const C&>(AObject).*AGetter)();
        };
        FProps.push_back(std::move(Info));
        return *this;
    }

    // An owned collection, stored as a list when it is not empty.
    template <class G>
    TQLClassBuilder& Collection(std::string AName, G AGetter)
    {
        TQLPropertyInfo Info;
        Info.Name = std::move(AName);
        Info.Kind = pkCollection;
        Info.Collection = [AGetter](const TQLPersistent& AObject) -> TQLCollection* {
            return (static_cast<const C&>(AObject).*AGetter)();
        };
        FProps.push_back(std::move(Info));
        return *this;
    }

    // Replaces the stored-when rule of the property declared last.
    template <class P>
    TQLClassBuilder& StoredWhen(P APredicate)
    {
        FProps.back().Stored = [APredicate](const TQLPersistent& AObject) {
            return (static_cast<const C&>(AObject).*APredicate)();
        };
        return *this;
    }

    // The range the setter of the property declared last keeps its values in.
    TQLClassBuilder& Limits(double ALow, double AHigh)
    {
        FProps.back().LowLimit = ALow;
        FProps.back().HighLimit = AHigh;
        return *this;
    }

    TQLClassInfo Build() { return TQLClassInfo(std::move(FName), FParent, std::move(FProps)); }

private:
    template <class T, class G, class S>
    static TQLPropertyInfo MakeValue(std::string AName, TQLPropertyKind AKind, G AGetter, S ASetter)
    {
        TQLPropertyInfo Info;
        Info.Name = std::move(AName);
        Info.Kind = AKind;
        Info.MinValue = detail::QLMinOf<T>();
        Info.MaxValue = detail::QLMaxOf<T>();
        if constexpr (std::is_enum_v<T>)
            if (AKind == pkEnum)
                Info.Enum = &TQLEnumTraits<T>::Info();
        Info.Get = [AGetter](const TQLPersistent& AObject) -> TQLValue {
            return detail::QLToValue<T>((static_cast<const C&>(AObject).*AGetter)());
        };
        if constexpr (!std::is_same_v<S, std::nullptr_t>) {
            Info.Set = [ASetter](TQLPersistent& AObject, const TQLValue& AValue) {
                (static_cast<C&>(AObject).*ASetter)(detail::QLFromValue<T>(AValue));
            };
        }
        return Info;
    }

    template <class T, class D>
    static std::function<TQLValue(const TQLPersistent&)> MakeDefault(D ADefault)
    {
        if constexpr (std::is_member_function_pointer_v<D>) {
            return [ADefault](const TQLPersistent& AObject) -> TQLValue {
                return detail::QLToValue<T>((static_cast<const C&>(AObject).*ADefault)());
            };
        } else {
            const TQLValue Value = detail::QLToValue<T>(static_cast<T>(ADefault));
            return [Value](const TQLPersistent&) { return Value; };
        }
    }

    std::string FName;
    const TQLClassInfo* FParent;
    std::vector<TQLPropertyInfo> FProps;
};

} // namespace qv
