// frmPrompt on the scripted host, for what the sessions in tests/scenarios cannot reach.
#include "RecordingSink.h"
#include "ScriptedSteps.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "dialogs/frmPrompt.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include "templates/EditedTemplate.h"
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
        form.reset();   // a form tells its host when it goes, so it goes first
        host = test::hostWith(steps);
        form = std::make_unique<frmPrompt>(*host);
        qint32 mode = call.mode;
        Bool16 anchor(call.anchorDate), prompt(call.userPrompt);
        QString userPrompt = call.userPrompt_, itemDesc = call.itemDesc, anchorDesc = call.anchorDesc;
        form->PromptDialog(mode, anchor, prompt, userPrompt, itemDesc, anchorDesc);
        EXPECT_TRUE(host->script().atEnd()) << "every step was played";
        return *form;
    }

    QJsonObject control(const QString& name) const
    {
        return test::firstEvent(*host, QStringLiteral("snapshot")).value(QStringLiteral("controls")).toObject().value(name).toObject();
    }
    test::TempDir dir;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    std::unique_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmPrompt> form;
};

const char* const kSnapshotThenCancel = R"([{"form": "frmPrompt", "snapshot": true},
                                            {"form": "frmPrompt", "click": "CancelButton"}])";

// What no session can reach: a mode the callers never pass, the frames and heights of each
// layout, OK on a date frame left empty, and the cancel flag's rules.
TEST_F(PromptTest, AnUnknownModeKeepsTheDesignCaptionAndAnEmptyHeaderWithTheInputLayout)
{
    Call call;
    call.mode = 9;
    play(call, kSnapshotThenCancel);
    EXPECT_EQ(test::firstEvent(*host, QStringLiteral("snapshot")).value("caption").toString(), QStringLiteral(" Task Template Options"));
    EXPECT_EQ(control("hdrText").value("caption").toString(), QString());
    EXPECT_TRUE(control("Frame1(1)").value("visible").toBool());
    EXPECT_EQ(control("Frame1(1)").value("caption").toString(), QStringLiteral("Your prompt"));
}

TEST_F(PromptTest, EachLayoutShowsItsFramesAtItsHeight)
{
    struct Layout { bool anchorDate, userPrompt, dateFrame, textFrame; int height; };
    const Layout layouts[] = {
        {false, false, false, true, 3135}, {false, true, false, true, 3135},
        {true, true, true, true, 4110}, {true, false, true, false, 3135},
    };
    for (const Layout& l : layouts) {
        SCOPED_TRACE(testing::Message() << l.anchorDate << l.userPrompt);
        Call call;
        call.anchorDate = l.anchorDate;
        call.userPrompt = l.userPrompt;
        frmPrompt& f = play(call, kSnapshotThenCancel);
        EXPECT_EQ(control("Frame1(0)").value("visible").toBool(), l.dateFrame);
        EXPECT_EQ(control("ActiveCalendar1").value("visible").toBool(), l.dateFrame);
        EXPECT_EQ(control("Frame1(1)").value("visible").toBool(), l.textFrame);
        EXPECT_EQ(control("txtUserInput").value("visible").toBool(), l.textFrame);
        EXPECT_EQ(f.Height(), l.height);
        EXPECT_EQ(f.OKButton.Top(), f.CancelButton.Top());
        EXPECT_GT(f.OKButton.Top(), f.Frame1[l.textFrame ? 1 : 0].Top()) << "the buttons stand below the frames";
        if (l.dateFrame && l.textFrame) {
            EXPECT_LT(f.Frame1[0].Top(), f.Frame1[1].Top());
        }
        if (!l.dateFrame) {
            EXPECT_EQ(f.Frame1[1].Top(), 1035);
        }
    }
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
    const QJsonObject box = test::firstEvent(*host, QStringLiteral("msgbox"));
    EXPECT_EQ(box.value("icon").toString(), QStringLiteral("exclamation"));
    EXPECT_TRUE(box.value("systemModal").toBool());
    EXPECT_EQ(session().sPromptResult, QStringLiteral("first"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2026, 4, 2));

    // Closed after the message: the text stays taken and the close box counts as Cancel.
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "kept"},
                   {"form": "frmPrompt", "click": "OKButton"},
                   {"msgbox": "OK"},
                   {"form": "frmPrompt", "close": true}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("kept"));
    EXPECT_TRUE(session().bPromptCancelled);
}

TEST_F(PromptTest, CancelResetsTheResultsAndOkNeverClearsTheCancelFlag)
{
    session().sPromptResult = QStringLiteral("from before");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    play(Call(), R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "typed"},
                     {"form": "frmPrompt", "click": "CancelButton"}])");
    EXPECT_TRUE(session().bPromptCancelled);
    EXPECT_EQ(session().sPromptResult, QString());
    EXPECT_EQ(session().dPromptAnchorDate, Date());
    EXPECT_FALSE(modTasks::EditedTemplate().OptionsDialogDeclined);

    Call call;
    call.mode = 5;
    call.userPrompt = true;
    play(call, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "Main St 4"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("Main St 4"));
    EXPECT_EQ(session().dPromptAnchorDate, kStart) << "the present moment when no calendar shows";
    EXPECT_TRUE(session().bPromptCancelled) << "each caller clears it itself";
    EXPECT_FALSE(form->isLoaded()) << "OK unloads the form";
}

// No session closes these two by the close box: the question counts it as No, the help page
// as declining the options, and neither stores the help page's setting.
TEST_F(PromptTest, TheCloseBoxOnTheQuestionIsNoAndOnTheHelpPageDeclinesTheOptions)
{
    for (const int mode : {6, 4}) {
        SCOPED_TRACE(mode);
        session().bPromptCancelled = false;
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
        Call call;
        call.mode = mode;
        play(call, R"([{"form": "frmPrompt", "close": true}])");
        EXPECT_EQ(bool(session().bPromptCancelled), mode == 6);
        EXPECT_EQ(bool(modTasks::EditedTemplate().OptionsDialogDeclined), mode == 4);
    }
    auto key = session().settings().OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
    EXPECT_EQ(session().settings().ReadNumber(*key, QStringLiteral("New Task Description"), -99), -99) << "nothing written";
}

// The help page and the question page, whose labels no session's snapshot looks at, and the
// new-group mode, which reads neither flag and leaves the results alone on Cancel.
TEST_F(PromptTest, TheHelpAndQuestionPagesAndTheNewGroupModeIgnoringTheFlags)
{
    Call call;
    call.mode = 4;
    play(call, kSnapshotThenCancel);
    EXPECT_EQ(control("hdrText").value("caption").toString(),
              QStringLiteral("IMPORTANT NOTE:  Editing the properties of your new task template."));
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(control(QStringLiteral("Label1(%1)").arg(i)).value("visible").toBool()) << i;
    EXPECT_TRUE(control("Label1(2)").value("caption").toString().startsWith(QStringLiteral("Steplets will use whatever")));
    EXPECT_EQ(control("Check1").value("caption").toString(), QStringLiteral(" Don't show again."));
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(1)").value("visible").toBool());

    call.mode = 6;
    play(call, kSnapshotThenCancel);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(control(QStringLiteral("Label2(%1)").arg(i)).value("visible").toBool()) << i;
    EXPECT_EQ(control("Label2(1)").value("caption").toString(), QStringLiteral("Anchor Dates:"));
    EXPECT_FALSE(control("Label1(0)").value("visible").toBool());
    EXPECT_FALSE(control("Frame1(1)").value("visible").toBool());
    EXPECT_FALSE(control("Check1").value("visible").toBool());

    session().sPromptResult = QStringLiteral("old");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    call.mode = 3;
    call.anchorDate = true;
    call.userPrompt = true;
    play(call, kSnapshotThenCancel);
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool()) << "the date flag is not read";
    EXPECT_TRUE(control("txtUserInput").value("visible").toBool());
    EXPECT_EQ(session().sPromptResult, QStringLiteral("old"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2020, 1, 1));
}

} // namespace
