// Composing a subject: the two branches (with a linked contact from the vdir, and without),
// the doubled-separator step of the contact branch only, the "Fal" of the prompt with a contact,
// the named date and time formats, and the result as far as built after a failure.
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
        ada = contact(QStringLiteral("c-ada"));
    }
    void fillIns(const QString& a, const QString& b = {}, const QString& c = {}, const QString& d = {})
    {
        auto& t = EditedTemplate();
        t.FillIn1 = a.isEmpty() ? EmptyFillin() : a;
        t.FillIn2 = b.isEmpty() ? EmptyFillin() : b;
        t.FillIn3 = c.isEmpty() ? EmptyFillin() : c;
        t.FillIn4 = d.isEmpty() ? EmptyFillin() : d;
    }
    QString withAda(const QString& subject = QStringLiteral("Annual review")) { return FormatField(subject, ada, clock()); }
    QString alone(const QString& subject = QStringLiteral("Annual review")) { return FormatField(subject, nullptr, clock()); }

    std::shared_ptr<ol::ContactItem> ada;
};

} // namespace

TEST_F(Subjects, AllFieldsEmptyGiveAnEmptySubjectInBothBranches)
{
    fillIns({});
    EXPECT_EQ(withAda(), "");
    EXPECT_EQ(alone(), "");
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:modTasks: FormatField"));
}

TEST_F(Subjects, ContactNameAndTemplateSubject)
{
    fillIns(kFullName, kSubject);
    EXPECT_EQ(withAda(), "Ada Byrne: Annual review");
    EXPECT_EQ(alone(), "Annual review") << "no separator stands for the missing name";
}

TEST_F(Subjects, AnEmptyContactPropertyLeavesOneSeparatorNotAGap)
{
    fillIns(kFullName, kNickName, kSubject);
    EXPECT_EQ(withAda(), "Ada Byrne: Annual review");
    // Leading: the gap stays at the front.
    fillIns(kNickName, kTime);
    EXPECT_EQ(withAda(), ": 03:30 PM");
    // Only separators: the contact branch empties the result.
    fillIns(kNickName, kNickName);
    EXPECT_EQ(withAda(), "");
}

TEST_F(Subjects, WithoutContactDoubledSeparatorsStay)
{
    session().sJobOrder.clear();
    fillIns("Matter (from current TimeCard)", "Matter (from current TimeCard)", "Matter (from current TimeCard)");
    EXPECT_EQ(alone(), ": : ");
    session().sMainActivityTerm.clear();
    fillIns(" (from current TimeCard)", kTime);
    EXPECT_EQ(alone(), ": 03:30 PM") << "the empty main-activity term still yields its separator";
}

TEST_F(Subjects, PromptAnswerIsTheSubjectWithoutContactAndFalseWithOne)
{
    session().sPromptResult = "Q3";
    fillIns(kPrompt);
    EXPECT_EQ(alone(), "Q3");
    EXPECT_EQ(withAda(), "Fal");
    fillIns(kPrompt, kLastName);
    EXPECT_EQ(withAda(), "FalseByrne");
    fillIns(kFullName, kPrompt, kSubject);
    EXPECT_EQ(withAda(), "FalseAnnual review") << "what came before the prompt is lost";
}

TEST_F(Subjects, TermsYieldTheWordsOfTheHostAndTheJobOrderItsValue)
{
    fillIns("Project (from current TimeCard)", "Phase (from current TimeCard)", "Matter (from current TimeCard)",
            "Client (from current TimeCard)");
    EXPECT_EQ(withAda(), "Project: Phase: M-204: Ada Byrne");
    EXPECT_EQ(alone(), "Project: Phase: M-204") << "the contact's term yields nothing without a contact";
    session().sContactName.clear();
    EXPECT_EQ(withAda(), "Project: Phase: M-204");
}

TEST_F(Subjects, TimeCardValuesAndUserName)
{
    fillIns("User Name (from current TimeCard)", "Description (from current TimeCard)",
            "Entry Type (from current TimeCard)", "Category (from current TimeCard)");
    EXPECT_EQ(withAda(), "Morgan Hale: Quarterly filing: Billable: Tax");
    EXPECT_EQ(alone(), "Morgan Hale: Quarterly filing: Billable: Tax");
}

TEST_F(Subjects, CurrentDateHasTheWeekdayOnlyWithAContact)
{
    fillIns(kDate, kTime);
    EXPECT_EQ(withAda(), "Thursday, 3/14/2024: 03:30 PM");
    EXPECT_EQ(alone(), "3/14/2024: 03:30 PM");
}

TEST_F(Subjects, AStoredFillInWhoseTermChangedYieldsNothing)
{
    fillIns("Job (from current TimeCard)", kSubject);
    EXPECT_EQ(withAda(), "Annual review");
    EXPECT_EQ(alone(), "Annual review");
}

TEST_F(Subjects, ContactPropertiesOfEveryKindBecomeText)
{
    ada->set(QStringLiteral("Birthday"), Date::fromParts(1985, 4, 12));
    fillIns("Birthday (Outlook Contact Property)", "Importance (Outlook Contact Property)",
            "Company Name (Outlook Contact Property)", "User Properties (Outlook Contact Property)");
    EXPECT_EQ(withAda(), "4/12/1985: 1: Byrne & Lowell LLP");
    EXPECT_TRUE(sink.failures.empty());
}

TEST_F(Subjects, AFailureReturnsTheSubjectAsFarAsBuiltWithItsLastSeparator)
{
    fillIns(kFullName, kTime, kSubject);
    auto failing = []() -> Date { throw Failure(5, QStringLiteral("Invalid procedure call or argument")); };
    EXPECT_EQ(FormatField(QStringLiteral("Annual review"), ada, failing), "Ada Byrne: ");
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 5);
    EXPECT_TRUE(sink.failures[0].location.endsWith("X:modTasks: FormatField:Line 40"));
    // Without a contact the name row yields nothing, so nothing was built when the clock failed.
    session().sDesc = "Quarterly filing";
    fillIns("Description (from current TimeCard)", kTime, kSubject);
    EXPECT_EQ(FormatField(QStringLiteral("Annual review"), nullptr, failing), "Quarterly filing: ");
    ASSERT_EQ(sink.failures.size(), 2u);
    EXPECT_TRUE(sink.failures[1].location.endsWith("X:modTasks: FormatField:Line 80"));
}
