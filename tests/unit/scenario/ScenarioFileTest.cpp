#include "CommandLine.h"
#include "Scenario.h"
#include "TempDir.h"
#include <QFile>
#include <QJsonObject>
#include "QStringPrinting.h"
#include <gtest/gtest.h>

using namespace steplets;
using namespace steplets::scenario;

namespace {

// The one-line message for a malformed file, or "(accepted)".
QString refusal(const char* content)
{
    QString error;
    const auto s = parseScenario(QByteArray(content), &error);
    return s ? QStringLiteral("(accepted)") : error;
}

} // namespace

// A malformed file is refused with one line naming the member (a step by its number) and what is wrong;
// a message ending in "..." is matched on its beginning.
TEST(ScenarioFileRefused, NamesTheMemberAndWhatIsWrong)
{
    const std::pair<const char*, const char*> cases[] = {
        {R"({"script": [{"wait": 1}, {"wait": 2}, {"form": "frmSteplet", "clik": "cmdAdd"}]})", "script: step 3: unknown step kind \"clik\""},
        {R"({"script": [{"wait": 1}, {"msgbox": "Maybe"}]})", "script: step 2: member \"msgbox\" must be one of \"OK\", \"Cancel\", \"Yes\", \"No\""},
        {R"({"now": "2026-03-16T15:30:00"})", "script: is missing (a list of steps, possibly empty)"},
        {R"({"host": {"lTimeCardID": "12"}, "script": []})", "host.lTimeCardID: expected a whole number from -2147483648 to 2147483647"},
        {R"({"host": {"bManageContacts": 1}, "script": []})", "host.bManageContacts: expected true or false"},
        {R"({"host": {"sUserName": null}, "script": []})", "host.sUserName: expected a text"},
        {R"({"host": {"sUsername": "x"}, "script": []})", "host.sUsername: unknown argument of OpenSteplets"},
        {R"({"host": {"olNS": "x"}, "script": []})", "host.olNS: is given by the player, not by the scenario"},
        {"[]", "(file): expected a JSON object"},
        {R"({"now": "2026-02-30T10:00:00", "script": []})", "now: expected a local time \"YYYY-MM-DDTHH:MM:SS\""},
        {R"({"settings": {"Link User": 1.5}, "script": []})", "settings.Link User: expected a whole number or a text"},
        {R"({"store": {"missing": ["remote"]}, "script": []})", "store.missing[0]: expected \"local\" or \"link\""},
        {R"({"store": {"link": {"tblContacts": [{}]}, "missing": ["link"]}, "script": []})", "store.missing[0]: the database \"link\" is left out but has rows"},
        {R"({"outlook": {"contacts": [{"EntryID": "c-1"}, {"EntryID": "c-1"}]}, "script": []})", "outlook.contacts[1].EntryID: \"c-1\" is given twice"},
        {R"({"outlook": {"tasks": [{"EntryID": "../x"}]}, "script": []})", "outlook.tasks[0].EntryID: expected a name usable as a file name"},
        {R"({"outlook": {"contacts": [{"Links": []}]}, "script": []})", "outlook.contacts[0].Links: expected a text, a number, true, false or null"},
        {R"({"outlook": {"tasks": [{"UserProperties": [{"type": 1}]}]}, "script": []})", "outlook.tasks[0].UserProperties[0].name: expected a text"},
        {R"({"outlook": {"taskFolderGoneAfter": -1}, "script": []})", "outlook.taskFolderGoneAfter: expected a count, not negative"},
        {R"({"script": [], "expect": {"events": {"$count": 1, "$item": []}}})", "expect.events: expected {\"$count\": N} or {\"$count\": N, \"$items\": [...]}"},
        {"{\"script\": [", "not valid JSON at character..."},
        {R"({"script": [], "expected": {}})", "expected: unknown member; expected one of now, host..."},
    };
    for (const auto& [content, why] : cases) {
        const QString message = refusal(content), expected = QLatin1String(why);
        if (expected.endsWith(QLatin1String("...")))
            EXPECT_TRUE(message.startsWith(expected.chopped(3))) << message.toStdString();
        else
            EXPECT_EQ(message, expected) << content;
    }
}

TEST(CommandLineExit, MalformedFileIsExitTwoWithOneLineNamingFileAndStep)
{
    test::TempDir dir;
    const QString file = dir.file("bad.json");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(R"({"script": [{"wait": 1}, {"form": "frmSteplet", "clik": "cmdAdd"}]})");
    f.close();
    QString out, err;
    QTextStream o(&out), e(&err);
    EXPECT_EQ(runCommand({file}, o, e), 2);
    e.flush();
    EXPECT_EQ(err, file + ": script: step 2: unknown step kind \"clik\"\n");
    EXPECT_TRUE(out.isEmpty());
    EXPECT_FALSE(QFile::exists(dir.file("OVLocal.db")));
}

// A scenario laid over its shared data: host arguments and settings by name, rows by their key
// and member by member, a data file's defaults under every row of its table, bases in order.
TEST(ScenarioBase, TheScenarioIsLaidOverItsDataByNameAndRowKey)
{
    test::TempDir dir;
    auto write = [&](const char* name, const char* content) {
        QFile f(dir.file(QLatin1String(name)));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(content);
    };
    write("people.json", R"({"host": {"sUserName": "Morgan", "lTimeCardID": 7}, "settings": {"Task Selection": 0, "Link User": 1},
        "outlook": {"contacts": [{"EntryID": "c-1", "FirstName": "Ada"}, {"EntryID": "c-2", "FirstName": "Ben"}]},
        "store": {"link": {"tblContacts": [{"ContactID": 1, "ContactName": "Ada"}, {"ContactID": 2, "ContactName": "Ben"}]}}})");
    write("rows.json", R"({"defaults": {"tblSteplets": {"DateType": 1, "Importance": 1}}})");
    QString error;
    const auto s = parseScenario(R"({"base": ["people.json", "rows.json"], "host": {"lTimeCardID": 0},
        "settings": {"Link User": 0}, "outlook": {"contacts": [{"EntryID": "c-2", "LastName": "Okafor"}, {"EntryID": "c-3"}]},
        "store": {"local": {"tblSteplets": [{"ID": 5, "Subject": "Call", "DateType": 0}]},
                  "link": {"tblContacts": [{"ContactID": 3, "ContactName": "Clara"}]}},
        "script": []})", &error, dir.path());
    ASSERT_TRUE(s.has_value()) << error.toStdString();
    EXPECT_EQ(s->host.sUserName, QStringLiteral("Morgan"));
    EXPECT_EQ(s->host.lTimeCardID, 0);
    const QList<QPair<QString, QJsonValue>> settings{{QStringLiteral("Link User"), 0}, {QStringLiteral("Task Selection"), 0}};
    EXPECT_EQ(s->settings, settings);
    ASSERT_EQ(s->outlook.contacts.size(), 3);
    EXPECT_EQ(s->outlook.contacts[1], (QJsonObject{{"EntryID", "c-2"}, {"FirstName", "Ben"}, {"LastName", "Okafor"}}));
    EXPECT_EQ(s->storeRows["link"]["tblContacts"].toArray().size(), 3);
    EXPECT_EQ(s->storeRows["local"]["tblSteplets"][0].toObject(), (QJsonObject{{"ID", 5}, {"Subject", "Call"}, {"DateType", 0}, {"Importance", 1}}));
    EXPECT_FALSE(parseScenario(R"({"base": "none.json", "script": []})", &error, dir.path()));
    EXPECT_EQ(error, QStringLiteral("base: %1 cannot be read").arg(QDir::current().relativeFilePath(dir.file(QStringLiteral("none.json")))));
}
