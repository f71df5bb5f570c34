// The Qt host on the offscreen platform: a small window of control models rendered through the
// generic binding, driven with real QTest mouse and key events.
#include "FormView.h"
#include "FormWidgets.h"
#include "QtUiHost.h"
#include "WidgetSupport.h"
#include "controls/Controls.h"
#include "TempDir.h"
#include <QDesktopServices>
#include <QCheckBox>
#include <QListWidget>
#include <QMouseEvent>
#include <QScreen>

using namespace steplets;
using steplets::qt::FormView;
using steplets::qt::QtUiHost;
using steplets::test::Driver;

namespace {

// A window with a few controls placed as a designer would, and the form events as hooks.
class SampleWindow : public Form {
public:
    explicit SampleWindow(UiHost& host, const QString& name = QStringLiteral("frmSample")) : Form(host, name)
    {
        setCaption(QStringLiteral("Sample"));
        setWidth(6000);
        setHeight(4500);
        fraBox.setCaption(QStringLiteral("Options"));
        fraBox.Move(1440, 720, 2880, 1440);
        chkOption.setContainer(&fraBox);
        chkOption.setCaption(QStringLiteral("&Remember"));
        chkOption.Move(120, 240, 2400, 285);
        txtName.Move(120, 2400, 2400, 315);
        lstItems.setStyle(ListBox::Style::CheckBox);
        lstItems.Move(3000, 2400, 2400, 1000);
        for (const char* text : {"first", "second", "third"}) lstItems.AddItem(QLatin1String(text));
        tabMain.addTab(QStringLiteral("One"));
        tabMain.addTab(QStringLiteral("Two"));
        tabMain.Move(120, 3500, 2800, 500);
        cboPick.Move(3000, 3500, 2400, 315);
        cmdSave.setCaption(QStringLiteral("&Save"));
        cmdSave.Move(4560, 120, 1200, 375);
        cmdClose.setCaption(QStringLiteral("Close"));
        cmdClose.setCancel(true);
        cmdClose.Move(4560, 600, 1200, 375);
        Timer1.setEnabled(false);

        lstItems.Click.connect([this] { ++listClicks; });
        lstItems.ItemCheck.connect([this](int) { ++itemChecks; });
        txtName.KeyDown.connect([this](int& key, int) { keysDown << QStringLiteral("txtName %1").arg(key); });
        cmdClose.KeyDown.connect([this](int& key, int) { keysDown << QStringLiteral("cmdClose %1").arg(key); });
        chkOption.Click.connect([this] { ++checkClicks; });
        txtName.Change.connect([this] { ++textChanges; });
        tabMain.Click.connect([this] { ++tabClicks; });
        cmdSave.Click.connect([this] { ++saves; if (onSave) onSave(); });
        cmdClose.Click.connect([this] { Hide(); });
        Timer1.Tick.connect([this] { if (onTick) onTick(); });
    }

    CommandButton cmdSave{*this, QStringLiteral("cmdSave")};
    CommandButton cmdClose{*this, QStringLiteral("cmdClose")};
    Frame fraBox{*this, QStringLiteral("fraBox")};
    CheckBox chkOption{*this, QStringLiteral("chkOption")};
    TextBox txtName{*this, QStringLiteral("txtName")};
    ListBox lstItems{*this, QStringLiteral("lstItems")};
    TabStrip tabMain{*this, QStringLiteral("tabMain")};
    ComboBox cboPick{*this, QStringLiteral("cboPick")};
    Timer Timer1{*this, QStringLiteral("Timer1")};

    int checkClicks = 0, textChanges = 0, tabClicks = 0, saves = 0, listClicks = 0, itemChecks = 0;
    QStringList keysDown;
    std::function<void()> onSave, onTick;
};

class QtHostTest : public ::testing::Test {
protected:
    void SetUp() override { test::widgetApp(); }
    // The pending copies of model changes onto the widgets, done as the event loop would.
    void settle() { QCoreApplication::processEvents(); }
    FormView* view(Form& f) { return host.viewOf(f); }
    template <class W> W* widget(Form& f, const Control& c) { return qobject_cast<W*>(view(f)->widgetOf(c)); }
    double dpi() const { return QGuiApplication::primaryScreen()->logicalDotsPerInch(); }
    bool shown(Form& f) { return view(f) && view(f)->isVisible(); }

    QtUiHost host;
};

// --- The binding (visibility, enabling, texts, check boxes and list rows are compared with the
// screen at every snapshot the scenario files take on this host) ---

TEST_F(QtHostTest, WidgetsLieInTheirContainersAtTheirTwipsAndFollowTheModelsWithoutRaisingEventsAgain)
{
    SampleWindow w(host);
    w.Load();
    QWidget* frame = view(w)->widgetOf(w.fraBox);
    ASSERT_TRUE(qobject_cast<QGroupBox*>(frame));
    EXPECT_EQ(view(w)->widgetOf(w.chkOption)->parentWidget(), frame);
    // 1440 twips are an inch of the screen.
    EXPECT_NEAR(frame->x(), dpi(), 1);
    EXPECT_NEAR(frame->y(), dpi() / 2, 1);
    EXPECT_NEAR(frame->width(), 2 * dpi(), 1);
    w.fraBox.setLeft(2880);
    w.chkOption.setValue(CheckBox::Checked);
    w.txtName.setText(QStringLiteral("Ada"));
    w.lstItems.setSelected(1, true);
    w.tabMain.selectTab(2);
    w.cmdSave.setToolTipText(QStringLiteral("Saves it."));
    w.cmdSave.setCaption(QStringLiteral("&Keep"));
    w.setCaption(QStringLiteral("Renamed"));
    w.cboPick.AddItem(QStringLiteral("Errands"));
    w.cboPick.AddItem(QStringLiteral("Quarterly close"));
    w.cboPick.setListIndex(1);
    settle();
    EXPECT_EQ(view(w)->windowTitle(), QStringLiteral("Renamed"));
    EXPECT_EQ(widget<QPushButton>(w, w.cmdSave)->text(), QStringLiteral("&Keep"));
    EXPECT_EQ(view(w)->widgetOf(w.cmdSave)->toolTip(), QStringLiteral("Saves it."));
    EXPECT_EQ(widget<QComboBox>(w, w.cboPick)->currentText(), QStringLiteral("Quarterly close"));
    EXPECT_NEAR(frame->x(), 2 * dpi(), 1);
    auto* list = widget<QListWidget>(w, w.lstItems);
    EXPECT_EQ(QList({list->item(0)->checkState(), list->item(1)->checkState()}), QList({Qt::Unchecked, Qt::Checked}));
    EXPECT_EQ(static_cast<qt::TabStripWidget*>(view(w)->widgetOf(w.tabMain))->tabBar()->currentIndex(), 1);
    // Each model event was raised once, by the model itself: the widgets echoed nothing.
    EXPECT_EQ(std::tuple(w.checkClicks, w.textChanges, w.tabClicks), std::tuple(1, 1, 1));
    w.Unload();
}

// Clicks, ticks by name, typing, tabs and tools are what the scenario files play on this host;
// what they do not play is here: a click on the box of any row, as a hand clicks (the pointer
// moves a pixel while the button is down), with ItemCheck and one Click each; the space bar on a
// list's current row; keystrokes raising Change once each; a caption's ampersand as its accelerator.
TEST_F(QtHostTest, ClicksOnListBoxesKeysAndAcceleratorsReachTheModelsOnce)
{
    SampleWindow w(host);
    struct Tick { int row; bool ticked; };
    // No row current, another row current, the current row, and back to another.
    const Tick ticks[] = {{1, true}, {0, true}, {0, false}, {2, true}};
    Driver driver;
    driver.then("the sample window", [&] { return shown(w); }, [&] {
        QApplication::setActiveWindow(view(w));
        EXPECT_TRUE(QTest::qWaitForWindowActive(view(w)));
        auto* list = widget<QListWidget>(w, w.lstItems);
        int n = 0;
        for (const Tick& t : ticks) {
            SCOPED_TRACE(++n);
            const QRect box = qt::checkIndicatorRect(list, list->item(t.row));
            const QPoint moved = box.center() + QPoint(1, 0);
            QTest::mousePress(list->viewport(), Qt::LeftButton, {}, box.center());
            QMouseEvent move(QEvent::MouseMove, moved, list->viewport()->mapToGlobal(moved), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(list->viewport(), &move);
            QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, moved);
            settle();
            EXPECT_EQ(w.lstItems.Selected(t.row), t.ticked);
            EXPECT_EQ(list->item(t.row)->checkState() == Qt::Checked, t.ticked);
            EXPECT_EQ(std::tuple(w.lstItems.ListIndex(), w.itemChecks, w.listClicks), std::tuple(t.row, n, n));
        }
        QTest::keyClick(list, Qt::Key_Space);
        EXPECT_FALSE(w.lstItems.Selected(2));
        QTest::keyClicks(view(w)->widgetOf(w.txtName), QStringLiteral("Bo"));
        QTest::keyClick(view(w)->widgetOf(w.txtName), Qt::Key_S, Qt::AltModifier);
        EXPECT_EQ(w.saves, 1);
        QTest::keyClick(view(w)->widgetOf(w.cmdSave), Qt::Key_R, Qt::AltModifier);
        w.Hide();
    });
    driver.start();
    w.Show();
    ASSERT_TRUE(driver.finished());
    EXPECT_EQ(std::tuple(w.itemChecks, w.txtName.Text(), w.textChanges, w.saves, w.chkOption.Value(), w.checkClicks),
              std::tuple(5, QStringLiteral("Bo"), 2, 1, int(CheckBox::Checked), 1));
    w.Unload();
}

TEST_F(QtHostTest, EnterAndEscapeGoToTheDefaultAndCancelButtonsOnlyWhenTheyCanTakeThemElseToKeyDown)
{
    struct Case { const char* what; bool withDefault, defaultEnabled, cancelEnabled, onButton; Qt::Key key; int saves; bool closes; QStringList keysDown; };
    const Case cases[] = {
        {"Enter without a default button", false, true, true, false, Qt::Key_Return, 0, false, {"txtName 13"}},
        {"Enter with a default button", true, true, true, false, Qt::Key_Return, 1, false, {}},
        {"Enter with the default button disabled", true, false, true, false, Qt::Key_Return, 0, false, {"txtName 13"}},
        {"Enter on a button that is not the default", true, true, true, true, Qt::Key_Return, 0, false, {"cmdClose 13"}},
        {"Escape with a cancel button", false, true, true, false, Qt::Key_Escape, 0, true, {}},
        {"Escape with the cancel button disabled", false, true, false, false, Qt::Key_Escape, 0, false, {"txtName 27"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SampleWindow w(host);
        w.cmdSave.setDefault(c.withDefault);
        w.cmdSave.setEnabled(c.defaultEnabled);
        w.cmdClose.setEnabled(c.cancelEnabled);
        bool closed = false;
        Driver driver;
        driver.then("the sample window", [&] { return shown(w); }, [&] {
            QWidget* target = view(w)->widgetOf(c.onButton ? static_cast<Control&>(w.cmdClose) : w.txtName);
            target->setFocus();
            QTest::keyClick(target, c.key);
            settle();
            closed = !w.Visible();
            if (!closed) w.Hide();
        });
        driver.start();
        w.Show();
        ASSERT_TRUE(driver.finished());
        EXPECT_EQ(std::tuple(w.saves, closed, w.keysDown), std::tuple(c.saves, c.closes, c.keysDown));
        w.Unload();
    }
}

// Takes the desktop's place in opening file URLs while it lives: what is asked to open is recorded.
class UrlRecorder : public QObject {
    Q_OBJECT
public:
    UrlRecorder() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~UrlRecorder() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

// --- What only this host has: real dialogs, real timers, the help key ---

TEST_F(QtHostTest, AMessageBoxShowsItsTextTitleIconAndButtonsAndEscapeCancels)
{
    Driver driver;
    QList<QMessageBox::StandardButton> seen;
    driver.then("the box", [&] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        for (QAbstractButton* b : box->buttons()) seen << box->standardButton(b);
        EXPECT_EQ(std::tuple(box->icon(), box->windowTitle(), box->text()),
                  std::tuple(QMessageBox::Warning, QStringLiteral("Title"), QStringLiteral("first line\nsecond line")));
        QTest::keyClick(box, Qt::Key_Escape);
    });
    driver.start();
    EXPECT_EQ(host.MsgBox(QStringLiteral("first line\r\nsecond line"), 1 + 48, QStringLiteral("Title")), 2);   // Cancel
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, (QList<QMessageBox::StandardButton>{QMessageBox::Ok, QMessageBox::Cancel}));
}

TEST_F(QtHostTest, WithoutAVirtualClockTimersTickOnTheEventLoop)
{
    SampleWindow w(host);
    int ticks = 0;
    w.onTick = [&] { if (++ticks == 3) { w.Timer1.setEnabled(false); w.Hide(); } };
    w.Load();
    w.Timer1.setInterval(15);
    w.Timer1.setEnabled(true);
    w.Show();
    bool ran = false;
    QTimer::singleShot(0, &test::widgetApp(), [&] { ran = true; });
    host.DoEvents();
    EXPECT_TRUE(ran) << "DoEvents runs what is pending";
    QTest::qWait(100);
    EXPECT_EQ(ticks, 3);
    w.Unload();
}

// F1 in any window of the process opens the HTML page that stands for the help file, beside the
// help file, else in the program's data folder; with neither, one line goes to the log.
TEST_F(QtHostTest, F1OpensThePageOfTheHelpFilesBaseNameBesideItElseInTheDataFolderElseLogsThatThereIsNone)
{
    struct Case { bool beside, inData; int opensFrom; };   // opens from 0 beside, 1 the data folder, -1 none
    for (const Case c : {Case{true, true, 0}, Case{false, true, 1}, Case{false, false, -1}}) {
        test::TempDir folders[2];
        for (int i = 0; i < 2; ++i) ASSERT_TRUE(!(i == 0 ? c.beside : c.inData) || QFile(folders[i].file("Ordivane.html")).open(QIODevice::WriteOnly));
        UrlRecorder recorder;
        QStringList logged;
        host.setHelp({folders[1].path()}, [&logged](const QString& line) { logged << line; });
        // As the component names it: its folder, a Windows separator, the .chm.
        host.setHelpFile(folders[0].path() + QStringLiteral("\\Ordivane.chm"));
        QLineEdit anyWindow;
        anyWindow.show();
        QTest::keyClick(&anyWindow, Qt::Key_F1);
        EXPECT_EQ(recorder.opened, c.opensFrom < 0 ? QList<QUrl>() : QList{QUrl::fromLocalFile(folders[c.opensFrom].file("Ordivane.html"))});
        EXPECT_EQ(logged.size(), c.opensFrom < 0 ? 1 : 0);
        EXPECT_TRUE(c.opensFrom >= 0 || logged.value(0).contains(QStringLiteral("Ordivane.chm"))) << logged.value(0).toStdString();
    }
}

} // namespace

#include "test_qt_host.moc"
