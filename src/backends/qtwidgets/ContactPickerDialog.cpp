#include "ContactPickerDialog.h"
#include "FormView.h"
#include "runtime/Failure.h"
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace steplets::qt {

namespace {

const int kRowRole = Qt::UserRole;

} // namespace

ContactPickerDialog::ContactPickerDialog(const ContactPickerRequest& request, ol::ItemDisplay& display, QWidget* parent)
    : QDialog(parent), m_request(request), m_display(display), m_older(request.version == QLatin1String("older"))
{
    setObjectName(QStringLiteral("ContactPickerDialog"));
    setWindowTitle(QStringLiteral("Choose a Contact"));
    setModal(true);

    auto* searchLabel = new QLabel(QStringLiteral("&Search:"), this);
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setPlaceholderText(m_older ? QStringLiteral("Part of a name")
                                         : QStringLiteral("Part of a name, company or e-mail address"));
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);
    searchLabel->setBuddy(m_search);

    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("contacts"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setAllColumnsShowFocus(true);
    if (m_older)
        m_list->setHeaderLabels({QStringLiteral("Name")});
    else
        m_list->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Company"), QStringLiteral("E-mail")});

    auto* buttons = new QDialogButtonBox(this);
    if (request.manageContacts) {
        m_open = buttons->addButton(QStringLiteral("&Open"), QDialogButtonBox::ActionRole);
        m_open->setObjectName(QStringLiteral("open"));
        m_open->setAutoDefault(false);
        connect(m_open, &QPushButton::clicked, this, [this] { openSelected(); });
    }
    m_ok = buttons->addButton(QDialogButtonBox::Ok);
    m_ok->setObjectName(QStringLiteral("ok"));
    m_ok->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(searchLabel);
    layout->addWidget(m_search);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);

    fill();
    connect(m_search, &QLineEdit::textChanged, this, [this](const QString& text) { narrow(text); });
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, [this] { selectionChanged(); });
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { choose(item); });
    narrow(QString());
    m_search->setFocus();
    resize(m_older ? 320 : 560, 400);
    if (request.width > 0 && request.height > 0) {
        const QScreen* screen = QGuiApplication::primaryScreen();
        const double dpi = screen ? screen->logicalDotsPerInch() : 96.0;
        m_caller = QRect(twipsToPixels(request.left, dpi), twipsToPixels(request.top, dpi),
                         twipsToPixels(request.width, dpi), twipsToPixels(request.height, dpi));
    }
}

void ContactPickerDialog::fill()
{
    for (int i = 0; i < m_request.rows.size(); ++i) {
        const ContactPickerRow& row = m_request.rows[i];
        auto* item = new QTreeWidgetItem(m_list);
        item->setText(0, row.name);
        if (!m_older) {
            item->setText(1, row.company);
            item->setText(2, row.email);
        }
        item->setData(0, kRowRole, i);
        if (!row.hasCard) {
            // Still offered: the name is all there is, and the user should see why.
            const QString tip = QStringLiteral("The contact card of %1 cannot be found.").arg(row.name);
            for (int c = 0; c < m_list->columnCount(); ++c) {
                item->setToolTip(c, tip);
                item->setForeground(c, m_list->palette().brush(QPalette::Disabled, QPalette::Text));
            }
        }
    }
    for (int c = 0; c < m_list->columnCount(); ++c)
        m_list->resizeColumnToContents(c);
}

void ContactPickerDialog::narrow(const QString& text)
{
    const QString needle = text.trimmed();
    QTreeWidgetItem* first = nullptr;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem(i);
        bool match = needle.isEmpty();
        for (int c = 0; c < m_list->columnCount() && !match; ++c)
            match = item->text(c).contains(needle, Qt::CaseInsensitive);
        item->setHidden(!match);
        if (match && !first)
            first = item;
    }
    // Keep the chosen row while it is still offered; else the first one left, so Enter takes it.
    QTreeWidgetItem* current = m_list->currentItem();
    if (!current || current->isHidden() || !current->isSelected()) {
        m_list->clearSelection();
        m_list->setCurrentItem(first);
        if (first)
            first->setSelected(true);
    }
    selectionChanged();
}

void ContactPickerDialog::selectionChanged()
{
    const QList<QTreeWidgetItem*> selected = m_list->selectedItems();
    const ContactPickerRow* row = selected.isEmpty() ? nullptr : rowOf(selected.first());
    m_ok->setEnabled(row != nullptr);
    if (m_open)
        m_open->setEnabled(row && row->hasCard && !row->entryID.isEmpty());
}

const ContactPickerRow* ContactPickerDialog::rowOf(const QTreeWidgetItem* item) const
{
    if (!item || item->isHidden())
        return nullptr;
    const int i = item->data(0, kRowRole).toInt();
    return i >= 0 && i < m_request.rows.size() ? &m_request.rows[i] : nullptr;
}

QStringList ContactPickerDialog::visibleNames() const
{
    QStringList names;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        if (!m_list->topLevelItem(i)->isHidden())
            names << m_list->topLevelItem(i)->text(0);
    return names;
}

void ContactPickerDialog::choose(QTreeWidgetItem* item)
{
    const ContactPickerRow* row = rowOf(item);
    if (!row)
        return;
    m_result = {row->contactID, row->name, row->entryID};
    QDialog::accept();
}

void ContactPickerDialog::accept()
{
    const QList<QTreeWidgetItem*> selected = m_list->selectedItems();
    if (!selected.isEmpty())
        choose(selected.first());
}

void ContactPickerDialog::reject()
{
    m_result = {};
    QDialog::reject();
}

void ContactPickerDialog::openSelected()
{
    const QList<QTreeWidgetItem*> selected = m_list->selectedItems();
    const ContactPickerRow* row = selected.isEmpty() ? nullptr : rowOf(selected.first());
    if (!row || row->entryID.isEmpty())
        return;
    // The card lies in the contact folder the request names.
    try {
        if (!m_request.nameSpace)
            throw Failure(91, QStringLiteral("There is no connection to the contact store."));
        const auto contact = ol::asContact(m_request.nameSpace->GetItemFromID(row->entryID, m_request.contactStoreID));
        m_display.displayContact(*contact, true);
    } catch (const Failure& f) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("The contact %1 cannot be opened.\n\n%2").arg(row->name, f.description()));
    }
}

void ContactPickerDialog::showEvent(QShowEvent* event)
{
    placeOverCaller();
    QDialog::showEvent(event);
}

void ContactPickerDialog::placeOverCaller()
{
    // The calling window where it really is: its form's Left and Top say nothing once the
    // window manager has placed it. The request's bounds serve when no window is known.
    QWidget* parent = parentWidget();
    const QRect caller = parent && parent->window()->isVisible() ? parent->window()->frameGeometry() : m_caller;
    if (caller.isEmpty())
        return;
    QRect frame(QPoint(), frameGeometry().size());
    frame.moveCenter(caller.center());
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        // A caller partly off the screen must not take the picker with it.
        const QRect avail = screen->availableGeometry();
        frame.moveLeft(qBound(avail.left(), frame.left(), qMax(avail.left(), avail.right() - frame.width())));
        frame.moveTop(qBound(avail.top(), frame.top(), qMax(avail.top(), avail.bottom() - frame.height())));
    }
    move(frame.topLeft());
}

bool ContactPickerDialog::eventFilter(QObject* watched, QEvent* event)
{
    // Up and down in the search box walk the list, so the hands stay on the keys.
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace steplets::qt
