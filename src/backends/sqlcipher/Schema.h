#pragma once
// The two databases of the component: their tables and column orders, their creation, and a
// check that names what is wrong with them. Used by the admin tool, the scenario runner and the
// desktop program's first start.
#include <QList>
#include <QString>
#include <QStringList>

namespace steplets::sqlcipher {

struct ColumnDef {
    QString name;
    QString type;          // declared type: INTEGER (the key), INT32, INT16, BOOLINT, DATETEXT, TEXT
    QString extra;         // PRIMARY KEY ..., DEFAULT ...
};

struct TableDef {
    QString name;
    QList<ColumnDef> columns;
};

enum class Db { Local, Link };

const QList<TableDef>& tablesOf(Db db);
QString fileOf(Db db, const QString& dir);
QString connectionStringOf(Db db, const QString& dir);

// Creates the encrypted databases with all their tables in dir (made 0700 if missing), each
// under a temporary name that is renamed into place when it is complete. A database that holds
// tables is never overwritten; one that an interrupted creation left empty or without tables is
// replaced. Both in use, or a file that is no database of ours, is a Failure naming it, and
// nothing is made. Returns the files made, in words ("/d/OVLink.db (repaired)").
QStringList createDatabases(const QString& dir);

// Problems found in both databases, one readable line each; empty when all is well. A file that
// cannot be opened at all is a Failure.
QStringList checkDatabases(const QString& dir);

// The directory given, else STEPLETS_HOME, else the per-user data directory.
QString dataDirectory(const QString& given = {});

} // namespace steplets::sqlcipher
