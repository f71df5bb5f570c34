// Contacts in a run: the three contact modes with their links and link texts, the user linked
// by the two settings (twice when both apply), a pass per contact with its prompts before its
// tasks, and the contact named in the first dialog of a pass only.
#include "ProcessingFixture.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class ProcessedContacts : public ProcessingFixture {
protected:
    QStringList links(int r) const
    {
        auto task = storedRow(r);
        QStringList ids;
        for (int k = 1; k <= task->Links().Count(); ++k) ids << task->Links().Item(k)->EntryID();
        return ids;
    }
    QString fileAs(const char* id) const
    {
        return ol::asContact(session().olNS->GetItemFromID(QString::fromLatin1(id), "store"))->FileAs();
    }
    static constexpr const char* kRunThenOK = R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdOK"}])";
};

} // namespace

TEST_F(ProcessedContacts, WithoutAContactNothingIsLinkedUnlessTheUserIsAskedFor)
{
    addTemplate(relative("Plain"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_TRUE(links(1).isEmpty());
    EXPECT_EQ(cell(1, 3), "");
}

TEST_F(ProcessedContacts, BothUserSettingsWithoutAContactLinkTheUserTwice)
{
    session().iLinkUserIfNoContact = Int16(1);
    session().iLinkUser = Int16(1);
    addTemplate(relative("Self"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(links(1), QStringList({"c-morgan", "c-morgan"}));
    EXPECT_EQ(cell(1, 3), "Test User") << "the user's name, not the card's FileAs";
}

TEST_F(ProcessedContacts, OneContactIsLinkedAndTheUserOnTopWhenAsked)
{
    session().sContactEID = "c-ada";
    session().iLinkUser = Int16(1);
    session().iLinkUserIfNoContact = Int16(1);
    addTemplate(relative("Letter", {{col::FillIn1, "Subject field from template"}}));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(links(1), QStringList({"c-ada", "c-morgan"}));
    EXPECT_EQ(cell(1, 3), fileAs("c-ada"));
    EXPECT_EQ(cell(1, 0), "Letter");
}

TEST_F(ProcessedContacts, ModeOneLinksEveryChosenContactInOrder)
{
    session().iContactMode = Int16(1);
    chooseContacts({"c-clara", "c-ada", "c-ben"});
    addTemplate(relative("Notice"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(links(1), QStringList({"c-clara", "c-ada", "c-ben"}));
    EXPECT_EQ(cell(1, 3), "[Multiple]");
}

TEST_F(ProcessedContacts, ModeOneWithOneContactShowsItsName)
{
    session().iContactMode = Int16(1);
    chooseContacts({"c-ben"});
    addTemplate(relative("Notice"));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(links(1), QStringList({"c-ben"}));
    EXPECT_EQ(cell(1, 3), fileAs("c-ben"));
}

TEST_F(ProcessedContacts, ModeTwoRunsEveryTemplateOncePerContactWithItsPromptsFirst)
{
    SessionContext& s = session();
    s.iContactMode = Int16(2);
    s.sContactEID = "c-grace";
    chooseContacts({"c-ada", "c-ben", "c-clara"});
    addTemplate(relative("Intake", {{col::FillIn1, "Prompt for user input"}, {col::UserPrompt1, "Matter number?"}}));
    addTemplate(relative("Engagement letter"));
    // Per contact: the first template asks, and so does the second, since the flags carry over.
    std::string steps = "[";
    for (const char* answer : {"M-1", "M-2", "M-3"})
        for (int k = 0; k < 2; ++k)
            steps += std::string(R"({"form": "frmPrompt", "snapshot": true}, )")
                + R"({"form": "frmPrompt", "type": "txtUserInput", "text": ")" + answer
                + R"("}, {"form": "frmPrompt", "click": "OKButton"}, )";
    steps += R"({"form": "frmProcessTasks", "click": "cmdOK"}])";
    play(steps.c_str(), 3);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    EXPECT_EQ(window->m_iNewTaskCount, 6);
    const char* order[] = {"c-ada", "c-ada", "c-ben", "c-ben", "c-clara", "c-clara"};
    for (int r = 1; r <= 6; ++r) {
        EXPECT_EQ(links(r), QStringList({order[r - 1]})) << "row " << r;
        EXPECT_EQ(cell(r, 3), fileAs(order[r - 1])) << "row " << r;
    }
    EXPECT_EQ(cell(3, 0), "Intake") << "pass 2 begins at grid row 3";
    EXPECT_EQ(cell(4, 0), "Engagement letter");
    EXPECT_EQ(panel(2), "Saved:  6");
    EXPECT_EQ(s.sContactEID, "c-grace") << "the contact of the session is put back";

    // Only the first dialog of each pass names its contact; each pass shows its prompts before its tasks.
    QStringList prompts;
    QStringList headers;
    for (const auto& e : host->events()) {
        const QJsonObject o = e.toObject();
        if (o.value("show").toString() == "frmPrompt") prompts << o.value("at").toString();
        const QJsonObject snap = o.value("snapshot").toObject();
        if (snap.value("form").toString() == "frmPrompt")
            headers << QJsonDocument(snap.value("controls").toObject()).toJson(QJsonDocument::Compact);
    }
    ASSERT_EQ(prompts.size(), 6);
    ASSERT_EQ(headers.size(), 6);
    for (int k = 0; k < 6; k += 2) {
        EXPECT_TRUE(headers[k].contains(fileAs(order[k]))) << "dialog " << k;
        EXPECT_FALSE(headers[k + 1].contains(fileAs(order[k]))) << "dialog " << k + 1;
    }
    EXPECT_EQ(prompts[0], prompts[1]) << "no task of a pass is made between its prompts";
    EXPECT_NE(prompts[1], prompts[2]) << "the second contact's prompts come after the first one's tasks";
}
