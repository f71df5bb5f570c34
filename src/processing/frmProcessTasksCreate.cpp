// Task creation: one pass over the filtered templates, each row becoming a task in its stages.
#include "TaskWrites.h"
#include "platform/runtime/Constants.h"
#include "frmProcessTasks.h"
#include "platform/OutlookGateway.h"
#include "platform/SafeTaskItem.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "platform/runtime/DateFormats.h"
#include "session/SessionContext.h"
#include "templates/DateRules.h"
#include "templates/EditedTemplate.h"
#include "templates/FormatField.h"

namespace steplets {

using namespace modTasks;
using processing::TaskWrite;

namespace {
// A date as the grid shows it; a property without a date shows nothing.
QString shortDate(const Value& v)
{
    return v.isNull() ? QString() : DateFormats::current().format(v.toDate(), QStringLiteral("Short Date"));
}

std::shared_ptr<ol::ContactItem> fetchContact(const QString& entryID, const QString& storeID)
{
    return ol::asContact(must(session().olNS).GetItemFromID(entryID, storeID));
}
} // namespace

void frmProcessTasks::CreateTaskFromTemplate()
{
    Guard g(QStringLiteral("frmProcessTasks: CreateTaskFromTemplate"));
    std::shared_ptr<ol::ContactItem> olContact;
    BoundedArray<std::shared_ptr<ol::ContactItem>> aContacts;
    auto releaseRow = [&] {
        oCurrentTask.reset();
        olContact.reset();
        aContacts.erase();
    };
    g.run([&] {
        SessionContext& s = session();
        EditedTemplateState& t = EditedTemplate();
        const Clock clock = [this] { return now(); };
        // Working values of the pass: a Null column leaves what the last row had.
        TemplateRow w;
        QString sTemplateSubject;
        QString sGridSubject;
        Date dBase;
        QString sUnit;
        QString sDue;
        QString sReminder;

        g(10); ProgressBar1.setVisible(true);
        g(20); oTaskFolder = must(s.olNS).GetFolderFromID(s.sTaskFolderEID, s.sTaskFolderSID);
        g(30); iProcessedTotal = m_iNewTaskCount;
        g(40);
        Recordset& rs = must(s.rsTemplates);
        rs.MoveFirst();
        const long count = rs.RecordCount();
        for (long n = 1; n <= count; ++n) {
            const Int16 i = Int16::from(static_cast<long long>(n));
            g(50);
            const Int16 r = i + iRowOffset;
            iTemplateCounter += Int16(1);
            QString sLinkText;

            // The first row is taken where it stands.
            g(60);
            if (n != 1) {
                if (rs.EOF_()) {
                    rs.MoveFirst();
                    rs.Move(n - 1);
                } else {
                    rs.MoveNext();
                }
            }
            g(70); w.take(rs, col::Subject);
            sTemplateSubject = w.Text(col::Subject);

            // The contacts of this row.
            g(80);
            if (s.iContactMode == contactMode::Linked) {
                const long last = s.aSelectedContacts.ubound();
                aContacts.redim(1, last);
                for (long k = 1; k <= last; ++k) aContacts[k] = fetchContact(s.aSelectedContacts[k], s.sContactFolderSID);
            } else if (!s.sContactEID.isEmpty()) {
                olContact = fetchContact(s.sContactEID, s.sContactFolderSID);
            }

            // The other columns by position; the fill-ins and the date type are shared.
            for (int pos = col::ActualWork; pos <= col::Last; ++pos) {
                if (!processing::isReadForTask(pos)) continue;
                g(90); w.take(rs, pos);
            }
            g(200);
            sGridSubject = w.Text(col::Subject);
            t.DateType = w.Short(col::DateType);
            for (int k = 1; k <= 4; ++k) t.FillIn(k) = w.Text(col::FillIn1 + k - 1);

            g.mark(QStringLiteral("frmProcessTasks: CreateTaskFromTemplate2"));
            g(210);
            if (!aProcessFlags[i]) {
                SkipRow(r, sGridSubject);
                releaseRow();
                continue;
            }
            g(220); dBase = BaseDate(t.DateType, dBase, aAnchorDates[i], clock);
            g(230); oCurrentTask = must(oTaskFolder).Items().Add();
            ol::TaskItem& task = *oCurrentTask;
            g(240);
            SafeTaskItem oSafeItem;
            oSafeItem.setItem(oCurrentTask);
            g(250); sUnit = RollUnit(w.Flag(col::IsRecurring), w.Long(col::RecurrenceType), sUnit);
            const DateRule rule(t.DateType, dBase, sUnit, clock);

            // The subject, with this row's user input.
            g.mark(QStringLiteral("frmProcessTasks: CreateTaskFromTemplate4"));
            g(260); s.sPromptResult = aUserInputs[i];
            g(270); task.set(QStringLiteral("Subject"), FormatField(sTemplateSubject, olContact, clock));
            g(280); s.sPromptResult.clear();

            // The stored properties, in their binding order: a later write may undo what the store did for an earlier one.
            g.mark(QStringLiteral("frmProcessTasks: CreateTaskFromTemplate5"));
            for (const TaskWrite& write : processing::taskWrites()) {
                g(write.line);
                const QString name = QString::fromLatin1(write.property);
                switch (write.kind) {
                case TaskWrite::Kind::Long: task.set(name, w.Long(write.column)); break;
                case TaskWrite::Kind::Flag: task.set(name, w.Flag(write.column)); break;
                case TaskWrite::Kind::DateValue: task.set(name, w.DateAt(write.column)); break;
                case TaskWrite::Kind::Text:
                    if (!w.Text(write.column).isEmpty()) task.set(name, w.Text(write.column));
                    break;
                case TaskWrite::Kind::Body:
                    if (!w.Text(write.column).isEmpty()) oSafeItem.setBody(w.Text(write.column));
                    break;
                case TaskWrite::Kind::StartDate:
                    if (auto d = rule.StartDate(w.DateAt(col::StartDate), w.Long(col::StartDateOffset))) task.set(name, *d);
                    break;
                case TaskWrite::Kind::DueDate:
                    task.set(name, rule.DueDate(w.DateAt(col::DueDate), w.Long(col::DueDateOffset)));
                    break;
                case TaskWrite::Kind::ReminderTime:
                    task.set(name, rule.ReminderTime(w.DateAt(col::ReminderTime), w.Long(col::ReminderOffset)));
                    break;
                case TaskWrite::Kind::Links: {
                    // By the first rule that applies, then the user on top, even a second time.
                    g(530);
                    if (s.iContactMode == contactMode::Linked) {
                        for (long k = 1; k <= aContacts.ubound(); ++k) task.Links().Add(must(aContacts[k]));
                        g(540);
                        sLinkText = s.aSelectedContacts.ubound() < 2 ? must(aContacts[1]).FileAs()
                                                                     : QStringLiteral("[Multiple]");
                    } else if (!s.sContactEID.isEmpty()) {
                        g(550); task.Links().Add(must(olContact));
                        sLinkText = olContact->FileAs();
                    } else if (s.iLinkUserIfNoContact == 1) {
                        g(560); task.Links().Add(must(fetchContact(s.sUserEID, s.sUserFldrSID)));
                        sLinkText = s.sUserName;
                    }
                    g(570);
                    if (s.iLinkUser == 1) task.Links().Add(must(fetchContact(s.sUserEID, s.sUserFldrSID)));
                    break;
                }
                case TaskWrite::Kind::Recurrence:
                    if (!w.Flag(col::IsRecurring)) break;
                    g(610); WriteRecurrence(g, 620, *task.GetRecurrencePattern(), w, rule);
                    break;
                }
            }

            // The row says it is at work, and each task is paced.
            g(810); setCell(r, Int16(0), QStringLiteral("Please wait, processing..."));
            MSHFlexGrid1.Refresh();
            g(820); Timer2.setEnabled(true);
            g(830);
            while (Timer2.Enabled()) host().DoEvents();
            // The grid shows what the store holds, not what was computed.
            g(840); sDue = shortDate(task.get(QStringLiteral("DueDate")));
            g(850); sReminder = shortDate(task.get(QStringLiteral("ReminderTime")));

            g.mark(QStringLiteral("frmProcessTasks: CreateTaskFromTemplate6"));
            SaveAndRecordTask(g, i, r, sGridSubject, sDue, sReminder, sLinkText);
            releaseRow();
        }

        // After the last row.
        g(1500); MSHFlexGrid1.Refresh();
        g(1510);
        if (bLastPass) endOfLastPass();
    }, [&] {
        Unload();
        releaseRow();
    });
}

} // namespace steplets
