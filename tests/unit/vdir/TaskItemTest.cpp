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
    EXPECT_EQ(task->get(QStringLiteral("DueDate")), Value(Date::noDate()));
    EXPECT_EQ(task->get(QStringLiteral("StartDate")), Value(Date::noDate()));
    EXPECT_EQ(task->get(QStringLiteral("Importance")), Value(1));
    EXPECT_EQ(task->get(QStringLiteral("Status")), Value(0));
    EXPECT_EQ(task->get(QStringLiteral("IsRecurring")), Value(false));
    EXPECT_EQ(task->get(QStringLiteral("Complete")), Value(false));
}

// Every property read from a file and saved again is pinned by golden/.
TEST_F(TaskItems, StandardPropertiesAreWrittenAsOtherClientsExpect)
{
    auto task = newTask();
    task->set(QStringLiteral("Subject"), Value("Call Ada"));
    task->set(QStringLiteral("DueDate"), Value(kDue));
    task->set(QStringLiteral("Importance"), Value(2));
    task->set(QStringLiteral("Sensitivity"), Value(2));
    task->set(QStringLiteral("Categories"), Value("Business, Clients"));
    task->set(QStringLiteral("ReminderSet"), Value(true));
    task->set(QStringLiteral("ReminderTime"), Value(Date::fromParts(2024, 5, 17, 9, 0)));
    task->Save();
    const QByteArray ics = fileText(taskFile(task->EntryID()));
    EXPECT_TRUE(ics.contains("SUMMARY:Call Ada\r\n"));
    EXPECT_TRUE(ics.contains("DUE:20240517T093000\r\n")) << "floating local time";
    EXPECT_TRUE(ics.contains("PRIORITY:1\r\n"));
    EXPECT_TRUE(ics.contains("CLASS:PRIVATE\r\n"));
    EXPECT_TRUE(ics.contains("CATEGORIES:Business\r\n"));
    EXPECT_TRUE(ics.contains("CATEGORIES:Clients\r\n"));
    EXPECT_TRUE(ics.contains("TRIGGER;VALUE=DATE-TIME:20240517T090000Z\r\n"));
    EXPECT_TRUE(ics.contains("UID:" + task->EntryID().toUtf8()));
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

TEST_F(TaskItems, RefusedValuesAreFailuresAndLeaveTheItemAsItWas)
{
    auto task = newTask();
    task->set(QStringLiteral("PercentComplete"), Value(30));
    const Failure percent = failureOf([&] { task->set(QStringLiteral("PercentComplete"), Value(101)); });
    EXPECT_TRUE(percent.description().contains(QStringLiteral("PercentComplete")));
    EXPECT_EQ(task->get(QStringLiteral("PercentComplete")), Value(30));
    EXPECT_TRUE(failureOf([&] { task->set(QStringLiteral("PercentComplete"), Value(-1)); }).description().contains(QStringLiteral("between 0 and 100")));
    const Failure early = failureOf([&] { task->set(QStringLiteral("DueDate"), Value(Date::fromParts(1600, 12, 31))); });
    EXPECT_TRUE(early.description().contains(QStringLiteral("1601")));
    EXPECT_EQ(failureOf([&] { task->set(QStringLiteral("ActualWork"), Value("lots")); }).number(), 13);
    EXPECT_EQ(failureOf([&] { task->set(QStringLiteral("Importance"), Value(3)); }).number(), vdir::fail::InvalidArgument);
    EXPECT_NO_THROW(task->set(QStringLiteral("DueDate"), Value(Date::fromParts(1601, 1, 1))));
}

TEST_F(TaskItems, UnknownAndReadOnlyPropertiesAreFailures)
{
    auto task = newTask();
    const Failure unknown = failureOf([&] { task->get(QStringLiteral("Colour")); });
    EXPECT_EQ(unknown.number(), vdir::fail::NoSuchProperty);
    EXPECT_TRUE(unknown.description().contains(QStringLiteral("\"Colour\"")));
    EXPECT_EQ(failureOf([&] { task->set(QStringLiteral("Colour"), Value(1)); }).number(), vdir::fail::NoSuchProperty);
    EXPECT_TRUE(failureOf([&] { task->set(QStringLiteral("IsRecurring"), Value(true)); }).description().contains(QStringLiteral("read-only")));
    EXPECT_TRUE(failureOf([&] { task->set(QStringLiteral("EntryID"), Value("x")); }).description().contains(QStringLiteral("read-only")));
}

TEST_F(TaskItems, BodyIsReachedOnlyThroughSafeTaskItem)
{
    auto task = newTask();
    EXPECT_TRUE(failureOf([&] { task->get(QStringLiteral("Body")); }).description().contains(QStringLiteral("SafeTaskItem")));
    EXPECT_TRUE(failureOf([&] { task->set(QStringLiteral("Body"), Value("x")); }).description().contains(QStringLiteral("SafeTaskItem")));
    SafeTaskItem safe;
    EXPECT_EQ(failureOf([&] { safe.Body(); }).number(), 91);
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
    const Failure again = failureOf([&] { task->Save(); });
    EXPECT_TRUE(again.description().contains(QStringLiteral("deleted")));
    const Failure gone = failureOf([&] { ns->GetItemFromID(id, QStringLiteral("store")); });
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
