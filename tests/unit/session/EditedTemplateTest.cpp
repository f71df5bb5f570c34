#include "RecordingSink.h"
#include "templates/EditedTemplate.h"
#include <gtest/gtest.h>

using namespace steplets;

TEST(ReSetModuleVariables, ResetsEveryFieldButTheDeclinedFlag)
{
    test::RecordingSink sink;
    auto& t = modTasks::EditedTemplate();
    t.DateType = Int16(2);
    for (int i = 1; i <= 4; ++i) {
        t.FillIn(i) = "Date";
        t.UserPrompt(i) = "Why?";
    }
    t.PromptForAssignee = "True";
    t.AnchorDescription = "Closing";
    t.ReferenceDate = Date::fromParts(2026, 3, 16);
    t.OptionsDialogDeclined = true;

    modTasks::ReSetModuleVariables();

    EXPECT_EQ(t.DateType.value(), 0);
    for (int i = 1; i <= 4; ++i) {
        EXPECT_EQ(t.FillIn(i), "");
        EXPECT_EQ(t.UserPrompt(i), "");
    }
    EXPECT_EQ(t.PromptForAssignee, "");
    EXPECT_EQ(t.AnchorDescription, "");
    EXPECT_TRUE(t.ReferenceDate.isZero());
    EXPECT_TRUE(t.OptionsDialogDeclined);
    EXPECT_FALSE(t.TemplateItem);
    EXPECT_FALSE(t.TemplateFolder);
    EXPECT_TRUE(sink.failures.empty()) << "unset objects are no failure";
    EXPECT_TRUE(sink.trail().endsWith("X:modTasks: ReSetModuleVariables"));
    EXPECT_THROW(t.FillIn(5), Failure);
}
