#pragma once
// Command button, check box and option button. A check box's Value and an option button's
// selection raise Click whether the user or code makes the change.
#include "Control.h"

namespace steplets {

class CommandButton : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::CommandButton; }
    // The form's default button takes Enter, its cancel button Escape.
    bool Default() const { return m_default; }
    void setDefault(bool d) { m_default = d; }
    bool Cancel() const { return m_cancel; }
    void setCancel(bool c) { m_cancel = c; }

    Event<> Click;

    void userClick() override;

protected:
    bool showsCaption() const override { return true; }

private:
    bool m_default = false;
    bool m_cancel = false;
};

class CheckBox : public Control {
public:
    enum State { Unchecked = 0, Checked = 1, Grayed = 2 };
    using Control::Control;
    Kind kind() const override { return Kind::CheckBox; }

    int Value() const { return m_value; }
    // A change of value raises Click; setting the value it has raises nothing. Outside 0..2 is
    // failure 380.
    void setValue(int value);

    Event<> Click;

    // A click toggles: ticked becomes unticked, anything else ticked.
    void userClick() override;
    QJsonObject snapshot() const override;

protected:
    bool showsCaption() const override { return true; }

private:
    int m_value = Unchecked;
};

class OptionButton : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::OptionButton; }

    bool Value() const { return m_value; }
    // Selecting an option clears the others of its group (same form, same container) and raises
    // Click; selecting the selected one raises nothing. Clearing raises nothing.
    void setValue(bool value);

    Event<> Click;

    void userClick() override;
    QJsonObject snapshot() const override;

protected:
    bool showsCaption() const override { return true; }

private:
    bool m_value = false;
};

} // namespace steplets
