#include "TaskCalendar.h"
#include "Recurrence.h"
#include <QDateTime>
#include <QStringList>
#include <QTimeZone>
#include <libical/ical.h>
#include <array>
#include <functional>
#include <memory>

namespace steplets::vdir {

namespace {

using Component = std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)>;

QString prefix() { return QStringLiteral("X-STEPLETS-"); }
QString text(const char* s) { return s ? QString::fromUtf8(s) : QString(); }
QByteArray utf8(const QString& s) { return s.toUtf8(); }

// --- dates ---------------------------------------------------------------------------------

icaltimetype floatingTime(const Date& d)
{
    icaltimetype t = icaltime_null_time();
    const QDate day = d.date();
    const QTime time = d.time();
    t.year = day.year();
    t.month = day.month();
    t.day = day.day();
    t.hour = time.hour();
    t.minute = time.minute();
    t.second = time.second();
    return t;
}

// COMPLETED and alarm triggers must be UTC; the local wall time is converted.
icaltimetype utcTime(const Date& d)
{
    const QDateTime utc = d.toQDateTime().toUTC();
    icaltimetype t = floatingTime(Date::fromQDateTime(utc));
    t.zone = icaltimezone_get_utc_timezone();
    return t;
}

// Any iCalendar time as the local wall time: floating as it stands, UTC and zoned converted.
std::optional<Date> localDate(icaltimetype t)
{
    if (icaltime_is_null_time(t) || !icaltime_is_valid_time(t))
        return std::nullopt;
    if (t.is_date)
        return Date::fromParts(t.year, t.month, t.day);
    if (t.zone && !icaltime_is_utc(t))
        t = icaltime_convert_to_zone(t, icaltimezone_get_utc_timezone());
    const Date wall = Date::fromParts(t.year, t.month, t.day, t.hour, t.minute, t.second);
    if (!icaltime_is_utc(t))
        return wall;
    QDateTime utc(wall.date(), wall.time(), QTimeZone::utc());
    return Date::fromQDateTime(utc.toLocalTime());
}

// --- this backend's X- properties of plain fields ---------------------------------------------

struct Extra {
    const char* name;
    std::function<QString(const TaskData&)> get;       // empty text: the default, not written
    std::function<void(TaskData&, const QString&)> set;
};

QString flag(bool b) { return b ? QStringLiteral("TRUE") : QString(); }
bool isTrue(const QString& v) { return v.compare(QLatin1String("TRUE"), Qt::CaseInsensitive) == 0; }
QString number(qint32 n) { return n ? QString::number(n) : QString(); }

const std::vector<Extra>& extras()
{
    static const std::vector<Extra> list = {
        {"BILLINGINFORMATION", [](const TaskData& t) { return t.BillingInformation; },
         [](TaskData& t, const QString& v) { t.BillingInformation = v; }},
        {"COMPANIES", [](const TaskData& t) { return t.Companies; }, [](TaskData& t, const QString& v) { t.Companies = v; }},
        {"MILEAGE", [](const TaskData& t) { return t.Mileage; }, [](TaskData& t, const QString& v) { t.Mileage = v; }},
        {"ROLE", [](const TaskData& t) { return t.Role; }, [](TaskData& t, const QString& v) { t.Role = v; }},
        {"TO", [](const TaskData& t) { return t.To; }, [](TaskData& t, const QString& v) { t.To = v; }},
        {"REMINDERSOUNDFILE", [](const TaskData& t) { return t.ReminderSoundFile; },
         [](TaskData& t, const QString& v) { t.ReminderSoundFile = v; }},
        {"ACTUALWORK", [](const TaskData& t) { return number(t.ActualWork); },
         [](TaskData& t, const QString& v) { t.ActualWork = v.toInt(); }},
        {"TOTALWORK", [](const TaskData& t) { return number(t.TotalWork); },
         [](TaskData& t, const QString& v) { t.TotalWork = v.toInt(); }},
        {"NOAGING", [](const TaskData& t) { return flag(t.NoAging); }, [](TaskData& t, const QString& v) { t.NoAging = isTrue(v); }},
        {"REMINDEROVERRIDEDEFAULT", [](const TaskData& t) { return flag(t.ReminderOverrideDefault); },
         [](TaskData& t, const QString& v) { t.ReminderOverrideDefault = isTrue(v); }},
        {"REMINDERPLAYSOUND", [](const TaskData& t) { return flag(t.ReminderPlaySound); },
         [](TaskData& t, const QString& v) { t.ReminderPlaySound = isTrue(v); }},
        {"TEAMTASK", [](const TaskData& t) { return flag(t.TeamTask); }, [](TaskData& t, const QString& v) { t.TeamTask = isTrue(v); }},
        {"ASSIGNED", [](const TaskData& t) { return flag(t.assigned); }, [](TaskData& t, const QString& v) { t.assigned = isTrue(v); }},
        // What STATUS, CLASS and VALARM cannot say.
        {"STATUS", [](const TaskData& t) { return t.Status >= 3 ? QString::number(t.Status) : QString(); },
         [](TaskData& t, const QString& v) { t.Status = v.toInt(); }},
        {"SENSITIVITY", [](const TaskData& t) { return t.Sensitivity == 1 ? QStringLiteral("1") : QString(); },
         [](TaskData& t, const QString& v) { t.Sensitivity = v.toInt(); }},
        {"REMINDERTIME", [](const TaskData& t) {
             return !t.ReminderSet && !t.ReminderTime.isNoDate() ? t.ReminderTime.toIso() : QString(); },
         [](TaskData& t, const QString& v) { t.ReminderTime = Date::fromIso(v).value_or(Date::noDate()); }},
    };
    return list;
}

// --- properties with parameters ------------------------------------------------------------------

icalproperty* xProperty(const QString& name, const QString& value)
{
    icalproperty* p = icalproperty_new_x(utf8(value).constData());
    icalproperty_set_x_name(p, utf8(name).constData());
    return p;
}

void addXParam(icalproperty* p, const QString& name, const QString& value)
{
    icalparameter* param = icalparameter_new_x(utf8(value).constData());
    icalparameter_set_xname(param, utf8(name).constData());
    icalproperty_add_parameter(p, param);
}

QString xParam(icalproperty* p, const QString& name)
{
    for (icalparameter* a = icalproperty_get_first_parameter(p, ICAL_X_PARAMETER); a;
         a = icalproperty_get_next_parameter(p, ICAL_X_PARAMETER)) {
        if (name.compare(text(icalparameter_get_xname(a)), Qt::CaseInsensitive) == 0) {
            QString v = text(icalparameter_get_xvalue(a));
            if (v.size() >= 2 && v.startsWith(QLatin1Char('"')) && v.endsWith(QLatin1Char('"')))
                v = v.mid(1, v.size() - 2);
            return v;
        }
    }
    return {};
}

// The value written for a user property whose text is empty.
const QString kNoValue = QStringLiteral("-");

QString userValueText(const UserPropertyData& u)
{
    if (u.value.isNull())
        return {};
    switch (u.type) {
    case 5: return u.value.toDate().toIso();
    case 6: return u.value.toBool() ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    case 3: case 14: return QString::number(u.value.toDouble(), 'g', 17);
    case 1: return u.value.toText();
    default: return QString::number(u.value.toLong());
    }
}

Value userValueOf(int type, const QString& v)
{
    switch (type) {
    case 5: return Value(Date::fromIso(v).value_or(Date::noDate()));
    case 6: return Value(isTrue(v));
    case 3: case 14: return Value(v.toDouble());
    case 1: return Value(v);
    default: return Value(v.toInt());
    }
}

// --- the VTODO ----------------------------------------------------------------------------------

int priorityOf(int importance) { return importance == 2 ? 1 : importance == 0 ? 9 : 5; }
int importanceOf(int priority) { return priority == 0 || priority == 5 ? 1 : priority < 5 ? 2 : 0; }

icalproperty_status statusOf(int status)
{
    switch (status) {
    case 1: return ICAL_STATUS_INPROCESS;
    case 2: return ICAL_STATUS_COMPLETED;
    default: return ICAL_STATUS_NEEDSACTION;
    }
}

void readProperty(TaskData& t, icalproperty* p)
{
    switch (icalproperty_isa(p)) {
    case ICAL_UID_PROPERTY: t.uid = text(icalproperty_get_uid(p)); break;
    case ICAL_SUMMARY_PROPERTY: t.Subject = text(icalproperty_get_summary(p)); break;
    case ICAL_DESCRIPTION_PROPERTY: t.Body = text(icalproperty_get_description(p)); break;
    case ICAL_COMPLETED_PROPERTY:
        t.DateCompleted = localDate(icalproperty_get_completed(p)).value_or(Date::noDate());
        break;
    case ICAL_PERCENTCOMPLETE_PROPERTY: t.PercentComplete = qBound(0, icalproperty_get_percentcomplete(p), 100); break;
    case ICAL_STATUS_PROPERTY:
        switch (icalproperty_get_status(p)) {
        case ICAL_STATUS_INPROCESS: t.Status = 1; break;
        case ICAL_STATUS_COMPLETED: t.Status = 2; break;
        case ICAL_STATUS_CANCELLED: t.Status = 4; break;
        default: t.Status = 0;
        }
        break;
    case ICAL_PRIORITY_PROPERTY:
        t.Importance = importanceOf(icalproperty_get_priority(p));
        break;
    case ICAL_CLASS_PROPERTY:
        switch (icalproperty_get_class(p)) {
        case ICAL_CLASS_PRIVATE: t.Sensitivity = 2; break;
        case ICAL_CLASS_CONFIDENTIAL: t.Sensitivity = 3; break;
        default: t.Sensitivity = 0;
        }
        break;
    case ICAL_CATEGORIES_PROPERTY: {
        const QString c = text(icalproperty_get_categories(p)).trimmed();
        if (!c.isEmpty())
            t.Categories += (t.Categories.isEmpty() ? QString() : QStringLiteral(", ")) + c;
        break;
    }
    case ICAL_RRULE_PROPERTY:
        t.pattern = patternOfRrule(text(icalproperty_get_value_as_string(p)));
        break;
    default: break;
    }
}

// Reads the first alarm: an absolute trigger as it stands, a relative one from DTSTART or DUE.
void readAlarm(TaskData& t, icalcomponent* todo)
{
    icalcomponent* alarm = icalcomponent_get_first_component(todo, ICAL_VALARM_COMPONENT);
    if (!alarm)
        return;
    icalproperty* trig = icalcomponent_get_first_property(alarm, ICAL_TRIGGER_PROPERTY);
    if (!trig)
        return;
    const icaltriggertype trigger = icalproperty_get_trigger(trig);
    std::optional<Date> when = localDate(trigger.time);
    if (!when) {
        icalparameter* related = icalproperty_get_first_parameter(trig, ICAL_RELATED_PARAMETER);
        const bool fromEnd = related && icalparameter_get_related(related) == ICAL_RELATED_END;
        const Date base = fromEnd ? t.DueDate : t.StartDate;
        if (base.isNoDate())
            return;
        when = base.plusDays(icaldurationtype_as_int(trigger.duration) / 86400.0);
    }
    t.ReminderSet = true;
    t.ReminderTime = *when;
}

std::optional<TaskData> readTodo(icalcomponent* todo)
{
    TaskData t;
    QList<QPair<QString, QString>> patternX;
    for (icalproperty* p = icalcomponent_get_first_property(todo, ICAL_ANY_PROPERTY); p;
         p = icalcomponent_get_next_property(todo, ICAL_ANY_PROPERTY)) {
        if (icalproperty_isa(p) != ICAL_X_PROPERTY) {
            readProperty(t, p);
            continue;
        }
        const QString name = text(icalproperty_get_x_name(p)).toUpper();
        const QString value = text(icalproperty_get_x(p));
        if (name.startsWith(patternExtraPrefix())) {
            patternX << qMakePair(name, value);
        } else if (name == prefix() + QLatin1String("LINK")) {
            icalparameter* cn = icalproperty_get_first_parameter(p, ICAL_CN_PARAMETER);
            LinkData link{xParam(p, prefix() + QLatin1String("ENTRYID")), value, cn ? text(icalparameter_get_cn(cn)) : QString()};
            if (link.entryId.isEmpty())
                link.entryId = link.uid;
            t.links << link;
        } else if (name == prefix() + QLatin1String("USERPROPERTY")) {
            UserPropertyData u;
            u.name = xParam(p, prefix() + QLatin1String("NAME"));
            u.type = xParam(p, prefix() + QLatin1String("TYPE")).toInt();
            u.inFolderFields = isTrue(xParam(p, prefix() + QLatin1String("FOLDER")));
            u.value = isTrue(xParam(p, prefix() + QLatin1String("EMPTY"))) ? Value(QString()) : userValueOf(u.type, value);
            t.userProperties << u;
        } else if (name.startsWith(prefix())) {
            for (const Extra& e : extras())
                if (name == prefix() + QLatin1String(e.name))
                    e.set(t, value);
        }
    }
    if (const auto start = localDate(icalcomponent_get_dtstart(todo)))
        t.StartDate = *start;
    if (icalcomponent_get_first_property(todo, ICAL_DUE_PROPERTY))
        t.DueDate = localDate(icalcomponent_get_due(todo)).value_or(Date::noDate());
    readAlarm(t, todo);
    if (t.pattern || !patternX.isEmpty()) {
        if (!t.pattern)
            t.pattern = patternOfRrule(QString());
        for (const auto& [name, value] : patternX)
            applyPatternExtra(*t.pattern, name, value);
    }
    return t;
}

// --- writing ------------------------------------------------------------------------------------

// Removes what this backend maps, so that what is left is what other clients put there.
void stripMapped(icalcomponent* todo)
{
    static const std::array<icalproperty_kind, 16> mapped = {
        ICAL_UID_PROPERTY, ICAL_SUMMARY_PROPERTY, ICAL_DESCRIPTION_PROPERTY, ICAL_DTSTART_PROPERTY,
        ICAL_DUE_PROPERTY, ICAL_DURATION_PROPERTY, ICAL_COMPLETED_PROPERTY, ICAL_PERCENTCOMPLETE_PROPERTY,
        ICAL_STATUS_PROPERTY, ICAL_PRIORITY_PROPERTY, ICAL_CLASS_PROPERTY, ICAL_CATEGORIES_PROPERTY,
        ICAL_RRULE_PROPERTY, ICAL_DTSTAMP_PROPERTY, ICAL_LASTMODIFIED_PROPERTY, ICAL_SEQUENCE_PROPERTY};
    std::vector<icalproperty*> doomed;
    for (icalproperty* p = icalcomponent_get_first_property(todo, ICAL_ANY_PROPERTY); p;
         p = icalcomponent_get_next_property(todo, ICAL_ANY_PROPERTY)) {
        const icalproperty_kind k = icalproperty_isa(p);
        const bool ours = k == ICAL_X_PROPERTY && text(icalproperty_get_x_name(p)).toUpper().startsWith(prefix());
        if (ours || std::find(mapped.begin(), mapped.end(), k) != mapped.end())
            doomed.push_back(p);
    }
    for (icalproperty* p : doomed) {
        icalcomponent_remove_property(todo, p);
        icalproperty_free(p);
    }
    if (icalcomponent* alarm = icalcomponent_get_first_component(todo, ICAL_VALARM_COMPONENT)) {
        icalcomponent_remove_component(todo, alarm);
        icalcomponent_free(alarm);
    }
}

void addAlarm(icalcomponent* todo, const TaskData& t)
{
    icalcomponent* alarm = icalcomponent_new_valarm();
    icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
    icalcomponent_add_property(alarm, icalproperty_new_description(
        utf8(t.Subject.isEmpty() ? QStringLiteral("Reminder") : t.Subject).constData()));
    icaltriggertype trigger;
    trigger.time = utcTime(t.ReminderTime);
    trigger.duration = icaldurationtype_null_duration();
    icalproperty* trig = icalproperty_new_trigger(trigger);
    icalproperty_add_parameter(trig, icalparameter_new_value(ICAL_VALUE_DATETIME));
    icalcomponent_add_property(alarm, trig);
    icalcomponent_add_component(todo, alarm);
}

void writeTodo(icalcomponent* todo, const TaskData& t)
{
    auto add = [todo](icalproperty* p) { icalcomponent_add_property(todo, p); };
    add(icalproperty_new_uid(utf8(t.uid).constData()));
    add(icalproperty_new_dtstamp(icaltime_current_time_with_zone(icaltimezone_get_utc_timezone())));
    add(icalproperty_new_lastmodified(icaltime_current_time_with_zone(icaltimezone_get_utc_timezone())));
    if (!t.Subject.isEmpty())
        add(icalproperty_new_summary(utf8(t.Subject).constData()));
    if (!t.Body.isEmpty())
        add(icalproperty_new_description(utf8(t.Body).constData()));
    if (!t.StartDate.isNoDate())
        add(icalproperty_new_dtstart(floatingTime(t.StartDate)));
    if (!t.DueDate.isNoDate())
        add(icalproperty_new_due(floatingTime(t.DueDate)));
    if (!t.DateCompleted.isNoDate())
        add(icalproperty_new_completed(utcTime(t.DateCompleted)));
    if (t.PercentComplete != 0)
        add(icalproperty_new_percentcomplete(t.PercentComplete));
    add(icalproperty_new_status(statusOf(t.Status)));
    add(icalproperty_new_priority(priorityOf(t.Importance)));
    add(icalproperty_new_class(t.Sensitivity == 3 ? ICAL_CLASS_CONFIDENTIAL
                               : t.Sensitivity == 0 ? ICAL_CLASS_PUBLIC : ICAL_CLASS_PRIVATE));
    for (const QString& c : t.Categories.split(QLatin1Char(','), Qt::SkipEmptyParts))
        if (!c.trimmed().isEmpty())
            add(icalproperty_new_categories(utf8(c.trimmed()).constData()));
    if (t.pattern) {
        add(icalproperty_new_rrule(icalrecurrencetype_from_string(utf8(rruleOf(*t.pattern)).constData())));
        for (const auto& [name, value] : patternExtras(*t.pattern))
            add(xProperty(name, value));
    }
    for (const Extra& e : extras()) {
        const QString v = e.get(t);
        if (!v.isEmpty())
            add(xProperty(prefix() + QLatin1String(e.name), v));
    }
    for (const LinkData& l : t.links) {
        icalproperty* p = xProperty(prefix() + QLatin1String("LINK"), l.uid);
        icalproperty_add_parameter(p, icalparameter_new_cn(utf8(l.name).constData()));
        addXParam(p, prefix() + QLatin1String("ENTRYID"), l.entryId);
        add(p);
    }
    for (const UserPropertyData& u : t.userProperties) {
        // An X- property needs a value to be read back (libical drops an empty one and counts
        // it an error), so an empty text is written as a marked placeholder.
        const QString value = userValueText(u);
        icalproperty* p = xProperty(prefix() + QLatin1String("USERPROPERTY"), value.isEmpty() ? kNoValue : value);
        if (value.isEmpty())
            addXParam(p, prefix() + QLatin1String("EMPTY"), QStringLiteral("TRUE"));
        addXParam(p, prefix() + QLatin1String("NAME"), u.name);
        addXParam(p, prefix() + QLatin1String("TYPE"), QString::number(u.type));
        addXParam(p, prefix() + QLatin1String("FOLDER"), u.inFolderFields ? QStringLiteral("TRUE") : QStringLiteral("FALSE"));
        add(p);
    }
    if (t.ReminderSet && !t.ReminderTime.isNoDate())
        addAlarm(todo, t);
}

Component freshCalendar()
{
    Component cal(icalcomponent_new_vcalendar(), icalcomponent_free);
    icalcomponent_add_property(cal.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(cal.get(), icalproperty_new_prodid("-//Brackenfell Software//Steplets//EN"));
    icalcomponent_add_component(cal.get(), icalcomponent_new_vtodo());
    return cal;
}

// The calendar of a file, checked: exactly one VCALENDAR, exactly one VTODO, complete.
Component parseCalendar(const QByteArray& ics, QString* error)
{
    auto fail = [error](const QString& why) {
        if (error)
            *error = why;
        return Component(nullptr, icalcomponent_free);
    };
    const QByteArray trimmed = ics.trimmed();
    if (trimmed.isEmpty())
        return fail(QStringLiteral("the file is empty"));
    if (!trimmed.toUpper().endsWith("END:VCALENDAR"))
        return fail(QStringLiteral("the file is truncated or malformed: it does not end with END:VCALENDAR"));
    Component cal(icalparser_parse_string(ics.constData()), icalcomponent_free);
    if (!cal)
        return fail(QStringLiteral("the file holds no iCalendar data"));
    if (icalcomponent_isa(cal.get()) != ICAL_VCALENDAR_COMPONENT)
        return fail(QStringLiteral("the file holds more than one calendar"));
    const int todos = icalcomponent_count_components(cal.get(), ICAL_VTODO_COMPONENT);
    const int others = icalcomponent_count_components(cal.get(), ICAL_ANY_COMPONENT)
                       - icalcomponent_count_components(cal.get(), ICAL_VTIMEZONE_COMPONENT);
    if (todos != 1 || others != 1)
        return fail(QStringLiteral("the file holds %1 components where one task belongs").arg(others));
    icalcomponent* todo = icalcomponent_get_first_component(cal.get(), ICAL_VTODO_COMPONENT);
    if (icalcomponent_count_errors(todo) > 0)
        return fail(QStringLiteral("the task in the file is malformed"));
    return cal;
}

} // namespace

QString taskExtraPrefix() { return prefix(); }

std::optional<TaskData> readTaskCalendar(const QByteArray& ics, QString* error)
{
    Component cal = parseCalendar(ics, error);
    if (!cal)
        return std::nullopt;
    try {
        return readTodo(icalcomponent_get_first_component(cal.get(), ICAL_VTODO_COMPONENT));
    } catch (const Failure& f) {
        // A value the task cannot hold (a date after 9999) makes the file no task of ours.
        if (error)
            *error = QStringLiteral("a value in the task is out of range (%1)").arg(f.description());
        return std::nullopt;
    }
}

QByteArray writeTaskCalendar(const TaskData& task, const QByteArray& previous)
{
    Component cal(nullptr, icalcomponent_free);
    if (!previous.isEmpty())
        cal = parseCalendar(previous, nullptr);
    if (!cal)
        cal = freshCalendar();
    icalcomponent* todo = icalcomponent_get_first_component(cal.get(), ICAL_VTODO_COMPONENT);
    stripMapped(todo);
    writeTodo(todo, task);
    char* out = icalcomponent_as_ical_string_r(cal.get());
    QByteArray bytes(out);
    icalmemory_free_buffer(out);
    return bytes;
}

} // namespace steplets::vdir
