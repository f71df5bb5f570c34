// The task and contact windows on a real vdir, driven by key and mouse events on the offscreen
// platform; what the user did is read back from the files through a fresh store.
#include "ContactWindow.h"
#include "ItemWindows.h"
#include "SafeTaskItem.h"
#include "TaskWindow.h"
#include "TempDir.h"
// Screenshots go where the build says; a build that does not say keeps them beside the test.
#ifndef STEPLETS_WIDGET_ARTIFACTS
#define STEPLETS_WIDGET_ARTIFACTS "screenshots"
#endif
#include "WidgetSupport.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

namespace steplets::qt {
namespace {

// The person at the screen for message boxes: answers the next one that shows with `button`
// and remembers its text. Gives up after a few seconds, so a missing box fails the test.
struct MessageBoxAnswer {
    QString text;
    bool seen = false;
};
std::shared_ptr<MessageBoxAnswer> answerNextBox(QMessageBox::StandardButton button)
{
    auto state = std::make_shared<MessageBoxAnswer>();
    auto tries = std::make_shared<int>(0);
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [state, tries, poll, button] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            state->seen = true;
            state->text = box->text();
            box->button(button)->click();
            *poll = nullptr;
        } else if (++*tries < 300) {
            QTimer::singleShot(10, [poll] { if (*poll) (*poll)(); });
        } else {
            *poll = nullptr;
        }
    };
    QTimer::singleShot(0, [poll] { if (*poll) (*poll)(); });
    return state;
}

template <typename W>
W* child(QWidget& parent, const char* name)
{
    W* w = parent.findChild<W*>(QString::fromLatin1(name));
    EXPECT_NE(w, nullptr) << "no widget " << name;
    return w;
}

void typeInto(QWidget* w, const QString& text)
{
    QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(w, text);
}

void chooseByKeys(QComboBox* combo, int index)
{
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(combo, Qt::Key_Down);
}

void press(QWidget* button) { QTest::keyClick(button, Qt::Key_Space); }

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
    std::shared_ptr<ol::TaskItem> newTask(const QString& subject)
    {
        auto task = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"))->Items().Add();
        task->set(QStringLiteral("Subject"), subject);
        return task;
    }
    std::shared_ptr<ol::TaskItem> savedTask(const QString& subject)
    {
        auto task = newTask(subject);
        task->Save();
        return task;
    }
    // The task as the file holds it, read by a store that has cached nothing.
    std::shared_ptr<ol::TaskItem> fromFile(const QString& entryID)
    {
        return ol::asTask(open()->GetItemFromID(entryID, QStringLiteral("store")));
    }
    int taskFiles() const
    {
        return QDir(tmp.file(QStringLiteral("tasks"))).entryList({QStringLiteral("*.ics")}, QDir::Files).size();
    }
    static QString body(const std::shared_ptr<ol::TaskItem>& task)
    {
        SafeTaskItem safe;
        safe.setItem(task);
        return safe.Body();
    }
    static void showAndWait(QWidget& w)
    {
        w.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    }

    test::TempDir tmp;
    std::vector<std::shared_ptr<ol::Application>> apps;
    std::shared_ptr<ol::NameSpace> ns;
};

// --- Each field reaches the file ---

TEST_F(ItemWindowsTest, TaskFieldsTypedByTheUserAreInTheFileAfterSaveAndClose)
{
    auto task = savedTask(QStringLiteral("Draft"));
    TaskWindow w(*task);
    showAndWait(w);
    typeInto(child<QLineEdit>(w, "Subject"), QStringLiteral("Quarterly filing"));
    // A new task has no dates: the user first unticks "None".
    ASSERT_FALSE(child<QDateEdit>(w, "StartDate")->isEnabled());
    press(child<QCheckBox>(w, "StartDateNone"));
    press(child<QCheckBox>(w, "DueDateNone"));
    child<QDateEdit>(w, "StartDate")->setDate(QDate(2025, 4, 7));
    child<QDateEdit>(w, "DueDate")->setDate(QDate(2025, 4, 30));
    chooseByKeys(child<QComboBox>(w, "Status"), ol::olTaskWaiting);
    chooseByKeys(child<QComboBox>(w, "Importance"), ol::olImportanceHigh);
    typeInto(child<QSpinBox>(w, "PercentComplete"), QStringLiteral("40"));
    press(child<QCheckBox>(w, "ReminderSet"));
    child<QDateTimeEdit>(w, "ReminderTime")->setDateTime(QDateTime(QDate(2025, 4, 29), QTime(9, 15)));
    auto* notes = child<QPlainTextEdit>(w, "Body");
    QTest::keyClicks(notes, QStringLiteral("Ask for the receipts"));
    QTest::keyClick(notes, Qt::Key_Return);
    QTest::keyClicks(notes, QStringLiteral("then file"));
    test::saveScreenshot(&w, QStringLiteral("TaskWindow"));
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);
    EXPECT_FALSE(w.isVisible());

    const auto back = fromFile(task->EntryID());
    EXPECT_EQ(back->Subject(), QStringLiteral("Quarterly filing"));
    EXPECT_EQ(back->get(QStringLiteral("StartDate")).toDate(), Date::fromParts(2025, 4, 7));
    EXPECT_EQ(back->get(QStringLiteral("DueDate")).toDate(), Date::fromParts(2025, 4, 30));
    EXPECT_EQ(back->get(QStringLiteral("Status")).toLong(), ol::olTaskWaiting);
    EXPECT_EQ(back->get(QStringLiteral("Importance")).toLong(), ol::olImportanceHigh);
    EXPECT_EQ(back->get(QStringLiteral("PercentComplete")).toLong(), 40);
    EXPECT_TRUE(back->get(QStringLiteral("ReminderSet")).toBool());
    EXPECT_EQ(back->get(QStringLiteral("ReminderTime")).toDate(), Date::fromParts(2025, 4, 29, 9, 15));
    EXPECT_EQ(body(back), QStringLiteral("Ask for the receipts\nthen file"));
}

// The Details page reaches every other property a template keeps: each field typed, chosen or
// ticked there is in the file after Save and Close, under its own property.
TEST_F(ItemWindowsTest, EveryDetailSetOnTheSecondPageIsInTheFile)
{
    auto task = savedTask(QStringLiteral("Details"));
    TaskWindow w(*task);
    showAndWait(w);
    auto* pages = child<QTabWidget>(w, "pages");
    QTest::mouseClick(pages->tabBar(), Qt::LeftButton, {}, pages->tabBar()->tabRect(1).center());
    ASSERT_TRUE(child<QWidget>(w, "details")->isVisible());
    const std::pair<const char*, QString> texts[] = {
        {"Categories", QStringLiteral("Taxes, Quarterly")}, {"BillingInformation", QStringLiteral("Fixed fee")},
        {"Companies", QStringLiteral("Byrne & Lowell")},     {"Mileage", QStringLiteral("42 km")},
        {"Role", QStringLiteral("Reviewer")},               {"ActualWork", QStringLiteral("90")},
        {"TotalWork", QStringLiteral("120")},
    };
    for (const auto& [name, text] : texts) typeInto(child<QWidget>(w, name), text);
    chooseByKeys(child<QComboBox>(w, "Sensitivity"), ol::olPrivate);
    for (const char* box : {"ReminderPlaySound", "ReminderOverrideDefault", "NoAging", "TeamTask"}) press(child<QCheckBox>(w, box));
    typeInto(child<QLineEdit>(w, "ReminderSoundFile"), QStringLiteral("/usr/share/sounds/bell.oga"));
    test::saveScreenshot(&w, QStringLiteral("TaskWindow-details"));
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);

    const auto back = fromFile(task->EntryID());
    const std::pair<const char*, Value> stored[] = {
        {"Categories", Value("Taxes, Quarterly")}, {"BillingInformation", Value("Fixed fee")},
        {"Companies", Value("Byrne & Lowell")},     {"Mileage", Value("42 km")},
        {"Role", Value("Reviewer")},               {"ActualWork", Value(90)},
        {"TotalWork", Value(120)},                 {"Sensitivity", Value(int(ol::olPrivate))},
        {"ReminderPlaySound", Value(true)},        {"ReminderOverrideDefault", Value(true)},
        {"NoAging", Value(true)},                  {"TeamTask", Value(true)},
        {"ReminderSoundFile", Value("/usr/share/sounds/bell.oga")},
    };
    for (const auto& [name, value] : stored) {
        const Value v = back->get(QString::fromLatin1(name));
        if (value.type() == Value::Type::Text) EXPECT_EQ(v.textOrEmpty(), value.toText()) << name;
        else EXPECT_EQ(v.toDouble(), value.toDouble()) << name;
    }
}

TEST_F(ItemWindowsTest, TaskDatesSetToNoneAndAReminderTurnedOffLeaveTheFile)
{
    auto task = newTask(QStringLiteral("Dated"));
    task->set(QStringLiteral("StartDate"), Date::fromParts(2025, 5, 1));
    task->set(QStringLiteral("DueDate"), Date::fromParts(2025, 5, 9));
    task->set(QStringLiteral("ReminderSet"), true);
    task->set(QStringLiteral("ReminderTime"), Date::fromParts(2025, 5, 8, 8, 0));
    task->Save();
    TaskWindow w(*task);
    showAndWait(w);
    EXPECT_EQ(child<QDateEdit>(w, "DueDate")->date(), QDate(2025, 5, 9));
    press(child<QCheckBox>(w, "StartDateNone"));
    press(child<QCheckBox>(w, "DueDateNone"));
    press(child<QCheckBox>(w, "ReminderSet"));
    EXPECT_FALSE(child<QDateEdit>(w, "DueDate")->isEnabled());
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);

    const auto back = fromFile(task->EntryID());
    EXPECT_TRUE(back->get(QStringLiteral("StartDate")).toDate().isNoDate());
    EXPECT_TRUE(back->get(QStringLiteral("DueDate")).toDate().isNoDate());
    EXPECT_FALSE(back->get(QStringLiteral("ReminderSet")).toBool());
}

TEST_F(ItemWindowsTest, TaskCompletionFollowsStatusAndPercentageBothWays)
{
    auto task = savedTask(QStringLiteral("Finish"));
    {
        TaskWindow w(*task);
        showAndWait(w);
        typeInto(child<QSpinBox>(w, "PercentComplete"), QStringLiteral("100"));
        EXPECT_EQ(child<QComboBox>(w, "Status")->currentIndex(), ol::olTaskComplete);
        QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);
    }
    auto back = fromFile(task->EntryID());
    EXPECT_EQ(back->get(QStringLiteral("Status")).toLong(), ol::olTaskComplete);
    EXPECT_TRUE(back->get(QStringLiteral("Complete")).toBool());

    TaskWindow w(*back);
    showAndWait(w);
    EXPECT_EQ(child<QSpinBox>(w, "PercentComplete")->value(), 100);
    chooseByKeys(child<QComboBox>(w, "Status"), ol::olTaskInProgress);
    EXPECT_EQ(child<QSpinBox>(w, "PercentComplete")->value(), 0);
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);
    back = fromFile(task->EntryID());
    EXPECT_EQ(back->get(QStringLiteral("Status")).toLong(), ol::olTaskInProgress);
    EXPECT_FALSE(back->get(QStringLiteral("Complete")).toBool());
    EXPECT_TRUE(back->get(QStringLiteral("DateCompleted")).toDate().isNoDate());
}

// --- Recurrence ---

struct PatternCase {
    const char* label;
    int type;
    int interval;
    QList<int> days;            // Sunday 0 .. Saturday 6
    int dayOfMonth;
    int instance;
    int monthOfYear;
    QDate start;
    TaskPatternFields::End end;
    int occurrences;
    QDate endDate;
};

class TaskRecurrenceTest : public ItemWindowsTest, public ::testing::WithParamInterface<PatternCase> {};

TEST_P(TaskRecurrenceTest, EveryPatternMemberChosenInTheWindowIsInTheFile)
{
    const PatternCase& c = GetParam();
    auto task = savedTask(QStringLiteral("Recurring"));
    TaskWindow w(*task);
    showAndWait(w);
    child<QTabWidget>(w, "pages")->setCurrentIndex(1);
    press(child<QCheckBox>(w, "recurring"));
    auto* type = child<QComboBox>(w, "recurrenceType");
    chooseByKeys(type, type->findData(c.type));
    typeInto(child<QSpinBox>(w, "interval"), QString::number(c.interval));
    for (int d = 0; d < 7; ++d) {
        auto* box = child<QCheckBox>(w, QStringLiteral("dayOfWeek%1").arg(d).toLatin1().constData());
        if (box->isChecked() != c.days.contains(d))
            box->setChecked(c.days.contains(d));   // greyed for some types, yet kept
    }
    child<QSpinBox>(w, "dayOfMonth")->setValue(c.dayOfMonth);
    child<QComboBox>(w, "instance")->setCurrentIndex(c.instance);
    child<QComboBox>(w, "monthOfYear")->setCurrentIndex(c.monthOfYear);
    ASSERT_TRUE(child<QDateEdit>(w, "patternStart")->isEnabled()) << "a new pattern starts on a day";
    child<QDateEdit>(w, "patternStart")->setDate(c.start);
    switch (c.end) {
    case TaskPatternFields::End::Never: press(child<QRadioButton>(w, "endNever")); break;
    case TaskPatternFields::End::AfterOccurrences:
        press(child<QRadioButton>(w, "endAfter"));
        typeInto(child<QSpinBox>(w, "occurrences"), QString::number(c.occurrences));
        break;
    case TaskPatternFields::End::ByDate:
        press(child<QRadioButton>(w, "endBy"));
        child<QDateEdit>(w, "endDate")->setDate(c.endDate);
        break;
    }
    test::saveScreenshot(&w, QStringLiteral("TaskWindow-recurrence-") + QString::fromLatin1(c.label));
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);

    const auto back = fromFile(task->EntryID());
    ASSERT_TRUE(back->get(QStringLiteral("IsRecurring")).toBool());
    const auto p = back->GetRecurrencePattern();
    int mask = 0;
    for (int d : c.days)
        mask |= 1 << d;
    EXPECT_EQ(p->get(QStringLiteral("RecurrenceType")).toLong(), c.type);
    EXPECT_EQ(p->get(QStringLiteral("Interval")).toLong(), c.interval);
    EXPECT_EQ(p->get(QStringLiteral("DayOfWeekMask")).toLong(), mask);
    EXPECT_EQ(p->get(QStringLiteral("DayOfMonth")).toLong(), c.dayOfMonth);
    EXPECT_EQ(p->get(QStringLiteral("Instance")).toLong(), c.instance);
    EXPECT_EQ(p->get(QStringLiteral("MonthOfYear")).toLong(), c.monthOfYear);
    EXPECT_EQ(p->get(QStringLiteral("PatternStartDate")).toDate(), Date::fromQDate(c.start));
    EXPECT_EQ(p->get(QStringLiteral("NoEndDate")).toBool(), c.end == TaskPatternFields::End::Never);
    EXPECT_EQ(p->get(QStringLiteral("Occurrences")).toLong(),
              c.end == TaskPatternFields::End::AfterOccurrences ? c.occurrences : 0);
    if (c.end == TaskPatternFields::End::ByDate) {
        EXPECT_EQ(p->get(QStringLiteral("PatternEndDate")).toDate(), Date::fromQDate(c.endDate));
    }

    // Opened again, the window shows what it wrote: nothing counts as changed.
    TaskWindow again(*back);
    EXPECT_FALSE(again.isModified());
    EXPECT_EQ(again.fields().pattern.end, c.end);
}

INSTANTIATE_TEST_SUITE_P(
    Types, TaskRecurrenceTest,
    ::testing::Values(
        PatternCase{"weekly", ol::olRecursWeekly, 2, {1, 3, 5}, 0, 0, 0, QDate(2025, 4, 7),
                    TaskPatternFields::End::Never, 0, {}},
        PatternCase{"monthnth", ol::olRecursMonthNth, 3, {2}, 0, 5, 0, QDate(2025, 4, 29),
                    TaskPatternFields::End::AfterOccurrences, 6, {}},
        PatternCase{"yearly", ol::olRecursYearly, 1, {}, 14, 0, 3, QDate(2025, 3, 14),
                    TaskPatternFields::End::ByDate, 0, QDate(2030, 3, 14)},
        PatternCase{"monthly", ol::olRecursMonthly, 1, {}, 31, 0, 0, QDate(2025, 1, 31),
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
        EXPECT_TRUE(child<QCheckBox>(w, "dayOfWeek5")->isChecked());
        EXPECT_TRUE(child<QRadioButton>(w, "endAfter")->isChecked());
        press(child<QRadioButton>(w, "endBy"));
        child<QDateEdit>(w, "endDate")->setDate(QDate(2025, 12, 19));
        QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);
    }
    auto back = fromFile(task->EntryID());
    p = back->GetRecurrencePattern();
    EXPECT_EQ(p->get(QStringLiteral("Occurrences")).toLong(), 0);
    EXPECT_EQ(p->get(QStringLiteral("PatternEndDate")).toDate(), Date::fromParts(2025, 12, 19));
    EXPECT_EQ(p->get(QStringLiteral("DayOfWeekMask")).toLong(), ol::olFriday);

    TaskWindow w(*back);
    showAndWait(w);
    press(child<QCheckBox>(w, "recurring"));
    QTest::mouseClick(child<QPushButton>(w, "saveAndClose"), Qt::LeftButton);
    EXPECT_FALSE(fromFile(task->EntryID())->get(QStringLiteral("IsRecurring")).toBool());
}

// --- Closing ---

TEST_F(ItemWindowsTest, ClosingAChangedNewTaskWithoutSavingLeavesNoFile)
{
    auto task = newTask(QStringLiteral("Never kept"));
    TaskWindow w(*task);
    showAndWait(w);
    typeInto(child<QLineEdit>(w, "Subject"), QStringLiteral("Changed"));
    const auto box = answerNextBox(QMessageBox::No);
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_TRUE(box->seen);
    EXPECT_FALSE(w.isVisible());
    EXPECT_FALSE(task->Saved());
    EXPECT_EQ(taskFiles(), 0);
}

TEST_F(ItemWindowsTest, ClosingAChangedTaskAsksAndCancelStaysYesSaves)
{
    auto task = savedTask(QStringLiteral("Before"));
    TaskWindow w(*task);
    showAndWait(w);
    typeInto(child<QLineEdit>(w, "Subject"), QStringLiteral("After"));

    auto box = answerNextBox(QMessageBox::Cancel);
    QTest::keyClick(&w, Qt::Key_Escape);
    ASSERT_TRUE(box->seen);
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(fromFile(task->EntryID())->Subject(), QStringLiteral("Before"));

    box = answerNextBox(QMessageBox::Yes);
    w.close();
    ASSERT_TRUE(box->seen);
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(fromFile(task->EntryID())->Subject(), QStringLiteral("After"));
}

TEST_F(ItemWindowsTest, ClosingAnUnchangedTaskAsksNothing)
{
    auto task = savedTask(QStringLiteral("Untouched"));
    const QByteArray before = [&] {
        QFile f(tmp.file(QStringLiteral("tasks/") + task->EntryID() + QStringLiteral(".ics")));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    TaskWindow w(*task);
    showAndWait(w);
    EXPECT_FALSE(w.isModified());
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    QFile f(tmp.file(QStringLiteral("tasks/") + task->EntryID() + QStringLiteral(".ics")));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), before);
}

TEST_F(ItemWindowsTest, ShowTaskWindowIsModalAndReturnsOnceClosed)
{
    auto task = newTask(QStringLiteral("Through the entry point"));
    bool sawWindow = false;
    QTimer::singleShot(0, [&] {
        auto* w = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        sawWindow = w && w->objectName() == QStringLiteral("TaskWindow") && w->windowTitle().startsWith(QStringLiteral("Through"));
        if (w)
            QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("saveAndClose")), Qt::LeftButton);
    });
    showTaskWindow(nullptr, *task);
    EXPECT_TRUE(sawWindow);
    EXPECT_TRUE(task->Saved());
    EXPECT_EQ(taskFiles(), 1);
}

// --- Assigned tasks ---

TEST_F(ItemWindowsTest, OnlyAnAssignedTaskHasAToLineAndSend)
{
    auto plain = savedTask(QStringLiteral("Mine"));
    TaskWindow mine(*plain);
    EXPECT_EQ(mine.findChild<QPushButton*>(QStringLiteral("send")), nullptr);
    EXPECT_FALSE(mine.findChild<QLineEdit*>(QStringLiteral("To"))->isVisibleTo(&mine));

    auto assigned = newTask(QStringLiteral("Theirs"));
    assigned->Assign();
    TaskWindow theirs(*assigned);
    EXPECT_NE(theirs.findChild<QPushButton*>(QStringLiteral("send")), nullptr);
    EXPECT_TRUE(theirs.findChild<QLineEdit*>(QStringLiteral("To"))->isVisibleTo(&theirs));
}

TEST_F(ItemWindowsTest, SendWithoutAToIsRefusedAndSendWithOneSaves)
{
    auto task = newTask(QStringLiteral("Hand over"));
    task->Assign();
    TaskWindow w(*task);
    showAndWait(w);
    auto box = answerNextBox(QMessageBox::Ok);
    QTest::mouseClick(child<QPushButton>(w, "send"), Qt::LeftButton);
    ASSERT_TRUE(box->seen);
    EXPECT_TRUE(box->text.contains(QStringLiteral("To")));
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(taskFiles(), 0);

    typeInto(child<QLineEdit>(w, "To"), QStringLiteral("Pat Lee"));
    test::saveScreenshot(&w, QStringLiteral("TaskWindow-assigned"));
    QTest::mouseClick(child<QPushButton>(w, "send"), Qt::LeftButton);
    EXPECT_FALSE(w.isVisible());
    ASSERT_TRUE(task->Saved());
    const auto back = fromFile(task->EntryID());
    EXPECT_EQ(back->get(QStringLiteral("To")).toText(), QStringLiteral("Pat Lee"));
    EXPECT_EQ(back->get(QStringLiteral("DelegationState")).toLong(), 1);
    EXPECT_EQ(back->Subject(), QStringLiteral("Hand over"));
}

// --- Contact window ---

TEST_F(ItemWindowsTest, ContactWindowShowsTheCardReadOnly)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    const vdir::DemoContact& demo = vdir::demoContacts().at(1);
    auto contact = ol::asContact(ns->GetItemFromID(demo.entryId, QStringLiteral("store")));
    ContactWindow w(*contact);
    showAndWait(w);
    test::saveScreenshot(&w, QStringLiteral("ContactWindow"));

    EXPECT_EQ(w.shown(QStringLiteral("FullName")), demo.fullName());
    EXPECT_EQ(w.shown(QStringLiteral("CompanyName")), demo.companyName);
    EXPECT_EQ(w.shown(QStringLiteral("Email1Address")), demo.email);
    EXPECT_EQ(w.shown(QStringLiteral("BusinessTelephoneNumber")), demo.phone);
    EXPECT_TRUE(w.shown(QStringLiteral("BusinessAddress")).contains(demo.street));
    EXPECT_TRUE(w.shown(QStringLiteral("BusinessAddress")).contains(demo.city));
    EXPECT_EQ(w.findChild<QWidget*>(QStringLiteral("PagerNumber")), nullptr);
    // Nothing on it looks or acts like a field that could be edited.
    EXPECT_TRUE(w.findChildren<QLineEdit*>().isEmpty());
    EXPECT_TRUE(w.findChildren<QPlainTextEdit*>().isEmpty());
    auto* company = w.findChild<QLabel*>(QStringLiteral("CompanyName"));
    ASSERT_NE(company, nullptr);
    EXPECT_FALSE(company->textInteractionFlags() & Qt::TextEditable);
    EXPECT_TRUE(company->textInteractionFlags() & Qt::TextSelectableByMouse);
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(contact->Saved());
}

TEST_F(ItemWindowsTest, ShowContactWindowReturnsWhenClosed)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    auto contact = ol::asContact(ns->GetItemFromID(vdir::demoUser().entryId, QStringLiteral("store")));
    QString title;
    QTimer::singleShot(0, [&] {
        if (auto* w = QApplication::activeModalWidget()) {
            title = w->windowTitle();
            QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("close")), Qt::LeftButton);
        }
    });
    showContactWindow(nullptr, *contact);
    EXPECT_EQ(title, contact->FileAs() + QStringLiteral(" - Contact"));
}

} // namespace
} // namespace steplets::qt
