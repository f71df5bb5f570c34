// Every .ics and .vcf under golden/ is read through a real vdir and its mapped fields compared
// with the NAME.expected beside it, one "Name=value" a line, or the failure the reader gives.
// Each item read is also saved and read again, and must read the same: the writer keeps what
// the reader maps, and the X- lines of other clients stay as they were. STEPLETS_GOLDEN_UPDATE=1 rewrites the expected files, so a mapping change
// shows as a diff.
#include "VdirFixture.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/TaskProperties.h"
#include "platform/SafeTaskItem.h"
#include <QFileInfo>

using namespace steplets;
using namespace steplets::test;

namespace {

QString shown(const Value& v) { return v.debugText().replace(QLatin1Char('\n'), QStringLiteral("\\n")); }

QStringList renderTask(const std::shared_ptr<ol::TaskItem>& item)
{
    ol::TaskItem& task = *item;
    QStringList out;
    for (const QString& name : vdir::taskPropertyNames()) out << name + QLatin1Char('=') + shown(task.get(name));
    SafeTaskItem safe;
    safe.setItem(item);
    out << QStringLiteral("Body=") + shown(Value(safe.Body()));
    if (task.get(QStringLiteral("IsRecurring")).toBool()) {
        auto pattern = task.GetRecurrencePattern();
        for (const QString& name : vdir::patternPropertyNames())
            out << QStringLiteral("Pattern.") + name + QLatin1Char('=') + shown(pattern->get(name));
    }
    for (int i = 1; i <= task.Links().Count(); ++i)
        out << QStringLiteral("Link(%1)=%2 -> %3").arg(i).arg(task.Links().Item(i)->Name(), task.Links().Item(i)->EntryID());
    for (int i = 1; i <= task.UserProperties().Count(); ++i) {
        auto p = task.UserProperties().Item(i);
        out << QStringLiteral("UserProperty(%1)=%2 type %3: %4").arg(i).arg(p->Name()).arg(p->Type()).arg(shown(p->Value()));
    }
    return out;
}

// Only the properties the card gives (or computes): the other eighty read empty.
QStringList renderContact(ol::ContactItem& contact)
{
    QStringList out;
    for (const QString& name : vdir::contactFillInProperties()) {
        const Value v = contact.get(name);
        if (!v.textOrEmpty().isEmpty()) out << name + QLatin1Char('=') + shown(v);
    }
    return out;
}

class Golden : public VdirFixture {
protected:
    QString renderItem(const QString& id, bool isTask)
    {
        auto item = ns->GetItemFromID(id, QStringLiteral("store"));
        const QStringList lines = isTask ? renderTask(ol::asTask(item)) : renderContact(*ol::asContact(item));
        return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    QString render(const QString& input)
    {
        const bool isTask = input.endsWith(QLatin1String(".ics"));
        const QString id = QFileInfo(input).completeBaseName();
        const QString copy = tmp.file((isTask ? QStringLiteral("tasks/") : QStringLiteral("contacts/")) + QFileInfo(input).fileName());
        QFile::copy(input, copy);
        try {
            const QString rendered = renderItem(id, isTask);
            // What was read is written back by a save and reads the same.
            auto item = ns->GetItemFromID(id, QStringLiteral("store"));
            const QString touched = isTask ? QStringLiteral("Subject") : QStringLiteral("NickName");
            item->set(touched, item->get(touched));
            item->Save();
            const QByteArray saved = fileText(copy);
            for (const QByteArray& line : fileText(input).split('\n')) {
                if (line.startsWith("X-") && !line.startsWith("X-STEPLETS-")) {
                    EXPECT_TRUE(saved.contains(line)) << "another client's line is kept: " << line.constData();
                }
            }
            open();
            EXPECT_EQ(renderItem(id, isTask).toStdString(), rendered.toStdString()) << "after a save";
            return rendered;
        } catch (const Failure& f) {
            return QStringLiteral("Failure=%1 %2\n").arg(f.number()).arg(QString(f.description()).replace(tmp.path(), QStringLiteral("<vdir>")));
        }
    }
};

TEST_F(Golden, EachInputMapsToItsExpectedFields)
{
    const QDir golden(QStringLiteral(STEPLETS_GOLDEN_DIR));
    const QStringList inputs = golden.entryList({QStringLiteral("*.ics"), QStringLiteral("*.vcf")}, QDir::Files, QDir::Name);
    ASSERT_GE(inputs.size(), 15) << golden.path().toStdString();
    const bool update = qEnvironmentVariableIntValue("STEPLETS_GOLDEN_UPDATE") == 1;
    for (const QString& name : inputs) {
        SCOPED_TRACE(name.toStdString());
        const QString actual = render(golden.filePath(name));
        QFile expected(golden.filePath(name + QStringLiteral(".expected")));
        if (update) {
            ASSERT_TRUE(expected.open(QIODevice::WriteOnly));
            expected.write(actual.toUtf8());
            continue;
        }
        ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << "no " << expected.fileName().toStdString();
        EXPECT_EQ(actual.toStdString(), QString::fromUtf8(expected.readAll()).toStdString());
    }
}

} // namespace
