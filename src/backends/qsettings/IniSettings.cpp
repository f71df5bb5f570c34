#include "IniSettings.h"
#include "platform/PrivateFiles.h"
#include "platform/runtime/Failure.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QStringList>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace steplets {

namespace {
// Failures of the settings store carry the number the run-time gives an unreadable value.
constexpr long kSettingsFailure = 13;
constexpr long kFileFailure = 75;

QString source() { return QStringLiteral("Settings"); }

QString shown(const QString& file) { return QDir::toNativeSeparators(file); }

Failure cannotWrite(const QString& file)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(file).absolutePath());
    const bool readOnly = ::access(folder.constData(), W_OK) != 0 && errno == EROFS;
    return Failure(kFileFailure,
                   readOnly ? QStringLiteral("The settings file %1 cannot be written: it lies on a read-only file system.").arg(shown(file))
                            : QStringLiteral("The settings file %1 cannot be written.").arg(shown(file)),
                   source());
}

Failure notValid(const QString& file, const QString& problem, bool writing)
{
    const QString what = problem.isEmpty() ? QStringLiteral("it is not in the settings file format") : problem;
    return Failure(kSettingsFailure,
                   writing ? QStringLiteral("The settings file %1 is not a valid settings file (%2), so nothing was written to "
                                            "it; correct or remove it.").arg(shown(file), what)
                           : QStringLiteral("The settings file %1 is not a valid settings file (%2); it is left as it is.")
                                 .arg(shown(file), what),
                   source());
}

// The text of a value as the file holds it: an unquoted comma makes the INI reader split it.
QString textOf(const QVariant& v)
{
    return v.typeId() == QMetaType::QStringList ? v.toStringList().join(QStringLiteral(", ")) : v.toString();
}

// Files this process has already copied to their .bak.
QSet<QString>& backedUp()
{
    static QSet<QString> files;
    return files;
}

class IniKey : public SettingsKey {
public:
    IniKey(const QString& file, const QString& group)
        : settings(file, QSettings::IniFormat), group(group), file(file) {}
    QSettings settings;
    QString group;
    QString file;

    QString where() const override { return shown(file); }
    QString path(const QString& valueName) const { return group + QLatin1Char('/') + valueName; }
    void checkStatus() const
    {
        if (settings.status() == QSettings::AccessError)
            throw Failure(kFileFailure, QStringLiteral("The settings file %1 cannot be read or written.").arg(shown(file)), source());
        if (settings.status() == QSettings::FormatError)
            throw notValid(file, settingsFileProblem(bytes()), false);
    }
    QByteArray bytes() const
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // A file that was not read cleanly is never written: a write would drop what the reader
    // passed over. Before the first write of the process the file is kept as <file>.bak.
    void prepareWrite()
    {
        settings.allKeys();                           // the reader runs only on first use
        const QByteArray now = bytes();
        const QString problem = settingsFileProblem(now);
        if (!problem.isEmpty() || settings.status() == QSettings::FormatError) throw notValid(file, problem, true);
        if (settings.status() == QSettings::AccessError) throw cannotWrite(file);
        if (!QFileInfo::exists(file)) {
            // The reader would make it with the process's umask; it is the user's alone.
            if (!files::makePrivatePath(QFileInfo(file).absolutePath())) throw cannotWrite(file);
            const int fd = ::open(QFile::encodeName(file).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            if (fd < 0) throw cannotWrite(file);
            ::close(fd);
        } else if (!backedUp().contains(file)) {
            if (!files::writeDurably(file + QStringLiteral(".bak"), now).isEmpty()) throw cannotWrite(file + QStringLiteral(".bak"));
        }
        backedUp().insert(file);
    }
    void finishWrite()
    {
        settings.sync();
        if (settings.status() != QSettings::NoError) throw cannotWrite(file);
    }
};

IniKey& ini(SettingsKey& key) { return dynamic_cast<IniKey&>(key); }
} // namespace

QString settingsFileProblem(const QByteArray& content)
{
    if (content.startsWith("\xff\xfe") || content.startsWith("\xfe\xff"))
        return QStringLiteral("it is saved as UTF-16 text, where UTF-8 belongs");
    QByteArray text = content;
    if (text.startsWith("\xef\xbb\xbf")) text.remove(0, 3);
    const QList<QByteArray> lines = text.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QByteArray line = lines[i];
        if (line.endsWith('\r')) line.chop(1);
        const QString number = QString::number(i + 1);
        for (const char c : line)
            if ((static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f)
                return QStringLiteral("line %1 holds binary data").arg(number);
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = utf8(line);
        if (utf8.hasError()) return QStringLiteral("line %1 is not UTF-8 text").arg(number);
        const QString trimmed = decoded.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char(';'))) continue;
        if (trimmed.startsWith(QLatin1Char('#')))
            return QStringLiteral("line %1 starts with '#', which is no comment in this file; comments start with ';'").arg(number);
        if (trimmed.startsWith(QLatin1Char('['))) {
            if (!trimmed.endsWith(QLatin1Char(']'))) return QStringLiteral("line %1 opens a section without closing it").arg(number);
            continue;
        }
        if (!trimmed.contains(QLatin1Char('=')))
            return QStringLiteral("line %1 (\"%2\") has no '=' between a name and a value").arg(number, trimmed.left(40));
    }
    return {};
}

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
        throw Failure(kFileFailure, QStringLiteral("The settings file %1 cannot be read or written.").arg(shown(file)), source());
    auto key = std::make_shared<IniKey>(file, keyName);
    const QString problem = settingsFileProblem(key->bytes());
    if (!problem.isEmpty()) throw notValid(file, problem, false);
    key->settings.allKeys();                          // the reader runs only on first use
    key->checkStatus();
    return key;
}

long IniSettings::ReadNumber(SettingsKey& key, const QString& valueName, long defaultValue)
{
    IniKey& k = ini(key);
    const QVariant v = k.settings.value(k.path(valueName));
    k.checkStatus();
    if (!v.isValid()) return defaultValue;
    const QString text = textOf(v);
    bool ok = false;
    const qlonglong n = QLocale::c().toLongLong(text.trimmed(), &ok);
    if (!ok)
        throw Failure(kSettingsFailure,
                      QStringLiteral("The setting \"%1\" in %2 holds \"%3\" where a number belongs.").arg(valueName, k.where(), text),
                      source());
    // The store keeps 32-bit numbers.
    if (n < INT_MIN || n > INT_MAX)
        throw Failure(6,
                      QStringLiteral("The setting \"%1\" in %2 holds %3, which is outside the range of a number setting "
                                     "(-2147483648 to 2147483647).").arg(valueName, k.where(), text.trimmed()),
                      source());
    return static_cast<long>(n);
}

QString IniSettings::ReadText(SettingsKey& key, const QString& valueName, const QString& defaultValue)
{
    IniKey& k = ini(key);
    const QVariant v = k.settings.value(k.path(valueName));
    k.checkStatus();
    if (!v.isValid()) return defaultValue;
    // A hand-edited file may hold an unquoted comma, which the INI reader splits into a list.
    return textOf(v);
}

void IniSettings::WriteNumber(SettingsKey& key, const QString& valueName, long value)
{
    IniKey& k = ini(key);
    k.prepareWrite();
    k.settings.setValue(k.path(valueName), static_cast<qlonglong>(value));
    k.finishWrite();
}

void IniSettings::WriteText(SettingsKey& key, const QString& valueName, const QString& value)
{
    IniKey& k = ini(key);
    k.prepareWrite();
    k.settings.setValue(k.path(valueName), value);
    k.finishWrite();
}

} // namespace steplets
