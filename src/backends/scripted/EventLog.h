#pragma once
// The transcript's events as a played session produces them, each stamped with the virtual
// clock's "at". Whichever host renders the windows, the same events are written the same way.
#include "UiHost.h"
#include "VirtualClock.h"
#include <QJsonArray>
#include <QJsonObject>

namespace steplets::scripted {

class EventLog {
public:
    explicit EventLog(VirtualClock& clock) : m_clock(clock) {}

    const QJsonArray& events() const { return m_events; }
    // Adds {"at": now, key: value} or {"at": now, members...}.
    void record(const QString& key, const QJsonValue& value) { record(QJsonObject{{key, value}}); }
    void record(QJsonObject members);

    void shown(const Form& form);
    void unloaded(const Form& form);
    void messageBox(const MessageBoxRequest& box, const QString& answer);
    void displayed(const ol::Item& item, const QString& kind);
    // The picker's arguments, its version and the rows it offers.
    void picker(const ContactPickerRequest& request);

private:
    VirtualClock& m_clock;
    QJsonArray m_events;
};

} // namespace steplets::scripted
