#pragma once
// The one small modal dialog that asks for an anchor date, a line of text, a yes/no choice, or
// shows the help page for a new template. The caller creates it, calls PromptDialog, unloads it
// and reads sPromptResult, dPromptAnchorDate and bPromptCancelled from the session.
#include "controls/Buttons.h"
#include "controls/Calendar.h"
#include "controls/Form.h"
#include "controls/TextControls.h"
#include "platform/runtime/Int16.h"

namespace steplets {

class frmPrompt : public Form {
public:
    explicit frmPrompt(UiHost& host);

    void PromptDialog(qint32& iPromptType, Bool16& blnAnchorDate, Bool16& blnUserPrompt, QString& sUserPrompt,
                      QString& sItemDesc, QString& sAnchorDesc);

    Label hdrText{*this, QStringLiteral("hdrText")};
    ControlArray<Frame> Frame1{*this, QStringLiteral("Frame1"), {0, 1}};
    Label lblAnchorDate{*this, QStringLiteral("lblAnchorDate")};
    Calendar ActiveCalendar1{*this, QStringLiteral("ActiveCalendar1")};
    TextBox txtUserInput{*this, QStringLiteral("txtUserInput")};
    ControlArray<Label> Label1{*this, QStringLiteral("Label1"), {0, 1, 2, 3}};
    CheckBox Check1{*this, QStringLiteral("Check1")};
    ControlArray<Label> Label2{*this, QStringLiteral("Label2"), {0, 1, 2, 3}};
    ControlArray<Label> Label3{*this, QStringLiteral("Label3"), {0, 1}};
    CommandButton OKButton{*this, QStringLiteral("OKButton")};
    CommandButton CancelButton{*this, QStringLiteral("CancelButton")};

    bool bHelpMode = false;
    bool bNewGroupMode = false;       // never set: the group name check stays dormant

    void OKButton_Click();
    void CancelButton_Click();
    void ActiveCalendar1_GotFocus();

protected:
    void Form_QueryUnload(int& cancel, int unloadMode) override;

private:
    void design();
    void inputLayout(Bool16 blnAnchorDate, Bool16 blnUserPrompt, const QString& sUserPrompt,
                     const QString& sAnchorDesc);
    void setButtonsTop(int top);
};

} // namespace steplets
