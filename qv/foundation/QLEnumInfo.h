#pragma once
// Names of enumerations and flag sets, so that the stored form and the setup dialogs can
// show and read them by name.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qv {

struct TQLEnumInfo {
    std::string TypeName;
    // (value, name) pairs; for a flag set each value is one bit.
    std::vector<std::pair<int64_t, std::string>> Values;
    bool IsSet = false;

    const std::string* NameOf(int64_t AValue) const
    {
        for (const auto& [Value, Name] : Values)
            if (Value == AValue)
                return &Name;
        return nullptr;
    }
    std::optional<int64_t> ValueOf(const std::string& AName) const
    {
        for (const auto& [Value, Name] : Values)
            if (Name == AName)
                return Value;
        return std::nullopt;
    }
};

// Specialised for every enumeration that a published property uses (QL_DECLARE_ENUM).
template <class E>
struct TQLEnumTraits;

namespace detail {
inline TQLEnumInfo QLMakeEnumInfo(const char* ATypeName, std::initializer_list<const char*> ANames)
{
    TQLEnumInfo Info{ATypeName, {}, false};
    int64_t Value = 0;
    for (const char* Name : ANames)
        Info.Values.emplace_back(Value++, Name);
    return Info;
}
} // namespace detail

} // namespace qv

// Declares the names of an enumeration whose values run 0, 1, 2, ... in the order given.
// Use at namespace scope outside any namespace.
#define QL_DECLARE_ENUM(EnumType, ...)                                                                                 \
    template <>                                                                                                        \
    struct qv::TQLEnumTraits<EnumType> {                                                                               \
        static const qv::TQLEnumInfo& Info()                                                                           \
        {                                                                                                              \
            static const qv::TQLEnumInfo I = qv::detail::QLMakeEnumInfo(#EnumType, {__VA_ARGS__});                     \
            return I;                                                                                                  \
        }                                                                                                              \
    };
