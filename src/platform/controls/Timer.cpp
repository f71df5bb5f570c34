#include "Timer.h"
#include "Form.h"
#include "UiHost.h"
#include "runtime/Failure.h"

namespace steplets {

Timer::Timer(Form& form, const QString& name, int index) : Control(form, name, index) {
    form.leaveTabOrder(this);
}

Timer::~Timer() { form().host().timerDestroyed(*this); }

void Timer::setEnabled(bool enabled) {
    const bool was = Enabled();
    Control::setEnabled(enabled);
    if (was != enabled) form().host().timerChanged(*this);
}

void Timer::setInterval(int ms) {
    if (ms < 0) throw Failure::invalidPropertyValue();
    m_interval = ms;
    form().host().timerChanged(*this);
}

bool Timer::armed() const { return Enabled() && m_interval > 0 && form().isLoaded(); }

QJsonObject Timer::snapshot() const {
    return QJsonObject{{QStringLiteral("enabled"), Enabled()}, {QStringLiteral("interval"), m_interval}};
}

} // namespace steplets
