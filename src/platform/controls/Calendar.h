#pragma once
// The calendar: a date value that may be absent (Null), a notification when a date is chosen,
// and two numeric display properties that only affect its look.
#include "Control.h"
#include "runtime/Value.h"

namespace steplets {

class Calendar : public Control {
public:
    using Control::Control;
    Kind kind() const override { return Kind::Calendar; }

    // Null, or the chosen date.
    steplets::Value Value() const { return m_value; }
    // A date (or Null) that differs raises Click; other kinds of value are failure 13.
    void setValue(const steplets::Value& value);
    int DisplayProperty(int which) const { return which == 0 ? m_display[0] : m_display[1]; }
    void setDisplayProperty(int which, int value) { m_display[which == 0 ? 0 : 1] = value; changed(); }

    Event<> Click;

    // The user chooses a day: Click is raised even when it is the day already shown.
    void userPickDate(const Date& date);
    QJsonObject snapshot() const override;

private:
    steplets::Value m_value;
    int m_display[2] = {0, 0};
};

} // namespace steplets
