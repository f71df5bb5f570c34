#pragma once
// The user's defaults: the fill-ins and prompts that new templates start from, which view the
// chooser opens on, and how the user is linked to new tasks. What Apply writes goes to the
// settings and into the session at once; Cancel drops what was not applied.
#include "FillinEditor.h"
#include "controls/Buttons.h"
#include "controls/Form.h"
#include "controls/Lists.h"
#include "controls/TabStrip.h"
#include "controls/TextControls.h"
#include "controls/Timer.h"
#include <array>

namespace steplets {

class frmOptions : public Form {
public:
    explicit frmOptions(UiHost& host);

    Label hdrText{*this, QStringLiteral("hdrText")};
    TabStrip TabStrip1{*this, QStringLiteral("TabStrip1")};
    ControlArray<PictureBox> Picture1{*this, QStringLiteral("Picture1"), {0, 1}};
    // Frame1(0) holds the default fill-ins, Frame1(1) the view option.
    ControlArray<Frame> Frame1{*this, QStringLiteral("Frame1"), {0, 1}};
    Frame Frame2{*this, QStringLiteral("Frame2")};
    ControlArray<Label> Label2{*this, QStringLiteral("Label2"), {0, 1, 4}};
    ComboBox Combo1{*this, QStringLiteral("Combo1")};
    ComboBox cboFillin{*this, QStringLiteral("cboFillin")};
    TextBox txtUserPrompt{*this, QStringLiteral("txtUserPrompt")};
    Label Label7{*this, QStringLiteral("Label7")};
    TextBox Text1{*this, QStringLiteral("Text1")};
    ControlArray<CheckBox> Check1{*this, QStringLiteral("Check1"), {0, 1}};
    ControlArray<OptionButton> Option1{*this, QStringLiteral("Option1"), {0, 1}};
    Timer Timer1{*this, QStringLiteral("Timer1")};
    CommandButton cmdOK{*this, QStringLiteral("cmdOK")};
    CommandButton cmdCancel{*this, QStringLiteral("cmdCancel")};
    CommandButton cmdApply{*this, QStringLiteral("cmdApply")};

    // Members.
    bool bTabMouseClick = false;
    bool bFieldLoading = false;
    std::array<QString, 5> sFillin;
    std::array<QString, 5> sUserPrompt;

    void Check1_Click(int Index);
    void Option1_Click();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void TabStrip1_Click();
    void Timer1_Timer();

    FillinEditor& fillins() { return m_fillins; }

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    void design();
    void connectHandlers();
    void enableApply();

    FillinEditor m_fillins;
};

} // namespace steplets
