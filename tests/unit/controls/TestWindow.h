#pragma once
// A window for tests: one control of each kind, and the form events as hooks a test can set.
// It runs on the scripted host, the same host scenarios use.
#include "Failures.h"
#include "ScriptedSteps.h"
#include "controls/Controls.h"
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace steplets::test {

class TestWindow : public Form {
public:
    explicit TestWindow(UiHost& host, const QString& name = QStringLiteral("frmTest")) : Form(host, name) {
        setCaption(QStringLiteral(" Test Window"));
        cmdOK.setCaption(QStringLiteral("&OK"));
        cmdOK.setDefault(true);
        cmdCancel.setCaption(QStringLiteral("&Cancel"));
        cmdCancel.setCancel(true);
        for (auto& o : optChoice) o.setContainer(&fraChoice);
        txtInPage.setContainer(&picPage[1]);
        lstTicks.setStyle(ListBox::Style::CheckBox);
        lstMulti.setMultiSelect(ListBox::MultiSelect::Simple);
        tabMain.addTab(QStringLiteral("&One"));
        tabMain.addTab(QStringLiteral("&Two"));
        sbStatus.addPanel();
        sbStatus.addPanel();
        Band& band = abTools.addBand(QStringLiteral("Band1"));
        band.addTool(QStringLiteral("Tool0"), 0).setToolTipText(QStringLiteral("Pick."));
        band.addTool(QStringLiteral("Tool3"), 3).setToolTipText(QStringLiteral("Clear."));
    }

    std::function<void()> onLoad, onActivate;
    std::function<void(int&, int)> onQueryUnload;
    std::function<void(int&)> onUnload;

    CommandButton cmdOK{*this, QStringLiteral("cmdOK")};
    CommandButton cmdCancel{*this, QStringLiteral("cmdCancel")};
    CheckBox chkOption{*this, QStringLiteral("chkOption")};
    Frame fraChoice{*this, QStringLiteral("fraChoice")};
    ControlArray<OptionButton> optChoice{*this, QStringLiteral("optChoice"), {0, 1, 2}};
    OptionButton optAlone{*this, QStringLiteral("optAlone")};
    TextBox txtName{*this, QStringLiteral("txtName")};
    TextBox txtOther{*this, QStringLiteral("txtOther")};
    ControlArray<PictureBox> picPage{*this, QStringLiteral("picPage"), {0, 1}};
    TextBox txtInPage{*this, QStringLiteral("txtInPage")};
    Label lblInfo{*this, QStringLiteral("lblInfo")};
    ListBox lstTicks{*this, QStringLiteral("lstTicks")};
    ListBox lstMulti{*this, QStringLiteral("lstMulti")};
    ComboBox cboPick{*this, QStringLiteral("cboPick")};
    TabStrip tabMain{*this, QStringLiteral("tabMain")};
    Grid grdResults{*this, QStringLiteral("grdResults")};
    StatusBar sbStatus{*this, QStringLiteral("sbStatus")};
    ProgressBar pbProgress{*this, QStringLiteral("pbProgress")};
    ToolBar abTools{*this, QStringLiteral("abTools")};
    Calendar calDate{*this, QStringLiteral("calDate")};

protected:
    void Form_Load() override { if (onLoad) onLoad(); }
    void Form_Activate() override { if (onActivate) onActivate(); }
    void Form_QueryUnload(int& cancel, int mode) override { if (onQueryUnload) onQueryUnload(cancel, mode); }
    void Form_Unload(int& cancel) override { if (onUnload) onUnload(cancel); }
};

// Counts how often an event was raised.
struct Counter {
    int n = 0;
    std::function<void()> fn() { return [this] { ++n; }; }
};

} // namespace steplets::test
