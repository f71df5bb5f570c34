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

    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    scripted::ScriptedHost host{scripted::Script(), QDateTime(QDate(2024, 3, 14), QTime(15, 30))};
    Window w{host};
};

} // namespace

// The host's terms each add a row with its code, in the list's order, after what the box held.
TEST_F(FillinList, OnlyTheTermsGivenGetARowAfterWhatTheBoxHeld)
{
    struct Case { QStringList terms; QStringList rows; QList<int> codes; };
    const Case cases[] = {
        {{{}, "Project", {}, "Matter"}, {"Project", "Matter"}, {3, 102}},
        {{"Client", "Project", "Phase", "Matter"}, {"Client", "Project", "Phase", "Matter"}, {2, 3, 4, 102}},
    };
    for (const Case& c : cases) {
        SessionContext& s = session();
        std::tie(s.sContactTerm, s.sMainActivityTerm, s.sSubActivityTerm, s.sJobOrderTerm) =
            std::tie(c.terms[0], c.terms[1], c.terms[2], c.terms[3]);
        w.cboFillin.Clear();
        w.cboFillin.AddItem(QStringLiteral("Already there"));
        LoadFillins(w.cboFillin);
        const int n = int(c.rows.size());
        ASSERT_EQ(w.cboFillin.ListCount(), 98 + n) << c.terms.join(',').toStdString();
        QStringList texts;
        QList<int> codes;
        for (int i = 0; i < w.cboFillin.ListCount(); ++i) texts << w.cboFillin.List(i), codes << w.cboFillin.ItemData(i);
        QStringList rows;
        for (const QString& r : c.rows) rows << r + QStringLiteral(" (from current TimeCard)");
        EXPECT_EQ(texts.mid(3, n), rows);
        EXPECT_EQ(codes.mid(3, n), c.codes);
        EXPECT_EQ(texts.mid(1, 2), (QStringList{"[Empty]", "User Name (from current TimeCard)"}));
        EXPECT_EQ(texts.at(3 + n), QStringLiteral("Description (from current TimeCard)"));
        // Contact rows count up from 10 to 97 without a gap.
        for (int i = 0; i < 88; ++i) EXPECT_EQ(codes.at(8 + n + i), 10 + i);
        EXPECT_EQ(codes.mid(96 + n), (QList<int>{98, 99}));
    }
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
