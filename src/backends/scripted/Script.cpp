#include "Script.h"
#include "controls/Form.h"
#include <QRegularExpression>
#include <QSet>
#include <cmath>

namespace steplets::scripted {

namespace {

const QStringList kFormActions = {
    QStringLiteral("click"), QStringLiteral("tick"), QStringLiteral("select"), QStringLiteral("type"),
    QStringLiteral("focus"), QStringLiteral("key"), QStringLiteral("tab"), QStringLiteral("date"),
    QStringLiteral("dblclick"), QStringLiteral("toolclick"), QStringLiteral("close"), QStringLiteral("snapshot")};

enum class Type { Text, Int, Bool, True, Number, Object, DateText };

constexpr double kLongestWaitSeconds = 100 * 365.25 * 86400;

// Checks one step member by member; the first wrong member ends the check.
class StepChecker {
public:
    StepChecker(const QJsonObject& step, int number) : m_step(step), m_number(number) {}

    bool require(const QString& member, Type type) {
        if (!m_step.contains(member)) return fail(QStringLiteral("member \"%1\" is missing").arg(member));
        return check(member, type);
    }
    bool optional(const QString& member, Type type) {
        return !m_step.contains(member) || check(member, type);
    }
    // Exactly one of two members, for rows named by text or by position.
    bool rowOrItem() {
        const bool hasItem = m_step.contains(QStringLiteral("item"));
        const bool hasRow = m_step.contains(QStringLiteral("row"));
        if (hasItem == hasRow) return fail(QStringLiteral("exactly one of the members \"item\" and \"row\" must be given"));
        return hasItem ? check(QStringLiteral("item"), Type::Text) : check(QStringLiteral("row"), Type::Int);
    }
    bool onlyMembers(const QStringList& allowed) {
        for (auto it = m_step.begin(); it != m_step.end(); ++it)
            if (!allowed.contains(it.key())) return fail(QStringLiteral("member \"%1\" does not belong in this step").arg(it.key()));
        return true;
    }
    bool fail(const QString& why) {
        if (m_error.isEmpty()) m_error = QStringLiteral("step %1: %2").arg(m_number).arg(why);
        return false;
    }
    const QString& error() const { return m_error; }

private:
    bool check(const QString& member, Type type) {
        const QJsonValue v = m_step.value(member);
        bool ok = false;
        QString expected;
        switch (type) {
        case Type::Text: ok = v.isString(); expected = QStringLiteral("a text"); break;
        case Type::Int:
            ok = v.isDouble() && std::floor(v.toDouble()) == v.toDouble() && std::fabs(v.toDouble()) <= 2147483647.0;
            expected = QStringLiteral("a whole number");
            break;
        case Type::Bool: ok = v.isBool(); expected = QStringLiteral("true or false"); break;
        case Type::True: ok = v.isBool() && v.toBool(); expected = QStringLiteral("true"); break;
        case Type::Number:
            // The virtual clock counts milliseconds; a wait beyond a century is no duration it can pass.
            ok = v.isDouble() && v.toDouble() >= 0 && v.toDouble() <= kLongestWaitSeconds;
            expected = QStringLiteral("a number of seconds from 0 to %1").arg(kLongestWaitSeconds, 0, 'f', 0);
            break;
        case Type::Object: ok = v.isObject(); expected = QStringLiteral("an object"); break;
        case Type::DateText:
            ok = v.isString() && QDate::fromString(v.toString(), QStringLiteral("yyyy-MM-dd")).isValid();
            expected = QStringLiteral("a date \"YYYY-MM-DD\"");
            break;
        }
        return ok || fail(QStringLiteral("member \"%1\" must be %2").arg(member, expected));
    }

    const QJsonObject& m_step;
    int m_number;
    QString m_error;
};

bool checkFormAction(StepChecker& c, const QString& action) {
    const QString form = QStringLiteral("form");
    if (!c.optional(form, Type::Text)) return false;
    if (action == QLatin1String("click") || action == QLatin1String("focus"))
        return c.require(action, Type::Text) && c.onlyMembers({form, action});
    if (action == QLatin1String("tick"))
        return c.require(action, Type::Text) && c.rowOrItem() && c.require(QStringLiteral("checked"), Type::Bool)
            && c.onlyMembers({form, action, QStringLiteral("item"), QStringLiteral("row"), QStringLiteral("checked")});
    if (action == QLatin1String("select"))
        return c.require(action, Type::Text) && c.rowOrItem() && c.optional(QStringLiteral("selected"), Type::Bool)
            && c.onlyMembers({form, action, QStringLiteral("item"), QStringLiteral("row"), QStringLiteral("selected")});
    if (action == QLatin1String("type"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("text"), Type::Text)
            && c.onlyMembers({form, action, QStringLiteral("text")});
    if (action == QLatin1String("key"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("keyCode"), Type::Int)
            && c.optional(QStringLiteral("shift"), Type::Bool) && c.optional(QStringLiteral("ctrl"), Type::Bool)
            && c.optional(QStringLiteral("alt"), Type::Bool)
            && c.onlyMembers({form, action, QStringLiteral("keyCode"), QStringLiteral("shift"), QStringLiteral("ctrl"), QStringLiteral("alt")});
    if (action == QLatin1String("tab"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("index"), Type::Int)
            && c.onlyMembers({form, action, QStringLiteral("index")});
    if (action == QLatin1String("date"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("value"), Type::DateText)
            && c.onlyMembers({form, action, QStringLiteral("value")});
    if (action == QLatin1String("dblclick"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("row"), Type::Int)
            && c.onlyMembers({form, action, QStringLiteral("row")});
    if (action == QLatin1String("toolclick"))
        return c.require(action, Type::Text) && c.require(QStringLiteral("tool"), Type::Text)
            && c.onlyMembers({form, action, QStringLiteral("tool")});
    // close and snapshot act on the window itself, which must be named.
    return c.require(form, Type::Text) && c.require(action, Type::True) && c.onlyMembers({form, action});
}

bool checkMsgBox(StepChecker& c, const QJsonObject& step) {
    if (!c.require(QStringLiteral("msgbox"), Type::Text)) return false;
    static const QStringList answers = {QStringLiteral("OK"), QStringLiteral("Cancel"), QStringLiteral("Yes"), QStringLiteral("No")};
    if (!answers.contains(step.value(QStringLiteral("msgbox")).toString()))
        return c.fail(QStringLiteral("member \"msgbox\" must be one of \"OK\", \"Cancel\", \"Yes\", \"No\""));
    return c.optional(QStringLiteral("title"), Type::Text) && c.optional(QStringLiteral("text"), Type::Text)
        && c.onlyMembers({QStringLiteral("msgbox"), QStringLiteral("title"), QStringLiteral("text")});
}

bool checkItem(StepChecker& c, const QJsonObject& step) {
    if (!c.onlyMembers({QStringLiteral("item")})) return false;
    const QJsonObject item = step.value(QStringLiteral("item")).toObject();
    for (auto it = item.begin(); it != item.end(); ++it) {
        const QString k = it.key();
        if (k == QLatin1String("set") || k == QLatin1String("recurrence")) {
            if (!it.value().isObject()) return c.fail(QStringLiteral("member \"item.%1\" must be an object").arg(k));
        } else if (k == QLatin1String("close")) {
            static const QStringList closes = {QStringLiteral("save"), QStringLiteral("discard"), QStringLiteral("send")};
            if (!closes.contains(it.value().toString()))
                return c.fail(QStringLiteral("member \"item.close\" must be one of \"save\", \"discard\", \"send\""));
        } else {
            return c.fail(QStringLiteral("member \"item.%1\" does not belong in an item step").arg(k));
        }
    }
    return true;
}

bool checkPicker(StepChecker& c, const QJsonObject& step) {
    if (!c.onlyMembers({QStringLiteral("picker")})) return false;
    const QJsonValue p = step.value(QStringLiteral("picker"));
    if (p.isString() && p.toString() == QLatin1String("cancel")) return true;
    if (!p.isObject()) return c.fail(QStringLiteral("member \"picker\" must be \"cancel\" or an object"));
    const QJsonObject o = p.toObject();
    const QJsonValue id = o.value(QStringLiteral("ContactID"));
    if (!id.isDouble() || std::floor(id.toDouble()) != id.toDouble() || std::fabs(id.toDouble()) > 2147483647.0)
        return c.fail(QStringLiteral("member \"picker.ContactID\" must be a whole number"));
    if (!o.value(QStringLiteral("name")).isString()) return c.fail(QStringLiteral("member \"picker.name\" must be a text"));
    if (!o.value(QStringLiteral("EntryID")).isString()) return c.fail(QStringLiteral("member \"picker.EntryID\" must be a text"));
    return true;
}

} // namespace

bool Script::nextIsForActive(const Form* active) const {
    return !atEnd() && active && peek().isForForm(active->name()) && active->isLoaded() && active->Visible();
}

QString Step::describe() const {
    QString what;
    switch (kind) {
    case Kind::FormAction: {
        const QJsonValue target = json.value(action);
        what = action;
        if (target.isString()) what += QLatin1Char(' ') + target.toString();
        if (namesForm()) what += QStringLiteral(" on ") + form();
        break;
    }
    case Kind::MsgBox: what = QStringLiteral("answer a message box with ") + json.value(QStringLiteral("msgbox")).toString(); break;
    case Kind::Item: what = QStringLiteral("act in an item window"); break;
    case Kind::Picker: what = QStringLiteral("answer the contact picker"); break;
    case Kind::Wait: what = QStringLiteral("wait %1 s").arg(json.value(QStringLiteral("wait")).toDouble()); break;
    }
    return QStringLiteral("step %1 (%2)").arg(number).arg(what);
}

std::optional<Script> Script::fromJson(const QJsonValue& script, QString* error) {
    auto failWith = [&](const QString& why) { if (error) *error = why; return std::optional<Script>(); };
    if (!script.isArray()) return failWith(QStringLiteral("member \"script\" must be a list of steps"));
    Script out;
    int number = 0;
    for (const QJsonValue& v : script.toArray()) {
        ++number;
        if (!v.isObject()) return failWith(QStringLiteral("step %1: a step must be an object").arg(number));
        const QJsonObject o = v.toObject();
        Step step{number, Step::Kind::FormAction, {}, o};
        StepChecker c(o, number);
        QStringList actions;
        for (const QString& a : kFormActions)
            if (o.contains(a)) actions << a;
        bool ok = false;
        if (actions.size() > 1) {
            ok = c.fail(QStringLiteral("members \"%1\" cannot stand in one step").arg(actions.join(QStringLiteral("\", \""))));
        } else if (actions.size() == 1) {
            step.action = actions.front();
            ok = checkFormAction(c, step.action);
        } else if (o.contains(QStringLiteral("msgbox"))) {
            step.kind = Step::Kind::MsgBox; step.action = QStringLiteral("msgbox"); ok = checkMsgBox(c, o);
        } else if (o.value(QStringLiteral("item")).isObject()) {
            step.kind = Step::Kind::Item; step.action = QStringLiteral("item"); ok = checkItem(c, o);
        } else if (o.contains(QStringLiteral("picker"))) {
            step.kind = Step::Kind::Picker; step.action = QStringLiteral("picker"); ok = checkPicker(c, o);
        } else if (o.contains(QStringLiteral("wait"))) {
            step.kind = Step::Kind::Wait; step.action = QStringLiteral("wait");
            ok = c.require(QStringLiteral("wait"), Type::Number) && c.onlyMembers({QStringLiteral("wait")});
        } else {
            ok = c.fail(QStringLiteral("no action member (one of click, tick, select, type, focus, key, tab, date, "
                                       "dblclick, toolclick, close, snapshot, msgbox, item, picker, wait)"));
        }
        if (!ok) return failWith(c.error());
        out.m_steps.push_back(step);
    }
    return out;
}

Value valueFromJson(const QJsonValue& v) {
    static const QRegularExpression iso(QStringLiteral(R"(^\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}(\.\d{3})?$)"));
    switch (v.type()) {
    case QJsonValue::Bool: return Value(v.toBool());
    case QJsonValue::Double: {
        const double d = v.toDouble();
        if (std::floor(d) == d && d >= -2147483648.0 && d <= 2147483647.0) return Value(static_cast<int>(d));
        return Value(d);
    }
    case QJsonValue::String: {
        const QString s = v.toString();
        if (iso.match(s).hasMatch())
            if (auto d = Date::fromIso(s)) return Value(*d);
        return Value(s);
    }
    default: return Value();
    }
}


} // namespace steplets::scripted
