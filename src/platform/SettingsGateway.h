#pragma once
// The per-user settings store: text and number values under a key of a root path.
#include <QString>
#include <memory>

namespace steplets {

class SettingsKey {
public:
    virtual ~SettingsKey() = default;
    // Where the key's values lie, as a message names it (a file's path).
    virtual QString where() const = 0;
};

class SettingsGateway {
public:
    virtual ~SettingsGateway() = default;
    // Failures (an unreadable store, a value of the wrong kind) are Failures with a description
    // that names the store and the value.
    virtual std::shared_ptr<SettingsKey> OpenKey(const QString& rootPath, const QString& keyName) = 0;
    virtual long ReadNumber(SettingsKey& key, const QString& valueName, long defaultValue) = 0;
    virtual QString ReadText(SettingsKey& key, const QString& valueName, const QString& defaultValue) = 0;
    virtual void WriteNumber(SettingsKey& key, const QString& valueName, long value) = 0;
    virtual void WriteText(SettingsKey& key, const QString& valueName, const QString& value) = 0;
};

} // namespace steplets
