#include "Date.h"
#include "Failure.h"
#include <QRegularExpression>
#include <cmath>

namespace steplets {

namespace {
constexpr qint64 kMsPerDay = 86400000;
// 30 Dec 1899 as a Julian day: no static initialisation order to worry about.
constexpr qint64 kEpochJulianDay = 2415019;
QDate epoch() { return QDate::fromJulianDay(kEpochJulianDay); }

qint64 floorDiv(qint64 a, qint64 b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Milliseconds since the epoch on the linear scale.
qint64 toMs(double linear) { return std::llround(linear * kMsPerDay); }
double fromMs(qint64 ms) { return static_cast<double>(ms) / kMsPerDay; }

void checkRange(const QDate& d)
{
    if (!d.isValid() || d.year() < 100 || d.year() > 9999) throw Failure::invalidCall();
}

// Months since year 0, for month arithmetic.
long monthIndex(const QDate& d) { return d.year() * 12L + (d.month() - 1); }
} // namespace

double Date::linear() const
{
    if (m_serial >= 0) return m_serial;
    const double day = std::trunc(m_serial);
    return day + std::fabs(m_serial - day);
}

double Date::fromLinear(double linear)
{
    if (linear >= 0) return linear;
    const double day = std::floor(linear);
    const double time = linear - day;
    return time == 0.0 ? day : day - time;
}

Date Date::fromParts(int year, int month, int day, int hour, int minute, int second)
{
    const QDate d(year, month, day);
    checkRange(d);
    const qint64 ms = epoch().daysTo(d) * kMsPerDay + ((hour * 60LL + minute) * 60 + second) * 1000;
    return Date(fromLinear(fromMs(ms)));
}

Date Date::fromQDate(const QDate& d) { return fromParts(d.year(), d.month(), d.day()); }

Date Date::fromQDateTime(const QDateTime& dt)
{
    const QDate d = dt.date();
    checkRange(d);
    const qint64 ms = epoch().daysTo(d) * kMsPerDay + dt.time().msecsSinceStartOfDay();
    return Date(fromLinear(fromMs(ms)));
}

Date Date::noDate() { return fromParts(4501, 1, 1); }

bool Date::isNoDate() const { return *this == noDate(); }

std::optional<Date> Date::fromIso(const QString& text)
{
    static const QRegularExpression re(QStringLiteral(
        "^(\\d{4})-(\\d{2})-(\\d{2})(?:[T ](\\d{2}):(\\d{2})(?::(\\d{2})(?:\\.(\\d{1,3}))?)?)?$"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch()) return std::nullopt;
    const QDate d(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    const int h = m.captured(4).toInt(), mi = m.captured(5).toInt(), s = m.captured(6).toInt();
    if (!d.isValid() || d.year() < 100 || h > 23 || mi > 59 || s > 59) return std::nullopt;
    int ms = 0;
    if (!m.captured(7).isEmpty()) ms = m.captured(7).leftJustified(3, QLatin1Char('0')).toInt();
    const qint64 total = epoch().daysTo(d) * kMsPerDay + ((h * 60LL + mi) * 60 + s) * 1000 + ms;
    return Date(fromLinear(fromMs(total)));
}

QDate Date::date() const { return epoch().addDays(floorDiv(toMs(linear()), kMsPerDay)); }

QTime Date::time() const
{
    const qint64 ms = toMs(linear());
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(ms - floorDiv(ms, kMsPerDay) * kMsPerDay));
}

QDateTime Date::toQDateTime() const { return QDateTime(date(), time()); }

QString Date::toIso() const
{
    const QTime t = time();
    QString s = date().toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char('T') + t.toString(QStringLiteral("HH:mm:ss"));
    if (t.msec() != 0) s += QStringLiteral(".%1").arg(t.msec(), 3, 10, QLatin1Char('0'));
    return s;
}

Date Date::datePart() const { return Date(fromLinear(std::floor(linear()))); }

int Date::weekday() const { return date().dayOfWeek() % 7 + 1; }

Date Date::add(const QString& unit, long count) const
{
    const qint64 ms = toMs(linear());
    auto shiftMs = [&](qint64 step) {
        const Date r(fromLinear(fromMs(ms + step * count)));
        checkRange(r.date());
        return r;
    };
    auto shiftMonths = [&](long months) {
        const QDate d = date().addMonths(static_cast<int>(months));
        checkRange(d);
        return fromQDateTime(QDateTime(d, time()));
    };
    if (unit == QLatin1String("s")) return shiftMs(1000);
    if (unit == QLatin1String("n")) return shiftMs(60000);
    if (unit == QLatin1String("h")) return shiftMs(3600000);
    if (unit == QLatin1String("d") || unit == QLatin1String("y") || unit == QLatin1String("w")) return shiftMs(kMsPerDay);
    if (unit == QLatin1String("ww")) return shiftMs(7 * kMsPerDay);
    if (unit == QLatin1String("m")) return shiftMonths(count);
    if (unit == QLatin1String("q")) return shiftMonths(count * 3);
    if (unit == QLatin1String("yyyy")) return shiftMonths(count * 12);
    throw Failure::invalidCall();
}

long Date::diff(const QString& unit, const Date& from, const Date& to)
{
    const qint64 a = toMs(from.linear()), b = toMs(to.linear());
    auto boundaries = [&](qint64 size) { return static_cast<long>(floorDiv(b, size) - floorDiv(a, size)); };
    if (unit == QLatin1String("s")) return boundaries(1000);
    if (unit == QLatin1String("n")) return boundaries(60000);
    if (unit == QLatin1String("h")) return boundaries(3600000);
    if (unit == QLatin1String("d") || unit == QLatin1String("y")) return boundaries(kMsPerDay);
    if (unit == QLatin1String("w")) return boundaries(kMsPerDay) / 7;
    if (unit == QLatin1String("ww")) {
        // Sundays crossed: day 1 (31 Dec 1899) is a Sunday.
        const qint64 da = floorDiv(a, kMsPerDay), db = floorDiv(b, kMsPerDay);
        return static_cast<long>(floorDiv(db - 1, 7) - floorDiv(da - 1, 7));
    }
    const QDate da = from.date(), db = to.date();
    if (unit == QLatin1String("m")) return monthIndex(db) - monthIndex(da);
    if (unit == QLatin1String("q")) return monthIndex(db) / 3 - monthIndex(da) / 3;
    if (unit == QLatin1String("yyyy")) return db.year() - da.year();
    throw Failure::invalidCall();
}

} // namespace steplets
