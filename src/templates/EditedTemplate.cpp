#include "EditedTemplate.h"
#include "platform/Guard.h"

namespace steplets {

namespace {
template <class S>
auto& pick(S& four1, S& four2, S& four3, S& four4, int n)
{
    switch (n) {
    case 1: return four1;
    case 2: return four2;
    case 3: return four3;
    case 4: return four4;
    default: throw Failure::subscript();
    }
}
} // namespace

QString& EditedTemplateState::FillIn(int n) { return pick(FillIn1, FillIn2, FillIn3, FillIn4, n); }
QString& EditedTemplateState::UserPrompt(int n) { return pick(UserPrompt1, UserPrompt2, UserPrompt3, UserPrompt4, n); }

namespace modTasks {

EditedTemplateState& EditedTemplate()
{
    static EditedTemplateState state;
    return state;
}

void ReSetModuleVariables()
{
    Guard g(QStringLiteral("modTasks: ReSetModuleVariables"));
    EditedTemplateState& t = EditedTemplate();
    g.attempt([&] {
        g(20); t.DateType = Int16(0);
        g(30); t.FillIn1.clear();
        g(40); t.FillIn2.clear();
        g(50); t.FillIn3.clear();
        g(60); t.FillIn4.clear();
        g(70); t.UserPrompt1.clear();
        g(80); t.UserPrompt2.clear();
        g(90); t.UserPrompt3.clear();
        g(100); t.UserPrompt4.clear();
        g(110); t.PromptForAssignee.clear();
        g(120); t.AnchorDescription.clear();
        g(130); t.ReferenceDate = Date();
        g(140); t.TemplateItem.reset();
        g(150); t.TemplateFolder.reset();
    });
}

} // namespace modTasks
} // namespace steplets
