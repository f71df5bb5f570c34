// CheckOLVersion on a real vdir store: the major version read from the head of Outlook's
// version text, and what is left when it cannot be read.
#include "RecordingSink.h"
#include "ScriptedSteps.h"
#include "TempDir.h"
#include "VdirStore.h"
#include "chooser/frmSteplet.h"
#include "session/SessionContext.h"

using namespace steplets;

namespace {

class CheckOLVersionTest : public ::testing::Test {
protected:
    ~CheckOLVersionTest() override { session() = SessionContext(); }

    // The version number the window takes from an Outlook that reports `text`.
    int versionFor(const QString& text)
    {
        vdir::VdirConfig config;
        config.root = dir.path();
        config.version = text;
        session().olApp = vdir::openVdirStore(config, host);
        session().iOutlookVersion = 0;
        frmSteplet(*host).CheckOLVersion();
        return session().iOutlookVersion;
    }

    test::TempDir dir;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    std::shared_ptr<scripted::ScriptedHost> host = test::hostWith();
};

// No version text is refused; a text without a number counts as the oldest.
TEST_F(CheckOLVersionTest, TheFirstThreeCharactersChooseTheMajorVersion)
{
    const std::pair<const char*, int> cases[] = {
        {"7.0.0.1234", 7}, {"8.49", 7}, {"8.5.5104", 8}, {"9.0.0.2711", 9}, {"10.0.2627", 10},
        {"11.0.5510", 11}, {"16.0.1", 11}, {"", 7}, {"beta", 7},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(versionFor(QString::fromLatin1(text)), expected) << text;
    EXPECT_TRUE(sink.failures.empty());

    session().olApp.reset();
    session().iOutlookVersion = 0;
    frmSteplet(*host).CheckOLVersion();
    EXPECT_EQ(session().iOutlookVersion, 0) << "an Outlook that cannot be asked: an old one to the contact picker, not 7";
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.endsWith(QStringLiteral("frmSteplet: CheckOLVersion:Line 20")))
        << sink.failures[0].location.toStdString();
}

} // namespace
