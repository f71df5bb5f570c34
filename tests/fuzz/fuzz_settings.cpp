// A settings file of any bytes through the settings store: every value read as a number and as
// a text, and one write, which a file that was not read cleanly must refuse and leave as it is.
#include "backends/qsettings/IniSettings.h"
#include "platform/runtime/Failure.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace steplets;
    static QTemporaryDir dir;
    static IniSettings settings(dir.path());
    const QString root = QStringLiteral("\\HKEY_CURRENT_USER\\Software\\Fuzz\\Settings\\");
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString file = settings.fileFor(root);
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) std::abort();
    out.write(bytes);
    out.close();
    const bool clean = settingsFileProblem(bytes).isEmpty();
    try {
        auto key = settings.OpenKey(root, QStringLiteral("Steplets"));
        QSettings names(file, QSettings::IniFormat);
        names.beginGroup(QStringLiteral("Steplets"));
        for (const QString& name : names.childKeys()) {
            try {
                settings.ReadNumber(*key, name, 0);
            } catch (const Failure&) {
            }
            settings.ReadText(*key, name, QString());
        }
        settings.WriteNumber(*key, QStringLiteral("Fuzzed"), 1);
    } catch (const Failure&) {
    }
    QFile in(file);
    if (!clean && (!in.open(QIODevice::ReadOnly) || in.readAll() != bytes)) std::abort();
    return 0;
}
