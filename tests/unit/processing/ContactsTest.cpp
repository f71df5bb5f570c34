// Contacts in a run: the three contact modes with their links and link texts, the user linked
// by the two settings (twice when both apply), a pass per contact with its prompts before its
// tasks, a Cancel skipping one template of one pass, and the contact named in the first dialog
// of a pass only.
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
};

} // namespace

// The contact of the session, or mode one's chosen contacts, linked to the task and named in the
// grid; the user linked on top by each of the two settings, so twice without a contact.
TEST_F(ProcessedContacts, LinksAndTheirTextFollowTheModeTheContactsAndTheUserSettings)
{
    // In `shown` an EntryID stands for its card's FileAs.
    struct Case { const char* name; int mode; const char* contact; std::initializer_list<const char*> chosen; bool linkUser;
                  QStringList links; const char* shown; };
    const Case cases[] = {
        {"no contact", 0, "", {}, false, {}, ""},
        {"no contact, user asked twice", 0, "", {}, true, {"c-morgan", "c-morgan"}, "Test User"},
        {"one contact and the user", 0, "c-ada", {}, true, {"c-ada", "c-morgan"}, "c-ada"},
        {"mode one, three chosen", 1, "", {"c-clara", "c-ada", "c-ben"}, false, {"c-clara", "c-ada", "c-ben"}, "[Multiple]"},
        {"mode one, one chosen", 1, "", {"c-ben"}, false, {"c-ben"}, "c-ben"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        resetRun();
        session().iContactMode = Int16(c.mode);
        session().sContactEID = c.contact;
        session().iLinkUser = Int16(c.linkUser ? 1 : 0);
        session().iLinkUserIfNoContact = Int16(c.linkUser ? 1 : 0);
        if (c.chosen.size()) chooseContacts(c.chosen);
        addTemplate(relative("Letter"));
        ASSERT_TRUE(play(kRunThenOK));
        EXPECT_EQ(links(1), c.links);
        const QString shown = QString::fromLatin1(c.shown);
        EXPECT_EQ(cell(1, 3), shown.startsWith(QLatin1String("c-")) ? fileAs(c.shown) : shown);
    }
}

TEST_F(ProcessedContacts, ModeTwoRunsEveryTemplateOncePerContactWithItsPromptsFirst)
{
    SessionContext& s = session();
    s.iContactMode = Int16(2);
    s.sContactEID = "c-grace";
    chooseContacts({"c-ada", "c-ben", "c-clara"});
    addTemplate(relative("Intake", {{col::DateType, 2}, {col::AnchorDescription, "Matter opened"},
                                    {col::FillIn1, "Prompt for user input"}, {col::UserPrompt1, "Matter number?"}}));
    addTemplate(relative("Engagement letter"));
    // Per contact: the first template asks, and so does the second, since the flags carry over.
    // The second contact's first dialog is cancelled.
    std::string steps = "[";
    for (const char* day : {"01", "02", "03"})
        for (int k = 0; k < 2; ++k) {
            steps += R"({"form": "frmPrompt", "snapshot": true}, )";
            if (day == std::string("02") && k == 0) {
                steps += kCancel;
                continue;
            }
            steps += std::string(R"({"form": "frmPrompt", "date": "ActiveCalendar1", "value": "2026-05-)") + day
                + R"("}, {"form": "frmPrompt", "type": "txtUserInput", "text": "M-)" + day
                + R"("}, {"form": "frmPrompt", "click": "OKButton"}, )";
        }
    ASSERT_TRUE(play(steps + kOK, 3));

    // Each pass's links are played by launch-separate-mode-run; here the grid names them.
    const char* order[] = {"c-ada", "c-ada", "c-ben", "c-ben", "c-clara", "c-clara"};
    for (int r : {1, 2, 4, 5, 6}) EXPECT_EQ(cell(r, 3), fileAs(order[r - 1])) << "row " << r;
    // The Cancel skips that contact's first template only, not the pass nor the later passes.
    EXPECT_EQ(cell(3, 0), "Intake (Skipped)") << "pass 2 begins at grid row 3";
    EXPECT_EQ(cell(4, 0), "Engagement letter");
    EXPECT_EQ(storedRow(1)->get("DueDate").toDate(), at(2026, 5, 2));
    EXPECT_EQ(storedRow(5)->get("DueDate").toDate(), at(2026, 5, 4)) << "the third pass takes its own anchor";
    EXPECT_EQ(panel(3), "Skipped:  1");
    EXPECT_EQ(s.sContactEID, "c-grace") << "the contact of the session is put back";

    // Only the first dialog of each pass names its contact; each pass shows its prompts before its tasks.
    QStringList prompts, headers;
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
