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

void LoadInto(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& APath,
              std::vector<TQLPersistent*>& ALoaded);

void LoadCollection(TQLCollection& ACollection, const TQLStoredNode* ANode, const std::string& APath,
                    std::vector<TQLPersistent*>& ALoaded)
{
    // An empty list may arrive as an empty list of names: formats cannot tell them apart.
    const bool EmptyNames = ANode && ANode->Kind == TQLStoredNode::snNames && ANode->Names.empty();
    if (ANode && ANode->Kind != TQLStoredNode::snList && !EmptyNames)
        Fail(APath, std::string("expected a list, found ") + KindText(ANode->Kind));
    ACollection.Clear();
    if (ANode) {
        for (size_t I = 0; I < ANode->Items.size(); ++I) {
            const std::string ItemPath = APath + "[" + std::to_string(I) + "]";
            const TQLStoredNode& ItemNode = ANode->Items[I];
            if (ItemNode.Kind != TQLStoredNode::snObject)
                Fail(ItemPath, std::string("expected an object, found ") + KindText(ItemNode.Kind));
            LoadInto(*ACollection.AddItem(), ItemNode, ItemPath, ALoaded);
        }
    }
    ALoaded.push_back(&ACollection);
}

void LoadInto(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& APath,
              std::vector<TQLPersistent*>& ALoaded)
{
    const TQLClassInfo& Info = AObject.GetClassInfo();
    auto Child = [&APath](const std::string& AName) { return APath.empty() ? AName : APath + "." + AName; };

    for (const auto& [Name, Node] : ANode.Members) {
        const TQLPropertyInfo* Prop = Info.FindProperty(Name);
        if (!Prop)
            Fail(Child(Name), "unknown property of " + Info.GetName());
        if (Prop->Kind == pkObject && Node.Kind != TQLStoredNode::snObject)
            Fail(Child(Name), std::string("expected an object, found ") + KindText(Node.Kind));
        if ((Prop->Kind != pkObject && Prop->Kind != pkCollection) && !Prop->Set)
            Fail(Child(Name), "read-only property");
    }

    static const TQLStoredNode Empty = TQLStoredNode::MakeObject();
    for (const TQLPropertyInfo* Prop : Info.GetProperties()) {
        const TQLStoredNode* Node = ANode.Find(Prop->Name);
        const std::string Path = Child(Prop->Name);
        switch (Prop->Kind) {
        case pkObject:
            if (TQLPersistent* Owned = Prop->Object(AObject))
                LoadInto(*Owned, Node ? *Node : Empty, Path, ALoaded);
            break;
        case pkCollection:
            if (TQLCollection* Owned = Prop->Collection(AObject))
                LoadCollection(*Owned, Node, Path, ALoaded);
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
    ALoaded.push_back(&AObject);
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
                Owned && Owned->GetCount() > 0 && (!Prop->Stored || Prop->Stored(AObject))) {
                TQLStoredNode List = TQLStoredNode::Of(TQLStoredNode::snList);
                for (int32_t I = 0; I < Owned->GetCount(); ++I)
                    List.Items.push_back(QLSaveObject(*Owned->GetBaseItem(I)));
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
    return Result;
}

void QLLoadObject(TQLPersistent& AObject, const TQLStoredNode& ANode, const std::string& ARootName)
{
    if (ANode.Kind != TQLStoredNode::snObject)
        Fail(ARootName.empty() ? AObject.GetClassInfo().GetName() : ARootName,
             std::string("expected an object, found ") + KindText(ANode.Kind));
    std::vector<TQLPersistent*> Loaded;
    {
        auto Guard = AObject.GetLock()->AcquireWrite();
        // A document that fails halfway must not leave the object half loaded: put the
        // settings it had back before passing the error on.
        const TQLStoredNode Before = QLSaveObject(AObject);
        try {
            LoadInto(AObject, ANode, ARootName, Loaded);
        } catch (...) {
            std::vector<TQLPersistent*> Ignored;
            LoadInto(AObject, Before, ARootName, Ignored);
            throw;
        }
    }
    for (TQLPersistent* Object : Loaded)
        Object->Loaded();
}

} // namespace qv
