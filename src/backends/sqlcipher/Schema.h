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

// Creates both encrypted databases with all tables in dir (created if missing). An existing
// file is never overwritten: that is a Failure naming it, and nothing is created.
void createDatabases(const QString& dir);

// Problems found in both databases, one readable line each; empty when all is well. A file that
// cannot be opened at all is a Failure.
QStringList checkDatabases(const QString& dir);

// The directory given, else STEPLETS_HOME, else the per-user data directory.
QString dataDirectory(const QString& given = {});

} // namespace steplets::sqlcipher
