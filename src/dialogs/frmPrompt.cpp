#include "frmPrompt.h"
#include "platform/runtime/Constants.h"
#include "platform/Guard.h"
#include "platform/SettingsGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include "templates/EditedTemplate.h"

namespace steplets {

using namespace vb;

namespace {

const char* const kHelpPage[] = {
    "Now that you have set the basic options for your new task template, Steplets will open an Outlook task form for you to edit.  Please use this form to set all of the properties of your new task template, including the subject, body, due date, priority, recurrence pattern, etc.",
    "If you chose an anchor date type, make sure you set your due date and reminder dates relative to the initial anchor date you selected.",
    "Steplets will use whatever you enter in the subject field of the task form as the name of your new task template.",
    "When you are sure all of the necessary properties of the task form have been set, click on \"Save and Close\".  Steplets will then save all of your changes to the task template.",
};
const char* const kQuestionPage[] = {
    "The selected tasks require the following input:",
    "Anchor Dates:",
    "User Input:",
    "Would you prefer to use common input for all of these anchor dates and/or user input prompts?  Click \"Yes\" if you wish to use common input.  Click \"No\" if you wish to process input for each task separately.",
};
} // namespace

frmPrompt::frmPrompt(UiHost& host) : Form(host, QStringLiteral("frmPrompt"))
{
    design();
    OKButton.Click.connect([this] { OKButton_Click(); });
    CancelButton.Click.connect([this] { CancelButton_Click(); });
    ActiveCalendar1.GotFocus.connect([this] { ActiveCalendar1_GotFocus(); });
}

// The window as designed: every frame and label of a mode starts hidden.
void frmPrompt::design()
{
    setCaption(QStringLiteral(" Task Template Options"));
    setWidth(6015);
    setHeight(3135);
    hdrText.Move(120, 120, 5655, 795);
    Frame1[0].setCaption(QStringLiteral("Anchor Date"));
    Frame1[0].Move(120, 1035, 5655, 975);
    lblAnchorDate.setCaption(QStringLiteral("Please select anchor date:  "));
    lblAnchorDate.setContainer(&Frame1[0]);
    lblAnchorDate.Move(240, 420, 2500, 255);
    ActiveCalendar1.setContainer(&Frame1[0]);
    ActiveCalendar1.Move(2880, 360, 2535, 375);
    Frame1[1].setCaption(QStringLiteral("User Prompt"));
    Frame1[1].Move(120, 2070, 5655, 975);
    txtUserInput.setContainer(&Frame1[1]);
    txtUserInput.Move(240, 360, 5175, 375);
    for (int i = 0; i < 4; ++i) {
        Label1[i].setCaption(QString::fromUtf8(kHelpPage[i]));
        Label1[i].Move(120, 1035 + i * 720, 5655, 675);
        Label2[i].setCaption(QString::fromUtf8(kQuestionPage[i]));
        Label2[i].Move(i == 1 || i == 2 ? 480 : 120, 1035 + i * 480, i == 3 ? 5655 : 2400, i == 3 ? 960 : 255);
    }
    Label3[0].Move(3000, 1515, 1200, 255);
    Label3[1].Move(3000, 1995, 1200, 255);
    Check1.setCaption(QStringLiteral(" Don't show again."));
    Check1.Move(120, 3915, 2655, 255);
    OKButton.setCaption(QStringLiteral("&OK"));
    OKButton.setDefault(true);
    CancelButton.setCaption(QStringLiteral("&Cancel"));
    setButtonsTop(2160);

    for (auto& f : Frame1) f.setVisible(false);
    lblAnchorDate.setVisible(false);
    ActiveCalendar1.setVisible(false);
    txtUserInput.setVisible(false);
    for (auto& l : Label1) l.setVisible(false);
    for (auto& l : Label2) l.setVisible(false);
    for (auto& l : Label3) l.setVisible(false);
    Check1.setVisible(false);
}

void frmPrompt::setButtonsTop(int top)
{
    OKButton.Move(3240, top, 1215, 375);
    CancelButton.Move(4560, top, 1215, 375);
}

void frmPrompt::PromptDialog(qint32& iPromptType, Bool16& blnAnchorDate, Bool16& blnUserPrompt, QString& sUserPrompt,
                             QString& sItemDesc, QString& sAnchorDesc)
{
    Guard g(QStringLiteral("frmPrompt: PromptDialog"));
    g.run([&] {
        g(20);
        switch (iPromptType) {
        case promptMode::TemplateOptions:
            setCaption(QStringLiteral(" Steplets: Task Template Options"));
            hdrText.setCaption(QStringLiteral("Please set the following options for your template named '") + sItemDesc + QStringLiteral("'."));
            break;
        case promptMode::GroupOptions:
            setCaption(QStringLiteral(" Steplets: Template Group Options"));
            hdrText.setCaption(QStringLiteral("Please set the following options for your template group named '") + sItemDesc + QStringLiteral("'."));
            break;
        case promptMode::NewGroup:
            setCaption(QStringLiteral(" Steplets: New Template Group"));
            hdrText.setCaption(QStringLiteral("Please enter the name of your new task template group, then click on OK."));
            break;
        case promptMode::NewTemplateHelp:
            setCaption(QStringLiteral(" Steplets: New Task Template Help"));
            hdrText.setCaption(QStringLiteral("IMPORTANT NOTE:  Editing the properties of your new task template."));
            break;
        case promptMode::Input:
            setCaption(QStringLiteral(" Steplets"));
            hdrText.setCaption(sItemDesc);
            break;
        case promptMode::CommonInputQuestion:
            setCaption(QStringLiteral(" Steplets Processing"));
            hdrText.setCaption(QStringLiteral("Would you like to use common input for all of the selected tasks?"));
            break;
        default:
            break;
        }
        g(30);
        switch (iPromptType) {
        case promptMode::NewGroup:
            g(40); setHeight(3135);
            Frame1[1].setTop(1035);
            Frame1[1].setCaption(sUserPrompt);
            Frame1[1].setVisible(true);
            txtUserInput.setVisible(true);
            setButtonsTop(2160);
            break;
        case promptMode::NewTemplateHelp:
            g(50); bHelpMode = true;
            setHeight(5250);
            setButtonsTop(4230);
            for (auto& l : Label1) l.setVisible(true);
            Check1.setVisible(true);
            break;
        case promptMode::CommonInputQuestion:
            g(60); setHeight(4110);
            OKButton.setCaption(QStringLiteral("&Yes"));
            CancelButton.setCaption(QStringLiteral("&No"));
            setButtonsTop(3150);
            for (auto& l : Label2) l.setVisible(true);
            for (auto& l : Label3) l.setVisible(true);
            Label3[0].setCaption(sUserPrompt);
            Label3[1].setCaption(sItemDesc);
            break;
        default:
            g(70); inputLayout(blnAnchorDate, blnUserPrompt, sUserPrompt, sAnchorDesc);
            g(80); session().sPromptResult.clear();
            g(90); session().dPromptAnchorDate = Date();
            break;
        }
        g(100); Show();
    }, [&] { Unload(); });
}

void frmPrompt::inputLayout(Bool16 blnAnchorDate, Bool16 blnUserPrompt, const QString& sUserPrompt,
                            const QString& sAnchorDesc)
{
    const bool withDate = blnAnchorDate;
    const bool withText = !withDate || blnUserPrompt;   // the text flag counts only beside a date
    setHeight(withDate && withText ? 4110 : 3135);
    setButtonsTop(withDate && withText ? 3150 : 2160);
    if (withDate) {
        Frame1[0].setTop(1035);
        Frame1[0].setVisible(true);
        lblAnchorDate.setVisible(true);
        ActiveCalendar1.setVisible(true);
        if (!sAnchorDesc.isEmpty()) lblAnchorDate.setCaption(sAnchorDesc + QStringLiteral(":"));
    }
    if (withText) {
        Frame1[1].setTop(withDate ? 2070 : 1035);
        Frame1[1].setCaption(sUserPrompt);
        Frame1[1].setVisible(true);
        txtUserInput.setVisible(true);
    }
}

void frmPrompt::OKButton_Click()
{
    Guard g(QStringLiteral("frmPrompt: OKButton_Click"));
    SessionContext& s = session();
    g.run([&] {
        g(20); if (bHelpMode) {
            g(30); auto key = session().settings().OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
            g(40); session().settings().WriteNumber(*key, QStringLiteral("New Task Description"), Check1.Value() == CheckBox::Checked ? 0 : 1);
        }
        g(50); if (Frame1[1].Visible()) {
            g(60); if (bNewGroupMode && txtUserInput.Text().isEmpty()) {
                g(70); host().MsgBox(QStringLiteral("Please enter a name for the new group."), vbExclamation | vbSystemModal,
                                     QStringLiteral(" Name Required"));
                return;
            }
            g(80); s.sPromptResult = txtUserInput.Text();
        } else {
            g(90); s.sPromptResult.clear();
        }
        g(100); if (Frame1[0].Visible()) {
            g(110); if (ActiveCalendar1.Value().type() != Value::Type::Date) {
                g(120); host().MsgBox(QStringLiteral("Please enter an anchor date."), vbExclamation | vbSystemModal,
                                      QStringLiteral(" Anchor Date Required"));
                return;
            }
            g(130); s.dPromptAnchorDate = ActiveCalendar1.Value().toDate();
        } else {
            g(140); s.dPromptAnchorDate = host().Now();
        }
        g(150); Unload();
    }, [&] { Unload(); });
}

void frmPrompt::CancelButton_Click()
{
    Guard g(QStringLiteral("frmPrompt: CancelButton_Click"));
    g.run([&] {
        g(20); if (bHelpMode) modTasks::EditedTemplate().OptionsDialogDeclined = true;
        else session().bPromptCancelled = true;
        g(30); Unload();
    }, [&] { Unload(); });
}

void frmPrompt::ActiveCalendar1_GotFocus()
{
    Guard g(QStringLiteral("frmPrompt: ActiveCalendar1_GotFocus"));
    g.run([&] {
        g(20); ActiveCalendar1.setDisplayProperty(0, 0);
        g(30); ActiveCalendar1.setDisplayProperty(1, 50);
    }, [&] { Unload(); });
}

void frmPrompt::Form_QueryUnload(int& cancel, int unloadMode)
{
    (void)cancel;
    if (unloadMode != FormControlMenu) return;
    if (bHelpMode) modTasks::EditedTemplate().OptionsDialogDeclined = true;
    else session().bPromptCancelled = true;
}

} // namespace steplets
