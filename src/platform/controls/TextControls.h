#pragma once
// Text box, label, frame and picture box (a panel that holds other controls).
#include "Control.h"

namespace steplets {

class TextBox : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::TextBox; }

    const QString& Text() const { return m_text; }
    // A new text raises Change and sets the changed flag; the same text raises nothing.
    void setText(const QString& text);
    // The changed flag: set by every change of the text, cleared only by code.
    bool DataChanged() const { return m_dataChanged; }
    void setDataChanged(bool changed) { m_dataChanged = changed; }
    // The most characters the user can type; 0 for no limit. Code is not limited.
    int MaxLength() const { return m_maxLength; }
    void setMaxLength(int n) { m_maxLength = n; }
    int SelStart() const { return m_selStart; }
    int SelLength() const { return m_selLength; }
    void setSelStart(int start);
    void setSelLength(int length);
    QString SelText() const { return m_text.mid(m_selStart, m_selLength); }

    Event<> Change;
    Event<> Click;

    void userClick() override;
    // The user enters the box, replaces its text (keystrokes past MaxLength are refused) and
    // leaves it for the next control in the tab order.
    void userType(const QString& text);
    QJsonObject snapshot() const override;

protected:
    bool showsLocked() const override { return true; }

private:
    QString m_text;
    bool m_dataChanged = false;
    int m_maxLength = 0;
    int m_selStart = 0;
    int m_selLength = 0;
};

class Label : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::Label; }

protected:
    bool focusable() const override { return false; }
    bool showsCaption() const override { return true; }
};

class Frame : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::Frame; }

protected:
    bool focusable() const override { return false; }
    bool showsCaption() const override { return true; }
};

class PictureBox : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::PictureBox; }

protected:
    bool focusable() const override { return false; }
};

} // namespace steplets
