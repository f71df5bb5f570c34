#include "frmProcessTasks.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"

namespace steplets {

frmProcessTasks::frmProcessTasks(UiHost& host) : Form(host, QStringLiteral("frmProcessTasks"))
{
    design();
    Timer1.Tick.connect([this] { Timer1_Timer(); });
    Timer2.Tick.connect([this] { Timer2_Timer(); });
    cmdOK.Click.connect([this] { cmdOK_Click(); });
    cmdUndo.Click.connect([this] { cmdUndo_Click(); });
    MSHFlexGrid1.DblClick.connect([this] { MSHFlexGrid1_DblClick(); });
}

frmProcessTasks::~frmProcessTasks() = default;

void frmProcessTasks::design()
{
    setCaption(QStringLiteral(" Task Processing"));
    setWidth(8400);
    setHeight(5400);
    hdrText.Move(120, 120, 8055, 255);
    MSHFlexGrid1.Move(120, 480, 8055, 3375);
    MSHFlexGrid1.setCols(4);
    ProgressBar1.Move(120, 3960, 8055, 255);
    ProgressBar1.setMax(20);
    cmdOK.setCaption(QStringLiteral("&OK"));
    cmdOK.Move(5520, 4320, 1215, 375);
    cmdOK.setEnabled(false);
    cmdUndo.setCaption(QStringLiteral("&Undo"));
    cmdUndo.Move(6960, 4320, 1215, 375);
    cmdUndo.setEnabled(false);
    StatusBar1.Move(0, 4800, 8400, 315);
    for (int i = 0; i < 3; ++i) StatusBar1.addPanel();
    Timer1.setEnabled(false);
    Timer1.setInterval(1000);
    Timer2.setEnabled(false);
    Timer2.setInterval(100);
}

qint32 frmProcessTasks::faIndex(Int16& iRow, Int16& iCol)
{
    Guard g("frmProcessTasks: faIndex");
    return g.orElse(qint32(0), [&] {
        g(10);
        return static_cast<qint32>(MSHFlexGrid1.Cols()) * iRow.value() + iCol.value();
    });
}

void frmProcessTasks::Form_Load() {}
void frmProcessTasks::Form_Activate() {}
void frmProcessTasks::Timer1_Timer() {}
void frmProcessTasks::Timer2_Timer() {}
void frmProcessTasks::ProcessTasks() {}
void frmProcessTasks::ProcessTemplateOptions() {}
void frmProcessTasks::CreateTaskFromTemplate() {}
void frmProcessTasks::cmdOK_Click() { Unload(); }
void frmProcessTasks::cmdUndo_Click() {}
void frmProcessTasks::MSHFlexGrid1_DblClick() {}
void frmProcessTasks::writePanels(int) {}
void frmProcessTasks::endOfLastPass() {}

void frmProcessTasks::Form_QueryUnload(int& cancel, int)
{
    if (bProcessing) cancel = 1;
}

} // namespace steplets
