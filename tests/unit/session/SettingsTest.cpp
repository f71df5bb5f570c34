#include "Failures.h"
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
        freshSession();
    }
    // A new session on the same settings.
    void freshSession()
    {
        session() = SessionContext();
        session().ports.settings = backend;
        session().ports.componentDirectory = dir.file("component");
    }
    void TearDown() override { session().ports = Ports(); }

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
    // The settings file as a person or another program left it.
    void writeIni(const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(iniFile()).path());
        QFile f(iniFile());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
    }

    test::TempDir dir;
    std::shared_ptr<IniSettings> backend;
    test::RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};
} // namespace

TEST_F(GetRegSettingsTest, FirstRunTakesTheDefaultsAndRecordsTheProgramDirectory)
{
    EXPECT_TRUE(modInitialize::GetRegSettings());
    // The default fill-ins and prompts show in the options window's scenarios.
    const SessionContext& s = session();
    EXPECT_EQ(s.iLinkUserIfNoContact.value(), 0);
    EXPECT_TRUE(s.bNewTaskDescription);
    EXPECT_EQ(stored("Program Directory").toString(), dir.file("component"));
    EXPECT_TRUE(iniFile().endsWith("Brackenfell Software/Ordivane for Office.ini"));
    EXPECT_TRUE(sink.failures.empty());
    EXPECT_FALSE(s.settingsKey) << "the key handle is released";
    EXPECT_EQ(test::notPrivate(dir.path()), QStringList()) << "the file and its folders are the user's alone";
}

// The stored options the sessions under tests/scenarios start from are read there; these are
// the ones none of them stores.
TEST_F(GetRegSettingsTest, StoredValuesWinAndAMovedComponentRewritesItsDirectory)
{
    writeIni("[Steplets]\nUser Prompt 1=Client, then project\n");   // a comma typed by hand reads whole
    store("Introduction", 0);
    store("User Prompt 2", " Which phase? ");
    store("Program Directory", "/old/place");
    EXPECT_TRUE(modInitialize::GetRegSettings());
    EXPECT_FALSE(session().bIntroduction);
    EXPECT_EQ(session().sDefaultUserPrompt[1], "Client, then project");
    EXPECT_EQ(session().sDefaultUserPrompt[2], " Which phase? ");
    EXPECT_EQ(session().sDefaultFillIn[4], "[Empty]");
    EXPECT_EQ(stored("Program Directory").toString(), dir.file("component"));
}

TEST_F(GetRegSettingsTest, ANumberThatCannotBeReadIsReportedWithItsSettingAndFile)
{
    struct Case { const char* setting; const char* stored; const char* said; int line; };
    const Case cases[] = {
        {"Link User", "yes please", "holds \"yes please\" where a number belongs", 40},
        {"Link User", "1,2", "holds \"1, 2\" where a number belongs", 40},
        {"Task Selection", "40000", "holds 40000, which is outside its range (-32768 to 32767)", 30},
        {"Link User if no Contact", "99999999999", "outside the range of a number setting", 50},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.stored);
        freshSession();
        sink.failures.clear();
        writeIni(QByteArray("[Steplets]\n") + c.setting + "=" + c.stored + "\nFill-In 1=Date\n");
        EXPECT_FALSE(modInitialize::GetRegSettings());
        ASSERT_EQ(sink.failures.size(), 1u);
        const QString said = sink.failures[0].description;
        EXPECT_TRUE(said.contains(QStringLiteral("\"%1\" in %2 ").arg(QLatin1String(c.setting), iniFile()))) << said.toStdString();
        EXPECT_TRUE(said.contains(QLatin1String(c.said))) << said.toStdString();
        EXPECT_TRUE(sink.failures[0].location.endsWith(QStringLiteral("GetRegSettings:Line %1").arg(c.line)));
        EXPECT_EQ(session().sDefaultFillIn[1], "") << "never read";
        EXPECT_FALSE(stored("Program Directory").isValid());
    }
}

TEST_F(GetRegSettingsTest, AnUnreadableSettingsFileIsAFailureNotACrash)
{
    QDir().mkpath(iniFile());     // a directory where the file belongs
    EXPECT_FALSE(modInitialize::GetRegSettings());
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].description.contains("cannot be read"));
    EXPECT_TRUE(sink.failures[0].location.contains("GetRegSettings:Line "));
}

// Files the INI reader cannot read cleanly are the host's too: neither a read nor a write may
// touch them, and the failure says which file and what is wrong with it.
TEST_F(GetRegSettingsTest, AFileNotReadCleanlyIsNeverWrittenAndTheFailureSaysWhy)
{
    struct Case { const char* what; QByteArray bytes; const char* why; };
    const Case cases[] = {
        {"binary", QByteArray("[Steplets]\nTask Selection=0\n\x01\x02garbage\n"), "line 3 holds binary data"},
        {"utf-16", QByteArray("\xff\xfe[\0S\0]\0\n\0", 10), "UTF-16"},
        {"latin-1", QByteArray("[Steplets]\nUser Prompt 1=Caf\xe9\n"), "line 2 is not UTF-8"},
        {"hash comment", QByteArray("[Steplets]\n# chosen by the host\nLink User=1\n"), "line 2 starts with '#'"},
        {"no equals", QByteArray("[Steplets]\nLink User=1\njust words\n"), "line 3 (\"just words\") has no '='"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        writeIni(c.bytes);
        // A read ...
        freshSession();
        sink.failures.clear();
        EXPECT_FALSE(modInitialize::GetRegSettings());
        ASSERT_EQ(sink.failures.size(), 1u);
        EXPECT_TRUE(sink.failures[0].description.contains(iniFile())) << sink.failures[0].description.toStdString();
        EXPECT_TRUE(sink.failures[0].description.contains(QLatin1String(c.why))) << sink.failures[0].description.toStdString();
        // ... and a write straight after opening the key, as the prompt's answer is stored.
        const QString refused = test::failure([&] {
            backend->WriteNumber(*backend->OpenKey(modInitialize::kRootPath, modInitialize::kKeyName),
                                 QStringLiteral("New Task Description"), 0);
        }).description();
        EXPECT_TRUE(refused.contains(iniFile()) && refused.contains(QLatin1String(c.why))) << refused.toStdString();
        QFile f(iniFile());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        EXPECT_EQ(f.readAll(), c.bytes) << "the file is left as it was";
    }
}

TEST_F(GetRegSettingsTest, TheFirstWriteOfAProcessKeepsTheFileAsItWasInABak)
{
    const QByteArray original("; kept by hand\n[Steplets]\nFill-In 2=Date\n");
    writeIni(original);
    QFile f(iniFile());
    ASSERT_TRUE(f.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup));
    auto key = backend->OpenKey(modInitialize::kRootPath, modInitialize::kKeyName);
    backend->WriteNumber(*key, QStringLiteral("Link User"), 1);
    backend->WriteText(*key, QStringLiteral("Fill-In 3"), QStringLiteral("Current Date"));
    QFile bak(iniFile() + QStringLiteral(".bak"));
    ASSERT_TRUE(bak.open(QIODevice::ReadOnly));
    EXPECT_EQ(bak.readAll(), original) << "copied once, before the first write";
    const auto notUser = ~(QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ExeUser);
    EXPECT_EQ(bak.permissions() & notUser, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    EXPECT_EQ(f.permissions() & notUser, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup)
        << "a rewrite keeps the file's mode";
    EXPECT_EQ(stored("Fill-In 2").toString(), QStringLiteral("Date")) << "what the file held stays beside the new values";
    EXPECT_EQ(stored("Link User").toInt(), 1);
}
