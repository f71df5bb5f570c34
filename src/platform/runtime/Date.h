#pragma once
// A date: days since 30 Dec 1899, the time of day as the fraction.
// Day 0 is the "zero date"; 1 Jan 4501 is the task store's "no date".
#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTime>
#include <compare>
#include <optional>

namespace steplets {

class Date {
public:
    constexpr Date() = default;                       // the zero date, 30 Dec 1899 00:00
    constexpr explicit Date(double serial) : m_serial(serial) {}

    static Date fromParts(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
    static Date fromQDate(const QDate& d);
    static Date fromQDateTime(const QDateTime& dt);   // local wall time, no zone arithmetic
    static Date noDate();                             // 1 Jan 4501 00:00
    // "YYYY-MM-DDTHH:MM:SS", "YYYY-MM-DDTHH:MM:SS.zzz", "YYYY-MM-DD HH:MM:SS" or "YYYY-MM-DD".
    static std::optional<Date> fromIso(const QString& text);

    double serial() const { return m_serial; }
    QDate date() const;
    QTime time() const;                               // to the millisecond
    QDateTime toQDateTime() const;
    QString toIso() const;                            // "YYYY-MM-DDTHH:MM:SS" (".zzz" when not whole)
    bool isZero() const { return m_serial == 0.0; }
    bool isNoDate() const;
    Date datePart() const;                            // midnight of the same day
    int weekday() const;                              // 1 Sunday .. 7 Saturday

    // DateAdd: units "s", "n", "h", "d", "y", "w", "ww", "m", "q", "yyyy"; months clip to the
    // month's end (31 Jan + 1 month = 28/29 Feb). An unknown unit is failure 5; a result beyond
    // 31 Dec 9999 or before 1 Jan 100 is failure 5 as well.
    Date add(const QString& unit, long count) const;
    // DateDiff(unit, from, to): boundaries crossed from `from` to `to`, negative when `to` is
    // earlier. Same units as add.
    static long diff(const QString& unit, const Date& from, const Date& to);

    // Plain day-number arithmetic.
    Date plusDays(double days) const { return Date(fromLinear(linear() + days)); }

    friend bool operator==(const Date& a, const Date& b) { return a.m_serial == b.m_serial; }
    friend std::partial_ordering operator<=>(const Date& a, const Date& b) { return a.linear() <=> b.linear(); }

private:
    // Serial numbers before day 0 keep the time as a positive fraction (-1.25 is 29 Dec 06:00);
    // linear() is the monotonic day count used for arithmetic and comparison.
    double linear() const;
    static double fromLinear(double linear);
    double m_serial = 0.0;
};

} // namespace steplets
