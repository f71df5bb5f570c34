#pragma once
// The common part of every control model: identity (name, index in a control array), the
// properties every window control has, focus, and the user's own acts on it. A control belongs
// to one Form, which keeps the tab order and the focus.
#include "Event.h"
#include <QJsonObject>
#include <QString>
#include <deque>
#include <initializer_list>
#include <stdexcept>

namespace steplets {

class Form;

// Raised when a user could not do what was asked: a click on a hidden or disabled control, a
// text typed into a locked box, a row that is not there. Hosts turn it into their own refusal.
class UserActionRefused : public std::runtime_error {
public:
    explicit UserActionRefused(const QString& why) : std::runtime_error(why.toStdString()) {}
};

class Control {
public:
    enum class Kind {
        CommandButton, CheckBox, OptionButton, TextBox, Label, Frame, ListBox, ComboBox,
        TabStrip, PictureBox, Timer, Grid, StatusBar, ProgressBar, ToolBar, Calendar, ContactCombo
    };
    // Mouse pointers of the run-time that the windows use.
    enum MousePointerShape { Default = 0, Arrow = 1, Hourglass = 11, Custom = 99 };
    enum KeyCodes { KeyTab = 9, KeyReturn = 13, KeyEscape = 27 };

    Control(Form& form, const QString& name, int index = -1);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    virtual Kind kind() const = 0;
    const QString& name() const { return m_name; }
    int index() const { return m_index; }                // -1 outside a control array
    QString key() const;                                 // "name" or "name(index)"
    Form& form() const { return m_form; }

    const QString& Caption() const { return m_caption; }
    void setCaption(const QString& caption);
    bool Enabled() const { return m_enabled; }
    virtual void setEnabled(bool enabled);
    bool Visible() const { return m_visible; }
    void setVisible(bool visible);
    bool Locked() const { return m_locked; }
    void setLocked(bool locked);
    const QString& ToolTipText() const { return m_toolTip; }
    void setToolTipText(const QString& tip);
    int TabIndex() const;
    // Moves this control to that place of the form's tab order; the others shift, as the run-time does.
    void setTabIndex(int index);
    bool TabStop() const { return m_tabStop; }
    void setTabStop(bool stop);
    int Left() const { return m_left; }
    int Top() const { return m_top; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    void setLeft(int v);
    void setTop(int v);
    void setWidth(int v);
    void setHeight(int v);
    void Move(int left, int top, int width, int height);
    const QString& Tag() const { return m_tag; }
    void setTag(const QString& tag);
    int MousePointer() const { return m_mousePointer; }
    void setMousePointer(int pointer);
    // The frame, page or panel that holds this control; its state rules this control's.
    Control* Container() const { return m_container; }
    void setContainer(Control* container) { m_container = container; }

    // Visible and enabled with every container up to the form.
    bool effectivelyVisible() const;
    bool effectivelyEnabled() const;
    // Whether the control could take the focus now (or when its form is shown).
    bool canTakeFocus() const;
    bool hasFocus() const;
    // Gives the focus; one that cannot take it is failure 5. Before the form is shown the
    // control becomes the one that gets the focus at the show, if it can take it then.
    void SetFocus();

    Event<> GotFocus;
    Event<> LostFocus;
    Event<int& /*keyCode*/, int /*shift*/> KeyDown;
    Event<int /*button*/, int /*shift*/, double /*x*/, double /*y*/> MouseDown;
    Event<int /*button*/, int /*shift*/, double /*x*/, double /*y*/> MouseMove;

    // The state that a scenario snapshot records: the members that apply to this kind.
    virtual QJsonObject snapshot() const;

    // The user's acts. Each first checks that a person at the screen could do it
    // (UserActionRefused otherwise), then does what the mouse or keyboard would.
    virtual void userClick();
    void userFocus();
    // A key pressed on the control: Enter and Escape go to the window's default and cancel
    // buttons when they can take them, else KeyDown sees the key. Returns the key code left for
    // the control itself: 0 once a button or a KeyDown handler took it.
    int userKey(int keyCode, int shift);

protected:
    // Kinds that can hold the focus, have a tab index, a caption in the snapshot, or a lock.
    virtual bool focusable() const { return true; }
    virtual bool hasTabIndex() const { return true; }
    virtual bool showsCaption() const { return false; }
    virtual bool showsLocked() const { return false; }
    // Tells the form's observer (a widget binding) that something of this control changed.
    void changed();
    // Refuses a user's act on a control that a user could not reach.
    void requireReachable(const char* act) const;

private:
    Form& m_form;
    QString m_name;
    int m_index;
    QString m_caption;
    bool m_enabled = true;
    bool m_visible = true;
    bool m_locked = false;
    QString m_toolTip;
    bool m_tabStop = true;
    int m_left = 0, m_top = 0, m_width = 0, m_height = 0;
    QString m_tag;
    int m_mousePointer = Default;
    Control* m_container = nullptr;
};

// A control array: the elements by their index, as the window's designer numbered them.
template <class T>
class ControlArray {
public:
    ControlArray(Form& form, const QString& name, std::initializer_list<int> indexes) : m_name(name) {
        for (int i : indexes) m_items.emplace_back(form, name, i);
    }
    // An index without an element is the run-time's failure 340.
    T& operator[](int index);
    const T& operator[](int index) const { return const_cast<ControlArray*>(this)->operator[](index); }
    int count() const { return static_cast<int>(m_items.size()); }
    int lbound() const { return m_items.empty() ? 0 : m_items.front().index(); }
    int ubound() const { return m_items.empty() ? -1 : m_items.back().index(); }
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }

private:
    QString m_name;
    std::deque<T> m_items;
};

[[noreturn]] void throwNoSuchElement(const QString& name, int index);

template <class T>
T& ControlArray<T>::operator[](int index) {
    for (auto& item : m_items)
        if (item.index() == index) return item;
    throwNoSuchElement(m_name, index);
}

} // namespace steplets
