#include "Value.h"
#include "DateFormats.h"
#include <QLocale>
#include <cmath>
#include <limits>

namespace steplets {

namespace {
template <class... F> struct Overloaded : F... { using F::operator()...; };
template <class... F> Overloaded(F...) -> Overloaded<F...>;

// Text that the run-time takes as a number: digits in the C locale, or "True"/"False".
double parseNumber(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) return -1.0;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) return 0.0;
    bool ok = false;
    const double d = QLocale::c().toDouble(t, &ok);
    if (!ok) throw Failure::typeMismatch();
    return d;
}

qint32 toInt32(double d)
{
    if (!std::isfinite(d)) throw Failure::overflow();
    const double r = roundHalfEven(d);
    if (r < std::numeric_limits<qint32>::min() || r > std::numeric_limits<qint32>::max()) throw Failure::overflow();
    return static_cast<qint32>(r);
}
} // namespace

double roundHalfEven(double v)
{
    const double f = std::floor(v);
    const double diff = v - f;
    if (diff > 0.5) return f + 1.0;
    if (diff < 0.5) return f;
    return std::fmod(f, 2.0) == 0.0 ? f : f + 1.0;
}

Value::Value(qint64 i)
{
    if (i < std::numeric_limits<qint32>::min() || i > std::numeric_limits<qint32>::max()) throw Failure::overflow();
    m_v = static_cast<qint32>(i);
}

bool Value::isNumeric() const
{
    const Type t = type();
    return t == Type::Bool || t == Type::Int16 || t == Type::Int32 || t == Type::Double;
}

QString Value::toText() const
{
    return std::visit(Overloaded{
        [](std::monostate) -> QString { throw Failure::invalidUseOfNull(); },
        [](bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); },
        [](Int16 i) { return QString::number(i.value()); },
        [](qint32 i) { return QString::number(i); },
        [](double d) { return QString::number(d, 'g', 15); },
        [](const QString& s) { return s; },
        [](const Date& d) { return DateFormats::current().format(d, QStringLiteral("General Date")); },
    }, m_v);
}

double Value::toDouble() const
{
    return std::visit(Overloaded{
        [](std::monostate) -> double { throw Failure::invalidUseOfNull(); },
        [](bool b) { return b ? -1.0 : 0.0; },
        [](Int16 i) { return static_cast<double>(i.value()); },
        [](qint32 i) { return static_cast<double>(i); },
        [](double d) { return d; },
        [](const QString& s) { return parseNumber(s); },
        [](const Date& d) { return d.serial(); },
    }, m_v);
}

qint32 Value::toLong() const
{
    if (type() == Type::Int32) return std::get<qint32>(m_v);
    return toInt32(toDouble());
}

Int16 Value::toInt16() const { return Int16::from(toDouble()); }

bool Value::toBool() const
{
    if (type() == Type::Bool) return std::get<bool>(m_v);
    return toDouble() != 0.0;
}

Date Value::toDate() const
{
    return std::visit(Overloaded{
        [](std::monostate) -> Date { throw Failure::invalidUseOfNull(); },
        [](const Date& d) { return d; },
        [](const QString& s) -> Date {
            if (auto d = Date::fromIso(s)) return *d;
            // The run-time also reads the short English form, M/d/yyyy with an optional time.
            const QDateTime dt = QLocale::c().toDateTime(s.trimmed(), QStringLiteral("M/d/yyyy h:mm:ss AP"));
            if (dt.isValid()) return Date::fromQDateTime(dt);
            const QDate d = QLocale::c().toDate(s.trimmed(), QStringLiteral("M/d/yyyy"));
            if (d.isValid()) return Date::fromQDate(d);
            throw Failure::typeMismatch();
        },
        [this](auto) { return Date(toDouble()); },
    }, m_v);
}

bool operator==(const Value& a, const Value& b) { return a.m_v == b.m_v; }

QString Value::debugText() const
{
    return std::visit(Overloaded{
        [](std::monostate) { return QStringLiteral("Null"); },
        [](const QString& s) { return QLatin1Char('"') + s + QLatin1Char('"'); },
        [](const Date& d) { return d.toIso(); },
        [this](auto) { return toText(); },
    }, m_v);
}

QJsonValue Value::toJson() const
{
    switch (type()) {
    case Type::Null: return QJsonValue::Null;
    case Type::Bool: return toBool();
    case Type::Int16:
    case Type::Int32: return static_cast<qint64>(toLong());
    case Type::Double: return toDouble();
    case Type::Text: return toText();
    case Type::Date: return toDate().toIso();
    }
    return QJsonValue::Null;
}

} // namespace steplets
