#pragma once
// The template engine on real stores: the shared template recordset open on tblSteplets.
#include "StoreFixture.h"
#include "templates/DateRules.h"
#include "templates/EditedTemplate.h"
#include "templates/TemplateRow.h"
#include <map>

namespace steplets::test {

// Nobody looks at the screen in these tests: an item shown is left as it is.
class NoDisplay : public ol::ItemDisplay {
public:
    void displayTask(ol::TaskItem&, bool) override {}
    void displayContact(ol::ContactItem&, bool) override {}
};

// A template row as a test states it: column position to value; the rest stays Null.
using RowValues = std::map<int, Value>;

class TemplateFixture : public StoreFixture {
protected:
    // `display` shows the items: nobody by default.
    explicit TemplateFixture(std::shared_ptr<ol::ItemDisplay> display = std::make_shared<NoDisplay>())
        : StoreFixture(std::move(display))
    {
        session().cnLocal = connect(storeFiles::localConnectionString(tmp.path()));
        session().rsTemplates = openTemplates();
        modTasks::ReSetModuleVariables();
    }
    ~TemplateFixture() override { modTasks::ReSetModuleVariables(); }

    // A recordset of its own on tblSteplets, as another reader of the file sees it.
    std::shared_ptr<Recordset> openTemplates()
    {
        auto rs = db.CreateRecordset();
        rs->Open(QStringLiteral("SELECT * FROM tblSteplets"), session().cnLocal, ado::adOpenKeyset,
                 ado::adLockOptimistic, ado::adCmdText);
        return rs;
    }
    // Adds a row through the shared recordset and leaves it current.
    void addRow(const RowValues& values)
    {
        Recordset& rs = *session().rsTemplates;
        rs.AddNew();
        for (const auto& [pos, v] : values) rs.Fields(pos).setValue(v);
        rs.Update();
    }
    // The only row of the table, read afresh through a recordset of its own.
    Value stored(int pos)
    {
        auto rs = openTemplates();
        EXPECT_EQ(rs->RecordCount(), 1);
        rs->MoveFirst();
        return rs->Fields(pos).value();
    }

    std::shared_ptr<ol::MAPIFolder> taskFolder() { return session().olNS->GetFolderFromID("tasks", "store"); }
    int taskFiles() const { return QDir(vdirRoot() + "/tasks").entryList({"*.ics"}, QDir::Files).size(); }
    modTasks::Clock clock()
    {
        return [this] { return moment; };
    }
};

} // namespace steplets::test
