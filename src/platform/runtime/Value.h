#pragma once
// A field or property value that may be Null, with the conversions of the run-time. The strict
// conversions fail on Null (94 "Invalid use of Null"), on text that is no number (13) and on
// range (6); the reader conversions test Null first and give 0 / False / "" / the zero date.
#include "Date.h"
#include "Failure.h"
#include "Int16.h"
#include <QJsonValue>
#include <QString>
#include <variant>

namespace steplets {

class Value {
public:
    enum class Type { Null, Bool, Int16, Int32, Double, Text, Date };

    Value() = default;                                // Null
    Value(bool b) : m_v(b) {}
    Value(Bool16 b) : m_v(static_cast<bool>(b)) {}
    Value(Int16 i) : m_v(i) {}
    Value(int i) : m_v(static_cast<qint32>(i)) {}
    Value(qint64 i);                                  // kept as 32-bit: outside its range is failure 6
    Value(double d) : m_v(d) {}
    Value(const QString& s) : m_v(s) {}
    Value(const char* s) : m_v(QString::fromUtf8(s)) {}
    Value(const Date& d) : m_v(d) {}
    static Value null() { return Value(); }

    Type type() const { return static_cast<Type>(m_v.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isNumeric() const;                           // Bool, Int16, Int32, Double

    // Strict conversions (CStr, CLng, CInt, CDbl, CBool, CDate).
    QString toText() const;                           // a date through DateFormats "General Date"
    qint32 toLong() const;                            // rounds half to even
    Int16 toInt16() const;
    double toDouble() const;
    bool toBool() const;                              // numbers: not 0; text "True"/"False" or a number
    Date toDate() const;                              // numbers are serials; text in ISO form

    // Reader conversions: Null first.
    QString textOrEmpty() const { return isNull() ? QString() : toText(); }
    qint32 longOrZero() const { return isNull() ? 0 : toLong(); }
    Int16 int16OrZero() const { return isNull() ? Int16() : toInt16(); }
    double doubleOrZero() const { return isNull() ? 0.0 : toDouble(); }
    bool boolOrFalse() const { return isNull() ? false : toBool(); }
    Date dateOrZero() const { return isNull() ? Date() : toDate(); }

    // Same type and same content (Null equals Null); no conversion.
    friend bool operator==(const Value& a, const Value& b);

    // A readable form for messages and transcripts: "Null", a number, quoted text, an ISO date.
    QString debugText() const;
    // As JSON: null, true/false, a number, a text, a date as "YYYY-MM-DDTHH:MM:SS".
    QJsonValue toJson() const;

private:
    std::variant<std::monostate, bool, Int16, qint32, double, QString, Date> m_v;
};

// Round half to even, as the run-time does when a fraction meets a whole-number type.
double roundHalfEven(double v);

} // namespace steplets
