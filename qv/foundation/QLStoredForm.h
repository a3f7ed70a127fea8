#pragma once
// The stored form of settings objects as a format-neutral tree. Saving writes every
// published property that differs from its default, every owned object that stores
// anything, and every collection that is not empty; loading puts absent properties back to
// their defaults, so that a round trip restores the object exactly. The Qt library turns
// the tree into JSON.

#include "qv/foundation/QLClassInfo.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qv {

class TQLPersistent;

struct TQLStoredNode {
    enum TKind : uint8_t { snNull, snBool, snInteger, snReal, snString, snNames, snObject, snList };

    TKind Kind = snNull;
    bool Bool = false;
    int64_t Integer = 0;
    double Real = 0.0;
    std::string String;
    std::vector<std::string> Names;                             // snNames: members of a set
    std::vector<std::pair<std::string, TQLStoredNode>> Members; // snObject, in order
    std::vector<TQLStoredNode> Items;                           // snList

    static TQLStoredNode Of(TKind AKind)
    {
        TQLStoredNode Node;
        Node.Kind = AKind;
        return Node;
    }
    static TQLStoredNode MakeObject() { return Of(snObject); }
    const TQLStoredNode* Find(const std::string& AName) const;
    void Add(std::string AName, TQLStoredNode ANode) { Members.emplace_back(std::move(AName), std::move(ANode)); }
    friend bool operator==(const TQLStoredNode&, const TQLStoredNode&) = default;
};

// A list of settings objects of several classes that an object holds beyond its published
// properties (a display's hosted elements). It is stored under its name as a list of
// objects, each starting with the member "Class", the name of the class to make on loading.
class IQLStoredList {
public:
    // One item of a load's result: an item that stays (Kept) or one made for it (Made).
    struct TSlot {
        TQLPersistent* Kept = nullptr;
        std::unique_ptr<TQLPersistent> Made;
    };

    virtual ~IQLStoredList() = default;
    virtual std::string GetStoredName() const = 0;
    // The items the stored form holds, in order.
    virtual std::vector<TQLPersistent*> GetStoredItems() const = 0;
    // The description of a class the list can make; null for any other name.
    virtual const TQLClassInfo* FindStoredClass(const std::string& AClass) const = 0;
    // A new item of a class that FindStoredClass knows, not yet in the list.
    virtual std::unique_ptr<TQLPersistent> MakeStoredItem(const std::string& AClass) const = 0;
    // The stored items become ASlots, in order; stored items not kept there are freed.
    virtual void ReplaceStoredItems(std::vector<TSlot> ASlots) = 0;
};

// Writes the published properties of AObject. Colours are stored as "#AARRGGBB" strings,
// enumerations by name, sets as lists of names.
TQLStoredNode QLSaveObject(const TQLPersistent& AObject);

// Reads a tree written by QLSaveObject into AObject, then runs Loaded on every object that
// took part, innermost first. The items of a stored list load in place when the item at
// their index has their class, and are made anew otherwise; the list changes only once
// the whole document went in. Unknown properties, wrong types and values out of range raise
// EQLPropertyError naming the path (ARootName.Prop.Sub[2].Name).
void QLLoadObject(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& ARootName = {});

} // namespace qv
