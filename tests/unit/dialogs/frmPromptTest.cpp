// frmPrompt on the scripted host, for what the sessions in tests/scenarios cannot reach.
#include "RecordingSink.h"
#include "ScriptedSteps.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "dialogs/frmPrompt.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include "templates/EditedTemplate.h"

using namespace steplets;

namespace {

class PromptTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        TearDown();
        session().ports.settings = std::make_shared<IniSettings>(dir.path());
        session().ports.componentDirectory = dir.path();
    }
    void TearDown() override
    {
        session() = SessionContext();
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
    }

    // Plays `steps` (JSON text of a script) on a new frmPrompt called in that mode with those
    // flags. The form stays for the test to inspect; the host's events are kept.
    frmPrompt& play(qint32 mode, bool anchorDate, bool userPrompt, const char* steps)
    {
        form.reset();   // a form tells its host when it goes, so it goes first
        host = test::hostWith(steps);
        form = std::make_unique<frmPrompt>(*host);
        Bool16 anchor(anchorDate), prompt(userPrompt);
        QString promptText = QStringLiteral("Your prompt"), itemDesc = QStringLiteral("Invoice run"), anchorDesc;
        form->PromptDialog(mode, anchor, prompt, promptText, itemDesc, anchorDesc);
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

TEST_F(PromptTest, OkWithoutADateKeepsTheFormOpenCancelResetsTheResultsAndOkLeavesTheCancelFlag)
{
    play(1, true, true, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "first"},
                   {"form": "frmPrompt", "click": "OKButton"},
                   {"msgbox": "OK", "title": " Anchor Date Required", "text": "Please enter an anchor date."},
                   {"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-04-02"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("first"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2026, 4, 2));

    // Closed after the message: the text stays taken and the close box counts as Cancel.
    play(1, true, true, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "kept"},
                   {"form": "frmPrompt", "click": "OKButton"},
                   {"msgbox": "OK"},
                   {"form": "frmPrompt", "close": true}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("kept"));
    EXPECT_TRUE(session().bPromptCancelled);

    // Cancel resets the results; OK never clears the cancel flag.
    session().sPromptResult = QStringLiteral("from before");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    play(1, false, false, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "typed"},
                     {"form": "frmPrompt", "click": "CancelButton"}])");
    EXPECT_TRUE(session().bPromptCancelled);
    EXPECT_EQ(session().sPromptResult, QString());
    EXPECT_EQ(session().dPromptAnchorDate, Date());
    EXPECT_FALSE(modTasks::EditedTemplate().OptionsDialogDeclined);

    play(5, false, true, R"([{"form": "frmPrompt", "type": "txtUserInput", "text": "Main St 4"},
                   {"form": "frmPrompt", "click": "OKButton"}])");
    EXPECT_EQ(session().sPromptResult, QStringLiteral("Main St 4"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2026, 3, 16, 15, 30)) << "the present moment when no calendar shows";
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
        play(mode, false, false, R"([{"form": "frmPrompt", "close": true}])");
        EXPECT_EQ(bool(session().bPromptCancelled), mode == 6);
        EXPECT_EQ(bool(modTasks::EditedTemplate().OptionsDialogDeclined), mode == 4);
    }
    auto key = session().settings().OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
    EXPECT_EQ(session().settings().ReadNumber(*key, QStringLiteral("New Task Description"), -99), -99) << "nothing written";
}

// The new-group mode reads neither flag and leaves the results alone on Cancel.
TEST_F(PromptTest, TheNewGroupModeIgnoresTheFlags)
{
    session().sPromptResult = QStringLiteral("old");
    session().dPromptAnchorDate = Date::fromParts(2020, 1, 1);
    play(3, true, true, kSnapshotThenCancel);
    EXPECT_FALSE(control("Frame1(0)").value("visible").toBool()) << "the date flag is not read";
    EXPECT_TRUE(control("txtUserInput").value("visible").toBool());
    EXPECT_EQ(session().sPromptResult, QStringLiteral("old"));
    EXPECT_EQ(session().dPromptAnchorDate, Date::fromParts(2020, 1, 1));
}

} // namespace
