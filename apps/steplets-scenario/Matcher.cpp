#include "Matcher.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cmath>

namespace steplets::scenario {

namespace {

bool isOperator(const QJsonValue& p)
{
    if (!p.isObject()) return false;
    const QJsonObject o = p.toObject();
    for (auto it = o.begin(); it != o.end(); ++it)
        if (it.key().startsWith(QLatin1Char('$'))) return true;
    return false;
}

bool isCount(const QJsonValue& v) { return v.isDouble() && v.toDouble() >= 0 && std::floor(v.toDouble()) == v.toDouble(); }

QString at(const QString& path, int index) { return QStringLiteral("%1[%2]").arg(path).arg(index); }
QString member(const QString& path, const QString& name) { return path.isEmpty() ? name : path + QLatin1Char('.') + name; }
QString shown(const QString& path) { return path.isEmpty() ? QStringLiteral("(transcript)") : path; }

QString checkOperator(const QJsonObject& o, const QString& path)
{
    QStringList keys = o.keys();
    auto has = [&](const char* k) { return o.contains(QLatin1String(k)); };
    auto only = [&](QStringList allowed) {
        keys.sort();
        allowed.sort();
        return keys == allowed;
    };
    if (has("$absent") || has("$present")) {
        const QString op = has("$absent") ? QStringLiteral("$absent") : QStringLiteral("$present");
        if (!only({op}) || !o.value(op).isBool()) return QStringLiteral("%1: expected {\"%2\": true}").arg(path, op);
        return {};
    }
    for (const QString& op : {QStringLiteral("$prefix"), QStringLiteral("$contains")}) {
        if (!o.contains(op)) continue;
        if (!only({op}) || !o.value(op).isString()) return QStringLiteral("%1: expected {\"%2\": \"text\"}").arg(path, op);
        return {};
    }
    if (has("$count")) {
        if (!isCount(o.value(QStringLiteral("$count")))) return QStringLiteral("%1.$count: expected a whole number, not negative").arg(path);
        if (only({QStringLiteral("$count")})) return {};
        if (!only({QStringLiteral("$count"), QStringLiteral("$items")}) || !o.value(QStringLiteral("$items")).isArray())
            return QStringLiteral("%1: expected {\"$count\": N} or {\"$count\": N, \"$items\": [...]}").arg(path);
        return checkPattern(o.value(QStringLiteral("$items")), member(path, QStringLiteral("$items")));
    }
    if (has("$exactly")) {
        if (!only({QStringLiteral("$exactly")}) || !o.value(QStringLiteral("$exactly")).isArray())
            return QStringLiteral("%1: expected {\"$exactly\": [...]}").arg(path);
        return checkPattern(o.value(QStringLiteral("$exactly")), member(path, QStringLiteral("$exactly")));
    }
    if (has("$none")) {
        if (!only({QStringLiteral("$none")})) return QStringLiteral("%1: expected {\"$none\": pattern}").arg(path);
        return checkPattern(o.value(QStringLiteral("$none")), member(path, QStringLiteral("$none")));
    }
    if (has("$countOf")) {
        if (!only({QStringLiteral("$countOf"), QStringLiteral("n")}) || !isCount(o.value(QStringLiteral("n"))))
            return QStringLiteral("%1: expected {\"$countOf\": pattern, \"n\": N}").arg(path);
        return checkPattern(o.value(QStringLiteral("$countOf")), member(path, QStringLiteral("$countOf")));
    }
    for (const QString& k : keys)
        if (k.startsWith(QLatin1Char('$'))) return QStringLiteral("%1: unknown operator \"%2\"").arg(path, k);
    return {};
}

class Matcher {
public:
    QString match(const QJsonValue& p, const QJsonValue& a, const QString& path) const
    {
        if (isOperator(p)) return matchOperator(p.toObject(), a, path);
        if (a.isUndefined()) return QStringLiteral("%1: missing; expected %2").arg(shown(path), brief(p));
        if (p.isObject()) return matchObject(p.toObject(), a, path);
        if (p.isArray()) {
            if (!a.isArray()) return differs(path, p, a);
            return matchInOrder(p.toArray(), a.toArray(), path);
        }
        return sameScalar(p, a) ? QString() : differs(path, p, a);
    }

private:
    static QString differs(const QString& path, const QJsonValue& p, const QJsonValue& a)
    {
        return QStringLiteral("%1: expected %2, found %3").arg(shown(path), brief(p), brief(a));
    }

    static bool sameScalar(const QJsonValue& p, const QJsonValue& a)
    {
        if (p.isDouble() && a.isDouble()) return p.toDouble() == a.toDouble();
        return p == a;
    }

    QString matchObject(const QJsonObject& p, const QJsonValue& a, const QString& path) const
    {
        if (!a.isObject()) return differs(path, p, a);
        const QJsonObject actual = a.toObject();
        for (auto it = p.begin(); it != p.end(); ++it) {
            const QString why = match(it.value(), actual.value(it.key()), member(path, it.key()));
            if (!why.isEmpty()) return why;
        }
        return {};
    }

    // Each pattern takes the earliest element after the previous one's that it matches; taking
    // the earliest leaves the most room for the rest, so no other choice could succeed.
    QString matchInOrder(const QJsonArray& patterns, const QJsonArray& actual, const QString& path) const
    {
        int next = 0;
        for (int i = 0; i < patterns.size(); ++i) {
            int found = -1;
            QString firstWhy;
            for (int j = next; j < actual.size() && found < 0; ++j) {
                const QString why = match(patterns[i], actual[j], at(path, j));
                if (why.isEmpty()) found = j;
                else if (firstWhy.isEmpty()) firstWhy = why;
            }
            if (found < 0) {
                QString msg = QStringLiteral("%1: no element from index %2 on (of %3) matches pattern %4: %5")
                                  .arg(shown(path)).arg(next).arg(actual.size()).arg(i).arg(brief(patterns[i]));
                if (!firstWhy.isEmpty()) msg += QStringLiteral(" (at the first candidate, ") + firstWhy + QLatin1Char(')');
                return msg;
            }
            next = found + 1;
        }
        return {};
    }

    QString matchOperator(const QJsonObject& o, const QJsonValue& a, const QString& path) const
    {
        if (o.contains(QStringLiteral("$absent")) || o.contains(QStringLiteral("$present"))) {
            const bool wantAbsent = o.contains(QStringLiteral("$absent")) ? o.value(QStringLiteral("$absent")).toBool()
                                                                          : !o.value(QStringLiteral("$present")).toBool();
            if (wantAbsent && !a.isUndefined()) return QStringLiteral("%1: expected to be absent, found %2").arg(shown(path), brief(a));
            if (!wantAbsent && a.isUndefined()) return QStringLiteral("%1: expected to be present, but it is missing").arg(shown(path));
            return {};
        }
        if (a.isUndefined()) return QStringLiteral("%1: missing; expected %2").arg(shown(path), brief(o));
        if (o.contains(QStringLiteral("$prefix"))) {
            const QString prefix = o.value(QStringLiteral("$prefix")).toString();
            if (a.isString() && a.toString().startsWith(prefix)) return {};
            return QStringLiteral("%1: expected a text beginning with %2, found %3").arg(shown(path), brief(prefix), brief(a));
        }
        // A text somewhere inside, for texts whose start and end vary, such as a report's location.
        if (o.contains(QStringLiteral("$contains"))) {
            const QString part = o.value(QStringLiteral("$contains")).toString();
            if (a.isString() && a.toString().contains(part)) return {};
            return QStringLiteral("%1: expected a text containing %2, found %3").arg(shown(path), brief(part), brief(a));
        }
        if (!a.isArray()) return QStringLiteral("%1: expected a list for %2, found %3").arg(shown(path), brief(o), brief(a));
        const QJsonArray actual = a.toArray();
        if (o.contains(QStringLiteral("$count"))) {
            const int n = o.value(QStringLiteral("$count")).toInt();
            if (actual.size() != n) return QStringLiteral("%1: expected %2 elements, found %3").arg(shown(path)).arg(n).arg(actual.size());
            return matchInOrder(o.value(QStringLiteral("$items")).toArray(), actual, path);
        }
        if (o.contains(QStringLiteral("$exactly"))) {
            const QJsonArray patterns = o.value(QStringLiteral("$exactly")).toArray();
            if (actual.size() != patterns.size())
                return QStringLiteral("%1: expected exactly %2 elements, found %3").arg(shown(path)).arg(patterns.size()).arg(actual.size());
            for (int i = 0; i < patterns.size(); ++i) {
                const QString why = match(patterns[i], actual[i], at(path, i));
                if (!why.isEmpty()) return why;
            }
            return {};
        }
        if (o.contains(QStringLiteral("$none"))) {
            for (int i = 0; i < actual.size(); ++i)
                if (match(o.value(QStringLiteral("$none")), actual[i], at(path, i)).isEmpty())
                    return QStringLiteral("%1: expected no element matching %2, but element %3 does: %4")
                        .arg(shown(path), brief(o.value(QStringLiteral("$none")))).arg(i).arg(brief(actual[i]));
            return {};
        }
        const QJsonValue pattern = o.value(QStringLiteral("$countOf"));
        const int want = o.value(QStringLiteral("n")).toInt();
        int count = 0;
        for (int i = 0; i < actual.size(); ++i)
            if (match(pattern, actual[i], at(path, i)).isEmpty()) ++count;
        if (count == want) return {};
        return QStringLiteral("%1: expected %2 elements matching %3, found %4").arg(shown(path)).arg(want).arg(brief(pattern)).arg(count);
    }
};

} // namespace

QString checkPattern(const QJsonValue& pattern, const QString& path)
{
    if (isOperator(pattern)) return checkOperator(pattern.toObject(), path);
    if (pattern.isObject()) {
        const QJsonObject o = pattern.toObject();
        for (auto it = o.begin(); it != o.end(); ++it) {
            const QString why = checkPattern(it.value(), member(path, it.key()));
            if (!why.isEmpty()) return why;
        }
    } else if (pattern.isArray()) {
        const QJsonArray a = pattern.toArray();
        for (int i = 0; i < a.size(); ++i) {
            const QString why = checkPattern(a[i], at(path, i));
            if (!why.isEmpty()) return why;
        }
    }
    return {};
}

QString firstMismatch(const QJsonValue& pattern, const QJsonValue& actual)
{
    return Matcher().match(pattern, actual, {});
}

QString brief(const QJsonValue& v)
{
    QString text;
    switch (v.type()) {
    case QJsonValue::Undefined: return QStringLiteral("nothing");
    case QJsonValue::Object: text = QString::fromUtf8(QJsonDocument(v.toObject()).toJson(QJsonDocument::Compact)); break;
    case QJsonValue::Array: text = QString::fromUtf8(QJsonDocument(v.toArray()).toJson(QJsonDocument::Compact)); break;
    default: {
        // A scalar is rendered by wrapping it in a list and stripping the brackets.
        const QByteArray json = QJsonDocument(QJsonArray{v}).toJson(QJsonDocument::Compact);
        text = QString::fromUtf8(json.mid(1, json.size() - 2));
    }
    }
    constexpr int kLongest = 300;
    return text.size() > kLongest ? text.left(kLongest) + QStringLiteral("...") : text;
}

} // namespace steplets::scenario
