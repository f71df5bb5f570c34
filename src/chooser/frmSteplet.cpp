#include "frmSteplet.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"

namespace steplets {

namespace {
// Room that the contact area takes at the top of the window, given to the lists in ManageMode.
constexpr int kContactAreaHeight = 1440;
constexpr int kPageLeft = 450;

// The run-time's Val: the number at the start of a text, 0 when there is none.
double leadingNumber(const QString& text)
{
    QString digits;
    bool point = false;
    for (const QChar c : text.trimmed()) {
        if (c.isDigit()) digits += c;
        else if (c == QLatin1Char('.') && !point) { point = true; digits += c; }
        else break;
    }
    return digits.toDouble();
}
} // namespace

frmSteplet::frmSteplet(UiHost& host) : Form(host, QStringLiteral("frmSteplet"))
{
    design();
    connectHandlers();
}

void frmSteplet::design()
{
    setCaption(QStringLiteral("Ordivane Steplets"));
    setWidth(7320);
    setHeight(7680);
    TabStrip1.addTab(QStringLiteral("&Single Contact Link"));
    TabStrip1.addTab(QStringLiteral("Multiple Contact Li&nks"));
    TabStrip1.Move(120, 120, 6975, 1335);
    for (int i = 0; i < 2; ++i) {
        Picture1[i].setContainer(&TabStrip1);
        Picture1[i].Move(kPageLeft, 480, 6300, 735);
    }
    txtContact.setContainer(&Picture1[0]);
    txtContact.Move(0, 180, 5295, 315);
    abSelectContact.setContainer(&Picture1[0]);
    abSelectContact.Move(5400, 120, 840, 435);
    Band& band = abSelectContact.addBand(QStringLiteral("Band1"));
    band.addTool(QStringLiteral("Tool0"), 0).setToolTipText(QStringLiteral("Click to select contact."));
    Tool& clear = band.addTool(QStringLiteral("Tool3"), 3);
    clear.setToolTipText(QStringLiteral("Clear contact selection."));
    clear.setEnabled(false);
    chkContactOption1.setContainer(&Picture1[1]);
    chkContactOption1.setCaption(QStringLiteral(" &Link multiple contacts to each task processed."));
    chkContactOption1.Move(0, 60, 6200, 285);
    chkContactOption2.setContainer(&Picture1[1]);
    chkContactOption2.setCaption(QStringLiteral(" Process separate tas&ks for multiple contacts."));
    chkContactOption2.Move(0, 420, 6200, 285);

    Frame1.setCaption(QStringLiteral("Task Templates and Groups"));
    Frame1.Move(120, 1560, 6975, 5415);
    TabStrip2.setContainer(&Frame1);
    TabStrip2.addTab(QStringLiteral("Task &Templates"));
    TabStrip2.addTab(QStringLiteral("Task &Groups"));
    TabStrip2.Move(120, 240, 6735, 4455);
    for (int i = 0; i < 2; ++i) {
        Picture2[i].setContainer(&TabStrip2);
        Picture2[i].Move(kPageLeft, 420, 6135, 3915);
    }
    lbTaskTemplates.setContainer(&Picture2[0]);
    lbTaskTemplates.setStyle(ListBox::Style::CheckBox);
    lbTaskTemplates.Move(0, 0, 5895, 3060);
    lbTaskTemplates.setToolTipText(QStringLiteral("Select (check) each task template you wish to process."));
    Label1.setContainer(&Picture2[1]);
    Label1.setCaption(QStringLiteral("Task Group:"));
    Label1.Move(0, 45, 1095, 255);
    cboGroup.setContainer(&Picture2[1]);
    cboGroup.setStyle(ComboBox::Style::DropDownList);
    cboGroup.Move(1140, 0, 4755, 315);
    cboGroup.setToolTipText(QStringLiteral("Click to select a group of tasks to process and/or edit."));
    Label3.setContainer(&Picture2[1]);
    Label3.setCaption(QStringLiteral("Select task templates to include in this task group:"));
    Label3.Move(0, 420, 5895, 255);
    lbGroupTasks.setContainer(&Picture2[1]);
    lbGroupTasks.setStyle(ListBox::Style::CheckBox);
    lbGroupTasks.Move(0, 690, 5895, 1860);
    lbGroupTasks.setToolTipText(QStringLiteral("Select (check) the task templates to include in this group."));
    Label2.setContainer(&Picture2[1]);
    Label2.setCaption(QStringLiteral("Check to use a single prompt for:"));
    Label2.Move(0, 2610, 5895, 255);
    chkGroupOption[0].setCaption(QStringLiteral(" Anc&hor dates"));
    chkGroupOption[0].setToolTipText(QStringLiteral("Check to prompt for a common anchor date when processing this group."));
    chkGroupOption[1].setCaption(QStringLiteral(" &User input"));
    chkGroupOption[1].setToolTipText(QStringLiteral("Check for a common user prompt when processing this group."));
    lblGroupAnchor.setCaption(QStringLiteral("User prompt:"));
    lblGroupPrompt.setCaption(QStringLiteral("User prompt:"));
    const QString tip = QStringLiteral("Enter the user prompt to be displayed when processing this group. ");
    txtGroupAnchor.setToolTipText(tip);
    txtGroupPrompt.setToolTipText(tip);
    // The options start unticked, so their texts start as an unticked option leaves them:
    // setting a value that is already 0 raises no Click to do it later.
    for (TextBox* box : {&txtGroupAnchor, &txtGroupPrompt}) {
        box->setEnabled(false);
        box->setLocked(true);
    }
    lblGroupAnchor.setEnabled(false);
    lblGroupPrompt.setEnabled(false);
    for (int i = 0; i < 2; ++i) {
        const int top = 2910 + i * 450;
        chkGroupOption[i].setContainer(&Picture2[1]);
        chkGroupOption[i].Move(0, top, 1695, 285);
        Label& label = i == 0 ? lblGroupAnchor : lblGroupPrompt;
        TextBox& box = i == 0 ? txtGroupAnchor : txtGroupPrompt;
        label.setContainer(&Picture2[1]);
        label.Move(1800, top + 30, 1095, 255);
        box.setContainer(&Picture2[1]);
        box.Move(2880, top, 3015, 315);
    }
    QRVComboContacts.setVisible(false);

    ProcessTasksButton.setCaption(QStringLiteral("&Process Task(s)"));
    ProcessTasksButton.setContainer(&Frame1);
    ProcessTasksButton.Move(120, 4800, 1575, 375);
    cmdAdd.setCaption(QStringLiteral("&Add"));
    cmdEdit.setCaption(QStringLiteral("&Edit"));
    cmdDelete.setCaption(QStringLiteral("&Delete"));
    CommandButton* row[] = {&cmdAdd, &cmdEdit, &cmdDelete};
    for (int i = 0; i < 3; ++i) {
        row[i]->setContainer(&Frame1);
        row[i]->Move(1800 + i * 1020, 4800, 975, 375);
    }
    cmdOptions.setCaption(QStringLiteral("&Options"));
    cmdOptions.setToolTipText(QStringLiteral("Click to set user options for this installation of Steplets."));
    cmdOptions.Move(4740, 7080, 1095, 375);
    CancelButton.setCaption(QStringLiteral("&Close"));
    CancelButton.setToolTipText(QStringLiteral("Click to exit Steplets."));
    CancelButton.setCancel(true);
    CancelButton.Move(6000, 7080, 1095, 375);
}

void frmSteplet::connectHandlers()
{
    TabStrip1.Click.connect([this] { TabStrip1_Click(); });
    TabStrip2.Click.connect([this] { TabStrip2_Click(); });
    CancelButton.Click.connect([this] { CancelButton_Click(); });
    cboGroup.Click.connect([this] { cboGroup_Click(); });
    lbGroupTasks.Click.connect([this] { lbGroupTasks_Click(); });
    for (int i = 0; i < 2; ++i) chkGroupOption[i].Click.connect([this, i] { chkGroupOption_Click(i); });
    txtGroupAnchor.LostFocus.connect([this] { txtGroupAnchor_LostFocus(); });
    txtGroupPrompt.LostFocus.connect([this] { txtGroupPrompt_LostFocus(); });
    lbTaskTemplates.Click.connect([this] { lbTaskTemplates_Click(); });
    lbTaskTemplates.GotFocus.connect([this] { lbTaskTemplates_GotFocus(); });
    lbTaskTemplates.KeyDown.connect([this](int& key, int shift) { lbTaskTemplates_KeyDown(key, shift); });
    cmdAdd.Click.connect([this] { cmdAdd_Click(); });
    cmdEdit.Click.connect([this] { cmdEdit_Click(); });
    cmdOptions.Click.connect([this] { cmdOptions_Click(); });
    cmdDelete.Click.connect([this] { cmdDelete_Click(); });
    abSelectContact.ToolClick.connect([this](Tool& tool) { abSelectContact_ToolClick(tool); });
    chkContactOption1.Click.connect([this] { chkContactOption1_Click(); });
    chkContactOption2.Click.connect([this] { chkContactOption2_Click(); });
    txtContact.GotFocus.connect([this] { txtContact_GotFocus(); });
    txtContact.KeyDown.connect([this](int& key, int shift) { txtContact_KeyDown(key, shift); });
    txtContact.MouseMove.connect([this](int b, int shift, double x, double y) { txtContact_MouseMove(b, shift, x, y); });
    txtContact.Click.connect([this] { txtContact_Click(); });
    ProcessTasksButton.Click.connect([this] { ProcessTasksButton_Click(); });
}

void frmSteplet::Form_Load()
{
    Guard g(QStringLiteral("frmSteplet: Form_Load"));
    SessionContext& s = session();
    g.run([&] {
        g(20); bFirstDisplay = true;
        g(30); CheckOLVersion();
        g(40); if (s.bNoTimeCard) {
            g(50); setCaption(QStringLiteral("Ordivane:  Manage Steplets"));
            g(60); layoutManageMode();
        } else {
            g(70); setCaption(QStringLiteral("Ordivane:  Process Steplets"));
            g(80); if (s.sContactID != 0) {
                g(90); txtContact.setText(s.sContactName);
                g(100); txtContact.setTag(QString::number(s.sContactID));
                g(110); s.sContactEID = RetrieveContactEID(s.sContactID);
                g(120); must(abSelectContact.tool(QStringLiteral("Tool3"))).setEnabled(true);
                g(130); abSelectContact.RecalcLayout();
            }
            g(140); layoutProcessMode();
        }
        g(150); FillContactList();
        g(160); FillTaskList();
        g(170); FillGroupList();
        g(180); host().setHelpFile(s.ports.componentDirectory + QStringLiteral("\\Ordivane.chm"));
        g(190); setCaption(QStringLiteral("Ordivane Steplets:  ") + s.sUserName);
        g(200); TabStrip1.selectTab(1);
        g(210); TabStrip2.selectTab(s.iTaskSelection.value() + 1);
    }, [&] { Unload(); });
}

// ManageMode: no contact area; the lists and the commands below them take its room.
void frmSteplet::layoutManageMode()
{
    for (Control* c : std::initializer_list<Control*>{&TabStrip1, &chkContactOption1, &chkContactOption2, &Picture1[0],
                                                      &Picture1[1], &ProcessTasksButton})
        c->setVisible(false);
    Frame1.setTop(120);
    Frame1.setHeight(Frame1.Height() + kContactAreaHeight);
    TabStrip2.setHeight(TabStrip2.Height() + kContactAreaHeight);
    for (auto& page : Picture2) page.setHeight(page.Height() + kContactAreaHeight);
    lbTaskTemplates.setHeight(lbTaskTemplates.Height() + kContactAreaHeight);
    lbGroupTasks.setHeight(lbGroupTasks.Height() + kContactAreaHeight);
    for (Control* c : std::initializer_list<Control*>{&cmdAdd, &cmdEdit, &cmdDelete, &Label2, &chkGroupOption[0],
                                                      &chkGroupOption[1], &lblGroupAnchor, &txtGroupAnchor,
                                                      &lblGroupPrompt, &txtGroupPrompt})
        c->setTop(c->Top() + kContactAreaHeight);
}

// ProcessMode: the commands that change templates and groups are hidden; the lists grow into
// the room the group options leave.
void frmSteplet::layoutProcessMode()
{
    for (Control* c : std::initializer_list<Control*>{&cmdEdit, &cmdAdd, &cmdDelete, &cmdOptions, &chkGroupOption[0],
                                                      &chkGroupOption[1], &lblGroupAnchor, &txtGroupAnchor,
                                                      &lblGroupPrompt, &txtGroupPrompt})
        c->setVisible(false);
    constexpr int room = 840;
    lbTaskTemplates.setHeight(lbTaskTemplates.Height() + room);
    lbGroupTasks.setHeight(lbGroupTasks.Height() + room);
    Picture2[0].setHeight(Picture2[0].Height() + room);
}

void frmSteplet::Form_Activate()
{
    Guard g(QStringLiteral("frmSteplet: Form_Activate"));
    g.run([&] {
        g(20); if (bFirstDisplay) {
            g(30); SetFocus();
            g(40); bFirstDisplay = false;
        }
        g(50); host().setScreenMousePointer(Control::Default);
    }, [&] { Unload(); });
}

void frmSteplet::CheckOLVersion()
{
    Guard g(QStringLiteral("frmSteplet: CheckOLVersion"));
    // One statement: a version that cannot be read leaves the number as it was (0 in a new
    // session, an old Outlook to the contact picker) rather than choosing 7 from nothing.
    g.step(20, [&] {
        const double v = leadingNumber(must(session().olApp).Version().left(3));
        session().iOutlookVersion = v < 8.5 ? 7 : v < 9 ? 8 : v < 10 ? 9 : v < 11 ? 10 : 11;
    });
}

void frmSteplet::FillContactList()
{
    Guard g(QStringLiteral("frmSteplet: FillContactList"));
    g.run([&] {
        Recordset& rs = must(session().rsContacts);
        g(20); QRVComboContacts.Clear();
        g(30); QRVComboContacts.AddItem(QString(), 9999999);
        g(40); Field id = rs.Fields(QStringLiteral("ContactID"));
        Field name = rs.Fields(QStringLiteral("ContactName"));
        // Read for its failure alone: a contact table without the account column stops the fill here.
        (void)rs.Fields(QStringLiteral("ContactAccount"));
        g(50); if (rs.RecordCount() > 0) rs.MoveFirst();
        g(60); const Int16 count = Int16::from(static_cast<long long>(rs.RecordCount()));
        for (Int16 i(1); i <= count; ++i) {
            g(70); QRVComboContacts.AddItem(name.value().toText(), id.value().toLong());
            g(80); if (i != count) rs.MoveNext();
        }
    }, [&] { Unload(); });
}

void frmSteplet::FillTaskList()
{
    Guard g(QStringLiteral("frmSteplet: FillTaskList"));
    g.run([&] {
        Recordset& rs = must(session().rsTemplates);
        g(20); lbTaskTemplates.Clear();
        g(30); lbGroupTasks.Clear();
        g(40); rs.Requery();
        g(50); if (!(rs.BOF() && rs.EOF_()) && rs.RecordCount() != 0) {
            g(60); rs.MoveFirst();
            while (!rs.EOF_()) {
                g(70); const QString subject = rs.Fields(QStringLiteral("Subject")).value().toText();
                const qint32 id = rs.Fields(QStringLiteral("ID")).value().toLong();
                g(80); lbTaskTemplates.AddItem(subject);
                lbTaskTemplates.setItemData(lbTaskTemplates.NewIndex(), id);
                g(90); lbGroupTasks.AddItem(subject);
                lbGroupTasks.setItemData(lbGroupTasks.NewIndex(), id);
                g(100); rs.MoveNext();
            }
        }
    }, [&] { Unload(); });
}

void frmSteplet::FillGroupList()
{
    Guard g(QStringLiteral("frmSteplet: FillGroupList"));
    g.run([&] {
        Recordset& rs = must(session().rsGroups);
        g(20); cboGroup.Clear();
        g(30); if (rs.BOF() && rs.EOF_()) {
            g(40); disableGroupControls();
        } else {
            g(50); rs.MoveFirst();
            while (!rs.EOF_()) {
                g(60); cboGroup.AddItem(rs.Fields(1).value().toText());
                g(70); cboGroup.setItemData(cboGroup.NewIndex(), rs.Fields(0).value().toLong());
                g(80); rs.MoveNext();
            }
        }
        g(90); if (cboGroup.ListCount() > 0) cboGroup.setListIndex(0);
    }, [&] { Unload(); });
}

// With no group to show, every control of the group page stands disabled and empty.
void frmSteplet::disableGroupControls()
{
    for (int i = 0; i < lbGroupTasks.ListCount(); ++i) lbGroupTasks.setSelected(i, false);
    lbGroupTasks.setEnabled(false);
    for (auto& option : chkGroupOption) {
        option.setValue(CheckBox::Unchecked);
        option.setEnabled(false);
    }
    txtGroupPrompt.setText(QString());
    txtGroupPrompt.setEnabled(false);
    txtGroupAnchor.setText(QString());
    txtGroupAnchor.setEnabled(false);
}

int frmSteplet::tickedCount(const ListBox& list) const
{
    int n = 0;
    for (int i = 0; i < list.ListCount(); ++i)
        if (list.Selected(i)) ++n;
    return n;
}

void frmSteplet::FormatListButtons()
{
    Guard g(QStringLiteral("frmSteplet: FormatListButtons"));
    g.run([&] {
        g(20); const int n = tickedCount(lbTaskTemplates);
        g(30); cmdEdit.setEnabled(n == 1);
        g(40); cmdDelete.setEnabled(n >= 1);
        g(50); ProcessTasksButton.setEnabled(n >= 1);
    }, [&] { Unload(); });
}

QString frmSteplet::RetrieveContactEID(qint32 lContactID)
{
    Guard g(QStringLiteral("frmSteplet: RetrieveContactEID"));
    QString result;
    std::shared_ptr<Recordset> rs;
    g.step(20, [&] { rs = session().store().CreateRecordset(); });
    g.step(30, [&] {
        must(rs).Open(QStringLiteral("SELECT ContactEntryID FROM tblContacts WHERE ContactID = ") + QString::number(lContactID),
                      session().cnLink, ado::adOpenKeyset, ado::adLockReadOnly);
    });
    g.step(40, [&] {
        if (must(rs).RecordCount() == 1) result = rs->Fields(0).value().toText();
    });
    return result;
}

// Shows the page of the selected tab: pages are moved out of sight rather than hidden.
void frmSteplet::TabStrip1_Click()
{
    // "frmSteplets", not the window's name, is the literal reports have always shown: keep it.
    Guard g(QStringLiteral("frmSteplets: TabStrip1_Click"));
    g.run([&] {
        g(20); showSelectedPage(Picture1, TabStrip1.SelectedTab(), kPageLeft);
        g(30); if (TabStrip1.SelectedTab() == 1) {
            g(40); chkContactOption1.setTabStop(false);
            chkContactOption2.setTabStop(false);
            g(50); if (txtContact.effectivelyVisible()) txtContact.SetFocus();
        } else {
            g(60); chkContactOption1.setTabStop(true);
            chkContactOption2.setTabStop(true);
            g(70); if (chkContactOption1.effectivelyVisible() && chkContactOption1.effectivelyEnabled()) chkContactOption1.SetFocus();
        }
    }, [&] { Unload(); });
}

void frmSteplet::TabStrip2_Click()
{
    // The same deliberate "frmSteplets" as the first tab strip's.
    Guard g(QStringLiteral("frmSteplets: TabStrip2_Click"));
    const bool manage = session().bNoTimeCard;
    g.run([&] {
        g(20); showSelectedPage(Picture2, TabStrip2.SelectedTab(), kPageLeft);
        g(30); if (TabStrip2.SelectedTab() == 1) {
            g(40); ProcessTasksButton.setCaption(QStringLiteral("&Process Task(s)"));
            g(50); if (manage) cmdEdit.setVisible(true);
            g(60); FormatListButtons();
            g(70); chkContactOption1.setToolTipText(QStringLiteral("Check to link each of the task templates selected below to more than one contact."));
            chkContactOption2.setToolTipText(QStringLiteral("Check to process each of the task templates selected below for more than one contact link."));
            cmdEdit.setToolTipText(QStringLiteral("Click to edit the selected task template."));
            cmdAdd.setToolTipText(QStringLiteral("Click to add a new task template."));
            cmdDelete.setToolTipText(QStringLiteral("Click to delete the selected task template."));
            ProcessTasksButton.setToolTipText(QStringLiteral("Click to process all of the selected task templates."));
            g(80); lbTaskTemplates.setTabStop(true);
            for (Control* c : std::initializer_list<Control*>{&lbGroupTasks, &chkGroupOption[0], &chkGroupOption[1],
                                                              &txtGroupAnchor, &txtGroupPrompt})
                c->setTabStop(false);
            g(90); if (lbTaskTemplates.effectivelyVisible()) lbTaskTemplates.SetFocus();
        } else {
            g(100); if (cboGroup.ListCount() == 0) lbGroupTasks.setEnabled(false);
            else SelectGroupTasks();
            g(110); ProcessTasksButton.setCaption(QStringLiteral("&Process Group"));
            g(120); if (manage) cmdEdit.setVisible(false);
            g(130); const bool group = !cboGroup.Text().isEmpty();
            ProcessTasksButton.setEnabled(group);
            cmdDelete.setEnabled(group);
            g(140); chkContactOption1.setToolTipText(QStringLiteral("Check to link this group of tasks to more than one contact."));
            chkContactOption2.setToolTipText(QStringLiteral("Check to process this group of tasks for more than one contact link."));
            cmdAdd.setToolTipText(QStringLiteral("Click to add a new group."));
            cmdDelete.setToolTipText(QStringLiteral("Click to delete the selected group."));
            ProcessTasksButton.setToolTipText(QStringLiteral("Click to process all of the tasks included in this group."));
            g(150); lbTaskTemplates.setTabStop(false);
            for (Control* c : std::initializer_list<Control*>{&lbGroupTasks, &chkGroupOption[0], &chkGroupOption[1],
                                                              &txtGroupAnchor, &txtGroupPrompt})
                c->setTabStop(true);
            g(160); if (cboGroup.canTakeFocus()) cboGroup.SetFocus();
        }
    }, [&] { Unload(); });
}

void frmSteplet::CancelButton_Click() { Unload(); }

// Closing the window ends the session: both connections go, the local one first.
void frmSteplet::Form_QueryUnload(int& cancel, int unloadMode)
{
    (void)cancel;
    (void)unloadMode;
    SessionContext& s = session();
    if (s.cnLocal) {
        if (s.cnLocal->State() == ado::adStateOpen) s.cnLocal->Close();
        s.cnLocal.reset();
    }
    if (s.cnLink) {
        if (s.cnLink->State() == ado::adStateOpen) s.cnLink->Close();
        s.cnLink.reset();
    }
}

} // namespace steplets
