#include "TaskForEdit.h"
#include "EditedTemplate.h"
#include "TemplateRow.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/SafeTaskItem.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"

namespace steplets::modTasks {

namespace {

// The columns the edit brings back, in the order they are read.
bool isReadBack(int pos)
{
    return (pos >= col::ActualWork && pos <= col::Status) || (pos >= col::Subject && pos <= col::TotalWork)
        || (pos >= col::DueDateOffset && pos <= col::PromptForAssignee);
}

// Columns 45 to 54 replace what the options dialog left in the edited template; a Null keeps it.
void takeOptions(const TemplateRow& row, EditedTemplateState& t)
{
    if (!row.isNull(col::DateType)) t.DateType = row.Short(col::DateType);
    for (int n = 1; n <= 4; ++n) {
        if (!row.isNull(col::FillIn1 + n - 1)) t.FillIn(n) = row.Text(col::FillIn1 + n - 1);
        if (!row.isNull(col::UserPrompt1 + n - 1)) t.UserPrompt(n) = row.Text(col::UserPrompt1 + n - 1);
    }
    if (!row.isNull(col::PromptForAssignee)) t.PromptForAssignee = row.Text(col::PromptForAssignee);
}

} // namespace

void CreateTaskFromTemplateForEdit(Bool16& /*bEdit*/, const Clock& now)
{
    Guard g(QStringLiteral("modTasks: CreateTaskFromTemplateForEdit"));
    std::shared_ptr<ol::MAPIFolder> olFolder;
    std::shared_ptr<Recordset> rs;
    auto release = [&] {
        rs.reset();
        olFolder.reset();
    };
    g.run([&] {
        EditedTemplateState& t = EditedTemplate();
        const SessionContext& s = session();

        // The first row of the filter.
        g(20); olFolder = must(s.olNS).GetFolderFromID(s.sTaskFolderEID, s.sTaskFolderSID);
        g(30); rs = s.rsTemplates;
        must(rs).MoveFirst();
        g(40);
        if (rs->RecordCount() < 1) return;
        TemplateRow row;
        for (int pos = col::ActualWork; pos <= col::Last; ++pos) {
            if (!isReadBack(pos)) continue;
            g(100 + 10 * pos); row.read(*rs, pos);
        }
        g(650); takeOptions(row, t);

        // The reference date of the distances.
        g(660);
        const int iDateType = t.DateType;
        const Date dReference = BaseDate(iDateType, Date(), t.ReferenceDate, now);

        // The item, with the one way to its body.
        g(670); t.TemplateItem = must(olFolder).Items().Add();
        ol::TaskItem& item = *t.TemplateItem;
        g(680);
        SafeTaskItem oSafe;
        oSafe.setItem(t.TemplateItem);

        // Fixed dates advance one unit at a time, whatever the interval.
        g(690);
        const bool bRecurring = row.Flag(col::IsRecurring);
        const DateRule rule(iDateType, dReference,
                            RollUnit(bRecurring, row.Long(col::RecurrenceType), QString()), now);

        // The properties, in their order.
        auto setText = [&](int line, const char* name, int pos) {
            g(line);
            if (!row.Text(pos).isEmpty()) item.set(QString::fromLatin1(name), row.Text(pos));
        };
        auto set = [&](int line, const char* name, const Value& v) {
            g(line);
            item.set(QString::fromLatin1(name), v);
        };
        setText(700, "Subject", col::Subject);
        set(710, "ActualWork", row.Long(col::ActualWork));
        setText(720, "BillingInformation", col::BillingInformation);
        g(730);
        if (!row.Text(col::Body).isEmpty()) oSafe.setBody(row.Text(col::Body));
        setText(740, "Categories", col::Categories);
        setText(750, "Companies", col::Companies);
        set(760, "Complete", row.Flag(col::Complete));
        set(770, "DateCompleted", row.DateAt(col::DateCompleted));
        g(780);
        if (auto dStart = rule.StartDate(row.DateAt(col::StartDate), row.Long(col::StartDateOffset)))
            item.set(QStringLiteral("StartDate"), *dStart);
        set(790, "DueDate", rule.DueDate(row.DateAt(col::DueDate), row.Long(col::DueDateOffset)));
        set(800, "Importance", row.Long(col::Importance));
        setText(810, "Mileage", col::Mileage);
        set(820, "NoAging", row.Flag(col::NoAging));
        set(830, "PercentComplete", row.Long(col::PercentComplete));
        set(840, "ReminderOverrideDefault", row.Flag(col::ReminderOverrideDefault));
        set(850, "ReminderPlaySound", row.Flag(col::ReminderPlaySound));
        set(860, "ReminderSet", row.Flag(col::ReminderSet));
        setText(870, "ReminderSoundFile", col::ReminderSoundFile);
        set(880, "ReminderTime", rule.ReminderTime(row.DateAt(col::ReminderTime), row.Long(col::ReminderOffset)));
        setText(890, "Role", col::Role);
        set(900, "Sensitivity", row.Long(col::Sensitivity));
        set(910, "Status", row.Long(col::Status));
        set(920, "TeamTask", row.Flag(col::TeamTask));
        g(930);
        item.UserProperties().Add(QStringLiteral("Source"), ol::olText)->set(QStringLiteral("Steplets"));

        // The pattern; asking for it makes the task recurring.
        g(940);
        if (bRecurring) {
            g(950); WriteRecurrence(g, 960, *item.GetRecurrencePattern(), row, rule);
        }

        // Saved, then the total work, which only a save on the form keeps.
        g(1110); item.Save();
        set(1120, "TotalWork", row.Long(col::TotalWork));
    }, release);
}

} // namespace steplets::modTasks
