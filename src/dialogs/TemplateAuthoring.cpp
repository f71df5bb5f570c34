#include "TemplateAuthoring.h"
#include "platform/runtime/Constants.h"
#include "frmNewTask.h"
#include "frmPrompt.h"
#include "platform/Guard.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "platform/UiHost.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include "templates/TaskForEdit.h"
#include "templates/TemplateRow.h"

namespace steplets::modTasks {

using namespace vb;

namespace {

// The doubled "to" across the line break is the message as it has always read.
const QString kMissingSubject = QStringLiteral(
    "All task templates require an entry in the subject field of the task form. \r\n"
    "Click on \"OK\" to enter a subject description, or click on \"Cancel\" to \r\n"
    "to return to the main menu without saving the new template.\r\n");
} // namespace

Bool16 SetTemplateOptions(Bool16& bEdit, QString& sTemplateName)
{
    Guard g(QStringLiteral("modTasks: SetTemplateOptions"));
    return g.orElse(Bool16(false), [&] {
        EditedTemplateState& t = EditedTemplate();
        {
            g(20);
            frmNewTask dialog(session().ui());
            dialog.NewTaskDialog(bEdit, sTemplateName);
            g(30); dialog.Unload();
        }
        g(40);
        if (t.OptionsDialogDeclined) {
            g(50); t.OptionsDialogDeclined = false;
            return Bool16(false);
        }
        return Bool16(true);
    });
}

Bool16 ProcessAdd()
{
    Guard g(QStringLiteral("modTasks: ProcessAdd"));
    return g.orElse(Bool16(false), [&] {
        SessionContext& s = session();
        EditedTemplateState& t = EditedTemplate();
        Bool16 bNew(false);
        QString sNoName;
        g(20); if (!SetTemplateOptions(bNew, sNoName)) return Bool16(false);
        g(30); t.TemplateFolder = must(s.olNS).GetFolderFromID(s.sTaskFolderEID, s.sTaskFolderSID);
        g(40); t.TemplateItem = must(t.TemplateFolder).Items().Add();
        // An item the user did not save is simply dropped; the edited template stays as it is.
        g(50); if (!ViewNewTemplate()) return Bool16(false);
        g(60); SaveTemplateToDB(bNew);
        g(70); ReSetModuleVariables();
        return Bool16(true);
    });
}

void ProcessEdit(QString& sTemplateName)
{
    Guard g(QStringLiteral("modTasks: ProcessEdit"));
    g.run([&] {
        EditedTemplateState& t = EditedTemplate();
        Recordset& rs = must(session().rsTemplates);
        // The options the dialog shows, each only where the row has a value.
        auto read = [&](int line, int pos, auto&& store) {
            g(line);
            if (const Value v = rs.Fields(pos).value(); !v.isNull()) store(v);
        };
        read(20, col::DateType, [&](const Value& v) { t.DateType = v.toInt16(); });
        for (int k = 1; k <= 4; ++k) read(20 + 10 * k, col::FillIn1 + k - 1, [&](const Value& v) { t.FillIn(k) = v.toText(); });
        for (int k = 1; k <= 4; ++k) read(60 + 10 * k, col::UserPrompt1 + k - 1, [&](const Value& v) { t.UserPrompt(k) = v.toText(); });
        read(110, col::PromptForAssignee, [&](const Value& v) { t.PromptForAssignee = v.toText(); });
        read(120, col::AnchorDescription, [&](const Value& v) { t.AnchorDescription = v.toText(); });

        Bool16 bEdit(true);
        g(130);
        if (SetTemplateOptions(bEdit, sTemplateName)) {
            // The task is rebuilt from the row, which also takes back the options the dialog
            // showed: only its OK button changes the options of a template.
            g(140); CreateTaskFromTemplateForEdit(bEdit);
            g(150); if (ViewNewTemplate()) {
                g(160); SaveTemplateToDB(bEdit);
            }
        }
        g(170); ReSetModuleVariables();
    }, [] { ReSetModuleVariables(); });
}

Bool16 ViewNewTemplate()
{
    Guard g(QStringLiteral("modTasks: ViewNewTemplate"));
    EditedTemplateState& t = EditedTemplate();
    SessionContext& s = session();
    Bool16 result(false);
    auto item = [&]() -> ol::TaskItem& { return must(t.TemplateItem); };

    if (!g.attempt([&] { g(20); item().Display(true); })) return result;

    // From here a failure is passed over, and a test that fails counts as true.
    [&] {
        if (g.ignoringTest(30, [&] { return !item().Saved(); })) return;
        if (g.ignoringTest(40, [&] { return item().EntryID().isEmpty(); })) return;
        if (g.ignoringTest(50, [&] { return item().Subject().isEmpty(); })) {
            int answer = 0;
            g.ignoring(60, [&] { answer = session().ui().MsgBox(kMissingSubject, vbOKCancel, QStringLiteral(" Missing Subject Field")); });
            if (answer != vbOK) return;
            g.ignoring(70, [&] {
                frmPrompt prompt(session().ui());
                qint32 mode = promptMode::Input;
                Bool16 noDate(false), withText(true);
                QString label = QStringLiteral("Task Subject");
                QString header = QStringLiteral("Please enter the subject of your new task template.");
                QString noAnchor;
                prompt.PromptDialog(mode, noDate, withText, label, header, noAnchor);
                prompt.Unload();
            });
            // A cancelled prompt leaves its flag set: a later subject prompt then counts as
            // cancelled too, until someone else clears it.
            if (g.ignoringTest(80, [&] { return static_cast<bool>(s.bPromptCancelled); })) return;
            if (g.ignoringTest(90, [&] { return s.sPromptResult.isEmpty(); })) return;
            g.ignoring(100, [&] { item().set(QStringLiteral("Subject"), Value(s.sPromptResult)); });
        }
        g.attempt([&] {
            g(110); item().Save();
            result = true;
        });
    }();
    g.clearError();
    return result;
}

} // namespace steplets::modTasks
