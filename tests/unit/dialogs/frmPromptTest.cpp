// frmPrompt on the scripted host: each mode's caption, header and layout, the OK and Cancel
// rules, the two messages, the help page's setting and the question's answers.
#include "RecordingSink.h"
#include "ScriptedHost.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "dialogs/frmPrompt.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include "templates/EditedTemplate.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace steplets;

namespace {

const Date kStart = Date::fromParts(2026, 3, 16, 15, 30);

// What one call of PromptDialog is given.
struct Call {
    qint32 mode = 1;
    bool anchorDate = false;
    bool userPrompt = false;
    QString userPrompt_ = QStringLiteral("Your prompt");
    QString itemDesc = QStringLiteral("Invoice run");
    QString anchorDesc;
};

class PromptTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        session() = SessionContext();
        session().ports.settings = std::make_shared<IniSettings>(dir.path());
        session().ports.componentDirectory = dir.path();
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
    }
    void TearDown() override
    {
        session().ports = Ports();
        session() = SessionContext();
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
    }

    // Plays `steps` (JSON text of a script) on a new frmPrompt called as `call` says. The form
    // stays for the test to inspect; the host's events are kept.
    frmPrompt& play(const Call& call, const char* steps)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps).array(), &error);
        EXPECT_TRUE(script.has_value()) << error.toStdString();
        form.reset();   // a form tells its host when it goes, so it goes first
        host = std::make_unique<scripted::ScriptedHost>(script.value_or(scripted::Script()),
                                                        QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
        form = std::make_unique<frmPrompt>(*host);
        qint32 mode = call.mode;
        Bool16 anchor(call.anchorDate), prompt(call.userPrompt);
        QString userPrompt = call.userPrompt_, itemDesc = call.itemDesc, anchorDesc = call.anchorDesc;
        form->PromptDialog(mode, anchor, prompt, userPrompt, itemDesc, anchorDesc);
        EXPECT_TRUE(host->script().atEnd()) << "every step was played";
        return *form;
    }

    // The first snapshot the script took, as {"caption", "controls"}.
    QJsonObject snapshot() const
    {
        for (const auto& e : host->events())
            if (e.toObject().contains(QStringLiteral("snapshot"))) return e.toObject().value(QStringLiteral("snapshot")).toObject();
        ADD_FAILURE() << "no snapshot was taken";
        return {};
    }
    QJsonObject control(const QString& name) const
    {
        return snapshot().value(QStringLiteral("controls")).toObject().value(name).toObject();
    }
    std::vector<QJsonObject> messageBoxes() const
    {
        std::vector<QJsonObject> boxes;
        for (const auto& e : host->events())
            if (e.toObject().contains(QStringLiteral("msgbox"))) boxes.push_back(e.toObject().value(QStringLiteral("msgbox")).toObject());
        return boxes;
    }
    long storedHelpSetting()
    {
        auto key = session().settings().OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
        return session().settings().ReadNumber(*key, QStringLiteral("New Task Description"), -99);
    }

    test::TempDir dir;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    std::unique_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmPrompt> form;
};

const char* const kSnapshotThenCancel = R"([{"form": "frmPrompt", "snapshot": true},
                                            {"form": "frmPrompt", "click": "CancelButton"}])";

// --- Captions and headers of every mode ---------------------------------------------------

TEST_F(PromptTest, EachModeHasItsCaptionAndHeader)
{
    struct Expected { qint32 mode; const char* caption; const char* header; };
    const Expected modes[] = {
        {1, " Steplets: Task Template Options", "Please set the following options for your template named 'Invoice run'."},
        {2, " Steplets: Template Group Options", "Please set the following options for your template group named 'Invoice run'."},
        {3, " Steplets: New Template Group", "Please enter the name of your new task template group, then click on OK."},
        {4, " Steplets: New Task Template Help", "IMPORTANT NOTE:  Editing the properties of your new task template."},
        {5, " Steplets", "Invoice run"},
        {6, " Steplets Processing", "Would you like to use common input for all of the selected tasks?"},
    };
    for (const auto& m : modes) {
        SCOPED_TRACE(m.mode);
        Call call;
        call.mode = m.mode;
        play(call, kSnapshotThenCancel);
        EXPECT_EQ(snapshot().value("caption").toString(), QString::fromUtf8(m.caption));
        EXPECT_EQ(control("hdrText").value("caption").toString(), QString::fromUtf8(m.header));
        EXPECT_EQ(sink.failures.size(), 0u);
    }
}

TEST_F(PromptTest, AnUnknownModeKeepsTheDesignCaptionAndAnEmptyHeaderWithTheInputLayout)
{
    Call call;
    call.mode = 9;
    play(call, kSnapshotThenCancel);
    EXPECT_EQ(snapshot().value("caption").toString(), QStringLiteral(" Task Template Options"));
    EXPECT_EQ(control("hdrText").value("caption").toString(), QString());
    EXPECT_TRUE(control("Frame1(1)").value("visible").toBool());
    EXPECT_EQ(control("Frame1(1)").value("caption").toString(), QStringLiteral("Your prompt"));
}

// --- The input layouts ----------------------------------------------------------------------

TEST_F(PromptTest, WithoutAnAnchorDateOnlyTheTextFrameShowsWhateverTheTextFlagSays)
{
    for (const bool textFlag : {false, true}) {
        SCOPED_TRACE(textFlag);
        Call call;
        call.userPrompt = textFlag;
        frmPrompt& f = play(call, kSnapshotThenCancel);
        EXPECT_TRUE(control("Frame1(1)").value("visible").toBool());
        EXPECT_EQ(control("Frame1(1)").value("caption").toString(), QStringLiteral("Your prompt"));
        EXPECT_TRUE(control("txtUserInput").value("visible").toBool());
        EXPECT_FALSE(control("Frame1(0)").value("visible").toBool());
        EXPECT_FALSE(control("ActiveCalendar1").value("visible").toBool());
        EXPECT_EQ(f.Frame1[1].Top(), 1035);
        EXPECT_EQ(f.Height(), 3135);
        EXPECT_EQ(f.OKButton.Top(), f.CancelButton.Top());
        EXPECT_GT(f.OKButton.Top(), f.Frame1[1].Top()) << "the buttons stand below the frame";
    }
}

TEST_F(PromptTest, AnAnchorDateWithTextShowsBothFramesTheDateAboveAndTheDescriptionWithAColon)
{
    Call call;
    call.anchorDate = true;
    call.userPrompt = true;
    call.anchorDesc = QStringLiteral("Closing date");
    frmPrompt& f = play(call, kSnapshotThenCancel);
    EXPECT_TRUE(control("Frame1(0)").value("visible").toBool());
    EXPECT_TRUE(control("Frame1(1)").value("visible").toBool());
    EXPECT_TRUE(control("ActiveCalendar1").value("visible").toBool());
    EXPECT_EQ(control("lblAnchorDate").value("caption").toString(), QStringLiteral("Closing date:"));
    EXPECT_LT(f.Frame1[0].Top(), f.Frame1[1].Top());
    EXPECT_GT(f.OKButton.Top(), f.Frame1[1].Top());
    EXPECT_EQ(f.Height(), 4110);
}

TEST_F(PromptTest, AnAnchorDateAloneShowsTheDateFrameWithTheDesignLabel)
{
    Call call;
    call.anchorDate = true;
    frmPrompt& f = play(call, kSnapshotThenCancel);
    EXPECT_TRUE(control("Frame1(0)").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(1)").value("visible").toBool());
    EXPECT_FALSE(control("txtUserInput").value("visible").toBool());
    EXPECT_EQ(control("lblAnchorDate").value("caption").toString(), QStringLiteral("Please select anchor date:  "));
    EXPECT_EQ(f.Height(), 3135);
}

TEST_F(PromptTest, OkTakesTheTextAndThePresentMomentWhenNoCalendarShows)
{
    Call call;
    call.mode = 5;
    call.userPrompt = true;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "Main St 4"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("Main St 4"));
    EXPECT_EQ(session().dPromptAnchorDate, kStart);
    EXPECT_FALSE(session().bPromptCancelled);
    EXPECT_FALSE(form->isLoaded()) << "OK unloads the form";
}

TEST_F(PromptTest, OkWithoutADateSaysSoKeepsTheFormOpenAndHasTakenTheTextAlready)
{
    Call call;
    call.anchorDate = true;
    call.userPrompt = true;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "first"},
                   {"form": "frmPrompt", "click": "OKButton"},
                   {"msgbox": "OK", "title": " Anchor Date Required", "text": "Please enter an anchor date."},
                   {"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-04-02"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    const auto boxes = messageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].value("icon").toString(), QStringLiteral("exclamation"));
    EXPECT_TRUE(boxes[0].value("systemModal").toBool());
    EXPECT_EQ(boxes[0].value("buttons").toString(), QStringLiteral("OK"));
    EXPECT_EQ(session().sPromptResult, QStringLiteral("first"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2026, 4, 2));
}

TEST_F(PromptTest, TheTextIsTakenBeforeTheMissingDateIsNoticed)
{
    Call call;
    call.anchorDate = true;
    call.userPrompt = true;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "kept"},
                   {"form": "frmPrompt", "click": "OKButton"},
                   {"msgbox": "OK"},
                   {"form": "frmPrompt", "close": true}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("kept"));
    EXPECT_TRUE(session().bPromptCancelled) << "the close box counts as Cancel";
}

TEST_F(PromptTest, CancelInAnInputModeLeavesTheResultsReset)
{
    session().sPromptResult = QStringLiteral("from before");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    Call call;
    call.mode = 1;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "typed"},
                   {"form": "frmPrompt", "click": "CancelButton"}])");
    EXPECT_TRUE(session().bPromptCancelled);
    EXPECT_EQ(session().sPromptResult, QString());
    EXPECT_EQ(session().dPromptAnchorDate, Date());
    EXPECT_FALSE(modTasks::EditedTemplate().OptionsDialogDeclined);
}

TEST_F(PromptTest, TheCancelFlagIsSetHereButNeverCleared)
{
    session().bPromptCancelled = true;
    Call call;
    call.mode = 5;
    play(call, R"([{"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_TRUE(session().bPromptCancelled) << "each caller clears it itself";
}

// --- Mode 3: the name of a new group ------------------------------------------------------

TEST_F(PromptTest, NewGroupShowsTheTextFrameAndAnEmptyNamePassesWithoutAMessage)
{
    session().sPromptResult = QStringLiteral("old");
    Call call;
    call.mode = 3;
    call.userPrompt_ = QStringLiteral("Name of New Group");
    call.itemDesc = QStringLiteral("New Group");
    play(call, R"([{"form": "frmPrompt", "snapshot": true}, {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(control("Frame1(1)").value("caption").toString(), QStringLiteral("Name of New Group"));
    EXPECT_TRUE(control("txtUserInput").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool());
    EXPECT_TRUE(messageBoxes().empty()) << "the group name check stays dormant";
    EXPECT_EQ(session().sPromptResult, QString());
    EXPECT_FALSE(session().bPromptCancelled);
}

TEST_F(PromptTest, NewGroupReadsNoFlagsAndLeavesTheResultsAsTheyWereOnCancel)
{
    session().sPromptResult = QStringLiteral("old");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    Call call;
    call.mode = 3;
    call.anchorDate = true;
    call.userPrompt = true;
    play(call, R"([{"form": "frmPrompt", "snapshot": true}, {"form": "frmPrompt", "click": "CancelButton"}])");
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool()) << "the date flag is not read";
    EXPECT_TRUE(session().bPromptCancelled);
    EXPECT_EQ(session().sPromptResult, QStringLiteral("old"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2020, 1, 1));
}

TEST_F(PromptTest, NewGroupOkTakesTheTypedName)
{
    Call call;
    call.mode = 3;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "Month-end close"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("Month-end close"));
    EXPECT_EQ(session().dPromptAnchorDate, kStart);
}

// --- Mode 4: the help page ----------------------------------------------------------------

TEST_F(PromptTest, HelpShowsItsPageAndTheTickOfDontShowAgainIsStoredAsZero)
{
    session().bNewTaskDescription = Bool16(true);
    Call call;
    call.mode = 4;
    play(call, R"([{"form": "frmPrompt", "snapshot": true},
                   {"form": "frmPrompt", "click": "Check1"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(control(QStringLiteral("Label1(%1)").arg(i)).value("visible").toBool()) << i;
    EXPECT_TRUE(control("Label1(2)").value("caption").toString().startsWith(QStringLiteral("Steplets will use whatever")));
    EXPECT_EQ(control("Check1").value("caption").toString(), QStringLiteral(" Don't show again."));
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(1)").value("visible").toBool());
    EXPECT_EQ(storedHelpSetting(), 0);
    EXPECT_TRUE(bool(session().bNewTaskDescription)) << "only the stored setting changes";
    EXPECT_EQ(session().sPromptResult, QString());
    EXPECT_EQ(session().dPromptAnchorDate, kStart);
}

TEST_F(PromptTest, HelpLeftUntickedStoresOne)
{
    Call call;
    call.mode = 4;
    play(call, R"([{"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(storedHelpSetting(), 1);
}

TEST_F(PromptTest, HelpCancelledOrClosedDeclinesTheOptionsWritesNothingAndLeavesTheCancelFlag)
{
    for (const char* steps : {R"([{"form": "frmPrompt", "click": "Check1"}, {"form": "frmPrompt", "click": "CancelButton"}])",
                              R"([{"form": "frmPrompt", "close": true}])"}) {
        SCOPED_TRACE(steps);
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
        Call call;
        call.mode = 4;
        play(call, steps);
        EXPECT_TRUE(bool(modTasks::EditedTemplate().OptionsDialogDeclined));
        EXPECT_FALSE(session().bPromptCancelled);
        EXPECT_EQ(storedHelpSetting(), -99) << "nothing written";
    }
}

// --- Mode 6: the question -----------------------------------------------------------------

TEST_F(PromptTest, QuestionShowsItsPageWithTheTwoCountsAndYesNoButtons)
{
    Call call;
    call.mode = 6;
    call.userPrompt_ = QStringLiteral("2");
    call.itemDesc = QStringLiteral("3");
    play(call, kSnapshotThenCancel);
    EXPECT_EQ(control("OKButton").value("caption").toString(), QStringLiteral("&Yes"));
    EXPECT_EQ(control("CancelButton").value("caption").toString(), QStringLiteral("&No"));
    EXPECT_EQ(control("Label3(0)").value("caption").toString(), QStringLiteral("2"));
    EXPECT_EQ(control("Label3(1)").value("caption").toString(), QStringLiteral("3"));
    EXPECT_EQ(control("Label2(1)").value("caption").toString(), QStringLiteral("Anchor Dates:"));
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(control(QStringLiteral("Label2(%1)").arg(i)).value("visible").toBool()) << i;
    EXPECT_FALSE(control("Label1(0)").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(1)").value("visible").toBool());
    EXPECT_FALSE(control("Check1").value("visible").toBool());
}

TEST_F(PromptTest, QuestionYesLeavesTheFlagClearAndNoOrTheCloseBoxSetsIt)
{
    struct Answer { const char* steps; bool cancelled; };
    const Answer answers[] = {
        {R"([{"form": "frmPrompt", "click": "OKButton"}])", false},
        {R"([{"form": "frmPrompt", "click": "CancelButton"}])", true},
        {R"([{"form": "frmPrompt", "close": true}])", true},
    };
    for (const auto& a : answers) {
        SCOPED_TRACE(a.steps);
        session().bPromptCancelled = false;
        session().sPromptResult = QStringLiteral("old");
        Call call;
        call.mode = 6;
        play(call, a.steps);
        EXPECT_EQ(bool(session().bPromptCancelled), a.cancelled);
        EXPECT_EQ(session().sPromptResult, a.cancelled ? QStringLiteral("old") : QString())
            << "No keeps the results; Yes takes the empty text of a hidden frame";
        EXPECT_FALSE(modTasks::EditedTemplate().OptionsDialogDeclined);
    }
    EXPECT_EQ(sink.failures.size(), 0u);
}

} // namespace
