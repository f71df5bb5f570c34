#include "TaskProperties.h"
#include "VdirFiles.h"
#include <functional>
#include <map>

namespace steplets::vdir {

namespace {

Failure refused(const QString& property, const Value& value, const QString& why)
{
    return vdirFailure(fail::InvalidArgument,
                       QStringLiteral("The value %1 is not valid for the property \"%2\": %3.")
                           .arg(value.debugText(), property, why));
}

Failure noSuchProperty(const QString& what, const QString& name)
{
    return vdirFailure(fail::NoSuchProperty, QStringLiteral("The %1 has no property \"%2\".").arg(what, name));
}

Failure readOnly(const QString& name)
{
    return vdirFailure(fail::InvalidArgument, QStringLiteral("The property \"%1\" is read-only.").arg(name));
}

struct TaskField {
    std::function<Value(const TaskData&)> get;
    std::function<void(TaskData&, const Value&, const Date&)> set;   // empty: read-only
};

// The couplings of completion: what the object model does when one of the four is written.
void markComplete(TaskData& t, const Date& today)
{
    t.Status = 2;
    t.PercentComplete = 100;
    if (t.DateCompleted.isNoDate())
        t.DateCompleted = today.datePart();
}

void markIncomplete(TaskData& t)
{
    if (t.Status == 2)
        t.Status = 0;
    if (t.PercentComplete == 100)
        t.PercentComplete = 0;
    t.DateCompleted = Date::noDate();
}

#define TEXT(F) {#F, {[](const TaskData& t) { return Value(t.F); }, \
                      [](TaskData& t, const Value& v, const Date&) { t.F = v.toText(); }}}
#define FLAG(F) {#F, {[](const TaskData& t) { return Value(t.F); }, \
                      [](TaskData& t, const Value& v, const Date&) { t.F = v.toBool(); }}}
#define DATE(F) {#F, {[](const TaskData& t) { return Value(t.F); }, \
                      [](TaskData& t, const Value& v, const Date&) { t.F = checkedDate(v, QStringLiteral(#F)); }}}
#define NUMBER(F, LO, HI) {#F, {[](const TaskData& t) { return Value(static_cast<int>(t.F)); }, \
                      [](TaskData& t, const Value& v, const Date&) { t.F = checkedNumber(v, QStringLiteral(#F), LO, HI); }}}

const std::map<QString, TaskField>& taskFields()
{
    static const std::map<QString, TaskField> fields = {
        TEXT(Subject), TEXT(BillingInformation), TEXT(Categories), TEXT(Companies), TEXT(Mileage),
        TEXT(ReminderSoundFile), TEXT(Role), TEXT(To),
        NUMBER(ActualWork, 0, 2147483647), NUMBER(TotalWork, 0, 2147483647), NUMBER(Importance, 0, 2),
        NUMBER(Sensitivity, 0, 3),
        FLAG(NoAging), FLAG(ReminderOverrideDefault), FLAG(ReminderPlaySound), FLAG(ReminderSet), FLAG(TeamTask),
        DATE(DueDate), DATE(StartDate), DATE(ReminderTime),
        {"DateCompleted", {[](const TaskData& t) { return Value(t.DateCompleted); },
                           [](TaskData& t, const Value& v, const Date&) { t.DateCompleted = checkedDate(v, QStringLiteral("DateCompleted")); }}},
        {"PercentComplete", {[](const TaskData& t) { return Value(static_cast<int>(t.PercentComplete)); },
                             [](TaskData& t, const Value& v, const Date& today) {
                                 const qint32 p = checkedNumber(v, QStringLiteral("PercentComplete"), 0, 100);
                                 if (p == 100) {
                                     markComplete(t, today);
                                 } else {
                                     if (t.Status == 2) { t.Status = p > 0 ? 1 : 0; t.DateCompleted = Date::noDate(); }
                                     t.PercentComplete = p;
                                 }
                             }}},
        {"Status", {[](const TaskData& t) { return Value(static_cast<int>(t.Status)); },
                    [](TaskData& t, const Value& v, const Date& today) {
                        const qint32 s = checkedNumber(v, QStringLiteral("Status"), 0, 4);
                        if (s == 2) {
                            markComplete(t, today);
                        } else {
                            if (t.Status == 2) markIncomplete(t);
                            t.Status = s;
                        }
                    }}},
        {"Complete", {[](const TaskData& t) { return Value(t.Status == 2); },
                      [](TaskData& t, const Value& v, const Date& today) {
                          if (v.toBool()) markComplete(t, today); else markIncomplete(t);
                      }}},
        {"IsRecurring", {[](const TaskData& t) { return Value(t.pattern.has_value()); }, nullptr}},
        {"DelegationState", {[](const TaskData& t) { return Value(t.assigned ? 1 : 0); }, nullptr}},
    };
    return fields;
}

struct PatternField {
    std::function<Value(const PatternData&)> get;
    std::function<void(PatternData&, const Value&)> set;
};

#define PNUMBER(F, LO, HI) {#F, {[](const PatternData& p) { return Value(p.F); }, \
                      [](PatternData& p, const Value& v) { p.F = checkedNumber(v, QStringLiteral(#F), LO, HI); }}}

const std::map<QString, PatternField>& patternFields()
{
    static const std::map<QString, PatternField> fields = {
        {"RecurrenceType", {[](const PatternData& p) { return Value(p.RecurrenceType); },
                            [](PatternData& p, const Value& v) {
                                const qint32 t = checkedNumber(v, QStringLiteral("RecurrenceType"), 0, 6);
                                if (t == 4)
                                    throw refused(QStringLiteral("RecurrenceType"), v, QStringLiteral("4 is no recurrence type"));
                                // A daily pattern with days would mean "every weekday"; a new type starts without them.
                                if (t == 0 && p.RecurrenceType != 0)
                                    p.DayOfWeekMask = 0;
                                p.RecurrenceType = t;
                            }}},
        PNUMBER(Interval, 1, 999), PNUMBER(DayOfWeekMask, 0, 127), PNUMBER(DayOfMonth, 0, 31),
        PNUMBER(Instance, 0, 5), PNUMBER(MonthOfYear, 0, 12),
        {"Occurrences", {[](const PatternData& p) { return Value(p.Occurrences); },
                         [](PatternData& p, const Value& v) {
                             p.Occurrences = checkedNumber(v, QStringLiteral("Occurrences"), 0, 999);
                             if (p.Occurrences > 0) p.NoEndDate = false;
                         }}},
        {"PatternStartDate", {[](const PatternData& p) { return Value(p.PatternStartDate); },
                              [](PatternData& p, const Value& v) { p.PatternStartDate = checkedDate(v, QStringLiteral("PatternStartDate")); }}},
        {"PatternEndDate", {[](const PatternData& p) { return Value(p.PatternEndDate); },
                            [](PatternData& p, const Value& v) {
                                p.PatternEndDate = checkedDate(v, QStringLiteral("PatternEndDate"));
                                if (!p.PatternEndDate.isNoDate()) p.NoEndDate = false;
                            }}},
        {"NoEndDate", {[](const PatternData& p) { return Value(p.NoEndDate); },
                       [](PatternData& p, const Value& v) {
                           p.NoEndDate = v.toBool();
                           if (p.NoEndDate) { p.PatternEndDate = Date::noDate(); p.Occurrences = 0; }
                       }}},
        {"Regenerate", {[](const PatternData& p) { return Value(p.Regenerate); },
                        [](PatternData& p, const Value& v) { p.Regenerate = v.toBool(); }}},
    };
    return fields;
}

template <typename Map>
typename Map::const_iterator findField(const Map& fields, const QString& name)
{
    for (auto it = fields.begin(); it != fields.end(); ++it)
        if (it->first.compare(name, Qt::CaseInsensitive) == 0)
            return it;
    return fields.end();
}

template <typename Map>
QStringList namesOf(const Map& fields)
{
    QStringList out;
    for (const auto& [name, field] : fields)
        out << name;
    return out;
}

} // namespace

Date checkedDate(const Value& value, const QString& property)
{
    const Date d = value.toDate();
    if (d < Date::fromParts(1601, 1, 1))
        throw refused(property, value, QStringLiteral("dates before 1 Jan 1601 are not accepted"));
    return d;
}

qint32 checkedNumber(const Value& value, const QString& property, qint32 low, qint32 high)
{
    const qint32 n = value.toLong();
    if (n < low || n > high)
        throw refused(property, value, QStringLiteral("it must lie between %1 and %2").arg(low).arg(high));
    return n;
}

const QStringList& taskPropertyNames()
{
    static const QStringList names = namesOf(taskFields());
    return names;
}

Value taskGet(const TaskData& task, const QString& name)
{
    const auto it = findField(taskFields(), name);
    if (it == taskFields().end())
        throw noSuchProperty(QStringLiteral("task"), name);
    return it->second.get(task);
}

void taskSet(TaskData& task, const QString& name, const Value& value, const Date& today)
{
    const auto it = findField(taskFields(), name);
    if (it == taskFields().end())
        throw noSuchProperty(QStringLiteral("task"), name);
    if (!it->second.set)
        throw readOnly(it->first);
    it->second.set(task, value, today);
}

const QStringList& patternPropertyNames()
{
    static const QStringList names = namesOf(patternFields());
    return names;
}

Value patternGet(const PatternData& pattern, const QString& name)
{
    const auto it = findField(patternFields(), name);
    if (it == patternFields().end())
        throw noSuchProperty(QStringLiteral("recurrence pattern"), name);
    return it->second.get(pattern);
}

void patternSet(PatternData& pattern, const QString& name, const Value& value)
{
    const auto it = findField(patternFields(), name);
    if (it == patternFields().end())
        throw noSuchProperty(QStringLiteral("recurrence pattern"), name);
    it->second.set(pattern, value);
}

PatternData freshPattern(const TaskData& task, const Date& today)
{
    PatternData p;
    const Date base = !task.DueDate.isNoDate() ? task.DueDate : !task.StartDate.isNoDate() ? task.StartDate : today;
    p.PatternStartDate = base.datePart();
    p.DayOfWeekMask = 1 << (base.weekday() - 1);
    return p;
}

} // namespace steplets::vdir
