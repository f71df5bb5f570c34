#pragma once
// The UI host on Qt Widgets. Each loaded form gets a FormView (its widgets); a modal show runs a
// nested QEventLoop of its own until the form is no longer shown. Time comes from the clock the
// composition root hands in: without one, the system clock and QTimer. A failure that escapes an
// event handler cannot travel through Qt's event dispatch: it is kept, every modal loop and
// dialog ends, and it is raised again where the component called the host (the show, DoEvents,
// a message box), as a HostAbort.
#include "HostAbort.h"
#include "HostClock.h"
#include "UiHost.h"
#include "UserDriver.h"
#include <QDialog>
#include <QHash>
#include <QPointer>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

class QDialog;
class QEventLoop;
class QObject;
class QTimer;
class QWidget;

namespace steplets::qt {

class FormView;

// Pixels a window's title bar takes beside its title: the window menu's icon and three buttons.
constexpr int kTitleBarChrome = 120;

class QtUiHost : public UiHost {
public:
    // `clock` nullptr: the system clock and real timers.
    explicit QtUiHost(std::shared_ptr<HostClock> clock = nullptr);
    ~QtUiHost() override;

    // F1 in any window opens the help page that stands for the help file (HelpKey.h), looked for
    // also in `installedFolders`; `log` takes the line written when there is none.
    void setHelp(const QStringList& installedFolders, std::function<void(const QString&)> log);
    // Opens that page as F1 does; false (and the line in the log) when there is none.
    bool openHelp();
    // What the desktop program adds to the session's main window, the first form shown modally
    // (its own menu, its remembered place): called once for that window's view, before it is
    // first shown. The form and its snapshots know nothing of it.
    void setMainWindowHook(std::function<void(FormView&)> hook) { m_mainWindowHook = std::move(hook); }

    // A driver plays the user (nullptr: a person does). With a driver, an act the window refuses
    // cannot be played and ends the session instead of beeping.
    void setDriver(UserDriver* driver) { m_driver = driver; }
    bool driven() const { return m_driver != nullptr; }

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
    // Ends the session: every loop and dialog closes, and the host's caller gets `abort`.
    void abort(const HostAbort& abort);

    // UiHost
    void showModal(Form& form) override;
    void formLoaded(Form& form) override;
    void formHidden(Form& form) override;
    void formRevealed(Form& form) override;
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
    void displayTaskModeless(ol::TaskItem& item, const std::shared_ptr<ol::TaskItem>& own) override;
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
    void retireView(const Form& form);
    void buryViews();
    void keep(std::exception_ptr failure);
    // Runs a dialog of the host's own modally, as a wait for the user.
    int execDialog(QDialog& dialog, const UserWait& wait);
    QWidget* visibleViewBelowTop() const;
    void keepItemWindow(QDialog* window);
    void closeItemWindows();

    // Deferred calls are bound to it, so none runs after the host is gone.
    std::unique_ptr<QObject> m_context;
    std::unique_ptr<QObject> m_helpKey;
    std::shared_ptr<HostClock> m_clock;
    UserDriver* m_driver = nullptr;
    std::vector<QPointer<QDialog>> m_dialogs;
    // Item windows shown with Display(False), open beside the modal windows.
    std::vector<QPointer<QDialog>> m_itemWindows;
    QHash<const Form*, FormView*> m_views;
    QHash<Timer*, QTimer*> m_timers;
    std::vector<Form*> m_stack;
    std::vector<ModalLevel> m_levels;
    std::exception_ptr m_abort;
    bool m_checkScheduled = false;
    int m_actDepth = 0;
    // Detached and hidden, deleted once no act runs; a view over another goes with its parent.
    std::vector<QPointer<FormView>> m_unloadedViews;
    bool m_burialScheduled = false;
    int m_mousePointer = 0;
    QString m_helpFile;
    std::function<void(FormView&)> m_mainWindowHook;
    QPointer<FormView> m_mainWindow;
};

} // namespace steplets::qt
