#pragma once
// A real vdir in a temporary directory with a task and a contact collection.
#include "Failures.h"
#include "TempDir.h"
#include "backends/vdir/VdirFiles.h"
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace steplets::test {

// No one at the screen: the modal display of items is played by the scenarios' item steps.
class NoDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem&, bool) override {}
    void displayContact(ol::ContactItem&, bool) override {}
};

class VdirFixture : public ::testing::Test {
protected:
    VdirFixture()
    {
        QDir().mkpath(tmp.file(QStringLiteral("tasks")));
        QDir().mkpath(tmp.file(QStringLiteral("contacts")));
        open();
    }
    void open(const QString& version = {})
    {
        vdir::VdirConfig config;
        config.root = tmp.path();
        if (!version.isEmpty())
            config.version = version;
        config.clock = [] { return Date::fromParts(2024, 3, 14, 15, 30); };
        app = vdir::openVdirStore(config, display);
        ns = app->GetNamespace(QStringLiteral("MAPI"));
    }
    std::shared_ptr<ol::TaskItem> newTask()
    {
        return ns->GetFolderFromID(QStringLiteral("tasks"), QStringLiteral("store"))->Items().Add();
    }
    std::shared_ptr<ol::TaskItem> reload(const QString& entryId)
    {
        open();                               // a fresh store: nothing cached
        return ol::asTask(ns->GetItemFromID(entryId, QStringLiteral("store")));
    }
    QString taskFile(const QString& entryId) const { return tmp.file(QStringLiteral("tasks/") + entryId + QStringLiteral(".ics")); }
    QByteArray fileText(const QString& path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void writeRaw(const QString& relative, const QByteArray& bytes) const
    {
        QFile f(tmp.file(relative));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }

    TempDir tmp;
    std::shared_ptr<NoDisplay> display = std::make_shared<NoDisplay>();
    std::shared_ptr<ol::Application> app;
    std::shared_ptr<ol::NameSpace> ns;
};

} // namespace steplets::test
