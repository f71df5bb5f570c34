#pragma once
// The UI host port: everything that needs a screen or a clock. Modal windows (a nested loop per
// form, until it is hidden or unloaded), message boxes, yielding to the event loop, timers, the
// screen's mouse pointer, the present moment, the help file, the modal display of a task or
// contact item, and the contact picker. The Qt host renders the control models on widgets; the
// scripted host plays a script on a virtual clock.
#include "OutlookGateway.h"
#include "runtime/Date.h"
#include "runtime/Value.h"
#include <QList>
#include <QPair>
#include <QString>

namespace steplets {

class Form;
class Timer;

// A message box as a window asks for it.
struct MessageBoxRequest {
    enum class Buttons { OK, OKCancel, YesNo };
    enum class Icon { None, Exclamation, Question, Information, Critical };

    QString text;                       // line breaks as CR LF
    QString title;
    Buttons buttons = Buttons::OK;
    Icon icon = Icon::None;
    bool systemModal = false;

    // From the run-time's MsgBox flags: buttons 0/1/4, icons 16/32/48/64, system modal 4096.
    // Button sets the system never uses (Abort/Retry/Ignore, Yes/No/Cancel, Retry/Cancel) are
    // failure 5.
    static MessageBoxRequest fromFlags(const QString& prompt, long flags, const QString& title);
    static QString buttonsName(Buttons b);   // "OK", "OKCancel", "YesNo"
    static QString iconName(Icon i);         // "none", "exclamation", ...
};

// The button that closed a message box, by the run-time's numbers.
enum class MsgBoxAnswer { OK = 1, Cancel = 2, Yes = 6, No = 7 };
QString answerName(MsgBoxAnswer a);          // "OK", "Cancel", "Yes", "No"

// The contact picker of the support library: its arguments in their order, by name, and its
// result. The closed ContactPicker object of the session shows itself through the host.
// A row the picker offers: an active tblContacts row, with company and e-mail from its vCard
// when its EntryID resolves (hasCard false when the card is gone: still offered by name).
struct ContactPickerRow {
    qint32 contactID = 0;
    QString name;
    QString entryID;
    QString company;
    QString email;
    bool hasCard = false;
};
struct ContactPickerRequest {
    QList<QPair<QString, Value>> arguments;
    QString version;                         // "older" (names only) or "newer"
    QList<ContactPickerRow> rows;            // in the table's order
    bool manageContacts = false;             // an "Open" button may display the contact
    std::shared_ptr<ol::NameSpace> nameSpace; // where that contact is opened: the session's namespace
    QString contactStoreID;                  // and the store of its folder
    int top = 0, left = 0, width = 0, height = 0;   // the caller's bounds, twips
};
struct ContactPickerResult {
    qint32 contactID = 0;                    // 0: nothing was chosen
    QString name;
    QString entryID;
};

class UiHost : public ol::ItemDisplay {
public:
    ~UiHost() override = default;

    // Windows. showModal is reached through Form::Show, which has loaded the form and marked the
    // show; it returns when the form is no longer shown. The notifications keep a host's view of
    // the forms in step.
    virtual void showModal(Form& form) = 0;
    virtual void formLoaded(Form& form) = 0;
    virtual void formHidden(Form& form) = 0;
    // A hidden form made visible again without a show of its own (its modal show goes on).
    virtual void formRevealed(Form& form) = 0;
    virtual void formUnloaded(Form& form) = 0;
    virtual void formDestroyed(Form& form) = 0;

    // Message boxes.
    virtual MsgBoxAnswer messageBox(const MessageBoxRequest& box) = 0;
    // The run-time's MsgBox: flags as there, the answer as its number.
    int MsgBox(const QString& prompt, long flags = 0, const QString& title = {});

    // The event loop and timers: DoEvents lets pending events run, timers among them; a timer
    // tells the host whenever its Enabled or Interval changes, and when it goes.
    virtual void DoEvents() = 0;
    virtual void timerChanged(Timer& timer) = 0;
    virtual void timerDestroyed(Timer& timer) = 0;

    // The present moment, local time.
    virtual Date Now() = 0;
    // The screen's mouse pointer (0 default, 11 hourglass).
    virtual int screenMousePointer() const = 0;
    virtual void setScreenMousePointer(int pointer) = 0;
    // The help file of the process.
    virtual QString helpFile() const = 0;
    virtual void setHelpFile(const QString& path) = 0;

    // The contact picker, modal.
    virtual ContactPickerResult pickContact(const ContactPickerRequest& request) = 0;
};

} // namespace steplets
