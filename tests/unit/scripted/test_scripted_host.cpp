// The scripted host: a script played on the window that waits, time passing through timers only,
// message boxes and the contact picker answered from the script, and every refusal named.
#include "TestWindow.h"
#include "runtime/Failure.h"
#include <QJsonArray>

using namespace steplets;
using namespace steplets::test;

namespace {
// The message of the abort that `f` ends in, with its reason; empty when it does not abort.
template <class F>
std::pair<QString, HostAbort::Reason> abortOf(F&& f) {
    try { f(); } catch (const HostAbort& a) { return {a.message(), a.reason()}; }
    return {QString(), HostAbort::Reason::CannotPlay};
}

QJsonObject eventAt(const scripted::ScriptedHost& host, const QString& key, int nth = 0) {
    for (const auto& e : host.events())
        if (e.toObject().contains(key) && nth-- == 0) return e.toObject();
    return {};
}
} // namespace

TEST(ScriptedPlay, AStepForAWindowNotYetThereLetsTimersBringIt) {
    auto host = hostWith(R"([{"form": "frmChild", "click": "cmdOK"},
                             {"form": "frmMain", "click": "cmdCancel"}])");
    TestWindow main(*host, QStringLiteral("frmMain"));
    TestWindow child(*host, QStringLiteral("frmChild"));
    main.Timer1.setInterval(1000);
    main.onActivate = [&] { main.Timer1.setEnabled(true); };
    main.Timer1.Tick.connect([&] { main.Timer1.setEnabled(false); child.Show(); child.Unload(); });
    child.cmdOK.Click.connect([&] { child.Hide(); });
    main.cmdCancel.Click.connect([&] { main.Unload(); });
    main.Show();
    EXPECT_EQ(eventAt(*host, "show", 1).value("show").toString(), QStringLiteral("frmChild"));
    EXPECT_EQ(eventAt(*host, "show", 1).value("at").toString(), QStringLiteral("2026-03-16T15:30:01"));
    EXPECT_EQ(eventAt(*host, "unload", 0).value("unload").toString(), QStringLiteral("frmChild"));
    EXPECT_EQ(eventAt(*host, "unload", 1).value("unload").toString(), QStringLiteral("frmMain"));
    EXPECT_TRUE(host->modalStack().empty());
}

TEST(ScriptedPlay, AStepWhoseTargetCannotComeEndsThePlayNamingWhatWasWaiting) {
    auto host = hostWith(R"([{"form": "frmChild", "click": "cmdOK"}])");
    TestWindow main(*host, QStringLiteral("frmMain"));
    const auto [message, reason] = abortOf([&] { main.Show(); });
    EXPECT_EQ(reason, HostAbort::Reason::CannotPlay);
    EXPECT_EQ(message, QStringLiteral("step 1 (click cmdOK on frmChild) cannot be done: the window frmMain is waiting "
                                      "and no timer is left"));
    EXPECT_TRUE(host->modalStack().empty()) << "the aborted show has left the stack";
}

TEST(ScriptedPlay, ATargetThatNeverComesWhileTimersRunEndsThePlay) {
    auto host = hostWith(R"([{"msgbox": "OK"}])");
    TestWindow main(*host, QStringLiteral("frmMain"));
    main.Timer1.setInterval(100);
    main.Timer1.setEnabled(true);
    const auto [message, reason] = abortOf([&] { main.Show(); });
    EXPECT_EQ(reason, HostAbort::Reason::CannotPlay);
    EXPECT_TRUE(message.contains(QStringLiteral("never came"))) << message.toStdString();
}

TEST(ScriptedPlay, TheScriptMustNotEndWhileAWindowWaits) {
    auto host = hostWith(R"([{"click": "chkOption"}])");
    TestWindow w(*host);
    const auto [message, reason] = abortOf([&] { w.Show(); });
    EXPECT_EQ(message, QStringLiteral("the script ended while the window frmTest was waiting"));
    EXPECT_EQ(w.chkOption.Value(), 1) << "the steps before were played";
}

TEST(ScriptedPlay, AClickOnADisabledControlCannotBeDone) {
    auto host = hostWith(R"([{"form": "frmTest", "click": "cmdOK"}])");
    TestWindow w(*host);
    w.cmdOK.setEnabled(false);
    const auto [message, reason] = abortOf([&] { w.Show(); });
    EXPECT_EQ(reason, HostAbort::Reason::CannotPlay);
    EXPECT_EQ(message, QStringLiteral("step 1 (click cmdOK on frmTest): cannot click cmdOK: it is disabled"));
}

TEST(ScriptedPlay, AStepOnAControlTheWindowDoesNotHaveCannotBeDone) {
    auto host = hostWith(R"([{"select": "txtName", "row": 0}])");
    TestWindow w(*host);
    EXPECT_EQ(abortOf([&] { w.Show(); }).first,
              QStringLiteral("step 1 (select txtName): txtName is not a list or combo box"));
    auto host2 = hostWith(R"([{"click": "cmdNothing"}])");
    TestWindow w2(*host2);
    EXPECT_EQ(abortOf([&] { w2.Show(); }).first, QStringLiteral("step 1 (click cmdNothing): frmTest has no control cmdNothing"));
}

TEST(ScriptedPlay, AFailureNoHandlerTookIsADefectOfTheComponent) {
    auto host = hostWith(R"([{"click": "cmdOK"}])");
    TestWindow w(*host);
    w.cmdOK.Click.connect([] { throw Failure::overflow(); });
    const auto [message, reason] = abortOf([&] { w.Show(); });
    EXPECT_EQ(reason, HostAbort::Reason::UnhandledFailure);
    EXPECT_TRUE(message.startsWith(QStringLiteral("step 1 (click cmdOK): failure 6 "))) << message.toStdString();
}

TEST(ScriptedPlay, WaitFiresEveryTimerDueWithinItAndSnapshotsAreRecorded) {
    auto host = hostWith(R"([{"wait": 2.5}, {"form": "frmTest", "snapshot": true}, {"form": "frmTest", "close": true}])");
    TestWindow w(*host);
    w.Timer1.setInterval(1000);
    w.Timer1.Tick.connect([&] { w.sbStatus.setPanelText(1, w.sbStatus.PanelText(1) + QLatin1Char('x')); });
    w.onLoad = [&] { w.Timer1.setEnabled(true); };
    w.Show();
    const QJsonObject snap = eventAt(*host, "snapshot");
    EXPECT_EQ(snap.value("at").toString(), QStringLiteral("2026-03-16T15:30:02.500"));
    EXPECT_EQ(snap.value("snapshot").toObject().value("controls").toObject().value("sbStatus").toObject().value("panels"),
              QJsonArray({"xx", ""}));
    EXPECT_TRUE(snap.value("snapshot").toObject().value("visible").toBool());
}

TEST(ScriptedMessageBoxes, AnAnswerIsRecordedWithEverythingTheBoxShowed) {
    auto host = hostWith(R"([{"msgbox": "No", "title": "Undo Task Processing"}])");
    const int answer = host->MsgBox(QStringLiteral("Are you sure?\r\nReally?"), 4 + 32 + 4096,
                                    QStringLiteral("Undo Task Processing"));
    EXPECT_EQ(answer, 7);
    EXPECT_EQ(eventAt(*host, "msgbox").value("msgbox").toObject(),
              (QJsonObject{{"title", "Undo Task Processing"}, {"text", "Are you sure?\r\nReally?"}, {"buttons", "YesNo"},
                           {"icon", "question"}, {"systemModal", true}, {"answer", "No"}}));
}

TEST(ScriptedMessageBoxes, AnswersTitlesAndTextsMustFitTheBoxShown) {
    auto wrongButton = hostWith(R"([{"msgbox": "Yes"}])");
    EXPECT_EQ(abortOf([&] { wrongButton->MsgBox(QStringLiteral("Done."), 0, QStringLiteral(" Name Required")); }).first,
              QStringLiteral("step 1 (answer a message box with Yes): the message box \" Name Required\" has the buttons OK"));
    auto wrongTitle = hostWith(R"([{"msgbox": "OK", "title": "Name Required"}])");
    EXPECT_TRUE(abortOf([&] { wrongTitle->MsgBox(QStringLiteral("x"), 48, QStringLiteral(" Name Required")); })
                    .first.contains(QStringLiteral("has the title \" Name Required\"")));
    auto wrongText = hostWith(R"([{"msgbox": "OK", "text": "Please enter a name."}])");
    EXPECT_TRUE(abortOf([&] { wrongText->MsgBox(QStringLiteral("Please enter a name for the new group."), 48); })
                    .first.contains(QStringLiteral("has the text")));
}

TEST(ScriptedMessageBoxes, TheRunTimeFlagsGiveButtonsIconAndModality) {
    const auto box = MessageBoxRequest::fromFlags(QStringLiteral("t"), 48 + 4096, QStringLiteral(" Anchor Date Required"));
    EXPECT_EQ(box.buttons, MessageBoxRequest::Buttons::OK);
    EXPECT_EQ(box.icon, MessageBoxRequest::Icon::Exclamation);
    EXPECT_TRUE(box.systemModal);
    EXPECT_EQ(MessageBoxRequest::fromFlags({}, 1 + 16, {}).buttons, MessageBoxRequest::Buttons::OKCancel);
    EXPECT_EQ(MessageBoxRequest::fromFlags({}, 1 + 16, {}).icon, MessageBoxRequest::Icon::Critical);
    EXPECT_EQ(MessageBoxRequest::fromFlags({}, 64, {}).icon, MessageBoxRequest::Icon::Information);
    EXPECT_FALSE(MessageBoxRequest::fromFlags({}, 64, {}).systemModal);
    EXPECT_EQ(failureOf([] { MessageBoxRequest::fromFlags({}, 3, {}); }), 5) << "Yes/No/Cancel is not a box of the system";
}

TEST(ScriptedMessageBoxes, TimersMayFireWhileABoxWaitsForItsTarget) {
    auto host = hostWith(R"([{"form": "frmTest", "click": "cmdOK"}, {"form": "frmTest", "close": true}])");
    TestWindow w(*host);
    w.Load();
    w.Timer1.setInterval(500);
    w.Timer1.setEnabled(true);
    w.Timer1.Tick.connect([&] { w.Timer1.setEnabled(false); w.Show(); });
    // The box waits while the script wants the window: the timer shows it, the window's steps
    // are played, and the box then finds no step for itself.
    EXPECT_EQ(abortOf([&] { host->MsgBox(QStringLiteral("Wait.")); }).first,
              QStringLiteral("the script ended while the message box \"\" was waiting"));
    EXPECT_EQ(eventAt(*host, "show").value("at").toString(), QStringLiteral("2026-03-16T15:30:00.500"));
}

TEST(ScriptedPicker, TheArgumentsAreRecordedAndTheChoiceReturned) {
    auto host = hostWith(R"([{"picker": {"ContactID": 4, "name": "Byrne, Ada", "EntryID": "c-ada"}}, {"picker": "cancel"}])");
    ContactPickerRequest request;
    request.arguments = {{QStringLiteral("lTimeCardID"), Value(12)}, {QStringLiteral("sProvider"), Value(QString())},
                         {QStringLiteral("bManageContacts"), Value(true)}};
    request.version = QStringLiteral("newer");
    request.rows = {{4, QStringLiteral("Byrne, Ada"), QStringLiteral("c-ada"), QStringLiteral("Acme"), QString(), true}};
    const ContactPickerResult chosen = host->pickContact(request);
    EXPECT_EQ(chosen.contactID, 4);
    EXPECT_EQ(chosen.name, QStringLiteral("Byrne, Ada"));
    EXPECT_EQ(chosen.entryID, QStringLiteral("c-ada"));
    EXPECT_EQ(eventAt(*host, "picker").value("picker").toObject(),
              (QJsonObject{{"lTimeCardID", 12}, {"sProvider", ""}, {"bManageContacts", true}, {"version", "newer"},
                           {"offered", QJsonArray{QJsonObject{{"ContactID", 4}, {"name", "Byrne, Ada"}, {"EntryID", "c-ada"},
                                                              {"company", "Acme"}, {"email", ""}, {"hasCard", true}}}}}));
    EXPECT_EQ(host->pickContact(request).contactID, 0);
}

TEST(ScriptedHostState, MousePointerHelpFileAndClockAreKept) {
    auto host = hostWith();
    EXPECT_EQ(host->screenMousePointer(), 0);
    host->setScreenMousePointer(11);
    host->setHelpFile(QStringLiteral("/opt/ordivane\\Ordivane.chm"));
    EXPECT_EQ(host->screenMousePointer(), 11);
    EXPECT_EQ(host->helpFile(), QStringLiteral("/opt/ordivane\\Ordivane.chm"));
    EXPECT_EQ(host->Now(), Date::fromParts(2026, 3, 16, 15, 30, 0));
}
