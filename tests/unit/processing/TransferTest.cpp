// The stored properties of a template on the new task: each write reaching the item, texts only
// when not empty, the body through the safe item, Null columns keeping the previous row's value,
// and the pacing of each task on the host's clock (none for a skipped row).
#include "ProcessingFixture.h"
#include "platform/SafeTaskItem.h"

using namespace steplets;
using namespace steplets::modTasks;
using namespace steplets::test;

namespace {

class ProcessedTransfer : public ProcessingFixture {
protected:
    Value prop(int r, const char* name) const { return storedRow(r)->get(QString::fromLatin1(name)); }
    static constexpr const char* kRunThenOK = R"([{"wait": 60}, {"form": "frmProcessTasks", "click": "cmdOK"}])";
};

} // namespace

TEST_F(ProcessedTransfer, StoredPropertiesReachTheTask)
{
    addTemplate(relative("Brief", {{col::ActualWork, 30}, {col::TotalWork, 90}, {col::BillingInformation, "Client A"},
                                   {col::Body, "Bring the signed engagement letter."}, {col::Categories, "Legal"},
                                   {col::Companies, "Acme"}, {col::Importance, 2}, {col::Sensitivity, 2},
                                   {col::Status, 1}, {col::PercentComplete, 40}, {col::Role, "Lead"},
                                   {col::Mileage, "12 km"}, {col::ReminderSet, true}}));
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    EXPECT_EQ(prop(1, "ActualWork"), Value(30));
    EXPECT_EQ(prop(1, "TotalWork"), Value(90));
    EXPECT_EQ(prop(1, "BillingInformation"), Value("Client A"));
    EXPECT_EQ(prop(1, "Categories"), Value("Legal"));
    EXPECT_EQ(prop(1, "Companies"), Value("Acme"));
    EXPECT_EQ(prop(1, "Importance"), Value(2));
    EXPECT_EQ(prop(1, "Sensitivity"), Value(2));
    EXPECT_EQ(prop(1, "Status"), Value(1));
    EXPECT_EQ(prop(1, "PercentComplete"), Value(40));
    EXPECT_EQ(prop(1, "Role"), Value("Lead"));
    EXPECT_EQ(prop(1, "Mileage"), Value("12 km"));
    EXPECT_EQ(prop(1, "ReminderSet").toBool(), true);
    SafeTaskItem safe;
    safe.setItem(storedRow(1));
    EXPECT_EQ(safe.Body(), "Bring the signed engagement letter.");
}

TEST_F(ProcessedTransfer, ANullColumnKeepsTheValueOfTheRowBefore)
{
    addTemplate(relative("First", {{col::BillingInformation, "Client A"}, {col::Importance, 2},
                                   {col::Categories, "Legal"}}));
    // Null where the first row had values; an empty text is a value, but one that is never written.
    addTemplate(RowValues{{col::Subject, "Second"}, {col::Categories, ""}});
    play(kRunThenOK);
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();

    EXPECT_EQ(prop(2, "BillingInformation"), Value("Client A"));
    EXPECT_EQ(prop(2, "Importance"), Value(2));
    EXPECT_TRUE(prop(2, "Categories").textOrEmpty().isEmpty())
        << "an empty text replaces the working value but is not written: the store's default stays";
    // The date type and distances came along too: due a day after its own moment of processing.
    const Date due = prop(2, "DueDate").toDate();
    EXPECT_EQ(Date::diff(QStringLiteral("d"), at(2026, 3, 16), due), 1);
    EXPECT_EQ(cell(2, 0), "Second");
}

TEST_F(ProcessedTransfer, EachTaskIsPacedAndASkippedRowIsNot)
{
    addTemplate(relative("Asked", {{col::FillIn1, "Prompt for user input"}, {col::UserPrompt1, "Reference?"}}));
    addTemplate(relative("Also asked"));
    addTemplate(relative("Third"));
    // The first dialog is cancelled; the other two templates are made, each with its pause.
    play(R"([{"form": "frmPrompt", "click": "CancelButton"},
             {"form": "frmPrompt", "type": "txtUserInput", "text": "x"}, {"form": "frmPrompt", "click": "OKButton"},
             {"form": "frmPrompt", "type": "txtUserInput", "text": "y"}, {"form": "frmPrompt", "click": "OKButton"},
             {"form": "frmProcessTasks", "click": "cmdOK"}])");
    ASSERT_TRUE(sink.failures.empty()) << sink.failures[0].location.toStdString();
    EXPECT_EQ(taskFiles().size(), 2);
    // One second to the first tick, then 21 ticks of 100 ms for each of the two tasks made.
    EXPECT_GE(host->clock().elapsedMs(), 1000 + 2 * 2100);
    EXPECT_LT(host->clock().elapsedMs(), 1000 + 3 * 2100);
    EXPECT_EQ(window->ProgressBar1.Max(), 20);
    EXPECT_EQ(cell(1, 0), "Asked (Skipped)");
    EXPECT_EQ(panel(3), "Skipped:  1");
}
