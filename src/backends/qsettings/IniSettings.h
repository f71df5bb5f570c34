#pragma once
// SettingsGateway on QSettings in INI format. The root path's last two names are the
// organization and the application; the key becomes a group of that per-user file. The file is
// the host's too: one that was not read cleanly is never written, and before the first write of
// a process it is copied to <file>.bak.
#include "platform/SettingsGateway.h"
#include <QString>

namespace steplets {

// What keeps a settings file from being read cleanly (binary data, UTF-16, a '#' line, a line
// without '='), in words for the user; empty when nothing does. Comments (';') are read, and not
// kept by a write.
QString settingsFileProblem(const QByteArray& content);

class IniSettings : public SettingsGateway {
public:
    // configDir: where the per-user files lie (the user's configuration directory by default).
    explicit IniSettings(QString configDir = {});

    std::shared_ptr<SettingsKey> OpenKey(const QString& rootPath, const QString& keyName) override;
    long ReadNumber(SettingsKey& key, const QString& valueName, long defaultValue) override;
    QString ReadText(SettingsKey& key, const QString& valueName, const QString& defaultValue) override;
    void WriteNumber(SettingsKey& key, const QString& valueName, long value) override;
    void WriteText(SettingsKey& key, const QString& valueName, const QString& value) override;

    // The file that holds the values of a root path.
    QString fileFor(const QString& rootPath) const;

private:
    QString m_configDir;
};

} // namespace steplets
