#include "QueryText.h"
#include "StoreErrors.h"
#include <QLocale>
#include <QRegularExpression>

namespace steplets::sqlcipher {

namespace {
const auto kCase = QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption;

QString unbracketed(QString name)
{
    name = name.trimmed();
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']'))) return name.mid(1, name.size() - 2);
    if (name.startsWith(QLatin1Char('"')) && name.endsWith(QLatin1Char('"')) && name.size() > 1)
        return name.mid(1, name.size() - 2);
    return name;
}

bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); }
} // namespace

SelectQuery parseSelect(const QString& source, int options)
{
    static const QRegularExpression name(QStringLiteral("^\\s*(\\[[^\\]]+\\]|\\w+)\\s*$"));
    if (options == 2) {
        const auto m = name.match(source);
        if (!m.hasMatch()) throw notUnderstood(source, QStringLiteral("a table name was expected"));
        return SelectQuery{unbracketed(m.captured(1)), {}, {}, {}};
    }
    static const QRegularExpression select(
        QStringLiteral("^\\s*SELECT\\s+(.+?)\\s+FROM\\s+(\\[[^\\]]+\\]|\\w+)"
                       "(?:\\s+WHERE\\s+(.+?))?(?:\\s+ORDER\\s+BY\\s+(.+?))?\\s*;?\\s*$"),
        kCase);
    const auto m = select.match(source);
    if (!m.hasMatch())
        throw notUnderstood(source, QStringLiteral("only SELECT columns FROM one table, with an optional WHERE and "
                                                   "ORDER BY, is understood"));
    SelectQuery q;
    q.table = unbracketed(m.captured(2));
    const QString columns = m.captured(1).trimmed();
    if (columns != QLatin1String("*")) {
        for (const QString& c : columns.split(QLatin1Char(','))) {
            if (!name.match(c).hasMatch()) throw notUnderstood(source, QStringLiteral("'%1' is no column name").arg(c.trimmed()));
            q.columns << unbracketed(c);
        }
    }
    q.where = toEngineSql(m.captured(3).trimmed());
    if (!m.captured(4).isEmpty()) {
        for (const QString& t : m.captured(4).split(QLatin1Char(','))) q.orderBy << t.trimmed();
    }
    return q;
}

QString toEngineSql(const QString& jetSql)
{
    QString out;
    out.reserve(jetSql.size());
    QChar quote;
    for (qsizetype i = 0; i < jetSql.size(); ++i) {
        const QChar c = jetSql.at(i);
        if (!quote.isNull()) {
            out += c;
            if (c == quote) quote = QChar();
            continue;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('[')) {
            quote = c == QLatin1Char('[') ? QLatin1Char(']') : c;
            out += c;
            continue;
        }
        if (isWordChar(c) && (i == 0 || !isWordChar(jetSql.at(i - 1)))) {
            qsizetype end = i;
            while (end < jetSql.size() && isWordChar(jetSql.at(end))) ++end;
            const QString word = jetSql.mid(i, end - i);
            if (word.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) out += QLatin1String("-1");
            else if (word.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) out += QLatin1String("0");
            else out += word;
            i = end - 1;
            continue;
        }
        out += c;
    }
    return out;
}

std::optional<Criterion> parseCriterion(const QString& criteria)
{
    static const QRegularExpression form(QStringLiteral("^\\s*(\\[[^\\]]+\\]|\\w+)\\s*=\\s*(.*?)\\s*$"), kCase);
    const auto m = form.match(criteria);
    if (!m.hasMatch()) return std::nullopt;
    Criterion c{unbracketed(m.captured(1)), Value()};
    const QString v = m.captured(2);
    if (v.size() >= 2 && (v.front() == QLatin1Char('\'') || v.front() == QLatin1Char('"')) && v.back() == v.front()) {
        QString inner = v.mid(1, v.size() - 2);
        const QString q(v.front());
        if (inner.contains(q) && inner.replace(q + q, QString()).contains(q)) return std::nullopt;
        c.value = Value(v.mid(1, v.size() - 2).replace(q + q, q));
        return c;
    }
    if (v.size() >= 2 && v.front() == QLatin1Char('#') && v.back() == QLatin1Char('#')) {
        try { c.value = Value(Value(v.mid(1, v.size() - 2)).toDate()); } catch (const Failure&) { return std::nullopt; }
        return c;
    }
    if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) { c.value = Value(true); return c; }
    if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) { c.value = Value(false); return c; }
    if (v.compare(QLatin1String("Null"), Qt::CaseInsensitive) == 0) return c;
    bool ok = false;
    const double d = QLocale::c().toDouble(v, &ok);
    if (!ok) return std::nullopt;
    if (d == static_cast<double>(static_cast<qint64>(d)) && d >= INT32_MIN && d <= INT32_MAX)
        c.value = Value(static_cast<int>(d));
    else
        c.value = Value(d);
    return c;
}

WrittenTable writtenTable(const QString& sql)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*(INSERT\\s+INTO|UPDATE|DELETE\\s+FROM|DELETE\\s+\\*\\s+FROM)\\s+(\\[[^\\]]+\\]|\\w+)"), kCase);
    const auto m = form.match(sql);
    if (!m.hasMatch()) return {};
    return WrittenTable{unbracketed(m.captured(2)), m.captured(1).startsWith(QLatin1String("DELETE"), Qt::CaseInsensitive)};
}

} // namespace steplets::sqlcipher
