#pragma once
// The one failure type: what the run-time, a port or a backend raises, and what a
// routine's handler reports. Number, description and source are taken as they stand.
#include <QString>
#include <exception>

namespace steplets {

class Failure : public std::exception {
public:
    Failure(long number, QString description, QString source = defaultSource());

    long number() const { return m_number; }
    const QString& description() const { return m_description; }
    const QString& source() const { return m_source; }
    const char* what() const noexcept override { return m_what.constData(); }

    // The source the run-time gives its own failures: the name of the component's type library.
    static QString defaultSource() { return QStringLiteral("OVSteplet"); }

    // The run-time failures the system relies on.
    static Failure invalidCall(const QString& detail = {});   // 5
    static Failure overflow();                                 // 6
    static Failure subscript();                                // 9
    static Failure typeMismatch();                             // 13
    static Failure invalidUseOfNull();                         // 94
    static Failure objectNotSet();                             // 91
    // ... and those of the window controls.
    static Failure noSuchElement(int index);                   // 340, of a control array
    static Failure objectUnloaded();                           // 364
    static Failure invalidPropertyValue();                     // 380
    static Failure invalidPropertyIndex();                     // 381
    static Failure textReadOnly();                             // 383
    static Failure alreadyShownModally();                      // 400
    static Failure indexOutOfBounds();                         // 35600

private:
    long m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

// An object reference that must be set before use: an unset one is failure 91, as it is for
// the run-time, instead of a crash.
template <class P>
auto& must(const P& pointer)
{
    if (!pointer) throw Failure::objectNotSet();
    return *pointer;
}

} // namespace steplets
