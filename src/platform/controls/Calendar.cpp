#include "Calendar.h"
#include "Form.h"
#include "runtime/Failure.h"

namespace steplets {

void Calendar::setValue(const steplets::Value& value) {
    if (!value.isNull() && value.type() != steplets::Value::Type::Date) throw Failure::typeMismatch();
    if (value == m_value) return;
    m_value = value;
    changed();
    Click();
}

void Calendar::userPickDate(const Date& date) {
    requireReachable("pick a date on");
    form().moveFocus(this);
    const steplets::Value v(date);
    if (v == m_value) { Click(); return; }
    setValue(v);
}

QJsonObject Calendar::snapshot() const {
    QJsonObject o = Control::snapshot();
    o[QStringLiteral("value")] = m_value.isNull() ? QJsonValue() : QJsonValue(m_value.toDate().toIso());
    return o;
}

} // namespace steplets
