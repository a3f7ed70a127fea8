#include "qv/foundation/QLStoredForm.h"

#include "qv/foundation/QLCollection.h"
#include "qv/foundation/QLPersistent.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <string>

namespace qv {

const TQLStoredNode* TQLStoredNode::Find(const std::string& AName) const
{
    for (const auto& [Name, Node] : Members)
        if (Name == AName)
            return &Node;
    return nullptr;
}

namespace {

std::string ColorText(int64_t AValue)
{
    char Buf[16];
    std::snprintf(Buf, sizeof Buf, "#%08X", static_cast<unsigned>(AValue & 0xFFFFFFFFu));
    return Buf;
}

TQLStoredNode SaveValue(const TQLPropertyInfo& AProp, const TQLValue& AValue)
{
    TQLStoredNode Node;
    switch (AProp.Kind) {
    case pkBool:
        Node.Kind = TQLStoredNode::snBool;
        Node.Bool = std::get<bool>(AValue);
        break;
    case pkInteger:
    case pkUnsigned:
        Node.Kind = TQLStoredNode::snInteger;
        Node.Integer = std::get<int64_t>(AValue);
        break;
    case pkReal:
        Node.Kind = TQLStoredNode::snReal;
        Node.Real = std::get<double>(AValue);
        break;
    case pkString:
        Node.Kind = TQLStoredNode::snString;
        Node.String = std::get<std::string>(AValue);
        break;
    case pkColor:
        Node.Kind = TQLStoredNode::snString;
        Node.String = ColorText(std::get<int64_t>(AValue));
        break;
    case pkEnum: {
        const int64_t Value = std::get<int64_t>(AValue);
        if (const std::string* Name = AProp.Enum->NameOf(Value)) {
            Node.Kind = TQLStoredNode::snString;
            Node.String = *Name;
        } else { // a value the enumeration does not name is kept as a number
            Node.Kind = TQLStoredNode::snInteger;
            Node.Integer = Value;
        }
        break;
    }
    case pkSet: {
        Node.Kind = TQLStoredNode::snNames;
        int64_t Rest = std::get<int64_t>(AValue);
        for (const auto& [Bit, Name] : AProp.Enum->Values)
            if ((Rest & Bit) == Bit && Bit != 0) {
                Node.Names.push_back(Name);
                Rest &= ~Bit;
            }
        if (Rest != 0) { // bits that have no name: kept as a number, like unnamed enum values
            Node = TQLStoredNode::Of(TQLStoredNode::snInteger);
            Node.Integer = std::get<int64_t>(AValue);
        }
        break;
    }
    case pkObject:
    case pkCollection: break;
    }
    return Node;
}

[[noreturn]] void Fail(const std::string& APath, const std::string& AMessage)
{
    throw EQLPropertyError(APath, AMessage);
}

const char* KindText(TQLStoredNode::TKind AKind)
{
    switch (AKind) {
    case TQLStoredNode::snNull: return "null";
    case TQLStoredNode::snBool: return "a boolean";
    case TQLStoredNode::snInteger: return "an integer";
    case TQLStoredNode::snReal: return "a number";
    case TQLStoredNode::snString: return "a string";
    case TQLStoredNode::snNames: return "a list of names";
    case TQLStoredNode::snObject: return "an object";
    case TQLStoredNode::snList: return "a list";
    }
    return "?";
}

// The kind and the value of a node, for messages about a bad value.
std::string Describe(const TQLStoredNode& ANode)
{
    switch (ANode.Kind) {
    case TQLStoredNode::snBool: return ANode.Bool ? "the boolean true" : "the boolean false";
    case TQLStoredNode::snInteger: return "the integer " + std::to_string(ANode.Integer);
    case TQLStoredNode::snReal: {
        char Buf[32];
        std::snprintf(Buf, sizeof Buf, "%.17g", ANode.Real);
        return std::string("the number ") + Buf;
    }
    case TQLStoredNode::snString: return "the string \"" + ANode.String + "\"";
    case TQLStoredNode::snNames: {
        std::string Text = "the list [";
        for (size_t I = 0; I < ANode.Names.size(); ++I)
            Text += (I ? ", \"" : "\"") + ANode.Names[I] + "\"";
        return Text + "]";
    }
    default: return KindText(ANode.Kind);
    }
}

int64_t ReadInteger(const std::string& APath, const TQLPropertyInfo& AProp, const TQLStoredNode& ANode)
{
    int64_t Value = 0;
    if (ANode.Kind == TQLStoredNode::snInteger)
        Value = ANode.Integer;
    else if (ANode.Kind == TQLStoredNode::snReal && std::isfinite(ANode.Real) && std::trunc(ANode.Real) == ANode.Real &&
             std::fabs(ANode.Real) < 9.2e18)
        Value = static_cast<int64_t>(ANode.Real);
    else
        Fail(APath, "expected an integer, found " + Describe(ANode));
    if (Value < AProp.MinValue || Value > AProp.MaxValue)
        Fail(APath, "value " + std::to_string(Value) + " out of range " + std::to_string(AProp.MinValue) + ".." +
                        std::to_string(AProp.MaxValue));
    return Value;
}

TQLValue ReadValue(const std::string& APath, const TQLPropertyInfo& AProp, const TQLStoredNode& ANode)
{
    switch (AProp.Kind) {
    case pkBool:
        if (ANode.Kind != TQLStoredNode::snBool)
            Fail(APath, "expected a boolean, found " + Describe(ANode));
        return ANode.Bool;
    case pkInteger:
    case pkUnsigned: return ReadInteger(APath, AProp, ANode);
    case pkReal:
        if (ANode.Kind == TQLStoredNode::snReal)
            return ANode.Real;
        if (ANode.Kind == TQLStoredNode::snInteger)
            return static_cast<double>(ANode.Integer);
        // Formats without NaN and infinity write them by name.
        if (ANode.Kind == TQLStoredNode::snString) {
            if (ANode.String == "NaN")
                return std::numeric_limits<double>::quiet_NaN();
            if (ANode.String == "Infinity")
                return std::numeric_limits<double>::infinity();
            if (ANode.String == "-Infinity")
                return -std::numeric_limits<double>::infinity();
        }
        Fail(APath, "expected a number, found " + Describe(ANode));
    case pkString:
        if (ANode.Kind != TQLStoredNode::snString)
            Fail(APath, "expected a string, found " + Describe(ANode));
        return ANode.String;
    case pkColor: {
        if (ANode.Kind == TQLStoredNode::snInteger)
            return ReadInteger(APath, AProp, ANode);
        const std::string& S = ANode.String;
        if (ANode.Kind != TQLStoredNode::snString || S.size() != 9 || S[0] != '#' ||
            S.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos)
            Fail(APath, "expected a colour as \"#AARRGGBB\", found " + Describe(ANode));
        const int64_t Value = static_cast<int64_t>(std::stoul(S.substr(1), nullptr, 16));
        if (Value > AProp.MaxValue)
            Fail(APath, "colour " + S + " out of range");
        return Value;
    }
    case pkEnum: {
        if (ANode.Kind == TQLStoredNode::snInteger)
            return ReadInteger(APath, AProp, ANode);
        if (ANode.Kind != TQLStoredNode::snString)
            Fail(APath, "expected a name of " + AProp.Enum->TypeName + ", found " + Describe(ANode));
        if (auto Value = AProp.Enum->ValueOf(ANode.String))
            return *Value;
        Fail(APath, "\"" + ANode.String + "\" is not a value of " + AProp.Enum->TypeName);
    }
    case pkSet: {
        if (ANode.Kind == TQLStoredNode::snInteger)
            return ReadInteger(APath, AProp, ANode);
        if (ANode.Kind != TQLStoredNode::snNames)
            Fail(APath, "expected a list of names, found " + Describe(ANode));
        int64_t Value = 0;
        for (const std::string& Name : ANode.Names) {
            auto Bit = AProp.Enum->ValueOf(Name);
            if (!Bit)
                Fail(APath, "\"" + Name + "\" is not a member of " + AProp.Enum->TypeName);
            Value |= *Bit;
        }
        return Value;
    }
    case pkObject:
    case pkCollection: break;
    }
    Fail(APath, "not a value property");
}

// A collection's list node: absent, a list, or an empty list of names (formats cannot tell
// that from an empty list).
const std::vector<TQLStoredNode>* ListItems(const TQLStoredNode* ANode, const std::string& APath)
{
    static const std::vector<TQLStoredNode> None;
    if (!ANode)
        return nullptr;
    if (ANode->Kind == TQLStoredNode::snNames && ANode->Names.empty())
        return &None;
    if (ANode->Kind != TQLStoredNode::snList)
        Fail(APath, std::string("expected a list, found ") + KindText(ANode->Kind));
    for (size_t I = 0; I < ANode->Items.size(); ++I)
        if (ANode->Items[I].Kind != TQLStoredNode::snObject)
            Fail(APath + "[" + std::to_string(I) + "]",
                 std::string("expected an object, found ") + KindText(ANode->Items[I].Kind));
    return &ANode->Items;
}

std::string ChildPath(const std::string& APath, const std::string& AName)
{
    return APath.empty() ? AName : APath + "." + AName;
}

// The class that an item of a stored list names, and in ARest the item without that member.
const TQLClassInfo& StoredClass(const IQLStoredList& AList, const TQLStoredNode& AItem, const std::string& APath,
                                TQLStoredNode& ARest)
{
    const TQLStoredNode* Class = AItem.Find("Class");
    if (!Class || Class->Kind != TQLStoredNode::snString)
        Fail(APath + ".Class", "expected the name of a class, found " + (Class ? Describe(*Class) : "nothing"));
    const TQLClassInfo* Info = AList.FindStoredClass(Class->String);
    if (!Info)
        Fail(APath + ".Class", "\"" + Class->String + "\" is not a class that " + AList.GetStoredName() + " can hold");
    ARest = TQLStoredNode::MakeObject();
    for (const auto& [Name, Node] : AItem.Members)
        if (Name != "Class")
            ARest.Add(Name, Node);
    return *Info;
}

// The item of a stored list that an item of the document loads into in place: the one at its
// index when it has the document's class.
TQLPersistent* ItemInPlace(const std::vector<TQLPersistent*>& AItems, size_t AIndex, const TQLClassInfo& AInfo)
{
    return AIndex < AItems.size() && &AItems[AIndex]->GetClassInfo() == &AInfo ? AItems[AIndex] : nullptr;
}

void CheckInto(const TQLPersistent* AObject, const TQLClassInfo& AInfo, const TQLStoredNode& ANode,
               const std::string& APath);

void CheckList(const IQLStoredList& AList, const TQLStoredNode& ANode, const std::string& APath)
{
    const std::vector<TQLStoredNode>& Items = *ListItems(&ANode, APath);
    const std::vector<TQLPersistent*> Existing = AList.GetStoredItems();
    for (size_t I = 0; I < Items.size(); ++I) {
        const std::string Path = APath + "[" + std::to_string(I) + "]";
        TQLStoredNode Rest;
        const TQLClassInfo& Info = StoredClass(AList, Items[I], Path, Rest);
        CheckInto(ItemInPlace(Existing, I, Info), Info, Rest, Path);
    }
}

// The first pass of a load: reads the whole document against the objects it will go into
// (names, kinds, values and their ranges) and changes nothing. An item the document adds is
// checked against an existing item of its collection when there is one.
void CheckInto(const TQLPersistent* AObject, const TQLClassInfo& AInfo, const TQLStoredNode& ANode,
               const std::string& APath)
{
    const IQLStoredList* List = AObject ? AObject->GetStoredList() : nullptr;
    for (const auto& [Name, Node] : ANode.Members) {
        const std::string Path = ChildPath(APath, Name);
        if (List && Name == List->GetStoredName()) {
            CheckList(*List, Node, Path);
            continue;
        }
        const TQLPropertyInfo* Prop = AInfo.FindProperty(Name);
        if (!Prop)
            Fail(Path, "unknown property of " + AInfo.GetName());
        switch (Prop->Kind) {
        case pkObject:
            if (Node.Kind != TQLStoredNode::snObject)
                Fail(Path, std::string("expected an object, found ") + KindText(Node.Kind));
            if (const TQLPersistent* Owned = AObject ? Prop->Object(*AObject) : nullptr)
                CheckInto(Owned, Owned->GetClassInfo(), Node, Path);
            break;
        case pkCollection: {
            const std::vector<TQLStoredNode>& Items = *ListItems(&Node, Path);
            const TQLCollection* Owned = AObject ? Prop->Collection(*AObject) : nullptr;
            if (!Owned)
                break;
            for (size_t I = 0; I < Items.size(); ++I) {
                const int32_t Count = Owned->GetCount();
                const TQLPersistent* Like = Count == 0 ? nullptr : Owned->GetBaseItem(std::min(int32_t(I), Count - 1));
                CheckInto(Like, Like ? Like->GetClassInfo() : Owned->GetItemClassInfo(), Items[I],
                          Path + "[" + std::to_string(I) + "]");
            }
            break;
        }
        default:
            if (!Prop->Set)
                Fail(Path, "read-only property");
            ReadValue(Path, *Prop, Node);
            break;
        }
    }
}

// What a load leaves to its end: collections that keep fewer items than they had lose the
// rest only once the whole document went in, so that a failure can still restore them.
// Stored lists take their new items at the end as well.
struct TLoadState {
    std::vector<TQLPersistent*> Loaded;
    std::vector<std::pair<TQLCollection*, int32_t>> Trims;
    std::vector<std::pair<IQLStoredList*, std::vector<IQLStoredList::TSlot>>> Lists;

    void Finish()
    {
        for (auto It = Trims.rbegin(); It != Trims.rend(); ++It)
            while (It->first->GetCount() > It->second)
                It->first->Delete(It->first->GetCount() - 1);
        Trims.clear();
        for (auto It = Lists.rbegin(); It != Lists.rend(); ++It)
            It->first->ReplaceStoredItems(std::move(It->second));
        Lists.clear();
    }
};

void LoadInto(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& APath, TLoadState& AState);

// Items load in place: an item that is there before and after keeps its identity (and what it
// holds beyond its settings); the document's further items are added; the collection's own
// item count stands for an absent list.
void LoadCollection(TQLCollection& ACollection, const TQLStoredNode* ANode, const std::string& APath,
                    TLoadState& AState)
{
    const std::vector<TQLStoredNode>* Items = ListItems(ANode, APath);
    static const TQLStoredNode Empty = TQLStoredNode::MakeObject();
    const int32_t Want = Items ? int32_t(Items->size()) : ACollection.GetDefaultCount();
    for (int32_t I = 0; I < Want; ++I) {
        TQLCollectionItem* Item = I < ACollection.GetCount() ? ACollection.GetBaseItem(I) : ACollection.AddItem();
        LoadInto(*Item, Items ? (*Items)[size_t(I)] : Empty, APath + "[" + std::to_string(I) + "]", AState);
    }
    if (ACollection.GetCount() > Want)
        AState.Trims.emplace_back(&ACollection, Want);
    AState.Loaded.push_back(&ACollection);
}

// An absent list stands for an empty one, since only a list with items is stored. Items made
// anew load before they join the list, so that a failure leaves the list as it was.
void LoadList(IQLStoredList& AList, const TQLStoredNode* ANode, const std::string& APath, TLoadState& AState)
{
    std::vector<IQLStoredList::TSlot> Slots;
    if (ANode) {
        const std::vector<TQLStoredNode>& Items = *ListItems(ANode, APath);
        const std::vector<TQLPersistent*> Existing = AList.GetStoredItems();
        for (size_t I = 0; I < Items.size(); ++I) {
            const std::string Path = APath + "[" + std::to_string(I) + "]";
            TQLStoredNode Rest;
            const TQLClassInfo& Info = StoredClass(AList, Items[I], Path, Rest);
            IQLStoredList::TSlot Slot;
            Slot.Kept = ItemInPlace(Existing, I, Info);
            if (!Slot.Kept)
                Slot.Made = AList.MakeStoredItem(Info.GetName());
            LoadInto(Slot.Kept ? *Slot.Kept : *Slot.Made, Rest, Path, AState);
            Slots.push_back(std::move(Slot));
        }
    }
    AState.Lists.emplace_back(&AList, std::move(Slots));
}

void LoadInto(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& APath, TLoadState& AState)
{
    const TQLClassInfo& Info = AObject.GetClassInfo();
    IQLStoredList* List = AObject.GetStoredList();
    // The names and kinds of this level; values are read as they are set. (The first pass
    // checked all of it already, but for items that had nothing to be checked against.)
    for (const auto& [Name, Node] : ANode.Members) {
        if (List && Name == List->GetStoredName())
            continue;
        const TQLPropertyInfo* Prop = Info.FindProperty(Name);
        if (!Prop)
            Fail(ChildPath(APath, Name), "unknown property of " + Info.GetName());
        if (Prop->Kind == pkObject && Node.Kind != TQLStoredNode::snObject)
            Fail(ChildPath(APath, Name), std::string("expected an object, found ") + KindText(Node.Kind));
        if (Prop->Kind != pkObject && Prop->Kind != pkCollection && !Prop->Set)
            Fail(ChildPath(APath, Name), "read-only property");
    }

    static const TQLStoredNode Empty = TQLStoredNode::MakeObject();
    for (const TQLPropertyInfo* Prop : Info.GetProperties()) {
        const TQLStoredNode* Node = ANode.Find(Prop->Name);
        const std::string Path = ChildPath(APath, Prop->Name);
        switch (Prop->Kind) {
        case pkObject:
            if (TQLPersistent* Owned = Prop->Object(AObject))
                LoadInto(*Owned, Node ? *Node : Empty, Path, AState);
            break;
        case pkCollection:
            if (TQLCollection* Owned = Prop->Collection(AObject))
                LoadCollection(*Owned, Node, Path, AState);
            break;
        default:
            if (!Prop->Set)
                break;
            try {
                if (Node)
                    Prop->Set(AObject, ReadValue(Path, *Prop, *Node));
                else if (Prop->Default)
                    Prop->Set(AObject, Prop->Default(AObject));
            } catch (const EQLPropertyError&) {
                throw;
            } catch (const std::exception& E) { // a setter refused the value
                Fail(Path, E.what());
            }
            break;
        }
    }
    if (List)
        LoadList(*List, ANode.Find(List->GetStoredName()), ChildPath(APath, List->GetStoredName()), AState);
    AState.Loaded.push_back(&AObject);
}

} // namespace

TQLStoredNode QLSaveObject(const TQLPersistent& AObject)
{
    TQLStoredNode Result = TQLStoredNode::MakeObject();
    for (const TQLPropertyInfo* Prop : AObject.GetClassInfo().GetProperties()) {
        switch (Prop->Kind) {
        case pkObject:
            if (const TQLPersistent* Owned = Prop->Object(AObject)) {
                TQLStoredNode Node = QLSaveObject(*Owned);
                if (!Node.Members.empty() && (!Prop->Stored || Prop->Stored(AObject)))
                    Result.Add(Prop->Name, std::move(Node));
            }
            break;
        case pkCollection:
            if (const TQLCollection* Owned = Prop->Collection(AObject);
                Owned && (!Prop->Stored || Prop->Stored(AObject))) {
                // Stored unless it holds just its default number of items with nothing of
                // their own: loading an absent list gives exactly that.
                TQLStoredNode List = TQLStoredNode::Of(TQLStoredNode::snList);
                bool Own = Owned->GetCount() != Owned->GetDefaultCount();
                for (int32_t I = 0; I < Owned->GetCount(); ++I) {
                    List.Items.push_back(QLSaveObject(*Owned->GetBaseItem(I)));
                    Own = Own || !List.Items.back().Members.empty();
                }
                if (Own)
                    Result.Add(Prop->Name, std::move(List));
            }
            break;
        default:
            // A read-only property could not be loaded back: it is not stored.
            if (Prop->Set && Prop->IsStored(AObject))
                Result.Add(Prop->Name, SaveValue(*Prop, Prop->Get(AObject)));
            break;
        }
    }
    if (const IQLStoredList* List = AObject.GetStoredList()) {
        TQLStoredNode Items = TQLStoredNode::Of(TQLStoredNode::snList);
        for (const TQLPersistent* Item : List->GetStoredItems()) {
            TQLStoredNode Node = TQLStoredNode::MakeObject();
            TQLStoredNode Class = TQLStoredNode::Of(TQLStoredNode::snString);
            Class.String = Item->GetClassInfo().GetName();
            Node.Add("Class", std::move(Class));
            for (auto& Member : QLSaveObject(*Item).Members)
                Node.Members.push_back(std::move(Member));
            Items.Items.push_back(std::move(Node));
        }
        if (!Items.Items.empty())
            Result.Add(List->GetStoredName(), std::move(Items));
    }
    return Result;
}

void QLLoadObject(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& ARootName)
{
    if (ANode.Kind != TQLStoredNode::snObject)
        Fail(ARootName.empty() ? AObject.GetClassInfo().GetName() : ARootName,
             std::string("expected an object, found ") + KindText(ANode.Kind));
    TLoadState State;
    {
        auto Guard = AObject.GetLock()->AcquireWrite();
        // All or nothing: the whole document is read first and a bad one changes nothing; a
        // value that a setter refuses halfway puts the settings back in place, with every
        // item that was there still the same object.
        CheckInto(&AObject, AObject.GetClassInfo(), ANode, ARootName);
        const TQLStoredNode Before = QLSaveObject(AObject);
        try {
            LoadInto(AObject, ANode, ARootName, State);
        } catch (...) {
            TLoadState Restore;
            LoadInto(AObject, Before, ARootName, Restore);
            Restore.Finish();
            throw;
        }
        State.Finish();
    }
    for (TQLPersistent* Object : State.Loaded)
        Object->Loaded();
}

} // namespace qv
