#pragma once
// The editor of a subject's four fill-ins, one per field, with the prompt of the field that asks
// the user for input and a preview of the subject. The template options dialog and the user
// options dialog both have it; each declares the controls and working arrays under its own names
// and hands them over, and the editor runs their events. They differ in a few ways, set by
// Options: the prompt's limit, the order of the last two calls of a fill-in click, the job-order
// sample of the preview, and whether every change counts as an edit to apply.
#include "templates/DateRules.h"
#include <QString>
#include <array>
#include <functional>

namespace steplets {

class ComboBox;
class Form;
class Frame;
class Label;
class TextBox;

class FillinEditor {
public:
    // The form's own controls and members, under its own names.
    struct Parts {
        Form& form;
        ComboBox& fieldList;                   // "Field 1" to "Field 4"
        QString fieldListName;                 // the field list's name, for its handler's trail entry
        ComboBox& cboFillin;
        TextBox& txtUserPrompt;
        Label& fieldLabel;                     // "Subject Field:"
        Label& fillinLabel;                    // "Fill-In:"
        Label& promptLabel;                    // "User Prompt:"
        Label& previewLabel;                   // "Subject Field Preview:"
        TextBox& preview;                      // Text1
        std::array<QString, 5>& sFillin;       // from index 1
        std::array<QString, 5>& sUserPrompt;
        bool& bFieldLoading;
    };
    struct Options {
        int promptLimit = 40;
        bool previewBeforePrompt = true;       // a fill-in click ends with the preview, then the prompt box
        bool jobOrderSample = false;           // the preview knows the job-order fill-in
        // The user options form: every change of the prompt box is stored at once and counts as
        // an edit, and an accepted fill-in choice does too. Called to say something changed.
        std::function<void()> edited;
        modTasks::Clock now = modTasks::uiClock();
    };

    FillinEditor(const Parts& parts, Options options);

    // Puts the labels, lists, prompt box and preview into `frame`, `width` twips wide, with the
    // captions and list items both forms have.
    void layOut(Frame& frame, int width);

    // The field chosen in the field list: 1 to 4, 0 for none.
    int selectedField() const;

    // The form's events, as its handlers.
    void fieldList_Click();
    void cboFillin_Click();
    void txtUserPrompt_LostFocus();
    void txtUserPrompt_Change();
    void FormatUserInput();
    QString FormatPreview() const;

private:
    QString literal(const char* routine) const;
    void unloadForm();

    Parts m;
    Options m_options;
    bool m_reverting = false;
};

} // namespace steplets
