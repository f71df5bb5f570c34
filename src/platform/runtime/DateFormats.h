#pragma once
// The named date and time formats: "Short Date", "Medium Date", "Medium Time", "dddd", and
// "General Date" (the plain conversion of a date to text). Two renderings: fixed English, used by
// scenarios and tests whatever the machine's locale, and the system locale, used by the desktop.
#include "Date.h"
#include <QLocale>
#include <QString>
#include <memory>

namespace steplets {

class DateFormats {
public:
    virtual ~DateFormats() = default;
    // An unknown name is taken as a custom pattern of the run-time's letters (d, m, y, h, n, s).
    virtual QString format(const Date& d, const QString& name) const = 0;

    // The rendering in force for this process; fixed English until the program chooses another.
    static const DateFormats& current();
    static void setCurrent(std::shared_ptr<const DateFormats> formats);
};

// M/d/yyyy, dd-MMM-yy, hh:mm AM/PM, the English weekday; General Date "M/d/yyyy h:mm:ss AM/PM".
class FixedEnglishFormats : public DateFormats {
public:
    QString format(const Date& d, const QString& name) const override;
};

class LocaleFormats : public DateFormats {
public:
    explicit LocaleFormats(QLocale locale = QLocale::system()) : m_locale(std::move(locale)) {}
    QString format(const Date& d, const QString& name) const override;

private:
    QLocale m_locale;
};

} // namespace steplets
