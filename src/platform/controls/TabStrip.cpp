#include "TabStrip.h"
#include "TextControls.h"
#include "Form.h"
#include "runtime/Failure.h"
#include <QJsonArray>

namespace steplets {

void TabStrip::addTab(const QString& caption) {
    m_tabs.append(caption);
    if (m_selected == 0) m_selected = 1;
    changed();
}

void TabStrip::check(int index) const {
    if (index < 1 || index > TabCount()) throw Failure::indexOutOfBounds();
}

QString TabStrip::TabCaption(int index) const {
    check(index);
    return m_tabs.at(index - 1);
}

void TabStrip::setTabCaption(int index, const QString& caption) {
    check(index);
    m_tabs[index - 1] = caption;
    changed();
}

void TabStrip::selectTab(int index) {
    check(index);
    m_selected = index;
    changed();
    Click();
}

void TabStrip::userSelectTab(int index) {
    requireReachable("click a tab of");
    if (index < 1 || index > TabCount())
        throw UserActionRefused(QStringLiteral("cannot click tab %1 of %2: it has %3 tabs").arg(index).arg(key()).arg(TabCount()));
    MouseDown(1, 0, 0.0, 0.0);
    if (canTakeFocus()) form().moveFocus(this);
    if (index != m_selected) selectTab(index);
}

QJsonObject TabStrip::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("selectedTab")] = m_selected;
    o[QStringLiteral("tabs")] = QJsonArray::fromStringList(m_tabs);
    return o;
}

void showSelectedPage(ControlArray<PictureBox>& pages, int selectedTab, int left)
{
    constexpr int kOutOfSight = -20000;
    for (auto& page : pages) {
        const bool selected = page.index() == selectedTab - 1;
        page.setLeft(selected ? left : kOutOfSight);
        page.setEnabled(selected);
    }
}

} // namespace steplets
