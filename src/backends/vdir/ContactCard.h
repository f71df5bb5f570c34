#pragma once
// A contact as a vCard: the object model's contact properties by name, mapped onto standard
// vCard properties where they exist (N, FN, ORG, TEL, ADR, ...) and X- properties elsewhere.
// Names such as FileAs or FullName are computed from the name parts when the card does not hold
// them.
#include "VCard.h"
#include "platform/runtime/Value.h"
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

namespace steplets::vdir {

struct ContactData {
    QString uid;
    QMap<QString, Value> stored;           // by canonical property name; Birthday a Date, Importance a number
    QList<VCardLine> foreign;              // lines this mapping does not know, kept as they stood
};

// The 88 contact property names that the fill-ins may read, in their order.
const QStringList& contactFillInProperties();

// The canonical spelling of a contact property, or an empty text if the contact has none.
QString canonicalContactProperty(const QString& name);
// Whether the property is computed from others and cannot be written.
bool isComputedContactProperty(const QString& canonical);

// The property's value: stored, else computed, else the empty text (Birthday: Null; Importance 1).
Value contactValue(const ContactData& c, const QString& canonical);
// Stores a value already converted to the property's type; the empty text or no-date removes it.
void setContactValue(ContactData& c, const QString& canonical, const Value& value);
// Birthday is a date, Importance a number, everything else text.
enum class ContactType { Text, Date, Number };
ContactType contactPropertyType(const QString& canonical);

std::optional<ContactData> readContactCard(const QByteArray& vcf, QString* error);
QByteArray writeContactCard(const ContactData& c);

} // namespace steplets::vdir
