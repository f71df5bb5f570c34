#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "session/clsSteplets.h"
#include <gtest/gtest.h>

using namespace steplets;

namespace {
// Stands in for the chooser: remembers what the session held when it was shown.
struct WindowLog {
    int shown = 0;
    int unloaded = 0;
    SessionContext seen;
};

class RecordingWindow : public SessionWindow {
public:
    explicit RecordingWindow(WindowLog& log) : m_log(log) {}
    void ShowModal() override { ++m_log.shown; m_log.seen = session(); }
    void Unload() override { ++m_log.unloaded; }

private:
    WindowLog& m_log;
};

HostArguments hostWith(const QString& tag, qint32 timeCard)
{
    HostArguments a;
    a.sContactFolderEID = tag + "cf";
    a.sContactFolderSID = tag + "cs";
    a.sUserEID = tag + "ue";
    a.sUserFldrSID = Value(tag + "us");
    a.sUserName = tag + "un";
    a.sContactName = tag + "cn";
    a.sContactID = 7;
    a.bSelectContactByAcct = true;
    a.sProvider = "";
    a.lTimeCardID = timeCard;
    a.bManageContacts = true;
    a.sContactTerm = tag + "ct";
    a.sMainActivityTerm = tag + "mat";
    a.sSubActivityTerm = tag + "sat";
    a.sDesc = tag + "d";
    a.sEntryType = tag + "et";
    a.sCategory = tag + "c";
    a.sMainActivity = tag + "ma";
    a.sSubActivity = tag + "sa";
    a.sJobOrderTerm = tag + "jot";
    a.sJobOrder = tag + "jo";
    a.sTaskFolderEID = tag + "tf";
    a.sTaskFolderSID = tag + "ts";
    return a;
}

class OpenStepletsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        process().ports = Ports();
        process().ports.settings = std::make_shared<IniSettings>(dir.path());
        process().ports.componentDirectory = dir.path();
    }
    void TearDown() override { process().ports = Ports(); }

    clsSteplets component{[this] { return std::make_unique<RecordingWindow>(log); }};
    WindowLog log;
    test::TempDir dir;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};

void expectCopied(const SessionContext& s, const QString& tag)
{
    EXPECT_EQ(s.sContactFolderEID, tag + "cf");
    EXPECT_EQ(s.sContactFolderSID, tag + "cs");
    EXPECT_EQ(s.sUserEID, tag + "ue");
    EXPECT_EQ(s.sUserFldrSID, tag + "us");
    EXPECT_EQ(s.sUserName, tag + "un");
    EXPECT_EQ(s.sContactName, tag + "cn");
    EXPECT_EQ(s.sContactTerm, tag + "ct");
    EXPECT_EQ(s.sMainActivityTerm, tag + "mat");
    EXPECT_EQ(s.sSubActivityTerm, tag + "sat");
    EXPECT_EQ(s.sDesc, tag + "d");
    EXPECT_EQ(s.sEntryType, tag + "et");
    EXPECT_EQ(s.sCategory, tag + "c");
    EXPECT_EQ(s.sMainActivity, tag + "ma");
    EXPECT_EQ(s.sSubActivity, tag + "sa");
    EXPECT_EQ(s.sJobOrderTerm, tag + "jot");
    EXPECT_EQ(s.sJobOrder, tag + "jo");
    EXPECT_EQ(s.sTaskFolderEID, tag + "tf");
    EXPECT_EQ(s.sTaskFolderSID, tag + "ts");
}
} // namespace

TEST_F(OpenStepletsTest, CopiesEveryArgumentAndShowsTheWindowEvenWhenTheDatabasesFail)
{
    HostArguments a = hostWith("A-", 42);
    a.callOn(component);
    ASSERT_EQ(log.shown, 1);
    EXPECT_EQ(log.unloaded, 1);
    expectCopied(log.seen, "A-");
    EXPECT_EQ(log.seen.sContactID, 7);
    EXPECT_TRUE(log.seen.bSelectContactByAcct);
    EXPECT_TRUE(log.seen.bManageContacts);
    EXPECT_EQ(log.seen.lTimeCardID, 42);
    EXPECT_FALSE(log.seen.bNoTimeCard);
    EXPECT_EQ(log.seen.iTaskSelection.value(), 1) << "settings were read before the window";
    // No store is wired here, so the open fails in its own routine and is handled there.
    ASSERT_FALSE(sink.failures.empty());
    EXPECT_TRUE(sink.failures[0].location.contains("X:modInitialize: OpenDB:Line"));
    EXPECT_EQ(hostWith("A-", 42).sUserName, a.sUserName) << "arguments are never written back";
}

TEST_F(OpenStepletsTest, TimeCardRule)
{
    for (qint32 card : {0, -5, 42}) {
        hostWith("T-", card).callOn(component);
        EXPECT_EQ(bool(log.seen.bNoTimeCard), card == 0) << card;
        EXPECT_EQ(log.seen.lTimeCardID, card) << card;
    }
}

TEST_F(OpenStepletsTest, ASecondCallReplacesEveryField)
{
    hostWith("A-", 42).callOn(component);
    HostArguments b = hostWith("B-", 0);
    b.sContactID = 0;
    b.bSelectContactByAcct = false;
    b.bManageContacts = false;
    b.callOn(component);
    EXPECT_EQ(log.shown, 2);
    expectCopied(log.seen, "B-");
    EXPECT_EQ(log.seen.sContactID, 0);
    EXPECT_FALSE(log.seen.bSelectContactByAcct);
    EXPECT_FALSE(log.seen.bManageContacts);
    EXPECT_TRUE(log.seen.bNoTimeCard);
    EXPECT_EQ(log.seen.lTimeCardID, 0);
    EXPECT_GE(log.seen.ErrorTrail.count("X:modInitialize: GetRegSettings"), 2)
        << "the trail carries over from one session to the next";
}

TEST_F(OpenStepletsTest, AStoreFolderIdThatIsNoTextSkipsTheSession)
{
    HostArguments a = hostWith("C-", 1);
    a.sUserFldrSID = Value();
    const QString trailBefore = session().ErrorTrail;
    a.callOn(component);
    EXPECT_EQ(log.shown, 0);
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_EQ(sink.failures[0].number, 94);
    EXPECT_EQ(sink.failures[0].location, trailBefore + ":Line 60") << "OpenSteplets writes no trail entry";
    EXPECT_EQ(session().sUserEID, "C-ue") << "copied before the failure";
    EXPECT_NE(session().sUserName, "C-un") << "not reached";
}
