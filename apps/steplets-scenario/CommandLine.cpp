#include "CommandLine.h"
#include "Player.h"
#include "platform/PrivateFiles.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTemporaryDir>

namespace steplets::scenario {

namespace {

const char* const kUsage =
    "Usage: steplets-scenario FILE.json [--out TRANSCRIPT.json] [--keep DIR] [--host scripted|qt]\n"
    "Plays a scenario of a Steplets session with a scripted user on a virtual clock, over real\n"
    "databases, a vdir and a settings file in a fresh temporary directory.\n"
    "\n"
    "  --out FILE   write the transcript to FILE instead of standard output\n"
    "  --keep DIR   play in DIR (created if missing) and leave the stores there\n"
    "  --host H     scripted (default): the windows' models alone; qt: the Qt Widgets\n"
    "               windows, each step done as real input on them\n"
    "  --help       show this text\n"
    "  --version    show the version\n"
    "\n"
    "Exit status: 0 played and every expectation held; 1 an expectation failed;\n"
    "2 the scenario could not be played; 3 the component failed (a defect).\n";

constexpr qint64 kLargestScenarioBytes = 64 << 20;

struct Options {
    QString file;
    QString out;
    QString keep;
    Host host = Host::Scripted;
};

// The arguments, or a usage problem in *problem.
std::optional<Options> parseArguments(const QStringList& args, QString* problem)
{
    Options o;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        if (a == QLatin1String("--out") || a == QLatin1String("--keep")) {
            if (i + 1 >= args.size()) { *problem = QStringLiteral("%1 needs a value").arg(a); return std::nullopt; }
            (a == QLatin1String("--out") ? o.out : o.keep) = args[++i];
        } else if (a == QLatin1String("--host")) {
            const QString h = i + 1 < args.size() ? args[++i] : QString();
            if (h != QLatin1String("scripted") && h != QLatin1String("qt")) {
                *problem = QStringLiteral("--host takes scripted or qt");
                return std::nullopt;
            }
            o.host = h == QLatin1String("qt") ? Host::Qt : Host::Scripted;
        } else if (a.startsWith(QLatin1Char('-')) && a != QLatin1String("-")) {
            *problem = QStringLiteral("unknown option '%1'").arg(a);
            return std::nullopt;
        } else if (o.file.isEmpty()) {
            o.file = a;
        } else {
            *problem = QStringLiteral("only one scenario file may be given ('%1' is extra)").arg(a);
            return std::nullopt;
        }
    }
    if (o.file.isEmpty()) { *problem = QStringLiteral("no scenario file given"); return std::nullopt; }
    return o;
}

bool writeTranscript(const QJsonObject& t, const Options& o, QTextStream& out, QString* problem)
{
    const QByteArray json = QJsonDocument(t).toJson(QJsonDocument::Indented);
    if (o.out.isEmpty()) {
        out << QString::fromUtf8(json);
        out.flush();
        return true;
    }
    QSaveFile f(o.out);
    if (!f.open(QIODevice::WriteOnly) || f.write(json) != json.size() || !f.commit()) {
        *problem = QStringLiteral("%1: cannot write the transcript: %2").arg(o.out, f.errorString());
        return false;
    }
    return true;
}

} // namespace

bool wantsQtHost(const QStringList& args)
{
    const int i = args.indexOf(QStringLiteral("--host"));
    return i >= 0 && i + 1 < args.size() && args[i + 1] == QLatin1String("qt");
}

int runCommand(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.contains(QStringLiteral("--help"))) { out << kUsage; return Passed; }
    if (args.contains(QStringLiteral("--version"))) { out << "steplets-scenario " << STEPLETS_VERSION_TEXT << "\n"; return Passed; }
    QString problem;
    const auto options = parseArguments(args, &problem);
    if (!options) {
        err << "steplets-scenario: " << problem << "\n" << "Try 'steplets-scenario --help'.\n";
        return CannotPlay;
    }
    const QString& file = options->file;
    // 1. Read and check the whole file before anything is made.
    // A scenario is a few hundred kilobytes; a device or a runaway file is not read into memory.
    QFile in(file);
    if (QFileInfo(file).exists() && !QFileInfo(file).isFile()) {
        err << file << ": cannot be read: it is not a regular file\n";
        return CannotPlay;
    }
    if (!in.open(QIODevice::ReadOnly)) {
        err << file << ": cannot be read: " << in.errorString() << "\n";
        return CannotPlay;
    }
    const QByteArray content = in.read(kLargestScenarioBytes + 1);
    if (content.size() > kLargestScenarioBytes) {
        err << file << ": cannot be read: it is larger than " << (kLargestScenarioBytes >> 20) << " MB\n";
        return CannotPlay;
    }
    const auto scenario = parseScenario(content, &problem, QFileInfo(file).absolutePath());
    if (!scenario) {
        err << file << ": " << problem << "\n";
        return CannotPlay;
    }
    // 2. The directory to play in.
    QTemporaryDir temporary;
    QString dir = options->keep;
    if (dir.isEmpty()) {
        if (!temporary.isValid()) { err << file << ": cannot make a temporary directory\n"; return CannotPlay; }
        dir = temporary.path();
    } else if (!files::makePrivatePath(dir)) {
        err << file << ": --keep " << dir << ": cannot make the directory\n";
        return CannotPlay;
    }
    // 3. Play, then write what happened.
    const PlayResult result = play(*scenario, dir, options->host);
    if (result.transcript && !writeTranscript(*result.transcript, *options, out, &problem)) {
        err << file << ": " << problem << "\n";
        return result.exit == Passed ? CannotPlay : result.exit;
    }
    if (!result.problem.isEmpty()) err << file << ": " << result.problem << "\n";
    err.flush();
    return result.exit;
}

} // namespace steplets::scenario
