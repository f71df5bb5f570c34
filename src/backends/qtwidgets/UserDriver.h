#pragma once
// Whoever plays the person at the screen of the Qt host when it is not a person: the host says
// what it shows and when it waits for the user, and the driver answers with real input on the
// widgets from inside the waiting loop. The desktop program has no driver.
#include "UiHost.h"

class QWidget;

namespace steplets::qt {

// Something the host waits on for the user: a modal form's loop, a message box, an item window
// or the contact picker, with the widget it waits in.
struct UserWait {
    enum class Kind { Form, MsgBox, Item, Picker };
    Kind kind = Kind::Form;
    QWidget* window = nullptr;
    Form* form = nullptr;                          // Kind::Form
    const MessageBoxRequest* box = nullptr;        // Kind::MsgBox
    ol::Item* item = nullptr;                      // Kind::Item
    const ContactPickerRequest* picker = nullptr;  // Kind::Picker
};

class UserDriver {
public:
    virtual ~UserDriver() = default;
    // The host is about to wait for the user, and has stopped waiting (the loop has ended).
    virtual void waiting(const UserWait& wait) = 0;
    virtual void doneWaiting(const UserWait& wait) = 0;
    // The component yields to the event loop (DoEvents); `inside` is true while it does.
    virtual void yielding(bool inside) = 0;

    // What the user is shown, as it happens.
    virtual void formShown(Form& form) = 0;       // before its Activate
    virtual void formUnloaded(Form& form) = 0;
    virtual void messageBoxAnswered(const MessageBoxRequest& box, MsgBoxAnswer answer) = 0;
    virtual void itemDisplayed(ol::Item& item, bool contact) = 0;
    virtual void pickerOpened(const ContactPickerRequest& request) = 0;
};

} // namespace steplets::qt
