#pragma once
// Real stores for a session: a fresh pair of SQLCipher databases, a vdir with a task and a
// contact collection (the demo contacts in it), the session pointing at both folders, a
// recording failure sink on the session's trail and a clock that stands where the test puts it.
// Only for executables that link the sqlcipher and vdir backends.
#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "session/SessionContext.h"
#include <QDir>
#include <gtest/gtest.h>

namespace steplets::test {

class StoreFixture : public ::testing::Test {
protected:
    explicit StoreFixture(std::shared_ptr<ol::ItemDisplay> display)
    {
        QDir().mkpath(vdirRoot() + QStringLiteral("/tasks"));
        vdir::writeDemoContacts(vdirRoot() + QStringLiteral("/contacts"));
        vdir::VdirConfig config;
        config.root = vdirRoot();
        config.clock = [this] { return moment; };
        app = vdir::openVdirStore(config, std::move(display));
        sqlcipher::createDatabases(tmp.path());
        SessionContext& s = session();
        s = SessionContext();
        s.olApp = app;
        s.olNS = app->GetNamespace(QStringLiteral("MAPI"));
        s.sTaskFolderEID = QStringLiteral("tasks");
        s.sContactFolderEID = QStringLiteral("contacts");
        s.sTaskFolderSID = s.sContactFolderSID = QStringLiteral("store");
    }
    ~StoreFixture() override { session() = SessionContext(); }

    QString vdirRoot() const { return tmp.file(QStringLiteral("vdir")); }
    std::shared_ptr<Connection> connect(const QString& connectionString)
    {
        auto cn = db.CreateConnection();
        cn->Open(connectionString);
        return cn;
    }

    TempDir tmp;
    Date moment = Date::fromParts(2024, 3, 14, 15, 30);
    sqlcipher::SqlCipherStore db;
    std::shared_ptr<ol::Application> app;
    RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
};

} // namespace steplets::test
