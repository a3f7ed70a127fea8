#pragma once
// The stored form of settings as JSON: any object that publishes its properties saves to a
// JSON document and loads back from one. Errors (malformed text, unknown properties, wrong
// types) raise qv::EQLPropertyError whose message starts with the property path.

#include "qv/foundation/QLStoredForm.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace qv {

class TQLPersistent;

QJsonValue QLStoredNodeToJson(const TQLStoredNode& ANode);
// APath names the value in error messages.
TQLStoredNode QLJsonToStoredNode(const QJsonValue& AValue, const std::string& APath);

QJsonDocument QLSaveToJsonDocument(const TQLPersistent& AObject);
QByteArray QLSaveToJson(const TQLPersistent& AObject, QJsonDocument::JsonFormat AFormat = QJsonDocument::Indented);

void QLLoadFromJsonDocument(TQLPersistent& AObject, const QJsonDocument& ADocument);
void QLLoadFromJson(TQLPersistent& AObject, const QByteArray& AJson);

} // namespace qv
