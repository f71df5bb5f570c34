#pragma once
// The window in which selected templates become tasks, and where the results stay for review and
// Undo. The launch creates it, sets the m_ properties, sizes and seeds MSHFlexGrid1 (through
// faIndex) and hdrText, then shows it modally; the first tick of Timer1 after the first activation
// starts the run.
#include "controls/Bars.h"
#include "controls/Buttons.h"
#include "controls/Form.h"
#include "controls/Grid.h"
#include "controls/TextControls.h"
#include "controls/Timer.h"
#include "platform/Guard.h"
#include "platform/runtime/Date.h"
#include "platform/runtime/Int16.h"
#include <QString>
#include <memory>

namespace steplets {

namespace ol { class TaskItem; class MAPIFolder; }

class frmProcessTasks : public Form {
public:
    explicit frmProcessTasks(UiHost& host);
    ~frmProcessTasks() override;

    // Set by the launch.
    bool m_blnGroup = false;
    bool m_blnGroupAnchor = false;
    QString m_sAnchorDescription;
    bool m_blnGroupPrompt = false;
    QString m_sPrompt;
    QString m_sGroupName;
    Int16 m_iNewTaskCount{0};

    Label hdrText{*this, QStringLiteral("hdrText")};
    Grid MSHFlexGrid1{*this, QStringLiteral("MSHFlexGrid1")};
    ProgressBar ProgressBar1{*this, QStringLiteral("ProgressBar1")};
    StatusBar StatusBar1{*this, QStringLiteral("StatusBar1")};
    CommandButton cmdOK{*this, QStringLiteral("cmdOK")};
    CommandButton cmdUndo{*this, QStringLiteral("cmdUndo")};
    Timer Timer1{*this, QStringLiteral("Timer1")};
    Timer Timer2{*this, QStringLiteral("Timer2")};

    // Per grid row (0..m_iNewTaskCount): the created task, empty for none.
    BoundedArray<QString> aEntryIDs;
    BoundedArray<QString> aStoreIDs;
    // Per template of the current pass, from 1.
    BoundedArray<Bool16> aProcessFlags;
    BoundedArray<Date> aAnchorDates;
    BoundedArray<QString> aUserInputs;
    BoundedArray<Bool16> aAssignFlags;

    bool bProcessing = false;
    Int16 iTemplateCounter{0};
    Int16 iProcessedTotal{0};
    Int16 iSavedCount{0};
    Int16 iSkippedCount{0};
    Int16 iRowOffset{0};
    bool bLastPass = false;
    Int16 iTimer1Ticks{0};
    Int16 iTimer2Ticks{0};

    // Flat index of a cell of MSHFlexGrid1: Cols * iRow + iCol.
    qint32 faIndex(Int16& iRow, Int16& iCol);

    void Timer1_Timer();
    void Timer2_Timer();
    void ProcessTasks();
    void ProcessTemplateOptions();
    void CreateTaskFromTemplate();
    void cmdOK_Click();
    void cmdUndo_Click();
    void MSHFlexGrid1_DblClick();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_QueryUnload(int& cancel, int unloadMode) override;

private:
    void design();
    // The end of a made task: the assignment or the silent save, then its results, failures
    // passed over statement by statement.
    void SaveAndRecordTask(Guard& g, Int16 i, Int16 r, const QString& sSubject, const QString& sDue,
                           const QString& sReminder, const QString& sLinkText);
    void SkipRow(Int16 r, const QString& sSubject);
    void writePanels(Int16 processed);
    void endOfLastPass();
    void setCell(Int16 row, Int16 col, const QString& text);
    // The present moment, asked of the host each time.
    Date now() const;

    std::shared_ptr<ol::TaskItem> oCurrentTask;
    // The task folder of the pass, held from the first row to the end of the run.
    std::shared_ptr<ol::MAPIFolder> oTaskFolder;
};

} // namespace steplets
