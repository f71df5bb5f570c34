#include "TextControls.h"
#include "Form.h"
#include "runtime/Failure.h"
#include <algorithm>

namespace steplets {

void TextBox::setText(const QString& text) {
    if (text == m_text) return;
    m_text = text;
    m_selStart = std::min<int>(m_selStart, m_text.size());
    m_selLength = std::min<int>(m_selLength, m_text.size() - m_selStart);
    m_dataChanged = true;
    changed();
    Change();
}

void TextBox::setSelStart(int start) {
    if (start < 0) throw Failure::invalidPropertyValue();
    m_selStart = std::min<int>(start, m_text.size());
    m_selLength = 0;
}

void TextBox::setSelLength(int length) {
    if (length < 0) throw Failure::invalidPropertyValue();
    m_selLength = std::min<int>(length, m_text.size() - m_selStart);
}

void TextBox::userClick() {
    Control::userClick();
    Click();
}

void TextBox::userType(const QString& text) {
    requireReachable("type into");
    if (Locked()) throw UserActionRefused(QStringLiteral("cannot type into %1: it is locked").arg(key()));
    form().moveFocus(this);
    setText(m_maxLength > 0 ? text.left(m_maxLength) : text);
    if (!hasFocus()) return;   // a handler has already moved the focus on
    form().moveFocus(form().nextInTabOrder(this));
}

QJsonObject TextBox::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("text")] = m_text;
    return o;
}

} // namespace steplets
