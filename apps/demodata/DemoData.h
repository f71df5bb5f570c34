#pragma once
// The demonstration data, laid out the same way by steplets-admin and by the desktop program's
// first start: both databases with their tables, then the demo templates, groups and contacts
// and the contacts' cards. Each writes what it did to `out` and raises a Failure when it cannot.
#include <QString>
#include <QTextStream>

namespace steplets::demo {

// Creates both databases, or the one that is missing or was left unfinished; never overwrites
// a database that holds tables.
void createDatabases(const QString& dir, QTextStream& out);
// Adds the demo templates, groups and contacts, and writes the contacts' cards to
// <dir>/vdir/contacts.
void seed(const QString& dir, QTextStream& out);

} // namespace steplets::demo
