#pragma once
// Raised by a UI host that cannot go on with the session at all: a scripted user whose script
// cannot be played, or a failure that escaped an event handler with no handler of its own. No
// routine of the component handles it (Guard lets it pass), so it leaves OpenSteplets at once
// and reaches whoever drives the host.
#include <QString>
#include <exception>

namespace steplets {

class HostAbort : public std::exception {
public:
    enum class Reason { CannotPlay, UnhandledFailure };
    HostAbort(Reason reason, QString message)
        : m_reason(reason), m_message(std::move(message)), m_what(m_message.toUtf8()) {}
    Reason reason() const { return m_reason; }
    const QString& message() const { return m_message; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Reason m_reason;
    QString m_message;
    QByteArray m_what;
};

} // namespace steplets
