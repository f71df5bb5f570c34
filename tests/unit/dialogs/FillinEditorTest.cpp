// The subject fill-in editor of frmNewTask on the scripted host, by rule (one field at most asks
// the user, an unshowable fill-in empties when shown, a prompt outlives its fill-in), and the preview.
#include "ScriptedSteps.h"
#include "dialogs/FormatPreview.h"
#include "dialogs/frmNewTask.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"

using namespace steplets;

namespace {

const QString kPrompt = QStringLiteral("Prompt for user input");
const QString kEmpty = QStringLiteral("[Empty]");
const QString kJobOrder = QStringLiteral("Job Order (from current TimeCard)");

class FillinEditorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        session() = SessionContext();
        session().sContactTerm = QStringLiteral("Client");
        session().sMainActivityTerm = QStringLiteral("Project");
        session().sSubActivityTerm = QStringLiteral("Phase");
        modTasks::ReSetModuleVariables();
    }
    void TearDown() override
    {
        form.reset();
        session() = SessionContext();
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
    }

    // Opens a new template's dialog on the default fill-ins given, plays `steps` on it and
    // leaves with Cancel; the form stays for the test to read.
    frmNewTask& play(const std::array<QString, 4>& defaults, const QString& steps, const QStringList& prompts = {})
    {
        for (int k = 1; k <= 4; ++k) {
            session().sDefaultFillIn[k] = defaults[k - 1];
            session().sDefaultUserPrompt[k] = prompts.value(k - 1);
        }
        form.reset();
        host = test::hostWith((QStringLiteral("[") + steps + QStringLiteral("{\"form\": \"frmNewTask\", \"click\": \"CancelButton\"}]")).toUtf8());
        session().ports.ui = host;
        form = std::make_unique<frmNewTask>(*host);
        Bool16 edit(false);
        QString name;
        form->NewTaskDialog(edit, name);
        EXPECT_TRUE(host->script().atEnd()) << "every step was played";
        return *form;
    }
    std::shared_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmNewTask> form;
};

QString field(int k) { return QStringLiteral("{\"form\": \"frmNewTask\", \"select\": \"cboSubjectField\", \"item\": \"Field %1\"},").arg(k); }
QString fillin(const QString& text) { return QStringLiteral("{\"form\": \"frmNewTask\", \"select\": \"cboFillin\", \"item\": \"%1\"},").arg(text); }
const QString kOK = QStringLiteral("{\"msgbox\": \"OK\", \"title\": \"Invalid Selection\", \"text\": \"Only one of the four Fill-In fields may prompt the user for input.\"},");
const QString kFillinsTab = QStringLiteral("{\"form\": \"frmNewTask\", \"tab\": \"TabStrip1\", \"index\": 2},");

// A message comes only for a choice of the user, after which the field's value is back in the
// box; a stored fill-in that this run cannot show (the job-order row, whose term the host does not
// pass here) becomes "[Empty]" only when its field is shown.
TEST_F(FillinEditorTest, OnlyOneFieldMayAskTheUserAndAFillinThisRunCannotShowEmptiesWhenShown)
{
    struct Case { const char* name; std::array<QString, 4> stored; QString steps; std::array<QString, 4> after; };
    const QString subject = QStringLiteral("Subject field from template");
    const Case cases[] = {
        {"another field", {kEmpty, kPrompt, kEmpty, kEmpty}, field(3) + fillin(kPrompt) + kOK, {kEmpty, kPrompt, kEmpty, kEmpty}},
        {"the same field", {kEmpty, kPrompt, kEmpty, kEmpty}, field(2) + fillin(kPrompt) + kOK, {kEmpty, kPrompt, kEmpty, kEmpty}},
        {"two stored prompts open quietly", {kPrompt, kPrompt, kEmpty, kEmpty}, field(2) + field(1), {kPrompt, kPrompt, kEmpty, kEmpty}},
        {"a field given up first", {kPrompt, kEmpty, kEmpty, kEmpty}, field(1) + fillin(kEmpty) + field(4) + fillin(kPrompt),
         {kEmpty, kEmpty, kEmpty, kPrompt}},
        {"not offered", {subject, kJobOrder, kJobOrder, kEmpty}, field(2), {subject, kEmpty, kJobOrder, kEmpty}},
    };
    for (const Case& c : cases) {
        frmNewTask& f = play(c.stored, kFillinsTab + c.steps);
        for (int k = 1; k <= 4; ++k) EXPECT_EQ(f.sFillin[k], c.after[k - 1]) << c.name << ", field " << k;
        EXPECT_EQ(f.cboFillin.Text(), f.sFillin[f.fillins().selectedField()]) << c.name;
    }
}

TEST_F(FillinEditorTest, APromptOutlivesAChangeOfItsFieldsFillinAndTheBoxKeepsItsLimit)
{
    frmNewTask& f = play({kPrompt, kEmpty, kEmpty, kEmpty},
                         kFillinsTab + field(1) + fillin(kEmpty) + field(2) + field(1) + fillin(kPrompt) + field(2) + field(1),
                         {QStringLiteral("Which quarter?")});
    EXPECT_EQ(f.sUserPrompt[1], QStringLiteral("Which quarter?"));
    EXPECT_EQ(f.txtUserPrompt.Text(), QStringLiteral("Which quarter?")) << "shown again with its fill-in";
    EXPECT_TRUE(f.txtUserPrompt.Enabled());

    const QString long45(45, QLatin1Char('x'));
    frmNewTask& g = play({kPrompt, kEmpty, kEmpty, kEmpty},
                         kFillinsTab + QStringLiteral("{\"form\": \"frmNewTask\", \"type\": \"txtUserPrompt\", \"text\": \"%1\"},").arg(long45));
    EXPECT_EQ(g.sUserPrompt[1], long45.left(40)) << "typing stops at 40 characters";
}

TEST(FormatPreviewTest, EachFillinShowsItsSampleJoinedBySeparators)
{
    session() = SessionContext();
    session().sContactTerm = QStringLiteral("Client");
    session().sMainActivityTerm = QStringLiteral("Client");   // the earlier row wins
    session().sJobOrderTerm = QStringLiteral("Job Order");
    const modTasks::Clock clock = [] { return Date::fromParts(2026, 3, 16, 15, 30); };
    const QString e = kEmpty;
    auto contact = [](const char* name) { return QString::fromLatin1(name) + QStringLiteral(" (Outlook Contact Property)"); };
    struct Case { std::array<QString, 4> fillins; bool jobOrderRow; const char* preview; };
    const Case cases[] = {
        {{contact("First Name"), contact("Office Location"), contact("Last Name"), e}, false, "Tobin: Hask"},
        {{contact("Business Home Page"), e, e, e}, false, "303-555-1212"},
        {{QStringLiteral("Client (from current TimeCard)"), kPrompt, e, e}, false, "Ira Dunmore: [User Input]"},
        {{kJobOrder, QStringLiteral("Current Date"), e, e}, false, ": Monday, 3/16/2026"},
        {{kJobOrder, QStringLiteral("Current Date"), e, e}, true, "555-55-5555: Monday, 3/16/2026"},
    };
    for (const Case& c : cases) {
        std::array<QString, 5> f{QString(), c.fillins[0], c.fillins[1], c.fillins[2], c.fillins[3]};
        EXPECT_EQ(FormatPreview(f, c.jobOrderRow, clock), QString::fromUtf8(c.preview)) << c.fillins[0].toStdString();
    }
    session() = SessionContext();
}

} // namespace
