#pragma once
// A timer of a window: while it is enabled, has an interval and its window is loaded, the host
// raises Tick every Interval milliseconds. It tells the host of each change, so the host's clock
// (real or virtual) knows when it falls due.
#include "Control.h"

namespace steplets {

class Timer : public Control {
public:
    Timer(Form& form, const QString& name, int index = -1);
    ~Timer() override;
    Kind kind() const override { return Kind::Timer; }

    void setEnabled(bool enabled) override;
    int Interval() const { return m_interval; }
    // Negative is failure 380; 0 keeps the timer from ticking.
    void setInterval(int ms);
    // Enabled, with an interval, in a loaded window.
    bool armed() const;

    Event<> Tick;

    QJsonObject snapshot() const override;

protected:
    bool focusable() const override { return false; }
    bool hasTabIndex() const override { return false; }

private:
    int m_interval = 0;
};

} // namespace steplets
