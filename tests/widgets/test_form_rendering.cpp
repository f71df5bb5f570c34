// What the generic binding draws, checked as geometry on the offscreen platform: the template
// options on each tab, and a results grid scrolled to its last row.
#include "FormView.h"
#include "FormWidgets.h"
#include "QtUiHost.h"
#include "WidgetSupport.h"
#include "controls/Controls.h"
#include "dialogs/frmNewTask.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include <QHeaderView>
#include <QStyle>
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
    FormView* view(Form& f) const { return host.viewOf(f); }
    bool shown(Form& f) const { return view(f) && view(f)->isVisible(); }

    qt::QtUiHost host;
};

// --- The template options ---

// A page is in sight when its widget lies (at least partly) inside the window, not moved out.
bool inSight(FormView* v, Control& page)
{
    QWidget* p = v->widgetOf(page);
    return p->isVisible() && v->rect().intersects(p->geometry().translated(p->parentWidget()->mapTo(v, QPoint())));
}

// The buttons and fields each mode shows are compared with the screen at the scenario files'
// snapshots; where the pages lie is not.
TEST_F(FormRenderingTest, TemplateOptionsShowThePageOfEachTabAndAnAnchorDateWithNoDayPicked)
{
    modTasks::EditedTemplate().DateType = Int16(2);
    modTasks::EditedTemplate().PromptForAssignee = QStringLiteral("0");   // as a template read from the store has it
    frmNewTask dialog(host);
    Driver driver;
    driver.then("the dialog", [&] { return shown(dialog); }, [&] {
        FormView* v = view(dialog);
        QTabBar* bar = static_cast<qt::TabStripWidget*>(v->widgetOf(dialog.TabStrip1))->tabBar();
        for (int tab = 3; tab >= 1; --tab) {
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab - 1).center());
            QTest::qWait(20);   // the page's widgets follow once the handler has returned
            for (int page = 0; page < 3; ++page) EXPECT_EQ(inSight(v, dialog.Picture1[page]), page == tab - 1) << tab << page;
        }
        EXPECT_EQ(static_cast<qt::CalendarBox*>(v->widgetOf(dialog.dtmAnchorDate))->fieldText(), QStringLiteral("(no date)"));
        QTest::mouseClick(v->widgetOf(dialog.CancelButton), Qt::LeftButton);
    });
    driver.start();
    Bool16 blnEdit(false);
    QString name = QStringLiteral("Closing documents");
    dialog.NewTaskDialog(blnEdit, name);
    ASSERT_TRUE(driver.finished());
    dialog.Unload();
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
            grid.setTextMatrix(r, 1, QLatin1String(r % 2 ? "17 Nov 2026" : "15 Apr 2027"));
            grid.setTextMatrix(r, 2, QLatin1String(r % 2 ? "16 Nov 2026" : "14 Apr 2027"));
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
        EXPECT_EQ(fixedShown, (QStringList{"Task Description", "Due Date", "Reminder", "Contact Link"}));
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
