#include "FillinEditor.h"
#include "platform/runtime/Constants.h"
#include "FormatPreview.h"
#include "controls/Controls.h"
#include "platform/Guard.h"
#include "platform/UiHost.h"
#include "templates/FillinCatalogue.h"

namespace steplets {

using namespace vb;

FillinEditor::FillinEditor(const Parts& parts, Options options) : m(parts), m_options(std::move(options))
{
    m.txtUserPrompt.setMaxLength(m_options.promptLimit);
    m.fieldList.Click.connect([this] { fieldList_Click(); });
    m.cboFillin.Click.connect([this] { cboFillin_Click(); });
    m.txtUserPrompt.LostFocus.connect([this] { txtUserPrompt_LostFocus(); });
    if (m_options.edited) m.txtUserPrompt.Change.connect([this] { txtUserPrompt_Change(); });
}

void FillinEditor::layOut(Frame& frame, int width)
{
    struct Row { Label& label; const char* caption; Control& box; int boxWidth; };
    const Row rows[] = {{m.fieldLabel, "Subject Field:", m.fieldList, 2055},
                        {m.fillinLabel, "Fill-In:", m.cboFillin, width - 2040},
                        {m.promptLabel, "User Prompt:", m.txtUserPrompt, width - 2040}};
    for (int i = 0; i < 3; ++i) {
        rows[i].label.setContainer(&frame);
        rows[i].label.setCaption(QString::fromUtf8(rows[i].caption));
        rows[i].label.Move(240, 390 + i * 480, 1455, 255);
        rows[i].box.setContainer(&frame);
        rows[i].box.Move(1800, 330 + i * 480, rows[i].boxWidth, 315);
    }
    m.fieldList.setStyle(ComboBox::Style::DropDownList);
    for (int k = 1; k <= 4; ++k) m.fieldList.AddItem(QStringLiteral("Field %1").arg(k));
    m.cboFillin.setStyle(ComboBox::Style::DropDownList);
    m.previewLabel.setContainer(&frame);
    m.previewLabel.setCaption(QStringLiteral("Subject Field Preview:"));
    m.previewLabel.Move(240, 1830, width - 480, 255);
    m.preview.setContainer(&frame);
    m.preview.setLocked(true);
    m.preview.setTabStop(false);
    m.preview.Move(240, 2130, width - 480, 315);
}

QString FillinEditor::literal(const char* routine) const
{
    return m.form.name() + QStringLiteral(": ") + QLatin1String(routine);
}

void FillinEditor::unloadForm() { m.form.Unload(); }

int FillinEditor::selectedField() const
{
    for (int k = 1; k <= 4; ++k)
        if (m.fieldList.Text() == QStringLiteral("Field %1").arg(k)) return k;
    return 0;
}

void FillinEditor::fieldList_Click()
{
    Guard g(m.form.name() + QStringLiteral(": ") + m.fieldListName + QStringLiteral("_Click"));
    g.run([&] {
        g(20); m.bFieldLoading = true;
        const int k = selectedField();
        if (k != 0) {
            // Showing a stored fill-in that this run's list does not offer fails; the field then
            // shows "[Empty]" and, through the nested click, becomes it. Nothing is reported.
            const long failed = g.ignoring(30, [&] {
                m.cboFillin.setText(m.sFillin[k].isEmpty() ? modTasks::EmptyFillin() : m.sFillin[k]);
            });
            if (failed != 0) {
                g.clearError();
                g.ignoring(40, [&] { m.cboFillin.setText(modTasks::EmptyFillin()); });
                g.ignoring(50, [&] { m.txtUserPrompt.setText(QString()); });
            } else {
                g.ignoring(60, [&] { m.txtUserPrompt.setText(m.sUserPrompt[k]); });
            }
            g.clearError();
        }
        g(70); m.bFieldLoading = false;
        g(80); FormatUserInput();
    }, [&] { unloadForm(); });
}

void FillinEditor::cboFillin_Click()
{
    Guard g(literal("cboFillin_Click"));
    g.run([&] {
        const int k = selectedField();
        g(20);
        if (!m.bFieldLoading && m.cboFillin.Text() == modTasks::PromptFillin()) {
            for (int i = 1; i <= 4; ++i) {
                g(30);
                if (m.sFillin[i] != modTasks::PromptFillin()) continue;
                // The field going back to a value that is itself the prompt is no new choice.
                if (m_reverting) return;
                g(40); m.form.host().MsgBox(QStringLiteral("Only one of the four Fill-In fields may prompt the user for input."),
                                            vbOKOnly, QStringLiteral("Invalid Selection"));
                // Back to the field's value; its own click stores that value again.
                g(50);
                if (k != 0) {
                    m_reverting = true;
                    struct Done { bool& flag; ~Done() { flag = false; } } done{m_reverting};
                    m.cboFillin.setText(m.sFillin[k]);
                }
                return;
            }
        }
        g(60); if (!m.bFieldLoading && m_options.edited) m_options.edited();
        g(70); if (k != 0) m.sFillin[k] = m.cboFillin.Text();
        if (m_options.previewBeforePrompt) {
            g(80); m.preview.setText(FormatPreview());
            g(90); FormatUserInput();
        } else {
            g(80); FormatUserInput();
            g(90); m.preview.setText(FormatPreview());
        }
    }, [&] { unloadForm(); });
}

void FillinEditor::FormatUserInput()
{
    Guard g(literal("FormatUserInput"));
    g.run([&] {
        g(20);
        const bool prompts = m.cboFillin.Text() == modTasks::PromptFillin();
        g(30); m.txtUserPrompt.setEnabled(prompts);
        g(40); m.txtUserPrompt.setLocked(!prompts);
        // Emptying the box leaves the field's stored prompt alone, unless every change counts.
        g(50); if (!prompts) m.txtUserPrompt.setText(QString());
        g(60); m.promptLabel.setEnabled(prompts);
    }, [&] { unloadForm(); });
}

void FillinEditor::txtUserPrompt_LostFocus()
{
    Guard g(literal("txtUserPrompt_LostFocus"));
    g.run([&] {
        g(20); if (const int k = selectedField(); k != 0) m.sUserPrompt[k] = m.txtUserPrompt.Text();
    }, [&] { unloadForm(); });
}

void FillinEditor::txtUserPrompt_Change()
{
    Guard g(literal("txtUserPrompt_Change"));
    g.run([&] {
        g(20); if (const int k = selectedField(); k != 0) m.sUserPrompt[k] = m.txtUserPrompt.Text();
        g(30); m_options.edited();
    }, [&] { unloadForm(); });
}

QString FillinEditor::FormatPreview() const
{
    Guard g(literal("FormatPreview"));
    return steplets::FormatPreview(m.sFillin, m_options.jobOrderSample, m_options.now);
}

} // namespace steplets
