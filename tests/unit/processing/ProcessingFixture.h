#pragma once
// A processing run on real stores as the launch starts it: the chosen templates filtered on
// "Tag = -1", frmProcessTasks seeded and shown modally on the scripted host playing the user.
#include "ScriptedSteps.h"
#include "StoreFixture.h"
#include "backends/vdir/TaskCalendar.h"
#include "processing/frmProcessTasks.h"
#include "templates/EditedTemplate.h"
#include "templates/TemplateRow.h"
#include <QFile>
#include <map>

namespace steplets::test {

using RowValues = std::map<int, Value>;

class ProcessingFixture : public StoreFixture {
protected:
    ProcessingFixture() : StoreFixture(nullptr)
    {
        SessionContext& s = session();
        s.ports.store = std::make_shared<sqlcipher::SqlCipherStore>();
        s.sUserEID = QStringLiteral("c-morgan");
        s.sUserName = QStringLiteral("Test User");
        s.sUserFldrSID = QStringLiteral("store");
        s.cnLocal = connect(storeFiles::localConnectionString(tmp.path()));
        s.cnLink = connect(storeFiles::linkConnectionString(tmp.path()));
        s.rsTemplates = db.CreateRecordset();
        s.rsTemplates->Open(QStringLiteral("SELECT * FROM tblSteplets"), s.cnLocal);
        modTasks::ReSetModuleVariables();
    }
    ~ProcessingFixture() override
    {
        window.reset();
        modTasks::ReSetModuleVariables();
    }

    // A chosen template (Tag -1); columns not named stay Null.
    void addTemplate(const RowValues& values)
    {
        Recordset& rs = *session().rsTemplates;
        rs.AddNew();
        for (const auto& [pos, v] : values) rs.Fields(pos).setValue(v);
        rs.Fields(QStringLiteral("Tag")).setValue(Int16(-1));
        rs.Update();
    }
    // A template due a day after its moment of processing, or one with fixed dates; `row` names
    // the columns that differ.
    static RowValues relative(const char* subject, RowValues row = {})
    {
        using namespace modTasks;
        row.insert({{col::Subject, subject}, {col::DateType, 1}, {col::DueDateOffset, 24 * 60}, {col::ReminderOffset, 0},
                    {col::StartDateOffset, 0}, {col::Importance, 1}, {col::Status, 0}});
        return row;
    }
    static RowValues fixed(const char* subject, RowValues row = {})
    {
        using namespace modTasks;
        row.insert({{col::Subject, subject}, {col::DateType, 0}, {col::IsRecurring, false}, {col::Importance, 1}, {col::Status, 0}});
        return row;
    }
    // A fresh run on the same stores: no template rows, no chosen contacts.
    void resetRun()
    {
        window.reset();
        Recordset& rs = *session().rsTemplates;
        rs.Requery();
        for (long n = rs.RecordCount(); n > 0; --n) rs.Delete();
        rs.Requery();
        session().aSelectedContacts = decltype(session().aSelectedContacts)();
    }
    void chooseContacts(std::initializer_list<const char*> ids)
    {
        SessionContext& s = session();
        s.aSelectedContacts.redim(1, static_cast<long>(ids.size()));
        long k = 1;
        for (const char* id : ids) s.aSelectedContacts[k++] = QString::fromLatin1(id);
    }

    // What the launch does, then the modal show that the script plays through; true when the run
    // reported no failure.
    ::testing::AssertionResult play(const std::string& steps, int passes = 1)
    {
        QString error;
        auto script = scripted::Script::fromJson(QJsonDocument::fromJson(steps.c_str()).array(), &error);
        if (!script) return ::testing::AssertionFailure() << "bad script: " << error.toStdString();
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
        for (Int16 r(1), column(0); r <= count; ++r) {
            if ((r.value() - 1) % rs.RecordCount() == 0) rs.MoveFirst();
            w.MSHFlexGrid1.setTextArray(w.faIndex(r, column), rs.Fields(modTasks::col::Subject).value().textOrEmpty());
            rs.MoveNext();
        }
        w.hdrText.setCaption(QStringLiteral("Please wait while the tasks are processed."));
        if (beforeShow) beforeShow(w);
        QString reports;
        try {
            w.Show();
        } catch (const HostAbort& abort) {
            reports = QStringLiteral("could not be played: ") + QString::fromUtf8(abort.what()) + QStringLiteral("; ");
        }
        rs.Filter(0L);
        if (host->script().remaining() != 0) reports += QStringLiteral("steps left over; ");
        for (const auto& f : sink.failures) reports += f.description + QStringLiteral(" at ") + f.location + QStringLiteral("; ");
        if (reports.isEmpty()) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << reports.toStdString()
                                             << QJsonDocument(host->events()).toJson(QJsonDocument::Compact).toStdString();
    }

    QString cell(int row, int col) const { return window->MSHFlexGrid1.TextMatrix(row, col); }
    QString panel(int n) const { return window->StatusBar1.PanelText(n); }
    QStringList taskFiles() const { return QDir(vdirRoot() + QStringLiteral("/tasks")).entryList(QDir::Files); }
    // A task as another reader of the collection sees it.
    std::shared_ptr<ol::TaskItem> storedRow(int r) const
    {
        vdir::VdirConfig config;
        config.root = vdirRoot();
        auto ns = vdir::openVdirStore(config, host)->GetNamespace();
        return ol::asTask(ns->GetItemFromID(window->aEntryIDs[r], QStringLiteral("store")));
    }
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
    QStringList links(int r) const
    {
        auto task = storedRow(r);
        QStringList ids;
        for (int k = 1; k <= task->Links().Count(); ++k) ids << task->Links().Item(k)->EntryID();
        return ids;
    }
    QString fileAs(const char* id) const
    {
        return ol::asContact(session().olNS->GetItemFromID(QString::fromLatin1(id), "store"))->FileAs();
    }
    // A time card whose main activity marks each task; the sub-activity has no term, so no mark.
    void timeCard()
    {
        SessionContext& s = session();
        s.lTimeCardID = 42;
        s.sMainActivityTerm = "Matter";
        s.sMainActivity = "Smith v Jones";
        s.sSubActivity = "Drafting";
    }
    // A task as its file holds it, marks with their type and folder-field flag included.
    vdir::TaskData onFile(const QString& entryId) const
    {
        QFile f(vdirRoot() + QStringLiteral("/tasks/") + entryId + QStringLiteral(".ics"));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
        return vdir::readTaskCalendar(f.readAll(), nullptr).value_or(vdir::TaskData{});
    }
    // How many events of that kind the host recorded; with `form`, only those naming it.
    int count(const char* kind, const char* form = nullptr) const
    {
        int n = 0;
        for (const auto& e : host->events())
            n += form ? e.toObject().value(QLatin1String(kind)).toString() == QLatin1String(form)
                      : e.toObject().contains(QLatin1String(kind));
        return n;
    }
    Value prop(int r, const char* name) const { return storedRow(r)->get(QString::fromLatin1(name)); }
    Date date(int r, const char* name) const { return prop(r, name).toDate(); }
    // A template that asks the user for a reference.
    static RowValues asking(const char* subject)
    {
        return relative(subject, {{modTasks::col::FillIn1, "Prompt for user input"},
                                  {modTasks::col::FillIn2, "Subject field from template"},
                                  {modTasks::col::UserPrompt1, "Reference?"}});
    }
    static std::string answer(const char* text)
    {
        return std::string(R"({"form": "frmPrompt", "type": "txtUserInput", "text": ")") + text
            + R"("}, {"form": "frmPrompt", "click": "OKButton"}, )";
    }
    static constexpr const char* kCancel = R"({"form": "frmPrompt", "click": "CancelButton"}, )";
    static constexpr const char* kOK = R"({"form": "frmProcessTasks", "click": "cmdOK"}])";
    static constexpr const char* kRunThenOK = R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdOK"}])";
    static Date at(int y, int mo, int d, int h = 0, int mi = 0, int sec = 0) { return Date::fromParts(y, mo, d, h, mi, sec); }

    // The launch's own settings of the window (a group's common answers), before the show.
    std::function<void(frmProcessTasks&)> beforeShow;
    // The names new items get on their first save; random if unset.
    std::function<QString()> entryIds;

    std::shared_ptr<scripted::ScriptedHost> host;
    std::unique_ptr<frmProcessTasks> window;
};

} // namespace steplets::test
