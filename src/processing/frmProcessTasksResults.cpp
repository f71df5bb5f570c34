// Results of a run: the row of each task, the counters, review by double click, and Undo.
#include "frmProcessTasks.h"
#include "platform/runtime/Constants.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"

namespace steplets {

namespace {
const QString kSkipped = QStringLiteral(" (Skipped)");
const QString kExitHint = QStringLiteral("Click the OK button to exit.");
} // namespace

void frmProcessTasks::SaveAndRecordTask(Guard& g, Int16 i, Int16 r, const QString& sSubject, const QString& sDue,
                                        const QString& sReminder, const QString& sLinkText)
{
    SessionContext& s = session();
    ol::TaskItem& task = must(oCurrentTask);

    // The assigned task is the one the user sees during a run; the others are saved silently.
    g(1000);
    if (aAssignFlags[i]) {
        g(1010); task.Assign();
        g(1020); Hide();
        g(1030); task.Display(true);
        g(1040);
        if (i.value() != must(s.rsTemplates).RecordCount()) setVisible(true);
    } else {
        g(1050); task.Save();
    }

    // From here each failing statement is passed over; the last failure's number stays.
    long lErr = 0;
    auto pass = [&](int line, auto&& body) {
        if (const long e = g.ignoring(line, body)) lErr = e;
    };
    bool bSaved = false;
    pass(1060, [&] { MSHFlexGrid1.setRow(r + Int16(1)); });
    pass(1070, [&] { if (r > 6) MSHFlexGrid1.setTopRow(r - Int16(6)); });
    pass(1080, [&] { bSaved = task.Saved(); });
    if (!bSaved) {
        pass(1090, [&] { task.Delete(); });
        pass(1100, [&] { aEntryIDs[r].clear(); });
        pass(1110, [&] { aStoreIDs[r].clear(); });
        pass(1120, [&] { setCell(r, Int16(0), sSubject + kSkipped); });
        pass(1130, [&] { iSkippedCount += Int16(1); });
    } else {
        if (s.lTimeCardID != 0) {
            pass(1140, [&] {
                task.UserProperties().Add(QStringLiteral("OrdivaneID"), ol::olText, false)->set(task.EntryID());
            });
            pass(1150, [&] {
                if (!s.sMainActivityTerm.isEmpty())
                    task.UserProperties().Add(s.sMainActivityTerm, ol::olText, true)->set(s.sMainActivity);
            });
            pass(1160, [&] {
                if (!s.sSubActivityTerm.isEmpty())
                    task.UserProperties().Add(s.sSubActivityTerm, ol::olText, true)->set(s.sSubActivity);
            });
        }
        pass(1170, [&] { aEntryIDs[r] = task.EntryID(); });
        pass(1180, [&] { aStoreIDs[r] = must(oTaskFolder).StoreID(); });
        pass(1190, [&] { setCell(r, Int16(0), sSubject); });
        pass(1200, [&] { setCell(r, Int16(1), sDue); });
        pass(1210, [&] { setCell(r, Int16(2), sReminder); });
        pass(1220, [&] { setCell(r, Int16(3), sLinkText); });
        pass(1230, [&] { iSavedCount += Int16(1); });
        if (s.lTimeCardID != 0) {
            // The host's record of the task; a vdir EntryID never holds a quote.
            std::shared_ptr<Command> cmd;
            pass(1240, [&] { cmd = session().store().CreateCommand(); });
            pass(1250, [&] { must(cmd).ActiveConnection(s.cnLink); });
            pass(1260, [&] {
                must(cmd).CommandText(QStringLiteral("INSERT INTO tblTasks ") + QStringLiteral("(EntryID, TimeCardID) ")
                                      + QStringLiteral("VALUES ('") + task.EntryID() + QStringLiteral("', ")
                                      + QString::number(s.lTimeCardID) + QStringLiteral(")"));
            });
            pass(1270, [&] { must(cmd).CommandType(ado::adCmdText); });
            pass(1280, [&] { must(cmd).Prepared(true); });
            pass(1290, [&] { must(cmd).Execute(ado::adExecuteNoRecords); });
            pass(1300, [&] { cmd.reset(); });
        }
    }
    // After a Delete this fails and is passed over; after the marks it stores them.
    pass(1310, [&] { task.Save(); });
    g(1320);
    if (lErr != 0) {
        lErr = 0;
        g.clearError();
    }

    // Back under the routine's handler.
    g(1330); oCurrentTask.reset();
    g(1340); writePanels(iSavedCount);
}

void frmProcessTasks::SkipRow(Int16 r, const QString& sSubject)
{
    setCell(r, Int16(0), sSubject + kSkipped);
    iSkippedCount += Int16(1);
}

// During the run the first panel counts the saved tasks; only the end shows the planned total.
void frmProcessTasks::writePanels(Int16 processed)
{
    StatusBar1.setPanelText(1, QStringLiteral("Processed:  ") + QString::number(processed.value()));
    StatusBar1.setPanelText(2, QStringLiteral("Saved:  ") + QString::number(iSavedCount.value()));
    StatusBar1.setPanelText(3, QStringLiteral("Skipped:  ") + QString::number(iSkippedCount.value()));
}

void frmProcessTasks::endOfLastPass()
{
    SessionContext& s = session();
    MSHFlexGrid1.setTopRow(0);
    MSHFlexGrid1.setRow(1);
    ProgressBar1.setVisible(false);
    writePanels(iProcessedTotal);
    if (iSavedCount < 1) {
        hdrText.setCaption(kExitHint);
    } else {
        cmdUndo.setEnabled(true);
        hdrText.setCaption(QStringLiteral("Double-click a task to review the Outlook task."));
    }
    oCurrentTask.reset();
    oTaskFolder.reset();
    // A later run starts without a common answer.
    s.dPromptAnchorDate = Date();
    s.sPromptResult.clear();
}

void frmProcessTasks::MSHFlexGrid1_DblClick()
{
    Guard g(QStringLiteral("frmProcessTasks: MSHFlexGrid1_DblClick"));
    std::shared_ptr<ol::Item> olItem;
    // A skipped row, the header or a row past the end finds no item and does nothing.
    if (g.ignoring(10, [&] {
            const long r = MSHFlexGrid1.Row();
            olItem = must(session().olNS).GetItemFromID(aEntryIDs[r], aStoreIDs[r]);
        }) != 0) {
        g.clearError();
        return;
    }
    g.ignoring(20, [&] { Hide(); });
    g.ignoring(30, [&] { must(olItem).Display(true); });
    olItem.reset();
    // Shown modally again from inside its own handler; the show further out goes on.
    g.ignoring(40, [&] { Show(); });
}

void frmProcessTasks::cmdUndo_Click()
{
    Guard g(QStringLiteral("frmProcessTasks: cmdUndo_Click"));
    std::shared_ptr<Recordset> rsTasks;
    std::shared_ptr<ol::Item> olItem;
    g.run([&] {
        SessionContext& s = session();
        g(10);
        if (host().MsgBox(QStringLiteral("Are you sure you want to delete all of the processed tasks?"), vb::vbYesNo,
                          QStringLiteral("Undo Task Processing"))
            == static_cast<int>(MsgBoxAnswer::No))
            return;

        g(20); rsTasks = s.store().CreateRecordset();
        rsTasks->Open(QStringLiteral("SELECT * FROM tblTasks"), s.cnLink, ado::adOpenKeyset, ado::adLockOptimistic);

        // Per row the task first, then its one tblTasks row, then the grid.
        for (Int16 r(1); r <= m_iNewTaskCount; ++r) {
            g(30);
            const QString sEntryID = aEntryIDs[r];
            if (!sEntryID.isEmpty()) {
                if (g.ignoring(40, [&] { olItem = must(s.olNS).GetItemFromID(sEntryID, aStoreIDs[r]); }) != 0)
                    g.clearError();
                else
                    g.ignoring(50, [&] { must(olItem).Delete(); });
                g(60); rsTasks->Filter(QStringLiteral("EntryID = '") + sEntryID + QStringLiteral("'"));
                g(70);
                if (rsTasks->RecordCount() == 1) rsTasks->Delete();
                g(80); rsTasks->Filter(0L);
            }
            for (Int16 c(0); c <= 3; ++c) {
                g(90); setCell(r, c, QString());
            }
            g(100); MSHFlexGrid1.Refresh();
        }

        g(110); MSHFlexGrid1.setTopRow(0);
        MSHFlexGrid1.setRow(1);
        olItem.reset();
        cmdUndo.setEnabled(false);
        g(120); StatusBar1.setPanelText(2, QStringLiteral("Saved:  None"));
        StatusBar1.setPanelText(3, QStringLiteral("Skipped:  ") + QString::number(iProcessedTotal.value()));
        g(130); hdrText.setCaption(kExitHint);
        rsTasks.reset();
    }, [&] { Unload(); });
}

} // namespace steplets
