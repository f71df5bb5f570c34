// The group page of frmSteplet: a group's rows brought into the controls, and each change of
// the user's written back at once.
#include "frmSteplet.h"
#include "platform/Guard.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"
#include <vector>

namespace steplets {

namespace {
QString groupFilter(qint32 id) { return QStringLiteral("GroupID = ") + QString::number(id); }
QString idFilter(qint32 id) { return QStringLiteral("ID = ") + QString::number(id); }
} // namespace

void frmSteplet::cboGroup_Click()
{
    Guard g(QStringLiteral("frmSteplet: cboGroup_Click"));
    SessionContext& s = session();
    g.run([&] {
        g(20); txtGroupPrompt.setText(QString());
        g(30); txtGroupAnchor.setText(QString());
        g(40); if (cboGroup.ListIndex() < 0) return;
        g(50); lGroupID = cboGroup.ItemData(cboGroup.ListIndex());
        Recordset& assignments = must(s.rsAssignments);
        Recordset& groups = must(s.rsGroups);
        g(60); assignments.Filter(0L);
        assignments.Filter(groupFilter(lGroupID));
        g(70); bLoadingGroup = true;
        g(80); groups.Filter(idFilter(lGroupID));
        g(90); if (!(groups.BOF() && groups.EOF_())) {
            for (int i = 0; i < 2; ++i) {
                g(100); chkGroupOption[i].setValue(groups.Fields(i + 2).value().boolOrFalse() ? CheckBox::Checked : CheckBox::Unchecked);
            }
            g(110); if (chkGroupOption[0].Value() == CheckBox::Checked) {
                lblGroupAnchor.setEnabled(true);
                const Value description = groups.Fields(QStringLiteral("CommonAnchorDescription")).value();
                if (!description.isNull()) txtGroupAnchor.setText(description.toText());
            } else {
                lblGroupAnchor.setEnabled(false);
            }
            g(120); if (chkGroupOption[1].Value() == CheckBox::Checked) {
                lblGroupPrompt.setEnabled(true);
                const Value prompt = groups.Fields(QStringLiteral("Prompt")).value();
                if (!prompt.isNull()) txtGroupPrompt.setText(prompt.toText());
            } else {
                lblGroupPrompt.setEnabled(false);
            }
        }
        g(130); SelectGroupTasks();
        g(140); bLoadingGroup = false;
        g(150); ProcessTasksButton.setEnabled(!cboGroup.Text().isEmpty() && tickedCount(lbGroupTasks) > 0);
        g(160); cmdDelete.setEnabled(!cboGroup.Text().isEmpty());
        g(170); lbGroupTasks.setTopIndex(0);
    }, [&] { Unload(); });
}

void frmSteplet::SelectGroupTasks()
{
    Guard g(QStringLiteral("frmSteplet: SelectGroupTasks"));
    g.run([&] {
        Recordset& assignments = must(session().rsAssignments);
        g(20); bLoadingGroup = true;
        g(30); for (int i = 0; i < lbGroupTasks.ListCount(); ++i) lbGroupTasks.setSelected(i, false);
        g(40); if (!(assignments.BOF() && assignments.EOF_())) {
            g(50); assignments.MoveFirst();
            while (!assignments.EOF_()) {
                g(60); const Value task = assignments.Fields(1).value();
                for (int i = 0; i < lbGroupTasks.ListCount(); ++i)
                    if (!task.isNull() && lbGroupTasks.ItemData(i) == task.toLong()) lbGroupTasks.setSelected(i, true);
                g(70); assignments.MoveNext();
            }
        }
        g(80); if (lbGroupTasks.ListCount() > 0) lbGroupTasks.setListIndex(0);
        g(90); lbGroupTasks.setDataChanged(false);
        g(100); bLoadingGroup = false;
    }, [&] { Unload(); });
}

// No handler of its own: a failure here belongs to whoever raised the click.
void frmSteplet::lbGroupTasks_Click()
{
    if (!bLoadingGroup && cboGroup.ListCount() > 0 && lbGroupTasks.DataChanged()) ProcessChangesToGroupTasks();
    ProcessTasksButton.setEnabled(!cboGroup.Text().isEmpty() && tickedCount(lbGroupTasks) > 0);
}

void frmSteplet::ProcessChangesToGroupTasks()
{
    Guard g(QStringLiteral("frmSteplet: ProcessChangesToGroupTasks"));
    g.run([&] {
        Recordset& assignments = must(session().rsAssignments);
        g(20); if (!lbGroupTasks.DataChanged()) return;
        g(30); std::vector<qint32> ticked;
        for (int i = 0; i < lbGroupTasks.ListCount(); ++i)
            if (lbGroupTasks.Selected(i)) ticked.push_back(lbGroupTasks.ItemData(i));
        g(40); if (assignments.RecordCount() != 0) {
            g(50); assignments.MoveFirst();
            const Int16 count = Int16::from(static_cast<long long>(assignments.RecordCount()));
            for (Int16 i(1); i <= count; ++i) {
                g(60); if (assignments.Fields(0).value().longOrZero() == lGroupID) {
                    g(70); assignments.Delete();
                    g(80); assignments.MoveNext();
                }
            }
        }
        g(90); assignments.Filter(0L);
        for (const qint32 task : ticked) {
            g(100); assignments.AddNew();
            g(110); assignments.Fields(0).setValue(lGroupID);
            g(120); assignments.Fields(1).setValue(task);
            g(130); assignments.Update();
        }
        g(140); assignments.Filter(0L);
        assignments.Filter(groupFilter(lGroupID));
        g(150); lbGroupTasks.setDataChanged(false);
    }, [&] { Unload(); });
}

void frmSteplet::chkGroupOption_Click(int Index)
{
    // Deliberately "frmNewGroup": the trail this handler has always left in reports.
    Guard g(QStringLiteral("frmNewGroup: chkGroupOption_Click"));
    g.run([&] {
        g(20); if (Index != 0 && Index != 1) return;
        TextBox& box = Index == 0 ? txtGroupAnchor : txtGroupPrompt;
        Label& label = Index == 0 ? lblGroupAnchor : lblGroupPrompt;
        g(30); if (chkGroupOption[Index].Value() == CheckBox::Checked) {
            g(40); box.setEnabled(true);
            box.setLocked(false);
            label.setEnabled(true);
        } else {
            g(50); box.setEnabled(false);
            box.setLocked(true);
            label.setEnabled(false);
            box.setText(QString());
        }
        g(60); if (!bLoadingGroup) ProcessChangesToGroupOptions();
    }, [&] { Unload(); });
}

void frmSteplet::txtGroupAnchor_LostFocus()
{
    if (!bLoadingGroup && txtGroupAnchor.DataChanged()) ProcessChangesToGroupOptions();
}

void frmSteplet::txtGroupPrompt_LostFocus()
{
    if (!bLoadingGroup && txtGroupPrompt.DataChanged()) ProcessChangesToGroupOptions();
}

void frmSteplet::ProcessChangesToGroupOptions()
{
    Guard g(QStringLiteral("frmSteplet: ProcessChangesToGroupOptions"));
    g.run([&] {
        Recordset& groups = must(session().rsGroups);
        // A filter that fails here is dropped without a word: the change is simply not stored.
        g(20); if (g.ignoring(20, [&] { groups.Filter(idFilter(lGroupID)); }) != 0) {
            g.clearError();
            g.ignoring(30, [&] { groups.Filter(0L); });
            return;
        }
        g(40); if (!(groups.BOF() && groups.EOF_())) {
            g(50); groups.Fields(2).setValue(chkGroupOption[0].Value() != 0);
            g(60); groups.Fields(3).setValue(chkGroupOption[1].Value() != 0);
            g(70); if (!txtGroupPrompt.Text().isEmpty()) groups.Fields(QStringLiteral("Prompt")).setValue(txtGroupPrompt.Text());
            g(80); if (!txtGroupAnchor.Text().isEmpty())
                groups.Fields(QStringLiteral("CommonAnchorDescription")).setValue(txtGroupAnchor.Text());
            g(90); groups.Update();
        }
    }, [&] { Unload(); });
}

} // namespace steplets
