#pragma once
// One window of control models rendered as a dialog of real widgets. Every control gets the widget
// of its kind, placed by its twips inside its container's widget, so a window looks like its
// design without a layout of its own. A user's act on a widget becomes the model's user act; a
// change of the model is copied onto the widget once the running handler has returned, with the
// widget's signals blocked, so neither side echoes the other. FormView.cpp makes the widgets and
// carries the user's acts; FormViewSync.cpp copies the models onto them; FormViewLayout.cpp
// places them and gives each label the room its text needs.
#include "controls/Form.h"
#include <QDialog>
#include <QHash>
#include <QSet>
#include <functional>
#include <optional>
#include <vector>

class QLabel;
class QMenuBar;
class QTableWidget;
class QToolBar;

namespace steplets { class Grid; }

namespace steplets::qt {

class QtUiHost;

// Twips to pixels at a screen resolution (1440 twips to the inch), and back.
int twipsToPixels(int twips, double dpi);
double pixelsToTwips(int pixels, double dpi);

class FormView : public QDialog, public FormObserver {
public:
    FormView(Form& form, QtUiHost& host);
    ~FormView() override;

    Form* form() const { return m_form; }
    // The form goes away or is unloaded: the view no longer looks at it.
    void detach();
    // The widget of a control (nullptr for those that have none: timers, the contact list).
    QWidget* widgetOf(const Control& c) const { return m_widgets.value(&c); }
    // Brings the window up over `below` (nullptr: a window of its own).
    void present(QWidget* below);
    // Copies every pending change of the models onto the widgets, then the focus.
    void flush();
    // A menu bar of the host's own along the window's top, above the form's controls, which
    // move down by its height (made on first use). The form knows nothing of it.
    QMenuBar* menuBar();

    // FormObserver
    void controlChanged(Control& control) override;
    void formChanged(Form& form) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void reject() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // FormView.cpp: widgets and the user's acts.
    void createAll();
    QWidget* create(Control& c, QWidget* parent);
    QWidget* createList(Control& c, QWidget* parent);
    QWidget* createTabStrip(Control& c, QWidget* parent);
    QWidget* createToolBar(Control& c, QWidget* parent);
    void bind(Control& c, QWidget* w);
    bool forwardMouse(Control& c, QObject* watched, QEvent* event);
    bool routeKey(Control& c, QObject* watched, QKeyEvent* key);
    void act(const std::function<void()>& body);

    // FormViewSync.cpp: models onto widgets.
    void sync(Control& c);
    void syncCommon(Control& c, QWidget* w);
    void syncKind(Control& c, QWidget* w);
    void syncList(Control& c, QWidget* w);
    void syncGrid(Control& c, QWidget* w);
    void fitGridColumns(Grid& grid, QTableWidget* g, const std::vector<int>& need);
    void syncToolBar(Control& c, QWidget* w);
    void syncForm();
    void placeWindow();
    // FormViewLayout.cpp: where the widgets lie.
    void placeDesigned(Control& c, QWidget* w);
    void layoutControls();
    QList<QWidget*> besides(QWidget* w) const;
    void fitLabel(QLabel* l);
    void pushDown(QWidget* container, int from, int by);
    void growDown(QWidget* container, int by);
    void fitContents();
    void syncTabOrder();
    void syncFocus();
    void scheduleFlush();
    int px(int twips) const;
    int menuHeight() const;

    Form* m_form;
    QtUiHost& m_host;
    double m_dpi;
    QHash<const Control*, QWidget*> m_widgets;
    QHash<QObject*, Control*> m_controlOf;
    QHash<const Control*, QPair<int, int>> m_syncedSelection;
    QSet<Control*> m_dirty;
    bool m_formDirty = true;
    bool m_flushScheduled = false;
    bool m_syncing = false;
    QMenuBar* m_menuBar = nullptr;
    // Where the window was when it was last hidden: it comes back there.
    std::optional<QPoint> m_lastPlace;
};

} // namespace steplets::qt
