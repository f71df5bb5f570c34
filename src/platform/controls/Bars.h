#pragma once
// Status bar with panels, progress bar, and the tool bar of bands and tools.
#include "Control.h"
#include <QStringList>
#include <deque>

namespace steplets {

class StatusBar : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::StatusBar; }

    void addPanel(const QString& text = {});
    int PanelCount() const { return static_cast<int>(m_panels.size()); }
    // Panels by position from 1; outside is failure 35600.
    QString PanelText(int index) const;
    void setPanelText(int index, const QString& text);
    QJsonObject snapshot() const override;

protected:
    bool focusable() const override { return false; }

private:
    void check(int index) const;
    QStringList m_panels;
};

class ProgressBar : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::ProgressBar; }

    int Min() const { return m_min; }
    int Max() const { return m_max; }
    int Value() const { return m_value; }
    void setMin(int v);
    void setMax(int v);
    // Outside Min..Max is failure 380.
    void setValue(int v);
    QJsonObject snapshot() const override;

protected:
    bool focusable() const override { return false; }

private:
    int m_min = 0;
    int m_max = 100;
    int m_value = 0;
};

class ToolBar;

// One tool of a band: its name, numeric identifier, tip and state.
class Tool {
public:
    Tool(ToolBar& bar, const QString& name, int id) : m_bar(bar), m_name(name), m_id(id) {}
    const QString& Name() const { return m_name; }
    int ToolID() const { return m_id; }
    bool Enabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    bool Visible() const { return m_visible; }
    void setVisible(bool visible);
    const QString& ToolTipText() const { return m_toolTip; }
    void setToolTipText(const QString& tip);
    const QString& Caption() const { return m_caption; }
    void setCaption(const QString& caption);

private:
    ToolBar& m_bar;
    QString m_name;
    int m_id;
    bool m_enabled = true;
    bool m_visible = true;
    QString m_toolTip;
    QString m_caption;
};

class Band {
public:
    Band(ToolBar& bar, const QString& name) : m_bar(bar), m_name(name) {}
    const QString& Name() const { return m_name; }
    Tool& addTool(const QString& name, int id);
    int ToolCount() const { return static_cast<int>(m_tools.size()); }
    Tool& Tools(int index);               // from 0; outside is failure 35600

private:
    ToolBar& m_bar;
    QString m_name;
    std::deque<Tool> m_tools;
};

class ToolBar : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::ToolBar; }

    Band& addBand(const QString& name);
    int BandCount() const { return static_cast<int>(m_bands.size()); }
    Band& Bands(int index);               // from 0; outside is failure 35600
    // The tool of that name in any band; nullptr for none.
    Tool* tool(const QString& name);
    // Redraws the bar after changes of its tools.
    void RecalcLayout() { changed(); }
    void Refresh() { changed(); }
    void toolChanged() { changed(); }

    Event<Tool&> ToolClick;

    // A click on tool `name`; a hidden or disabled tool (or bar) cannot be clicked.
    void userToolClick(const QString& name);
    QJsonObject snapshot() const override;

protected:
    bool focusable() const override { return false; }

private:
    std::deque<Band> m_bands;
};

} // namespace steplets
