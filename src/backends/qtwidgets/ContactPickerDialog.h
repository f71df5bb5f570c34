#pragma once
// The contact picker on the Qt host: a modal list of the offered contacts with a search box,
// placed over the caller's window (its parent), else over the bounds the request carries.
#include "UiHost.h"
#include <QDialog>
#include <QRect>

class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace steplets::qt {

// The dialog, modal. Cancelling gives contact 0 with an empty name and EntryID. `display` shows
// a contact when the request allows managing contacts and the user asks to open one. The rows
// keep the request's order; the search narrows them as the user types, on the columns shown (the
// older version shows names only). Enter or a double click chooses, Esc cancels.
class ContactPickerDialog : public QDialog {
public:
    ContactPickerDialog(const ContactPickerRequest& request, ol::ItemDisplay& display, QWidget* parent = nullptr);

    ContactPickerResult choice() const { return m_result; }
    // The rows the search leaves, in order, by name.
    QStringList visibleNames() const;

    QLineEdit* searchBox() const { return m_search; }
    QTreeWidget* list() const { return m_list; }
    // nullptr unless the request allows managing contacts.
    QPushButton* openButton() const { return m_open; }

    void accept() override;
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Placed once its size is final, just before it is seen.
    void showEvent(QShowEvent* event) override;

private:
    void fill();
    void narrow(const QString& text);
    void selectionChanged();
    void choose(QTreeWidgetItem* item);
    void openSelected();
    void placeOverCaller();
    const ContactPickerRow* rowOf(const QTreeWidgetItem* item) const;

    const ContactPickerRequest m_request;
    ol::ItemDisplay& m_display;
    bool m_older = false;
    QRect m_caller;                          // pixels; empty when the caller gave no bounds
    ContactPickerResult m_result;
    QLineEdit* m_search = nullptr;
    QTreeWidget* m_list = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_open = nullptr;
};

} // namespace steplets::qt
