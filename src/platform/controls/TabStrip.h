#pragma once
// A tab strip: tabs by position from 1, one of them selected. Selecting a tab raises Click,
// also when code selects the tab that is already selected.
#include "Control.h"
#include <QStringList>

namespace steplets {

class TabStrip : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::TabStrip; }

    void addTab(const QString& caption);
    int TabCount() const { return static_cast<int>(m_tabs.size()); }
    // Failure 35600 outside 1..TabCount.
    QString TabCaption(int index) const;
    void setTabCaption(int index, const QString& caption);
    int SelectedTab() const { return m_selected; }   // 0 before any tab is selected
    void selectTab(int index);

    Event<> Click;

    // A mouse click on tab `index`: MouseDown, then the tab is selected (Click) unless it was
    // selected already.
    void userSelectTab(int index);
    QJsonObject snapshot() const override;

private:
    void check(int index) const;

    QStringList m_tabs;
    int m_selected = 0;
};

class PictureBox;
template <class T> class ControlArray;

// The page of the selected tab (pages by index from 0 for tab 1) stands at `left` and is
// enabled; the others are moved out of sight and disabled, as the windows show one page at a time.
void showSelectedPage(ControlArray<PictureBox>& pages, int selectedTab, int left);

} // namespace steplets
