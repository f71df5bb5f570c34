#include "frmNewTask.h"
#include "platform/runtime/Constants.h"
#include "frmPrompt.h"
#include "platform/Guard.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include "templates/FillinCatalogue.h"
#include "templates/TemplateRow.h"

namespace steplets {

using namespace vb;

namespace {
constexpr int kNewTaskPageLeft = 225;
constexpr int kButtonTop = 4875;
constexpr int kCancelLeft = 6105;
constexpr int kCreateWidth = 1935;

const char* const kHeaders[] = {
    "Select a fixed, relative, or anchor date type for your task template's due date, reminder date, etc.",
    "Select the text to automatically insert in the subject field of new tasks created using this template.",
    "Choose whether to assign tasks processed using this task template.",
};
} // namespace

frmNewTask::frmNewTask(UiHost& host)
    : Form(host, QStringLiteral("frmNewTask")),
      m_fillins({*this, cboSubjectField, QStringLiteral("cboSubjectField"), cboFillin, txtUserPrompt, Label2[0], Label2[1], Label2[2],
                 Label3, Text1, sFillin, sUserPrompt, bFieldLoading},
                FillinEditor::Options{})
{
    design();
    connectHandlers();
}

void frmNewTask::design()
{
    setCaption(QStringLiteral(" Set Task Template Options"));
    setWidth(7680);
    setHeight(5820);
    hdrText.Move(120, 120, 7335, 480);
    TabStrip1.addTab(QStringLiteral("&Date Type"));
    TabStrip1.addTab(QStringLiteral("Fill-&Ins"));
    TabStrip1.addTab(QStringLiteral("A&ssignment"));
    TabStrip1.Move(120, 720, 7455, 4035);
    for (auto& page : Picture1) {
        page.setContainer(&TabStrip1);
        page.Move(kNewTaskPageLeft, 420, 7095, 3495);
    }

    // The date type.
    Frame1[0].setContainer(&Picture1[0]);
    Frame1[0].setCaption(QStringLiteral("Select Date Type for Template"));
    Frame1[0].Move(0, 0, 7095, 1455);
    const char* const captions[] = {" &Fixed date: always on the same calendar date.",
                                    " &Relative date: determined by reference to date task processed.",
                                    " &Anchor date: determined by reference to user-provided anchor date."};
    const char* const tips[] = {"Example: tax returns are always due on April 15th.",
                                "Example: the due date of the task will always be two weeks after you process the task.",
                                "Example: the due date of the task will always be one month before the anchor date."};
    for (int i = 0; i < 3; ++i) {
        optDueDateType[i].setContainer(&Frame1[0]);
        optDueDateType[i].setCaption(QString::fromUtf8(captions[i]));
        optDueDateType[i].setToolTipText(QString::fromUtf8(tips[i]));
        optDueDateType[i].Move(120, 300 + i * 360, 6855, 285);
    }
    optDueDateType[0].setValue(true);
    Label1.setContainer(&Picture1[0]);
    Label1.setCaption(QStringLiteral("Select temporary anchor date to use for template setup:"));
    Label1.Move(0, 1620, 7095, 255);
    dtmAnchorDate.setContainer(&Picture1[0]);
    dtmAnchorDate.setToolTipText(
        QStringLiteral("Set the due date, reminder date, etc. of your task template by reference to this initial anchor date."));
    dtmAnchorDate.Move(0, 1950, 2535, 375);
    Label4.setContainer(&Picture1[0]);
    Label4.setCaption(QStringLiteral("Anchor Description:"));
    Label4.Move(0, 2580, 1815, 255);
    txtAnchorDescription.setContainer(&Picture1[0]);
    txtAnchorDescription.Move(1920, 2520, 5175, 315);

    // The fill-ins.
    Frame1[1].setContainer(&Picture1[1]);
    Frame1[1].setCaption(QStringLiteral("Select Subject Field Fill-Ins"));
    Frame1[1].Move(0, 0, 7095, 3135);
    m_fillins.layOut(Frame1[1], 7095);
    cboSubjectField.setToolTipText(
        QStringLiteral("Select one of four fields to insert in the subject field of new tasks processed using this template."));
    cboFillin.setToolTipText(QStringLiteral("Select the text to insert in the field selected above."));
    txtUserPrompt.setToolTipText(QStringLiteral("Enter user prompt (maximum of 40 characters)."));
    txtUserPrompt.setEnabled(false);

    // The assignment.
    Frame1[2].setContainer(&Picture1[2]);
    Frame1[2].setCaption(QStringLiteral("Task Assignment"));
    Frame1[2].Move(0, 0, 7095, 1095);
    chkAssignee.setContainer(&Frame1[2]);
    chkAssignee.setCaption(QStringLiteral(" &Prompt for assignee on new tasks based upon this template."));
    chkAssignee.Move(240, 420, 6615, 285);

    OKButton.setCaption(QStringLiteral("&OK"));
    OKButton.setVisible(false);
    OKButton.Move(kCancelLeft - 1440, kButtonTop, 1335, 375);
    CancelButton.setCaption(QStringLiteral("&Cancel"));
    CancelButton.setCancel(true);
    CancelButton.Move(kCancelLeft, kButtonTop, 1335, 375);
    CreateEditButton.setCaption(QStringLiteral("Create &Template"));
    CreateEditButton.setToolTipText(QStringLiteral("Click to open an Outlook task form to set other task template options."));
    CreateEditButton.Move(120, kButtonTop, kCreateWidth, 375);
}

void frmNewTask::connectHandlers()
{
    for (int i = 0; i < 3; ++i) optDueDateType[i].Click.connect([this, i] { optDueDateType_Click(i); });
    chkAssignee.Click.connect([this] { chkAssignee_Click(); });
    dtmAnchorDate.Click.connect([this] { dtmAnchorDate_Click(); });
    dtmAnchorDate.GotFocus.connect([this] { dtmAnchorDate_GotFocus(); });
    txtAnchorDescription.LostFocus.connect([this] { txtAnchorDescription_LostFocus(); });
    CreateEditButton.Click.connect([this] { CreateEditButton_Click(); });
    OKButton.Click.connect([this] { OKButton_Click(); });
    CancelButton.Click.connect([this] { CancelButton_Click(); });
    TabStrip1.MouseDown.connect([this](int, int, double, double) { bTabMouseClick = true; });
    TabStrip1.Click.connect([this] { TabStrip1_Click(); });
}

void frmNewTask::NewTaskDialog(Bool16& blnEdit, QString& sTaskName)
{
    Guard g(QStringLiteral("frmNewTask: NewTaskDialog"));
    EditedTemplateState& t = modTasks::EditedTemplate();
    SessionContext& s = session();
    g.run([&] {
        g(20); bEditMode = blnEdit;
        // The form loads with its first property set, as the caption is.
        g(30); Load();
        if (bEditMode) {
            g(40); setCaption(QStringLiteral(" Edit Task Template Options: ") + sTaskName);
            g(50); OKButton.setVisible(true);
            CreateEditButton.setLeft(120);
            CreateEditButton.setCaption(QStringLiteral("&Edit Outlook Form"));
            g(60); iDueDateType = t.DateType;
            for (int k = 1; k <= 4; ++k) {
                sFillin[k] = t.FillIn(k);
                sUserPrompt[k] = t.UserPrompt(k);
            }
            sAnchorDescription = t.AnchorDescription;
            bInitialAssignee = Value(t.PromptForAssignee).toBool();
            g(70); optDueDateType[iDueDateType.value()].setValue(true);
            g(80); txtAnchorDescription.setText(sAnchorDescription);
            g(90); chkAssignee.setValue(bInitialAssignee ? CheckBox::Checked : CheckBox::Unchecked);
        } else {
            g(100); setCaption(QStringLiteral(" New Task Template"));
            g(110); CreateEditButton.setLeft(kCancelLeft - 105 - kCreateWidth);
            CreateEditButton.setCaption(QStringLiteral("Create &Template"));
            g(120); iDueDateType = Int16(0);
            for (int k = 1; k <= 4; ++k) {
                sFillin[k] = s.sDefaultFillIn[k];
                sUserPrompt[k] = s.sDefaultUserPrompt[k];
            }
            bInitialAssignee = false;
        }
        g(130); modTasks::LoadFillins(cboFillin);
        g(140); cboSubjectField.setText(QStringLiteral("Field 1"));
        g(150); Text1.setText(m_fillins.FormatPreview());
        // Called directly, so the anchor controls are right also when no option changed.
        g(160); optDueDateType_Click(iDueDateType.value());
        g(170); Show();
    }, [&] { Unload(); });
}

void frmNewTask::Form_Load()
{
    TabStrip1.selectTab(1);
}

void frmNewTask::optDueDateType_Click(int Index)
{
    Guard g(QStringLiteral("frmNewTask: optDueDateType_Click"));
    g.run([&] {
        g(20); iDueDateType = Int16::from(static_cast<long long>(Index));
        // Only disabled, never hidden or cleared: the description still reaches the caller.
        g(30);
        const bool anchor = Index == 2;
        for (Control* c : std::initializer_list<Control*>{&Label1, &Label4, &dtmAnchorDate, &txtAnchorDescription})
            c->setEnabled(anchor);
    }, [&] { Unload(); });
}

void frmNewTask::chkAssignee_Click()
{
    Guard g(QStringLiteral("frmNewTask: chkAssignee_Click"));
    g.run([&] { g(20); bPromptAssignee = chkAssignee.Value() != CheckBox::Unchecked; }, [&] { Unload(); });
}

void frmNewTask::dtmAnchorDate_Click()
{
    if (dtmAnchorDate.Value().type() == Value::Type::Date) dAnchorDate = dtmAnchorDate.Value().toDate();
}

void frmNewTask::dtmAnchorDate_GotFocus()
{
    Guard g(QStringLiteral("frmNewTask: dtmAnchorDate_GotFocus"));
    g.run([&] {
        g(20); dtmAnchorDate.setDisplayProperty(0, 0);
        g(30); dtmAnchorDate.setDisplayProperty(1, 50);
    }, [&] { Unload(); });
}

void frmNewTask::txtAnchorDescription_LostFocus()
{
    if (txtAnchorDescription.DataChanged()) sAnchorDescription = txtAnchorDescription.Text();
}

void frmNewTask::CreateEditButton_Click()
{
    Guard g(QStringLiteral("frmNewTask: CreateEditButton_Click"));
    EditedTemplateState& t = modTasks::EditedTemplate();
    g.run([&] {
        // The copy comes before the check, so a refused anchor type leaves it done.
        g(20); t.DateType = iDueDateType;
        for (int k = 1; k <= 4; ++k) {
            t.FillIn(k) = sFillin[k];
            t.UserPrompt(k) = sUserPrompt[k];
        }
        t.AnchorDescription = sAnchorDescription;
        t.PromptForAssignee = bPromptAssignee ? QStringLiteral("True") : QStringLiteral("False");
        g(30);
        if (optDueDateType[2].Value()) {
            g(40);
            if (dtmAnchorDate.Value().type() != Value::Type::Date) {
                g(50); host().MsgBox(QStringLiteral("In order to properly set the date variables for an anchor due date type,\r\n"
                                                    "you must provide a temporary anchor date from which all date variables \r\n"
                                                    "will be set."),
                                     vbSystemModal, QStringLiteral("Missing Anchor Date"));
                g(60);
                if (dtmAnchorDate.Visible()) {
                    TabStrip1.selectTab(1);
                    dtmAnchorDate.SetFocus();
                }
                return;
            }
            // The member, not a new reading of the calendar.
            g(70); t.ReferenceDate = dAnchorDate;
        } else {
            g(80); t.ReferenceDate = host().Now();
        }
        g(90);
        if (session().bNewTaskDescription) {
            g(100); Hide();
            g(110);
            frmPrompt help(host());
            qint32 mode = promptMode::NewTemplateHelp;
            Bool16 noDate(false), noText(false);
            QString none, item = QStringLiteral("New Task"), noAnchor;
            help.PromptDialog(mode, noDate, noText, none, item, noAnchor);
            g(120); help.Unload();
        }
        g(130); Unload();
    }, [&] { Unload(); });
}

void frmNewTask::OKButton_Click()
{
    Guard g(QStringLiteral("frmNewTask: OKButton_Click"));
    g.run([&] {
        using namespace modTasks;
        Recordset& rs = must(session().rsTemplates);
        g(20); rs.MoveFirst();
        g(30); rs.Fields(col::DateType).setValue(Value(iDueDateType));
        // An emptied text leaves what the row holds.
        for (int k = 1; k <= 4; ++k) {
            g(40); if (!sFillin[k].isEmpty()) rs.Fields(col::DateType + k).setValue(Value(sFillin[k]));
        }
        for (int k = 1; k <= 4; ++k) {
            g(50); if (!sUserPrompt[k].isEmpty()) rs.Fields(col::FillIn4 + k).setValue(Value(sUserPrompt[k]));
        }
        g(60); if (!sAnchorDescription.isEmpty()) rs.Fields(col::AnchorDescription).setValue(Value(sAnchorDescription));
        // A number here, where the save of a template writes the text "True" or "False".
        g(70); rs.Fields(col::PromptForAssignee).setValue(Value(Int16(bPromptAssignee ? 1 : 0)));
        g(80); rs.Update();
        g(90); EditedTemplate().OptionsDialogDeclined = true;
        g(100); Unload();
    }, [&] { Unload(); });
}

void frmNewTask::CancelButton_Click()
{
    modTasks::EditedTemplate().OptionsDialogDeclined = true;
    Unload();
}

void frmNewTask::Form_QueryUnload(int& cancel, int unloadMode)
{
    (void)cancel;
    if (unloadMode == FormControlMenu) modTasks::EditedTemplate().OptionsDialogDeclined = true;
}

void frmNewTask::placeOkAndCancel(int next)
{
    if (OKButton.Visible()) OKButton.setTabIndex(next++);
    CancelButton.setTabIndex(next);
}

void frmNewTask::TabStrip1_Click()
{
    Guard g(QStringLiteral("frmNewTask: TabStrip1_Click"));
    g.run([&] {
        const int tab = TabStrip1.SelectedTab();
        g(20);
        showSelectedPage(Picture1, tab, kNewTaskPageLeft);
        g(30);
        switch (tab) {
        case 1:
            for (int i = 0; i < 3; ++i) optDueDateType[i].setTabIndex(i);
            dtmAnchorDate.setTabIndex(3);
            txtAnchorDescription.setTabIndex(4);
            CreateEditButton.setTabIndex(5);
            placeOkAndCancel(6);
            break;
        case 2:
            cboSubjectField.setTabIndex(0);
            cboFillin.setTabIndex(1);
            txtUserPrompt.setTabIndex(2);
            CreateEditButton.setTabIndex(3);
            placeOkAndCancel(4);
            // In Edit mode Cancel comes before OK on this tab alone.
            CancelButton.setTabIndex(4);
            break;
        case 3:
            chkAssignee.setTabIndex(0);
            CreateEditButton.setTabIndex(1);
            placeOkAndCancel(2);
            break;
        default:
            break;
        }
        g(40); if (tab >= 1 && tab <= 3) hdrText.setCaption(QString::fromUtf8(kHeaders[tab - 1]));
        g(50);
        if (bTabMouseClick) {
            g(60); TabStrip1.SetFocus();
            bTabMouseClick = false;
        } else if (tab == 2) {
            g(70); if (cboSubjectField.Visible()) cboSubjectField.SetFocus();
        } else if (tab == 3) {
            g(80); if (chkAssignee.Visible()) chkAssignee.SetFocus();
        }
    }, [&] { Unload(); });
}

} // namespace steplets
