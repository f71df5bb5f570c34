#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/qsettings/IniSettings.h"
#include "session/SessionContext.h"
#include "session/modInitialize.h"
#include <QDir>
#include <QFile>
#include <QSettings>
#include <gtest/gtest.h>

using namespace steplets;

namespace {
class GetRegSettingsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        backend = std::make_shared<IniSettings>(dir.path());
        process().ports.settings = backend;
        process().ports.componentDirectory = dir.file("component");
        session() = SessionContext();
    }
    void TearDown() override { process().ports = Ports(); }

    QString iniFile() const { return backend->fileFor(modInitialize::kRootPath); }
    void store(const QString& name, const QVariant& value)
    {
        QSettings ini(iniFile(), QSettings::IniFormat);
        ini.setValue("Steplets/" + name, value);
    }
    QVariant stored(const QString& name) const
    {
        QSettings ini(iniFile(), QSettings::IniFormat);
        return ini.value("Steplets/" + name);
    }

    test::TempDir dir;
    std::shared_ptr<IniSettings> backend;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};
} // namespace

TEST_F(GetRegSettingsTest, FirstRunTakesTheDefaultsAndRecordsTheProgramDirectory)
{
    EXPECT_TRUE(modInitialize::GetRegSettings());
    const SessionContext& s = session();
    EXPECT_EQ(s.iTaskSelection.value(), 1);
    EXPECT_EQ(s.iLinkUser.value(), 0);
    EXPECT_EQ(s.iLinkUserIfNoContact.value(), 0);
    EXPECT_TRUE(s.bIntroduction);
    EXPECT_TRUE(s.bNewTaskDescription);
    EXPECT_EQ(s.sDefaultFillIn[1], "Subject field from template");
    for (int i = 2; i <= 4; ++i) EXPECT_EQ(s.sDefaultFillIn[i], "[Empty]");
    for (int i = 1; i <= 4; ++i) EXPECT_EQ(s.sDefaultUserPrompt[i], "");
    EXPECT_EQ(stored("Program Directory").toString(), dir.file("component"));
    EXPECT_TRUE(iniFile().endsWith("Brackenfell Software/Ordivane for Office.ini"));
    EXPECT_TRUE(s.ErrorTrail.endsWith("\r\nX:modInitialize: GetRegSettings"));
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_FALSE(s.settingsKey) << "the key handle is released";
}

TEST_F(GetRegSettingsTest, StoredValuesWinAndAMovedComponentRewritesItsDirectory)
{
    store("Task Selection", 0);
    store("Link User", 1);
    store("Link User if no Contact", 1);
    store("Introduction", 0);
    store("New Task Description", 0);
    store("Fill-In 3", "Contact: Full Name");
    store("User Prompt 2", " Which phase? ");
    store("Program Directory", "/old/place");
    EXPECT_TRUE(modInitialize::GetRegSettings());
    const SessionContext& s = session();
    EXPECT_EQ(s.iTaskSelection.value(), 0);
    EXPECT_EQ(s.iLinkUser.value(), 1);
    EXPECT_EQ(s.iLinkUserIfNoContact.value(), 1);
    EXPECT_FALSE(s.bIntroduction);
    EXPECT_FALSE(s.bNewTaskDescription);
    EXPECT_EQ(s.sDefaultFillIn[3], "Contact: Full Name");
    EXPECT_EQ(s.sDefaultFillIn[4], "[Empty]");
    EXPECT_EQ(s.sDefaultUserPrompt[2], " Which phase? ");
    EXPECT_EQ(stored("Program Directory").toString(), dir.file("component"));
}

TEST_F(GetRegSettingsTest, TextWhereANumberBelongsIsReportedAndLeavesTheRestUnread)
{
    store("Link User", "yes please");
    store("Fill-In 1", "Date");
    EXPECT_FALSE(modInitialize::GetRegSettings());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].description.contains("Link User"));
    EXPECT_TRUE(sink.failures[0].location.endsWith("modInitialize: GetRegSettings:Line 40"));
    const SessionContext& s = session();
    EXPECT_EQ(s.iTaskSelection.value(), 1) << "read before the failure";
    EXPECT_EQ(s.sDefaultFillIn[1], "") << "never read";
    EXPECT_FALSE(stored("Program Directory").isValid());
}

TEST_F(GetRegSettingsTest, AnUnreadableSettingsFileIsAFailureNotACrash)
{
    QDir().mkpath(iniFile());     // a directory where the file belongs
    EXPECT_FALSE(modInitialize::GetRegSettings());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].description.contains("cannot be read"));
    EXPECT_TRUE(sink.failures[0].location.endsWith(":Line 20"));
}

TEST_F(GetRegSettingsTest, AGarbledFileIsReportedAndLeftUntouched)
{
    QDir().mkpath(QFileInfo(iniFile()).path());
    QFile f(iniFile());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    const QByteArray garbage("[Steplets]\nTask Selection=0\n\x01\x02garbage without equals\n");
    f.write(garbage);
    f.close();
    EXPECT_FALSE(modInitialize::GetRegSettings());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].description.contains("not a valid settings file"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), garbage);
}

TEST_F(GetRegSettingsTest, HandEditedTextWithACommaReadsWhole)
{
    QDir().mkpath(QFileInfo(iniFile()).path());
    QFile f(iniFile());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Steplets]\nUser Prompt 1=Client, then project\n");
    f.close();
    EXPECT_TRUE(modInitialize::GetRegSettings());
    EXPECT_EQ(session().sDefaultUserPrompt[1], "Client, then project");
}
