// The fill-in catalogue: the list a combo box gets, with the four rows of the host's terms only
// where the host gave a term, the codes as item data, and the code a stored text stands for.
#include "RecordingSink.h"
#include "ScriptedHost.h"
#include "controls/Controls.h"
#include "session/SessionContext.h"
#include "templates/FillinCatalogue.h"
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::modTasks;

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

    void setTerms(const QString& contact, const QString& main, const QString& sub, const QString& job)
    {
        session().sContactTerm = contact;
        session().sMainActivityTerm = main;
        session().sSubActivityTerm = sub;
        session().sJobOrderTerm = job;
    }
    QStringList texts() const
    {
        QStringList out;
        for (int i = 0; i < w.cboFillin.ListCount(); ++i) out << w.cboFillin.List(i);
        return out;
    }
    QList<int> codes() const
    {
        QList<int> out;
        for (int i = 0; i < w.cboFillin.ListCount(); ++i) out << w.cboFillin.ItemData(i);
        return out;
    }

    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    scripted::ScriptedHost host{scripted::Script(), QDateTime(QDate(2024, 3, 14), QTime(15, 30))};
    Window w{host};
};

} // namespace

TEST_F(FillinList, WithoutTermsHoldsNinetySevenRowsInTheirOrder)
{
    setTerms({}, {}, {}, {});
    LoadFillins(w.cboFillin);
    ASSERT_EQ(w.cboFillin.ListCount(), 97);
    EXPECT_EQ(texts().mid(0, 11), (QStringList{"[Empty]", "User Name (from current TimeCard)",
                                              "Description (from current TimeCard)", "Entry Type (from current TimeCard)",
                                              "Category (from current TimeCard)", "Current Date", "Current Time",
                                              "Account (Outlook Contact Property)",
                                              "Assistant Name (Outlook Contact Property)",
                                              "Assistant Telephone Number (Outlook Contact Property)",
                                              "Billing Information (Outlook Contact Property)"}));
    EXPECT_EQ(texts().mid(93), (QStringList{"User4 (Outlook Contact Property)", "User Properties (Outlook Contact Property)",
                                           "Prompt for user input", "Subject field from template"}));
    EXPECT_EQ(codes().mid(0, 8), (QList<int>{0, 1, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(codes().mid(94), (QList<int>{97, 98, 99}));
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_TRUE(session().ErrorTrail.endsWith("\r\nX:Steplets: LoadFillins"));
}

TEST_F(FillinList, WithAllTermsHoldsOneHundredAndOneRowsAndTheJobOrderRowStandsBeforeDescription)
{
    setTerms("Client", "Project", "Phase", "Matter");
    LoadFillins(w.cboFillin);
    ASSERT_EQ(w.cboFillin.ListCount(), 101);
    EXPECT_EQ(texts().mid(1, 6), (QStringList{"User Name (from current TimeCard)", "Client (from current TimeCard)",
                                             "Project (from current TimeCard)", "Phase (from current TimeCard)",
                                             "Matter (from current TimeCard)", "Description (from current TimeCard)"}));
    EXPECT_EQ(codes().mid(1, 6), (QList<int>{1, 2, 3, 4, 102, 5}));
    // Contact rows count up from 10 to 97 without a gap; 100 and 101 belong to no row.
    for (int i = 0; i < 88; ++i) EXPECT_EQ(codes().at(11 + i), 10 + i);
    EXPECT_FALSE(codes().contains(100));
    EXPECT_FALSE(codes().contains(101));
}

TEST_F(FillinList, OnlyTheTermsGivenGetARow)
{
    setTerms({}, "Project", {}, "Matter");
    LoadFillins(w.cboFillin);
    EXPECT_EQ(w.cboFillin.ListCount(), 99);
    EXPECT_EQ(texts().mid(2, 3), (QStringList{"Project (from current TimeCard)", "Matter (from current TimeCard)",
                                             "Description (from current TimeCard)"}));
    EXPECT_EQ(codes().mid(2, 2), (QList<int>{3, 102}));
}

TEST_F(FillinList, AppendsToWhatTheListAlreadyHolds)
{
    w.cboFillin.AddItem(QStringLiteral("Already there"));
    LoadFillins(w.cboFillin);
    EXPECT_EQ(w.cboFillin.ListCount(), 98);
    EXPECT_EQ(w.cboFillin.List(1), "[Empty]");
    EXPECT_EQ(w.cboFillin.ItemData(0), 0);
}

TEST(FillinCatalogue, ContactRowsReadThePropertyNamedWithoutBlanks)
{
    EXPECT_EQ(ContactFillinNames().size(), 88);
    EXPECT_EQ(ContactPropertyName(10), "Account");
    EXPECT_EQ(ContactPropertyName(15), "Business2TelephoneNumber");
    EXPECT_EQ(ContactPropertyName(34), "CustomerID");
    EXPECT_EQ(ContactPropertyName(75), "NickName");
    EXPECT_EQ(ContactPropertyName(97), "UserProperties");
    EXPECT_THROW(ContactPropertyName(98), Failure);
}

TEST(FillinCode, MatchesStoredTextsExactlyAgainstTheTermsOfNow)
{
    session() = SessionContext();
    session().sMainActivityTerm = "Project";
    session().sJobOrderTerm = "Matter";
    EXPECT_EQ(FillinCode("[Empty]"), 0);
    EXPECT_EQ(FillinCode("User Name (from current TimeCard)"), 1);
    EXPECT_EQ(FillinCode("Project (from current TimeCard)"), 3);
    EXPECT_EQ(FillinCode("Matter (from current TimeCard)"), 102);
    EXPECT_EQ(FillinCode("Full Name (Outlook Contact Property)"), 41);
    EXPECT_EQ(FillinCode("Prompt for user input"), 98);
    EXPECT_EQ(FillinCode("Subject field from template"), 99);
    // A term that has changed since the text was stored, a different case, no text at all.
    EXPECT_EQ(FillinCode("Job (from current TimeCard)"), 0);
    EXPECT_EQ(FillinCode("current date"), 0);
    EXPECT_EQ(FillinCode(""), 0);
    // An empty term gives the bare suffix: the first such row in list order takes it.
    EXPECT_EQ(FillinCode(" (from current TimeCard)"), 2);
    session().sContactTerm = "Client";
    EXPECT_EQ(FillinCode(" (from current TimeCard)"), 4);
    // The same word for two terms: the earlier row wins.
    session().sSubActivityTerm = "Project";
    EXPECT_EQ(FillinCode("Project (from current TimeCard)"), 3);
    session() = SessionContext();
}

TEST(FillinCode, EveryRowOfTheListComesBackAsItsOwnCode)
{
    session() = SessionContext();
    session().sContactTerm = "Client";
    session().sMainActivityTerm = "Project";
    session().sSubActivityTerm = "Phase";
    session().sJobOrderTerm = "Matter";
    for (const FillinEntry& e : FillinCatalogue()) EXPECT_EQ(FillinCode(e.text), e.code) << e.text.toStdString();
    session() = SessionContext();
}
