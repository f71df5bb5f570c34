#pragma once
// A processing run on real stores, as the launch would start it: fresh SQLCipher databases with
// the chosen templates marked and the template recordset filtered on "Tag = -1", a vdir with a
// task collection and the demo contacts, the session pointing at both, and frmProcessTasks
// sized, seeded and shown modally on the scripted host, whose script plays the user.
#include "RecordingSink.h"
#include "TempDir.h"
#include "backends/scripted/ScriptedHost.h"
#include "backends/sqlcipher/Schema.h"
#include "backends/sqlcipher/SqlCipherStore.h"
#include "backends/vdir/DemoContacts.h"
#include "backends/vdir/VdirStore.h"
#include "platform/OutlookGateway.h"
#include "platform/StoreGateway.h"
#include "processing/frmProcessTasks.h"
#include "session/SessionContext.h"
#include "templates/EditedTemplate.h"
#include "templates/TemplateRow.h"
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>
#include <functional>
#include <map>

namespace steplets::test {

using RowValues = std::map<int, Value>;

class ProcessingFixture : public ::testing::Test {
protected:
    ProcessingFixture()
    {
        QDir().mkpath(vdirRoot() + QStringLiteral("/tasks"));
        vdir::writeDemoContacts(vdirRoot() + QStringLiteral("/contacts"));
        sqlcipher::createDatabases(tmp.path());
        SessionContext& s = session();
        s = SessionContext();
        s.ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
        s.sContactFolderEID = QStringLiteral("contacts");
        s.sContactFolderSID = QStringLiteral("store");
        s.sUserEID = QStringLiteral("c-morgan");
        s.sUserFldrSID = QStringLiteral("store");
        s.sUserName = QStringLiteral("Test User");
        s.sTaskFolderEID = QStringLiteral("tasks");
        s.sTaskFolderSID = QStringLiteral("store");
        s.cnLocal = session().store().CreateConnection();
        s.cnLocal->Open(storeFiles::localConnectionString(tmp.path()));
        s.cnLink = session().store().CreateConnection();
        s.cnLink->Open(storeFiles::linkConnectionString(tmp.path()));
        s.rsTemplates = session().store().CreateRecordset();
        s.rsTemplates->Open(QStringLiteral("SELECT * FROM tblSteplets"), s.cnLocal);
        modTasks::ReSetModuleVariables();
    }
    ~ProcessingFixture() override
    {
        window.reset();
        modTasks::ReSetModuleVariables();
        session() = SessionContext();
        session().ports.ui.reset();
    }

    QString vdirRoot() const { return tmp.file(QStringLiteral("vdir")); }

    // A chosen template (Tag -1); columns not named stay Null.
    void addTemplate(const RowValues& values, bool chosen = true)
    {
        Recordset& rs = *session().rsTemplates;
        rs.AddNew();
        for (const auto& [pos, v] : values) rs.Fields(pos).setValue(v);
        rs.Fields(QStringLiteral("Tag")).setValue(Int16(chosen ? -1 : 0));
        rs.Update();
    }
    static RowValues relative(const char* subject, RowValues extra = {})
    {
        RowValues row{{modTasks::col::Subject, subject}, {modTasks::col::DateType, 1},
                      {modTasks::col::DueDateOffset, 24 * 60}, {modTasks::col::ReminderOffset, 0},
                      {modTasks::col::StartDateOffset, 0}, {modTasks::col::Importance, 1}, {modTasks::col::Status, 0}};
        for (const auto& [pos, v] : extra) row[pos] = v;
        return row;
    }
    void chooseContacts(std::initializer_list<const char*> ids)
    {
        SessionContext& s = session();
        s.aSelectedContacts.redim(1, static_cast<long>(ids.size()));
        long k = 1;
        for (const char* id : ids) s.aSelectedContacts[k++] = QString::fromLatin1(id);
    }

    // What the launch does, then the modal show that the script plays through.
    void play(const char* steps, int passes = 1)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps).array(), &error);
        ASSERT_TRUE(script.has_value()) << error.toStdString();
        host = std::make_shared<scripted::ScriptedHost>(*script, QDateTime(QDate(2026, 3, 16), QTime(15, 30)));
        session().ports.ui = host;
        vdir::VdirConfig config;
        config.root = vdirRoot();
        config.clock = [h = host.get()] { return h->Now(); };
        config.entryIds = entryIds;
        SessionContext& s = session();
        s.olApp = vdir::openVdirStore(config, host);
        s.olNS = s.olApp->GetNamespace(QStringLiteral("MAPI"));

        Recordset& rs = *s.rsTemplates;
        rs.Filter(QStringLiteral("Tag = -1"));
        const Int16 count = Int16::from(static_cast<long long>(rs.RecordCount() * passes));
        window = std::make_unique<frmProcessTasks>(*host);
        frmProcessTasks& w = *window;
        w.m_iNewTaskCount = count;
        w.MSHFlexGrid1.setRows(count.value() + 20);
        Int16 column(0);
        for (Int16 r(1); r <= count; ++r) {
            if ((r.value() - 1) % rs.RecordCount() == 0) rs.MoveFirst();
            w.MSHFlexGrid1.setTextArray(w.faIndex(r, column), rs.Fields(modTasks::col::Subject).value().textOrEmpty());
            rs.MoveNext();
        }
        w.hdrText.setCaption(QStringLiteral("Please wait while the tasks are processed."));
        if (beforeShow) beforeShow(w);
        try {
            w.Show();
        } catch (const HostAbort& abort) {
            QString reports;
            for (const auto& f : sink.failures) reports += f.description + QStringLiteral(" at ") + f.location + QStringLiteral("; ");
            FAIL() << "the run could not be played: " << abort.what() << "\nreports: " << reports.toStdString()
                   << "\nevents: " << QJsonDocument(host->events()).toJson(QJsonDocument::Compact).toStdString();
        }
        EXPECT_EQ(host->script().remaining(), 0) << "steps left over";
        rs.Filter(0L);
    }

    QString cell(int row, int col) const { return window->MSHFlexGrid1.TextMatrix(row, col); }
    QString panel(int n) const { return window->StatusBar1.PanelText(n); }
    QStringList taskFiles() const
    {
        return QDir(vdirRoot() + QStringLiteral("/tasks")).entryList(QDir::Files, QDir::Name);
    }
    // A task as another reader of the collection sees it.
    std::shared_ptr<ol::TaskItem> stored(const QString& entryId) const
    {
        vdir::VdirConfig config;
        config.root = vdirRoot();
        auto ns = vdir::openVdirStore(config, host)->GetNamespace();
        return ol::asTask(ns->GetItemFromID(entryId, QStringLiteral("store")));
    }
    std::shared_ptr<ol::TaskItem> storedRow(int r) const { return stored(window->aEntryIDs[r]); }
    // The rows of tblTasks, as EntryID and TimeCardID.
    std::vector<std::pair<QString, qint32>> taskRows() const
    {
        auto rs = session().store().CreateRecordset();
        rs->Open(QStringLiteral("SELECT * FROM tblTasks"), session().cnLink);
        std::vector<std::pair<QString, qint32>> rows;
        if (rs->RecordCount() == 0) return rows;
        for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext())
            rows.emplace_back(rs->Fields(QStringLiteral("EntryID")).value().textOrEmpty(),
                              rs->Fields(QStringLiteral("TimeCardID")).value().longOrZero());
        return rows;
    }
    int displays() const
    {
        int n = 0;
        for (const auto& e : host->events()) n += e.toObject().contains(QStringLiteral("display"));
        return n;
    }
    int shows() const
    {
        int n = 0;
        for (const auto& e : host->events())
            n += e.toObject().value(QStringLiteral("show")).toString() == QLatin1String("frmProcessTasks");
        return n;
    }
    static Date at(int y, int mo, int d, int h = 0, int mi = 0, int sec = 0) { return Date::fromParts(y, mo, d, h, mi, sec); }

    // The launch's own settings of the window (a group's common answers), before the show.
    std::function<void(frmProcessTasks&)> beforeShow;
    // The names new items get on their first save; random if unset.
    std::function<QString()> entryIds;

    TempDir tmp;
    RecordingSink sink{[]() -> QString& { return session().ErrorTrail; }};
    std::shared_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmProcessTasks> window;
};

} // namespace steplets::test
