#include "Bars.h"
#include "Form.h"
#include "runtime/Failure.h"
#include <QJsonArray>

namespace steplets {

namespace {
Failure outOfBounds() { return Failure::indexOutOfBounds(); }
} // namespace

// --- StatusBar ---

void StatusBar::addPanel(const QString& text) {
    m_panels.append(text);
    changed();
}

void StatusBar::check(int index) const {
    if (index < 1 || index > PanelCount()) throw outOfBounds();
}

QString StatusBar::PanelText(int index) const {
    check(index);
    return m_panels.at(index - 1);
}

void StatusBar::setPanelText(int index, const QString& text) {
    check(index);
    m_panels[index - 1] = text;
    changed();
}

QJsonObject StatusBar::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("panels")] = QJsonArray::fromStringList(m_panels);
    return o;
}

// --- ProgressBar ---

void ProgressBar::setMin(int v) {
    if (v > m_max) throw Failure::invalidPropertyValue();
    m_min = v;
    m_value = std::max(m_value, v);
    changed();
}

void ProgressBar::setMax(int v) {
    if (v < m_min) throw Failure::invalidPropertyValue();
    m_max = v;
    m_value = std::min(m_value, v);
    changed();
}

void ProgressBar::setValue(int v) {
    if (v < m_min || v > m_max) throw Failure::invalidPropertyValue();
    m_value = v;
    changed();
}

QJsonObject ProgressBar::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("max")] = m_max;
    o[QStringLiteral("progress")] = m_value;
    return o;
}

// --- Tool bar ---

void Tool::setEnabled(bool enabled) { m_enabled = enabled; m_bar.toolChanged(); }
void Tool::setVisible(bool visible) { m_visible = visible; m_bar.toolChanged(); }
void Tool::setToolTipText(const QString& tip) { m_toolTip = tip; m_bar.toolChanged(); }
void Tool::setCaption(const QString& caption) { m_caption = caption; m_bar.toolChanged(); }

Tool& Band::addTool(const QString& name, int id) {
    m_tools.emplace_back(m_bar, name, id);
    m_bar.toolChanged();
    return m_tools.back();
}

Tool& Band::Tools(int index) {
    if (index < 0 || index >= ToolCount()) throw outOfBounds();
    return m_tools[static_cast<std::size_t>(index)];
}

Band& ToolBar::addBand(const QString& name) {
    m_bands.emplace_back(*this, name);
    changed();
    return m_bands.back();
}

Band& ToolBar::Bands(int index) {
    if (index < 0 || index >= BandCount()) throw outOfBounds();
    return m_bands[static_cast<std::size_t>(index)];
}

Tool* ToolBar::tool(const QString& name) {
    for (auto& band : m_bands)
        for (int i = 0; i < band.ToolCount(); ++i)
            if (band.Tools(i).Name() == name) return &band.Tools(i);
    return nullptr;
}

void ToolBar::userToolClick(const QString& name) {
    requireReachable("click a tool of");
    Tool* t = tool(name);
    if (!t) throw UserActionRefused(QStringLiteral("cannot click tool %1 of %2: there is no such tool").arg(name, key()));
    if (!t->Visible()) throw UserActionRefused(QStringLiteral("cannot click tool %1 of %2: it is hidden").arg(name, key()));
    if (!t->Enabled()) throw UserActionRefused(QStringLiteral("cannot click tool %1 of %2: it is disabled").arg(name, key()));
    ToolClick(*t);
}

QJsonObject ToolBar::snapshot() const {
    QJsonObject o = Control::snapshot();
    QJsonObject tools;
    for (const auto& band : m_bands)
        for (int i = 0; i < band.ToolCount(); ++i) {
            const Tool& t = const_cast<Band&>(band).Tools(i);
            tools[t.Name()] = QJsonObject{{QStringLiteral("enabled"), t.Enabled()},
                                          {QStringLiteral("toolTip"), t.ToolTipText()}};
        }
    o[QStringLiteral("tools")] = tools;
    return o;
}

} // namespace steplets
