#pragma once
// The main window of a session: the templates, the groups, the contact link and the commands.
// Its modal loop is the main loop of the component. The implementation is split by concern:
// frmSteplet.cpp (start-up, lists, tabs), frmStepletGroups.cpp (the group page),
// frmStepletCommands.cpp (add, delete, selection marks, list keys), frmStepletContacts.cpp (the
// contact area), frmStepletLaunch.cpp (the launch of a processing run).
#include "session/SessionContext.h"
#include "controls/Bars.h"
#include "controls/Buttons.h"
#include "controls/Form.h"
#include "controls/Lists.h"
#include "controls/TabStrip.h"
#include "controls/TextControls.h"
#include <memory>

namespace steplets {

class frmSteplet : public Form {
public:
    explicit frmSteplet(UiHost& host);

    // Operations that other parts of the window call.
    void FillTaskList();
    void FillGroupList();
    void FillContactList();
    void FormatListButtons();
    QString RetrieveContactEID(qint32 lContactID);
    void CheckOLVersion();

    // The group page.
    void cboGroup_Click();
    void SelectGroupTasks();
    void lbGroupTasks_Click();
    void ProcessChangesToGroupTasks();
    void chkGroupOption_Click(int Index);
    void txtGroupAnchor_LostFocus();
    void txtGroupPrompt_LostFocus();
    void ProcessChangesToGroupOptions();

    // Selection marks and the list commands.
    void ResetTagField();
    void AddTags();
    void cmdAdd_Click();
    void cmdEdit_Click();
    void cmdOptions_Click();
    void cmdDelete_Click();
    void lbTaskTemplates_Click();
    void lbTaskTemplates_GotFocus();
    void lbTaskTemplates_KeyDown(int& KeyCode, int Shift);

    // The contact area.
    void abSelectContact_ToolClick(Tool& tool);
    void chkContactOption1_Click();
    void chkContactOption2_Click();
    void txtContact_GotFocus();
    void txtContact_KeyDown(int& KeyCode, int Shift);
    void txtContact_MouseMove(int Button, int Shift, double X, double Y);
    void txtContact_Click();

    // The launch of a processing run.
    void ProcessTasksButton_Click();

    void TabStrip1_Click();
    void TabStrip2_Click();
    void CancelButton_Click();

    // Controls, in the window's order.
    TabStrip TabStrip1{*this, QStringLiteral("TabStrip1")};
    ControlArray<PictureBox> Picture1{*this, QStringLiteral("Picture1"), {0, 1}};
    TextBox txtContact{*this, QStringLiteral("txtContact")};
    ToolBar abSelectContact{*this, QStringLiteral("abSelectContact")};
    CheckBox chkContactOption1{*this, QStringLiteral("chkContactOption1")};
    CheckBox chkContactOption2{*this, QStringLiteral("chkContactOption2")};
    Frame Frame1{*this, QStringLiteral("Frame1")};
    TabStrip TabStrip2{*this, QStringLiteral("TabStrip2")};
    ControlArray<PictureBox> Picture2{*this, QStringLiteral("Picture2"), {0, 1}};
    ListBox lbTaskTemplates{*this, QStringLiteral("lbTaskTemplates")};
    Label Label1{*this, QStringLiteral("Label1")};
    ComboBox cboGroup{*this, QStringLiteral("cboGroup")};
    Label Label3{*this, QStringLiteral("Label3")};
    ListBox lbGroupTasks{*this, QStringLiteral("lbGroupTasks")};
    Label Label2{*this, QStringLiteral("Label2")};
    ControlArray<CheckBox> chkGroupOption{*this, QStringLiteral("chkGroupOption"), {0, 1}};
    Label lblGroupAnchor{*this, QStringLiteral("lblGroupAnchor")};
    TextBox txtGroupAnchor{*this, QStringLiteral("txtGroupAnchor")};
    Label lblGroupPrompt{*this, QStringLiteral("lblGroupPrompt")};
    TextBox txtGroupPrompt{*this, QStringLiteral("txtGroupPrompt")};
    ContactCombo QRVComboContacts{*this, QStringLiteral("QRVComboContacts")};
    CommandButton ProcessTasksButton{*this, QStringLiteral("ProcessTasksButton")};
    CommandButton cmdAdd{*this, QStringLiteral("cmdAdd")};
    CommandButton cmdEdit{*this, QStringLiteral("cmdEdit")};
    CommandButton cmdDelete{*this, QStringLiteral("cmdDelete")};
    CommandButton cmdOptions{*this, QStringLiteral("cmdOptions")};
    CommandButton CancelButton{*this, QStringLiteral("CancelButton")};

    // Members.
    bool bFirstDisplay = false;
    qint32 lGroupID = 0;
    bool bLoadingGroup = false;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_QueryUnload(int& cancel, int unloadMode) override;

private:
    void design();
    void connectHandlers();
    void layoutManageMode();
    void layoutProcessMode();
    void disableGroupControls();
    int tickedCount(const ListBox& list) const;
    void contactOptionClick(const QString& literal, CheckBox& option, CheckBox& twin, int mode);
};

} // namespace steplets
