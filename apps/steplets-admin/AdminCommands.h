#pragma once
// The commands of steplets-admin, each on the databases in one directory. They write their
// results to `out` and raise a Failure for anything that goes wrong; the exit codes are main's.
#include <QString>
#include <QTextStream>

namespace steplets::admin {

// Creates both databases, or the one that is missing or was left unfinished; never overwrites
// a database that holds tables.
void init(const QString& dir, QTextStream& out);
// Adds the demo templates, groups and contacts, and writes the contacts' cards to
// <dir>/vdir/contacts.
void seedDemo(const QString& dir, QTextStream& out);
// Every table of both databases as JSON.
void dump(const QString& dir, QTextStream& out);
// Integrity and schema check, then each task that tblTasks records against the task folders of
// <dir>/vdir: missing, or without its time-card properties. Returns false, after naming each
// problem, when anything is wrong.
bool check(const QString& dir, QTextStream& out);

} // namespace steplets::admin
