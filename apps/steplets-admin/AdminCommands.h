#pragma once
// The commands of steplets-admin that read the databases in one directory (the demo data's
// library lays them out). They write their results to `out` and raise a Failure for anything
// that goes wrong; the exit codes are main's.
#include <QString>
#include <QTextStream>

namespace steplets::admin {

// Every table of both databases as JSON.
void dump(const QString& dir, QTextStream& out);
// Integrity and schema check, then each task that tblTasks records against the task folders of
// <dir>/vdir: missing, or without its time-card properties. Returns false, after naming each
// problem, when anything is wrong.
bool check(const QString& dir, QTextStream& out);

} // namespace steplets::admin
