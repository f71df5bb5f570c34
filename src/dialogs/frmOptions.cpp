#include "frmOptions.h"
#include "platform/Guard.h"
#include "platform/SettingsGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include "templates/FillinCatalogue.h"

namespace steplets {

namespace {
constexpr int kOptionsPageLeft = 135;
} // namespace

frmOptions::frmOptions(UiHost& host)
    : Form(host, QStringLiteral("frmOptions")),
      m_fillins({*this, Combo1, QStringLiteral("Combo1"), cboFillin, txtUserPrompt, Label2[1], Label2[0], Label2[4], Label7, Text1,
                 sFillin, sUserPrompt, bFieldLoading},
                FillinEditor::Options{50, false, true, [this] { enableApply(); }, modTasks::uiClock()})
{
    design();
    connectHandlers();
}

void frmOptions::design()
{
    setCaption(QStringLiteral(" Steplets Options"));
    setWidth(7200);
    setHeight(5520);
    hdrText.setCaption(QStringLiteral("Please select the default Task Template View and Task Preview options."));
    hdrText.Move(120, 120, 6855, 480);
    TabStrip1.addTab(QStringLiteral("&Default Fill-Ins"));
    TabStrip1.addTab(QStringLiteral("&Miscellaneous"));
    TabStrip1.Move(120, 720, 6855, 3855);
    for (auto& page : Picture1) {
        page.setContainer(&TabStrip1);
        page.Move(kOptionsPageLeft, 420, 6585, 3315);
    }

    // The default fill-ins.
    Frame1[0].setContainer(&Picture1[0]);
    Frame1[0].setCaption(QStringLiteral("Default Fill-Ins"));
    Frame1[0].Move(0, 0, 6585, 3135);
    m_fillins.layOut(Frame1[0], 6585);
    Combo1.setToolTipText(QStringLiteral("Select the field you wish to edit."));
    cboFillin.setToolTipText(QStringLiteral("Select the formatting you wish to include in the selected field."));
    // The limit is 50 though the tip says 40, as the dialog has always had it.
    txtUserPrompt.setToolTipText(QStringLiteral("Enter the user prompt (maximum of 40 characters) for this field."));

    // The links and the view.
    Frame2.setContainer(&Picture1[1]);
    Frame2.setCaption(QStringLiteral("User Links"));
    Frame2.Move(0, 0, 6585, 1095);
    const char* const checks[] = {" Add u&ser as linked contact on all new tasks.", " If &no contact selected, link to user."};
    const char* const checkTips[] = {"Check to add your user name as a link on all new tasks processed by Steplets.",
                                     "Check to add your user name as a link when processing new tasks without any other link."};
    for (int i = 0; i < 2; ++i) {
        Check1[i].setContainer(&Frame2);
        Check1[i].setCaption(QString::fromUtf8(checks[i]));
        Check1[i].setToolTipText(QString::fromUtf8(checkTips[i]));
        Check1[i].Move(240, 300 + i * 360, 6105, 285);
    }
    Frame1[1].setContainer(&Picture1[1]);
    Frame1[1].setCaption(QStringLiteral("Default Task Template View Option"));
    Frame1[1].setToolTipText(QStringLiteral("Select the default view when starting Steplets."));
    Frame1[1].Move(0, 1215, 6585, 1095);
    const char* const views[] = {"View task &template(s)", "View task &groups"};
    for (int i = 0; i < 2; ++i) {
        Option1[i].setContainer(&Frame1[1]);
        Option1[i].setCaption(QString::fromUtf8(views[i]));
        Option1[i].Move(240, 300 + i * 360, 6105, 285);
    }
    // Dormant: nothing enables it.
    Timer1.setInterval(3000);
    Timer1.setEnabled(false);

    const char* const buttons[] = {"&OK", "&Cancel", "&Apply"};
    CommandButton* row[] = {&cmdOK, &cmdCancel, &cmdApply};
    for (int i = 0; i < 3; ++i) {
        row[i]->setCaption(QString::fromUtf8(buttons[i]));
        row[i]->Move(2760 + i * 1440, 4695, 1215, 375);
    }
    cmdCancel.setCancel(true);
}

void frmOptions::connectHandlers()
{
    for (int i = 0; i < 2; ++i) Check1[i].Click.connect([this, i] { Check1_Click(i); });
    for (int i = 0; i < 2; ++i) Option1[i].Click.connect([this] { Option1_Click(); });
    cmdApply.Click.connect([this] { cmdApply_Click(); });
    cmdOK.Click.connect([this] { cmdOK_Click(); });
    cmdCancel.Click.connect([this] { cmdCancel_Click(); });
    TabStrip1.MouseDown.connect([this](int, int, double, double) { bTabMouseClick = true; });
    TabStrip1.Click.connect([this] { TabStrip1_Click(); });
    Timer1.Tick.connect([this] { Timer1_Timer(); });
}

// The dirty state is the button itself.
void frmOptions::enableApply()
{
    if (!cmdApply.Enabled()) cmdApply.setEnabled(true);
}

void frmOptions::Form_Load()
{
    Guard g(QStringLiteral("frmOptions: Form_Load"));
    SessionContext& s = session();
    g.run([&] {
        g(20); setCaption(QStringLiteral(" Steplets Options"));
        g(30); Check1[0].setValue(s.iLinkUser.value());
        g(40); Check1[1].setValue(s.iLinkUserIfNoContact.value());
        g(50); Option1[s.iTaskSelection.value()].setValue(true);
        g(60); modTasks::LoadFillins(cboFillin);
        g(70);
        for (int k = 1; k <= 4; ++k) {
            sFillin[k] = s.sDefaultFillIn[k];
            sUserPrompt[k] = s.sDefaultUserPrompt[k];
        }
        g(80); Combo1.setText(QStringLiteral("Field 1"));
        g(90); Text1.setText(m_fillins.FormatPreview());
        g(100); TabStrip1.selectTab(1);
        // Last, after all the clicks that the settings above raised.
        g(110); cmdApply.setEnabled(false);
    }, [&] { Unload(); });
}

void frmOptions::Form_Activate()
{
    // The stored view comes back whenever the window is active again; what was clicked and not
    // applied goes, while Apply stays enabled.
    Option1[session().iTaskSelection.value()].setValue(true);
}

void frmOptions::Check1_Click(int Index)
{
    Guard g(QStringLiteral("frmOptions: Check1_Click"));
    g.run([&] {
        g(20); enableApply();
        // Only disabled: a tick in the second box stays and is saved.
        g(30); if (Index == 0) Check1[1].setEnabled(Check1[0].Value() != CheckBox::Checked);
    }, [&] { Unload(); });
}

void frmOptions::Option1_Click() { enableApply(); }

void frmOptions::cmdApply_Click()
{
    Guard g(QStringLiteral("frmOptions: cmdApply_Click"));
    SessionContext& s = session();
    std::shared_ptr<SettingsKey> key;
    g.run([&] {
        SettingsGateway& store = session().settings();
        g(20); key = store.OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
        for (int k = 1; k <= 4; ++k) {
            g(30); store.WriteText(*key, QStringLiteral("Fill-In %1").arg(k), sFillin[k]);
        }
        for (int k = 1; k <= 4; ++k) {
            g(40); store.WriteText(*key, QStringLiteral("User Prompt %1").arg(k), sUserPrompt[k]);
        }
        g(50);
        const int view = Option1[0].Value() ? 0 : 1;
        store.WriteNumber(*key, QStringLiteral("Task Selection"), view);
        s.iTaskSelection = Int16(view);
        g(60); store.WriteNumber(*key, QStringLiteral("Link User"), Check1[0].Value());
        g(70); store.WriteNumber(*key, QStringLiteral("Link User if no Contact"), Check1[1].Value());
        g(80);
        s.iLinkUser = Int16(Check1[0].Value());
        s.iLinkUserIfNoContact = Int16(Check1[1].Value());
        for (int k = 1; k <= 4; ++k) {
            s.sDefaultFillIn[k] = sFillin[k];
            s.sDefaultUserPrompt[k] = sUserPrompt[k];
        }
        g(90); cmdApply.setEnabled(false);
        key.reset();
    }, [&] { Unload(); });
}

void frmOptions::cmdOK_Click()
{
    Guard g(QStringLiteral("frmOptions: cmdOK_Click"));
    g.run([&] {
        g(20); if (cmdApply.Enabled()) cmdApply_Click();
        g(30); Unload();
    }, [&] { Unload(); });
}

void frmOptions::cmdCancel_Click() { Unload(); }

void frmOptions::TabStrip1_Click()
{
    Guard g(QStringLiteral("frmOptions: TabStrip1_Click"));
    g.run([&] {
        const int tab = TabStrip1.SelectedTab();
        g(20);
        showSelectedPage(Picture1, tab, kOptionsPageLeft);
        g(30);
        if (tab == 1) {
            Combo1.setTabIndex(0);
            cboFillin.setTabIndex(1);
            txtUserPrompt.setTabIndex(2);
            cmdOK.setTabIndex(3);
            cmdCancel.setTabIndex(4);
            cmdApply.setTabIndex(5);
            hdrText.setCaption(QStringLiteral(
                "Please select the default text to be inserted in the subject field of new tasks processed using Steplets."));
        } else if (tab == 2) {
            Option1[0].setTabIndex(0);
            Option1[1].setTabIndex(1);
            Check1[0].setTabIndex(2);
            Check1[1].setTabIndex(3);
            cmdOK.setTabIndex(4);
            cmdCancel.setTabIndex(5);
            cmdApply.setTabIndex(6);
            hdrText.setCaption(QStringLiteral("Please select the default Task Template View, Task Preview options, and User Link options."));
        }
        g(40);
        if (bTabMouseClick) {
            g(50); TabStrip1.SetFocus();
            bTabMouseClick = false;
        } else if (tab == 1) {
            g(60); if (Combo1.Visible()) Combo1.SetFocus();
        } else if (tab == 2) {
            g(70);
            OptionButton& view = Option1[Option1[0].Value() ? 0 : 1];
            if (view.Visible()) view.SetFocus();
        }
    }, [&] { Unload(); });
}

void frmOptions::Timer1_Timer()
{
    Guard g(QStringLiteral("frmOptions: Timer1_Timer"));
    g.run([&] {
        g(20); host().setScreenMousePointer(0);
        g(30); Timer1.setEnabled(false);
    }, [&] { Unload(); });
}

} // namespace steplets
