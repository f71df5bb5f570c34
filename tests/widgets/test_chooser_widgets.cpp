// The chooser as the desktop program opens it, on the embedded default in a temporary home, with
// real mouse and key events: both modes, the tabs, a new group through the prompt dialog, and
// the store read back afterwards. The windows are photographed by test_windows.
#include "Desktop.h"
#include "MainWindow.h"
#include "FormView.h"
#include "FormWidgets.h"
#include "QtUiHost.h"
#include "TempDir.h"
#include "UrlRecorder.h"
#include "WidgetSupport.h"
#include "backends/sqlcipher/StoreData.h"
#include "controls/Controls.h"
#include "session/modDLLErrHandler.h"
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QUrl>
#include <QWindow>
#include <QComboBox>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace steplets;

namespace {

class ChooserWidgetsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::widgetApp();
        qputenv("XDG_STATE_HOME", state.path().toUtf8());
        options = desktop::defaultHostOptions();
        options.home = home.path();
    }
    void TearDown() override { qunsetenv("XDG_STATE_HOME"); }

    // The window the component waits on, when it is the one named and on the screen.
    Form* top(const char* name) const
    {
        if (host->modalStack().empty()) return nullptr;
        Form* f = host->modalStack().back();
        qt::FormView* v = host->viewOf(*f);
        return f->name() == QLatin1String(name) && v && v->isVisible() ? f : nullptr;
    }
    template <class W = QWidget> W* widget(Form& f, const char* control) const
    {
        Control* c = f.control(QLatin1String(control));
        EXPECT_NE(c, nullptr) << control;
        return c ? qobject_cast<W*>(host->viewOf(f)->widgetOf(*c)) : nullptr;
    }
    template <class C> C& model(Form& f, const char* control) const { return *static_cast<C*>(f.control(QLatin1String(control))); }
    void clickTab(Form& f, const char* strip, int tab) const
    {
        QTabBar* bar = static_cast<qt::TabStripWidget*>(widget(f, strip))->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab - 1).center());
        QTest::qWait(20);   // the page's widgets follow once the handler has returned
    }
    void click(Form& f, const char* control) const { QTest::mouseClick(widget(f, control), Qt::LeftButton); }
    QJsonArray table(const char* db, const char* name) const
    {
        return sqlcipher::dumpStore(home.path()).value(QLatin1String(db)).toObject().value(QLatin1String(name)).toArray();
    }

    test::TempDir home, state;
    desktop::HostOptions options;
    std::shared_ptr<qt::QtUiHost> host = std::make_shared<qt::QtUiHost>();
};

TEST_F(ChooserWidgetsTest, ManageModeTabsAndANewGroupThroughThePromptDialog)
{
    const QString name = QStringLiteral("Quarterly close");
    test::Driver driver;
    driver
        .then("the chooser", [&] { return top("frmSteplet"); }, [&] {
            Form& f = *top("frmSteplet");
            EXPECT_EQ(host->viewOf(f)->windowTitle(), f.Caption());
            // 1. Without a time card there is no contact area.
            EXPECT_FALSE(widget(f, "TabStrip1")->isVisible());
            // 2. The group page, then Add, which opens the prompt and waits there.
            clickTab(f, "TabStrip2", 2);
            EXPECT_EQ(model<TabStrip>(f, "TabStrip2").SelectedTab(), 2);
            EXPECT_TRUE(widget(f, "cboGroup")->isVisible());
            click(f, "cmdAdd");
        })
        .then("the prompt for the group's name", [&] { return top("frmPrompt"); }, [&] {
            Form& p = *top("frmPrompt");
            click(p, "txtUserInput");
            QTest::keyClicks(widget(p, "txtUserInput"), name);
            EXPECT_EQ(model<TextBox>(p, "txtUserInput").Text(), name);
            click(p, "OKButton");
        })
        .then("the chooser with the new group", [&] { return top("frmSteplet") && model<ComboBox>(*top("frmSteplet"), "cboGroup").Text() == name; },
              [&] {
                  Form& f = *top("frmSteplet");
                  QTest::qWait(20);   // the widgets follow once the handler has returned
                  EXPECT_EQ(widget<QComboBox>(f, "cboGroup")->currentText(), name);
                  click(f, "CancelButton");
              });
    driver.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    ASSERT_TRUE(driver.finished());
    QStringList groups;
    for (const QJsonValue& row : table("local", "tblTaskGroups")) groups << row.toObject().value(QStringLiteral("GroupName")).toString();
    EXPECT_TRUE(groups.contains(name)) << groups.join(QStringLiteral(", ")).toStdString();
    EXPECT_FALSE(QFile::exists(desktop::logFilePath(options))) << "a failure was reported";
}

TEST_F(ChooserWidgetsTest, ProcessModeWithATimeCardTicksATemplateByKeyboard)
{
    options.args.lTimeCardID = 7;
    options.args.sDesc = QStringLiteral("Quarterly audit");
    bool ticked = false;
    test::Driver driver;
    driver.then("the chooser", [&] { return top("frmSteplet"); }, [&] {
        Form& f = *top("frmSteplet");
        EXPECT_EQ(host->viewOf(f)->windowTitle(), f.Caption());
        auto& button = model<CommandButton>(f, "ProcessTasksButton");
        EXPECT_EQ(widget<QPushButton>(f, "ProcessTasksButton")->text(), button.Caption());
        // 1. The contact tabs, there and back.
        clickTab(f, "TabStrip1", 2);
        EXPECT_EQ(model<TabStrip>(f, "TabStrip1").SelectedTab(), 2);
        EXPECT_TRUE(widget(f, "chkContactOption1")->isVisible());
        clickTab(f, "TabStrip1", 1);
        EXPECT_EQ(model<TabStrip>(f, "TabStrip1").SelectedTab(), 1);
        // 2. The templates, and a tick by mouse and space bar.
        clickTab(f, "TabStrip2", 1);
        EXPECT_EQ(model<TabStrip>(f, "TabStrip2").SelectedTab(), 1);
        auto* list = widget<QListWidget>(f, "lbTaskTemplates");
        ASSERT_GT(list->count(), 0);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
        QTest::keyClick(list, Qt::Key_Space);
        ticked = model<ListBox>(f, "lbTaskTemplates").Selected(0);
        QTest::qWait(20);
        clickTab(f, "TabStrip2", 2);
        EXPECT_EQ(model<TabStrip>(f, "TabStrip2").SelectedTab(), 2);
        click(f, "CancelButton");
    });
    driver.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    ASSERT_TRUE(driver.finished());
    EXPECT_TRUE(ticked);
    EXPECT_FALSE(QFile::exists(desktop::logFilePath(options))) << "a failure was reported";
}

TEST_F(ChooserWidgetsTest, TheMainWindowKeepsItsPlaceBetweenStartsAndItsHelpMenuShowsTheDataFolder)
{
    const QPoint movedTo(123, 77);
    test::UrlRecorder recorder;
    QString about;
    test::Driver first;
    first
        .then("the chooser", [&] { return top("frmSteplet"); }, [&] {
            qt::FormView* view = host->viewOf(*top("frmSteplet"));
            auto* menu = view->findChild<QMenuBar*>();
            ASSERT_NE(menu, nullptr);
            EXPECT_EQ(menu->actions().size(), 1);
            // The user moves the window, then asks who the program is.
            view->windowHandle()->setFramePosition(movedTo);
            QTest::qWait(20);
            view->findChild<QAction*>(QStringLiteral("about"))->trigger();
        })
        .then("the About box", [] { return test::shownWindow(QStringLiteral("About")); }, [&] {
            auto* box = static_cast<QMessageBox*>(test::shownWindow(QStringLiteral("About")));
            about = box->text() + QLatin1Char('\n') + box->informativeText();
            QTest::mouseClick(box->findChild<QPushButton*>(QStringLiteral("openDataFolder")), Qt::LeftButton);
        })
        .then("the chooser again", [&] { return top("frmSteplet") && !test::shownWindow(QStringLiteral("About")); },
              [&] { click(*top("frmSteplet"), "CancelButton"); });
    first.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    ASSERT_TRUE(first.finished());
    EXPECT_TRUE(about.contains(modDLLErrHandler::VersionText())) << about.toStdString();
    EXPECT_TRUE(about.contains(QDir::toNativeSeparators(home.path()))) << about.toStdString();
    EXPECT_EQ(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(home.path())});

    // The next start: the window where the user left it.
    host = std::make_shared<qt::QtUiHost>();
    QPoint shownAt;
    test::Driver second;
    second.then("the chooser", [&] { return top("frmSteplet"); }, [&] {
        shownAt = host->viewOf(*top("frmSteplet"))->pos();
        click(*top("frmSteplet"), "CancelButton");
    });
    second.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    EXPECT_EQ(shownAt, movedTo);
    // In the program's own file: the component's settings know nothing of it.
    EXPECT_TRUE(QFile::exists(desktop::desktopSettingsFile(options, home.path())));
    QSettings component(home.file(QStringLiteral("config/Brackenfell Software/Ordivane for Office.ini")), QSettings::IniFormat);
    for (const QString& key : component.allKeys()) EXPECT_FALSE(key.contains(QStringLiteral("eometry"))) << key.toStdString();
}

TEST_F(ChooserWidgetsTest, TheCloseBoxEndsTheSession)
{
    test::Driver driver;
    driver.then("the chooser", [&] { return top("frmSteplet"); }, [&] { host->viewOf(*top("frmSteplet"))->close(); });
    driver.start();
    EXPECT_EQ(desktop::runSession(options, host), 0);
    EXPECT_TRUE(host->modalStack().empty());
}

} // namespace

