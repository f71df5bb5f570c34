#include "QtUiHost.h"
#include "FormView.h"
#include "HelpKey.h"
#include "controls/Controls.h"
#include "runtime/Failure.h"
#include <QApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QGridLayout>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include "ContactPickerDialog.h"
#include "ContactWindow.h"
#include "TaskWindow.h"

namespace steplets::qt {

namespace {

QMessageBox::Icon iconOf(MessageBoxRequest::Icon icon)
{
    switch (icon) {
    case MessageBoxRequest::Icon::None: return QMessageBox::NoIcon;
    case MessageBoxRequest::Icon::Exclamation: return QMessageBox::Warning;
    case MessageBoxRequest::Icon::Question: return QMessageBox::Question;
    case MessageBoxRequest::Icon::Information: return QMessageBox::Information;
    case MessageBoxRequest::Icon::Critical: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

// A message box is as wide as its text needs, which can leave its title cut off by the window
// manager ("Anchor D... Required"); it is widened to hold the title with the title bar's icon and
// buttons beside it.
void makeRoomForTitle(QMessageBox& box)
{
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid || box.windowTitle().trimmed().isEmpty()) return;
    QFont bold = box.font();
    bold.setBold(true);
    const int width = QFontMetrics(bold).horizontalAdvance(box.windowTitle()) + kTitleBarChrome;
    grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), grid->rowCount(), 0, 1,
                  grid->columnCount());
}

Qt::CursorShape cursorOf(int pointer)
{
    switch (pointer) {
    case Control::Hourglass: return Qt::WaitCursor;
    case Control::Custom: return Qt::PointingHandCursor;
    default: return Qt::ArrowCursor;
    }
}

} // namespace

QtUiHost::QtUiHost(std::shared_ptr<HostClock> clock) : m_context(std::make_unique<QObject>()), m_clock(std::move(clock))
{
    setHelp({}, nullptr);
}

QtUiHost::~QtUiHost()
{
    // Widgets cannot be destroyed once the application has gone; the process is ending anyway.
    if (!QCoreApplication::instance()) return;
    for (FormView* v : std::as_const(m_views)) {
        v->detach();
        delete v;
    }
    for (const QPointer<QDialog>& w : m_itemWindows) delete w.data();
    for (const QPointer<FormView>& v : m_unloadedViews) delete v.data();
    qDeleteAll(m_timers);
    while (QGuiApplication::overrideCursor()) QGuiApplication::restoreOverrideCursor();
}

void QtUiHost::setHelp(const QStringList& installedFolders, std::function<void(const QString&)> log)
{
    // Replacing the filter object takes the old one off the application.
    m_helpKey = std::make_unique<HelpKey>([this] { return m_helpFile; }, installedFolders, std::move(log));
    if (QCoreApplication* app = QCoreApplication::instance()) app->installEventFilter(m_helpKey.get());
}

bool QtUiHost::openHelp() { return static_cast<HelpKey*>(m_helpKey.get())->open(); }

FormView* QtUiHost::viewOf(const Form& form) const { return m_views.value(&form); }

QWidget* QtUiHost::activeWindow() const
{
    for (auto it = m_stack.rbegin(); it != m_stack.rend(); ++it)
        if (FormView* v = viewOf(**it); v && v->isVisible()) return v;
    return QApplication::activeWindow();
}

// --- Failures that escape a handler ---

void QtUiHost::runUserAct(const std::function<void()>& body)
{
    if (m_abort) return;   // the session is ending: nothing more runs
    struct Depth {
        QtUiHost* host;
        explicit Depth(QtUiHost* h) : host(h) { ++host->m_actDepth; }
        ~Depth() { if (--host->m_actDepth == 0) host->buryViews(); }
    } depth(this);
    try {
        body();
    } catch (const UserActionRefused& refused) {
        // The widget let the user try something the window does not allow right now. A person
        // hears a beep; a played user that tries it has a script that cannot be played.
        if (!m_driver) QApplication::beep();
        else keep(std::make_exception_ptr(HostAbort(HostAbort::Reason::CannotPlay, QString::fromUtf8(refused.what()))));
    } catch (const HostAbort&) {
        keep(std::current_exception());
    } catch (const Failure& f) {
        keep(std::make_exception_ptr(HostAbort(
            HostAbort::Reason::UnhandledFailure,
            QStringLiteral("failure %1 \"%2\" (%3) reached no handler").arg(f.number()).arg(f.description(), f.source()))));
    } catch (const std::exception& e) {
        keep(std::make_exception_ptr(HostAbort(HostAbort::Reason::UnhandledFailure,
                                               QStringLiteral("%1 reached no handler").arg(QString::fromUtf8(e.what())))));
    }
}

void QtUiHost::keep(std::exception_ptr failure)
{
    if (!m_abort) m_abort = std::move(failure);
    for (const ModalLevel& level : m_levels) level.loop->quit();
    // done(), not reject(): a changed task form would ask before it closes.
    for (const QPointer<QDialog>& d : m_dialogs)
        if (d) d->done(QDialog::Rejected);
}

void QtUiHost::abort(const HostAbort& abort) { keep(std::make_exception_ptr(abort)); }

int QtUiHost::execDialog(QDialog& dialog, const UserWait& wait)
{
    m_dialogs.emplace_back(&dialog);
    if (m_driver) m_driver->waiting(wait);
    const int result = m_abort ? int(QDialog::Rejected) : dialog.exec();
    if (m_driver) m_driver->doneWaiting(wait);
    std::erase_if(m_dialogs, [&dialog](const QPointer<QDialog>& d) { return !d || d == &dialog; });
    return result;
}

void QtUiHost::rethrowAbort()
{
    if (m_abort) std::rethrow_exception(m_abort);
}

// --- Modal windows ---

bool QtUiHost::stillShown(const Form& form) const { return form.isLoaded() && form.Visible(); }

void QtUiHost::showModal(Form& form)
{
    // 1. The form is shown and its view comes up over the window below.
    form.beginModal();
    QWidget* below = nullptr;
    for (auto it = m_stack.rbegin(); it != m_stack.rend() && !below; ++it)
        if (FormView* v = viewOf(**it); v && v->isVisible()) below = v;
    m_stack.push_back(&form);
    FormView* view = viewOf(form);
    if (!view) {
        formLoaded(form);
        view = viewOf(form);
    }
    QEventLoop loop;
    m_levels.push_back({&form, &loop});
    struct Pop {
        QtUiHost* host;
        Form* form;
        ~Pop() {
            auto& levels = host->m_levels;
            levels.pop_back();
            auto& s = host->m_stack;
            for (auto it = s.rbegin(); it != s.rend(); ++it)
                if (*it == form) { s.erase(std::next(it).base()); break; }
            form->endModal();
        }
    };
    {
        Pop pop{this, &form};
        if (m_stack.size() == 1 && m_mainWindowHook && m_mainWindow != view) {
            m_mainWindow = view;
            m_mainWindowHook(*view);
        }
        view->present(below);
        // 2. Activate, then the focus settles on the widgets.
        if (m_driver) m_driver->formShown(form);
        runUserAct([&form] { form.activate(); });
        if (FormView* v = viewOf(form)) v->flush();
        // 3. The loop runs until the form is no longer shown (or a failure ends the session).
        const UserWait wait{UserWait::Kind::Form, viewOf(form), &form, nullptr, nullptr, nullptr};
        if (m_driver) m_driver->waiting(wait);
        while (!m_abort && stillShown(form)) loop.exec();
        if (m_driver) m_driver->doneWaiting(wait);
        if (FormView* v = viewOf(form); v && !stillShown(form)) v->hide();
    }
    // The session's last window has gone: so do the item windows it left open.
    if (m_stack.empty()) closeItemWindows();
    rethrowAbort();
    // 4. The window below becomes the active one again.
    if (m_stack.empty()) return;
    Form* back = m_stack.back();
    if (back != &form && stillShown(*back)) {
        if (FormView* v = viewOf(*back)) v->activateWindow();
        runUserAct([back] { back->activate(); });
        if (FormView* v = viewOf(*back)) v->flush();
        rethrowAbort();
    }
}

void QtUiHost::formLoaded(Form& form)
{
    if (!m_views.contains(&form)) m_views.insert(&form, new FormView(form, *this));
    for (Timer* t : form.timers()) timerChanged(*t);
}

void QtUiHost::formHidden(Form& form)
{
    // The window goes at once; whether its loop ends is decided after the handler.
    if (FormView* v = viewOf(form)) v->hide();
    scheduleLoopCheck();
}

void QtUiHost::formRevealed(Form& form)
{
    // Back on the screen where its modal show left it, over whatever is shown now.
    FormView* view = viewOf(form);
    if (!view || view->isVisible() || form.modalDepth() == 0) return;
    view->present(visibleViewBelowTop());
}

QWidget* QtUiHost::visibleViewBelowTop() const
{
    for (auto it = m_stack.rbegin(); it != m_stack.rend(); ++it)
        if (FormView* v = viewOf(**it); v && v->isVisible()) return v;
    return nullptr;
}

void QtUiHost::formUnloaded(Form& form)
{
    if (m_driver) m_driver->formUnloaded(form);
    for (Timer* t : form.timers()) timerChanged(*t);
    retireView(form);
    scheduleLoopCheck();
}

void QtUiHost::formDestroyed(Form& form)
{
    for (Timer* t : form.timers()) timerDestroyed(*t);
    retireView(form);
    std::erase(m_stack, &form);
}

// The form's view goes; a window shown over it is a child widget of it and would go with it
// while its form is still loaded, so it becomes a window of its own first.
void QtUiHost::retireView(const Form& form)
{
    FormView* v = m_views.take(&form);
    if (!v) return;
    // isAncestorOf stops at a window's edge, and every view is a window: walk the parents.
    for (FormView* other : std::as_const(m_views))
        for (QObject* p = other->parent(); p; p = p->parent())
            if (p == v) {
                other->setParent(nullptr, other->windowFlags());
                break;
            }
    v->detach();
    v->hide();
    m_unloadedViews.push_back(v);
    buryViews();
}

// A view goes only once no act is running: a widget's own event handler (a double click on a
// grid, say) may have run the unload and still be working on its widget when the act returns,
// and a nested loop inside that act would otherwise delete the widget under it.
void QtUiHost::buryViews()
{
    if (m_actDepth > 0 || m_unloadedViews.empty() || m_burialScheduled) return;
    m_burialScheduled = true;
    QTimer::singleShot(0, m_context.get(), [this] {
        m_burialScheduled = false;
        if (m_actDepth > 0) return;   // the act that ends later buries them
        for (const QPointer<FormView>& v : std::exchange(m_unloadedViews, {})) delete v.data();
    });
}

void QtUiHost::scheduleLoopCheck()
{
    if (m_checkScheduled) return;
    m_checkScheduled = true;
    QTimer::singleShot(0, m_context.get(), [this] { checkLoops(); });
}

void QtUiHost::checkLoops()
{
    m_checkScheduled = false;
    for (const ModalLevel& level : m_levels)
        if (!stillShown(*level.form)) level.loop->quit();
}

// --- Message boxes ---

MsgBoxAnswer QtUiHost::messageBox(const MessageBoxRequest& box)
{
    QMessageBox mb(iconOf(box.icon), box.title, QString(box.text).replace(QLatin1String("\r\n"), QLatin1String("\n")),
                   QMessageBox::NoButton, activeWindow());
    mb.setObjectName(QStringLiteral("MsgBox"));
    if (box.systemModal) mb.setWindowModality(Qt::ApplicationModal);
    QList<QPair<QPushButton*, MsgBoxAnswer>> buttons;
    switch (box.buttons) {
    case MessageBoxRequest::Buttons::OK:
        buttons << qMakePair(mb.addButton(QMessageBox::Ok), MsgBoxAnswer::OK);
        mb.setEscapeButton(buttons.back().first);
        break;
    case MessageBoxRequest::Buttons::OKCancel:
        buttons << qMakePair(mb.addButton(QMessageBox::Ok), MsgBoxAnswer::OK)
                << qMakePair(mb.addButton(QMessageBox::Cancel), MsgBoxAnswer::Cancel);
        mb.setEscapeButton(buttons.back().first);
        break;
    case MessageBoxRequest::Buttons::YesNo:
        // As the run-time has it: no close box answer; Escape does nothing.
        buttons << qMakePair(mb.addButton(QMessageBox::Yes), MsgBoxAnswer::Yes)
                << qMakePair(mb.addButton(QMessageBox::No), MsgBoxAnswer::No);
        break;
    }
    mb.setDefaultButton(buttons.front().first);
    makeRoomForTitle(mb);
    execDialog(mb, UserWait{UserWait::Kind::MsgBox, &mb, nullptr, &box, nullptr, nullptr});
    rethrowAbort();
    MsgBoxAnswer answer = buttons.size() > 1 ? buttons.back().second : buttons.front().second;
    for (const auto& [button, a] : buttons)
        if (mb.clickedButton() == button) answer = a;
    if (m_driver) m_driver->messageBoxAnswered(box, answer);
    return answer;
}

// --- Event loop, timers, clock, pointer ---

void QtUiHost::DoEvents()
{
    if (m_driver) m_driver->yielding(true);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    if (m_driver) m_driver->yielding(false);
    rethrowAbort();
}

void QtUiHost::timerChanged(Timer& timer)
{
    if (m_clock) return m_clock->timerChanged(timer);
    QTimer* qt = m_timers.value(&timer);
    if (!timer.armed()) {
        if (qt) qt->stop();
        return;
    }
    if (!qt) {
        qt = new QTimer;
        qt->setTimerType(Qt::PreciseTimer);
        QObject::connect(qt, &QTimer::timeout, qt, [this, &timer] {
            if (timer.armed()) runUserAct([&timer] { timer.Tick(); });
        });
        m_timers.insert(&timer, qt);
    }
    // A change of interval starts the count again, as the run-time's timer does.
    qt->start(timer.Interval());
}

void QtUiHost::timerDestroyed(Timer& timer)
{
    if (m_clock) return m_clock->timerDestroyed(timer);
    if (QTimer* qt = m_timers.take(&timer)) {
        qt->stop();
        qt->deleteLater();
    }
}

Date QtUiHost::Now() { return m_clock ? m_clock->now() : Date::fromQDateTime(QDateTime::currentDateTime()); }

void QtUiHost::setScreenMousePointer(int pointer)
{
    m_mousePointer = pointer;
    if (pointer == Control::Default) {
        while (QGuiApplication::overrideCursor()) QGuiApplication::restoreOverrideCursor();
        return;
    }
    if (QGuiApplication::overrideCursor()) QGuiApplication::changeOverrideCursor(cursorOf(pointer));
    else QGuiApplication::setOverrideCursor(cursorOf(pointer));
}

// --- Item windows and the contact picker ---

void QtUiHost::displayTaskModeless(ol::TaskItem& item, const std::shared_ptr<ol::TaskItem>& own)
{
    // A task never saved has no handle of its own worth keeping and stays modal.
    if (!own || item.EntryID().isEmpty()) return displayTask(item, true);
    if (m_driver) m_driver->itemDisplayed(item, false);
    auto* window = new TaskWindow(*own, activeWindow());
    QObject::connect(window, &QObject::destroyed, [own] {});   // the handle lives as long as the window
    keepItemWindow(window);
}

void QtUiHost::displayTask(ol::TaskItem& item, bool modal)
{
    (void)modal;   // the modeless display comes through displayTaskModeless
    if (m_driver) m_driver->itemDisplayed(item, false);
    TaskWindow window(item, activeWindow());
    execDialog(window, UserWait{UserWait::Kind::Item, &window, nullptr, nullptr, &item, nullptr});
    rethrowAbort();
}

void QtUiHost::displayContact(ol::ContactItem& item, bool modal)
{
    if (m_driver) m_driver->itemDisplayed(item, true);
    if (!modal) {
        // The window has read all it shows, so it outlives the caller's hold on the item.
        return keepItemWindow(new ContactWindow(item, activeWindow()));
    }
    ContactWindow window(item, activeWindow());
    execDialog(window, UserWait{UserWait::Kind::Item, &window, nullptr, nullptr, &item, nullptr});
    rethrowAbort();
}

void QtUiHost::keepItemWindow(QDialog* window)
{
    // Display(False): the window stays up beside the caller's, which goes on at once. Its parent
    // is the active window, so the modal window does not shut it out, and the host closes it
    // when the session ends if the user has not.
    window->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(window, &QDialog::finished, window, &QObject::deleteLater);
    window->setModal(false);
    m_itemWindows.emplace_back(window);
    window->show();
}

void QtUiHost::closeItemWindows()
{
    // The session is over: a window that will not close (a changed task the user keeps) goes all
    // the same, as nothing it shows can be saved any more.
    for (const QPointer<QDialog>& w : std::exchange(m_itemWindows, {}))
        if (w && !w->close()) w->done(QDialog::Rejected);
}

ContactPickerResult QtUiHost::pickContact(const ContactPickerRequest& request)
{
    if (m_driver) m_driver->pickerOpened(request);
    ContactPickerDialog dialog(request, *this, activeWindow());
    execDialog(dialog, UserWait{UserWait::Kind::Picker, &dialog, nullptr, nullptr, nullptr, &request});
    rethrowAbort();
    return dialog.choice();
}

} // namespace steplets::qt
