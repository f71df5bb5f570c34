#pragma once
// Records every failure a routine's handler hands on, reported or not, while keeping the trail
// where the caller says (the session's, or its own).
#include "platform/Guard.h"
#include <functional>
#include <vector>

namespace steplets::test {

class RecordingSink : public FailureSink {
public:
    struct Entry { long number; QString description; QString source; QString location; };

    explicit RecordingSink(std::function<QString&()> trail = {});
    ~RecordingSink() override;                      // puts the previous sink back

    void enterTrail(const QString& literal) override;
    QString trail() const override;
    void report(const Failure& f, const QString& location) override;

    std::vector<Entry> failures;

private:
    std::function<QString&()> m_trail;
    QString m_ownTrail;
    FailureSink* m_previous;
};

} // namespace steplets::test
