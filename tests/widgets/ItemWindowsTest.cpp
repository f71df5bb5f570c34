// The task and contact windows on a real vdir, driven by key and mouse events on the offscreen
// platform; what the user did is read back from the files through a fresh store.
#include "ContactWindow.h"
#include "SafeTaskItem.h"
#include "TaskWindow.h"
#include "TempDir.h"
#include "WidgetSupport.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include <QCheckBox>
#include <QDateEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>

namespace steplets::qt {
namespace {

using test::answerNextBox;
using test::child;
using test::press;
using test::showAndWait;
using test::typeInto;

void chooseByKeys(QComboBox* combo, int index)
{
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i) QTest::keyClick(combo, Qt::Key_Down);
}
void saveAndClose(QWidget& w) { QTest::mouseClick(child<QPushButton>(w, QStringLiteral("saveAndClose")), Qt::LeftButton); }

class ItemWindowsTest : public ::testing::Test {
protected:
    ItemWindowsTest()
    {
        test::widgetApp();
        QDir().mkpath(tmp.file(QStringLiteral("tasks")));
        QDir().mkpath(tmp.file(QStringLiteral("contacts")));
        ns = open();
    }
    std::shared_ptr<ol::NameSpace> open()
    {
        vdir::VdirConfig config;
        config.root = tmp.path();
        config.clock = [] { return Date::fromParts(2025, 4, 1, 9, 0); };
        apps.push_back(vdir::openVdirStore(config, nullptr));
        return apps.back()->GetNamespace();
    }
    std::shared_ptr<ol::TaskItem> newTask(const QString& subject, bool save = false)
    {
        auto task = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"))->Items().Add();
        task->set(QStringLiteral("Subject"), subject);
        if (save) task->Save();
        return task;
    }
    // The task as the file holds it, read by a store that has cached nothing.
    std::shared_ptr<ol::TaskItem> fromFile(const std::shared_ptr<ol::TaskItem>& task)
    {
        return ol::asTask(open()->GetItemFromID(task->EntryID(), QStringLiteral("store")));
    }
    QByteArray fileOf(const std::shared_ptr<ol::TaskItem>& task) const
    {
        QFile f(tmp.file(QStringLiteral("tasks/") + task->EntryID() + QStringLiteral(".ics")));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    int taskFiles() const { return QDir(tmp.file(QStringLiteral("tasks"))).entryList({QStringLiteral("*.ics")}, QDir::Files).size(); }

    test::TempDir tmp;
    std::vector<std::shared_ptr<ol::Application>> apps;
    std::shared_ptr<ol::NameSpace> ns;
};

// --- Each field reaches the file ---

TEST_F(ItemWindowsTest, EveryFieldSetOnEitherPageIsInTheFileUnderItsOwnProperty)
{
    auto task = newTask(QStringLiteral("Draft"), true);
    TaskWindow w(*task);
    showAndWait(w);
    typeInto(child(w, QStringLiteral("Subject")), QStringLiteral("Quarterly filing"));
    // A new task has no dates: the user first unticks "None".
    ASSERT_FALSE(child(w, QStringLiteral("StartDate"))->isEnabled());
    press(child(w, QStringLiteral("StartDateNone")));
    press(child(w, QStringLiteral("DueDateNone")));
    child<QDateEdit>(w, QStringLiteral("StartDate"))->setDate(QDate(2025, 4, 7));
    child<QDateEdit>(w, QStringLiteral("DueDate"))->setDate(QDate(2025, 4, 30));
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Status")), ol::olTaskWaiting);
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Importance")), ol::olImportanceHigh);
    typeInto(child(w, QStringLiteral("PercentComplete")), QStringLiteral("40"));
    press(child(w, QStringLiteral("ReminderSet")));
    child<QDateTimeEdit>(w, QStringLiteral("ReminderTime"))->setDateTime(QDateTime(QDate(2025, 4, 29), QTime(9, 15)));
    auto* notes = child(w, QStringLiteral("Body"));
    QTest::keyClicks(notes, QStringLiteral("Ask for the receipts"));
    QTest::keyClick(notes, Qt::Key_Return);
    QTest::keyClicks(notes, QStringLiteral("then file"));
    test::saveScreenshot(&w, QStringLiteral("TaskWindow"));
    // The Details page reaches every other property a template keeps.
    QTabBar* pages = child<QTabWidget>(w, QStringLiteral("pages"))->tabBar();
    QTest::mouseClick(pages, Qt::LeftButton, {}, pages->tabRect(1).center());
    ASSERT_TRUE(child(w, QStringLiteral("details"))->isVisible());
    for (const char* name : {"Categories", "BillingInformation", "Companies", "Mileage", "Role"})
        typeInto(child(w, QLatin1String(name)), QLatin1String(name) + QStringLiteral(" 90"));
    typeInto(child(w, QStringLiteral("ActualWork")), QStringLiteral("90"));
    typeInto(child(w, QStringLiteral("TotalWork")), QStringLiteral("120"));
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Sensitivity")), ol::olPrivate);
    for (const char* box : {"ReminderPlaySound", "ReminderOverrideDefault", "NoAging", "TeamTask"}) press(child(w, QLatin1String(box)));
    typeInto(child(w, QStringLiteral("ReminderSoundFile")), QStringLiteral("ReminderSoundFile 90"));
    saveAndClose(w);
    EXPECT_FALSE(w.isVisible());

    const auto back = fromFile(task);
    const std::pair<const char*, Value> stored[] = {
        {"Subject", Value("Quarterly filing")},    {"Status", Value(int(ol::olTaskWaiting))},
        {"Importance", Value(int(ol::olImportanceHigh))}, {"PercentComplete", Value(40)},
        {"ReminderSet", Value(true)},              {"Categories", Value("Categories 90")},
        {"BillingInformation", Value("BillingInformation 90")}, {"Companies", Value("Companies 90")},
        {"Mileage", Value("Mileage 90")},          {"Role", Value("Role 90")},
        {"ActualWork", Value(90)},                 {"TotalWork", Value(120)},
        {"Sensitivity", Value(int(ol::olPrivate))}, {"ReminderPlaySound", Value(true)},
        {"ReminderOverrideDefault", Value(true)},  {"NoAging", Value(true)},
        {"TeamTask", Value(true)},                 {"ReminderSoundFile", Value("ReminderSoundFile 90")},
        {"StartDate", Value(Date::fromParts(2025, 4, 7))}, {"DueDate", Value(Date::fromParts(2025, 4, 30))},
        {"ReminderTime", Value(Date::fromParts(2025, 4, 29, 9, 15))},
    };
    for (const auto& [name, value] : stored) {
        const Value v = back->get(QString::fromLatin1(name));
        if (value.type() == Value::Type::Text) EXPECT_EQ(v.textOrEmpty(), value.toText()) << name;
        else EXPECT_EQ(v.toDouble(), value.toDouble()) << name;
    }
    SafeTaskItem safe;
    safe.setItem(back);
    EXPECT_EQ(safe.Body(), QStringLiteral("Ask for the receipts\nthen file"));
}

TEST_F(ItemWindowsTest, DatesSetToNoneAndAReminderTurnedOffLeaveTheFile)
{
    auto task = newTask(QStringLiteral("Dated"));
    task->set(QStringLiteral("StartDate"), Date::fromParts(2025, 5, 1));
    task->set(QStringLiteral("DueDate"), Date::fromParts(2025, 5, 9));
    task->set(QStringLiteral("ReminderSet"), true);
    task->set(QStringLiteral("ReminderTime"), Date::fromParts(2025, 5, 8, 8, 0));
    task->Save();
    TaskWindow w(*task);
    showAndWait(w);
    EXPECT_EQ(child<QDateEdit>(w, QStringLiteral("DueDate"))->date(), QDate(2025, 5, 9));
    for (const char* box : {"StartDateNone", "DueDateNone", "ReminderSet"}) press(child(w, QLatin1String(box)));
    EXPECT_FALSE(child(w, QStringLiteral("DueDate"))->isEnabled());
    saveAndClose(w);
    const auto back = fromFile(task);
    EXPECT_TRUE(back->get(QStringLiteral("StartDate")).toDate().isNoDate());
    EXPECT_TRUE(back->get(QStringLiteral("DueDate")).toDate().isNoDate());
    EXPECT_FALSE(back->get(QStringLiteral("ReminderSet")).toBool());
}

TEST_F(ItemWindowsTest, CompletionFollowsStatusAndPercentageBothWays)
{
    auto task = newTask(QStringLiteral("Finish"), true);
    {
        TaskWindow w(*task);
        showAndWait(w);
        typeInto(child(w, QStringLiteral("PercentComplete")), QStringLiteral("100"));
        EXPECT_EQ(child<QComboBox>(w, QStringLiteral("Status"))->currentIndex(), ol::olTaskComplete);
        saveAndClose(w);
    }
    auto back = fromFile(task);
    EXPECT_TRUE(back->get(QStringLiteral("Complete")).toBool());
    TaskWindow w(*back);
    showAndWait(w);
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Status")), ol::olTaskInProgress);
    EXPECT_EQ(child<QSpinBox>(w, QStringLiteral("PercentComplete"))->value(), 0);
    saveAndClose(w);
    back = fromFile(task);
    EXPECT_EQ(back->get(QStringLiteral("Status")).toLong(), ol::olTaskInProgress);
    EXPECT_FALSE(back->get(QStringLiteral("Complete")).toBool());
    EXPECT_TRUE(back->get(QStringLiteral("DateCompleted")).toDate().isNoDate());
}

// --- Recurrence ---

struct PatternCase {
    const char* label;
    int type, interval;
    int dayMask;                // Sunday bit 0 .. Saturday bit 6
    int dayOfMonth, instance, monthOfYear;
    QDate start;
    TaskPatternFields::End end;
    int occurrences;
    QDate endDate;
};

class TaskRecurrenceTest : public ItemWindowsTest, public ::testing::WithParamInterface<PatternCase> {};

TEST_P(TaskRecurrenceTest, EveryPatternMemberChosenInTheWindowIsInTheFileAndShownAgainUnchanged)
{
    const PatternCase& c = GetParam();
    auto task = newTask(QStringLiteral("Recurring"), true);
    TaskWindow w(*task);
    showAndWait(w);
    child<QTabWidget>(w, QStringLiteral("pages"))->setCurrentIndex(1);
    press(child(w, QStringLiteral("recurring")));
    auto* type = child<QComboBox>(w, QStringLiteral("recurrenceType"));
    chooseByKeys(type, type->findData(c.type));
    typeInto(child(w, QStringLiteral("interval")), QString::number(c.interval));
    for (int d = 0; d < 7; ++d)   // greyed for some types, yet kept
        child<QCheckBox>(w, QStringLiteral("dayOfWeek%1").arg(d))->setChecked(c.dayMask & (1 << d));
    child<QSpinBox>(w, QStringLiteral("dayOfMonth"))->setValue(c.dayOfMonth);
    child<QComboBox>(w, QStringLiteral("instance"))->setCurrentIndex(c.instance);
    child<QComboBox>(w, QStringLiteral("monthOfYear"))->setCurrentIndex(c.monthOfYear);
    ASSERT_TRUE(child(w, QStringLiteral("patternStart"))->isEnabled()) << "a new pattern starts on a day";
    child<QDateEdit>(w, QStringLiteral("patternStart"))->setDate(c.start);
    const char* endButton[] = {"endNever", "endAfter", "endBy"};
    press(child(w, QLatin1String(endButton[int(c.end)])));
    if (c.end == TaskPatternFields::End::AfterOccurrences) typeInto(child(w, QStringLiteral("occurrences")), QString::number(c.occurrences));
    if (c.end == TaskPatternFields::End::ByDate) child<QDateEdit>(w, QStringLiteral("endDate"))->setDate(c.endDate);
    test::saveScreenshot(&w, QStringLiteral("TaskWindow-recurrence-") + QLatin1String(c.label));
    saveAndClose(w);

    const auto back = fromFile(task);
    ASSERT_TRUE(back->get(QStringLiteral("IsRecurring")).toBool());
    const auto p = back->GetRecurrencePattern();
    const std::pair<const char*, int> members[] = {
        {"RecurrenceType", c.type}, {"Interval", c.interval}, {"DayOfWeekMask", c.dayMask}, {"DayOfMonth", c.dayOfMonth},
        {"Instance", c.instance}, {"MonthOfYear", c.monthOfYear},
        {"Occurrences", c.end == TaskPatternFields::End::AfterOccurrences ? c.occurrences : 0}};
    for (const auto& [name, value] : members) EXPECT_EQ(p->get(QLatin1String(name)).toLong(), value) << name;
    EXPECT_EQ(p->get(QStringLiteral("NoEndDate")).toBool(), c.end == TaskPatternFields::End::Never);
    EXPECT_EQ(p->get(QStringLiteral("PatternStartDate")).toDate(), Date::fromQDate(c.start));
    if (c.end == TaskPatternFields::End::ByDate) {
        EXPECT_EQ(p->get(QStringLiteral("PatternEndDate")).toDate(), Date::fromQDate(c.endDate));
    }
    TaskWindow again(*back);
    EXPECT_FALSE(again.isModified());
    EXPECT_EQ(again.fields().pattern.end, c.end);
}

INSTANTIATE_TEST_SUITE_P(
    Types, TaskRecurrenceTest,
    ::testing::Values(PatternCase{"weekly", ol::olRecursWeekly, 2, 0b101010, 0, 0, 0, QDate(2025, 4, 7), TaskPatternFields::End::Never, 0, {}},
                      PatternCase{"monthnth", ol::olRecursMonthNth, 3, 0b100, 0, 5, 0, QDate(2025, 4, 29),
                                  TaskPatternFields::End::AfterOccurrences, 6, {}},
                      PatternCase{"yearly", ol::olRecursYearly, 1, 0, 14, 0, 3, QDate(2025, 3, 14), TaskPatternFields::End::ByDate, 0,
                                  QDate(2030, 3, 14)},
                      PatternCase{"monthly", ol::olRecursMonthly, 1, 0, 31, 0, 0, QDate(2025, 1, 31),
                                  TaskPatternFields::End::AfterOccurrences, 12, {}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(ItemWindowsTest, RecurrenceChangedOrTurnedOffInTheWindowChangesTheFile)
{
    auto task = newTask(QStringLiteral("Weekly report"));
    auto p = task->GetRecurrencePattern();
    p->set(QStringLiteral("RecurrenceType"), ol::olRecursWeekly);
    p->set(QStringLiteral("DayOfWeekMask"), ol::olFriday);
    p->set(QStringLiteral("Occurrences"), 4);
    task->Save();
    {
        TaskWindow w(*task);
        showAndWait(w);
        EXPECT_TRUE(child<QCheckBox>(w, QStringLiteral("dayOfWeek5"))->isChecked());
        EXPECT_TRUE(child<QRadioButton>(w, QStringLiteral("endAfter"))->isChecked());
        press(child(w, QStringLiteral("endBy")));
        child<QDateEdit>(w, QStringLiteral("endDate"))->setDate(QDate(2025, 12, 19));
        saveAndClose(w);
    }
    auto back = fromFile(task);
    p = back->GetRecurrencePattern();
    EXPECT_EQ(p->get(QStringLiteral("Occurrences")).toLong(), 0);
    EXPECT_EQ(p->get(QStringLiteral("PatternEndDate")).toDate(), Date::fromParts(2025, 12, 19));
    EXPECT_EQ(p->get(QStringLiteral("DayOfWeekMask")).toLong(), ol::olFriday);
    TaskWindow w(*back);
    showAndWait(w);
    press(child(w, QStringLiteral("recurring")));
    saveAndClose(w);
    EXPECT_FALSE(fromFile(task)->get(QStringLiteral("IsRecurring")).toBool());
}

// --- Closing, sending ---

// No discarding a change is played by the scenario files on the Qt host.
TEST_F(ItemWindowsTest, ClosingAsksOnlyAboutAChangeAndCancelStaysYesSaves)
{
    auto task = newTask(QStringLiteral("Before"), true);
    const QByteArray before = fileOf(task);
    {
        TaskWindow w(*task);
        showAndWait(w);
        const auto box = answerNextBox(QMessageBox::Yes);
        QTest::keyClick(&w, Qt::Key_Escape);
        EXPECT_FALSE(box->seen) << "nothing changed, nothing asked";
        EXPECT_FALSE(w.isVisible());
    }
    EXPECT_EQ(fileOf(task), before);

    TaskWindow w(*task);
    showAndWait(w);
    typeInto(child(w, QStringLiteral("Subject")), QStringLiteral("After"));
    auto box = answerNextBox(QMessageBox::Cancel);
    QTest::keyClick(&w, Qt::Key_Escape);
    ASSERT_TRUE(box->seen);
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(fromFile(task)->Subject(), QStringLiteral("Before"));
    box = answerNextBox(QMessageBox::Yes);
    w.close();
    ASSERT_TRUE(box->seen);
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(fromFile(task)->Subject(), QStringLiteral("After"));
}

TEST_F(ItemWindowsTest, OnlyAnAssignedTaskHasAToLineAndSendWhichNeedsIt)
{
    auto plain = newTask(QStringLiteral("Mine"));
    TaskWindow mine(*plain);
    EXPECT_EQ(mine.findChild<QPushButton*>(QStringLiteral("send")), nullptr);
    EXPECT_FALSE(child(mine, QStringLiteral("To"))->isVisibleTo(&mine));

    auto task = newTask(QStringLiteral("Hand over"));
    task->Assign();
    TaskWindow w(*task);
    showAndWait(w);
    auto box = answerNextBox(QMessageBox::Ok);
    QTest::mouseClick(child(w, QStringLiteral("send")), Qt::LeftButton);
    ASSERT_TRUE(box->seen);
    EXPECT_TRUE(box->text.contains(QStringLiteral("To")));
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(taskFiles(), 0);
    typeInto(child(w, QStringLiteral("To")), QStringLiteral("Pat Lee"));
    test::saveScreenshot(&w, QStringLiteral("TaskWindow-assigned"));
    QTest::mouseClick(child(w, QStringLiteral("send")), Qt::LeftButton);
    EXPECT_FALSE(w.isVisible());
    const auto back = fromFile(task);
    EXPECT_EQ(back->get(QStringLiteral("To")).toText(), QStringLiteral("Pat Lee"));
    EXPECT_EQ(back->get(QStringLiteral("DelegationState")).toLong(), 1);
    EXPECT_EQ(back->Subject(), QStringLiteral("Hand over"));
}

TEST_F(ItemWindowsTest, TheContactWindowShowsTheCardReadOnly)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    const vdir::DemoContact& demo = vdir::demoContacts().at(1);
    auto contact = ol::asContact(ns->GetItemFromID(demo.entryId, QStringLiteral("store")));
    ContactWindow w(*contact);
    showAndWait(w);
    test::saveScreenshot(&w, QStringLiteral("ContactWindow"));
    EXPECT_EQ(QStringList({w.shown(QStringLiteral("FullName")), w.shown(QStringLiteral("CompanyName")),
                           w.shown(QStringLiteral("Email1Address")), w.shown(QStringLiteral("BusinessTelephoneNumber"))}),
              QStringList({demo.fullName(), demo.companyName, demo.email, demo.phone}));
    EXPECT_TRUE(w.shown(QStringLiteral("BusinessAddress")).contains(demo.street) &&
                w.shown(QStringLiteral("BusinessAddress")).contains(demo.city));
    EXPECT_EQ(w.findChild<QWidget*>(QStringLiteral("PagerNumber")), nullptr);
    // Nothing on it looks or acts like a field that could be edited.
    EXPECT_TRUE(w.findChildren<QLineEdit*>().isEmpty());
    EXPECT_TRUE(w.findChildren<QPlainTextEdit*>().isEmpty());
    const auto flags = child<QLabel>(w, QStringLiteral("CompanyName"))->textInteractionFlags();
    EXPECT_TRUE(!(flags & Qt::TextEditable) && (flags & Qt::TextSelectableByMouse));
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(contact->Saved());
}

} // namespace
} // namespace steplets::qt
