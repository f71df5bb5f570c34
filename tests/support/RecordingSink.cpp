#include "RecordingSink.h"

namespace steplets::test {

RecordingSink::RecordingSink(std::function<QString&()> trail)
    : m_trail(std::move(trail)), m_previous(&failureSink())
{
    if (!m_trail) m_trail = [this]() -> QString& { return m_ownTrail; };
    installFailureSink(this);
}

RecordingSink::~RecordingSink() { installFailureSink(m_previous); }

void RecordingSink::enterTrail(const QString& literal)
{
    QString& t = m_trail();
    t = t.right(1000) + QStringLiteral("\r\nX:") + literal;
}

QString RecordingSink::trail() const { return m_trail(); }

void RecordingSink::report(const Failure& f, const QString& location)
{
    failures.push_back({f.number(), f.description(), f.source(), location});
    m_previous->report(f, location);
}

} // namespace steplets::test
