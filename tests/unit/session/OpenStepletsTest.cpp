// The host's call on the real chooser under the scripted host: which sessions make the window,
// the time-card rule, and the one failure that ends a session before its window.
#include "RecordingSink.h"
#include "ScriptedSteps.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "component/clsSteplets.h"
#include <gtest/gtest.h>
#include <optional>

using namespace steplets;

namespace {

class OpenStepletsTest : public ::testing::Test {
protected:
    // No store is wired: the databases fail to open, that failure is handled where it happens,
    // and the chooser, unable to fill its lists, unloads itself unseen.
    clsSteplets component()
    {
        host = test::hostWith("[]", QDateTime(QDate(2024, 3, 14), QTime(9, 0)));
        Ports ports;
        ports.ui = host;
        ports.settings = std::make_shared<IniSettings>(dir.path());
        ports.componentDirectory = dir.path();
        return clsSteplets(ports);
    }
    int chooserUnloaded() const
    {
        int n = 0;
        for (const auto& e : host->events()) n += e.toObject().value("unload").toString() == "frmSteplet";
        return n;
    }
    void SetUp() override { session() = SessionContext(); }
    void TearDown() override { session().ports = Ports(); }

    test::TempDir dir;
    std::shared_ptr<scripted::ScriptedHost> host;
    // Listens after the component has installed its own discipline, which it replaces.
    std::optional<test::RecordingSink> sink;
    void listen() { sink.emplace([]() -> QString& { return session().ErrorTrail; }); }
};

HostArguments hostWith(qint32 timeCard)
{
    HostArguments a;
    a.sUserFldrSID = Value(QStringLiteral("user-store"));
    a.sUserName = "Ada Byrne";
    a.lTimeCardID = timeCard;
    return a;
}

} // namespace

TEST_F(OpenStepletsTest, EachCallRunsANewChooserAndAppliesTheTimeCardRule)
{
    const QString trailBefore = session().ErrorTrail;
    for (qint32 card : {42, 0, -5}) {
        clsSteplets c = component();
        listen();
        hostWith(card).callOn(c);
        EXPECT_EQ(chooserUnloaded(), 1) << card;
        EXPECT_EQ(bool(session().bNoTimeCard), card == 0) << card;
        EXPECT_EQ(session().iTaskSelection.value(), 1) << "the settings' default, read for the session";
    }
    EXPECT_EQ(session().ErrorTrail.mid(trailBefore.size()).count("X:modInitialize: GetRegSettings"), 3)
        << "the trail carries over from one session to the next";
    ASSERT_FALSE(sink->failures.empty());
    EXPECT_TRUE(sink->failures[0].location.contains("X:modInitialize: OpenDB:Line")) << "handled in its own routine";
}

TEST_F(OpenStepletsTest, AStoreFolderIdThatIsNoTextEndsTheSessionBeforeItsWindow)
{
    clsSteplets c = component();
    listen();
    HostArguments a = hostWith(1);
    a.sUserFldrSID = Value();
    a.sUserEID = "c-ada";
    const QString trailBefore = session().ErrorTrail;
    a.callOn(c);
    EXPECT_EQ(chooserUnloaded(), 0) << "no window was made";
    ASSERT_EQ(sink->failures.size(), 1u);
    EXPECT_EQ(sink->failures[0].number, 94);
    EXPECT_EQ(sink->failures[0].location, trailBefore + ":Line 60") << "OpenSteplets writes no trail entry";
    EXPECT_EQ(session().sUserEID, "c-ada") << "copied before the failure";
    EXPECT_NE(session().sUserName, "Ada Byrne") << "not reached";
}
