// The authoring flow against a database that another program holds locked while the template
// is saved: one report, no new row and no changed row, not even after the lists are read again,
// and the task the user filled in stays in the task folder.
#include "../templates/TemplateFixture.h"
#include "ScriptedSteps.h"
#include "backends/sqlcipher/Database.h"
#include "backends/sqlcipher/SqlCipherConnection.h"
#include "dialogs/TemplateAuthoring.h"

namespace steplets::test {
namespace {
namespace col = modTasks::col;

// Shows the items through the scripted host the test makes after the stores.
class LateDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem& item, bool modal) override { host->displayTask(item, modal); }
    void displayContact(ol::ContactItem& item, bool modal) override { host->displayContact(item, modal); }
    ol::ItemDisplay* host = nullptr;
};

class LockedSave : public TemplateFixture {
protected:
    LockedSave() : LockedSave(std::make_shared<LateDisplay>()) {}
    explicit LockedSave(const std::shared_ptr<LateDisplay>& d) : TemplateFixture(d), display(d) {}
    void TearDown() override { session().ports = Ports(); }

    std::shared_ptr<LateDisplay> display;
};

TEST_F(LockedSave, NeitherANewNorAnEditedTemplateChangesARowAndTheirTasksStay)
{
    addRow({{col::Subject, Value("Kept")}, {col::DateType, Value(Int16(1))}, {col::DueDateOffset, Value(60)},
            {col::FillIn1, Value("Subject field from template")}, {col::PromptForAssignee, Value(false)}});
    // The user's steps; the help note is switched off.
    std::shared_ptr<scripted::ScriptedHost> host = hostWith(R"([{"form": "frmNewTask", "click": "CreateEditButton"},
               {"item": {"set": {"Subject": "Locked out", "Body": "What the user typed"}, "close": "save"}},
               {"form": "frmNewTask", "click": "CreateEditButton"},
               {"item": {"set": {"Subject": "Changed"}, "close": "save"}}])", QDateTime(QDate(2024, 3, 14), QTime(15, 30)));
    display->host = host.get();
    session().ports.ui = host;
    session().bNewTaskDescription = false;
    // Another program takes the write lock; the session's connection waits 50 ms for it.
    dynamic_cast<sqlcipher::SqlCipherConnection&>(*session().cnLocal).setBusyTimeout(50);
    auto locker = sqlcipher::openDatabase(storeFiles::localConnectionString(tmp.path()));
    locker->exec(QStringLiteral("BEGIN IMMEDIATE"));

    modTasks::ProcessAdd();
    ASSERT_EQ(sink.failures.size(), 1u);
    EXPECT_TRUE(sink.failures[0].location.contains(QStringLiteral("modTasks: SaveTemplateToDB:Line ")))
        << sink.failures[0].description.toStdString() << sink.failures[0].location.toStdString();
    Recordset& rs = *session().rsTemplates;
    rs.Filter(0L);
    rs.Requery();
    rs.MoveFirst();
    QString name = QStringLiteral("Kept");
    modTasks::ProcessEdit(name);
    ASSERT_EQ(sink.failures.size(), 2u);

    rs.Filter(0L);
    rs.Requery();
    locker.reset();   // the other program is done: nothing was left to commit
    QStringList subjects;
    for (rs.Requery(); !rs.EOF_(); rs.MoveNext()) subjects << rs.Fields(col::Subject).value().textOrEmpty();
    EXPECT_EQ(subjects, QStringList{QStringLiteral("Kept")});
    EXPECT_EQ(stored(col::DueDateOffset), Value(60));
    auto folder = taskFolder();
    QStringList tasks;
    for (int i = 1; i <= folder->Items().Count(); ++i) tasks << folder->Items().Item(i)->Subject();
    tasks.sort();
    EXPECT_EQ(tasks, (QStringList{QStringLiteral("Changed"), QStringLiteral("Locked out")}));
}

} // namespace
} // namespace steplets::test
