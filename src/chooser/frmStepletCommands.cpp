// The list commands of frmSteplet (add and edit templates, add a group, delete groups and
// templates), the selection marks that turn ticks into the store's Tag column, and the list's
// own keys.
#include "dialogs/OpenOptions.h"
#include "platform/runtime/Constants.h"
#include "dialogs/TemplateAuthoring.h"
#include "dialogs/frmPrompt.h"
#include "frmSteplet.h"
#include "platform/Guard.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"

namespace steplets {

using namespace vb;

namespace {

const QString kNoticeTitle = QStringLiteral("Steplets");
const QString kNotice = QStringLiteral("Steplets, copyright 2026 the Steplets developers. All rights reserved.");

// Deletes every row of a filtered set: Delete as many times as it counts, with no move between.
void deleteAll(Recordset& rs)
{
    if (rs.BOF() && rs.EOF_()) return;
    const Int16 count = Int16::from(static_cast<long long>(rs.RecordCount()));
    for (Int16 i(1); i <= count; ++i) rs.Delete();
}
} // namespace

void frmSteplet::ResetTagField()
{
    Guard g(QStringLiteral("frmSteplet: ResetTagField"));
    g.run([&] {
        Recordset& rs = must(session().rsTemplates);
        g(20); rs.Filter(0L);
        g(30); if (!(rs.BOF() && rs.EOF_())) {
            g(40); rs.MoveFirst();
            while (!rs.EOF_()) {
                g(50); rs.Fields(QStringLiteral("Tag")).setValue(Int16(0));
                g(60); rs.Update();
                g(70); rs.MoveNext();
            }
        }
    }, [&] { Unload(); });
}

void frmSteplet::AddTags()
{
    Guard g(QStringLiteral("frmSteplet: AddTags"));
    g.run([&] {
        Recordset& rs = must(session().rsTemplates);
        for (int i = 0; i < lbTaskTemplates.ListCount(); ++i) {
            g(20); if (!lbTaskTemplates.Selected(i)) continue;
            g(30); rs.Filter(QStringLiteral("ID = ") + QString::number(lbTaskTemplates.ItemData(i)));
            g(40); if (!(rs.BOF() && rs.EOF_())) {
                g(50); rs.Fields(QStringLiteral("Tag")).setValue(Int16(-1));
                g(60); rs.Update();
            }
            g(70); rs.Filter(0L);
            g(80); lbTaskTemplates.setSelected(i, false);
        }
    }, [&] { Unload(); });
}

void frmSteplet::cmdAdd_Click()
{
    Guard g(QStringLiteral("frmSteplet: cmdAdd_Click"));
    SessionContext& s = session();
    g.run([&] {
        g(20);
        if (TabStrip2.SelectedTab() != 2) {
            g(30); if (modTasks::ProcessAdd()) {
                g(40); FillTaskList();
            }
            return;
        }
        g(50); {
            frmPrompt prompt(host());
            qint32 mode = promptMode::NewGroup;
            Bool16 noDate(false), noText(false);
            QString caption = QStringLiteral("Name of New Group"), header = QStringLiteral("New Group"), none;
            prompt.PromptDialog(mode, noDate, noText, caption, header, none);
            g(60); prompt.Unload();
        }
        g(70); if (s.bPromptCancelled) {
            s.bPromptCancelled = false;
            s.sPromptResult.clear();
            return;
        }
        g(80); if (s.sPromptResult.isEmpty()) return;
        Recordset& groups = must(s.rsGroups);
        g(90); groups.AddNew();
        g(100); groups.Fields(1).setValue(s.sPromptResult);
        g(110); groups.Update();
        g(120); if (cboGroup.ListCount() == 0) {
            lbGroupTasks.setEnabled(true);
            txtGroupPrompt.setEnabled(true);
            txtGroupAnchor.setEnabled(true);
            chkGroupOption[0].setEnabled(true);
            chkGroupOption[1].setEnabled(true);
        }
        g(130); cboGroup.AddItem(s.sPromptResult);
        g(140); cboGroup.setItemData(cboGroup.NewIndex(), groups.Fields(QStringLiteral("ID")).value().toLong());
        g(150); cboGroup.setText(s.sPromptResult);
        g(160); s.sPromptResult.clear();
    }, [&] { Unload(); });
}

// Edits the one ticked template: the marks and the "Tag = -1" filter stand for the selection
// while the flow works on the current row. The name is that of the list's current row, which
// need not be the ticked one.
void frmSteplet::cmdEdit_Click()
{
    Guard g(QStringLiteral("frmSteplet: cmdEdit_Click"));
    g.run([&] {
        Recordset& rs = must(session().rsTemplates);
        g(20); ResetTagField();
        g(30); AddTags();
        g(40); rs.Filter(QStringLiteral("Tag = -1"));
        g(50); QString sTemplateName = lbTaskTemplates.List(lbTaskTemplates.ListIndex());
        g(60); modTasks::ProcessEdit(sTemplateName);
        g(70); rs.Filter(0L);
        g(80); FillTaskList();
    }, [&] { Unload(); });
}

void frmSteplet::cmdOptions_Click()
{
    Guard g(QStringLiteral("frmSteplet: cmdOptions_Click"));
    g.run([&] { g(20); modInitialize::OpenOptions(); }, [&] { Unload(); });
}

void frmSteplet::cmdDelete_Click()
{
    Guard g(QStringLiteral("frmSteplet: cmdDelete_Click"));
    SessionContext& s = session();
    g.run([&] {
        Recordset& templates = must(s.rsTemplates);
        Recordset& groups = must(s.rsGroups);
        Recordset& assignments = must(s.rsAssignments);
        g(20); if (TabStrip2.SelectedTab() == 2) {
            g(30); if (cboGroup.Text().isEmpty()) return;
            g(40); if (host().MsgBox(QStringLiteral("Are you sure you want to delete the Group named '") + cboGroup.Text() + QStringLiteral("'?"),
                                     vbYesNo, QStringLiteral(" Deleting Group")) != vbYes)
                return;
            const qint32 id = cboGroup.ItemData(cboGroup.ListIndex());
            g(50); groups.Filter(QStringLiteral("ID = ") + QString::number(id));
            g(60); groups.Delete();
            g(70); groups.Filter(0L);
            g(80); assignments.Requery();
            g(90); assignments.Filter(QStringLiteral("GroupID = ") + QString::number(id));
            g(100); deleteAll(assignments);
            g(110); assignments.Filter(0L);
            assignments.Filter(QStringLiteral("GroupID = ") + QString::number(lGroupID));
            g(120); cboGroup.RemoveItem(cboGroup.ListIndex());
            g(130); if (cboGroup.ListCount() == 0) {
                disableGroupControls();
                cmdDelete.setEnabled(false);
            } else {
                g(140); cboGroup.setListIndex(0);
            }
            return;
        }
        bool deleted = false;
        for (int i = 0; i < lbTaskTemplates.ListCount(); ++i) {
            g(150); if (!lbTaskTemplates.Selected(i)) continue;
            g(160); if (host().MsgBox(QStringLiteral("Are you sure you want to delete the Task Template named '") + lbTaskTemplates.List(i)
                                          + QStringLiteral("'?"),
                                      vbYesNo, QStringLiteral(" Deleting Task Template")) != vbYes)
                continue;
            deleted = true;
            const QString id = QString::number(lbTaskTemplates.ItemData(i));
            g(170); templates.Filter(QStringLiteral("ID = ") + id);
            g(180); templates.Delete();
            g(190); templates.Filter(0L);
            g(200); assignments.Requery();
            g(210); assignments.Filter(QStringLiteral("TaskID = ") + id);
            g(220); deleteAll(assignments);
            g(230); assignments.Filter(0L);
        }
        g(240); if (deleted) {
            assignments.Filter(QStringLiteral("GroupID = ") + QString::number(lGroupID));
            g(250); FillTaskList();
        }
        g(260); const int n = tickedCount(lbTaskTemplates);
        cmdDelete.setEnabled(n > 0);
        ProcessTasksButton.setEnabled(n > 0);
        g(270); cmdEdit.setEnabled(n == 1);
    }, [&] { Unload(); });
}

void frmSteplet::lbTaskTemplates_Click() { FormatListButtons(); }

void frmSteplet::lbTaskTemplates_GotFocus() { FormatListButtons(); }

void frmSteplet::lbTaskTemplates_KeyDown(int& KeyCode, int Shift)
{
    // Deliberately another window's name and two blanks: reports and their readers expect this trail.
    Guard g(QStringLiteral("frmTimeCard:  lbTaskTemplates_KeyDown"));
    g.run([&] {
        g(20); if (KeyCode == vbKeyC && (Shift & vbShiftMask) && (Shift & vbCtrlMask))
            host().MsgBox(kNotice, vbSystemModal, kNoticeTitle);
    }, [&] { Unload(); });
}

} // namespace steplets
