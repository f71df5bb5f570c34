#pragma once
// The steps of a scenario's `script`: checked once when read, so that a malformed step is named
// before anything is played, then handed out one by one to whatever is waiting for the user.
#include "runtime/Value.h"
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <optional>
#include <vector>

namespace steplets {
class Form;
}

namespace steplets::scripted {

struct Step {
    enum class Kind { FormAction, MsgBox, Item, Picker, Wait };
    int number = 0;                  // from 1, as messages name it
    Kind kind = Kind::FormAction;
    QString action;                  // form actions: "click", "tick", ... ; else the kind's member
    QJsonObject json;

    QString form() const { return json.value(QStringLiteral("form")).toString(); }
    bool namesForm() const { return json.contains(QStringLiteral("form")); }
    // A form action that the window of that name may take (one that names no window fits any).
    bool isForForm(const QString& name) const { return kind == Kind::FormAction && (!namesForm() || form() == name); }
    // "step 4 (click cmdAdd on frmSteplet)".
    QString describe() const;
};

class Script {
public:
    Script() = default;
    // Reads and checks the steps; on a malformed one returns nothing and says in `error` which
    // step and which member are wrong.
    static std::optional<Script> fromJson(const QJsonValue& script, QString* error);

    bool atEnd() const { return m_next >= m_steps.size(); }
    const Step& peek() const { return m_steps[m_next]; }
    Step take() { return m_steps[m_next++]; }
    int remaining() const { return static_cast<int>(m_steps.size() - m_next); }
    int size() const { return static_cast<int>(m_steps.size()); }
    // Whether the next step is a form action for `active`, a window that is loaded and shown:
    // the steps a person does in the active window while the component yields.
    bool nextIsForActive(const Form* active) const;

private:
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
};

// A value of a scenario as the component's types have it: null is Null, whole numbers are
// 32-bit integers, "YYYY-MM-DDTHH:MM:SS[.mmm]" texts are dates, other texts stay texts.
Value valueFromJson(const QJsonValue& v);

} // namespace steplets::scripted
