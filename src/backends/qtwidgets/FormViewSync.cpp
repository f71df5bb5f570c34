// The models copied onto the widgets: geometry, the common properties, then what each kind
// shows. Runs with the widgets' signals blocked and the user's acts ignored.
#include "FormView.h"
#include "FormWidgets.h"
#include "controls/Controls.h"
#include <algorithm>
#include <QApplication>
#include <QHeaderView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QStyle>
#include <QTableWidget>
#include <QTimer>
#include <QtMath>
#include <QToolBar>

namespace steplets::qt {

namespace {

// "&&" is a plain ampersand; a single "&" marks the accelerator, which a label without a buddy
// cannot take: it only shows the text.
QString withoutAccelerator(const QString& caption)
{
    QString out;
    for (int i = 0; i < caption.size(); ++i) {
        if (caption[i] == QLatin1Char('&')) {
            if (i + 1 < caption.size() && caption[i + 1] == QLatin1Char('&')) out += QLatin1Char('&'), ++i;
            continue;
        }
        out += caption[i];
    }
    return out;
}

Qt::CursorShape cursorOf(int pointer)
{
    switch (pointer) {
    case Control::Hourglass: return Qt::WaitCursor;
    case Control::Custom: return Qt::PointingHandCursor;
    default: return Qt::ArrowCursor;
    }
}

Qt::Alignment alignmentOf(int a)
{
    const Qt::Alignment h = a / 3 == 0 || a == Grid::AlignGeneral ? Qt::AlignLeft : a / 3 == 1 ? Qt::AlignHCenter : Qt::AlignRight;
    const Qt::Alignment v = a == Grid::AlignGeneral || a % 3 == 1 ? Qt::AlignVCenter : a % 3 == 0 ? Qt::AlignTop : Qt::AlignBottom;
    return h | v;
}

// A theme icon for a tool, chosen by what its tip or caption says it does, with the style's own
// pixmap where the desktop has no icon theme.
QIcon toolIcon(const Tool& tool, QStyle* style)
{
    const QString says = (tool.ToolTipText() + QLatin1Char(' ') + tool.Caption() + QLatin1Char(' ') + tool.Name()).toLower();
    struct Choice { const char* word; const char* theme; QStyle::StandardPixmap fallback; };
    static const Choice choices[] = {
        {"clear", "edit-clear", QStyle::SP_DialogResetButton},
        {"remove", "edit-delete", QStyle::SP_TrashIcon},
        {"delete", "edit-delete", QStyle::SP_TrashIcon},
        {"contact", "x-office-address-book", QStyle::SP_FileDialogContentsView},
        {"select", "edit-find", QStyle::SP_FileDialogContentsView},
        {"open", "document-open", QStyle::SP_DialogOpenButton},
        {"new", "document-new", QStyle::SP_FileIcon},
        {"add", "list-add", QStyle::SP_FileIcon},
        {"help", "help-contents", QStyle::SP_DialogHelpButton},
    };
    for (const Choice& c : choices)
        if (says.contains(QLatin1String(c.word)))
            return QIcon::fromTheme(QLatin1String(c.theme), style->standardIcon(c.fallback));
    return style->standardIcon(QStyle::SP_ArrowRight);
}

} // namespace

// --- Scheduling ---

void FormView::controlChanged(Control& control)
{
    m_dirty.insert(&control);
    scheduleFlush();
}

void FormView::formChanged(Form&)
{
    m_formDirty = true;
    scheduleFlush();
}

void FormView::scheduleFlush()
{
    // Copied after the running handler returns: a list is never rebuilt inside its own signal.
    if (m_flushScheduled) return;
    m_flushScheduled = true;
    QTimer::singleShot(0, this, [this] { flush(); });
}

void FormView::flush()
{
    m_flushScheduled = false;
    if (!m_form) return;
    m_syncing = true;
    if (m_formDirty) syncForm();
    const QSet<Control*> dirty = std::exchange(m_dirty, {});
    for (Control* c : m_form->controls())   // in the window's order, containers before contents
        if (dirty.contains(c)) sync(*c);
    if (!dirty.isEmpty()) {
        syncTabOrder();
        layoutControls();
    }
    syncFocus();
    m_syncing = false;
}

// --- The window ---

void FormView::syncForm()
{
    m_formDirty = false;
    setWindowTitle(m_form->Caption());
    layoutControls();
    if (m_form->placed() && isVisible()) placeWindow();
}

void FormView::placeWindow()
{
    // The form's Left and Top are the window's outer corner on the screen.
    const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    const QPoint origin = screen ? screen->virtualGeometry().topLeft() : QPoint();
    const QPoint at = origin + QPoint(px(m_form->Left()), px(m_form->Top()));
    if (pos() != at) move(at);
}

void FormView::syncTabOrder()
{
    QWidget* previous = nullptr;
    for (Control* c : m_form->tabOrder()) {
        QWidget* w = widgetOf(*c);
        if (!w || w->focusPolicy() == Qt::NoFocus) continue;
        if (previous) QWidget::setTabOrder(previous, w);
        previous = w;
    }
}

void FormView::syncFocus()
{
    // The user is in a drop-down: the focus stays there until it closes.
    if (QApplication::activePopupWidget()) return;
    Control* active = m_form->ActiveControl();
    QWidget* w = active ? widgetOf(*active) : nullptr;
    if (w && isVisible() && w->isVisible() && !w->hasFocus()) w->setFocus(Qt::OtherFocusReason);
}

// --- One control ---

void FormView::sync(Control& c)
{
    QWidget* w = widgetOf(c);
    if (!w) return;
    const QSignalBlocker block(w);
    syncCommon(c, w);
    syncKind(c, w);
}

void FormView::syncCommon(Control& c, QWidget* w)
{
    placeDesigned(c, w);
    w->setVisible(c.Visible());
    w->setEnabled(c.Enabled());
    w->setToolTip(c.ToolTipText());
    if (c.MousePointer() == Control::Default) w->unsetCursor();
    else w->setCursor(cursorOf(c.MousePointer()));
    if (c.kind() != Control::Kind::Label && c.kind() != Control::Kind::Frame && c.kind() != Control::Kind::PictureBox &&
        c.kind() != Control::Kind::StatusBar && c.kind() != Control::Kind::ProgressBar && c.kind() != Control::Kind::ToolBar)
        w->setFocusPolicy(c.TabStop() ? Qt::StrongFocus : Qt::ClickFocus);
}

void FormView::syncKind(Control& c, QWidget* w)
{
    switch (c.kind()) {
    case Control::Kind::CommandButton:
        static_cast<QPushButton*>(w)->setText(c.Caption());
        break;
    case Control::Kind::CheckBox: {
        auto* b = static_cast<QCheckBox*>(w);
        b->setText(c.Caption());
        const int v = static_cast<CheckBox&>(c).Value();
        b->setTristate(v == CheckBox::Grayed);
        b->setCheckState(v == CheckBox::Checked ? Qt::Checked : v == CheckBox::Grayed ? Qt::PartiallyChecked : Qt::Unchecked);
        break;
    }
    case Control::Kind::OptionButton: {
        auto* b = static_cast<QRadioButton*>(w);
        b->setText(c.Caption());
        b->setChecked(static_cast<OptionButton&>(c).Value());
        break;
    }
    case Control::Kind::TextBox: {
        auto* e = static_cast<QLineEdit*>(w);
        auto& box = static_cast<TextBox&>(c);
        if (e->text() != box.Text()) e->setText(box.Text());
        e->setReadOnly(box.Locked());
        e->setMaxLength(box.MaxLength() > 0 ? box.MaxLength() : 32767);
        // The selection is copied only when code moved it, so the caret stays where the user types.
        const QPair<int, int> sel{box.SelStart(), box.SelLength()};
        if (m_syncedSelection.value(&c, {-1, -1}) != sel) {
            m_syncedSelection.insert(&c, sel);
            e->setSelection(sel.first, sel.second);
        }
        break;
    }
    case Control::Kind::Label: {
        auto* l = static_cast<QLabel*>(w);
        Control* next = m_form->nextInTabOrder(&c);
        QWidget* buddy = next ? widgetOf(*next) : nullptr;
        l->setBuddy(buddy);
        l->setText(buddy ? c.Caption() : withoutAccelerator(c.Caption()));
        break;   // its size and wrapping follow its text once every control is in place
    }
    case Control::Kind::Frame:
        static_cast<QGroupBox*>(w)->setTitle(c.Caption());
        break;
    case Control::Kind::ListBox: syncList(c, w); break;
    case Control::Kind::ComboBox: {
        auto* b = static_cast<QComboBox*>(w);
        auto& combo = static_cast<ComboBox&>(c);
        bool same = b->count() == combo.ListCount();
        for (int i = 0; same && i < b->count(); ++i) same = b->itemText(i) == combo.List(i);
        if (!same) {
            b->clear();
            for (int i = 0; i < combo.ListCount(); ++i) b->addItem(combo.List(i));
        }
        b->setCurrentIndex(combo.ListIndex());
        if (b->isEditable() && b->currentText() != combo.Text()) b->setEditText(combo.Text());
        if (b->isEditable()) b->lineEdit()->setReadOnly(combo.Locked());
        break;
    }
    case Control::Kind::TabStrip: {
        auto& strip = static_cast<TabStrip&>(c);
        QTabBar* bar = static_cast<TabStripWidget*>(w)->tabBar();
        const QSignalBlocker blockBar(bar);
        while (bar->count() > strip.TabCount()) bar->removeTab(bar->count() - 1);
        for (int i = 1; i <= strip.TabCount(); ++i) {
            if (i > bar->count()) bar->addTab(strip.TabCaption(i));
            else bar->setTabText(i - 1, strip.TabCaption(i));
        }
        if (strip.SelectedTab() > 0) bar->setCurrentIndex(strip.SelectedTab() - 1);
        break;
    }
    case Control::Kind::Grid: syncGrid(c, w); break;
    case Control::Kind::StatusBar: {
        auto& bar = static_cast<StatusBar&>(c);
        auto* s = static_cast<QStatusBar*>(w);
        QList<QLabel*> panels = s->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
        while (panels.size() < bar.PanelCount()) {
            auto* l = new QLabel(s);
            l->setFrameShape(QFrame::StyledPanel);
            s->addWidget(l, 1);
            panels << l;
        }
        for (int i = 0; i < panels.size(); ++i) {
            panels[i]->setVisible(i < bar.PanelCount());
            if (i < bar.PanelCount()) panels[i]->setText(bar.PanelText(i + 1));
        }
        break;
    }
    case Control::Kind::ProgressBar: {
        auto& p = static_cast<ProgressBar&>(c);
        auto* q = static_cast<QProgressBar*>(w);
        q->setRange(p.Min(), p.Max());
        q->setValue(p.Value());
        break;
    }
    case Control::Kind::ToolBar: syncToolBar(c, w); break;
    case Control::Kind::Calendar: {
        auto& cal = static_cast<Calendar&>(c);
        auto* box = static_cast<CalendarBox*>(w);
        const QSignalBlocker blockCalendar(box->calendar());
        box->showDate(cal.Value().isNull() ? QDate() : cal.Value().toDate().toQDateTime().date());
        break;
    }
    case Control::Kind::PictureBox:
    case Control::Kind::Timer:
    case Control::Kind::ContactCombo:
        break;
    }
}

void FormView::syncList(Control& c, QWidget* w)
{
    auto& list = static_cast<ListBox&>(c);
    auto* l = static_cast<QListWidget*>(w);
    const bool ticks = list.style() == ListBox::Style::CheckBox;
    // 1. The rows, rebuilt only when their texts differ.
    bool same = l->count() == list.ListCount();
    for (int i = 0; same && i < l->count(); ++i) same = l->item(i)->text() == list.List(i);
    if (!same) {
        // All rows in one insertion: one by one, each is a change the view takes in on its own.
        QStringList texts;
        texts.reserve(list.ListCount());
        for (int i = 0; i < list.ListCount(); ++i) texts << list.List(i);
        l->clear();
        l->addItems(texts);
        if (ticks)
            for (int i = 0; i < l->count(); ++i) l->item(i)->setFlags(l->item(i)->flags() | Qt::ItemIsUserCheckable);
    }
    // 2. Ticks or selections, then the current row and the top row.
    for (int i = 0; i < list.ListCount(); ++i) {
        QListWidgetItem* item = l->item(i);
        if (ticks) item->setCheckState(list.Selected(i) ? Qt::Checked : Qt::Unchecked);
        else if (list.multiSelect() != ListBox::MultiSelect::None) item->setSelected(list.Selected(i));
    }
    const int current = list.ListIndex();
    if (current >= 0 && current < l->count()) {
        l->setCurrentRow(current, list.multiSelect() == ListBox::MultiSelect::None || ticks
                                      ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::Current);
    } else if (list.multiSelect() == ListBox::MultiSelect::None || ticks) {
        l->clearSelection();
        l->setCurrentRow(-1);
    }
    if (list.TopIndex() >= 0 && list.TopIndex() < l->count())
        l->scrollToItem(l->item(list.TopIndex()), QAbstractItemView::PositionAtTop);
}

void FormView::syncGrid(Control& c, QWidget* w)
{
    auto& grid = static_cast<Grid&>(c);
    auto* g = static_cast<QTableWidget*>(w);
    g->setRowCount(grid.Rows());
    g->setColumnCount(grid.Cols());
    // The fixed rows keep their numbers, hidden in the body and read in the header instead; the
    // fixed columns are tinted and scroll with the rest.
    const int fixedRows = std::min(grid.FixedRows(), grid.Rows());
    g->horizontalHeader()->setVisible(fixedRows > 0);
    const QColor fixed = g->palette().color(QPalette::Button);
    // A cell's text lies inside the style's text margins and the grid line.
    const int margin = 2 * (g->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, g) + 1) + 1;
    // Measured to the fraction of a pixel: a date a fraction too wide for its cell is cut.
    const QFontMetricsF fm(g->font());
    std::vector<int> need(grid.Cols(), 0);
    for (int col = 0; col < grid.Cols(); ++col) {
        QStringList heads;
        for (int r = 0; r < fixedRows; ++r) heads << grid.TextMatrix(r, col);
        QTableWidgetItem* head = g->horizontalHeaderItem(col);
        if (!head) g->setHorizontalHeaderItem(col, head = new QTableWidgetItem);
        head->setText(heads.join(QLatin1Char('\n')));
        head->setTextAlignment(alignmentOf(grid.FixedAlignment(col)));
        need[col] = qCeil(QFontMetricsF(g->horizontalHeader()->font()).size(0, head->text()).width()) + margin;
    }
    for (int r = 0; r < grid.Rows(); ++r) {
        g->setRowHidden(r, r < fixedRows);
        for (int col = 0; col < grid.Cols(); ++col) {
            QTableWidgetItem* item = g->item(r, col);
            if (!item) g->setItem(r, col, item = new QTableWidgetItem);
            item->setText(grid.TextMatrix(r, col));
            const bool isFixed = r < grid.FixedRows() || col < grid.FixedCols();
            item->setTextAlignment(alignmentOf(isFixed ? grid.FixedAlignment(col) : grid.ColAlignment(col)));
            if (isFixed) item->setBackground(fixed);
            if (r >= fixedRows) need[col] = std::max(need[col], qCeil(fm.horizontalAdvance(item->text())) + margin);
        }
    }
    // One line a row, as the designed grid draws it.
    g->verticalHeader()->setMinimumSectionSize(0);
    g->verticalHeader()->setDefaultSectionSize(qCeil(fm.height()) + margin);
    fitGridColumns(grid, g, need);
    if (grid.Row() >= 0 && grid.Row() < grid.Rows()) g->selectRow(grid.Row());
    // TopRow is the first row under the fixed ones.
    const int top = grid.TopRow();
    if (top <= fixedRows) g->scrollToTop();
    else if (top < grid.Rows() && g->item(top, 0)) g->scrollToItem(g->item(top, 0), QAbstractItemView::PositionAtTop);
}

void FormView::fitGridColumns(Grid& grid, QTableWidget* g, const std::vector<int>& need)
{
    // The designed widths assume the designer's narrower font. A column too narrow for its texts
    // takes what the grid has left over, then what other columns' texts leave unused, the
    // smallest shortfalls first, so short texts such as dates come out whole; a column only
    // gives away room its own texts (header included) do not use.
    const int cols = grid.Cols();
    std::vector<int> width(cols);
    int used = 0;
    std::vector<std::pair<int, int>> shortfalls, surpluses;   // (pixels, column)
    for (int col = 0; col < cols; ++col) {
        width[col] = grid.ColWidth(col) >= 0 ? px(grid.ColWidth(col)) : g->horizontalHeader()->defaultSectionSize();
        used += width[col];
        if (need[col] > width[col]) shortfalls.emplace_back(need[col] - width[col], col);
        else surpluses.emplace_back(width[col] - need[col], col);
    }
    const int scrollBar = g->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, g);
    const int free = std::max(0, g->width() - 2 * g->frameWidth() - scrollBar - used);
    int pool = free, taken = 0;
    for (const auto& [spare, col] : surpluses) pool += spare;
    std::sort(shortfalls.begin(), shortfalls.end());
    for (const auto& [missing, col] : shortfalls) {
        const int extra = std::min(missing, pool);
        width[col] += extra;
        pool -= extra;
        taken += extra;
    }
    int fromOthers = std::max(0, taken - free);
    std::sort(surpluses.rbegin(), surpluses.rend());
    for (const auto& [spare, col] : surpluses) {
        const int cut = std::min(spare, fromOthers);
        width[col] -= cut;
        fromOthers -= cut;
    }
    for (int col = 0; col < cols; ++col) g->setColumnWidth(col, width[col]);
}

void FormView::syncToolBar(Control& c, QWidget* w)
{
    auto& bar = static_cast<ToolBar&>(c);
    auto* t = static_cast<QToolBar*>(w);
    // The actions are rebuilt from the bands each time: a bar holds a handful of tools.
    t->clear();
    for (int b = 0; b < bar.BandCount(); ++b) {
        Band& band = bar.Bands(b);
        if (b > 0) t->addSeparator();
        for (int i = 0; i < band.ToolCount(); ++i) {
            Tool& tool = band.Tools(i);
            QAction* a = t->addAction(toolIcon(tool, t->style()), tool.Caption().isEmpty() ? tool.Name() : tool.Caption());
            a->setObjectName(tool.Name());
            a->setToolTip(tool.ToolTipText());
            a->setEnabled(tool.Enabled());
            a->setVisible(tool.Visible());
        }
    }
}

} // namespace steplets::qt
