#include "frmProcessTasks.h"
#include "platform/runtime/Constants.h"
#include "dialogs/frmPrompt.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"

namespace steplets {

namespace {
const QString kPromptForInput = QStringLiteral("Prompt for user input");

// A stored yes/no: a number or "True"/"False"; an empty text says nothing.
bool flagOf(const Value& v)
{
    if (v.isNull()) return false;
    if (v.type() == Value::Type::Text && v.toText().isEmpty()) return false;
    return v.toBool();
}
} // namespace

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
    MSHFlexGrid1.setFixedCols(0);
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

Date frmProcessTasks::now() const { return host().Now(); }

qint32 frmProcessTasks::faIndex(Int16& iRow, Int16& iCol)
{
    Guard g(QStringLiteral("frmProcessTasks: faIndex"));
    return g.orElse(qint32(0), [&] {
        g(10);
        return static_cast<qint32>(MSHFlexGrid1.Cols()) * iRow.value() + iCol.value();
    });
}

void frmProcessTasks::setCell(Int16 row, Int16 col, const QString& text)
{
    MSHFlexGrid1.setTextArray(faIndex(row, col), text);
}

void frmProcessTasks::Form_Load()
{
    Guard g(QStringLiteral("frmProcessTasks: Form_Load"));
    g.run([&] {
        static const char* const headers[] = {"Task Description", "Due Date", "Reminder", "Contact Link"};
        static const int widths[] = {3600, 1000, 1000, 2000};
        for (int c = 0; c < 4; ++c) {
            g(10 + 10 * c); MSHFlexGrid1.setTextMatrix(0, c, QString::fromLatin1(headers[c]));
            MSHFlexGrid1.setColWidth(c, widths[c]);
            MSHFlexGrid1.setFixedAlignment(c, Grid::AlignCenterCenter);
        }
        g(50); MSHFlexGrid1.setColAlignment(1, Grid::AlignCenterCenter);
        g(60); MSHFlexGrid1.setColAlignment(2, Grid::AlignCenterCenter);
    }, [&] { Unload(); });
}

void frmProcessTasks::Form_Activate()
{
    Guard g(QStringLiteral("frmProcessTasks: Form_Activate"));
    g.run([&] { g(10); Timer1.setEnabled(true); }, [&] { Unload(); });
}

void frmProcessTasks::Timer1_Timer()
{
    Guard g(QStringLiteral("frmProcessTasks: Timer1_Timer"));
    g.run([&] {
        // Only the first tick starts the work.
        g(10); iTimer1Ticks += Int16(1);
        g(20);
        if (iTimer1Ticks == 1) {
            g(30); Timer1.setEnabled(false);
            g(40); ProcessTasks();
            g(50); g.mark(QStringLiteral("frmProcessTasks: Timer1_Timer2"));
        }
        // A cancelled prompt left behind closes the window.
        g(60);
        SessionContext& s = session();
        if (s.bPromptCancelled) {
            g(70); s.bPromptCancelled = false;
            g(80); Unload();
        }
    }, [&] { Unload(); });
}

void frmProcessTasks::Timer2_Timer()
{
    Guard g(QStringLiteral("frmProcessTasks: Timer2_Timer"));
    g.run([&] {
        g(10);
        if (iTimer2Ticks != 20) {
            g(20); iTimer2Ticks += Int16(1);
        } else {
            g(30); Timer2.setEnabled(false);
            g(40); iTimer2Ticks = Int16(0);
        }
        g(50); ProgressBar1.setValue(iTimer2Ticks);
    }, [&] { Unload(); });
}

void frmProcessTasks::ProcessTasks()
{
    Guard g(QStringLiteral("frmProcessTasks: ProcessTasks"));
    g.run([&] {
        SessionContext& s = session();
        // Arrays for this run, empty.
        g(10);
        aEntryIDs.redim(0, m_iNewTaskCount);
        aStoreIDs.redim(0, m_iNewTaskCount);
        aProcessFlags.redim(0, m_iNewTaskCount);
        aAnchorDates.redim(0, m_iNewTaskCount);
        aUserInputs.redim(0, m_iNewTaskCount);
        aAssignFlags.redim(0, m_iNewTaskCount);

        g(20); iTemplateCounter = Int16(0);
        const QString sSavedContactEID = s.sContactEID;
        bProcessing = true;
        iRowOffset = Int16(0);

        if (s.iContactMode != contactMode::SeparatePasses) {
            // One pass, with the one contact if any.
            g(30); bLastPass = true;
            g(40); ProcessTemplateOptions();
            g(50); CreateTaskFromTemplate();
        } else {
            // A pass per chosen contact, each with its prompts before its tasks.
            g(60);
            const long last = s.aSelectedContacts.ubound();
            for (long idx = 1; idx <= last; ++idx) {
                g(70); s.sContactEID = s.aSelectedContacts[idx];
                g(80); if (idx == last) bLastPass = true;
                g(90); ProcessTemplateOptions();
                g(100); CreateTaskFromTemplate();
                g(110); iRowOffset += Int16::from(static_cast<long long>(must(s.rsTemplates).RecordCount()));
            }
            g(120); s.sContactEID = sSavedContactEID;
        }

        g(130); cmdOK.setEnabled(true);
        g(140); bProcessing = false;

        // Hidden here only when the last task was assigned and shown in its item window.
        g(150);
        if (Visible()) Refresh();
        else Show();

        // The per-template arrays go; the per-row ones stay for review and Undo.
        g(160);
        aProcessFlags.redim(0, 0);
        aAnchorDates.redim(0, 0);
        aUserInputs.redim(0, 0);
        aAssignFlags.redim(0, 0);
    }, [&] { Unload(); });
}

void frmProcessTasks::ProcessTemplateOptions()
{
    Guard g(QStringLiteral("frmProcessTasks: ProcessTemplateOptions"));
    std::shared_ptr<ol::ContactItem> olContact;
    g.run([&] {
        SessionContext& s = session();
        // Kept across rows on purpose: once a template asked, the later ones of the pass ask too.
        Bool16 bAskAnchor;
        Bool16 bAskInput;
        QString sPromptText;

        g(10);
        if (!s.sContactEID.isEmpty())
            olContact = ol::asContact(must(s.olNS).GetItemFromID(s.sContactEID, s.sContactFolderSID));

        g(20);
        Recordset& rs = must(s.rsTemplates);
        rs.MoveFirst();
        g(30);
        const long count = rs.RecordCount();
        for (long n = 1; n <= count; ++n) {
            const Int16 i = Int16::from(static_cast<long long>(n));
            QString sSubject;
            Int16 iDateType;
            QString sFillIn[5];
            QString sUserPrompt[5];
            QString sAnchorDescription;

            // Each column only when it holds a value.
            auto read = [&](int line, const QString& name) {
                g(line);
                return rs.Fields(name).value();
            };
            if (Value v = read(40, QStringLiteral("Subject")); !v.isNull()) sSubject = v.toText();
            if (Value v = read(50, QStringLiteral("DateType")); !v.isNull()) iDateType = v.toInt16();
            for (int k = 1; k <= 4; ++k) {
                if (Value v = read(60, QStringLiteral("FillIn%1").arg(k)); !v.isNull()) sFillIn[k] = v.toText();
                if (Value v = read(70, QStringLiteral("UserPrompt%1").arg(k)); !v.isNull()) sUserPrompt[k] = v.toText();
            }
            if (Value v = read(80, QStringLiteral("PromptForAssignee")); !v.isNull()) aAssignFlags[i] = flagOf(v);
            if (Value v = read(90, QStringLiteral("AnchorDescription")); !v.isNull()) sAnchorDescription = v.toText();

            // An anchor, common or asked.
            g(100);
            if (iDateType == dateType::Anchor) {
                if (m_blnGroupAnchor) aAnchorDates[i] = s.dPromptAnchorDate;
                else bAskAnchor = true;
            }

            // The first fill-in that asks for input, common or asked.
            g(110);
            for (int k = 1; k <= 4; ++k) {
                if (sFillIn[k] != kPromptForInput) continue;
                if (!m_blnGroupPrompt) {
                    bAskInput = true;
                    sPromptText = sUserPrompt[k];
                } else {
                    aUserInputs[i] = s.sPromptResult;
                }
                break;
            }

            g(120);
            if (bAskAnchor || bAskInput) {
                // The dialog, naming the contact while it is still held.
                g(130);
                if (olContact) sSubject += QStringLiteral(" (") + olContact->FileAs() + QStringLiteral(")");
                g(140);
                {
                    frmPrompt prompt(host());
                    qint32 iPromptType = promptMode::TemplateOptions;
                    prompt.PromptDialog(iPromptType, bAskAnchor, bAskInput, sPromptText, sSubject, sAnchorDescription);
                    g(150); prompt.Unload();
                }
                // A Cancel skips this template only.
                g(160);
                if (s.bPromptCancelled) {
                    s.bPromptCancelled = false;
                    aProcessFlags[i] = false;
                } else {
                    g(170); aProcessFlags[i] = true;
                    if (bAskAnchor) aAnchorDates[i] = s.dPromptAnchorDate;
                    if (bAskInput) aUserInputs[i] = s.sPromptResult;
                }
            } else {
                g(180); aProcessFlags[i] = true;
            }
            // Only the first dialog of a pass names the contact: it is not fetched again.
            g(190); olContact.reset();
            g(200); rs.MoveNext();
        }
    }, [&] { Unload(); });
    olContact.reset();
}

void frmProcessTasks::cmdOK_Click() { Unload(); }

void frmProcessTasks::Form_QueryUnload(int& cancel, int /*unloadMode*/)
{
    Guard g(QStringLiteral("frmProcessTasks: Form_QueryUnload"));
    // Its window ending would ask this very handler again; reporting is the whole of it.
    g.attempt([&] {
        g(10);
        if (bProcessing) cancel = 1;
    });
}

} // namespace steplets
