// The demo data set of the admin tool: a handful of templates of each date type, two groups
// and the host's contacts.
#include "Database.h"
#include "Schema.h"
#include "SqlCipherConnection.h"
#include "StoreData.h"
#include "StoreErrors.h"
#include <QFileInfo>
#include <QJsonArray>

namespace steplets::sqlcipher {

namespace {

const QString kNoDate = QStringLiteral("4501-01-01T00:00:00");

// A template row with every column filled and no date. Processing keeps a Null column's value
// from the template before (as it must), so a text a template does not use is the empty text,
// never Null: otherwise one demo template's notes or categories would turn up on the next task.
QJsonObject templateRow(const QString& subject, int dateType)
{
    QJsonObject r;
    for (const char* n : {"BillingInformation", "Body", "Categories", "Companies", "Mileage", "ReminderSoundFile",
                          "Role", "UserPrompt1", "UserPrompt2", "UserPrompt3", "UserPrompt4", "AnchorDescription"})
        r.insert(QLatin1String(n), QString());
    for (const char* n : {"ActualWork", "Importance", "DayOfMonth", "DayOfWeekMask", "Instance", "Interval",
                          "MonthOfYear", "Occurrences", "RecurrenceType", "PercentComplete", "Sensitivity",
                          "Status", "TotalWork", "DueDateOffset", "PatternEndOffset", "PatternStartOffset",
                          "ReminderOffset", "StartDateOffset"})
        r.insert(QLatin1String(n), 0);
    for (const char* n : {"Complete", "IsRecurring", "NoEndDate", "Regenerate", "NoAging", "ReminderOverrideDefault",
                          "ReminderPlaySound", "ReminderSet", "TeamTask", "PromptForAssignee"})
        r.insert(QLatin1String(n), false);
    for (const char* n : {"DateCompleted", "DueDate", "ReminderTime", "StartDate"}) r.insert(QLatin1String(n), kNoDate);
    for (const char* n : {"PatternEndDate", "PatternStartDate"}) r.insert(QLatin1String(n), QStringLiteral("1899-12-30T00:00:00"));
    r.insert(QStringLiteral("Importance"), 1);
    r.insert(QStringLiteral("Subject"), subject);
    r.insert(QStringLiteral("DateType"), dateType);
    r.insert(QStringLiteral("FillIn1"), QStringLiteral("Subject field from template"));
    for (const char* n : {"FillIn2", "FillIn3", "FillIn4"}) r.insert(QLatin1String(n), QStringLiteral("[Empty]"));
    r.insert(QStringLiteral("Tag"), 0);
    return r;
}

QJsonObject with(QJsonObject row, std::initializer_list<std::pair<const char*, QJsonValue>> values)
{
    for (const auto& [name, value] : values) row.insert(QLatin1String(name), value);
    return row;
}

QJsonArray demoTemplates()
{
    return {
        with(templateRow(QStringLiteral("Quarterly tax filing"), 0),
             {{"ID", 1}, {"DueDate", "2026-04-15T17:00:00"}, {"StartDate", "2026-04-01T09:00:00"},
              {"ReminderSet", true}, {"ReminderTime", "2026-04-14T09:00:00"}, {"Importance", 2},
              {"Body", "Gather the quarter's receipts and file the estimated payment."},
              {"FillIn2", "Company Name (Outlook Contact Property)"}}),
        with(templateRow(QStringLiteral("Follow-up call"), 1),
             {{"ID", 2}, {"DueDateOffset", 2880}, {"ReminderSet", true}, {"ReminderOffset", 2820},
              {"Body", "Call to confirm the next steps agreed in the meeting."},
              {"FillIn2", "Full Name (Outlook Contact Property)"}, {"FillIn3", "Current Date"}}),
        with(templateRow(QStringLiteral("Weekly status report"), 1),
             {{"ID", 3}, {"DueDateOffset", 5760}, {"IsRecurring", true}, {"RecurrenceType", 1},
              {"DayOfWeekMask", 32}, {"Interval", 1}, {"NoEndDate", true}, {"Categories", "Reporting"}}),
        with(templateRow(QStringLiteral("Send engagement letter"), 2),
             {{"ID", 4}, {"DueDateOffset", 1440}, {"StartDateOffset", 0},
              {"AnchorDescription", "Date the engagement was signed"}, {"PromptForAssignee", true},
              {"FillIn2", "Company Name (Outlook Contact Property)"}}),
        with(templateRow(QStringLiteral("Prepare closing documents"), 2),
             {{"ID", 5}, {"DueDateOffset", -4320}, {"ReminderSet", true}, {"ReminderOffset", -5760},
              {"AnchorDescription", "Closing date"}, {"FillIn2", "Prompt for user input"},
              {"UserPrompt2", "Property address"}}),
        with(templateRow(QStringLiteral("Renew professional license"), 0),
             {{"ID", 6}, {"DueDate", "2026-12-31T00:00:00"}, {"Role", "Licensing"}}),
    };
}

QJsonObject group(int id, const char* name, bool anchor, bool response, const QJsonValue& description, const QJsonValue& prompt)
{
    return QJsonObject{{QStringLiteral("ID"), id}, {QStringLiteral("GroupName"), QLatin1String(name)},
                       {QStringLiteral("CommonAnchor"), anchor}, {QStringLiteral("CommonUserResponse"), response},
                       {QStringLiteral("CommonAnchorDescription"), description}, {QStringLiteral("Prompt"), prompt}};
}

QJsonArray assignments(std::initializer_list<std::pair<int, int>> pairs)
{
    QJsonArray rows;
    for (const auto& [g, t] : pairs) rows.append(QJsonObject{{QStringLiteral("GroupID"), g}, {QStringLiteral("TaskID"), t}});
    return rows;
}

void requireEmpty(const QString& dir, Db which, const QStringList& tables)
{
    auto db = openDatabase(connectionStringOf(which, dir));
    for (const QString& t : tables) {
        Statement& st = db->prepare(QStringLiteral("SELECT count(*) FROM ") + quoted(t));
        st.step();
        const long n = st.value(0, ColumnKind::Long).longOrZero();
        st.reset();
        if (n > 0)
            throw Failure(errc::EngineFailure,
                          QStringLiteral("%1 already holds data (%2 rows in %3); the demo data is only added to empty databases.")
                              .arg(QFileInfo(db->path()).fileName()).arg(n).arg(t),
                          src::Engine);
    }
}

} // namespace

void seedDemo(const QString& dir, const QList<DemoContactRow>& contacts)
{
    requireEmpty(dir, Db::Local, {QStringLiteral("tblSteplets"), QStringLiteral("tblTaskGroups"), QStringLiteral("tblGroupAssignments")});
    requireEmpty(dir, Db::Link, {QStringLiteral("tblContacts")});

    QJsonArray contactRows;
    int id = 1;
    for (const DemoContactRow& c : contacts)
        contactRows.append(QJsonObject{{QStringLiteral("ContactID"), id++}, {QStringLiteral("ContactEntryID"), c.entryId},
                                       {QStringLiteral("ContactName"), c.name}, {QStringLiteral("ContactAccount"), c.account},
                                       {QStringLiteral("Active"), true}});
    const QJsonObject local{
        {QStringLiteral("tblSteplets"), demoTemplates()},
        {QStringLiteral("tblTaskGroups"),
         QJsonArray{group(1, "New client onboarding", true, false, QStringLiteral("Date the engagement was signed"), QJsonValue::Null),
                    group(2, "Month-end close", false, true, QJsonValue::Null, QStringLiteral("Month being closed"))}},
        {QStringLiteral("tblGroupAssignments"), assignments({{1, 2}, {1, 4}, {2, 1}, {2, 3}, {2, 6}})},
    };
    loadStore(dir, QJsonObject{{QStringLiteral("local"), local},
                               {QStringLiteral("link"), QJsonObject{{QStringLiteral("tblContacts"), contactRows}}}});
}

} // namespace steplets::sqlcipher
