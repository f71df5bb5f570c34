// What every UI host must do, written once and run on each: the scripted host, and the Qt Widgets
// host on the offscreen platform with its user played as real input on the widgets. Both run on
// a virtual clock from 2026-03-16 15:30 and play the same script, so both write the same events.
#include "QtScriptDriver.h"
#include "QtUiHost.h"
#include "ScriptedHost.h"
#include "WidgetSupport.h"
#include "controls/Controls.h"
#include "runtime/Failure.h"
#include <QElapsedTimer>
#include <QJsonDocument>

using namespace steplets;

namespace {

enum class Kind { Scripted, Qt };

// A host whose user plays `steps`.
class PlayedHost {
public:
    PlayedHost(Kind kind, const char* steps)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps).array(), &error);
        EXPECT_TRUE(script) << error.toStdString();
        const QDateTime start(QDate(2026, 3, 16), QTime(15, 30));
        if (kind == Kind::Scripted) {
            m_scripted = std::make_shared<scripted::ScriptedHost>(script.value_or(scripted::Script()), start);
            return;
        }
        test::widgetApp();
        m_script = script.value_or(scripted::Script());
        m_clock = std::make_shared<scripted::VirtualClock>(start);
        m_log = std::make_unique<scripted::EventLog>(*m_clock);
        m_qt = std::make_shared<qt::QtUiHost>(m_clock);
        m_driver = std::make_unique<qtplay::QtScriptDriver>(m_script, *m_clock, *m_log, *m_qt);
        m_qt->setDriver(m_driver.get());
    }
    ~PlayedHost() { if (m_qt) m_qt->setDriver(nullptr); }
    std::shared_ptr<UiHost> ui() const { return m_scripted ? std::shared_ptr<UiHost>(m_scripted) : m_qt; }
    scripted::VirtualClock& clock() { return m_scripted ? m_scripted->clock() : *m_clock; }
    int stepsLeft() const { return m_scripted ? m_scripted->script().remaining() : m_script.remaining(); }
    const std::vector<Form*>& modalStack() const { return m_scripted ? m_scripted->modalStack() : m_qt->modalStack(); }
    // The events that have `key`, in their order.
    QList<QJsonObject> events(const QString& key) const
    {
        QList<QJsonObject> found;
        for (const QJsonValue& e : m_scripted ? m_scripted->events() : m_log->events())
            if (e.toObject().contains(key)) found << e.toObject();
        return found;
    }
    QString at(const QString& key, int nth = 0) const { return events(key).value(nth).value("at").toString(); }
    QStringList unloaded() const
    {
        QStringList names;
        for (const QJsonObject& e : events("unload")) names << e.value("unload").toString();
        return names;
    }

private:
    std::shared_ptr<scripted::ScriptedHost> m_scripted;
    scripted::Script m_script;
    std::shared_ptr<scripted::VirtualClock> m_clock;
    std::unique_ptr<scripted::EventLog> m_log;
    std::shared_ptr<qt::QtUiHost> m_qt;
    std::unique_ptr<qtplay::QtScriptDriver> m_driver;
};

// A window of a few placed controls, its form events as hooks.
class Window : public Form {
public:
    explicit Window(UiHost& host, const char* name = "frmTest") : Form(host, QLatin1String(name))
    {
        setCaption(QStringLiteral("Test"));
        setWidth(4800);
        setHeight(3000);
        int top = 120;
        for (Control* c : std::initializer_list<Control*>{&cmdOK, &cmdCancel, &chkOption, &lblInfo, &pbProgress}) {
            c->Move(120, top, 3000, 375);
            top += 450;
        }
        cmdOK.setCaption(QStringLiteral("OK"));
        cmdCancel.setCaption(QStringLiteral("Cancel"));
        cmdCancel.setCancel(true);
        chkOption.setCaption(QStringLiteral("Option"));
        Timer1.setEnabled(false);
        Timer2.setEnabled(false);
    }
    CommandButton cmdOK{*this, QStringLiteral("cmdOK")};
    CommandButton cmdCancel{*this, QStringLiteral("cmdCancel")};
    CheckBox chkOption{*this, QStringLiteral("chkOption")};
    Label lblInfo{*this, QStringLiteral("lblInfo")};
    ProgressBar pbProgress{*this, QStringLiteral("pbProgress")};
    Timer Timer1{*this, QStringLiteral("Timer1")};
    Timer Timer2{*this, QStringLiteral("Timer2")};
    std::function<void()> onActivate;
    std::function<void(int&)> onQueryUnload;
    int activations = 0;

protected:
    void Form_Activate() override { ++activations; if (onActivate) onActivate(); }
    void Form_QueryUnload(int& cancel, int) override { if (onQueryUnload) onQueryUnload(cancel); }
};

struct Abort { bool aborted = false; HostAbort::Reason reason = HostAbort::Reason::CannotPlay; QString message; };
template <class F>
Abort abortOf(F&& f)
{
    try {
        f();
    } catch (const HostAbort& a) {
        return {true, a.reason(), a.message()};
    } catch (const Failure& f) {   // raised to the caller, not ended by the host
        return {true, HostAbort::Reason::UnhandledFailure, QStringLiteral("thrown failure %1").arg(f.number())};
    }
    return {};
}

QJsonObject control(const QJsonObject& snapshotEvent, const char* name)
{
    return snapshotEvent.value("snapshot").toObject().value("controls").toObject().value(QLatin1String(name)).toObject();
}

class UiHostContract : public ::testing::TestWithParam<Kind> {
protected:
    std::unique_ptr<PlayedHost> played;
    std::shared_ptr<UiHost> m_ui;
    UiHost& host(const char* steps = "[]")
    {
        played = std::make_unique<PlayedHost>(GetParam(), steps);
        return *(m_ui = played->ui());
    }
};

// --- Modal windows ---

// A hidden window outlives the caller that showed it, until it is unloaded itself.
TEST_P(UiHostContract, AModalShowLastsUntilHiddenOrUnloadedAndActivateComesBackFromAModalFormOnly)
{
    UiHost& ui = host(R"([{"form": "frmMain", "click": "cmdOK"}, {"form": "frmChild", "click": "cmdOK"},
                          {"msgbox": "No"}, {"form": "frmMain", "close": true}, {"form": "frmMain", "close": true}])");
    Window main(ui, "frmMain"), child(ui, "frmChild");
    int answer = 0, asked = 0;
    main.cmdOK.Click.connect([&] {
        child.Show();
        answer = ui.MsgBox(QStringLiteral("Go on?"), 4 + 32, QStringLiteral(" Question"));
    });
    child.cmdOK.Click.connect([&] { child.Hide(); });
    main.onQueryUnload = [&](int& cancel) { cancel = ++asked == 1; };
    main.Show();
    EXPECT_EQ(answer, 7);
    EXPECT_EQ(child.activations, 1);
    EXPECT_EQ(main.activations, 2) << "its show and the child's hide; the message box adds none";
    EXPECT_EQ(asked, 2) << "the first close was refused";
    EXPECT_FALSE(main.isLoaded());
    EXPECT_TRUE(played->modalStack().empty());
    EXPECT_EQ(played->stepsLeft(), 0);
    ASSERT_TRUE(child.isLoaded()) << "hidden, not unloaded";
    child.Unload();
    EXPECT_FALSE(child.isLoaded());
    EXPECT_EQ(played->unloaded(), (QStringList{"frmMain", "frmChild"}));
}

TEST_P(UiHostContract, AHideAndANewShowInOneHandlerKeepTheWindowUp)
{
    UiHost& ui = host(R"([{"form": "frmTest", "click": "cmdOK"}, {"form": "frmTest", "snapshot": true},
                          {"form": "frmTest", "click": "cmdCancel"}])");
    Window w(ui);
    int depth = 0;
    w.cmdOK.Click.connect([&] { w.Hide(); w.Show(); });
    w.cmdCancel.Click.connect([&] { depth = w.modalDepth(); w.Hide(); });
    w.Show();
    EXPECT_TRUE(played->events("snapshot").value(0).value("snapshot").toObject().value("visible").toBool());
    EXPECT_EQ(std::pair(depth, w.modalDepth()), std::pair(2, 0));
    EXPECT_EQ(played->stepsLeft(), 0);
    w.Unload();
}

TEST_P(UiHostContract, AStepForAWindowNotYetThereLetsTimersBringIt)
{
    UiHost& ui = host(R"([{"form": "frmChild", "click": "cmdOK"}, {"form": "frmMain", "click": "cmdCancel"}])");
    Window main(ui, "frmMain"), child(ui, "frmChild");
    main.Timer1.setInterval(1000);
    main.onActivate = [&] { main.Timer1.setEnabled(true); };
    main.Timer1.Tick.connect([&] { main.Timer1.setEnabled(false); child.Show(); child.Unload(); });
    child.cmdOK.Click.connect([&] { child.Hide(); });
    main.cmdCancel.Click.connect([&] { main.Unload(); });
    main.Show();
    EXPECT_EQ(played->at("show", 1), QStringLiteral("2026-03-16T15:30:01"));
    EXPECT_EQ(played->unloaded(), (QStringList{"frmChild", "frmMain"}));
}

// A play the user cannot go on with ends the show with a reason that names the step.
TEST_P(UiHostContract, WhatCannotBePlayedEndsTheShowNamingWhy)
{
    struct Case { const char* steps; std::function<void(Window&)> setUp; HostAbort::Reason reason; const char* says; };
    const Case cases[] = {
        {R"([{"form": "frmChild", "click": "cmdOK"}])", {}, HostAbort::Reason::CannotPlay,
         "step 1 (click cmdOK on frmChild) cannot be done: the window frmTest is waiting and no timer is left"},
        {R"([{"msgbox": "OK"}])", [](Window& w) { w.Timer1.setInterval(60000); w.Timer1.setEnabled(true); }, HostAbort::Reason::CannotPlay, "never came"},
        {R"([{"click": "chkOption"}])", {}, HostAbort::Reason::CannotPlay, "the script ended while the window frmTest was waiting"},
        {R"([{"form": "frmTest", "click": "cmdOK"}])", [](Window& w) { w.cmdOK.setEnabled(false); }, HostAbort::Reason::CannotPlay, "disabled"},
        {R"([{"click": "cmdNothing"}])", {}, HostAbort::Reason::CannotPlay, "step 1 (click cmdNothing): frmTest has no control cmdNothing"},
        {R"([{"click": "cmdOK"}])", [](Window& w) { w.cmdOK.Click.connect([] { throw Failure::overflow(); }); }, HostAbort::Reason::UnhandledFailure, "failure 6 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.steps);
        Window w(host(c.steps));
        if (c.setUp) c.setUp(w);
        const Abort a = abortOf([&] { w.Show(); });
        EXPECT_TRUE(a.aborted && a.reason == c.reason && a.message.contains(QLatin1String(c.says))) << a.message.toStdString();
        EXPECT_TRUE(played->modalStack().empty()) << "the ended show has left the stack";
    }
}

// --- Time: timers and yielding on the virtual clock ---

// A window that starts two seconds of paced work a second after it is shown, yields until the
// pacing timer has ticked 20 times, and refuses to close while it works.
class PacedWindow : public Window {
public:
    explicit PacedWindow(UiHost& host) : Window(host)
    {
        Timer1.setInterval(1000);
        Timer2.setInterval(100);
        onActivate = [this] { Timer1.setEnabled(true); };
        onQueryUnload = [this](int& cancel) { cancel = busy; };
        Timer1.Tick.connect([this, &host] {
            Timer1.setEnabled(false);
            busy = true;
            Timer2.setEnabled(true);
            while (Timer2.Enabled()) host.DoEvents();
            busy = false;
            lblInfo.setCaption(QStringLiteral("done"));
        });
        Timer2.Tick.connect([this] {
            if (++ticks == 20) Timer2.setEnabled(false);
            pbProgress.setValue(ticks);
        });
    }
    bool busy = false;
    int ticks = 0;
};

// A wait fires every timer due within it, and a snapshot is taken at its moment. Steps after a
// wait that runs out inside the work act there, as a person's clicks get in between the ticks;
// steps for anything else wait for their own turn.
TEST_P(UiHostContract, AWaitRunningOutInAPauseHandsTheFollowingStepsToTheActiveWindow)
{
    struct Case { const char* steps; bool boxAfterWork; const char* snapshotAt; int progress; const char* caption; const char* unloadAt; };
    const Case cases[] = {
        {R"([{"wait": 2}, {"form": "frmTest", "snapshot": true}, {"form": "frmTest", "close": true},
             {"wait": 5}, {"form": "frmTest", "close": true}])", false, "2026-03-16T15:30:02", 10, "", "2026-03-16T15:30:08"},
        {R"([{"wait": 10}, {"form": "frmTest", "snapshot": true}, {"form": "frmTest", "close": true}])", false,
         "2026-03-16T15:30:10", 20, "done", "2026-03-16T15:30:10"},
        {R"([{"wait": 2}, {"msgbox": "OK"}, {"form": "frmTest", "close": true}])", true, "", 0, "", "2026-03-16T15:30:03"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.steps);
        UiHost& ui = host(c.steps);
        PacedWindow w(ui);
        if (c.boxAfterWork) w.Timer1.Tick.connect([&] { ui.MsgBox(QStringLiteral("Finished.")); });
        w.Show();
        EXPECT_EQ(played->at("snapshot"), QLatin1String(c.snapshotAt));
        if (c.boxAfterWork) EXPECT_EQ(played->at("msgbox"), QLatin1String(c.unloadAt));
        else {
            const QJsonObject snap = played->events("snapshot").value(0);
            EXPECT_EQ(std::pair(control(snap, "pbProgress").value("progress").toInt(), control(snap, "lblInfo").value("caption").toString()),
                      std::pair(c.progress, QString::fromLatin1(c.caption)));
        }
        ASSERT_EQ(played->events("unload").size(), 1);
        EXPECT_EQ(played->at("unload"), QLatin1String(c.unloadAt));
        EXPECT_EQ(played->stepsLeft(), 0);
    }
}

TEST_P(UiHostContract, TimersTickOnVirtualTimeOnlyWhileEnabledWithAnIntervalInALoadedWindow)
{
    Window w(host()), other(*played->ui(), "frmOther");
    w.Load();
    other.Load();
    std::vector<QString> ticks;
    w.Timer1.Tick.connect([&] { ticks.push_back(played->clock().stamp()); });
    other.Timer1.Tick.connect([&] { ticks.push_back(QStringLiteral("other")); });
    QElapsedTimer real;
    real.start();
    w.Timer1.setEnabled(true);
    played->clock().advance(5000);
    EXPECT_TRUE(ticks.empty()) << "interval 0 never ticks";
    // Yielding lets the clock reach the next timer; with none left it stands still.
    w.Timer1.setInterval(100);
    w.Timer1.Tick.connect([&] { if (ticks.size() == 20) w.Timer1.setEnabled(false); });
    while (w.Timer1.Enabled()) played->ui()->DoEvents();
    played->ui()->DoEvents();
    EXPECT_EQ(ticks.size(), 20u);
    EXPECT_EQ(ticks.back(), QStringLiteral("2026-03-16T15:30:07"));
    EXPECT_EQ(played->ui()->Now(), Date::fromParts(2026, 3, 16, 15, 30, 7));
    EXPECT_LT(real.elapsed(), 1000) << "virtual seconds are not waited for";
    // Setting the interval restarts the countdown; ties fire in the order they were scheduled.
    ticks.clear();
    w.Timer1.setInterval(1000);
    w.Timer1.setEnabled(true);
    played->clock().advance(900);
    w.Timer1.setInterval(1000);
    other.Timer1.setInterval(1000);
    other.Timer1.setEnabled(true);
    played->clock().advance(1000);
    EXPECT_EQ(ticks, (std::vector<QString>{QStringLiteral("2026-03-16T15:30:08.900"), QStringLiteral("other")}));
    w.Unload();
    played->clock().advance(5000);
    EXPECT_EQ(ticks.size(), 7u) << "an unloaded window's timer does not tick";
    other.Unload();
    EXPECT_FALSE(played->clock().hasTimer());
    // A handler that yields does not reenter its own timer.
    Window y(*played->ui(), "frmYield");
    y.Load();
    int depth = 0, deepest = 0;
    y.Timer1.Tick.connect([&] {
        deepest = std::max(deepest, ++depth);
        played->ui()->DoEvents();
        --depth;
    });
    y.Timer1.setInterval(100);
    y.Timer1.setEnabled(true);
    played->clock().advance(300);
    EXPECT_EQ(deepest, 1);
    y.Unload();
}

// --- Message boxes (the contact picker's arguments and choice are played by the scenario files
// on both hosts) ---

// A box is recorded with its buttons, icon and modality as the flags give them; an answer, title
// or text that does not fit the box cannot be played, and a button set the system never uses is
// refused before anything shows.
TEST_P(UiHostContract, AMessageBoxIsRecordedAsItsFlagsMakeItAndAStepThatDoesNotFitCannotBePlayed)
{
    struct Case { const char* steps; const char* text; long flags; QJsonObject recorded; /* when the step fits, else */ const char* says; };
    const Case cases[] = {
        {R"([{"msgbox": "No", "title": " Name Required"}])", "Are you sure?\r\nReally?", 4 + 32 + 4096, {{"title", " Name Required"},
         {"text", "Are you sure?\r\nReally?"}, {"buttons", "YesNo"}, {"icon", "question"}, {"systemModal", true}, {"answer", "No"}}, nullptr},
        {R"([{"msgbox": "Cancel"}])", "t", 1 + 16, {{"buttons", "OKCancel"}, {"icon", "critical"}, {"systemModal", false}, {"answer", "Cancel"}}, nullptr},
        {R"([{"msgbox": "OK"}])", "t", 48, {{"icon", "exclamation"}}, nullptr},
        {R"([{"msgbox": "OK"}])", "t", 64, {{"icon", "information"}}, nullptr},
        {R"([{"msgbox": "Yes"}])", "Done.", 0, {}, "step 1 (answer a message box with Yes): the message box \" Name Required\" has the buttons OK"},
        {R"([{"msgbox": "OK", "title": "Name Required"}])", "x", 48, {}, "has the title \" Name Required\""},
        {R"([{"msgbox": "OK", "text": "Please enter a name."}])", "Please enter a name for the new group.", 48, {}, "has the text"},
        {R"([{"msgbox": "OK"}])", "t", 3, {}, "thrown failure 5"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.steps);
        UiHost& ui = host(c.steps);
        const Abort a = abortOf([&] { ui.MsgBox(QLatin1String(c.text), c.flags, QStringLiteral(" Name Required")); });
        if (c.says) {
            EXPECT_TRUE(a.message.contains(QLatin1String(c.says))) << a.message.toStdString();
            continue;
        }
        EXPECT_FALSE(a.aborted) << a.message.toStdString();
        const QJsonObject box = played->events("msgbox").value(0).value("msgbox").toObject();
        for (auto it = c.recorded.begin(); it != c.recorded.end(); ++it) EXPECT_EQ(box.value(it.key()), it.value()) << it.key().toStdString();
    }
}

TEST_P(UiHostContract, TimersFireWhileAMessageBoxWaitsForItsStep)
{
    UiHost& ui = host(R"([{"form": "frmTest", "click": "cmdOK"}, {"form": "frmTest", "close": true}])");
    Window w(ui);
    w.Load();
    w.Timer1.setInterval(500);
    w.Timer1.setEnabled(true);
    w.Timer1.Tick.connect([&] { w.Timer1.setEnabled(false); w.Show(); });
    // The timer shows the window, its steps are played, and the box then finds none for itself.
    EXPECT_EQ(abortOf([&] { ui.MsgBox(QStringLiteral("Wait.")); }).message,
              QStringLiteral("the script ended while the message box \"\" was waiting"));
    EXPECT_EQ(played->at("show"), QStringLiteral("2026-03-16T15:30:00.500"));
}

// The screen's pointer reads back as set; on the Qt host it is the override cursor, gone at Default.
TEST_P(UiHostContract, TheScreenPointerReadsBackAsSetAndDefaultLeavesNoOverride)
{
    UiHost& ui = host();
    for (auto [pointer, shape] : {std::pair(Control::Hourglass, Qt::WaitCursor), std::pair(Control::Custom, Qt::PointingHandCursor)}) {
        ui.setScreenMousePointer(pointer);
        EXPECT_EQ(ui.screenMousePointer(), pointer);
        if (GetParam() == Kind::Qt) { EXPECT_EQ(QGuiApplication::overrideCursor() ? QGuiApplication::overrideCursor()->shape() : Qt::ArrowCursor, shape); }
    }
    ui.setScreenMousePointer(Control::Default);
    EXPECT_EQ(ui.screenMousePointer(), Control::Default);
    if (GetParam() == Kind::Qt) { EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr); }
}

INSTANTIATE_TEST_SUITE_P(Hosts, UiHostContract, ::testing::Values(Kind::Scripted, Kind::Qt),
                         [](const auto& info) { return info.param == Kind::Qt ? "Qt" : "Scripted"; });

} // namespace
