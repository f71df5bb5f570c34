#include "StoreData.h"
#include "Database.h"
#include "Schema.h"
#include "SqlCipherConnection.h"
#include "StoreErrors.h"
#include <QJsonArray>

namespace steplets::sqlcipher {

namespace {


Value fromJson(const QJsonValue& j)
{
    if (j.isBool()) return Value(j.toBool());
    if (j.isDouble()) {
        const double d = j.toDouble();
        if (d == static_cast<double>(static_cast<qint64>(d)) && d >= INT32_MIN && d <= INT32_MAX) return Value(static_cast<int>(d));
        return Value(d);
    }
    if (j.isString()) return Value(j.toString());
    return Value();
}

QJsonArray dumpTable(Database& db, const QString& table)
{
    const QList<ColumnInfo>& cols = db.columns(table);
    QStringList names;
    for (const ColumnInfo& c : cols) names << quoted(c.name);
    Statement& st = db.prepare(QStringLiteral("SELECT ") + names.join(QLatin1Char(',')) + QStringLiteral(" FROM ")
                               + quoted(table) + QStringLiteral(" ORDER BY rowid"));
    QJsonArray rows;
    while (st.step()) {
        QJsonObject row;
        for (int i = 0; i < cols.size(); ++i) row.insert(cols[i].name, st.value(i, cols[i].kind).toJson());
        rows.append(row);
    }
    return rows;
}

QJsonObject dumpDatabase(Database& db)
{
    QJsonObject tables;
    for (const QString& t : db.tableNames()) tables.insert(t, dumpTable(db, t));
    return tables;
}

void insertRow(Database& db, const QString& table, const QJsonObject& row)
{
    const QList<ColumnInfo>& cols = db.columns(table);
    QStringList names, marks;
    QList<Value> values;
    for (auto it = row.begin(); it != row.end(); ++it) {
        const auto col = std::find_if(cols.begin(), cols.end(), [&](const ColumnInfo& c) {
            return c.name.compare(it.key(), Qt::CaseInsensitive) == 0;
        });
        if (col == cols.end()) throw unknownColumn(it.key(), table);
        try {
            values << toColumnType(fromJson(it.value()), col->kind);
        } catch (const Failure&) {
            throw badArguments(QStringLiteral("the value of %1.%2 does not suit the column").arg(table, it.key()));
        }
        names << quoted(col->name);
        marks << QStringLiteral("?");
    }
    const QString sql = names.isEmpty()
        ? QStringLiteral("INSERT INTO ") + quoted(table) + QStringLiteral(" DEFAULT VALUES")
        : QStringLiteral("INSERT INTO ") + quoted(table) + QStringLiteral(" (") + names.join(QLatin1Char(','))
            + QStringLiteral(") VALUES (") + marks.join(QLatin1Char(',')) + QLatin1Char(')');
    Statement& st = db.prepare(sql);
    for (int i = 0; i < values.size(); ++i) st.bind(i + 1, values[i]);
    st.run();
}

void loadDatabase(Database& db, const QJsonObject& tables)
{
    db.exec(QStringLiteral("BEGIN"));
    try {
        for (auto t = tables.begin(); t != tables.end(); ++t) {
            if (!db.hasTable(t.key())) throw tableNotFound(t.key());
            for (const QJsonValue& row : t.value().toArray()) insertRow(db, t.key(), row.toObject());
        }
    } catch (...) {
        db.exec(QStringLiteral("ROLLBACK"));
        throw;
    }
    db.exec(QStringLiteral("COMMIT"));
}

} // namespace

QJsonObject dumpStore(const QString& dir)
{
    auto local = openDatabase(connectionStringOf(Db::Local, dir), OpenMode::ReadOnly);
    auto link = openDatabase(connectionStringOf(Db::Link, dir), OpenMode::ReadOnly);
    return QJsonObject{{QStringLiteral("local"), dumpDatabase(*local)}, {QStringLiteral("link"), dumpDatabase(*link)}};
}

void loadStore(const QString& dir, const QJsonObject& store)
{
    if (store.contains(QStringLiteral("local"))) {
        auto local = openDatabase(connectionStringOf(Db::Local, dir));
        loadDatabase(*local, store.value(QStringLiteral("local")).toObject());
    }
    if (store.contains(QStringLiteral("link"))) {
        auto link = openDatabase(connectionStringOf(Db::Link, dir));
        loadDatabase(*link, store.value(QStringLiteral("link")).toObject());
    }
}

} // namespace steplets::sqlcipher
