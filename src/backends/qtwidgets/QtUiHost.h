#pragma once
// The UI host on Qt Widgets. Each loaded form gets a FormView (its widgets); a modal show runs a
// nested QEventLoop of its own until the form is no longer shown; timers run on QTimer; the
// present moment is the system clock. A failure that escapes an event handler cannot travel
// through Qt's event dispatch: it is kept, every modal loop ends, and it is raised again where
// the component called the host (the show, DoEvents, a message box), as a HostAbort.
#include "HostAbort.h"
#include "UiHost.h"
#include <QHash>
#include <QPointer>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

class QEventLoop;
class QObject;
class QTimer;
class QWidget;

namespace steplets::qt {

class FormView;

class QtUiHost : public UiHost {
public:
    QtUiHost();
    ~QtUiHost() override;

    // The view of a loaded form (nullptr when it has none).
    FormView* viewOf(const Form& form) const;
    // The modal forms now shown, the active one last.
    const std::vector<Form*>& modalStack() const { return m_stack; }
    // The window dialogs are placed over: the active modal form's view, if any.
    QWidget* activeWindow() const;
    // Runs component code for the host (a user's act, a timer, an Activate). A refused act only
    // beeps; anything else that escapes is kept and ends every modal loop.
    void runUserAct(const std::function<void()>& body);
    // Whether a failure escaped and the session is being ended.
    bool aborting() const { return static_cast<bool>(m_abort); }

    // UiHost
    void showModal(Form& form) override;
    void formLoaded(Form& form) override;
    void formHidden(Form& form) override;
    void formUnloaded(Form& form) override;
    void formDestroyed(Form& form) override;
    MsgBoxAnswer messageBox(const MessageBoxRequest& box) override;
    void DoEvents() override;
    void timerChanged(Timer& timer) override;
    void timerDestroyed(Timer& timer) override;
    Date Now() override;
    int screenMousePointer() const override { return m_mousePointer; }
    void setScreenMousePointer(int pointer) override;
    QString helpFile() const override { return m_helpFile; }
    void setHelpFile(const QString& path) override { m_helpFile = path; }
    ContactPickerResult pickContact(const ContactPickerRequest& request) override;
    void displayTask(ol::TaskItem& item, bool modal) override;
    void displayContact(ol::ContactItem& item, bool modal) override;

private:
    struct ModalLevel {
        Form* form;
        QEventLoop* loop;
    };
    bool stillShown(const Form& form) const;
    // Ends the loops of the forms that are no longer shown; called once the running handler
    // has returned, so a hide followed by a new show in the same handler ends nothing.
    void scheduleLoopCheck();
    void checkLoops();
    void rethrowAbort();
    void keep(std::exception_ptr failure);

    // Deferred calls are bound to it, so none runs after the host is gone.
    std::unique_ptr<QObject> m_context;
    QHash<const Form*, FormView*> m_views;
    QHash<Timer*, QTimer*> m_timers;
    std::vector<Form*> m_stack;
    std::vector<ModalLevel> m_levels;
    std::exception_ptr m_abort;
    bool m_checkScheduled = false;
    int m_mousePointer = 0;
    QString m_helpFile;
};

} // namespace steplets::qt
