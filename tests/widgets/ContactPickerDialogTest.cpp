// The Qt contact picker driven by keys and the mouse on the offscreen platform; the contacts it
// opens are real cards of a vdir.
#include "ContactPickerDialog.h"
#include "FormView.h"
#include "TempDir.h"
// Screenshots go where the build says; a build that does not say keeps them beside the test.
#ifndef STEPLETS_WIDGET_ARTIFACTS
#define STEPLETS_WIDGET_ARTIFACTS "screenshots"
#endif
#include "WidgetSupport.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace steplets::qt {
namespace {

ContactPickerRow row(qint32 id, const QString& name, const QString& company, const QString& email,
                     const QString& entryID = {})
{
    ContactPickerRow r;
    r.contactID = id;
    r.name = name;
    r.company = company;
    r.email = email;
    r.entryID = entryID.isEmpty() ? QStringLiteral("c-%1").arg(id) : entryID;
    r.hasCard = true;
    return r;
}

// Stands for the item window: records which contacts it was asked to show.
class RecordingDisplay : public ol::ItemDisplay {
public:
    QStringList shownContacts;
    QList<bool> modal;
    void displayTask(ol::TaskItem&, bool) override { ADD_FAILURE() << "a task was displayed"; }
    void displayContact(ol::ContactItem& item, bool isModal) override
    {
        shownContacts << item.FileAs();
        modal << isModal;
    }
};

class ContactPickerDialogTest : public ::testing::Test {
protected:
    ContactPickerDialogTest()
    {
        test::widgetApp();
        request.version = QStringLiteral("newer");
        request.rows = {row(11, QStringLiteral("Brandt, Ada"), QStringLiteral("Harbor Freight Lines"), QStringLiteral("ada@harbor.example")),
                        row(12, QStringLiteral("Chen, Marcus"), QStringLiteral("Orchard Dental"), QStringLiteral("m.chen@orcharddental.example")),
                        row(13, QStringLiteral("Diaz, Lucia"), QStringLiteral("Harbor Freight Lines"), QStringLiteral("lucia.diaz@mail.example")),
                        row(14, QStringLiteral("Okafor, Ben"), QString(), QStringLiteral("ben@okafor.example"))};
        ContactPickerRow gone;
        gone.contactID = 15;
        gone.name = QStringLiteral("Ruiz, Tomas");
        gone.entryID = QStringLiteral("c-missing");
        gone.hasCard = false;
        request.rows << gone;
    }
    static void showAndWait(QWidget& w)
    {
        w.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    }
    static QTreeWidgetItem* itemNamed(ContactPickerDialog& d, const QString& name)
    {
        const auto found = d.list()->findItems(name, Qt::MatchExactly, 0);
        return found.isEmpty() ? nullptr : found.first();
    }

    ContactPickerRequest request;
    RecordingDisplay display;
};

// --- The list and the search ---

TEST_F(ContactPickerDialogTest, ListsEveryRowInTheRequestsOrderWithCompanyAndEmail)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    test::saveScreenshot(&d, QStringLiteral("ContactPickerDialog"));
    ASSERT_EQ(d.list()->topLevelItemCount(), request.rows.size());
    ASSERT_EQ(d.list()->columnCount(), 3);
    for (int i = 0; i < request.rows.size(); ++i) {
        const QTreeWidgetItem* item = d.list()->topLevelItem(i);
        EXPECT_EQ(item->text(0), request.rows[i].name);
        EXPECT_EQ(item->text(1), request.rows[i].company);
        EXPECT_EQ(item->text(2), request.rows[i].email);
    }
    // The row whose card is gone says why it has nothing but a name.
    EXPECT_FALSE(d.list()->topLevelItem(4)->toolTip(0).isEmpty());
}

TEST_F(ContactPickerDialogTest, TypingNarrowsOnNameCompanyAndEmailIgnoringCase)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTest::keyClicks(d.searchBox(), QStringLiteral("HARBOR"));
    EXPECT_EQ(d.visibleNames(), (QStringList{QStringLiteral("Brandt, Ada"), QStringLiteral("Diaz, Lucia")}));
    QTest::keyClicks(d.searchBox(), QStringLiteral(" f"));
    EXPECT_EQ(d.visibleNames().size(), 2);

    d.searchBox()->clear();
    QTest::keyClicks(d.searchBox(), QStringLiteral("okafor.EX"));
    EXPECT_EQ(d.visibleNames(), QStringList{QStringLiteral("Okafor, Ben")});

    d.searchBox()->clear();
    QTest::keyClicks(d.searchBox(), QStringLiteral("marc"));
    EXPECT_EQ(d.visibleNames(), QStringList{QStringLiteral("Chen, Marcus")});
    test::saveScreenshot(&d, QStringLiteral("ContactPickerDialog-narrowed"));

    QTest::keyClicks(d.searchBox(), QStringLiteral("zzz"));
    EXPECT_TRUE(d.visibleNames().isEmpty());
    EXPECT_FALSE(d.findChild<QPushButton*>(QStringLiteral("ok"))->isEnabled());

    QTest::keyClick(d.searchBox(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(d.searchBox(), Qt::Key_Backspace);
    EXPECT_EQ(d.visibleNames().size(), request.rows.size());
}

TEST_F(ContactPickerDialogTest, OlderVersionListsNamesOnlyAndSearchesThem)
{
    request.version = QStringLiteral("older");
    ContactPickerDialog d(request, display);
    showAndWait(d);
    test::saveScreenshot(&d, QStringLiteral("ContactPickerDialog-older"));
    EXPECT_EQ(d.list()->columnCount(), 1);
    EXPECT_TRUE(d.list()->topLevelItem(0)->text(1).isEmpty());
    QTest::keyClicks(d.searchBox(), QStringLiteral("harbor"));
    EXPECT_TRUE(d.visibleNames().isEmpty());
    QTest::keyClick(d.searchBox(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(d.searchBox(), QStringLiteral("ada"));
    EXPECT_EQ(d.visibleNames(), QStringList{QStringLiteral("Brandt, Ada")});
}

// --- Choosing and cancelling ---

TEST_F(ContactPickerDialogTest, EnterTakesTheOnlyRowLeft)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTest::keyClicks(d.searchBox(), QStringLiteral("lucia"));
    QTest::keyClick(d.searchBox(), Qt::Key_Return);
    EXPECT_EQ(d.QDialog::result(), QDialog::Accepted);
    const ContactPickerResult r = d.choice();
    EXPECT_EQ(r.contactID, 13);
    EXPECT_EQ(r.name, QStringLiteral("Diaz, Lucia"));
    EXPECT_EQ(r.entryID, QStringLiteral("c-13"));
}

TEST_F(ContactPickerDialogTest, ArrowKeysInTheSearchBoxWalkTheListBeforeEnter)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTest::keyClicks(d.searchBox(), QStringLiteral("harbor"));
    QTest::keyClick(d.searchBox(), Qt::Key_Down);
    QTest::keyClick(d.searchBox(), Qt::Key_Return);
    EXPECT_EQ(d.choice().contactID, 13);
}

TEST_F(ContactPickerDialogTest, EscapeGivesNoContactEvenWithARowSelected)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTest::keyClicks(d.searchBox(), QStringLiteral("ada"));
    ASSERT_FALSE(d.list()->selectedItems().isEmpty());
    QTest::keyClick(d.searchBox(), Qt::Key_Escape);
    EXPECT_EQ(d.QDialog::result(), QDialog::Rejected);
    const ContactPickerResult r = d.choice();
    EXPECT_EQ(r.contactID, 0);
    EXPECT_TRUE(r.name.isEmpty());
    EXPECT_TRUE(r.entryID.isEmpty());
}

TEST_F(ContactPickerDialogTest, DoubleClickChoosesThatRow)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTreeWidgetItem* item = itemNamed(d, QStringLiteral("Okafor, Ben"));
    ASSERT_NE(item, nullptr);
    const QPoint at = d.list()->visualItemRect(item).center();
    QTest::mouseClick(d.list()->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(d.list()->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(d.QDialog::result(), QDialog::Accepted);
    EXPECT_EQ(d.choice().contactID, 14);
    EXPECT_EQ(d.choice().name, QStringLiteral("Okafor, Ben"));
}

TEST_F(ContactPickerDialogTest, ARowWithoutItsCardCanStillBeChosen)
{
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QTest::keyClicks(d.searchBox(), QStringLiteral("ruiz"));
    EXPECT_EQ(d.visibleNames(), QStringList{QStringLiteral("Ruiz, Tomas")});
    QTest::keyClick(d.searchBox(), Qt::Key_Return);
    const ContactPickerResult r = d.choice();
    EXPECT_EQ(r.contactID, 15);
    EXPECT_EQ(r.entryID, QStringLiteral("c-missing"));
}

TEST_F(ContactPickerDialogTest, TheEntryPointIsModalAndGivesTheChoice)
{
    QTimer::singleShot(0, [] {
        auto* d = QApplication::activeModalWidget();
        if (!d)
            return;
        QTest::keyClicks(d->findChild<QLineEdit*>(QStringLiteral("search")), QStringLiteral("chen"));
        QTest::keyClick(d->findChild<QLineEdit*>(QStringLiteral("search")), Qt::Key_Enter);
    });
    const ContactPickerResult r = runContactPickerDialog(nullptr, request, display);
    EXPECT_EQ(r.contactID, 12);
    EXPECT_EQ(r.name, QStringLiteral("Chen, Marcus"));
}

// --- Placement ---

TEST_F(ContactPickerDialogTest, StandsOverTheCallersWindow)
{
    request.left = 2 * 1440;
    request.top = 1440;
    request.width = 5 * 1440;
    request.height = 4 * 1440;
    ContactPickerDialog d(request, display);
    const double dpi = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    const QRect caller(twipsToPixels(request.left, dpi), twipsToPixels(request.top, dpi),
                       twipsToPixels(request.width, dpi), twipsToPixels(request.height, dpi));
    QRect expected(QPoint(), d.size());
    expected.moveCenter(caller.center());
    ASSERT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(expected));
    showAndWait(d);
    const QPoint offset = d.frameGeometry().center() - caller.center();
    EXPECT_LE(offset.manhattanLength(), 2) << "caller centre " << caller.center().x() << "," << caller.center().y()
                                           << " dialog " << d.frameGeometry().x() << "," << d.frameGeometry().y();
}

TEST_F(ContactPickerDialogTest, StandsOverTheCallersActualWindowWhateverItsFormSays)
{
    // The calling form never moved its Left and Top: only its window knows where it is.
    QWidget caller;
    caller.setGeometry(300, 200, 400, 300);
    showAndWait(caller);
    request.left = 0;
    request.top = 0;
    request.width = 400 * 15;
    request.height = 300 * 15;
    ContactPickerDialog d(request, display, &caller);
    showAndWait(d);
    EXPECT_TRUE(d.frameGeometry().intersects(caller.frameGeometry()));
    const QPoint offset = d.frameGeometry().center() - caller.frameGeometry().center();
    EXPECT_LE(offset.manhattanLength(), 2) << "caller centre " << caller.frameGeometry().center().x() << ","
                                           << caller.frameGeometry().center().y() << " dialog "
                                           << d.frameGeometry().center().x() << "," << d.frameGeometry().center().y();
    test::saveScreenshot(&d, QStringLiteral("contact-picker-over-caller"));
}

// --- Opening a contact ---

class ContactPickerOpenTest : public ContactPickerDialogTest {
protected:
    ContactPickerOpenTest()
    {
        QDir().mkpath(tmp.file(QStringLiteral("contacts")));
        vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
        vdir::VdirConfig config;
        config.root = tmp.path();
        app = vdir::openVdirStore(config, nullptr);
        request.nameSpace = app->GetNamespace();
        request.contactStoreID = QStringLiteral("store");
        const vdir::DemoContact& demo = vdir::demoContacts().at(2);
        request.rows.prepend(row(21, demo.lastName + QStringLiteral(", ") + demo.firstName, demo.companyName, demo.email,
                                 demo.entryId));
    }

    test::TempDir tmp;
    std::shared_ptr<ol::Application> app;
};

TEST_F(ContactPickerOpenTest, WithoutManageContactsThereIsNoOpenButton)
{
    request.manageContacts = false;
    ContactPickerDialog d(request, display);
    EXPECT_EQ(d.openButton(), nullptr);
    for (auto* button : d.findChildren<QPushButton*>())
        EXPECT_FALSE(button->text().contains(QStringLiteral("Open"))) << button->text().toStdString();
}

TEST_F(ContactPickerOpenTest, OpenShowsTheSelectedCardAndLeavesThePickerOpen)
{
    request.manageContacts = true;
    ContactPickerDialog d(request, display);
    showAndWait(d);
    test::saveScreenshot(&d, QStringLiteral("ContactPickerDialog-manage"));
    ASSERT_NE(d.openButton(), nullptr);
    ASSERT_TRUE(d.openButton()->isEnabled());
    QTest::mouseClick(d.openButton(), Qt::LeftButton);
    const vdir::DemoContact& demo = vdir::demoContacts().at(2);
    EXPECT_EQ(display.shownContacts, QStringList{demo.lastName + QStringLiteral(", ") + demo.firstName});
    EXPECT_EQ(display.modal, QList<bool>{true});
    EXPECT_TRUE(d.isVisible());

    // A row whose card is gone has nothing to open.
    QTest::keyClicks(d.searchBox(), QStringLiteral("ruiz"));
    EXPECT_FALSE(d.openButton()->isEnabled());
}

TEST_F(ContactPickerOpenTest, ACardThatCannotBeFoundIsReportedNotOpened)
{
    request.manageContacts = true;
    request.rows.prepend(row(30, QStringLiteral("Ghost, Gina"), QStringLiteral("Nowhere"), QString(),
                             QStringLiteral("c-not-there")));
    ContactPickerDialog d(request, display);
    showAndWait(d);
    QString text;
    QTimer::singleShot(0, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            text = box->text();
            box->button(QMessageBox::Ok)->click();
        }
    });
    QTest::mouseClick(d.openButton(), Qt::LeftButton);
    EXPECT_TRUE(text.contains(QStringLiteral("Ghost, Gina"))) << text.toStdString();
    EXPECT_TRUE(display.shownContacts.isEmpty());
    EXPECT_TRUE(d.isVisible());
}

} // namespace
} // namespace steplets::qt
