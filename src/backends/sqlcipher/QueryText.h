#pragma once
// The query texts the system uses, read into their parts: a SELECT over one table with an
// optional WHERE and ORDER BY, filter criteria of the form "Column = value", and the statements
// of commands. Jet's True and False become the stored -1 and 0.
#include "platform/runtime/Value.h"
#include <QString>
#include <QStringList>
#include <optional>

namespace steplets::sqlcipher {

struct SelectQuery {
    QString table;
    QStringList columns;        // empty for *
    QString where;              // engine form, without the keyword
    QStringList orderBy;        // terms as written: "Name" or "Name DESC"
};

// A SELECT text (or a bare table name with options 2); anything else fails naming the query.
SelectQuery parseSelect(const QString& source, int options);

// Jet's boolean words outside quoted text replaced by the stored numbers.
QString toEngineSql(const QString& jetSql);

struct Criterion {
    QString column;
    Value value;                // Null for "Column = Null"
};
// "Col = 12", "Col = 'text'", "Col = \"text\"", "Col = True", "Col = #2026-03-16#", "Col = Null".
std::optional<Criterion> parseCriterion(const QString& criteria);

// The table an INSERT, UPDATE or DELETE writes, and whether it removes rows; empty for others.
struct WrittenTable {
    QString table;
    bool deletion = false;
};
WrittenTable writtenTable(const QString& sql);

} // namespace steplets::sqlcipher
