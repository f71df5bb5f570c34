#include "Form.h"
#include "Buttons.h"
#include "Timer.h"
#include "UiHost.h"
#include "runtime/Failure.h"
#include <QJsonArray>
#include <algorithm>

namespace steplets {

Form::Form(UiHost& host, const QString& name) : m_host(host), m_name(name) {}

Form::~Form() { m_host.formDestroyed(*this); }

void Form::setCaption(const QString& caption) { m_caption = caption; formChanged(); }
void Form::setLeft(int v) { m_left = v; m_placed = true; formChanged(); }
void Form::setTop(int v) { m_top = v; m_placed = true; formChanged(); }
void Form::setWidth(int v) { m_width = v; formChanged(); }
void Form::setHeight(int v) { m_height = v; formChanged(); }

void Form::Load() {
    if (m_loaded) return;
    m_loaded = true;
    m_host.formLoaded(*this);
    Form_Load();
}

void Form::Show() {
    if (!m_loaded) {
        Load();
        if (!m_loaded) throw Failure::objectUnloaded();
    }
    if (m_visible && m_modalDepth > 0)
        throw Failure::alreadyShownModally();
    m_host.showModal(*this);
}

void Form::beginModal() {
    m_visible = true;
    ++m_modalDepth;
    formChanged();
}

void Form::endModal() { --m_modalDepth; }

void Form::activate() {
    Form_Activate();
    if (!m_loaded || !m_visible || m_active) return;
    // The focus goes where code asked for it before the show, else to the first tab stop.
    Control* first = m_pendingFocus && m_pendingFocus->canTakeFocus() ? m_pendingFocus : nextInTabOrder(nullptr);
    m_pendingFocus = nullptr;
    if (first) moveFocus(first);
}

void Form::Hide() {
    if (!m_loaded) Load();
    m_visible = false;
    formChanged();
    m_host.formHidden(*this);
}

void Form::setVisible(bool visible) {
    if (!visible) { Hide(); return; }
    if (!m_loaded) Load();
    const bool wasHidden = !m_visible;
    m_visible = true;
    formChanged();
    if (wasHidden) m_host.formRevealed(*this);
}

bool Form::Unload(int unloadMode) {
    if (!m_loaded) return true;
    int cancel = 0;
    Form_QueryUnload(cancel, unloadMode);
    if (cancel != 0) return false;
    Form_Unload(cancel);
    if (cancel != 0) return false;
    m_loaded = false;
    m_visible = false;
    m_active = nullptr;
    m_pendingFocus = nullptr;
    formChanged();
    m_host.formUnloaded(*this);
    return true;
}

void Form::Refresh() { formChanged(); }

void Form::SetFocus() {
    if (!m_loaded || !m_visible) throw Failure::invalidCall();
}

Control* Form::control(const QString& key) const {
    for (Control* c : m_controls)
        if (c->key() == key) return c;
    return nullptr;
}

QList<Timer*> Form::timers() const {
    QList<Timer*> out;
    for (Control* c : m_controls)
        if (c->kind() == Control::Kind::Timer) out.append(static_cast<Timer*>(c));
    return out;
}

CommandButton* Form::defaultButton() const {
    for (Control* c : m_controls)
        if (c->kind() == Control::Kind::CommandButton && static_cast<CommandButton*>(c)->Default())
            return static_cast<CommandButton*>(c);
    return nullptr;
}

CommandButton* Form::cancelButton() const {
    for (Control* c : m_controls)
        if (c->kind() == Control::Kind::CommandButton && static_cast<CommandButton*>(c)->Cancel())
            return static_cast<CommandButton*>(c);
    return nullptr;
}

int Form::tabIndexOf(const Control* c) const {
    auto it = std::find(m_tabOrder.begin(), m_tabOrder.end(), c);
    return it == m_tabOrder.end() ? 0 : static_cast<int>(it - m_tabOrder.begin());
}

void Form::placeInTabOrder(Control* c, int index) {
    auto it = std::find(m_tabOrder.begin(), m_tabOrder.end(), c);
    if (it == m_tabOrder.end()) return;
    if (index < 0) throw Failure::invalidPropertyValue();
    m_tabOrder.erase(it);
    index = std::min<int>(index, static_cast<int>(m_tabOrder.size()));
    m_tabOrder.insert(m_tabOrder.begin() + index, c);
    controlChanged(*c);
}

Control* Form::nextInTabOrder(const Control* from) const {
    const int n = static_cast<int>(m_tabOrder.size());
    if (n == 0) return nullptr;
    const int start = from ? tabIndexOf(from) + 1 : 0;
    for (int step = 0; step < n; ++step) {
        Control* c = m_tabOrder[(start + step) % n];
        if (c != from && c->TabStop() && c->canTakeFocus()) return c;
    }
    return nullptr;
}

void Form::moveFocus(Control* to) {
    if (to == m_active) return;
    Control* from = m_active;
    m_active = to;
    if (from) from->LostFocus();
    if (to && m_active == to) to->GotFocus();
}

QJsonObject Form::snapshot() const {
    QJsonObject controls;
    for (Control* c : m_controls) controls[c->key()] = c->snapshot();
    return QJsonObject{{QStringLiteral("form"), m_name},
                       {QStringLiteral("caption"), m_caption},
                       {QStringLiteral("visible"), m_visible},
                       {QStringLiteral("controls"), controls}};
}

void Form::controlChanged(Control& c) {
    if (m_observer) m_observer->controlChanged(c);
}

void Form::formChanged() {
    if (m_observer) m_observer->formChanged(*this);
}

void Form::registerControl(Control* c) {
    m_controls.push_back(c);
    m_tabOrder.push_back(c);
}

void Form::leaveTabOrder(Control* c) { std::erase(m_tabOrder, c); }

void Form::unregisterControl(Control* c) {
    std::erase(m_controls, c);
    std::erase(m_tabOrder, c);
    if (m_active == c) m_active = nullptr;
    if (m_pendingFocus == c) m_pendingFocus = nullptr;
}

} // namespace steplets
