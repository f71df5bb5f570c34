#pragma once
// A window as logic: its controls by name, its tab order and focus, and the life of a modal window
// (Load, Activate, QueryUnload, Unload, Hide) as the windows rely on it. A window is
// a class derived from Form that holds its controls as members and overrides the form events it
// handles. It is shown modally through the UiHost and unloaded by its creator; a handler that
// unloads its own window returns normally to its caller.
#include "Control.h"
#include <QJsonObject>
#include <QList>
#include <QString>
#include <vector>

namespace steplets {

class UiHost;
class Timer;
class CommandButton;

// Told of every change of a form or one of its controls, so a widget binding can redraw.
class FormObserver {
public:
    virtual ~FormObserver() = default;
    virtual void controlChanged(Control& control) = 0;
    virtual void formChanged(Form& form) = 0;
};

class Form {
public:
    // Why a form is being unloaded, as QueryUnload is told.
    enum UnloadMode { FormControlMenu = 0, FormCode = 1 };

    Form(UiHost& host, const QString& name);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const QString& name() const { return m_name; }
    UiHost& host() const { return m_host; }

    const QString& Caption() const { return m_caption; }
    void setCaption(const QString& caption);
    int Left() const { return m_left; }
    int Top() const { return m_top; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    void setLeft(int v);
    void setTop(int v);
    void setWidth(int v);
    void setHeight(int v);
    // Whether code has set Left or Top: the window then stands there, else where the host puts it.
    bool placed() const { return m_placed; }
    bool Visible() const { return m_visible; }
    bool isLoaded() const { return m_loaded; }
    // Number of modal shows of this form that have not returned yet.
    int modalDepth() const { return m_modalDepth; }

    // Loads the form (Form_Load runs once per load); a loaded form is left alone.
    void Load();
    // Shows the form modally through the host; returns when it is hidden or unloaded. An unloaded
    // form is loaded first; one that unloads itself while loading is failure 364, one that is
    // already shown modally is failure 400.
    void Show();
    void Hide();
    // Makes a hidden window visible again without a modal show of its own: a modal show of it
    // further out goes on. False hides it.
    void setVisible(bool visible);
    // Unloads the form: QueryUnload, then Unload, each of which may refuse. False when refused.
    bool Unload(int unloadMode = FormCode);
    void Refresh();
    // Gives the window the focus; an invisible window is failure 5.
    void SetFocus();

    // Controls by name ("name" or "name(index)"), in the order the window declared them.
    Control* control(const QString& key) const;
    const std::vector<Control*>& controls() const { return m_controls; }
    QList<Timer*> timers() const;
    CommandButton* defaultButton() const;
    CommandButton* cancelButton() const;

    // Focus and tab order.
    Control* ActiveControl() const { return m_active; }
    const std::vector<Control*>& tabOrder() const { return m_tabOrder; }
    int tabIndexOf(const Control* c) const;
    void placeInTabOrder(Control* c, int index);
    // The next control after `from` in the tab order that can take the focus and is a tab stop.
    Control* nextInTabOrder(const Control* from) const;
    void moveFocus(Control* to);           // raises LostFocus, then GotFocus
    void setPendingFocus(Control* c) { m_pendingFocus = c; }

    // For the host: the form has become the active window (raises Activate, then settles the focus).
    void activate();
    // For the host: a modal show begins or ends.
    void beginModal();
    void endModal();

    // The close box of the window's control menu.
    void userClose() { Unload(FormControlMenu); }

    // {"form", "caption", "visible", "controls": {key: state}}.
    QJsonObject snapshot() const;

    void setObserver(FormObserver* observer) { m_observer = observer; }
    FormObserver* observer() const { return m_observer; }
    void controlChanged(Control& c);

    // Kept for the controls of this form only.
    void registerControl(Control* c);
    void unregisterControl(Control* c);
    // For controls that have no place in the tab order (timers).
    void leaveTabOrder(Control* c);

protected:
    // The form events; a window overrides those it handles.
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_QueryUnload(int& cancel, int unloadMode) { (void)cancel; (void)unloadMode; }
    virtual void Form_Unload(int& cancel) { (void)cancel; }

private:
    void formChanged();

    UiHost& m_host;
    QString m_name;
    QString m_caption;
    int m_left = 0, m_top = 0, m_width = 0, m_height = 0;
    bool m_placed = false;
    bool m_loaded = false;
    bool m_visible = false;
    int m_modalDepth = 0;
    std::vector<Control*> m_controls;
    std::vector<Control*> m_tabOrder;
    Control* m_active = nullptr;
    Control* m_pendingFocus = nullptr;
    FormObserver* m_observer = nullptr;
};

} // namespace steplets
