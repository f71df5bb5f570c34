// The launch of a processing run: marks, contacts, counts, common input, the seeded grid and the
// modal processing window.
#include "dialogs/frmPrompt.h"
#include "platform/runtime/Constants.h"
#include "dialogs/frmSelectContacts.h"
#include "frmSteplet.h"
#include "platform/Guard.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "processing/frmProcessTasks.h"
#include "session/SessionContext.h"
#include "templates/TemplateRow.h"

namespace steplets {

using namespace vb;

namespace {
const QString kUserInput = QStringLiteral("Prompt for user input");

// One use of the prompt dialog, unloaded straight after.
void prompt(UiHost& host, qint32 mode, Bool16 anchor, Bool16 input, QString text1, QString text2, QString text3)
{
    frmPrompt dialog(host);
    dialog.PromptDialog(mode, anchor, input, text1, text2, text3);
    dialog.Unload();
}

// Reads and clears the session's cancel flag.
bool takeCancel()
{
    SessionContext& s = session();
    if (!s.bPromptCancelled) return false;
    s.bPromptCancelled = false;
    return true;
}
} // namespace

void frmSteplet::ProcessTasksButton_Click()
{
    Guard g(QStringLiteral("frmSteplet: ProcessTasksButton_Click"));
    SessionContext& s = session();
    g.run([&] {
        Recordset& templates = must(s.rsTemplates);
        const bool groupTab = TabStrip2.SelectedTab() == 2;
        bool anchor = false, input = false;
        QString anchorDescription, groupPrompt;
        std::unique_ptr<frmProcessTasks> run;

        // The launch proper; a return from it still goes on with the closing statements below.
        auto launch = [&] {
            g(20); ResetTagField();
            g(30); if (s.iContactMode > 0) {
                g(40); frmSelectContacts select(host(), readerOf(QRVComboContacts));
                QString contact = txtContact.Text();
                select.SelectContactDialog(contact);
                g(50); select.Unload();
                g(60); if (takeCancel()) return;
            }
            g(70); if (!groupTab) {
                AddTags();
            } else {
                const QString groupID = QString::number(cboGroup.ItemData(cboGroup.ListIndex()));
                Recordset& groups = must(s.rsGroups);
                Recordset& assignments = must(s.rsAssignments);
                g(80); groups.Filter(QStringLiteral("ID = ") + groupID);
                g(90); anchor = groups.Fields(QStringLiteral("CommonAnchor")).value().toBool();
                input = groups.Fields(QStringLiteral("CommonUserResponse")).value().toBool();
                g(100); const Value description = groups.Fields(QStringLiteral("CommonAnchorDescription")).value();
                if (!description.isNull()) anchorDescription = description.toText();
                const Value groupText = groups.Fields(QStringLiteral("Prompt")).value();
                if (!groupText.isNull()) groupPrompt = groupText.toText();
                g(110); groups.Filter(0L);
                g(120); assignments.Requery();
                g(130); assignments.Filter(QStringLiteral("GroupID = ") + groupID);
                g(140); if (assignments.BOF() && assignments.EOF_()) {
                    host().MsgBox(QStringLiteral("No task templates are associated with this group."), vbSystemModal,
                                  QStringLiteral(" No Task Templates"));
                    return;
                }
                g(150); assignments.MoveFirst();
                while (!assignments.EOF_()) {
                    g(160); templates.Filter(QStringLiteral("ID = ") + assignments.Fields(1).value().toText());
                    g(170); templates.Fields(QStringLiteral("Tag")).setValue(Int16(-1));
                    g(180); templates.Update();
                    g(190); templates.Filter(0L);
                    g(200); assignments.MoveNext();
                }
            }
            g(210); templates.Filter(QStringLiteral("Tag = -1"));
            run = std::make_unique<frmProcessTasks>(host());
            frmProcessTasks& p = *run;

            g(220); const Int16 T = Int16::from(static_cast<long long>(templates.RecordCount()));
            Int16 P(1);
            if (s.iContactMode == contactMode::SeparatePasses) {
                P = Int16::from(static_cast<long long>(s.aSelectedContacts.ubound()));
                p.m_iNewTaskCount = P * T;
            } else {
                p.m_iNewTaskCount = T;
            }

            g(230); if (!groupTab) {
                p.m_blnGroup = false;
                Int16 A(0), U(0);
                g(240); templates.MoveFirst();
                while (!templates.EOF_()) {
                    g(250); if (templates.Fields(modTasks::col::DateType).value().longOrZero() == dateType::Anchor) ++A;
                    for (int f = modTasks::col::FillIn1; f <= modTasks::col::FillIn4; ++f) {
                        if (templates.Fields(f).value().textOrEmpty() == kUserInput) {
                            ++U;
                            break;
                        }
                    }
                    g(260); templates.MoveNext();
                }
                g(270); const Int16 anchors = A * P, inputs = U * P;
                if (anchors + inputs < 3) {
                    p.m_blnGroupAnchor = false;
                    p.m_blnGroupPrompt = false;
                    p.m_sPrompt.clear();
                    p.m_sGroupName.clear();
                } else {
                    g(280); prompt(host(), 6, false, false, QString::number(anchors), QString::number(inputs), {});
                    g(290); if (takeCancel()) {
                        p.m_blnGroupAnchor = false;
                        p.m_blnGroupPrompt = false;
                        p.m_sAnchorDescription.clear();
                        p.m_sPrompt.clear();
                        p.m_sGroupName.clear();
                    } else {
                        g(300); if (anchors > 0) p.m_blnGroupAnchor = true;
                        if (inputs > 0) p.m_blnGroupPrompt = true;
                        g(310); prompt(host(), 5, p.m_blnGroupAnchor, p.m_blnGroupPrompt, QStringLiteral("Enter common input"),
                                       QStringLiteral("Please enter your common inputs for the selected tasks."), {});
                        g(320); if (takeCancel()) return;
                        g(330); p.m_blnGroupAnchor = true;
                        p.m_blnGroupPrompt = true;
                    }
                }
            } else {
                g(340); p.m_blnGroup = true;
                p.m_blnGroupAnchor = anchor;
                p.m_blnGroupPrompt = input;
                p.m_sAnchorDescription = anchorDescription;
                p.m_sPrompt = groupPrompt;
                p.m_sGroupName = cboGroup.Text();
            }

            g(350); p.MSHFlexGrid1.setRows(p.m_iNewTaskCount + Int16(20));
            Int16 column(0);
            g(360); if (s.iContactMode != contactMode::SeparatePasses) {
                templates.MoveFirst();
                for (Int16 i(1); i <= p.m_iNewTaskCount; ++i) {
                    g(370); p.MSHFlexGrid1.setTextArray(p.faIndex(i, column), templates.Fields(modTasks::col::Subject).value().toText());
                    g(380); templates.MoveNext();
                }
            } else {
                Int16 r(1);
                const long last = s.aSelectedContacts.ubound();
                for (long c = 1; c <= last; ++c) {
                    g(390); templates.MoveFirst();
                    for (Int16 t(1); t <= T; ++t) {
                        g(400); p.MSHFlexGrid1.setTextArray(p.faIndex(r, column), templates.Fields(modTasks::col::Subject).value().toText());
                        ++r;
                        g(410); templates.MoveNext();
                    }
                }
            }

            g(420); if (p.m_blnGroup) {
                p.hdrText.setCaption(QStringLiteral("Please wait while the task group, ") + p.m_sGroupName + QStringLiteral(", is processed."));
                g(430); if (p.m_blnGroupAnchor || p.m_blnGroupPrompt) {
                    prompt(host(), 2, p.m_blnGroupAnchor, p.m_blnGroupPrompt, p.m_sPrompt, p.m_sGroupName, p.m_sAnchorDescription);
                    g(440); if (takeCancel()) return;
                }
            } else {
                p.hdrText.setCaption(QStringLiteral("Please wait while the ") + QString::number(p.m_iNewTaskCount.value())
                                     + QStringLiteral(" selected tasks are processed."));
            }

            g(450); p.Show();
            g(460); p.Unload();
            g(470); templates.Filter(0L);
        };
        launch();
        g(480); Refresh();
        g(490); s.dPromptAnchorDate = Date();
        s.sPromptResult.clear();
    }, [&] { Unload(); });
}

} // namespace steplets
