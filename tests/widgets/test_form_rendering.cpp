// What the generic binding draws, checked as geometry on the offscreen platform: the prompt
// dialog's calendar and labels in the modes that change its layout, and a results grid scrolled
// to its last row. Each window is photographed into the build directory.
#include "FormView.h"
#include "FormWidgets.h"
#include "QtUiHost.h"
#include "WidgetSupport.h"
#include "WindowChecks.h"
#include "controls/Controls.h"
#include "dialogs/frmPrompt.h"
#include "session/SessionContext.h"
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

using namespace steplets;
using steplets::qt::FormView;
using steplets::test::Driver;

namespace {

class FormRenderingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::widgetApp();
        session() = SessionContext();
    }
    void TearDown() override { session() = SessionContext(); }
    FormView* view(Form& f) const { return host.viewOf(f); }
    bool shown(Form& f) const { return view(f) && view(f)->isVisible(); }

    qt::QtUiHost host;
};

// --- The prompt dialog ---

TEST_F(FormRenderingTest, TheAnchorDateCalendarShowsWholeWeeksAndTakesAPickedDay)
{
    frmPrompt prompt(host);
    QDate picked;
    Driver driver;
    driver.then("the prompt with a date and a text", [&] { return shown(prompt); }, [&] {
        auto* box = static_cast<qt::CalendarBox*>(view(prompt)->widgetOf(prompt.ActiveCalendar1));
        test::expectNothingClipped(view(prompt));
        test::saveScreenshot(view(prompt), QStringLiteral("prompt-anchor-date"));
        // The user clicks where the calendar is drawn; the month grid must then be there whole.
        QTest::mouseClick(box, Qt::LeftButton);
        QCalendarWidget* cal = box->calendar();
        ASSERT_TRUE(cal->isVisible());
        EXPECT_GE(cal->height(), cal->minimumSizeHint().height());
        EXPECT_GE(cal->width(), cal->minimumSizeHint().width());
        test::saveScreenshot(cal->window(), QStringLiteral("prompt-anchor-date-calendar"));
        // The 15th of the month shown: the first "15" of the grid, as the days of the month
        // before come first and are all later than the 21st.
        auto* days = cal->findChild<QTableView*>();
        ASSERT_NE(days, nullptr);
        QModelIndex fifteenth;
        for (int r = 1; r < days->model()->rowCount() && !fifteenth.isValid(); ++r)
            for (int c = 0; c < days->model()->columnCount() && !fifteenth.isValid(); ++c)
                if (days->model()->index(r, c).data().toInt() == 15) fifteenth = days->model()->index(r, c);
        ASSERT_TRUE(fifteenth.isValid());
        EXPECT_TRUE(days->viewport()->rect().contains(days->visualRect(fifteenth)));
        picked = QDate(cal->yearShown(), cal->monthShown(), 15);
        QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(fifteenth).center());
        QTest::qWait(20);
        EXPECT_FALSE(cal->isVisible() && cal->window() != view(prompt)) << "the drop-down stays open";
        test::saveScreenshot(view(prompt), QStringLiteral("prompt-anchor-date-picked"));
        // By keys: F4 drops the grid down on the day picked, Right moves on a day, Enter takes it.
        box->setFocus();
        QTest::keyClick(box, Qt::Key_F4);
        ASSERT_TRUE(cal->isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTest::qWait(20);
        EXPECT_FALSE(cal->isVisible()) << "Enter leaves the drop-down open";
        picked = picked.addDays(1);
        QTest::mouseClick(view(prompt)->widgetOf(prompt.OKButton), Qt::LeftButton);
    });
    driver.start();
    qint32 mode = 1;
    Bool16 withDate(true), withText(true);
    QString userPrompt = QStringLiteral("Property address"), item = QStringLiteral("Send engagement letter (Byrne, Ada)");
    QString anchor = QStringLiteral("Date the engagement was signed");
    prompt.PromptDialog(mode, withDate, withText, userPrompt, item, anchor);
    ASSERT_TRUE(driver.finished());
    EXPECT_EQ(session().dPromptAnchorDate.toQDateTime().date(), picked);
}

TEST_F(FormRenderingTest, TheCommonInputQuestionShowsEveryLineClearOfItsButtons)
{
    frmPrompt prompt(host);
    Driver driver;
    driver.then("the question", [&] { return shown(prompt); }, [&] {
        test::expectNothingClipped(view(prompt));
        // The last paragraph ends above the buttons, which stay inside the window.
        QWidget* last = view(prompt)->widgetOf(prompt.Label2[3]);
        QWidget* yes = view(prompt)->widgetOf(prompt.OKButton);
        EXPECT_LE(last->geometry().bottom(), yes->geometry().top());
        EXPECT_TRUE(view(prompt)->rect().contains(yes->geometry()));
        test::saveScreenshot(view(prompt), QStringLiteral("prompt-common-input"));
        QTest::mouseClick(yes, Qt::LeftButton);
    });
    driver.start();
    qint32 mode = 6;
    Bool16 no(false);
    QString anchors = QStringLiteral("2"), prompts = QStringLiteral("1"), none;
    prompt.PromptDialog(mode, no, no, anchors, prompts, none);
    ASSERT_TRUE(driver.finished());
    EXPECT_FALSE(session().bPromptCancelled);
}

// --- The results grid ---

// A grid laid out as the processing window's, with more rows than it shows.
class GridWindow : public Form {
public:
    explicit GridWindow(UiHost& host) : Form(host, QStringLiteral("frmGrid"))
    {
        setCaption(QStringLiteral("Grid"));
        setWidth(8400);
        setHeight(4500);
        grid.Move(120, 120, 8055, 3375);
        grid.setCols(4);
        grid.setFixedCols(0);
        static const char* const headers[] = {"Task Description", "Due Date", "Reminder", "Contact Link"};
        static const int widths[] = {3600, 1000, 1000, 2000};
        for (int c = 0; c < 4; ++c) {
            grid.setTextMatrix(0, c, QString::fromLatin1(headers[c]));
            grid.setColWidth(c, widths[c]);
            grid.setFixedAlignment(c, Grid::AlignCenterCenter);
        }
        grid.setColAlignment(1, Grid::AlignCenterCenter);
        grid.DblClick.connect([this] { doubleClicked << grid.Row(); });
        cmdClose.setCaption(QStringLiteral("Close"));
        cmdClose.Move(6960, 3600, 1215, 375);
        cmdClose.Click.connect([this] { Hide(); });
    }
    // The rows of a run, filled in once the window is up.
    void fill(int rows)
    {
        grid.setRows(rows);
        for (int r = 1; r < rows; ++r) {
            grid.setTextMatrix(r, 0, QStringLiteral("Quarterly tax filing %1").arg(r));
            grid.setTextMatrix(r, 1, r % 2 ? QStringLiteral("17 Nov 2026") : QStringLiteral("15 Apr 2027"));
            grid.setTextMatrix(r, 2, r % 2 ? QStringLiteral("16 Nov 2026") : QStringLiteral("14 Apr 2027"));
            grid.setTextMatrix(r, 3, QStringLiteral("Byrne, Ada"));
        }
    }
    Grid grid{*this, QStringLiteral("MSHFlexGrid1")};
    CommandButton cmdClose{*this, QStringLiteral("cmdClose")};
    QList<int> doubleClicked;
};

TEST_F(FormRenderingTest, TheGridKeepsItsFixedRowInSightAndEachCellOnOneLine)
{
    GridWindow w(host);
    const int last = 20;
    Driver driver;
    driver.then("the grid", [&] { return shown(w); }, [&] {
        // As a run moves on: the current row is the last, six rows above it are the top one.
        w.fill(last + 1);
        w.grid.setRow(last);
        w.grid.setTopRow(last - 6);
        QTest::qWait(20);
        auto* g = qobject_cast<QTableWidget*>(view(w)->widgetOf(w.grid));
        ASSERT_NE(g, nullptr);

        // The fixed row reads above the rows that scrolled, wherever the grid draws it.
        QStringList fixedShown;
        for (int c = 0; c < w.grid.Cols(); ++c) {
            const QTableWidgetItem* head = g->horizontalHeader()->isVisible() ? g->horizontalHeaderItem(c) : nullptr;
            const QRect cell = g->visualItemRect(g->item(0, c));
            if (head) fixedShown << head->text();
            else if (!g->isRowHidden(0) && g->viewport()->rect().contains(cell)) fixedShown << g->item(0, c)->text();
        }
        EXPECT_EQ(fixedShown, (QStringList{QStringLiteral("Task Description"), QStringLiteral("Due Date"),
                                           QStringLiteral("Reminder"), QStringLiteral("Contact Link")}));
        const QRect lastCell = g->visualItemRect(g->item(last, 0));
        EXPECT_TRUE(g->viewport()->rect().contains(lastCell));

        // One line a row, and a date whole in its column.
        const QFontMetricsF fm(g->font());
        const int margin = 2 * (g->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, g) + 1) + 1;   // and the grid line
        EXPECT_FALSE(g->wordWrap());
        for (int r = 1; r <= last; ++r) EXPECT_LT(g->rowHeight(r), 2 * fm.lineSpacing()) << "row " << r;
        for (int r = last - 1; r <= last; ++r)
            for (int c = 1; c < 3; ++c)
                EXPECT_LE(fm.horizontalAdvance(g->item(r, c)->text()) + margin, g->columnWidth(c)) << "column " << c;
        test::saveScreenshot(view(w), QStringLiteral("grid-scrolled-to-last-row"));

        // The rows keep their numbers: a click and a double click on the last one are on the
        // model's last row.
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, lastCell.center());
        QTest::mouseDClick(g->viewport(), Qt::LeftButton, {}, lastCell.center());
        QTest::qWait(20);
        QTest::mouseClick(view(w)->widgetOf(w.cmdClose), Qt::LeftButton);
    });
    driver.start();
    w.Show();
    ASSERT_TRUE(driver.finished());
    EXPECT_EQ(w.doubleClicked, QList<int>{last});
    w.Unload();
}

} // namespace
