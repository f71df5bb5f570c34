// The Qt contact picker driven by keys on the offscreen platform: its search and keys. Choosing
// by double click and cancelling are played by the scenario files on the Qt host.
#include "ContactPickerDialog.h"
#include "WidgetSupport.h"
#include <QTreeWidget>

namespace steplets::qt {
namespace {

using test::showAndWait;

ContactPickerRow row(qint32 id, const QString& name, const QString& company, const QString& email, const QString& entryID = {})
{
    return {id, name, entryID.isEmpty() ? QStringLiteral("c-%1").arg(id) : entryID, company, email, true};
}

// Stands for the item window, which searching and choosing never open.
class NoDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem&, bool) override { ADD_FAILURE() << "a task was displayed"; }
    void displayContact(ol::ContactItem&, bool) override { ADD_FAILURE() << "a contact was displayed"; }
};

class ContactPickerDialogTest : public ::testing::Test {
protected:
    ContactPickerDialogTest()
    {
        test::widgetApp();
        request.version = QStringLiteral("newer");
        request.rows = {row(11, "Brandt, Ada", "Harbor Freight Lines", "ada@harbor.example"),
                        row(12, "Chen, Marcus", "Orchard Dental", "m.chen@orcharddental.example"),
                        row(13, "Diaz, Lucia", "Harbor Freight Lines", "lucia.diaz@mail.example"), row(14, "Okafor, Ben", {}, "ben@okafor.example"),
                        {15, QStringLiteral("Ruiz, Tomas"), QStringLiteral("c-missing"), {}, {}, false}};
    }
    static void search(ContactPickerDialog& d, const QString& text)
    {
        QTest::keyClick(d.searchBox(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(d.searchBox(), Qt::Key_Backspace);
        QTest::keyClicks(d.searchBox(), text);
    }

    ContactPickerRequest request;
    NoDisplay display;
};

// The older version lists and searches the names only.
TEST_F(ContactPickerDialogTest, ListsEveryRowInOrderAndTypingNarrowsOnNameCompanyAndEmailIgnoringCase)
{
    using Searches = std::vector<std::pair<const char*, QStringList>>;
    const Searches newer = {{"HARBOR", {"Brandt, Ada", "Diaz, Lucia"}}, {"HARBOR f", {"Brandt, Ada", "Diaz, Lucia"}},
                            {"okafor.EX", {"Okafor, Ben"}}, {"marc", {"Chen, Marcus"}}, {"marczzz", {}}};
    const Searches older = {{"ada", {"Brandt, Ada"}}, {"harbor", {}}};
    for (const bool isOlder : {false, true}) {
        request.version = isOlder ? QStringLiteral("older") : QStringLiteral("newer");
        const int columns = isOlder ? 1 : 3;
        ContactPickerDialog d(request, display);
        showAndWait(d);
        ASSERT_EQ(d.list()->topLevelItemCount(), request.rows.size());
        ASSERT_EQ(d.list()->columnCount(), columns);
        for (int i = 0; i < request.rows.size(); ++i) {
            const QStringList all{request.rows[i].name, request.rows[i].company, request.rows[i].email};
            for (int c = 0; c < columns; ++c) EXPECT_EQ(d.list()->topLevelItem(i)->text(c), all[c]) << i;
        }
        EXPECT_FALSE(d.list()->topLevelItem(4)->toolTip(0).isEmpty()) << "the row whose card is gone says why";
        for (const auto& [text, names] : isOlder ? older : newer) {
            search(d, QLatin1String(text));
            EXPECT_EQ(d.visibleNames(), names) << text;
        }
        EXPECT_FALSE(d.findChild<QPushButton*>(QStringLiteral("ok"))->isEnabled());
        search(d, {});
        EXPECT_EQ(d.visibleNames().size(), request.rows.size());
    }
}

TEST_F(ContactPickerDialogTest, EnterTakesTheRowTheArrowsReachEvenWithoutACardAndEscapeTakesNone)
{
    struct Case { const char* typed; int downs; Qt::Key key; qint32 chosen; const char* entryID; };
    const Case cases[] = {{"lucia", 0, Qt::Key_Return, 13, "c-13"}, {"harbor", 1, Qt::Key_Return, 13, "c-13"},
                          {"ruiz", 0, Qt::Key_Enter, 15, "c-missing"}, {"ada", 0, Qt::Key_Escape, 0, ""}};
    for (const Case& c : cases) {
        ContactPickerDialog d(request, display);
        showAndWait(d);
        search(d, QLatin1String(c.typed));
        for (int i = 0; i < c.downs; ++i) QTest::keyClick(d.searchBox(), Qt::Key_Down);
        QTest::keyClick(d.searchBox(), c.key);
        EXPECT_EQ(d.QDialog::result(), c.chosen ? QDialog::Accepted : QDialog::Rejected) << c.typed;
        EXPECT_EQ(d.choice().contactID, c.chosen) << c.typed;
        EXPECT_EQ(d.choice().entryID, QLatin1String(c.entryID)) << c.typed;
        EXPECT_EQ(d.choice().name.isEmpty(), c.chosen == 0) << c.typed;
    }
}

} // namespace
} // namespace steplets::qt
