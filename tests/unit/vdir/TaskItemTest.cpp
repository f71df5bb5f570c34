// Task items through real .ics files: life cycle, every property, refusals and couplings.
#include "VdirFixture.h"
#include "platform/SafeTaskItem.h"

using namespace steplets;
using namespace steplets::test;

namespace {

using TaskItems = VdirFixture;

const Date kDue = Date::fromParts(2024, 5, 17, 9, 30);

} // namespace

TEST_F(TaskItems, NewTaskIsUnsavedWithoutEntryIdUntilSaved)
{
    auto task = newTask();
    EXPECT_FALSE(task->Saved());
    EXPECT_TRUE(task->EntryID().isEmpty());
    EXPECT_TRUE(QDir(tmp.file(QStringLiteral("tasks"))).entryList(QDir::Files).isEmpty());

    task->set(QStringLiteral("Subject"), Value("Quarterly filing"));
    task->Save();
    EXPECT_TRUE(task->Saved());
    ASSERT_FALSE(task->EntryID().isEmpty());
    EXPECT_TRUE(QFile::exists(taskFile(task->EntryID())));

    task->set(QStringLiteral("PercentComplete"), Value(10));
    EXPECT_FALSE(task->Saved()) << "every write leaves the item unsaved";
    EXPECT_TRUE(ns->GetItemFromID(task->EntryID(), QStringLiteral("store"))->Saved());
}

TEST_F(TaskItems, DefaultsOfANewTask)
{
    auto task = newTask();
    const std::pair<const char*, Value> defaults[] = {
        {"DueDate", Value(Date::noDate())}, {"StartDate", Value(Date::noDate())}, {"Importance", Value(1)},
        {"Status", Value(0)}, {"IsRecurring", Value(false)}, {"Complete", Value(false)}};
    for (const auto& [name, v] : defaults) EXPECT_EQ(task->get(QString::fromLatin1(name)), v) << name;
}

// Every property read from a file and saved again is pinned by golden/.
TEST_F(TaskItems, StandardPropertiesAreWrittenAsOtherClientsExpect)
{
    auto task = newTask();
    const std::pair<const char*, Value> written[] = {
        {"Subject", Value("Call Ada")}, {"DueDate", Value(kDue)}, {"Importance", Value(2)}, {"Sensitivity", Value(2)},
        {"Categories", Value("Business, Clients")}, {"ReminderSet", Value(true)},
        {"ReminderTime", Value(Date::fromParts(2024, 5, 17, 9, 0))}};
    for (const auto& [name, v] : written) task->set(QString::fromLatin1(name), v);
    task->Save();
    const QByteArray ics = fileText(taskFile(task->EntryID()));
    const QList<QByteArray> lines{"SUMMARY:Call Ada", "DUE:20240517T093000" /* floating local time */, "PRIORITY:1", "CLASS:PRIVATE",
                                  "CATEGORIES:Business", "CATEGORIES:Clients", "TRIGGER;VALUE=DATE-TIME:20240517T090000Z",
                                  "UID:" + task->EntryID().toUtf8()};
    for (const QByteArray& line : lines)
        EXPECT_TRUE(ics.contains(line + "\r\n")) << line.constData();
}

TEST_F(TaskItems, NoDateMeansNoDueProperty)
{
    auto task = newTask();
    task->set(QStringLiteral("DueDate"), Value(kDue));
    task->Save();
    task->set(QStringLiteral("DueDate"), Value(Date::noDate()));
    task->Save();
    EXPECT_FALSE(fileText(taskFile(task->EntryID())).contains("DUE"));
    EXPECT_EQ(reload(task->EntryID())->get(QStringLiteral("DueDate")).toDate().toIso(), QStringLiteral("4501-01-01T00:00:00"));
}

// Out-of-range values, unknown and read-only properties, and the body outside SafeTaskItem are
// failures that name what was refused and leave the item as it was.
TEST_F(TaskItems, RefusedWritesAndReadsAreFailuresThatLeaveTheItemAsItWas)
{
    auto task = newTask();
    task->set(QStringLiteral("PercentComplete"), Value(30));
    const auto set = [&](const char* name, const Value& v) { return [=] { task->set(QString::fromLatin1(name), v); }; };
    const auto get = [&](const char* name) { return [=] { task->get(QString::fromLatin1(name)); }; };
    const std::tuple<const char*, std::function<void()>, long, const char*> refused[] = {
        {"101 percent", set("PercentComplete", Value(101)), 0, "PercentComplete"},
        {"-1 percent", set("PercentComplete", Value(-1)), 0, "between 0 and 100"},
        {"before 1601", set("DueDate", Value(Date::fromParts(1600, 12, 31))), 0, "1601"},
        {"text as work", set("ActualWork", Value("lots")), 13, ""},
        {"importance 3", set("Importance", Value(3)), vdir::fail::InvalidArgument, ""},
        {"unknown read", get("Colour"), vdir::fail::NoSuchProperty, "\"Colour\""},
        {"unknown write", set("Colour", Value(1)), vdir::fail::NoSuchProperty, ""},
        {"IsRecurring", set("IsRecurring", Value(true)), 0, "read-only"},
        {"EntryID", set("EntryID", Value("x")), 0, "read-only"},
        {"body read", get("Body"), 0, "SafeTaskItem"},
        {"body write", set("Body", Value("x")), 0, "SafeTaskItem"},
    };
    for (const auto& [what, act, number, named] : refused) {
        const Failure f = failure(act);
        EXPECT_NE(f.number(), 0) << what;
        if (number) {
            EXPECT_EQ(f.number(), number) << what;
        }
        EXPECT_TRUE(f.description().contains(QString::fromLatin1(named))) << what << ": " << f.description().toStdString();
    }
    EXPECT_EQ(task->get(QStringLiteral("PercentComplete")), Value(30));
    EXPECT_NO_THROW(task->set(QStringLiteral("DueDate"), Value(Date::fromParts(1601, 1, 1))));
}

TEST_F(TaskItems, BodyIsReachedThroughSafeTaskItem)
{
    auto task = newTask();
    SafeTaskItem safe;
    EXPECT_EQ(failure([&] { safe.Body(); }).number(), 91);
    safe.setItem(task);
    safe.setBody(QStringLiteral("notes"));
    EXPECT_FALSE(task->Saved());
    EXPECT_EQ(safe.Body(), QStringLiteral("notes"));
}

TEST_F(TaskItems, CompletionPropertiesMoveTogether)
{
    auto task = newTask();
    task->set(QStringLiteral("Complete"), Value(true));
    EXPECT_EQ(task->get(QStringLiteral("Status")), Value(2));
    EXPECT_EQ(task->get(QStringLiteral("PercentComplete")), Value(100));
    EXPECT_EQ(task->get(QStringLiteral("DateCompleted")), Value(Date::fromParts(2024, 3, 14)));
    task->set(QStringLiteral("DateCompleted"), Value(Date::fromParts(2024, 3, 1)));
    task->Save();
    auto back = reload(task->EntryID());
    EXPECT_EQ(back->get(QStringLiteral("Complete")), Value(true));
    EXPECT_EQ(back->get(QStringLiteral("DateCompleted")), Value(Date::fromParts(2024, 3, 1)));
    EXPECT_TRUE(fileText(taskFile(task->EntryID())).contains("STATUS:COMPLETED"));

    back->set(QStringLiteral("PercentComplete"), Value(50));
    EXPECT_EQ(back->get(QStringLiteral("Status")), Value(1));
    EXPECT_EQ(back->get(QStringLiteral("Complete")), Value(false));
    EXPECT_EQ(back->get(QStringLiteral("DateCompleted")), Value(Date::noDate()));
}

TEST_F(TaskItems, DeleteRemovesTheFileAndAnUnsavedTaskIsJustDropped)
{
    auto unsaved = newTask();
    unsaved->Delete();
    EXPECT_TRUE(QDir(tmp.file(QStringLiteral("tasks"))).entryList(QDir::Files).isEmpty());

    auto task = newTask();
    task->Save();
    const QString id = task->EntryID();
    task->Delete();
    EXPECT_FALSE(QFile::exists(taskFile(id)));
    EXPECT_FALSE(task->Saved());
    const Failure again = failure([&] { task->Save(); });
    EXPECT_TRUE(again.description().contains(QStringLiteral("deleted")));
    const Failure gone = failure([&] { ns->GetItemFromID(id, QStringLiteral("store")); });
    EXPECT_TRUE(gone.description().contains(id));
}

TEST_F(TaskItems, AChangeOnDiskByAnotherProgramIsReadAfresh)
{
    auto task = newTask();
    task->set(QStringLiteral("Subject"), Value("Before"));
    task->Save();
    auto held = ns->GetItemFromID(task->EntryID(), QStringLiteral("store"));
    EXPECT_EQ(held->Subject(), QStringLiteral("Before"));

    QByteArray ics = fileText(taskFile(task->EntryID()));
    ics.replace("SUMMARY:Before", "SUMMARY:Changed elsewhere");
    writeRaw(QStringLiteral("tasks/") + task->EntryID() + QStringLiteral(".ics"), ics);
    EXPECT_EQ(ns->GetItemFromID(task->EntryID(), QStringLiteral("store"))->Subject(), QStringLiteral("Changed elsewhere"));
    EXPECT_EQ(held->Subject(), QStringLiteral("Changed elsewhere")) << "a saved item follows its file";
}

TEST_F(TaskItems, PropertiesOfOtherClientsSurviveARewrite)
{
    writeRaw(QStringLiteral("tasks/foreign.ics"),
             "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Other//EN\r\nBEGIN:VTODO\r\nUID:foreign-uid\r\n"
             "SUMMARY:From elsewhere\r\nLOCATION:Room 4\r\nX-OTHER-FLAG:yes\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
    auto task = ol::asTask(ns->GetItemFromID(QStringLiteral("foreign"), QStringLiteral("store")));
    EXPECT_EQ(task->Subject(), QStringLiteral("From elsewhere"));
    task->set(QStringLiteral("Subject"), Value("Renamed"));
    task->Save();
    const QByteArray ics = fileText(taskFile(QStringLiteral("foreign")));
    EXPECT_TRUE(ics.contains("LOCATION:Room 4"));
    EXPECT_TRUE(ics.contains("X-OTHER-FLAG:yes"));
    EXPECT_TRUE(ics.contains("UID:foreign-uid"));
    EXPECT_TRUE(ics.contains("SUMMARY:Renamed"));
    EXPECT_FALSE(ics.contains("From elsewhere"));
}
