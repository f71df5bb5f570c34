// The authoring windows as the Qt host draws them, with real mouse input: frmNewTask on each of
// its tabs in both modes (the button that moves, the page in sight, the anchor date that shows
// "(no date)" until a day is picked), and a template added from the chooser on the demo data
// through the task window, down to the new row in the list and in the database.
#include "Desktop.h"
#include "FormView.h"
#include "FormWidgets.h"
#include "QtUiHost.h"
#include "TempDir.h"
#include "WidgetSupport.h"
#include "backends/sqlcipher/StoreData.h"
#include "controls/Controls.h"
#include "dialogs/frmNewTask.h"
#include "dialogs/frmOptions.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include <QCalendarWidget>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

using namespace steplets;
using steplets::test::Driver;

namespace {

QTabBar* tabBarOf(qt::FormView* v, Control& strip) { return static_cast<qt::TabStripWidget*>(v->widgetOf(strip))->tabBar(); }

void clickTab(qt::FormView* v, Control& strip, int tab)
{
    QTabBar* bar = tabBarOf(v, strip);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab - 1).center());
    QTest::qWait(20);   // the page's widgets follow once the handler has returned
}

// Picks the day of the month shown in a drop-down calendar, as a person clicks it.
void pickDay(qt::CalendarBox* box, int day)
{
    QTest::mouseClick(box, Qt::LeftButton);
    auto* days = box->calendar()->findChild<QTableView*>();
    ASSERT_NE(days, nullptr);
    for (int r = 1; r < days->model()->rowCount(); ++r)
        for (int c = 0; c < days->model()->columnCount(); ++c) {
            const QModelIndex i = days->model()->index(r, c);
            // The first row may start with the end of the month before.
            if (i.data().toInt() == day && !(r == 1 && day > 20)) {
                QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(i).center());
                QTest::qWait(20);
                return;
            }
        }
    ADD_FAILURE() << "no day " << day;
}

// A page is in sight when its widget lies (at least partly) inside the window, not moved out.
bool inSight(qt::FormView* v, Control& page)
{
    QWidget* p = v->widgetOf(page);
    return p->isVisible() && v->rect().intersects(p->geometry().translated(p->parentWidget()->mapTo(v, QPoint())));
}

class NewTaskWidgets : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::widgetApp();
        session() = SessionContext();
        session().ports.ui = std::shared_ptr<UiHost>(&host, [](UiHost*) {});
        modTasks::ReSetModuleVariables();
    }
    void TearDown() override
    {
        session().ports = Ports();
        session() = SessionContext();
        modTasks::ReSetModuleVariables();
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
    }
    qt::QtUiHost host;
};

TEST_F(NewTaskWidgets, EachTabInBothModesShowsItsPageAndTheButtonsOfTheMode)
{
    for (const bool edit : {false, true}) {
        EditedTemplateState& t = modTasks::EditedTemplate();
        t.DateType = Int16(2);
        t.FillIn1 = QStringLiteral("Subject field from template");
        t.PromptForAssignee = QStringLiteral("True");
        t.AnchorDescription = QStringLiteral("Closing date");
        frmNewTask dialog(host);
        const QString mode = edit ? QStringLiteral("edit") : QStringLiteral("new");
        Driver driver;
        driver.then("the dialog", [&] { return host.viewOf(dialog) && host.viewOf(dialog)->isVisible(); }, [&] {
            qt::FormView* v = host.viewOf(dialog);
            QWidget* create = v->widgetOf(dialog.CreateEditButton);
            QWidget* ok = v->widgetOf(dialog.OKButton);
            QWidget* cancel = v->widgetOf(dialog.CancelButton);
            EXPECT_EQ(ok->isVisible(), edit);
            if (edit) {
                // Edit: the button stands at the left edge, OK beside Cancel.
                EXPECT_LT(create->geometry().right(), ok->geometry().left());
                EXPECT_LT(create->x(), v->width() / 4);
            } else {
                // New: the button takes OK's place, just before Cancel.
                EXPECT_LT(create->geometry().right(), cancel->geometry().left());
                EXPECT_LT(cancel->geometry().left() - create->geometry().right(), 20);
            }
            for (int tab = 1; tab <= 3; ++tab) {
                clickTab(v, dialog.TabStrip1, tab);
                for (int page = 0; page < 3; ++page)
                    EXPECT_EQ(inSight(v, dialog.Picture1[page]), page == tab - 1) << mode.toStdString() << ", tab " << tab << ", page " << page;
                test::saveScreenshot(v, QStringLiteral("frmNewTask-%1-tab%2").arg(mode).arg(tab), tab == 1 && !edit);
            }
            // The anchor date shows no date until the user picks a day, then that day.
            clickTab(v, dialog.TabStrip1, 1);
            auto* anchor = static_cast<qt::CalendarBox*>(v->widgetOf(dialog.dtmAnchorDate));
            EXPECT_EQ(anchor->fieldText(), QStringLiteral("(no date)"));
            EXPECT_EQ(anchor->isEnabled(), edit) << "only an anchor template's date can be picked";
            if (edit) {
                pickDay(anchor, 15);
                EXPECT_NE(anchor->fieldText(), QStringLiteral("(no date)"));
                EXPECT_EQ(dialog.dAnchorDate.toQDateTime().date().day(), 15);
            }
            QTest::mouseClick(cancel, Qt::LeftButton);
        });
        driver.start();
        Bool16 blnEdit(edit);
        QString name = QStringLiteral("Closing documents");
        dialog.NewTaskDialog(blnEdit, name);
        ASSERT_TRUE(driver.finished()) << mode.toStdString();
        EXPECT_TRUE(modTasks::EditedTemplate().OptionsDialogDeclined);
        modTasks::EditedTemplate().OptionsDialogDeclined = false;
        dialog.Unload();
    }
}

TEST_F(NewTaskWidgets, TheOptionsDialogShowsOnePageAtATimeAndItsButtons)
{
    session().iLinkUser = Int16(1);
    session().iTaskSelection = Int16(1);
    for (int k = 1; k <= 4; ++k) session().sDefaultFillIn[k] = QStringLiteral("[Empty]");
    frmOptions dialog(host);
    Driver driver;
    driver.then("the options", [&] { return host.viewOf(dialog) && host.viewOf(dialog)->isVisible(); }, [&] {
        qt::FormView* v = host.viewOf(dialog);
        for (int tab = 1; tab <= 2; ++tab) {
            clickTab(v, dialog.TabStrip1, tab);
            for (int page = 0; page < 2; ++page) EXPECT_EQ(inSight(v, dialog.Picture1[page]), page == tab - 1) << "tab " << tab << ", page " << page;
            test::saveScreenshot(v, QStringLiteral("frmOptions-tab%1").arg(tab), true);
        }
        EXPECT_FALSE(v->widgetOf(dialog.cmdApply)->isEnabled());
        EXPECT_FALSE(v->widgetOf(dialog.Check1[1])->isEnabled()) << "linked on every task: the second box has no say";
        QTest::mouseClick(v->widgetOf(dialog.Check1[0]), Qt::LeftButton);
        QTest::qWait(20);
        EXPECT_TRUE(v->widgetOf(dialog.Check1[1])->isEnabled());
        EXPECT_TRUE(v->widgetOf(dialog.cmdApply)->isEnabled());
        QTest::mouseClick(v->widgetOf(dialog.cmdCancel), Qt::LeftButton);
    });
    driver.start();
    dialog.Show();
    ASSERT_TRUE(driver.finished());
    EXPECT_EQ(session().iLinkUser, Int16(1)) << "Cancel keeps what was not applied out";
    dialog.Unload();
}

// --- A template added from the chooser ---

class AddTemplateWidgets : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::widgetApp();
        options = desktop::defaultHostOptions();
        options.home = home.path();
    }
    Form* top(const char* name) const
    {
        if (host->modalStack().empty()) return nullptr;
        Form* f = host->modalStack().back();
        qt::FormView* v = host->viewOf(*f);
        return f->name() == QLatin1String(name) && v && v->isVisible() ? f : nullptr;
    }
    QWidget* widget(Form& f, const char* control) const { return host->viewOf(f)->widgetOf(*f.control(QLatin1String(control))); }
    void click(Form& f, const char* control) const { QTest::mouseClick(widget(f, control), Qt::LeftButton); }

    test::TempDir home;
    desktop::HostOptions options;
    std::shared_ptr<qt::QtUiHost> host = std::make_shared<qt::QtUiHost>();
};

TEST_F(AddTemplateWidgets, ATemplateMadeOnTheTaskWindowIsTheNewRowOfTheList)
{
    const QString subject = QStringLiteral("Call the insurer");
    Driver driver;
    driver.then("the chooser", [&] { return top("frmSteplet"); }, [&] {
              Form& f = *top("frmSteplet");
              clickTab(host->viewOf(f), *f.control(QStringLiteral("TabStrip2")), 1);
              click(f, "cmdAdd");
          })
        .then("the template options", [&] { return top("frmNewTask"); }, [&] {
            Form& f = *top("frmNewTask");
            click(f, "optDueDateType(1)");
            clickTab(host->viewOf(f), *f.control(QStringLiteral("TabStrip1")), 2);
            EXPECT_EQ(static_cast<QLineEdit*>(widget(f, "Text1"))->text(), QStringLiteral("[Task Template Subject]"));
            test::saveScreenshot(host->viewOf(f), QStringLiteral("frmNewTask-new-fillins"), true);
            click(f, "CreateEditButton");
        })
        .then("the help note", [&] { return top("frmPrompt"); }, [&] { click(*top("frmPrompt"), "OKButton"); })
        .then("the task window", [] { return test::shownWindow(QStringLiteral("TaskWindow")); }, [&] {
            QWidget* w = test::shownWindow(QStringLiteral("TaskWindow"));
            auto* line = w->findChild<QLineEdit*>(QStringLiteral("Subject"));
            QTest::keyClicks(line, subject);
            QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("saveAndClose")), Qt::LeftButton);
        })
        .then("the chooser with the new template", [&] {
            Form* f = top("frmSteplet");
            return f && static_cast<ListBox*>(f->control(QStringLiteral("lbTaskTemplates")))->ListCount() == 7;
        },
              [&] {
                  Form& f = *top("frmSteplet");
                  QTest::qWait(20);
                  auto* list = static_cast<QListWidget*>(widget(f, "lbTaskTemplates"));
                  EXPECT_EQ(list->item(list->count() - 1)->text(), subject);
                  click(f, "CancelButton");
              });
    driver.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    ASSERT_TRUE(driver.finished());
    const QJsonArray rows = sqlcipher::dumpStore(home.path()).value(QStringLiteral("local")).toObject().value(QStringLiteral("tblSteplets")).toArray();
    ASSERT_EQ(rows.size(), 7);
    EXPECT_EQ(rows.last().toObject().value(QStringLiteral("Subject")).toString(), subject);
    EXPECT_EQ(rows.last().toObject().value(QStringLiteral("DateType")).toInt(), 1);
    EXPECT_EQ(QDir(home.file(QStringLiteral("vdir/tasks"))).entryList({QStringLiteral("*.ics")}, QDir::Files), QStringList())
        << "the temporary task is gone";
}

} // namespace
