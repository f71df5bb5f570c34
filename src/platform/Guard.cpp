#include "Guard.h"

namespace steplets {

namespace {
// Until a session installs its own, the trail is kept here and reports go nowhere.
class DetachedSink : public FailureSink {
public:
    void enterTrail(const QString& literal) override { m_trail = m_trail.right(1000) + QStringLiteral("\r\nX:") + literal; }
    QString trail() const override { return m_trail; }
    void report(const Failure&, const QString&) override {}

private:
    QString m_trail;
};

FailureSink*& sinkSlot()
{
    static DetachedSink detached;
    static FailureSink* sink = &detached;
    return sink;
}
} // namespace

void installFailureSink(FailureSink* sink) { sinkSlot() = sink; }

FailureSink& failureSink() { return *sinkSlot(); }

Failure currentFailure(std::exception_ptr e)
{
    try {
        std::rethrow_exception(e);
    } catch (const Failure& f) {
        return f;
    } catch (const std::bad_alloc&) {
        return Failure(7, QStringLiteral("Out of memory"));
    } catch (const std::exception& x) {
        return Failure(51, QStringLiteral("Internal error: %1").arg(QString::fromUtf8(x.what())));
    } catch (...) {
        return Failure(51, QStringLiteral("Internal error"));
    }
}

Guard::Guard(const QString& literal, int firstLine) : m_line(firstLine)
{
    failureSink().enterTrail(literal);
}

void Guard::mark(const QString& literal) { failureSink().enterTrail(literal); }

QString Guard::location() const { return failureSink().trail() + QStringLiteral(":Line ") + QString::number(m_line); }

void Guard::report(const Failure& failure) const { failureSink().report(failure, location()); }

} // namespace steplets
