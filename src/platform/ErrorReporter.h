#pragma once
// The closed reporting object: created afresh for each report, given five texts, released.
#include <QString>
#include <functional>
#include <memory>

namespace steplets {

class ErrorReporter {
public:
    virtual ~ErrorReporter() = default;
    virtual void Report(const QString& version, const QString& description, const QString& number,
                        const QString& source, const QString& location) = 0;
};

using ErrorReporterFactory = std::function<std::unique_ptr<ErrorReporter>()>;

} // namespace steplets
