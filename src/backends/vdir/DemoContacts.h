#pragma once
// The demo address book: a dozen plausible contacts plus the user's own card. The admin tool
// seeds tblContacts from demoContacts() and calls writeDemoContacts() so that each row's
// ContactEntryID names a real .vcf file in the contact collection.
#include <QList>
#include <QString>

namespace steplets::vdir {

struct DemoContact {
    QString entryId;        // "c-ada": file name (without .vcf) and UID of the card
    QString firstName;
    QString lastName;
    QString companyName;
    QString account;        // the host's account code, shown when contacts are chosen by account
    QString email;
    QString phone;          // business telephone
    QString street;         // business address
    QString city;
    QString state;
    QString postalCode;
    QString country;
    bool isUser = false;    // the user's own contact
    QString fullName() const { return firstName + QLatin1Char(' ') + lastName; }
};

// The user's own card first, then the others, in a stable order.
const QList<DemoContact>& demoContacts();
// The user's own card.
const DemoContact& demoUser();

// Writes one <entryId>.vcf per demo contact into collectionDir (created if missing), replacing
// files of the same name. Returns the number written; a write failure is a Failure naming the file.
int writeDemoContacts(const QString& collectionDir);

} // namespace steplets::vdir
