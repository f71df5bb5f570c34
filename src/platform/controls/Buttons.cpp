#include "Buttons.h"
#include "Form.h"
#include "runtime/Failure.h"

namespace steplets {

void CommandButton::userClick() {
    Control::userClick();
    Click();
}

void CheckBox::setValue(int value) {
    if (value < Unchecked || value > Grayed) throw Failure::invalidPropertyValue();
    if (value == m_value) return;
    m_value = value;
    changed();
    Click();
}

void CheckBox::userClick() {
    Control::userClick();
    setValue(m_value == Checked ? Unchecked : Checked);
}

QJsonObject CheckBox::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("value")] = m_value;
    return o;
}

void OptionButton::setValue(bool value) {
    if (value == m_value) return;
    m_value = value;
    changed();
    if (!value) return;
    for (Control* c : form().controls()) {
        if (c == this || c->kind() != Kind::OptionButton || c->Container() != Container()) continue;
        auto* other = static_cast<OptionButton*>(c);
        if (other->m_value) { other->m_value = false; other->changed(); }
    }
    Click();
}

void OptionButton::userClick() {
    Control::userClick();
    setValue(true);
}

QJsonObject OptionButton::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("value")] = m_value;
    return o;
}

} // namespace steplets
