#include "Control.h"
#include "Buttons.h"
#include "Form.h"
#include "runtime/Failure.h"

namespace steplets {

Control::Control(Form& form, const QString& name, int index) : m_form(form), m_name(name), m_index(index) {
    m_form.registerControl(this);
}

Control::~Control() { m_form.unregisterControl(this); }

QString Control::key() const {
    return m_index < 0 ? m_name : QStringLiteral("%1(%2)").arg(m_name).arg(m_index);
}

void Control::setCaption(const QString& caption) { m_caption = caption; changed(); }
void Control::setEnabled(bool enabled) { m_enabled = enabled; changed(); }
void Control::setVisible(bool visible) { m_visible = visible; changed(); }
void Control::setLocked(bool locked) { m_locked = locked; changed(); }
void Control::setToolTipText(const QString& tip) { m_toolTip = tip; changed(); }
void Control::setTabStop(bool stop) { m_tabStop = stop; changed(); }
void Control::setLeft(int v) { m_left = v; changed(); }
void Control::setTop(int v) { m_top = v; changed(); }
void Control::setWidth(int v) { m_width = v; changed(); }
void Control::setHeight(int v) { m_height = v; changed(); }
void Control::setTag(const QString& tag) { m_tag = tag; }
void Control::setMousePointer(int pointer) { m_mousePointer = pointer; changed(); }

void Control::Move(int left, int top, int width, int height) {
    m_left = left; m_top = top; m_width = width; m_height = height;
    changed();
}

int Control::TabIndex() const { return m_form.tabIndexOf(this); }
void Control::setTabIndex(int index) { m_form.placeInTabOrder(this, index); }

bool Control::effectivelyVisible() const {
    for (const Control* c = this; c; c = c->m_container)
        if (!c->m_visible) return false;
    return true;
}

bool Control::effectivelyEnabled() const {
    for (const Control* c = this; c; c = c->m_container)
        if (!c->m_enabled) return false;
    return true;
}

bool Control::canTakeFocus() const {
    return focusable() && m_form.isLoaded() && effectivelyVisible() && effectivelyEnabled();
}

bool Control::hasFocus() const { return m_form.ActiveControl() == this; }

void Control::SetFocus() {
    // While the window is not shown (its Form_Load, for one) the focus is only a wish, granted
    // at the show if the control can take it then.
    if (!m_form.Visible()) { m_form.setPendingFocus(this); return; }
    if (!canTakeFocus()) throw Failure::invalidCall();
    m_form.moveFocus(this);
}

QJsonObject Control::snapshot() const {
    QJsonObject o;
    if (showsCaption()) o[QStringLiteral("caption")] = m_caption;
    o[QStringLiteral("enabled")] = m_enabled;
    o[QStringLiteral("visible")] = m_visible;
    o[QStringLiteral("toolTip")] = m_toolTip;
    if (showsLocked()) o[QStringLiteral("locked")] = m_locked;
    if (hasTabIndex()) o[QStringLiteral("tabIndex")] = TabIndex();
    if (focusable()) o[QStringLiteral("tabStop")] = m_tabStop;
    return o;
}

void Control::requireReachable(const char* act) const {
    if (!m_form.isLoaded() || !m_form.Visible())
        throw UserActionRefused(QStringLiteral("cannot %1 %2: its window is not shown").arg(QLatin1String(act), key()));
    if (!effectivelyVisible())
        throw UserActionRefused(QStringLiteral("cannot %1 %2: it is hidden").arg(QLatin1String(act), key()));
    if (!effectivelyEnabled())
        throw UserActionRefused(QStringLiteral("cannot %1 %2: it is disabled").arg(QLatin1String(act), key()));
}

void Control::userFocus() {
    requireReachable("focus");
    if (!focusable()) throw UserActionRefused(QStringLiteral("cannot focus %1: it takes no focus").arg(key()));
    m_form.moveFocus(this);
}

void Control::userClick() {
    requireReachable("click");
    if (focusable()) m_form.moveFocus(this);
}

int Control::userKey(int keyCode, int shift) {
    userFocus();
    // Enter and Escape go to the window's default and cancel buttons, not to the control.
    const bool isButton = kind() == Kind::CommandButton;
    CommandButton* button = keyCode == KeyReturn && !isButton ? m_form.defaultButton()
                          : keyCode == KeyEscape ? m_form.cancelButton() : nullptr;
    if (button && button->effectivelyVisible() && button->effectivelyEnabled()) {
        button->Click();
        return 0;
    }
    KeyDown(keyCode, shift);
    return keyCode;
}

void Control::changed() { m_form.controlChanged(*this); }

void throwNoSuchElement(const QString& name, int index) {
    (void)name;
    throw Failure::noSuchElement(index);
}

} // namespace steplets
