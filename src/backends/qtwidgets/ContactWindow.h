#pragma once
// The window a contact is shown in: its names, company, e-mail addresses, telephone numbers and
// postal addresses, read only. Empty entries are left out, so a sparse card stays short.
#include "OutlookGateway.h"
#include <QDialog>

namespace steplets::qt {

class ContactWindow : public QDialog {
public:
    explicit ContactWindow(const ol::ContactItem& item, QWidget* parent = nullptr);

    // The texts shown, by the property they come from (for the window's own tests and tools).
    QString shown(const QString& property) const;
};

} // namespace steplets::qt
