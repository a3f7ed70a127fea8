#pragma once
// The registry of published properties. Each settings class describes its published
// properties once (name, type, default, accessors, stored-when rule, owned objects and
// collections); the stored form, Assign and the setup dialogs all read that description.

#include "qv/foundation/QLEnumInfo.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace qv {

class TQLPersistent;
class TQLCollection;

enum TQLPropertyKind : uint8_t {
    pkBool,
    pkInteger,  // signed, up to 64 bits
    pkUnsigned, // unsigned, up to 32 bits
    pkReal,
    pkString,
    pkColor, // 0xAARRGGBB
    pkEnum,
    pkSet,
    pkObject,    // an owned settings object, stored nested
    pkCollection // stored as a list of items, only when not empty
};

// A property value as the registry moves it: integers, enumerations, sets and colours travel
// as int64_t.
using TQLValue = std::variant<std::monostate, bool, int64_t, double, std::string>;

// Raised for everything that goes wrong while reading or writing published properties:
// unknown names, wrong types, values out of range, malformed documents. The message starts
// with the path of the property.
class EQLPropertyError : public std::runtime_error {
public:
    EQLPropertyError(const std::string& APath, const std::string& AMessage)
        : std::runtime_error(APath + ": " + AMessage), FPath(APath)
    {}
    const std::string& GetPath() const { return FPath; }

private:
    std::string FPath;
};

struct TQLPropertyInfo {
    std::string Name;
    TQLPropertyKind Kind = pkInteger;
    const TQLEnumInfo* Enum = nullptr; // pkEnum, pkSet
    int64_t MinValue = 0;              // integer range of the C++ type
    int64_t MaxValue = 0;
    bool Defined = false; // a defined property ("AxisIndex_"): stored, not shown
    // The values a setter keeps (it clamps others into them); the setup dialogs refuse
    // values outside them. Unbounded unless the class names limits.
    double LowLimit = -std::numeric_limits<double>::infinity();
    double HighLimit = std::numeric_limits<double>::infinity();

    std::function<TQLValue(const TQLPersistent&)> Get;
    std::function<void(TQLPersistent&, const TQLValue&)> Set; // empty: read-only
    // Empty: no default, always stored.
    std::function<TQLValue(const TQLPersistent&)> Default;
    // Overrides the default comparison when set.
    std::function<bool(const TQLPersistent&)> Stored;
    std::function<TQLPersistent*(const TQLPersistent&)> Object;     // pkObject
    std::function<TQLCollection*(const TQLPersistent&)> Collection; // pkCollection

    bool IsStored(const TQLPersistent& AObject) const;
};

class TQLClassInfo {
public:
    TQLClassInfo(std::string AName, const TQLClassInfo* AParent, std::vector<TQLPropertyInfo> AOwn);

    const std::string& GetName() const { return FName; }
    const TQLClassInfo* GetParent() const { return FParent; }
    // Every published property, the ancestors' first; a class may redeclare an inherited
    // name, which then takes the ancestor's place.
    const std::vector<const TQLPropertyInfo*>& GetProperties() const { return FAll; }
    const TQLPropertyInfo* FindProperty(const std::string& AName) const;
    bool InheritsFrom(const TQLClassInfo& AOther) const;

private:
    std::string FName;
    const TQLClassInfo* FParent;
    std::vector<TQLPropertyInfo> FOwn;
    std::vector<const TQLPropertyInfo*> FAll;
};

} // namespace qv
