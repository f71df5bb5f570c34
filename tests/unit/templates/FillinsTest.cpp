// The fill-ins: the list a combo box gets and the code a stored text stands for; a subject composed
// by either branch (with a linked contact from the vdir, and without), quirks included, and the
// result as far as built after a failure.
#include "ScriptedHost.h"
#include "TemplateFixture.h"
#include "controls/Controls.h"
#include "templates/FillinCatalogue.h"
#include "templates/FormatField.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class Window : public Form {
public:
    explicit Window(UiHost& host) : Form(host, QStringLiteral("frmNewTask")) {}
    ComboBox cboFillin{*this, QStringLiteral("cboFillin")};
};

class FillinList : public ::testing::Test {
protected:
    FillinList() { session() = SessionContext(); }
    ~FillinList() override { session() = SessionContext(); }

    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    scripted::ScriptedHost host{scripted::Script(), QDateTime(QDate(2024, 3, 14), QTime(15, 30))};
    Window w{host};
};

const QString kFullName = QStringLiteral("Full Name (Outlook Contact Property)");
const QString kLastName = QStringLiteral("Last Name (Outlook Contact Property)");
const QString kNickName = QStringLiteral("Nick Name (Outlook Contact Property)");
const QString kSubject = QStringLiteral("Subject field from template");
const QString kPrompt = QStringLiteral("Prompt for user input");
const QString kTime = QStringLiteral("Current Time");
const QString kDate = QStringLiteral("Current Date");

class Subjects : public TemplateFixture {
protected:
    Subjects()
    {
        SessionContext& s = session();
        s.sUserName = "Morgan Hale";
        s.sContactName = "Ada Byrne";
        s.sDesc = "Quarterly filing";
        s.sEntryType = "Billable";
        s.sCategory = "Tax";
        s.sContactTerm = "Client";
        s.sMainActivityTerm = "Project";
        s.sSubActivityTerm = "Phase";
        s.sJobOrderTerm = "Matter";
        s.sJobOrder = "M-204";
        s.sMainActivity = "Audit 2024";   // never part of a subject
        ada = ol::asContact(session().olNS->GetItemFromID("c-ada", "store"));
    }
    void fillIns(const QStringList& f)
    {
        auto& t = EditedTemplate();
        QString* fields[] = {&t.FillIn1, &t.FillIn2, &t.FillIn3, &t.FillIn4};
        for (int k = 0; k < 4; ++k) *fields[k] = f.value(k).isEmpty() ? EmptyFillin() : f.value(k);
    }
    QString withAda() { return FormatField(QStringLiteral("Annual review"), ada, clock()); }
    QString alone() { return FormatField(QStringLiteral("Annual review"), nullptr, clock()); }

    std::shared_ptr<ol::ContactItem> ada;
};

} // namespace

// Each row: the four fill-ins, then the subject with Ada linked and without a contact.
TEST_F(Subjects, BothBranchesComposeTheFillinsWithTheirSeparators)
{
    struct Case { const char* why; QStringList fillins; const char* withAda; const char* alone; };
    const Case cases[] = {
        {"all empty", {}, "", ""},
        {"no separator stands for a missing name", {kFullName, kSubject}, "Ada Byrne: Annual review", "Annual review"},
        {"an empty property leaves one separator", {kFullName, kNickName, kSubject}, "Ada Byrne: Annual review", "Annual review"},
        {"a leading gap stays at the front", {kNickName, kTime}, ": 03:30 PM", "03:30 PM"},
        {"only separators: the contact branch empties", {kNickName, kNickName}, "", ""},
        {"the host's words and the job order's value",
         {"Project (from current TimeCard)", "Phase (from current TimeCard)", "Matter (from current TimeCard)",
          "Client (from current TimeCard)"},
         "Project: Phase: M-204: Ada Byrne", "Project: Phase: M-204"},
        {"time card values and the user",
         {"User Name (from current TimeCard)", "Description (from current TimeCard)", "Entry Type (from current TimeCard)",
          "Category (from current TimeCard)"},
         "Morgan Hale: Quarterly filing: Billable: Tax", "Morgan Hale: Quarterly filing: Billable: Tax"},
        {"the weekday only with a contact", {kDate, kTime}, "Thursday, 3/14/2024: 03:30 PM", "3/14/2024: 03:30 PM"},
        {"a term that changed yields nothing", {"Job (from current TimeCard)", kSubject}, "Annual review", "Annual review"},
        {"the prompt's answer, or Fal with a contact", {kPrompt}, "Fal", "Q3"},
        {"False before the next fill-in", {kPrompt, kLastName}, "FalseByrne", "Q3"},
        {"what came before the prompt is lost", {kFullName, kPrompt, kSubject}, "FalseAnnual review", "Q3: Annual review"},
    };
    session().sPromptResult = "Q3";
    for (const Case& c : cases) {
        fillIns(c.fillins);
        EXPECT_EQ(withAda(), QString::fromUtf8(c.withAda)) << c.why;
        EXPECT_EQ(alone(), QString::fromUtf8(c.alone)) << c.why;
    }
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: FormatField"));
}

TEST_F(Subjects, OddCasesOfEitherBranchAndAFailureMidway)
{
    session().sContactName.clear();
    fillIns({"Client (from current TimeCard)", kSubject});
    EXPECT_EQ(withAda(), "Annual review") << "no contact name, no word for it";
    session().sJobOrder.clear();
    const QString matter = QStringLiteral("Matter (from current TimeCard)");
    fillIns({matter, matter, matter});
    EXPECT_EQ(alone(), ": : ") << "without a contact doubled separators stay";
    ada->set(QStringLiteral("Birthday"), Date::fromParts(1985, 4, 12));
    fillIns({"Birthday (Outlook Contact Property)", "Importance (Outlook Contact Property)",
            "Company Name (Outlook Contact Property)", "User Properties (Outlook Contact Property)"});
    EXPECT_EQ(withAda(), "4/12/1985: 1: Byrne & Lowell LLP") << "contact properties of every kind become text";
    EXPECT_TRUE(sink.failures.empty());

    // A failure returns the subject as far as built, with its last separator.
    fillIns({kFullName, kTime, kSubject});
    auto failing = []() -> Date { throw Failure(5, QStringLiteral("Invalid procedure call or argument")); };
    EXPECT_EQ(FormatField(QStringLiteral("Annual review"), ada, failing), "Ada Byrne: ");
    fillIns({"Description (from current TimeCard)", kTime, kSubject});
    EXPECT_EQ(FormatField(QStringLiteral("Annual review"), nullptr, failing), "Quarterly filing: ");
    ASSERT_EQ(sink.failures.size(), 2u);
    for (const auto& f : sink.failures) EXPECT_TRUE(f.number == 5 && f.location.contains("X:modTasks: FormatField:Line "));
}

// The host's terms each add a row with its code, in the list's order, after what the box held.
TEST_F(FillinList, OnlyTheTermsGivenGetARowAfterWhatTheBoxHeld)
{
    session().sMainActivityTerm = "Project";
    session().sJobOrderTerm = "Matter";
    w.cboFillin.AddItem(QStringLiteral("Already there"));
    LoadFillins(w.cboFillin);
    ASSERT_EQ(w.cboFillin.ListCount(), 100);
    QStringList texts;
    QList<int> codes;
    for (int i = 0; i < w.cboFillin.ListCount(); ++i) texts << w.cboFillin.List(i), codes << w.cboFillin.ItemData(i);
    EXPECT_EQ(texts.mid(0, 6), (QStringList{"Already there", "[Empty]", "User Name (from current TimeCard)", "Project (from current TimeCard)",
                                            "Matter (from current TimeCard)", "Description (from current TimeCard)"}));
    EXPECT_EQ(codes.mid(3, 2), (QList<int>{3, 102}));
    // Contact rows count up from 10 to 97 without a gap.
    for (int i = 0; i < 88; ++i) EXPECT_EQ(codes.at(10 + i), 10 + i);
    EXPECT_EQ(codes.mid(98), (QList<int>{98, 99}));
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:Steplets: LoadFillins"));
}

// Every row of the list comes back as its own code; a stored text matches exactly, against the
// terms of now.
TEST(FillinCode, EveryRowComesBackAsItsCodeAndOtherTextsAsNone)
{
    session() = SessionContext();
    session().sContactTerm = "Client";
    session().sMainActivityTerm = "Project";
    session().sSubActivityTerm = "Phase";
    session().sJobOrderTerm = "Matter";
    for (const FillinEntry& e : FillinCatalogue()) EXPECT_EQ(FillinCode(e.text), e.code) << e.text.toStdString();
    // A term that has changed since the text was stored, a different case, no text at all.
    for (const char* text : {"Job (from current TimeCard)", "current date", ""}) EXPECT_EQ(FillinCode(text), 0) << text;
    // An empty term gives the bare suffix: the first such row in list order takes it.
    session().sContactTerm.clear();
    session().sSubActivityTerm.clear();
    EXPECT_EQ(FillinCode(" (from current TimeCard)"), 2);
    // The same word for two terms: the earlier row wins.
    session().sSubActivityTerm = "Project";
    EXPECT_EQ(FillinCode("Project (from current TimeCard)"), 3);
    // A contact row's code names the property to read; past the last row there is none.
    EXPECT_EQ(ContactPropertyName(15), "Business2TelephoneNumber");
    EXPECT_THROW(ContactPropertyName(98), Failure);
    session() = SessionContext();
}
