// Composing a subject: the two branches (with a linked contact from the vdir, and without), the
// doubled-separator step of the contact branch only, the "Fal" of the prompt with a contact, the
// named date and time formats, and the result as far as built after a failure.
#include "TemplateFixture.h"
#include "templates/FillinCatalogue.h"
#include "templates/FormatField.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

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
