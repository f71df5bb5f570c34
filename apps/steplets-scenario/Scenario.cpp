#include "Scenario.h"
#include "ScenarioBase.h"
#include "Matcher.h"
#include <QJsonDocument>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QSet>
#include <cmath>
#include <variant>

namespace steplets::scenario {

namespace {

// Thrown inside the reader only; parseScenario turns it into its one line of error.
struct Malformed {
    QString message;
};

[[noreturn]] void malformed(const QString& path, const QString& what)
{
    throw Malformed{path + QStringLiteral(": ") + what};
}

QString quotedName(const QString& name) { return QLatin1Char('"') + name + QLatin1Char('"'); }

QJsonObject requireObject(const QJsonValue& v, const QString& path)
{
    if (!v.isObject()) malformed(path, QStringLiteral("expected an object"));
    return v.toObject();
}

QJsonArray requireArray(const QJsonValue& v, const QString& path)
{
    if (!v.isArray()) malformed(path, QStringLiteral("expected a list"));
    return v.toArray();
}

QString requireText(const QJsonValue& v, const QString& path)
{
    if (!v.isString()) malformed(path, QStringLiteral("expected a text"));
    return v.toString();
}

qint32 requireLong(const QJsonValue& v, const QString& path)
{
    const double d = v.toDouble();
    if (!v.isDouble() || std::floor(d) != d || d < -2147483648.0 || d > 2147483647.0)
        malformed(path, QStringLiteral("expected a whole number from -2147483648 to 2147483647"));
    return static_cast<qint32>(d);
}

bool requireBool(const QJsonValue& v, const QString& path)
{
    if (!v.isBool()) malformed(path, QStringLiteral("expected true or false"));
    return v.toBool();
}

void onlyMembers(const QJsonObject& o, const QStringList& allowed, const QString& path)
{
    for (auto it = o.begin(); it != o.end(); ++it)
        if (!allowed.contains(it.key()))
            malformed(path.isEmpty() ? it.key() : path + QLatin1Char('.') + it.key(),
                      QStringLiteral("unknown member; expected one of ") + allowed.join(QStringLiteral(", ")));
}

// The host's arguments by name: each a text, a 32-bit number, a boolean, or the one variant.
using HostField = std::variant<QString HostArguments::*, qint32 HostArguments::*, bool HostArguments::*,
                               Value HostArguments::*>;

const QList<QPair<QString, HostField>>& hostFields()
{
    static const QList<QPair<QString, HostField>> fields = {
        {QStringLiteral("sContactFolderEID"), &HostArguments::sContactFolderEID},
        {QStringLiteral("sContactFolderSID"), &HostArguments::sContactFolderSID},
        {QStringLiteral("sUserEID"), &HostArguments::sUserEID},
        {QStringLiteral("sUserFldrSID"), &HostArguments::sUserFldrSID},
        {QStringLiteral("sUserName"), &HostArguments::sUserName},
        {QStringLiteral("sContactName"), &HostArguments::sContactName},
        {QStringLiteral("sContactID"), &HostArguments::sContactID},
        {QStringLiteral("bSelectContactByAcct"), &HostArguments::bSelectContactByAcct},
        {QStringLiteral("sProvider"), &HostArguments::sProvider},
        {QStringLiteral("lTimeCardID"), &HostArguments::lTimeCardID},
        {QStringLiteral("bManageContacts"), &HostArguments::bManageContacts},
        {QStringLiteral("sContactTerm"), &HostArguments::sContactTerm},
        {QStringLiteral("sMainActivityTerm"), &HostArguments::sMainActivityTerm},
        {QStringLiteral("sSubActivityTerm"), &HostArguments::sSubActivityTerm},
        {QStringLiteral("sDesc"), &HostArguments::sDesc},
        {QStringLiteral("sEntryType"), &HostArguments::sEntryType},
        {QStringLiteral("sCategory"), &HostArguments::sCategory},
        {QStringLiteral("sMainActivity"), &HostArguments::sMainActivity},
        {QStringLiteral("sSubActivity"), &HostArguments::sSubActivity},
        {QStringLiteral("sJobOrderTerm"), &HostArguments::sJobOrderTerm},
        {QStringLiteral("sJobOrder"), &HostArguments::sJobOrder},
        {QStringLiteral("sTaskFolderEID"), &HostArguments::sTaskFolderEID},
        {QStringLiteral("sTaskFolderSID"), &HostArguments::sTaskFolderSID},
    };
    return fields;
}

// The variant argument takes any plain value, null included, so that a scenario can make the
// copying of the arguments fail.
Value variantFromJson(const QJsonValue& v, const QString& path)
{
    switch (v.type()) {
    case QJsonValue::Null: return Value();
    case QJsonValue::Bool: return Value(v.toBool());
    case QJsonValue::String: return Value(v.toString());
    case QJsonValue::Double: {
        const double d = v.toDouble();
        if (std::floor(d) == d && std::fabs(d) <= 2147483647.0) return Value(static_cast<int>(d));
        return Value(d);
    }
    default: malformed(path, QStringLiteral("expected a text, a number, true, false or null"));
    }
}

HostArguments readHost(const QJsonValue& value)
{
    HostArguments host = defaultHostArguments();
    const QJsonObject o = requireObject(value, QStringLiteral("host"));
    for (auto it = o.begin(); it != o.end(); ++it) {
        const QString path = QStringLiteral("host.") + it.key();
        const auto field = std::find_if(hostFields().begin(), hostFields().end(),
                                        [&](const auto& f) { return f.first == it.key(); });
        if (field == hostFields().end()) {
            if (it.key() == QLatin1String("olApp") || it.key() == QLatin1String("olNS"))
                malformed(path, QStringLiteral("is given by the player, not by the scenario"));
            malformed(path, QStringLiteral("unknown argument of OpenSteplets"));
        }
        std::visit([&](auto member) {
            using T = std::remove_reference_t<decltype(host.*member)>;
            if constexpr (std::is_same_v<T, QString>) host.*member = requireText(it.value(), path);
            else if constexpr (std::is_same_v<T, qint32>) host.*member = requireLong(it.value(), path);
            else if constexpr (std::is_same_v<T, bool>) host.*member = requireBool(it.value(), path);
            else host.*member = variantFromJson(it.value(), path);
        }, field->second);
    }
    return host;
}

Date readNow(const QJsonValue& v)
{
    static const QRegularExpression form(QStringLiteral(R"(^\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}$)"));
    const QString text = v.isString() ? v.toString() : QString();
    const auto d = form.match(text).hasMatch() ? Date::fromIso(text) : std::nullopt;
    if (!d) malformed(QStringLiteral("now"), QStringLiteral("expected a local time \"YYYY-MM-DDTHH:MM:SS\""));
    return *d;
}

// The structured members a task may carry beside its plain properties.
void checkTaskStructure(const QJsonObject& item, const QString& path)
{
    if (item.contains(QStringLiteral("Links"))) {
        const QJsonArray links = requireArray(item.value(QStringLiteral("Links")), path + QStringLiteral(".Links"));
        for (int i = 0; i < links.size(); ++i) requireText(links[i], QStringLiteral("%1.Links[%2]").arg(path).arg(i));
    }
    if (item.contains(QStringLiteral("RecurrencePattern")))
        requireObject(item.value(QStringLiteral("RecurrencePattern")), path + QStringLiteral(".RecurrencePattern"));
    if (item.contains(QStringLiteral("UserProperties"))) {
        const QJsonArray props = requireArray(item.value(QStringLiteral("UserProperties")), path + QStringLiteral(".UserProperties"));
        for (int i = 0; i < props.size(); ++i) {
            const QString p = QStringLiteral("%1.UserProperties[%2]").arg(path).arg(i);
            const QJsonObject prop = requireObject(props[i], p);
            onlyMembers(prop, {QStringLiteral("name"), QStringLiteral("type"), QStringLiteral("value"), QStringLiteral("inFolderFields")}, p);
            requireText(prop.value(QStringLiteral("name")), p + QStringLiteral(".name"));
            if (prop.contains(QStringLiteral("type"))) requireLong(prop.value(QStringLiteral("type")), p + QStringLiteral(".type"));
            if (prop.contains(QStringLiteral("inFolderFields"))) requireBool(prop.value(QStringLiteral("inFolderFields")), p + QStringLiteral(".inFolderFields"));
        }
    }
}

// Items of one kind: objects of property name to a plain value, each with a distinct EntryID.
QList<QJsonObject> readItems(const QJsonValue& v, const QString& path, const QString& idPrefix,
                             const QStringList& structured = {})
{
    QList<QJsonObject> items;
    QSet<QString> ids;
    const QJsonArray list = requireArray(v, path);
    for (int i = 0; i < list.size(); ++i) {
        const QString itemPath = QStringLiteral("%1[%2]").arg(path).arg(i);
        QJsonObject item = requireObject(list[i], itemPath);
        for (auto it = item.begin(); it != item.end(); ++it)
            if ((it.value().isArray() || it.value().isObject()) && !structured.contains(it.key()))
                malformed(itemPath + QLatin1Char('.') + it.key(), QStringLiteral("expected a text, a number, true, false or null"));
        checkTaskStructure(item, itemPath);
        if (!item.contains(QStringLiteral("EntryID"))) item.insert(QStringLiteral("EntryID"), QStringLiteral("%1%2").arg(idPrefix).arg(i + 1));
        const QString id = requireText(item.value(QStringLiteral("EntryID")), itemPath + QStringLiteral(".EntryID"));
        if (id.isEmpty() || id.contains(QLatin1Char('/')) || id.startsWith(QLatin1Char('.')))
            malformed(itemPath + QStringLiteral(".EntryID"), QStringLiteral("expected a name usable as a file name"));
        if (ids.contains(id)) malformed(itemPath + QStringLiteral(".EntryID"), QStringLiteral("\"%1\" is given twice").arg(id));
        ids.insert(id);
        items << item;
    }
    return items;
}

OutlookSetup readOutlook(const QJsonValue& v)
{
    OutlookSetup out;
    const QJsonObject o = requireObject(v, QStringLiteral("outlook"));
    onlyMembers(o, {QStringLiteral("version"), QStringLiteral("storeID"), QStringLiteral("contacts"), QStringLiteral("tasks"),
                    QStringLiteral("taskFolderGoneAfter")},
                QStringLiteral("outlook"));
    if (o.contains(QStringLiteral("version"))) out.version = requireText(o.value(QStringLiteral("version")), QStringLiteral("outlook.version"));
    if (o.contains(QStringLiteral("storeID"))) out.storeID = requireText(o.value(QStringLiteral("storeID")), QStringLiteral("outlook.storeID"));
    if (o.contains(QStringLiteral("contacts"))) out.contacts = readItems(o.value(QStringLiteral("contacts")), QStringLiteral("outlook.contacts"), QStringLiteral("contact-"));
    if (o.contains(QStringLiteral("tasks"))) out.tasks = readItems(o.value(QStringLiteral("tasks")), QStringLiteral("outlook.tasks"), QStringLiteral("task-"),
                                                                {QStringLiteral("Links"), QStringLiteral("UserProperties"), QStringLiteral("RecurrencePattern")});
    if (o.contains(QStringLiteral("taskFolderGoneAfter"))) {
        const qint32 n = requireLong(o.value(QStringLiteral("taskFolderGoneAfter")), QStringLiteral("outlook.taskFolderGoneAfter"));
        if (n < 0) malformed(QStringLiteral("outlook.taskFolderGoneAfter"), QStringLiteral("expected a count, not negative"));
        out.taskFolderGoneAfter = n;
    }
    return out;
}

QList<QPair<QString, QJsonValue>> readSettings(const QJsonValue& v)
{
    QList<QPair<QString, QJsonValue>> values;
    if (v.isNull()) return values;
    const QJsonObject o = requireObject(v, QStringLiteral("settings"));
    for (auto it = o.begin(); it != o.end(); ++it) {
        const QString path = QStringLiteral("settings.") + it.key();
        if (it.key().isEmpty() || it.key().contains(QLatin1Char('/')) || it.key().contains(QLatin1Char('\\')))
            malformed(path, QStringLiteral("a value name cannot be empty or hold / or \\"));
        const double d = it.value().toDouble();
        const bool wholeNumber = it.value().isDouble() && std::floor(d) == d && std::fabs(d) <= 2147483647.0;
        if (!wholeNumber && !it.value().isString())
            malformed(path, QStringLiteral("expected a whole number or a text"));
        values.append({it.key(), it.value()});
    }
    return values;
}

void readStore(const QJsonValue& v, Scenario& s)
{
    const QJsonObject o = requireObject(v, QStringLiteral("store"));
    onlyMembers(o, {QStringLiteral("local"), QStringLiteral("link"), QStringLiteral("missing")}, QStringLiteral("store"));
    for (const QString& db : {QStringLiteral("local"), QStringLiteral("link")}) {
        if (!o.contains(db)) continue;
        const QString dbPath = QStringLiteral("store.") + db;
        const QJsonObject tables = requireObject(o.value(db), dbPath);
        for (auto t = tables.begin(); t != tables.end(); ++t) {
            const QJsonArray rows = requireArray(t.value(), dbPath + QLatin1Char('.') + t.key());
            for (int i = 0; i < rows.size(); ++i) {
                const QString rowPath = QStringLiteral("%1.%2[%3]").arg(dbPath, t.key()).arg(i);
                const QJsonObject row = requireObject(rows[i], rowPath);
                for (auto c = row.begin(); c != row.end(); ++c)
                    if (c.value().isArray() || c.value().isObject())
                        malformed(rowPath + QLatin1Char('.') + c.key(), QStringLiteral("expected a text, a number, true, false or null"));
            }
        }
        s.storeRows.insert(db, tables);
    }
    if (!o.contains(QStringLiteral("missing"))) return;
    const QJsonArray missing = requireArray(o.value(QStringLiteral("missing")), QStringLiteral("store.missing"));
    for (int i = 0; i < missing.size(); ++i) {
        const QString name = missing[i].toString();
        const QString path = QStringLiteral("store.missing[%1]").arg(i);
        if (name == QLatin1String("local")) s.missingLocal = true;
        else if (name == QLatin1String("link")) s.missingLink = true;
        else malformed(path, QStringLiteral("expected \"local\" or \"link\""));
        if (s.storeRows.contains(name)) malformed(path, QStringLiteral("the database \"%1\" is left out but has rows").arg(name));
    }
}

// The step members the player knows, so that a misspelt action is named as such rather than
// as a step without an action.
void checkStepMembers(const QJsonArray& script)
{
    static const QSet<QString> known = {
        QStringLiteral("form"), QStringLiteral("click"), QStringLiteral("tick"), QStringLiteral("select"),
        QStringLiteral("type"), QStringLiteral("focus"), QStringLiteral("key"), QStringLiteral("tab"),
        QStringLiteral("date"), QStringLiteral("dblclick"), QStringLiteral("toolclick"), QStringLiteral("close"),
        QStringLiteral("snapshot"), QStringLiteral("item"), QStringLiteral("checked"), QStringLiteral("row"),
        QStringLiteral("selected"), QStringLiteral("text"), QStringLiteral("keyCode"), QStringLiteral("shift"),
        QStringLiteral("ctrl"), QStringLiteral("alt"), QStringLiteral("index"), QStringLiteral("value"),
        QStringLiteral("tool"), QStringLiteral("msgbox"), QStringLiteral("title"), QStringLiteral("picker"),
        QStringLiteral("wait")};
    for (int i = 0; i < script.size(); ++i) {
        const QString path = QStringLiteral("script: step %1").arg(i + 1);
        const QJsonObject step = requireObject(script[i], path);
        for (auto it = step.begin(); it != step.end(); ++it)
            if (!known.contains(it.key())) malformed(path, QStringLiteral("unknown step kind %1").arg(quotedName(it.key())));
    }
}

} // namespace

Date defaultNow() { return Date::fromParts(2026, 3, 16, 15, 30, 0); }

HostArguments defaultHostArguments()
{
    HostArguments a;
    a.sUserName = QStringLiteral("Test User");
    a.sContactFolderEID = QStringLiteral("contacts");
    a.sContactFolderSID = QStringLiteral("store");
    a.sUserFldrSID = Value(QStringLiteral("store"));
    a.sTaskFolderEID = QStringLiteral("tasks");
    a.sTaskFolderSID = QStringLiteral("store");
    return a;
}

std::optional<Scenario> parseScenario(const QByteArray& content, QString* error, const QString& folder)
{
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(content, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (error) *error = QStringLiteral("not valid JSON at character %1: %2").arg(parseError.offset).arg(parseError.errorString());
        return std::nullopt;
    }
    try {
        if (!doc.isObject()) malformed(QStringLiteral("(file)"), QStringLiteral("expected a JSON object"));
        QString baseError;
        const auto based = withBase(doc.object(), folder, &baseError);
        if (!based) throw Malformed{baseError};
        const QJsonObject& root = *based;
        onlyMembers(root, {QStringLiteral("now"), QStringLiteral("host"), QStringLiteral("outlook"), QStringLiteral("settings"),
                           QStringLiteral("settingsUnwritableAfter"), QStringLiteral("store"), QStringLiteral("script"),
                           QStringLiteral("expect")},
                    {});
        Scenario s;
        s.now = root.contains(QStringLiteral("now")) ? readNow(root.value(QStringLiteral("now"))) : defaultNow();
        s.host = root.contains(QStringLiteral("host")) ? readHost(root.value(QStringLiteral("host"))) : defaultHostArguments();
        if (root.contains(QStringLiteral("outlook"))) s.outlook = readOutlook(root.value(QStringLiteral("outlook")));
        if (root.contains(QStringLiteral("settings"))) s.settings = readSettings(root.value(QStringLiteral("settings")));
        if (root.contains(QStringLiteral("settingsUnwritableAfter"))) {
            const qint32 n = requireLong(root.value(QStringLiteral("settingsUnwritableAfter")), QStringLiteral("settingsUnwritableAfter"));
            if (n < 0) malformed(QStringLiteral("settingsUnwritableAfter"), QStringLiteral("expected a count, not negative"));
            s.settingsUnwritableAfter = n;
        }
        if (root.contains(QStringLiteral("store"))) readStore(root.value(QStringLiteral("store")), s);
        if (!root.contains(QStringLiteral("script"))) malformed(QStringLiteral("script"), QStringLiteral("is missing (a list of steps, possibly empty)"));
        const QJsonArray steps = requireArray(root.value(QStringLiteral("script")), QStringLiteral("script"));
        checkStepMembers(steps);
        QString stepError;
        auto script = scripted::Script::fromJson(steps, &stepError);
        if (!script) throw Malformed{QStringLiteral("script: ") + stepError};
        s.script = std::move(*script);
        if (root.contains(QStringLiteral("expect"))) {
            s.expect = root.value(QStringLiteral("expect"));
            const QString wrong = checkPattern(*s.expect, QStringLiteral("expect"));
            if (!wrong.isEmpty()) throw Malformed{wrong};
        }
        return s;
    } catch (const Malformed& m) {
        if (error) *error = m.message;
        return std::nullopt;
    }
}

} // namespace steplets::scenario
