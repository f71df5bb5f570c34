#include "Playback.h"
#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace steplets::desktop {

std::unique_ptr<Playback> Playback::load(const QString& file, QString* problem)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("%1: cannot be read: %2").arg(file, in.errorString());
        return nullptr;
    }
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(in.readAll(), &error);
    if (!doc.isObject()) {
        *problem = QStringLiteral("%1: not a JSON object (%2)").arg(file, error.errorString());
        return nullptr;
    }
    QString why;
    auto script = scripted::Script::fromJson(doc.object().value(QStringLiteral("script")), &why);
    if (!script) {
        *problem = QStringLiteral("%1: %2").arg(file, why);
        return nullptr;
    }
    auto p = std::make_unique<Playback>();
    p->m_script = std::move(*script);
    p->m_clock = std::make_shared<scripted::VirtualClock>(QDateTime::currentDateTime());
    p->m_log = std::make_unique<scripted::EventLog>(*p->m_clock);
    return p;
}

void Playback::attach(qt::QtUiHost& host)
{
    m_driver = std::make_unique<qtplay::QtScriptDriver>(m_script, *m_clock, *m_log, host);
    host.setDriver(m_driver.get());
}

QString Playback::leftOver() const
{
    if (m_script.atEnd()) return {};
    return QStringLiteral("%1 cannot be done: the session ended before it").arg(m_script.peek().describe());
}

} // namespace steplets::desktop
