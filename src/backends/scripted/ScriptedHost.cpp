#include "ScriptedHost.h"
#include "SafeTaskItem.h"
#include "ScriptedUser.h"
#include "controls/Controls.h"
#include "runtime/Failure.h"
#include <QJsonArray>
#include <QStringList>

namespace steplets::scripted {

namespace {
// How long a step may wait for its target while timers keep firing: a day of virtual time.
constexpr qint64 kPatienceMs = 24LL * 60 * 60 * 1000;
// Yields with no timer left before the host decides the component waits for nothing.
constexpr long kIdleYieldLimit = 1000000;

QStringList answersOf(MessageBoxRequest::Buttons b) {
    switch (b) {
    case MessageBoxRequest::Buttons::OK: return {QStringLiteral("OK")};
    case MessageBoxRequest::Buttons::OKCancel: return {QStringLiteral("OK"), QStringLiteral("Cancel")};
    case MessageBoxRequest::Buttons::YesNo: return {QStringLiteral("Yes"), QStringLiteral("No")};
    }
    return {};
}

MsgBoxAnswer answerOf(const QString& name) {
    if (name == QLatin1String("Cancel")) return MsgBoxAnswer::Cancel;
    if (name == QLatin1String("Yes")) return MsgBoxAnswer::Yes;
    if (name == QLatin1String("No")) return MsgBoxAnswer::No;
    return MsgBoxAnswer::OK;
}
} // namespace

ScriptedHost::ScriptedHost(Script script, QDateTime start)
    : m_script(std::move(script)), m_clock(std::move(start)) {}

ScriptedHost::~ScriptedHost() = default;

[[noreturn]] void ScriptedHost::cannotPlay(const QString& why) {
    throw HostAbort(HostAbort::Reason::CannotPlay, why);
}

void ScriptedHost::run(const QString& what, const std::function<void()>& body) {
    try {
        body();
    } catch (const HostAbort&) {
        throw;
    } catch (const UserActionRefused& e) {
        cannotPlay(QStringLiteral("%1: %2").arg(what, QString::fromStdString(e.what())));
    } catch (const Failure& f) {
        throw HostAbort(HostAbort::Reason::UnhandledFailure,
                        QStringLiteral("%1: failure %2 \"%3\" (%4) reached no handler")
                            .arg(what).arg(f.number()).arg(f.description(), f.source()));
    } catch (const std::exception& e) {
        throw HostAbort(HostAbort::Reason::UnhandledFailure,
                        QStringLiteral("%1: %2 reached no handler").arg(what, QString::fromUtf8(e.what())));
    }
}

std::optional<Step> ScriptedHost::nextStep(const Waiting& w) {
    const qint64 since = m_clock.elapsedMs();
    for (;;) {
        if (!w.stillWaiting()) return std::nullopt;
        if (m_script.atEnd()) cannotPlay(QStringLiteral("the script ended while %1 was waiting").arg(w.name));
        const Step& next = m_script.peek();
        if (next.kind == Step::Kind::Wait) {
            const Step wait = m_script.take();
            const qint64 ms = qRound64(wait.json.value(QStringLiteral("wait")).toDouble() * 1000.0);
            // Should the component be yielding when the wait is over, the user acts right then.
            m_waitEnds = m_clock.elapsedMs() + ms;
            struct Over {
                std::optional<qint64>& ends;
                ~Over() { ends.reset(); }
            } over{m_waitEnds};
            run(wait.describe(), [&] { m_clock.advance(ms); });
            continue;
        }
        if (w.accepts(next)) {
            m_idleYields = 0;
            return m_script.take();
        }
        if (m_clock.elapsedMs() - since > kPatienceMs)
            cannotPlay(QStringLiteral("%1: its target never came; %2 was waiting for a day of virtual time")
                           .arg(next.describe(), w.name));
        bool fired = false;
        run(QStringLiteral("a timer"), [&] { fired = m_clock.fireNext(); });
        if (!fired)
            cannotPlay(QStringLiteral("%1 cannot be done: %2 is waiting and no timer is left")
                           .arg(next.describe(), w.name));
    }
}

// --- Windows ---

void ScriptedHost::showModal(Form& form) {
    form.beginModal();
    m_stack.push_back(&form);
    struct Pop {
        ScriptedHost* host;
        Form* form;
        ~Pop() {
            auto& s = host->m_stack;
            for (auto it = s.rbegin(); it != s.rend(); ++it)
                if (*it == form) { s.erase(std::next(it).base()); break; }
            form->endModal();
        }
    };
    {
        Pop pop{this, &form};
        m_log.shown(form);
        run(form.name() + QStringLiteral(": Activate"), [&] { form.activate(); });
        const Waiting w{
            [&form](const Step& s) {
                return s.isForForm(form.name());
            },
            [this, &form] { return form.isLoaded() && form.Visible() && !m_stack.empty() && m_stack.back() == &form; },
            QStringLiteral("the window ") + form.name()};
        while (w.stillWaiting()) {
            const auto step = nextStep(w);
            if (!step) continue;
            run(step->describe(), [&] {
                if (auto snap = ScriptedUser::perform(form, *step)) record(QStringLiteral("snapshot"), *snap);
            });
        }
    }
    // The window below becomes the active one again.
    if (m_stack.empty()) return;
    Form* below = m_stack.back();
    if (below != &form && below->isLoaded() && below->Visible())
        run(below->name() + QStringLiteral(": Activate"), [&] { below->activate(); });
}

void ScriptedHost::formLoaded(Form& form) {
    for (Timer* t : form.timers()) m_clock.timerChanged(*t);
}

void ScriptedHost::formHidden(Form&) {}

void ScriptedHost::formUnloaded(Form& form) {
    m_log.unloaded(form);
    for (Timer* t : form.timers()) m_clock.timerChanged(*t);
}

void ScriptedHost::formDestroyed(Form& form) { std::erase(m_stack, &form); }

// --- Message boxes ---

MsgBoxAnswer ScriptedHost::messageBox(const MessageBoxRequest& box) {
    const Waiting w{[](const Step& s) { return s.kind == Step::Kind::MsgBox; }, [] { return true; },
                    QStringLiteral("the message box \"%1\"").arg(box.title)};
    const Step step = *nextStep(w);
    const QString answer = step.json.value(QStringLiteral("msgbox")).toString();
    const QStringList allowed = answersOf(box.buttons);
    if (!allowed.contains(answer))
        cannotPlay(QStringLiteral("%1: the message box \"%2\" has the buttons %3")
                       .arg(step.describe(), box.title, allowed.join(QStringLiteral(", "))));
    if (step.json.contains(QStringLiteral("title")) && step.json.value(QStringLiteral("title")).toString() != box.title)
        cannotPlay(QStringLiteral("%1: the message box shown has the title \"%2\"").arg(step.describe(), box.title));
    if (step.json.contains(QStringLiteral("text")) && step.json.value(QStringLiteral("text")).toString() != box.text)
        cannotPlay(QStringLiteral("%1: the message box shown has the text \"%2\"").arg(step.describe(), box.text));
    m_log.messageBox(box, answer);
    return answerOf(answer);
}

// --- Event loop and timers ---

void ScriptedHost::DoEvents() {
    bool fired = false;
    run(QStringLiteral("a timer"), [&] { fired = m_clock.fireNext(); });
    if (fired) {
        m_idleYields = 0;
    } else if (++m_idleYields > kIdleYieldLimit) {
        cannotPlay(QStringLiteral("the component keeps yielding to the event loop and no timer is left"));
    }
    actInYield();
}

// A yield is where a person's clicks get in while the component works: once a scripted wait has
// run out, the steps that follow it go to the active window, as far as they are meant for it.
void ScriptedHost::actInYield() {
    if (!m_waitEnds || m_clock.elapsedMs() < *m_waitEnds) return;
    auto forActive = [this] { return m_script.nextIsForActive(m_stack.empty() ? nullptr : m_stack.back()); };
    if (!forActive()) return;
    m_waitEnds.reset();
    while (forActive()) {
        const Step step = m_script.take();
        Form& active = *m_stack.back();
        run(step.describe(), [&] {
            if (auto snap = ScriptedUser::perform(active, step)) record(QStringLiteral("snapshot"), *snap);
        });
    }
}

void ScriptedHost::timerChanged(Timer& timer) { m_clock.timerChanged(timer); }
void ScriptedHost::timerDestroyed(Timer& timer) { m_clock.forget(timer); }

// --- Item windows and the contact picker ---

void ScriptedHost::displayTask(ol::TaskItem& item, bool modal) { displayItem(item, QStringLiteral("task"), modal); }
void ScriptedHost::displayContact(ol::ContactItem& item, bool modal) { displayItem(item, QStringLiteral("contact"), modal); }

void ScriptedHost::displayItem(ol::Item& item, const QString& kind, bool modal) {
    m_log.displayed(item, kind);
    if (!modal) return;
    const Waiting w{[](const Step& s) { return s.kind == Step::Kind::Item; }, [] { return true; },
                    QStringLiteral("the %1 window of \"%2\"").arg(kind, item.EntryID())};
    // The window stays until a step closes it.
    for (bool open = true; open;) {
        const Step step = *nextStep(w);
        const QJsonObject acts = step.json.value(QStringLiteral("item")).toObject();
        auto refusing = [&](const QString& what, const std::function<void()>& body) {
            try { body(); }
            catch (const Failure& f) { throw UserActionRefused(QStringLiteral("%1: %2").arg(what, f.description())); }
        };
        run(step.describe(), [&] {
            const QJsonObject set = acts.value(QStringLiteral("set")).toObject();
            for (auto it = set.begin(); it != set.end(); ++it)
                refusing(QStringLiteral("the item refuses %1").arg(it.key()), [&] {
                    // A task's notes are reached only through the safe item, as on the task form.
                    if (it.key() == QLatin1String("Body") && item.kind() == ol::Item::Kind::Task)
                        SafeTaskItem::borrowing(static_cast<ol::TaskItem&>(item)).setBody(valueFromJson(it.value()).toText());
                    else
                        item.set(it.key(), valueFromJson(it.value()));
                });
            const QJsonObject rec = acts.value(QStringLiteral("recurrence")).toObject();
            if (!rec.isEmpty()) {
                if (item.kind() != ol::Item::Kind::Task) throw UserActionRefused(QStringLiteral("a contact has no recurrence"));
                auto pattern = static_cast<ol::TaskItem&>(item).GetRecurrencePattern();
                for (auto it = rec.begin(); it != rec.end(); ++it)
                    refusing(QStringLiteral("the pattern refuses %1").arg(it.key()), [&] { pattern->set(it.key(), valueFromJson(it.value())); });
            }
            const QString close = acts.value(QStringLiteral("close")).toString();
            if (close == QLatin1String("save") || close == QLatin1String("send"))
                refusing(QStringLiteral("the item cannot be saved"), [&] { item.Save(); });
            open = close.isEmpty();
        });
    }
}

ContactPickerResult ScriptedHost::pickContact(const ContactPickerRequest& request) {
    m_log.picker(request);
    const Waiting w{[](const Step& s) { return s.kind == Step::Kind::Picker; }, [] { return true; },
                    QStringLiteral("the contact picker")};
    const Step step = *nextStep(w);
    const QJsonValue answer = step.json.value(QStringLiteral("picker"));
    ContactPickerResult result;
    if (!answer.isObject()) return result;
    const QJsonObject o = answer.toObject();
    result.contactID = o.value(QStringLiteral("ContactID")).toInt();
    result.name = o.value(QStringLiteral("name")).toString();
    result.entryID = o.value(QStringLiteral("EntryID")).toString();
    return result;
}

} // namespace steplets::scripted
