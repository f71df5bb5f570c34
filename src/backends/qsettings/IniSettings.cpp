#include "IniSettings.h"
#include "platform/runtime/Failure.h"
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace steplets {

namespace {
// Failures of the settings store carry the number the run-time gives an unreadable value.
constexpr long kSettingsFailure = 13;

class IniKey : public SettingsKey {
public:
    IniKey(const QString& file, const QString& group)
        : settings(file, QSettings::IniFormat), group(group), file(file) {}
    QSettings settings;
    QString group;
    QString file;

    QString path(const QString& valueName) const { return group + QLatin1Char('/') + valueName; }
    void checkStatus() const
    {
        if (settings.status() == QSettings::AccessError)
            throw Failure(75, QStringLiteral("The settings file %1 cannot be read or written").arg(file), QStringLiteral("Settings"));
        if (settings.status() == QSettings::FormatError)
            throw Failure(kSettingsFailure, QStringLiteral("The settings file %1 is not a valid settings file").arg(file), QStringLiteral("Settings"));
    }
};

IniKey& ini(SettingsKey& key) { return dynamic_cast<IniKey&>(key); }
} // namespace

IniSettings::IniSettings(QString configDir) : m_configDir(std::move(configDir))
{
    if (m_configDir.isEmpty()) m_configDir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QString IniSettings::fileFor(const QString& rootPath) const
{
    QStringList parts = rootPath.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    const QString app = parts.size() >= 1 ? parts.takeLast() : QStringLiteral("Steplets");
    const QString org = parts.size() >= 1 ? parts.takeLast() : QString();
    return QDir(m_configDir).filePath(org.isEmpty() ? app + QStringLiteral(".ini") : org + QLatin1Char('/') + app + QStringLiteral(".ini"));
}

std::shared_ptr<SettingsKey> IniSettings::OpenKey(const QString& rootPath, const QString& keyName)
{
    const QString file = fileFor(rootPath);
    const QFileInfo info(file);
    if (info.exists() && !info.isFile())
        throw Failure(75, QStringLiteral("The settings file %1 cannot be read or written").arg(file), QStringLiteral("Settings"));
    auto key = std::make_shared<IniKey>(file, keyName);
    key->checkStatus();
    return key;
}

long IniSettings::ReadNumber(SettingsKey& key, const QString& valueName, long defaultValue)
{
    IniKey& k = ini(key);
    k.checkStatus();
    const QVariant v = k.settings.value(k.path(valueName));
    if (!v.isValid()) return defaultValue;
    bool ok = false;
    const long n = QLocale::c().toLong(v.toString().trimmed(), &ok);
    if (!ok)
        throw Failure(kSettingsFailure,
                      QStringLiteral("The setting \"%1\" in %2 holds \"%3\" where a number belongs").arg(valueName, k.file, v.toString()),
                      QStringLiteral("Settings"));
    return n;
}

QString IniSettings::ReadText(SettingsKey& key, const QString& valueName, const QString& defaultValue)
{
    IniKey& k = ini(key);
    k.checkStatus();
    const QVariant v = k.settings.value(k.path(valueName));
    if (!v.isValid()) return defaultValue;
    // A hand-edited file may hold an unquoted comma, which the INI reader splits into a list.
    if (v.typeId() == QMetaType::QStringList) return v.toStringList().join(QStringLiteral(", "));
    return v.toString();
}

void IniSettings::WriteNumber(SettingsKey& key, const QString& valueName, long value)
{
    IniKey& k = ini(key);
    k.settings.setValue(k.path(valueName), static_cast<qlonglong>(value));
    k.settings.sync();
    k.checkStatus();
}

void IniSettings::WriteText(SettingsKey& key, const QString& valueName, const QString& value)
{
    IniKey& k = ini(key);
    k.settings.setValue(k.path(valueName), value);
    k.settings.sync();
    k.checkStatus();
}

} // namespace steplets
