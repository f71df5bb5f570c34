// The store: identifiers, folders, listing, and bad files that must neither crash nor be touched.
#include "VdirFixture.h"
#include <QFileInfo>
#include <QProcess>

using namespace steplets;
using namespace steplets::test;

namespace {

using Store = VdirFixture;

} // namespace

TEST_F(Store, UnknownIdentifiersAreClearFailures)
{
    const Failure unknown = failure([&] { ns->GetItemFromID(QStringLiteral("nope"), QStringLiteral("store")); });
    EXPECT_EQ(unknown.number(), vdir::fail::NotFound);
    EXPECT_TRUE(unknown.description().contains(QStringLiteral("\"nope\"")));
    auto task = newTask();
    task->Save();
    const Failure wrongStore = failure([&] { ns->GetItemFromID(task->EntryID(), QStringLiteral("other")); });
    EXPECT_TRUE(wrongStore.description().contains(QStringLiteral("\"other\"")));
    EXPECT_TRUE(failure([&] { ns->GetFolderFromID(QStringLiteral("calendar"), QStringLiteral("store")); })
                    .description().contains(QStringLiteral("\"calendar\"")));
    EXPECT_TRUE(failure([&] { ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("elsewhere")); })
                    .description().contains(QStringLiteral("\"elsewhere\"")));
    EXPECT_EQ(failure([&] { ns->GetItemFromID(QStringLiteral("../tasks"), QStringLiteral("store")); }).number(), vdir::fail::NotFound);
    EXPECT_EQ(failure([&] { ol::asContact(ns->GetItemFromID(task->EntryID(), QStringLiteral("store"))); }).number(), 13);
}

TEST_F(Store, FolderKnowsItsIdentityAndListsItsItems)
{
    auto folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    EXPECT_EQ(folder->EntryID(), QStringLiteral("tasks"));
    EXPECT_EQ(folder->StoreID(), QStringLiteral("store"));
    for (const char* s : {"one", "two", "three"}) {
        auto t = folder->Items().Add();
        t->set(QStringLiteral("Subject"), Value(s));
        t->Save();
    }
    EXPECT_EQ(folder->Items().Count(), 3);
    QStringList subjects;
    for (int i = 1; i <= folder->Items().Count(); ++i)
        subjects << folder->Items().Item(i)->Subject();
    subjects.sort();
    EXPECT_EQ(subjects, (QStringList{"one", "three", "two"}));
    EXPECT_TRUE(QDir(tmp.file(QStringLiteral("tasks"))).entryList(QDir::Hidden | QDir::Files).filter(QStringLiteral(".tmp")).isEmpty())
        << "no temporary file stays behind";
}

// The failures themselves are pinned by golden/; here the folder passes the bad files over.
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
}

TEST_F(Store, AFileRepairedOnDiskIsReadAgain)
{
    writeRaw(QStringLiteral("tasks/fixme.ics"), "BEGIN:VCALENDAR\r\n");
    EXPECT_EQ(failure([&] { ns->GetItemFromID(QStringLiteral("fixme"), QStringLiteral("store")); }).number(), vdir::fail::BadFile);
    writeRaw(QStringLiteral("tasks/fixme.ics"),
             "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VTODO\r\nUID:fixme\r\nSUMMARY:Repaired now\r\n"
             "END:VTODO\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(ns->GetItemFromID(QStringLiteral("fixme"), QStringLiteral("store"))->Subject(), QStringLiteral("Repaired now"));
}

TEST_F(Store, ACollectionRemovedUnderAnOpenFolderRefusesNewTasks)
{
    auto folder = ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"));
    QDir(tmp.file(QStringLiteral("tasks"))).removeRecursively();
    EXPECT_EQ(failure([&] { folder->Items().Add(); }).number(), vdir::fail::NotFound);
}

TEST_F(Store, ItemFilesAreTheUsersAloneAndARewriteKeepsTheirMode)
{
    auto task = newTask();
    task->set(QStringLiteral("Subject"), Value("Private"));
    task->Save();
    const QString file = taskFile(task->EntryID());
    EXPECT_EQ(QFileInfo(file).permissions(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser | QFileDevice::WriteUser);
    for (const QFileDevice::Permissions mode : {QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup,
                                                QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther}) {
        ASSERT_TRUE(QFile::setPermissions(file, mode));
        task->set(QStringLiteral("Subject"), Value("Rewritten"));
        task->Save();
        EXPECT_EQ(QFileInfo(file).permissions() & ~(QFileDevice::ReadUser | QFileDevice::WriteUser), mode);
    }
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

// A card linked to a device would be read for ever (6 GB before the player was stopped).
TEST_F(Store, AnItemNameThatIsNoRegularFileIsNeverRead)
{
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), tmp.file(QStringLiteral("contacts/zero.vcf"))));
    EXPECT_EQ(ns->GetFolderFromID(QStringLiteral("contacts"), QStringLiteral("store"))->Items().Count(), 0);
    const Failure f = failure([&] { ns->GetItemFromID(QStringLiteral("zero"), QStringLiteral("store")); });
    EXPECT_TRUE(f.description().contains(QStringLiteral("\"zero\""))) << f.description().toStdString();
    EXPECT_THROW(vdir::readWholeFile(tmp.file(QStringLiteral("contacts/zero.vcf"))), Failure);
}
