#include "qv/platform/qt/QLJsonForm.h"

#include "qv/foundation/QLPersistent.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonParseError>

#include <cmath>

namespace qv {

QJsonValue QLStoredNodeToJson(const TQLStoredNode& ANode)
{
    switch (ANode.Kind) {
    case TQLStoredNode::snNull: return QJsonValue();
    case TQLStoredNode::snBool: return ANode.Bool;
    case TQLStoredNode::snInteger: return static_cast<qint64>(ANode.Integer);
    case TQLStoredNode::snReal:
        // JSON has no NaN or infinity; they are written as strings and read back by name.
        if (std::isnan(ANode.Real))
            return QStringLiteral("NaN");
        if (std::isinf(ANode.Real))
            return ANode.Real > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");
        return ANode.Real;
    case TQLStoredNode::snString: return QString::fromStdString(ANode.String);
    case TQLStoredNode::snNames: {
        QJsonArray Array;
        for (const std::string& Name : ANode.Names)
            Array.append(QString::fromStdString(Name));
        return Array;
    }
    case TQLStoredNode::snObject: {
        QJsonObject Object;
        for (const auto& [Name, Child] : ANode.Members)
            Object.insert(QString::fromStdString(Name), QLStoredNodeToJson(Child));
        return Object;
    }
    case TQLStoredNode::snList: {
        QJsonArray Array;
        for (const TQLStoredNode& Item : ANode.Items)
            Array.append(QLStoredNodeToJson(Item));
        return Array;
    }
    }
    return QJsonValue();
}

TQLStoredNode QLJsonToStoredNode(const QJsonValue& AValue, const std::string& APath)
{
    TQLStoredNode Node;
    switch (AValue.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined: throw EQLPropertyError(APath, "null is not a property value");
    case QJsonValue::Bool:
        Node.Kind = TQLStoredNode::snBool;
        Node.Bool = AValue.toBool();
        break;
    case QJsonValue::Double: {
        // Whole numbers come back as integers, exactly, also those beyond a double's
        // 53 bits; toInteger gives its default for anything else.
        const double D = AValue.toDouble();
        const qint64 I = AValue.toInteger(0);
        if (I != 0 || D == 0.0) {
            Node.Kind = TQLStoredNode::snInteger;
            Node.Integer = I;
        } else {
            Node.Kind = TQLStoredNode::snReal;
            Node.Real = D;
        }
        break;
    }
    case QJsonValue::String:
        // "NaN", "Infinity" and "-Infinity" stay strings here; a real property reads them.
        Node.Kind = TQLStoredNode::snString;
        Node.String = AValue.toString().toStdString();
        break;
    case QJsonValue::Array: {
        const QJsonArray Array = AValue.toArray();
        bool AllStrings = !Array.isEmpty();
        for (const QJsonValue& V : Array)
            AllStrings = AllStrings && V.isString();
        if (AllStrings) { // a set: a list of names
            Node.Kind = TQLStoredNode::snNames;
            for (const QJsonValue& V : Array)
                Node.Names.push_back(V.toString().toStdString());
        } else if (Array.isEmpty()) { // an empty set or an empty list
            Node.Kind = TQLStoredNode::snNames;
        } else {
            Node.Kind = TQLStoredNode::snList;
            for (qsizetype I = 0; I < Array.size(); ++I)
                Node.Items.push_back(QLJsonToStoredNode(Array.at(I), APath + "[" + std::to_string(I) + "]"));
        }
        break;
    }
    case QJsonValue::Object: {
        Node.Kind = TQLStoredNode::snObject;
        const QJsonObject Object = AValue.toObject();
        for (auto It = Object.begin(); It != Object.end(); ++It) {
            const std::string Name = It.key().toStdString();
            Node.Add(Name, QLJsonToStoredNode(It.value(), APath.empty() ? Name : APath + "." + Name));
        }
        break;
    }
    }
    return Node;
}

QJsonDocument QLSaveToJsonDocument(const TQLPersistent& AObject)
{
    return QJsonDocument(QLStoredNodeToJson(QLSaveObject(AObject)).toObject());
}

QByteArray QLSaveToJson(const TQLPersistent& AObject, QJsonDocument::JsonFormat AFormat)
{
    return QLSaveToJsonDocument(AObject).toJson(AFormat);
}

void QLLoadFromJsonDocument(TQLPersistent& AObject, const QJsonDocument& ADocument)
{
    const std::string Root = AObject.GetClassInfo().GetName();
    if (!ADocument.isObject())
        throw EQLPropertyError(Root, "the document does not hold an object");
    QLLoadObject(AObject, QLJsonToStoredNode(ADocument.object(), {}), {});
}

void QLLoadFromJson(TQLPersistent& AObject, const QByteArray& AJson)
{
    QJsonParseError Error;
    const QJsonDocument Document = QJsonDocument::fromJson(AJson, &Error);
    if (Error.error != QJsonParseError::NoError)
        throw EQLPropertyError(AObject.GetClassInfo().GetName(), "malformed JSON at offset " +
                                                                     std::to_string(Error.offset) + ": " +
                                                                     Error.errorString().toStdString());
    QLLoadFromJsonDocument(AObject, Document);
}

} // namespace qv
