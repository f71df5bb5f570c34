// Task items through real .ics files: life cycle, refusals, couplings, the live recurrence
// pattern, links and user properties. What a file maps to, and that a save writes it back, is
// pinned by golden/; the modal display of an item is played by the scenarios' item steps.
#include "VdirFixture.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/Recurrence.h"
#include "platform/SafeTaskItem.h"

using namespace steplets;
using namespace steplets::test;

namespace {

using TaskItems = VdirFixture;

QStringList filesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files); }

} // namespace

TEST_F(TaskItems, LifeCycleFromNewToDeleted)
{
    auto unsaved = newTask();
    unsaved->Delete();
    auto task = newTask();
    EXPECT_FALSE(task->Saved());
    EXPECT_TRUE(task->EntryID().isEmpty());
    EXPECT_EQ(task->get(QStringLiteral("DueDate")), Value(Date::noDate()));
    EXPECT_EQ(task->get(QStringLiteral("Importance")), Value(1));
    EXPECT_TRUE(filesIn(tmp.file(QStringLiteral("tasks"))).isEmpty()) << "nothing is written before Save";

    task->set(QStringLiteral("DueDate"), Value(Date::fromParts(2024, 5, 17, 9, 30)));
    task->Save();
    EXPECT_TRUE(task->Saved());
    const QString id = task->EntryID();
    ASSERT_TRUE(QFile::exists(taskFile(id)));
    task->set(QStringLiteral("DueDate"), Value(Date::noDate()));
    EXPECT_FALSE(task->Saved()) << "every write leaves the item unsaved";
    EXPECT_TRUE(ns->GetItemFromID(id, QStringLiteral("store"))->Saved());
    task->Save();
    EXPECT_FALSE(fileText(taskFile(id)).contains("DUE")) << "no date is no DUE property";

    task->Delete();
    EXPECT_FALSE(QFile::exists(taskFile(id)));
    EXPECT_FALSE(task->Saved());
    EXPECT_TRUE(failure([&] { task->Save(); }).description().contains(QStringLiteral("deleted")));
    EXPECT_EQ(failure([&] { ns->GetItemFromID(id, QStringLiteral("store")); }).number(), vdir::fail::NotFound);
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

    SafeTaskItem safe;
    EXPECT_EQ(failure([&] { safe.Body(); }).number(), 91);
    safe.setItem(task);
    safe.setBody(QStringLiteral("notes"));
    EXPECT_EQ(safe.Body(), QStringLiteral("notes"));
}

TEST_F(TaskItems, CompletionPropertiesMoveTogether)
{
    auto task = newTask();
    task->set(QStringLiteral("Complete"), Value(true));
    EXPECT_EQ(task->get(QStringLiteral("Status")), Value(2));
    EXPECT_EQ(task->get(QStringLiteral("PercentComplete")), Value(100));
    EXPECT_EQ(task->get(QStringLiteral("DateCompleted")), Value(Date::fromParts(2024, 3, 14)));
    task->Save();
    auto back = reload(task->EntryID());
    back->set(QStringLiteral("PercentComplete"), Value(50));
    EXPECT_EQ(back->get(QStringLiteral("Status")), Value(1));
    EXPECT_EQ(back->get(QStringLiteral("Complete")), Value(false));
    EXPECT_EQ(back->get(QStringLiteral("DateCompleted")), Value(Date::noDate()));
}

TEST_F(TaskItems, AChangeOnDiskByAnotherProgramIsReadAfresh)
{
    auto task = newTask();
    task->set(QStringLiteral("Subject"), Value("Before"));
    task->Save();
    auto held = ns->GetItemFromID(task->EntryID(), QStringLiteral("store"));
    QByteArray ics = fileText(taskFile(task->EntryID()));
    ics.replace("SUMMARY:Before", "SUMMARY:Changed elsewhere");
    writeRaw(QStringLiteral("tasks/") + task->EntryID() + QStringLiteral(".ics"), ics);
    EXPECT_EQ(held->Subject(), QStringLiteral("Changed elsewhere")) << "a saved item follows its file";
}

TEST_F(TaskItems, GetRecurrencePatternMakesTheTaskRecurringAndIsLive)
{
    auto task = newTask();
    task->set(QStringLiteral("DueDate"), Value(Date::fromParts(2024, 5, 17, 9, 0)));   // a Friday
    task->Save();
    auto pattern = task->GetRecurrencePattern();
    EXPECT_EQ(task->get(QStringLiteral("IsRecurring")), Value(true));
    EXPECT_FALSE(task->Saved());
    EXPECT_EQ(pattern, task->GetRecurrencePattern()) << "the same pattern on each call";
    EXPECT_EQ(pattern->get(QStringLiteral("RecurrenceType")), Value(1));
    EXPECT_EQ(pattern->get(QStringLiteral("DayOfWeekMask")), Value(ol::olFriday));
    EXPECT_EQ(pattern->get(QStringLiteral("PatternStartDate")), Value(Date::fromParts(2024, 5, 17)));
    EXPECT_EQ(pattern->get(QStringLiteral("NoEndDate")), Value(true));

    pattern->set(QStringLiteral("PatternEndDate"), Value(Date::fromParts(2025, 1, 1)));
    EXPECT_EQ(pattern->get(QStringLiteral("NoEndDate")), Value(false));
    pattern->set(QStringLiteral("NoEndDate"), Value(true));
    EXPECT_EQ(pattern->get(QStringLiteral("PatternEndDate")), Value(Date::noDate()));
    EXPECT_EQ(pattern->get(QStringLiteral("Occurrences")), Value(0));

    const std::pair<const char*, Value> refused[] = {{"RecurrenceType", Value(4)}, {"DayOfWeekMask", Value(128)}, {"Interval", Value(0)}};
    for (const auto& r : refused)   // clang before 16 captures no structured binding
        EXPECT_EQ(failure([&] { pattern->set(QString::fromLatin1(r.first), r.second); }).number(), vdir::fail::InvalidArgument) << r.first;
    EXPECT_EQ(failure([&] { pattern->get(QStringLiteral("Frequency")); }).number(), vdir::fail::NoSuchProperty);
}

TEST_F(TaskItems, LinksAndContactsAndUserProperties)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    const auto contact = [&](const char* id) { return ol::asContact(ns->GetItemFromID(QString::fromLatin1(id), QStringLiteral("store"))); };
    auto task = newTask();
    for (const char* id : {"c-ada", "c-ben", "c-ada"}) task->Links().Add(*contact(id));   // no check for a link already there
    EXPECT_FALSE(task->Saved());
    ASSERT_EQ(task->Links().Count(), 3);
    EXPECT_EQ(task->Links().Item(3)->Name(), QStringLiteral("Byrne, Ada"));
    EXPECT_EQ(task->Links().Item(2)->Item()->get(QStringLiteral("CompanyName")), Value("Okafor Engineering"));
    EXPECT_EQ(failure([&] { task->Links().Item(4); }).number(), 9);
    auto c = contact("c-ada");
    EXPECT_TRUE(failure([&] { c->set(QStringLiteral("LastFirstNoSpace"), Value("x")); }).description().contains(QStringLiteral("read-only")));
    EXPECT_EQ(failure([&] { c->get(QStringLiteral("Shoe Size")); }).number(), vdir::fail::NoSuchProperty);

    auto count = task->UserProperties().Add(QStringLiteral("Visits"), ol::olInteger);
    EXPECT_EQ(count->Value(), Value(0));
    count->set(Value("7"));
    EXPECT_EQ(count->Value(), Value(7));
    EXPECT_EQ(failure([&] { count->set(Value("many")); }).number(), 13);
    task->UserProperties().Add(QStringLiteral("Billed"), ol::olYesNo);
    EXPECT_EQ(task->UserProperties().Find(QStringLiteral("Billed"))->Value(), Value(false));
    EXPECT_EQ(task->UserProperties().Find(QStringLiteral("Missing")), nullptr);
    EXPECT_TRUE(failure([&] { task->UserProperties().Add(QStringLiteral("Billed"), ol::olText); })
                    .description().contains(QStringLiteral("already")));
    EXPECT_EQ(failure([&] { task->UserProperties().Add(QStringLiteral("Odd"), 99); }).number(), vdir::fail::InvalidArgument);
}
