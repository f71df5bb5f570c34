// The task and contact windows on a real vdir, driven by key and mouse events on the offscreen
// platform; what the user did is read back from the files through a fresh store. The fields the
// scenario files fill in on the Qt host (subject, dates, reminder, notes, categories) are theirs.
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

using test::child;
using test::press;
using test::showAndWait;
using test::typeInto;

void chooseByKeys(QComboBox* combo, int index)
{
    for (int i = -1; i < index; ++i) QTest::keyClick(combo, i < 0 ? Qt::Key_Home : Qt::Key_Down);
}
void saveAndClose(QWidget& w) { QTest::mouseClick(child<QPushButton>(w, QStringLiteral("saveAndClose")), Qt::LeftButton); }

class ItemWindowsTest : public ::testing::Test {
protected:
    ItemWindowsTest()
    {
        test::widgetApp();
        QDir().mkpath(tmp.file(QStringLiteral("tasks")));
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
    std::shared_ptr<ol::TaskItem> newTask(const QString& subject, bool save = true)
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

    test::TempDir tmp;
    std::vector<std::shared_ptr<ol::Application>> apps;
    std::shared_ptr<ol::NameSpace> ns;
};

// One field of each kind on either page; Return in the notes is a new line, not the default button.
TEST_F(ItemWindowsTest, EveryKindOfFieldOnEitherPageIsInTheFileUnderItsOwnProperty)
{
    auto task = newTask(QStringLiteral("Draft"));
    TaskWindow w(*task);
    showAndWait(w);
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Status")), ol::olTaskWaiting);
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Importance")), ol::olImportanceHigh);
    typeInto(child(w, QStringLiteral("PercentComplete")), QStringLiteral("40"));
    auto* notes = child(w, QStringLiteral("Body"));
    QTest::keyClicks(notes, QStringLiteral("Ask for the receipts"));
    QTest::keyClick(notes, Qt::Key_Return);
    QTest::keyClicks(notes, QStringLiteral("then file"));
    QTabBar* pages = child<QTabWidget>(w, QStringLiteral("pages"))->tabBar();
    QTest::mouseClick(pages, Qt::LeftButton, {}, pages->tabRect(1).center());
    ASSERT_TRUE(child(w, QStringLiteral("details"))->isVisible());
    typeInto(child(w, QStringLiteral("BillingInformation")), QStringLiteral("Client 90"));
    typeInto(child(w, QStringLiteral("TotalWork")), QStringLiteral("120"));
    chooseByKeys(child<QComboBox>(w, QStringLiteral("Sensitivity")), ol::olPrivate);
    press(child(w, QStringLiteral("TeamTask")));
    saveAndClose(w);
    EXPECT_FALSE(w.isVisible());

    const auto back = fromFile(task);
    const std::pair<const char*, Value> stored[] = {
        {"Status", Value(int(ol::olTaskWaiting))}, {"Importance", Value(int(ol::olImportanceHigh))}, {"PercentComplete", Value(40)},
        {"BillingInformation", Value("Client 90")}, {"TotalWork", Value(120)}, {"Sensitivity", Value(int(ol::olPrivate))},
        {"TeamTask", Value(true)}};
    for (const auto& [name, value] : stored) {
        const Value v = back->get(QString::fromLatin1(name));
        if (value.type() == Value::Type::Text) EXPECT_EQ(v.textOrEmpty(), value.toText()) << name;
        else EXPECT_EQ(v.toDouble(), value.toDouble()) << name;
    }
    SafeTaskItem safe;
    safe.setItem(back);
    EXPECT_EQ(safe.Body(), QStringLiteral("Ask for the receipts\nthen file"));
}

// Dates set to none, a reminder turned off, then completion following status and percentage.
TEST_F(ItemWindowsTest, DatesAndReminderTurnedOffLeaveTheFileAndCompletionFollowsStatusAndPercentageBothWays)
{
    auto task = newTask(QStringLiteral("Dated"), false);
    task->set(QStringLiteral("StartDate"), Date::fromParts(2025, 5, 1));
    task->set(QStringLiteral("DueDate"), Date::fromParts(2025, 5, 9));
    task->set(QStringLiteral("ReminderSet"), true);
    task->set(QStringLiteral("ReminderTime"), Date::fromParts(2025, 5, 8, 8, 0));
    task->Save();
    {
        TaskWindow w(*task);
        showAndWait(w);
        EXPECT_EQ(child<QDateEdit>(w, QStringLiteral("DueDate"))->date(), QDate(2025, 5, 9));
        for (const char* box : {"StartDateNone", "DueDateNone", "ReminderSet"}) press(child(w, QLatin1String(box)));
        EXPECT_FALSE(child(w, QStringLiteral("DueDate"))->isEnabled());
        typeInto(child(w, QStringLiteral("PercentComplete")), QStringLiteral("100"));
        EXPECT_EQ(child<QComboBox>(w, QStringLiteral("Status"))->currentIndex(), ol::olTaskComplete);
        saveAndClose(w);
    }
    auto back = fromFile(task);
    EXPECT_TRUE(back->get(QStringLiteral("StartDate")).toDate().isNoDate());
    EXPECT_TRUE(back->get(QStringLiteral("DueDate")).toDate().isNoDate());
    EXPECT_FALSE(back->get(QStringLiteral("ReminderSet")).toBool());
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

using End = TaskPatternFields::End;
struct PatternCase {
    const char* label;
    int type, interval, dayMask;   // Sunday bit 0 .. Saturday bit 6
    int dayOfMonth, instance, monthOfYear;
    QDate start;
    End end;
    int occurrences;
    QDate endDate;
};

class TaskRecurrenceTest : public ItemWindowsTest, public ::testing::WithParamInterface<PatternCase> {};

TEST_P(TaskRecurrenceTest, EveryPatternMemberChosenInTheWindowIsInTheFileAndShownAgainUnchanged)
{
    const PatternCase& c = GetParam();
    auto task = newTask(QStringLiteral("Recurring"));
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
    press(child(w, QLatin1String(std::array{"endNever", "endAfter", "endBy"}[int(c.end)])));
    if (c.end == End::AfterOccurrences) typeInto(child(w, QStringLiteral("occurrences")), QString::number(c.occurrences));
    if (c.end == End::ByDate) child<QDateEdit>(w, QStringLiteral("endDate"))->setDate(c.endDate);
    saveAndClose(w);

    const auto back = fromFile(task);
    ASSERT_TRUE(back->get(QStringLiteral("IsRecurring")).toBool());
    const auto p = back->GetRecurrencePattern();
    const std::pair<const char*, int> members[] = {
        {"RecurrenceType", c.type}, {"Interval", c.interval}, {"DayOfWeekMask", c.dayMask}, {"DayOfMonth", c.dayOfMonth},
        {"Instance", c.instance}, {"MonthOfYear", c.monthOfYear}, {"Occurrences", c.end == End::AfterOccurrences ? c.occurrences : 0}};
    for (const auto& [name, value] : members) EXPECT_EQ(p->get(QLatin1String(name)).toLong(), value) << name;
    EXPECT_EQ(p->get(QStringLiteral("NoEndDate")).toBool(), c.end == End::Never);
    EXPECT_EQ(p->get(QStringLiteral("PatternStartDate")).toDate(), Date::fromQDate(c.start));
    if (c.end == End::ByDate) { EXPECT_EQ(p->get(QStringLiteral("PatternEndDate")).toDate(), Date::fromQDate(c.endDate)); }
    TaskWindow again(*back);
    EXPECT_FALSE(again.isModified());
    EXPECT_EQ(again.fields().pattern.end, c.end);
}

INSTANTIATE_TEST_SUITE_P(
    Types, TaskRecurrenceTest,
    ::testing::Values(PatternCase{"weekly", ol::olRecursWeekly, 2, 0b101010, 0, 0, 0, QDate(2025, 4, 7), End::Never, 0, {}},
                      PatternCase{"monthnth", ol::olRecursMonthNth, 3, 0b100, 0, 5, 0, QDate(2025, 4, 29), End::AfterOccurrences, 6, {}},
                      PatternCase{"yearly", ol::olRecursYearly, 1, 0, 14, 0, 3, QDate(2025, 3, 14), End::ByDate, 0, QDate(2030, 3, 14)},
                      PatternCase{"monthly", ol::olRecursMonthly, 1, 0, 31, 0, 0, QDate(2025, 1, 31), End::AfterOccurrences, 12, {}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(ItemWindowsTest, RecurrenceChangedOrTurnedOffInTheWindowChangesTheFile)
{
    auto task = newTask(QStringLiteral("Weekly report"), false);
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

// Discarding is played by the scenario files on the Qt host; Cancel and Yes are the window's own.
TEST_F(ItemWindowsTest, ClosingAsksOnlyAboutAChangeAndCancelStaysYesSaves)
{
    auto task = newTask(QStringLiteral("Before"));
    TaskWindow w(*task);
    int asked = 0;
    auto closeAnswering = [&](QMessageBox::StandardButton answer) {
        test::Driver driver;
        driver.then("the box", [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }, [&, answer] {
            ++asked;
            static_cast<QMessageBox*>(QApplication::activeModalWidget())->button(answer)->click();
        });
        driver.start();
        w.close();   // the box, if any, is answered inside this call
    };
    showAndWait(w);
    closeAnswering(QMessageBox::Yes);
    EXPECT_EQ(std::pair(asked, w.isVisible()), std::pair(0, false)) << "nothing changed, nothing asked";
    showAndWait(w);
    typeInto(child(w, QStringLiteral("Subject")), QStringLiteral("After"));
    closeAnswering(QMessageBox::Cancel);
    EXPECT_EQ(std::pair(asked, w.isVisible()), std::pair(1, true));
    EXPECT_EQ(fromFile(task)->Subject(), QStringLiteral("Before"));
    closeAnswering(QMessageBox::Yes);
    EXPECT_EQ(std::pair(asked, w.isVisible()), std::pair(2, false));
    EXPECT_EQ(fromFile(task)->Subject(), QStringLiteral("After"));
}

TEST_F(ItemWindowsTest, OnlyAnAssignedTaskHasAToLineAndSendWhichNeedsIt)
{
    auto plain = newTask(QStringLiteral("Mine"), false);
    TaskWindow mine(*plain);
    EXPECT_EQ(mine.findChild<QPushButton*>(QStringLiteral("send")), nullptr);
    EXPECT_FALSE(child(mine, QStringLiteral("To"))->isVisibleTo(&mine));

    auto task = newTask(QStringLiteral("Hand over"), false);
    task->Assign();
    TaskWindow w(*task);
    showAndWait(w);
    QString said;
    test::Driver driver;
    driver.then("the box", [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }, [&] {
        said = static_cast<QMessageBox*>(QApplication::activeModalWidget())->text();
        QApplication::activeModalWidget()->close();
    });
    driver.start();
    QTest::mouseClick(child(w, QStringLiteral("send")), Qt::LeftButton);
    ASSERT_TRUE(driver.finished());
    EXPECT_TRUE(said.contains(QStringLiteral("To"))) << said.toStdString();
    EXPECT_TRUE(w.isVisible());
    EXPECT_TRUE(QDir(tmp.file(QStringLiteral("tasks"))).isEmpty()) << "nothing sent, nothing saved";
    typeInto(child(w, QStringLiteral("To")), QStringLiteral("Pat Lee"));
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
    EXPECT_EQ(QStringList({w.shown(QStringLiteral("FullName")), w.shown(QStringLiteral("CompanyName")), w.shown(QStringLiteral("Email1Address"))}),
              QStringList({demo.fullName(), demo.companyName, demo.email}));
    // Nothing on it looks or acts like a field that could be edited.
    EXPECT_TRUE(w.findChildren<QLineEdit*>().isEmpty() && w.findChildren<QPlainTextEdit*>().isEmpty());
    EXPECT_FALSE(child<QLabel>(w, QStringLiteral("CompanyName"))->textInteractionFlags() & Qt::TextEditable);
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(contact->Saved());
}

} // namespace
} // namespace steplets::qt
