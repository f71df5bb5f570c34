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
    a.sUserEID = tag + "ue";
    a.sUserFldrSID = Value(tag + "us");
    a.sUserName = tag + "un";
    a.lTimeCardID = timeCard;
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

} // namespace

TEST_F(OpenStepletsTest, ShowsTheWindowAfterTheSettingsEvenWhenTheDatabasesFail)
{
    hostWith("A-", 42).callOn(component);
    ASSERT_EQ(log.shown, 1);
    EXPECT_EQ(log.unloaded, 1);
    EXPECT_EQ(log.seen.iTaskSelection.value(), 1) << "settings were read before the window";
    // No store is wired here, so the open fails in its own routine and is handled there.
    ASSERT_FALSE(sink.failures.empty());
    EXPECT_TRUE(sink.failures[0].location.contains("X:modInitialize: OpenDB:Line"));
    hostWith("B-", 0).callOn(component);
    EXPECT_EQ(log.shown, 2);
    EXPECT_EQ(log.seen.sUserName, "B-un") << "a second call replaces what the first left";
    EXPECT_GE(log.seen.ErrorTrail.count("X:modInitialize: GetRegSettings"), 2)
        << "the trail carries over from one session to the next";
}

TEST_F(OpenStepletsTest, TimeCardRule)
{
    for (qint32 card : {0, -5, 42}) {
        hostWith("T-", card).callOn(component);
        EXPECT_EQ(bool(log.seen.bNoTimeCard), card == 0) << card;
        EXPECT_EQ(log.seen.lTimeCardID, card) << card;
    }
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
