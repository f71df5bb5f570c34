#include "ScenarioBase.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace steplets::scenario {

namespace {

struct BaseProblem {
    QString message;
};

// A data file goes no deeper than this in its chain of bases; a chain that loops ends here too.
constexpr int kDeepestBase = 8;
// What a data file may hold.
const QStringList kDataMembers = {QStringLiteral("base"),     QStringLiteral("now"),     QStringLiteral("host"),
                                  QStringLiteral("settings"), QStringLiteral("store"),   QStringLiteral("outlook"),
                                  QStringLiteral("defaults")};

QJsonObject overlay(QJsonObject base, const QJsonObject& over)
{
    for (auto it = over.begin(); it != over.end(); ++it) base.insert(it.key(), it.value());
    return base;
}

// The key a row or item is matched by, or nothing.
QJsonValue keyOf(const QJsonObject& row)
{
    for (const char* k : {"ID", "ContactID", "EntryID"})
        if (row.contains(QLatin1String(k))) return row.value(QLatin1String(k));
    return QJsonValue::Undefined;
}

QJsonArray mergeRows(QJsonArray rows, const QJsonArray& over)
{
    for (const QJsonValue& v : over) {
        const QJsonObject row = v.toObject();
        const QJsonValue key = keyOf(row);
        bool merged = false;
        for (int i = 0; !key.isUndefined() && i < rows.size() && !merged; ++i) {
            if (keyOf(rows[i].toObject()) == key) {
                rows[i] = overlay(rows[i].toObject(), row);
                merged = true;
            }
        }
        if (!merged) rows.append(row);
    }
    return rows;
}

QJsonObject mergeStore(QJsonObject base, const QJsonObject& over)
{
    for (auto db = over.begin(); db != over.end(); ++db) {
        if (db.key() == QLatin1String("missing") || !db.value().isObject()) {
            base.insert(db.key(), db.value());
            continue;
        }
        QJsonObject tables = base.value(db.key()).toObject();
        const QJsonObject overTables = db.value().toObject();
        for (auto t = overTables.begin(); t != overTables.end(); ++t)
            tables.insert(t.key(), mergeRows(tables.value(t.key()).toArray(), t.value().toArray()));
        base.insert(db.key(), tables);
    }
    return base;
}

QJsonObject mergeOutlook(QJsonObject base, const QJsonObject& over)
{
    for (auto it = over.begin(); it != over.end(); ++it) {
        if (it.key() == QLatin1String("contacts") || it.key() == QLatin1String("tasks"))
            base.insert(it.key(), mergeRows(base.value(it.key()).toArray(), it.value().toArray()));
        else
            base.insert(it.key(), it.value());
    }
    return base;
}

QJsonObject merge(const QJsonObject& base, const QJsonObject& over)
{
    QJsonObject out = base;
    for (auto it = over.begin(); it != over.end(); ++it) {
        const QString& name = it.key();
        const QJsonValue& v = it.value();
        if (name == QLatin1String("host") && v.isObject())
            out.insert(name, overlay(base.value(name).toObject(), v.toObject()));
        else if (name == QLatin1String("settings") && v.isObject() && base.value(name).isObject())
            out.insert(name, overlay(base.value(name).toObject(), v.toObject()));
        else if (name == QLatin1String("store") && v.isObject())
            out.insert(name, mergeStore(base.value(name).toObject(), v.toObject()));
        else if (name == QLatin1String("outlook") && v.isObject())
            out.insert(name, mergeOutlook(base.value(name).toObject(), v.toObject()));
        else if (name == QLatin1String("defaults") && v.isObject())
            out.insert(name, overlay(base.value(name).toObject(), v.toObject()));
        else
            out.insert(name, v);
    }
    return out;
}

// Every row of the tables named in `defaults` takes the columns it does not name.
QJsonObject applyDefaults(QJsonObject scenario, const QJsonObject& defaults)
{
    QJsonObject store = scenario.value(QStringLiteral("store")).toObject();
    for (auto db = store.begin(); db != store.end(); ++db) {
        if (!db.value().isObject()) continue;
        QJsonObject tables = db.value().toObject();
        for (auto t = tables.begin(); t != tables.end(); ++t) {
            const QJsonObject columns = defaults.value(t.key()).toObject();
            if (columns.isEmpty()) continue;
            QJsonArray rows;
            for (const QJsonValue& row : t.value().toArray()) rows.append(overlay(columns, row.toObject()));
            t.value() = rows;
        }
        db.value() = tables;
    }
    if (!store.isEmpty()) scenario.insert(QStringLiteral("store"), store);
    return scenario;
}

QJsonObject loadBases(const QJsonValue& base, const QDir& folder, int depth, const QString& where);

// The data file, with its own bases laid under it.
QJsonObject loadData(const QString& path, int depth)
{
    const QString shown = QDir::current().relativeFilePath(path);
    if (depth > kDeepestBase) throw BaseProblem{QStringLiteral("base: %1: bases nest deeper than %2").arg(shown).arg(kDeepestBase)};
    QFile in(path);
    if (!QFileInfo(path).isFile() || !in.open(QIODevice::ReadOnly))
        throw BaseProblem{QStringLiteral("base: %1 cannot be read").arg(shown)};
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(in.readAll(), &parseError);
    if (!doc.isObject())
        throw BaseProblem{QStringLiteral("base: %1 is not a JSON object (%2)").arg(shown, parseError.errorString())};
    const QJsonObject data = doc.object();
    for (auto it = data.begin(); it != data.end(); ++it)
        if (!kDataMembers.contains(it.key()))
            throw BaseProblem{QStringLiteral("base: %1: unknown member \"%2\"").arg(shown, it.key())};
    QJsonObject own = data;
    own.remove(QStringLiteral("base"));
    return merge(loadBases(data.value(QStringLiteral("base")), QFileInfo(path).dir(), depth + 1, shown), own);
}

// The files that "base" names (one, or a list laid one over the other in order), merged.
QJsonObject loadBases(const QJsonValue& base, const QDir& folder, int depth, const QString& where)
{
    if (base.isUndefined()) return {};
    QJsonArray names = base.isArray() ? base.toArray() : QJsonArray{base};
    QJsonObject merged;
    for (const QJsonValue& name : names) {
        if (!name.isString() || name.toString().isEmpty())
            throw BaseProblem{QStringLiteral("base: %1: expected the name of a data file, or a list of them").arg(where)};
        merged = merge(merged, loadData(folder.filePath(name.toString()), depth));
    }
    return merged;
}

} // namespace

std::optional<QJsonObject> withBase(const QJsonObject& scenario, const QString& folder, QString* error)
{
    if (!scenario.contains(QStringLiteral("base"))) return scenario;
    try {
        const QJsonObject data = loadBases(scenario.value(QStringLiteral("base")), QDir(folder), 1, QStringLiteral("the scenario"));
        QJsonObject own = scenario;
        own.remove(QStringLiteral("base"));
        QJsonObject merged = merge(data, own);
        const QJsonObject defaults = merged.take(QStringLiteral("defaults")).toObject();
        return applyDefaults(merged, defaults);
    } catch (const BaseProblem& p) {
        if (error) *error = p.message;
        return std::nullopt;
    }
}

} // namespace steplets::scenario
