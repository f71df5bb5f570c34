#include "modDLLErrHandler.h"
#include "SessionContext.h"
#include "platform/runtime/Int16.h"

namespace steplets::modDLLErrHandler {

namespace {
Int16 g_failureCount;

class SessionDiscipline : public FailureSink {
public:
    void enterTrail(const QString& literal) override
    {
        QString& trail = session().ErrorTrail;
        trail = trail.right(1000) + QStringLiteral("\r\nX:") + literal;
    }
    QString trail() const override { return session().ErrorTrail; }
    void report(const Failure& f, const QString& location) override
    {
        // A failure of the reporting itself goes no further: the routine has already left its flow.
        try {
            ReportError(f.description(), QString::number(f.number()), f.source(), location);
        } catch (...) {
        }
    }
};
} // namespace

QString VersionText()
{
    return QStringLiteral("%1.%2.%3").arg(STEPLETS_VERSION_MAJOR).arg(STEPLETS_VERSION_MINOR).arg(STEPLETS_VERSION_REVISION);
}

void ReportError(const QString& sDescription, const QString& sNumber, const QString& sSource,
                 const QString& sLocation)
{
    ++g_failureCount;
    if (g_failureCount > 1) return;
    const auto& factory = session().ports.errorReporter;
    if (!factory) return;
    std::unique_ptr<ErrorReporter> reporter = factory();
    const QString version = VersionText();
    if (reporter) reporter->Report(version, sDescription, sNumber, sSource, sLocation);
    reporter.reset();
}

void InstallDiscipline()
{
    static SessionDiscipline discipline;
    installFailureSink(&discipline);
}

int FailureCount() { return g_failureCount; }

} // namespace steplets::modDLLErrHandler
