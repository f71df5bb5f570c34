#include "DateFormats.h"
#include <QStringList>

namespace steplets {

namespace {
std::shared_ptr<const DateFormats>& currentSlot()
{
    static std::shared_ptr<const DateFormats> slot = std::make_shared<FixedEnglishFormats>();
    return slot;
}

// A pattern of the run-time's letters (d dd ddd dddd m mm mmm mmmm yy yyyy h hh n nn s ss
// AM/PM) rendered with a locale's names. "m" after an hour means minutes, as the run-time reads it.
QString customFormat(const Date& d, const QString& pattern, const QLocale& loc)
{
    const QDate date = d.date();
    const QTime time = d.time();
    const bool twelveHour = pattern.contains(QLatin1String("AM/PM"), Qt::CaseInsensitive);
    QString out;
    bool afterHour = false;
    for (int i = 0; i < pattern.size();) {
        const QChar c = pattern.at(i).toLower();
        int n = 1;
        while (i + n < pattern.size() && pattern.at(i + n).toLower() == c) ++n;
        if (pattern.mid(i, 5).compare(QLatin1String("AM/PM"), Qt::CaseInsensitive) == 0) {
            out += time.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
            i += 5;
            continue;
        }
        auto num = [&](int v, int width) { return QStringLiteral("%1").arg(v, width, 10, QLatin1Char('0')); };
        if (c == QLatin1Char('d')) {
            if (n == 1) out += QString::number(date.day());
            else if (n == 2) out += num(date.day(), 2);
            else if (n == 3) out += loc.dayName(date.dayOfWeek(), QLocale::ShortFormat);
            else out += loc.dayName(date.dayOfWeek(), QLocale::LongFormat);
        } else if (c == QLatin1Char('m') && !afterHour) {
            if (n == 1) out += QString::number(date.month());
            else if (n == 2) out += num(date.month(), 2);
            else if (n == 3) out += loc.monthName(date.month(), QLocale::ShortFormat);
            else out += loc.monthName(date.month(), QLocale::LongFormat);
        } else if (c == QLatin1Char('n') || (c == QLatin1Char('m') && afterHour)) {
            out += n >= 2 ? num(time.minute(), 2) : QString::number(time.minute());
            afterHour = false;
        } else if (c == QLatin1Char('y')) {
            out += n >= 3 ? num(date.year(), 4) : num(date.year() % 100, 2);
        } else if (c == QLatin1Char('h')) {
            int h = time.hour();
            if (twelveHour) h = h % 12 == 0 ? 12 : h % 12;
            out += n >= 2 ? num(h, 2) : QString::number(h);
            afterHour = true;
        } else if (c == QLatin1Char('s')) {
            out += n >= 2 ? num(time.second(), 2) : QString::number(time.second());
        } else {
            out += pattern.mid(i, n);
        }
        i += n;
    }
    return out;
}

// The plain conversion: the date alone at midnight, the time alone on day 0, else both.
QString generalDate(const Date& d, const QString& datePart, const QString& timePart)
{
    if (d.time() == QTime(0, 0)) return datePart;
    if (d.datePart().isZero()) return timePart;
    return datePart + QLatin1Char(' ') + timePart;
}
} // namespace

const DateFormats& DateFormats::current() { return *currentSlot(); }
void DateFormats::setCurrent(std::shared_ptr<const DateFormats> formats)
{
    if (formats) currentSlot() = std::move(formats);
}

QString FixedEnglishFormats::format(const Date& d, const QString& name) const
{
    const QLocale en(QLocale::English, QLocale::UnitedStates);
    if (name == QLatin1String("Short Date")) return customFormat(d, QStringLiteral("m/d/yyyy"), en);
    if (name == QLatin1String("Medium Date")) return customFormat(d, QStringLiteral("dd-mmm-yy"), en);
    if (name == QLatin1String("Long Date")) return customFormat(d, QStringLiteral("dddd, mmmm d, yyyy"), en);
    if (name == QLatin1String("Medium Time")) return customFormat(d, QStringLiteral("hh:nn AM/PM"), en);
    if (name == QLatin1String("Short Time")) return customFormat(d, QStringLiteral("hh:nn"), en);
    if (name == QLatin1String("Long Time")) return customFormat(d, QStringLiteral("h:nn:ss AM/PM"), en);
    if (name == QLatin1String("General Date"))
        return generalDate(d, customFormat(d, QStringLiteral("m/d/yyyy"), en), customFormat(d, QStringLiteral("h:nn:ss AM/PM"), en));
    return customFormat(d, name, en);
}

QString LocaleFormats::format(const Date& d, const QString& name) const
{
    const QDate date = d.date();
    const QTime time = d.time();
    if (name == QLatin1String("Short Date")) return m_locale.toString(date, QLocale::ShortFormat);
    if (name == QLatin1String("Medium Date")) return m_locale.toString(date, QStringLiteral("dd-MMM-yy"));
    if (name == QLatin1String("Long Date")) return m_locale.toString(date, QLocale::LongFormat);
    if (name == QLatin1String("Medium Time") || name == QLatin1String("Short Time"))
        return m_locale.toString(time, QLocale::ShortFormat);
    if (name == QLatin1String("Long Time")) return m_locale.toString(time, m_locale.timeFormat(QLocale::LongFormat).remove(QLatin1String(" t")));
    if (name == QLatin1String("dddd")) return m_locale.dayName(date.dayOfWeek(), QLocale::LongFormat);
    if (name == QLatin1String("General Date"))
        return generalDate(d, m_locale.toString(date, QLocale::ShortFormat), m_locale.toString(time, QLocale::ShortFormat));
    return customFormat(d, name, m_locale);
}

} // namespace steplets
