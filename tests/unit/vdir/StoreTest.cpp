// The store: identifiers, folders, listing, and bad files that must neither crash nor be touched.
#include "VdirFixture.h"
#include <QFileInfo>
#include <QProcess>

using namespace steplets;
using namespace steplets::test;

namespace {

using Store = VdirFixture;

} // namespace

TEST_F(Store, UnknownIdentifiersAreClearFailuresAndAFolderListsItsItemsWhileItsCollectionIsThere)
{
    const std::pair<std::function<void()>, const char*> unknown[] = {
        {[&] { ns->GetItemFromID(QStringLiteral("nope"), QStringLiteral("store")); }, "\"nope\""},
        {[&] { ns->GetItemFromID(QStringLiteral("nope"), QStringLiteral("other")); }, "\"other\""},
        {[&] { ns->GetFolderFromID(QStringLiteral("calendar"), QStringLiteral("store")); }, "\"calendar\""},
        {[&] { ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("elsewhere")); }, "\"elsewhere\""},
        {[&] { ns->GetItemFromID(QStringLiteral("../tasks"), QStringLiteral("store")); }, "\"../tasks\""},
    };
    for (const auto& [act, named] : unknown) {
        const Failure f = failure(act);
        EXPECT_TRUE(f.description().contains(QLatin1String(named))) << f.description().toStdString();
    }
    EXPECT_EQ(failure(unknown[4].first).number(), vdir::fail::NotFound);

    auto folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    for (const char* s : {"one", "two"}) {
        auto t = folder->Items().Add();
        t->set(QStringLiteral("Subject"), Value(s));
        t->Save();
    }
    QStringList subjects;
    for (int i = 1; i <= folder->Items().Count(); ++i) subjects << folder->Items().Item(i)->Subject();
    subjects.sort();
    EXPECT_EQ(subjects, (QStringList{"one", "two"}));
    EXPECT_EQ(failure([&] { ol::asContact(folder->Items().Item(1)); }).number(), 13);
    EXPECT_EQ(QDir(tmp.file(QStringLiteral("tasks"))).entryList(QDir::Hidden | QDir::Files).size(), 2) << "no temporary file stays behind";
    QDir(tmp.file(QStringLiteral("tasks"))).removeRecursively();
    EXPECT_EQ(failure([&] { folder->Items().Add(); }).number(), vdir::fail::NotFound) << "a collection removed under an open folder";
}

// The failures themselves are pinned by golden/; here the folder passes the bad files over, and a
// name that is no regular file is never read (a card linked to a device would be read for ever).
TEST_F(Store, BadFilesAreSkippedAndLeftUntouched)
{
    auto good = newTask();
    good->set(QStringLiteral("Subject"), Value("Good"));
    good->Save();
    const QDir golden(QStringLiteral(STEPLETS_GOLDEN_DIR));
    const QStringList bad = golden.entryList({QStringLiteral("*-malformed-*.ics"), QStringLiteral("*-malformed-*.vcf")}, QDir::Files);
    ASSERT_GE(bad.size(), 8);
    for (const QString& name : bad)
        QFile::copy(golden.filePath(name), tmp.file((name.endsWith(QLatin1String(".ics")) ? "tasks/" : "contacts/") + name));

    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), tmp.file(QStringLiteral("contacts/zero.vcf"))));
    EXPECT_TRUE(failure([&] { ns->GetItemFromID(QStringLiteral("zero"), QStringLiteral("store")); }).description().contains(QStringLiteral("\"zero\"")));
    EXPECT_THROW(vdir::readWholeFile(tmp.file(QStringLiteral("contacts/zero.vcf"))), Failure);
    auto tasks = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    EXPECT_EQ(tasks->Items().Count(), 1);
    EXPECT_EQ(tasks->Items().Item(1)->Subject(), QStringLiteral("Good"));
    EXPECT_EQ(ns->GetFolderFromID(QStringLiteral("contacts"), QStringLiteral("store"))->Items().Count(), 0);
    for (const QString& name : bad) {
        const QString id = QFileInfo(name).completeBaseName();
        EXPECT_EQ(failure([&] { ns->GetItemFromID(id, QStringLiteral("store")); }).number(), vdir::fail::BadFile) << id.toStdString();
        EXPECT_EQ(fileText(tmp.file((name.endsWith(QLatin1String(".ics")) ? "tasks/" : "contacts/") + name)), fileText(golden.filePath(name)))
            << "the file is left as it was";
    }
    // Repaired on disk, a bad file is read again.
    const QString fixed = QFileInfo(bad.filter(QStringLiteral(".ics")).first()).completeBaseName();
    writeRaw(QStringLiteral("tasks/") + fixed + QStringLiteral(".ics"), "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VTODO\r\nUID:"
             + fixed.toUtf8() + "\r\nSUMMARY:Repaired now\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(ns->GetItemFromID(fixed, QStringLiteral("store"))->Subject(), QStringLiteral("Repaired now"));
}

TEST_F(Store, ItemFilesAreTheUsersAloneAndARewriteKeepsTheirMode)
{
    auto task = newTask();
    task->Save();
    const QString file = taskFile(task->EntryID());
    const auto user = QFileDevice::ReadUser | QFileDevice::WriteUser;
    EXPECT_EQ(QFileInfo(file).permissions() & ~user, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const auto mode = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    ASSERT_TRUE(QFile::setPermissions(file, mode));
    task->set(QStringLiteral("Subject"), Value("Rewritten"));
    task->Save();
    EXPECT_EQ(QFileInfo(file).permissions() & ~user, mode);
}

TEST_F(Store, OpeningAFolderSweepsTheTemporaryFilesOfWritersThatAreGone)
{
    QProcess gone;
    gone.start(QStringLiteral("true"), QStringList());
    ASSERT_TRUE(gone.waitForFinished(10000));
    const qint64 deadPid = gone.processId() ? gone.processId() : 999999;
    const QString left = QStringLiteral("tasks/.new-0001.ics.%1-0.tmp").arg(deadPid);
    const QString running = QStringLiteral("tasks/.new-0002.ics.1-0.tmp");        // pid 1 runs as long as the system
    writeRaw(left, "BEGIN:VCALENDAR\r\n");
    writeRaw(running, "BEGIN:VCALENDAR\r\n");
    writeRaw(QStringLiteral("tasks/.hidden-note.txt"), "not ours");
    ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    EXPECT_FALSE(QFile::exists(tmp.file(left)));
    EXPECT_TRUE(QFile::exists(tmp.file(running)));
    EXPECT_TRUE(QFile::exists(tmp.file(QStringLiteral("tasks/.hidden-note.txt"))));
}

