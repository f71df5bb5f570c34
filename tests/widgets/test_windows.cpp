// Every window of the program as a user meets it, on the offscreen platform: each is reached by
// a script played on the desktop program's own session (real input on the widgets, a virtual
// clock), then checked (WidgetSupport.h) and photographed where it waits. CTest runs this at 100 %
// and at 200 % scale. With STEPLETS_DOCS_DIR set, the pictures the README shows are written there.
// A new window is one more row of the table.
#include "Desktop.h"
#include "EventLog.h"
#include "FormView.h"
#include "QtScriptDriver.h"
#include "QtUiHost.h"
#include "Script.h"
#include "TempDir.h"
#include "VirtualClock.h"
#include "WidgetSupport.h"
#include "backends/vdir/DemoContacts.h"
#include "session/SessionContext.h"
#include <QJsonDocument>

using namespace steplets;

namespace {

enum class Mode { Manage, Process };

// One window: reached by the steps of `script` (as a scenario file writes them, ending the
// session), looked at just before step `lookAt` (from 1) is played, found by its object name (a
// form's name, "MsgBox", "TaskWindow", "ContactWindow", "ContactPickerDialog", ...).
struct Sight {
    const char* shot;   // also a picture of the README
    Mode mode;
    int lookAt;
    const char* window;
    const char* script;
};

// Steps as a scenario file writes them. The chooser opens on the groups, as "Task Selection" is 1
// when the settings do not say; RUN(ticks) processes the templates ticked, DONE waits for the run and closes.
#define TEMPLATES R"({"form":"frmSteplet","tab":"TabStrip2","index":1})"
#define TICK(t) R"({"form":"frmSteplet","tick":"lbTaskTemplates","item":")" t R"(","checked":true})"
#define CLICK(f, c) R"({"form":")" f R"(","click":")" c R"("})"
#define LOOK(f) R"({"form":")" f R"(","snapshot":true})"
#define CLOSE R"({"form":"frmSteplet","close":true})"
#define RUN(ticks) "[" TEMPLATES "," ticks "," CLICK("frmSteplet", "ProcessTasksButton") ","
#define DONE R"({"wait":10},)" CLICK("frmProcessTasks", "cmdOK") "," CLOSE "]"
#define CANCEL(f, c) CLICK(f, c) "," CLOSE "]"

// In the order a user meets them, as the README shows them.
const Sight kSights[] = {
    {"chooser-manage", Mode::Manage, 1, "frmSteplet", "[" LOOK("frmSteplet") "," CLOSE "]"},
    {"chooser-manage-templates", Mode::Manage, 2, "frmSteplet", "[" TEMPLATES "," LOOK("frmSteplet") "," CLOSE "]"},
    {"msgbox-delete-template", Mode::Manage, 4, "MsgBox", "[" TEMPLATES "," TICK("Renew professional license") "," CLICK("frmSteplet", "cmdDelete") R"(,{"msgbox":"No"},)" CLOSE "]"},
    {"template-options-new", Mode::Manage, 3, "frmNewTask", "[" TEMPLATES "," CLICK("frmSteplet", "cmdAdd") "," LOOK("frmNewTask") "," CANCEL("frmNewTask", "CancelButton")},
    {"template-options-fillins", Mode::Manage, 4, "frmNewTask", "[" TEMPLATES "," CLICK("frmSteplet", "cmdAdd") R"(,{"form":"frmNewTask","tab":"TabStrip1","index":2},)" LOOK("frmNewTask") "," CANCEL("frmNewTask", "CancelButton")},
    {"prompt-new-template-help", Mode::Manage, 4, "frmPrompt", "[" TEMPLATES "," CLICK("frmSteplet", "cmdAdd") "," CLICK("frmNewTask", "CreateEditButton") "," LOOK("frmPrompt") "," CANCEL("frmPrompt", "CancelButton")},
    {"template-options-edit", Mode::Manage, 4, "frmNewTask", "[" TEMPLATES "," TICK("Renew professional license") "," CLICK("frmSteplet", "cmdEdit") "," LOOK("frmNewTask") "," CANCEL("frmNewTask", "CancelButton")},
    {"prompt-new-group", Mode::Manage, 2, "frmPrompt", "[" CLICK("frmSteplet", "cmdAdd") "," LOOK("frmPrompt") "," CANCEL("frmPrompt", "CancelButton")},
    {"user-options", Mode::Manage, 2, "frmOptions", "[" CLICK("frmSteplet", "cmdOptions") "," LOOK("frmOptions") "," CANCEL("frmOptions", "cmdCancel")},
    {"user-options-links", Mode::Manage, 3, "frmOptions", "[" CLICK("frmSteplet", "cmdOptions") R"(,{"form":"frmOptions","tab":"TabStrip1","index":2},)" LOOK("frmOptions") "," CANCEL("frmOptions", "cmdCancel")},
    {"chooser-process", Mode::Process, 3, "frmSteplet", "[" TEMPLATES "," TICK("Follow-up call") "," LOOK("frmSteplet") "," CLOSE "]"},
    {"contact-picker", Mode::Process, 2, "ContactPickerDialog", R"([{"form":"frmSteplet","toolclick":"abSelectContact","tool":"Tool0"},{"picker":"cancel"},)" CLOSE "]"},
    {"contact-window", Mode::Process, 2, "ContactWindow", "[" CLICK("frmSteplet", "txtContact") "," LOOK("frmSteplet") "," CLOSE "]"},
    {"chooser-process-contacts", Mode::Process, 2, "frmSteplet", R"([{"form":"frmSteplet","tab":"TabStrip1","index":2},)" LOOK("frmSteplet") "," CLOSE "]"},
    {"select-contacts", Mode::Process, 6, "frmSelectContacts", R"([{"form":"frmSteplet","tab":"TabStrip1","index":2},)" CLICK("frmSteplet", "chkContactOption1") ","
         TEMPLATES "," TICK("Follow-up call") "," CLICK("frmSteplet", "ProcessTasksButton") "," LOOK("frmSelectContacts") "," CANCEL("frmSelectContacts", "CancelButton")},
    {"prompt-common-input-question", Mode::Process, 5, "frmPrompt", RUN(TICK("Send engagement letter") "," TICK("Prepare closing documents")) LOOK("frmPrompt") "," CLICK("frmPrompt", "OKButton") "," CANCEL("frmPrompt", "CancelButton")},
    {"prompt-common-input", Mode::Process, 6, "frmPrompt", RUN(TICK("Send engagement letter") "," TICK("Prepare closing documents")) CLICK("frmPrompt", "OKButton") "," LOOK("frmPrompt") "," CANCEL("frmPrompt", "CancelButton")},
    {"prompt-group-options", Mode::Process, 2, "frmPrompt", "[" CLICK("frmSteplet", "ProcessTasksButton") "," LOOK("frmPrompt") "," CANCEL("frmPrompt", "CancelButton")},
    {"msgbox-anchor-date", Mode::Process, 3, "MsgBox", "[" CLICK("frmSteplet", "ProcessTasksButton") "," CLICK("frmPrompt", "OKButton") R"(,{"msgbox":"OK"},)" CANCEL("frmPrompt", "CancelButton")},
    {"prompt-template-options", Mode::Process, 4, "frmPrompt", RUN(TICK("Prepare closing documents")) LOOK("frmPrompt") "," CLICK("frmPrompt", "CancelButton") "," DONE},
    {"prompt-anchor-date", Mode::Process, 4, "frmPrompt", RUN(TICK("Send engagement letter")) LOOK("frmPrompt") "," CLICK("frmPrompt", "CancelButton") "," DONE},
    {"processing-during-run", Mode::Process, 7, "frmProcessTasks", RUN(TICK("Follow-up call") "," TICK("Weekly status report") "," TICK("Renew professional license")) R"({"wait":2.5},)" LOOK("frmProcessTasks") "," DONE},
    {"processing-done", Mode::Process, 5, "frmProcessTasks", RUN(TICK("Follow-up call")) R"({"wait":10},)" LOOK("frmProcessTasks") "," CANCEL("frmProcessTasks", "cmdOK")},
    {"task-window", Mode::Process, 6, "TaskWindow", RUN(TICK("Follow-up call")) R"({"wait":10},{"form":"frmProcessTasks","dblclick":"MSHFlexGrid1","row":1},{"item":{"close":"discard"}},)" CANCEL("frmProcessTasks", "cmdOK")},
    {"msgbox-undo", Mode::Process, 6, "MsgBox", RUN(TICK("Follow-up call")) R"({"wait":10},)" CLICK("frmProcessTasks", "cmdUndo") R"(,{"msgbox":"No"},)" CANCEL("frmProcessTasks", "cmdOK")},
};

class WindowsTest : public ::testing::TestWithParam<Sight> {
protected:
    void SetUp() override { test::widgetApp(); qputenv("XDG_STATE_HOME", home.path().toUtf8()); }
    void TearDown() override { qunsetenv("XDG_STATE_HOME"); }

    test::TempDir home;
};

TEST_P(WindowsTest, IsWholeOnTheScreenAndPhotographed)
{
    const Sight& sight = GetParam();
    QString why;
    std::optional<scripted::Script> script =
        scripted::Script::fromJson(QJsonDocument::fromJson(QByteArray(sight.script)).array(), &why);
    ASSERT_TRUE(script) << why.toStdString();
    // A fixed moment, so the pictures show the same dates each time.
    scripted::VirtualClock clock(QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
    scripted::EventLog log(clock);
    auto clockHandle = std::shared_ptr<scripted::VirtualClock>(&clock, [](auto*) {});
    auto host = std::make_shared<qt::QtUiHost>(clockHandle);
    qtplay::QtScriptDriver driver(*script, clock, log, *host);
    bool looked = false;
    driver.setBeforeStep([&](const scripted::Step& step) {
        if (step.number != sight.lookAt) return;
        QWidget* window = test::shownWindow(QLatin1String(sight.window));
        ASSERT_NE(window, nullptr) << sight.window << " is not on the screen before step " << step.number;
        looked = true;
        test::saveScreenshot(window, QLatin1String(sight.shot));
        test::expectWindowWhole(window);
    });
    host->setDriver(&driver);
    desktop::HostOptions options = desktop::defaultHostOptions();
    options.home = home.path();
    if (sight.mode == Mode::Process) {
        HostArguments& a = options.args;
        std::tie(a.lTimeCardID, a.sContactID, a.bManageContacts) = std::tuple(7, 2, true);
        std::tie(a.sContactName, a.sDesc, a.sMainActivity) = std::tuple(vdir::demoContacts().at(1).fullName(), "Quarterly audit", "Accounting");
    }
    EXPECT_EQ(desktop::runSession(options, host), 0);
    host->setDriver(nullptr);
    EXPECT_TRUE(looked);
    EXPECT_TRUE(script->atEnd()) << script->remaining() << " steps left";
}

INSTANTIATE_TEST_SUITE_P(Sights, WindowsTest, ::testing::ValuesIn(kSights),
                         [](const auto& info) { return QString::fromLatin1(info.param.shot).replace(QLatin1Char('-'), QLatin1Char('_')).toStdString(); });

} // namespace
