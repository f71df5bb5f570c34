#pragma once
// The rows of both databases as JSON, the shape of the `store` member of a scenario and its
// transcript: {"local": {TABLE: [ROW...]}, "link": {...}}, each ROW by column name, booleans as
// true/false, dates as "YYYY-MM-DDTHH:MM:SS", Null as null. And a small demo data set.
#include <QJsonObject>
#include <QList>
#include <QString>

namespace steplets::sqlcipher {

// Every table of both databases, rows in key order (insertion order where there is no ID).
QJsonObject dumpStore(const QString& dir);

// Adds the rows given, in order, to the existing databases. An `ID` given is kept, else the
// store assigns it. An unknown table or column, or a value that does not suit its column, is a
// Failure naming it.
void loadStore(const QString& dir, const QJsonObject& store);

struct DemoContactRow {
    QString entryId;
    QString name;
    QString account;
};

// Fills the existing, empty databases with templates of each date type, two groups and the
// contacts given (ContactID from 1, Active). A database that already holds templates, groups or
// contacts is a Failure, and nothing is added.
void seedDemo(const QString& dir, const QList<DemoContactRow>& contacts);

} // namespace steplets::sqlcipher
