#include "FormView.h"
#include "FormWidgets.h"
#include "KeyCodes.h"
#include "QtUiHost.h"
#include "controls/Controls.h"
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QAbstractButton>
#include <QApplication>
#include <QUrl>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QShortcutEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QGuiApplication>
#include <QScreen>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>

namespace steplets::qt {

int twipsToPixels(int twips, double dpi) { return qRound(twips * dpi / 1440.0); }
double pixelsToTwips(int pixels, double dpi) { return pixels * 1440.0 / dpi; }

FormView::FormView(Form& form, QtUiHost& host) : QDialog(nullptr), m_form(&form), m_host(host)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    m_dpi = screen ? screen->logicalDotsPerInch() : 96.0;
    setObjectName(form.name());
    setWindowModality(Qt::ApplicationModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    // The designs count on a small dialog font (8 points); a larger one would clip the captions.
    QFont small = font();
    small.setPointSizeF(8);
    setFont(small);
    createAll();
    form.setObserver(this);
    flush();
}

FormView::~FormView() { detach(); }

void FormView::detach()
{
    if (!m_form) return;
    if (m_form->observer() == this) m_form->setObserver(nullptr);
    m_form = nullptr;
    m_dirty.clear();
}

void FormView::present(QWidget* below)
{
    if (below != this && parentWidget() != below) {
        const Qt::WindowFlags flags = windowFlags();
        setParent(below, flags);
    }
    flush();
    // Where the form puts itself, else where it was last seen; a window seen for the first time
    // is centred over the window below, as a dialog is. A place given before the show also
    // tells the window manager to leave it there.
    if (m_form && m_form->placed()) placeWindow();
    else if (m_lastPlace) move(*m_lastPlace);
    show();
    raise();
    activateWindow();
}

void FormView::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) m_lastPlace = pos();
    QDialog::hideEvent(event);
}

int FormView::px(int twips) const { return twipsToPixels(twips, m_dpi); }

void FormView::act(const std::function<void()>& body)
{
    // Signals raised while the models are copied onto the widgets are the copy's own echo.
    if (m_syncing || !m_form) return;
    m_host.runUserAct(body);
}

// --- Widgets of each kind ---

void FormView::createAll()
{
    // Containers first: a control's widget is a child of its container's widget, so its
    // coordinates stay relative to the container as in the design.
    const auto& controls = m_form->controls();
    QSet<Control*> pending(controls.begin(), controls.end());
    while (!pending.isEmpty()) {
        bool progressed = false;
        for (Control* c : controls) {
            if (!pending.contains(c) || (c->Container() && pending.contains(c->Container()))) continue;
            pending.remove(c);
            progressed = true;
            QWidget* parent = c->Container() && m_widgets.value(c->Container()) ? m_widgets.value(c->Container()) : this;
            if (QWidget* w = create(*c, parent)) bind(*c, w);
        }
        if (!progressed) break;   // a container cycle: the rest stay without widgets
    }
    for (Control* c : controls) m_dirty.insert(c);
}

QWidget* FormView::create(Control& c, QWidget* parent)
{
    switch (c.kind()) {
    case Control::Kind::CommandButton: {
        auto* b = new QPushButton(parent);
        b->setAutoDefault(false);   // Enter belongs to the window's default button alone
        connect(b, &QPushButton::clicked, this, [this, &c] { act([&c] { c.userClick(); }); });
        return b;
    }
    case Control::Kind::CheckBox: {
        auto* b = new QCheckBox(parent);
        connect(b, &QCheckBox::clicked, this, [this, &c] { act([&c] { c.userClick(); }); });
        return b;
    }
    case Control::Kind::OptionButton: {
        auto* b = new QRadioButton(parent);
        b->setAutoExclusive(false);   // the model clears the others of its group
        connect(b, &QRadioButton::clicked, this, [this, &c] { act([&c] { c.userClick(); }); });
        return b;
    }
    case Control::Kind::TextBox: {
        auto* e = new QLineEdit(parent);
        auto& box = static_cast<TextBox&>(c);
        connect(e, &QLineEdit::textEdited, this, [this, e, &box](const QString& t) {
            act([&] {
                box.setText(t);
                box.setSelStart(e->cursorPosition());
                box.setSelLength(0);
            });
            m_syncedSelection.insert(&box, {box.SelStart(), box.SelLength()});
        });
        return e;
    }
    case Control::Kind::Label: {
        // A label is painted on its container, under every other control that overlaps it.
        auto* l = new QLabel(parent);
        l->setTextFormat(Qt::PlainText);   // a caption is text, whatever it looks like
        l->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        l->lower();
        return l;
    }
    case Control::Kind::Frame: return new QGroupBox(parent);
    case Control::Kind::PictureBox: return new QWidget(parent);
    case Control::Kind::ListBox: return createList(c, parent);
    case Control::Kind::ComboBox: {
        auto* b = new QComboBox(parent);
        auto& combo = static_cast<ComboBox&>(c);
        b->setEditable(combo.style() == ComboBox::Style::DropDownCombo);
        connect(b, &QComboBox::activated, this, [this, &combo](int row) { act([&] { combo.userSelect(row); }); });
        if (b->isEditable())
            connect(b, &QComboBox::editTextChanged, this, [this, &combo](const QString& t) { act([&] { combo.setText(t); }); });
        return b;
    }
    case Control::Kind::TabStrip: return createTabStrip(c, parent);
    case Control::Kind::Grid: {
        auto* g = new QTableWidget(parent);
        // The fixed rows are the horizontal header, so they stay in sight as the rows scroll.
        g->horizontalHeader()->setSectionsClickable(false);
        g->horizontalHeader()->setHighlightSections(false);
        g->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        g->verticalHeader()->hide();
        g->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        g->setWordWrap(false);
        g->setEditTriggers(QAbstractItemView::NoEditTriggers);
        g->setSelectionBehavior(QAbstractItemView::SelectRows);
        g->setSelectionMode(QAbstractItemView::SingleSelection);
        g->setTabKeyNavigation(false);   // Tab moves on to the next control, as the designed grid's does
        auto& grid = static_cast<Grid&>(c);
        connect(g, &QTableWidget::cellClicked, this, [this, &grid](int row, int col) {
            act([&] {
                grid.userClick();
                grid.setRow(row);
                grid.setCol(col);
                grid.Click();
            });
        });
        connect(g, &QTableWidget::cellDoubleClicked, this, [this, &grid](int row, int) { act([&] { grid.userDblClick(row); }); });
        return g;
    }
    case Control::Kind::StatusBar: {
        auto* s = new QStatusBar(parent);
        s->setSizeGripEnabled(false);
        return s;
    }
    case Control::Kind::ProgressBar: {
        auto* p = new QProgressBar(parent);
        p->setTextVisible(false);
        return p;
    }
    case Control::Kind::ToolBar: return createToolBar(c, parent);
    case Control::Kind::Calendar: {
        auto* box = new CalendarBox(parent);
        auto& cal = static_cast<Calendar&>(c);
        connect(box->calendar(), &QCalendarWidget::clicked, this, [this, &cal](QDate d) {
            act([&] { cal.userPickDate(Date::fromQDate(d)); });
        });
        // Enter on a day of the drop-down picks it as a click does; a double click on the grid,
        // which clicked the day already, picks nothing more.
        connect(box->calendar(), &QCalendarWidget::activated, this, [this, &cal, box](QDate d) {
            if (box->isDropDown() || !(cal.Value() == steplets::Value(Date::fromQDate(d))))
                act([&] { cal.userPickDate(Date::fromQDate(d)); });
        });
        m_controlOf.insert(box->calendar(), &c);
        return box;
    }
    case Control::Kind::Timer:
    case Control::Kind::ContactCombo:
        return nullptr;   // no widget: the host's clock, a list in memory
    }
    return nullptr;
}

QWidget* FormView::createList(Control& c, QWidget* parent)
{
    auto* l = new QListWidget(parent);
    // Every row is one line of text: laid out from the first row, not measured row by row, so a
    // list of 10,000 templates scrolls to its top row at once.
    l->setUniformItemSizes(true);
    auto& list = static_cast<ListBox&>(c);
    switch (list.multiSelect()) {
    case ListBox::MultiSelect::None: l->setSelectionMode(QAbstractItemView::SingleSelection); break;
    case ListBox::MultiSelect::Simple: l->setSelectionMode(QAbstractItemView::MultiSelection); break;
    case ListBox::MultiSelect::Extended: l->setSelectionMode(QAbstractItemView::ExtendedSelection); break;
    }
    connect(l, &QListWidget::itemChanged, this, [this, l, &list](QListWidgetItem* item) {
        const int row = l->row(item);
        const bool ticked = item->checkState() == Qt::Checked;
        if (row >= 0 && row < list.ListCount() && list.Selected(row) != ticked) act([&] { list.userTick(row, ticked); });
    });
    connect(l, &QListWidget::itemSelectionChanged, this, [this, l, &list] {
        if (list.multiSelect() == ListBox::MultiSelect::None || list.style() == ListBox::Style::CheckBox) {
            const int row = l->currentRow();
            if (row >= 0 && row < list.ListCount() && row != list.ListIndex()) act([&] { list.userSelect(row); });
            return;
        }
        for (int row = 0; row < l->count() && row < list.ListCount(); ++row) {
            const bool sel = l->item(row)->isSelected();
            if (list.Selected(row) != sel) act([&] { list.userSelect(row, sel); });
        }
    });
    connect(l, &QListWidget::itemDoubleClicked, this, [this, &list] { act([&list] { list.DblClick(); }); });
    m_controlOf.insert(l->viewport(), &c);
    return l;
}

QWidget* FormView::createTabStrip(Control& c, QWidget* parent)
{
    auto* t = new TabStripWidget(parent);
    auto& strip = static_cast<TabStrip&>(c);
    // A mouse click reaches the model first (MouseDown, then the selection); keys change the
    // bar's current tab, which the model then follows.
    connect(t->tabBar(), &QTabBar::tabBarClicked, this, [this, &strip](int i) {
        if (i >= 0) act([&] { strip.userSelectTab(i + 1); });
    });
    connect(t->tabBar(), &QTabBar::currentChanged, this, [this, &strip](int i) {
        if (i >= 0 && i + 1 != strip.SelectedTab()) act([&] { strip.userSelectTab(i + 1); });
    });
    m_controlOf.insert(t->tabBar(), &c);
    return t;
}

QWidget* FormView::createToolBar(Control& c, QWidget* parent)
{
    auto* t = new QToolBar(parent);
    t->setToolButtonStyle(Qt::ToolButtonIconOnly);
    t->setIconSize(QSize(16, 16));
    t->setStyleSheet(QStringLiteral("QToolBar { border: 0; padding: 0; spacing: 2px; }"));
    auto& bar = static_cast<ToolBar&>(c);
    connect(t, &QToolBar::actionTriggered, this, [this, &bar](QAction* a) {
        const QString name = a->objectName();
        act([&] { bar.userToolClick(name); });
    });
    return t;
}

void FormView::bind(Control& c, QWidget* w)
{
    w->setObjectName(c.key());
    m_widgets.insert(&c, w);
    m_controlOf.insert(w, &c);
    for (auto it = m_controlOf.begin(); it != m_controlOf.end(); ++it)
        if (it.value() == &c) it.key()->installEventFilter(this);
    if (c.MouseMove.connected()) w->setMouseTracking(true);
}

// --- Widget to model ---

void FormView::closeEvent(QCloseEvent* event)
{
    // The close box asks the form, which may refuse; the host's loop ends once it is gone.
    event->ignore();
    if (m_form) act([this] { m_form->userClose(); });
}

void FormView::reject()
{
    // Escape belongs to the cancel button, as the keyboard of the designed window has it.
    if (!m_form) return;
    CommandButton* cancel = m_form->cancelButton();
    if (cancel && cancel->effectivelyVisible() && cancel->effectivelyEnabled()) act([cancel] { cancel->Click(); });
}

void FormView::keyPressEvent(QKeyEvent* event)
{
    if (m_form && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        CommandButton* def = m_form->defaultButton();
        if (def && def->effectivelyVisible() && def->effectivelyEnabled()) {
            act([def] { def->Click(); });
            return;
        }
    }
    QDialog::keyPressEvent(event);
}

bool FormView::forwardMouse(Control& c, QObject* watched, QEvent* event)
{
    auto* me = static_cast<QMouseEvent*>(event);
    auto* w = qobject_cast<QWidget*>(watched);
    QWidget* own = widgetOf(c);
    const QPoint p = w && own ? w->mapTo(own->window(), me->position().toPoint()) - own->mapTo(own->window(), QPoint()) : QPoint();
    const double x = pixelsToTwips(p.x(), m_dpi), y = pixelsToTwips(p.y(), m_dpi);
    const int button = (me->buttons() & Qt::LeftButton ? 1 : 0) | (me->buttons() & Qt::RightButton ? 2 : 0) |
                       (me->buttons() & Qt::MiddleButton ? 4 : 0);
    const int shift = shiftOf(me->modifiers());
    if (event->type() == QEvent::MouseMove && c.MouseMove.connected()) act([&] { c.MouseMove(button, shift, x, y); });
    if (event->type() == QEvent::MouseButtonPress && c.MouseDown.connected()) act([&] { c.MouseDown(button, shift, x, y); });
    if (event->type() == QEvent::MouseButtonRelease && c.kind() == Control::Kind::TextBox && me->button() == Qt::LeftButton)
        act([&c] { c.userClick(); });
    return false;
}

bool FormView::routeKey(Control& c, QObject* watched, QKeyEvent* key)
{
    // The key is handled once, where the control takes the keyboard, not again as it travels on
    // to the control's outer widgets.
    if (watched != keyboardWidget(widgetOf(c))) return false;
    const int code = keyCodeOf(*key);
    if (code == 0) return false;
    // Enter and Escape are the window's, in the model's order: its default or cancel button, else
    // the control's KeyDown. A drop-down's own window keeps its keys.
    const bool windowKey = (code == Control::KeyReturn || code == Control::KeyEscape) &&
                           static_cast<QWidget*>(watched)->window() == this;
    if (!windowKey && !c.KeyDown.connected()) return false;
    int left = code;
    act([&] { left = c.userKey(code, shiftOf(key->modifiers())); });
    return windowKey || left == 0;
}

bool FormView::eventFilter(QObject* watched, QEvent* event)
{
    Control* c = m_controlOf.value(watched);
    if (!c || !m_form || m_syncing) return QDialog::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn:
        if (m_form->ActiveControl() != c && c->canTakeFocus()) act([this, c] { m_form->moveFocus(c); });
        break;
    case QEvent::Shortcut:
        // An accelerator clicks at once, where Qt would first show the button pressed for a while.
        if (auto* b = qobject_cast<QAbstractButton*>(watched); b && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
            if (b->focusPolicy() & Qt::TabFocus) b->setFocus(Qt::ShortcutFocusReason);
            b->click();
            return true;
        }
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        forwardMouse(*c, watched, event);
        break;
    case QEvent::KeyPress:
        if (routeKey(*c, watched, static_cast<QKeyEvent*>(event))) return true;
        break;
    default: break;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace steplets::qt
