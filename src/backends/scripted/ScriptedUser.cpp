#include "ScriptedUser.h"
#include "controls/Controls.h"

namespace steplets::scripted {

namespace {

template <class T>
T& as(Control& c, Control::Kind kind, const char* what) {
    if (c.kind() != kind)
        throw UserActionRefused(QStringLiteral("%1 is not %2").arg(c.key(), QLatin1String(what)));
    return static_cast<T&>(c);
}

// The row a step names by its text ("item") or its position ("row").
template <class List>
int rowOf(const List& list, const Step& step) {
    if (step.json.contains(QStringLiteral("row"))) return step.json.value(QStringLiteral("row")).toInt();
    const QString text = step.json.value(QStringLiteral("item")).toString();
    for (int i = 0; i < list.ListCount(); ++i)
        if (list.List(i) == text) return i;
    throw UserActionRefused(QStringLiteral("%1 has no row \"%2\"").arg(list.key(), text));
}

Control& controlOf(Form& form, const Step& step) {
    const QString name = step.json.value(step.action).toString();
    Control* c = form.control(name);
    if (!c) throw UserActionRefused(QStringLiteral("%1 has no control %2").arg(form.name(), name));
    return *c;
}

} // namespace

std::optional<QJsonObject> ScriptedUser::perform(Form& form, const Step& step) {
    const QString& a = step.action;
    const QJsonObject& j = step.json;
    if (a == QLatin1String("snapshot")) return form.snapshot();
    if (a == QLatin1String("close")) { form.userClose(); return std::nullopt; }

    Control& c = controlOf(form, step);
    if (a == QLatin1String("click")) {
        c.userClick();
    } else if (a == QLatin1String("focus")) {
        c.userFocus();
    } else if (a == QLatin1String("key")) {
        const int shift = (j.value(QStringLiteral("shift")).toBool() ? 1 : 0) | (j.value(QStringLiteral("ctrl")).toBool() ? 2 : 0)
                        | (j.value(QStringLiteral("alt")).toBool() ? 4 : 0);
        c.userKey(j.value(QStringLiteral("keyCode")).toInt(), shift);
    } else if (a == QLatin1String("tick")) {
        auto& list = as<ListBox>(c, Control::Kind::ListBox, "a list box");
        list.userTick(rowOf(list, step), j.value(QStringLiteral("checked")).toBool());
    } else if (a == QLatin1String("select")) {
        const bool selected = j.value(QStringLiteral("selected")).toBool(true);
        if (c.kind() == Control::Kind::ComboBox) {
            auto& combo = static_cast<ComboBox&>(c);
            if (!selected) throw UserActionRefused(QStringLiteral("cannot deselect a row of the combo box %1").arg(c.key()));
            combo.userSelect(rowOf(combo, step));
        } else {
            auto& list = as<ListBox>(c, Control::Kind::ListBox, "a list or combo box");
            list.userSelect(rowOf(list, step), selected);
        }
    } else if (a == QLatin1String("type")) {
        as<TextBox>(c, Control::Kind::TextBox, "a text box").userType(j.value(QStringLiteral("text")).toString());
    } else if (a == QLatin1String("tab")) {
        as<TabStrip>(c, Control::Kind::TabStrip, "a tab strip").userSelectTab(j.value(QStringLiteral("index")).toInt());
    } else if (a == QLatin1String("date")) {
        const auto d = Date::fromIso(j.value(QStringLiteral("value")).toString());
        as<Calendar>(c, Control::Kind::Calendar, "a calendar").userPickDate(*d);
    } else if (a == QLatin1String("dblclick")) {
        as<Grid>(c, Control::Kind::Grid, "a grid").userDblClick(j.value(QStringLiteral("row")).toInt());
    } else if (a == QLatin1String("toolclick")) {
        as<ToolBar>(c, Control::Kind::ToolBar, "a tool bar").userToolClick(j.value(QStringLiteral("tool")).toString());
    }
    return std::nullopt;
}

} // namespace steplets::scripted
