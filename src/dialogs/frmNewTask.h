#pragma once
// The options of a task template that do not live on the task itself: the date type with the
// temporary anchor date and its description, the four subject fill-ins with their prompts, and
// whether tasks made from it ask for an assignee. New mode leads on to the task form ("Create
// Template"); Edit mode can also store the options straight into the template's row (OK). The
// caller reads what the dialog did from EditedTemplate and OptionsDialogDeclined.
#include "FillinEditor.h"
#include "controls/Buttons.h"
#include "controls/Calendar.h"
#include "controls/Form.h"
#include "controls/Lists.h"
#include "controls/TabStrip.h"
#include "controls/TextControls.h"
#include "platform/runtime/Int16.h"
#include <array>

namespace steplets {

class frmNewTask : public Form {
public:
    explicit frmNewTask(UiHost& host);

    void NewTaskDialog(Bool16& blnEdit, QString& sTaskName);

    Label hdrText{*this, QStringLiteral("hdrText")};
    TabStrip TabStrip1{*this, QStringLiteral("TabStrip1")};
    ControlArray<PictureBox> Picture1{*this, QStringLiteral("Picture1"), {0, 1, 2}};
    ControlArray<Frame> Frame1{*this, QStringLiteral("Frame1"), {0, 1, 2}};
    ControlArray<OptionButton> optDueDateType{*this, QStringLiteral("optDueDateType"), {0, 1, 2}};
    Label Label1{*this, QStringLiteral("Label1")};
    Calendar dtmAnchorDate{*this, QStringLiteral("dtmAnchorDate")};
    Label Label4{*this, QStringLiteral("Label4")};
    TextBox txtAnchorDescription{*this, QStringLiteral("txtAnchorDescription")};
    ControlArray<Label> Label2{*this, QStringLiteral("Label2"), {0, 1, 2}};
    ComboBox cboSubjectField{*this, QStringLiteral("cboSubjectField")};
    ComboBox cboFillin{*this, QStringLiteral("cboFillin")};
    TextBox txtUserPrompt{*this, QStringLiteral("txtUserPrompt")};
    Label Label3{*this, QStringLiteral("Label3")};
    TextBox Text1{*this, QStringLiteral("Text1")};
    CheckBox chkAssignee{*this, QStringLiteral("chkAssignee")};
    CommandButton OKButton{*this, QStringLiteral("OKButton")};
    CommandButton CancelButton{*this, QStringLiteral("CancelButton")};
    CommandButton CreateEditButton{*this, QStringLiteral("CreateEditButton")};

    // Members.
    bool bEditMode = false;
    bool bFieldLoading = false;
    Int16 iDueDateType;
    std::array<QString, 5> sFillin;
    std::array<QString, 5> sUserPrompt;
    bool bInitialAssignee = false;
    QString sAnchorDescription;
    bool bPromptAssignee = false;
    Date dAnchorDate;
    bool bTabMouseClick = false;

    void optDueDateType_Click(int Index);
    void chkAssignee_Click();
    void dtmAnchorDate_Click();
    void dtmAnchorDate_GotFocus();
    void txtAnchorDescription_LostFocus();
    void CreateEditButton_Click();
    void OKButton_Click();
    void CancelButton_Click();
    void TabStrip1_Click();

    FillinEditor& fillins() { return m_fillins; }

protected:
    void Form_Load() override;
    void Form_QueryUnload(int& cancel, int unloadMode) override;

private:
    void design();
    void connectHandlers();
    // Gives OK (when shown) and Cancel the tab places from `next` on.
    void placeOkAndCancel(int next);

    FillinEditor m_fillins;
};

} // namespace steplets
