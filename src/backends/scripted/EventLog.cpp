#include "EventLog.h"
#include "controls/Form.h"

namespace steplets::scripted {

void EventLog::record(QJsonObject members)
{
    members.insert(QStringLiteral("at"), m_clock.stamp());
    m_events.append(members);
}

void EventLog::shown(const Form& form)
{
    record(QJsonObject{{QStringLiteral("show"), form.name()}, {QStringLiteral("caption"), form.Caption()}});
}

void EventLog::unloaded(const Form& form) { record(QStringLiteral("unload"), form.name()); }

void EventLog::messageBox(const MessageBoxRequest& box, const QString& answer)
{
    record(QStringLiteral("msgbox"), QJsonObject{{QStringLiteral("title"), box.title},
                                                 {QStringLiteral("text"), box.text},
                                                 {QStringLiteral("buttons"), MessageBoxRequest::buttonsName(box.buttons)},
                                                 {QStringLiteral("icon"), MessageBoxRequest::iconName(box.icon)},
                                                 {QStringLiteral("systemModal"), box.systemModal},
                                                 {QStringLiteral("answer"), answer}});
}

void EventLog::displayed(const ol::Item& item, const QString& kind)
{
    record(QStringLiteral("display"), QJsonObject{{QStringLiteral("EntryID"), item.EntryID()}, {QStringLiteral("kind"), kind}});
}

void EventLog::picker(const ContactPickerRequest& request)
{
    QJsonObject args;
    for (const auto& [name, value] : request.arguments) args.insert(name, value.toJson());
    args.insert(QStringLiteral("version"), request.version);
    // What the picker offered, so a scenario can check the list a person would have seen.
    QJsonArray offered;
    for (const ContactPickerRow& row : request.rows)
        offered.append(QJsonObject{{QStringLiteral("ContactID"), row.contactID}, {QStringLiteral("name"), row.name},
                                   {QStringLiteral("EntryID"), row.entryID}, {QStringLiteral("company"), row.company},
                                   {QStringLiteral("email"), row.email}, {QStringLiteral("hasCard"), row.hasCard}});
    args.insert(QStringLiteral("offered"), offered);
    record(QStringLiteral("picker"), args);
}

} // namespace steplets::scripted
