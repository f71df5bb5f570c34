#include "TemplateRow.h"
#include "EditedTemplate.h"
#include "FillinCatalogue.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/SafeTaskItem.h"
#include "platform/StoreGateway.h"
#include "platform/runtime/DateFormats.h"
#include "session/SessionContext.h"

namespace steplets::modTasks {

namespace {

const char* const kColumnNames[col::Last + 1] = {
    "ID", "ActualWork", "BillingInformation", "Body", "Categories", "Companies", "Complete",
    "DateCompleted", "DueDate", "Importance", "IsRecurring", "DayOfMonth", "DayOfWeekMask",
    "Instance", "Interval", "MonthOfYear", "NoEndDate", "Occurrences", "PatternEndDate",
    "PatternStartDate", "RecurrenceType", "Regenerate", "Mileage", "NoAging", "PercentComplete",
    "ReminderOverrideDefault", "ReminderPlaySound", "ReminderSet", "ReminderSoundFile",
    "ReminderTime", "Role", "Sensitivity", "StartDate", "Status", "", "", "Subject", "TeamTask",
    "TotalWork", "", "DueDateOffset", "PatternEndOffset", "PatternStartOffset", "ReminderOffset",
    "StartDateOffset", "DateType", "FillIn1", "FillIn2", "FillIn3", "FillIn4", "UserPrompt1",
    "UserPrompt2", "UserPrompt3", "UserPrompt4", "PromptForAssignee", "AnchorDescription"};

bool isTextColumn(int pos)
{
    switch (pos) {
    case col::BillingInformation: case col::Body: case col::Categories: case col::Companies:
    case col::Mileage: case col::ReminderSoundFile: case col::Role: case col::Subject:
        return true;
    default:
        return false;
    }
}

// The statement number of the write of a column copied from the task, in column order.
int columnLine(int pos) { return 100 + 10 * pos; }

// "Due today" is decided on the Medium Date texts, as the user would read them.
bool isToday(const Date& d, const Clock& now)
{
    const DateFormats& f = DateFormats::current();
    const QString medium = QStringLiteral("Medium Date");
    return f.format(d, medium) == f.format(now(), medium);
}

// Whole minutes from the reference to the date, or to the present moment for a date of today.
Value minutesToTodayOr(const Date& reference, const Date& d, const Clock& now)
{
    const Date target = isToday(d, now) ? now() : d;
    return Value(static_cast<qint64>(Date::diff(QStringLiteral("n"), reference, target)));
}

// Plain day numbers; the column makes a whole number of the fraction.
Value daysBetween(const Date& reference, const Date& d) { return Value(d.serial() - reference.serial()); }

} // namespace

QString TemplateColumnName(int pos)
{
    if (pos < 0 || pos > col::Last) throw Failure::subscript();
    return QString::fromLatin1(kColumnNames[pos]);
}

const Value& TemplateRow::value(int pos) const
{
    if (pos < 0 || pos > col::Last) throw Failure::subscript();
    return m_values[static_cast<std::size_t>(pos)];
}

void TemplateRow::read(Recordset& rs, int pos)
{
    if (pos < 0 || pos > col::Last) throw Failure::subscript();
    m_values[static_cast<std::size_t>(pos)] = rs.Fields(pos).value();
}

void TemplateRow::take(Recordset& rs, int pos)
{
    value(pos);
    Value v = rs.Fields(pos).value();
    if (!v.isNull()) m_values[static_cast<std::size_t>(pos)] = std::move(v);
}

bool TemplateRow::Flag(int pos) const
{
    const Value& v = value(pos);
    if (v.type() == Value::Type::Text && v.toText().isEmpty()) return false;
    return v.boolOrFalse();
}

void WriteRecurrence(Guard& g, int firstLine, ol::RecurrencePattern& pattern, const TemplateRow& row, const DateRule& rule)
{
    auto put = [&](int step, const char* name, const Value& v) {
        g(firstLine + 10 * step);
        pattern.set(QString::fromLatin1(name), v);
    };
    auto line = [&](int step) { g(firstLine + 10 * step); };
    const qint32 lType = row.Long(col::RecurrenceType);
    const bool bYearly = lType == ol::olRecursYearly || lType == ol::olRecursYearNth;
    put(0, "RecurrenceType", lType);
    // The interval of a yearly pattern is left to the task.
    line(1);
    if (!bYearly) put(1, "Interval", row.Long(col::Interval));
    line(2);
    if (!rule.fixed()) {
        // Distances: an end or a start only where one was stored, and never a count.
        line(3);
        if (auto d = rule.PatternEndDate(row.Long(col::PatternEndOffset))) put(3, "PatternEndDate", *d);
        line(4);
        if (auto d = rule.PatternStartDate(Date(), row.Long(col::PatternStartOffset))) put(4, "PatternStartDate", *d);
    } else {
        if (row.Flag(col::NoEndDate)) {
            put(5, "NoEndDate", true);
        } else {
            // The end as it was stored, not rolled; the start rolled.
            put(6, "PatternEndDate", row.DateAt(col::PatternEndDate));
            put(7, "Occurrences", row.Long(col::Occurrences));
        }
        put(8, "PatternStartDate", *rule.PatternStartDate(row.DateAt(col::PatternStartDate), 0));
    }
    line(9);
    if ((lType == ol::olRecursMonthNth || lType == ol::olRecursYearNth) && row.Long(col::Instance) < 6)
        put(9, "Instance", row.Long(col::Instance));
    line(10);
    if (row.Long(col::DayOfMonth) != 0) put(10, "DayOfMonth", row.Long(col::DayOfMonth));
    line(11);
    if (row.Long(col::DayOfWeekMask) != 0) put(11, "DayOfWeekMask", row.Long(col::DayOfWeekMask));
    line(12);
    if (row.Long(col::MonthOfYear) != 0) put(12, "MonthOfYear", row.Long(col::MonthOfYear));
    // Written once more for a yearly pattern, whatever it holds: the task may have moved it.
    line(13);
    if (bYearly) put(13, "MonthOfYear", row.Long(col::MonthOfYear));
    put(14, "Regenerate", row.Flag(col::Regenerate));
}

void SaveTemplateToDB(Bool16& bEdit, const Clock& now)
{
    Guard g(QStringLiteral("modTasks: SaveTemplateToDB"));
    g.attempt([&] {
        EditedTemplateState& t = EditedTemplate();
        g(20);
        SafeTaskItem oSafe;
        oSafe.setItem(t.TemplateItem);
        ol::TaskItem& item = must(t.TemplateItem);
        Recordset& rs = must(session().rsTemplates);
        const Date ref = t.ReferenceDate;

        g(30);
        if (!bEdit) rs.AddNew();

        // Columns copied from the task; a text column only when the task has a text.
        auto copy = [&](int pos) {
            g(columnLine(pos));
            const Value v = pos == col::Body ? Value(oSafe.Body()) : item.get(TemplateColumnName(pos));
            if (isTextColumn(pos) && v.textOrEmpty().isEmpty()) return;
            rs.Fields(pos).setValue(v);
        };
        for (int pos = col::ActualWork; pos <= col::IsRecurring; ++pos) copy(pos);

        // The pattern, or zeros, so that an edit wipes an earlier pattern.
        g(210);
        const bool bRecurring = item.get(QStringLiteral("IsRecurring")).toBool();
        for (int pos = col::DayOfMonth; pos <= col::Regenerate; ++pos) {
            g(columnLine(pos));
            rs.Fields(pos).setValue(bRecurring ? item.GetRecurrencePattern()->get(TemplateColumnName(pos))
                                               : Value(0));
        }

        for (int pos = col::Mileage; pos <= col::Status; ++pos) copy(pos);
        for (int pos = col::Subject; pos <= col::TotalWork; ++pos) copy(pos);

        // The distances. The due date has the today rule and no guard; the reminder neither.
        g(500);
        const Date dDue = item.get(QStringLiteral("DueDate")).toDate();
        g(510);
        rs.Fields(col::DueDateOffset).setValue(minutesToTodayOr(ref, dDue, now));

        g(520);
        if (item.get(QStringLiteral("IsRecurring")).toBool()) {
            g(530);
            const Date dEnd = item.GetRecurrencePattern()->get(QStringLiteral("PatternEndDate")).toDate();
            rs.Fields(col::PatternEndOffset).setValue(dEnd < Date(kLastDistanceDay) ? daysBetween(ref, dEnd) : Value(0));
            g(540);
            const Date dStart = item.GetRecurrencePattern()->get(QStringLiteral("PatternStartDate")).toDate();
            rs.Fields(col::PatternStartOffset).setValue(daysBetween(ref, dStart));
        } else {
            g(550); rs.Fields(col::PatternEndOffset).setValue(Value(0));
            g(560); rs.Fields(col::PatternStartOffset).setValue(Value(0));
        }

        g(570);
        const Date dReminder = item.get(QStringLiteral("ReminderTime")).toDate();
        rs.Fields(col::ReminderOffset).setValue(Value(static_cast<qint64>(Date::diff(QStringLiteral("n"), ref, dReminder))));

        g(580);
        const Date dStartDate = item.get(QStringLiteral("StartDate")).toDate();
        g(590);
        rs.Fields(col::StartDateOffset).setValue(dStartDate < Date(kLastDistanceDay) ? minutesToTodayOr(ref, dStartDate, now)
                                                                                   : Value(0));

        // The options of the edited template.
        g(600); rs.Fields(col::DateType).setValue(Value(t.DateType));
        for (int n = 1; n <= 4; ++n) {
            g(600 + 10 * n);
            const QString& sFillin = t.FillIn(n);
            rs.Fields(col::FillIn1 + n - 1).setValue(sFillin.isEmpty() ? EmptyFillin() : sFillin);
        }
        auto writeIfText = [&](int line, int pos, const QString& text) {
            g(line);
            if (!text.isEmpty()) rs.Fields(pos).setValue(text);
        };
        for (int n = 1; n <= 4; ++n) writeIfText(640 + 10 * n, col::UserPrompt1 + n - 1, t.UserPrompt(n));
        writeIfText(690, col::PromptForAssignee, t.PromptForAssignee);
        writeIfText(700, col::AnchorDescription, t.AnchorDescription);

        g(710); rs.Update();
        // The temporary task has done its work; nothing keeps its EntryID.
        g(720); item.Delete();
    });
}

} // namespace steplets::modTasks
