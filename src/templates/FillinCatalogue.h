#pragma once
// The catalogue of fill-ins: the ordered choices for a subject field, the display text that is
// stored, and the code that tells the composing routine what a choice yields. Four entries carry
// the host's own words and exist only when the host passed them.
#include <QList>
#include <QString>
#include <QStringList>

namespace steplets {
class ComboBox;
}

namespace steplets::modTasks {

namespace fillin {
inline constexpr int Empty = 0;
inline constexpr int UserName = 1;
inline constexpr int ContactTerm = 2;
inline constexpr int MainActivityTerm = 3;
inline constexpr int SubActivityTerm = 4;
inline constexpr int Description = 5;
inline constexpr int EntryType = 6;
inline constexpr int Category = 7;
inline constexpr int CurrentDate = 8;
inline constexpr int CurrentTime = 9;
inline constexpr int FirstContactProperty = 10;
inline constexpr int LastContactProperty = 97;
inline constexpr int PromptForUserInput = 98;
inline constexpr int SubjectFromTemplate = 99;
inline constexpr int JobOrderTerm = 102;
} // namespace fillin

// " (from current TimeCard)" and " (Outlook Contact Property)", with their leading blank.
QString TimeCardSuffix();
QString ContactPropertySuffix();
// "[Empty]", the stored form of a field without a fill-in.
QString EmptyFillin();
QString PromptFillin();              // "Prompt for user input"
QString TemplateSubjectFillin();     // "Subject field from template"

// The 88 contact properties as the user reads them ("Business 2 Telephone Number"), in order.
const QStringList& ContactFillinNames();
// The task store's name of a contact row's property: the display name without blanks.
QString ContactPropertyName(int iCode);

struct FillinEntry {
    QString text;
    int code;
};

// The rows of the list in their order, with the four term rows only where the session has the
// term.
QList<FillinEntry> FillinCatalogue();
// The code of a stored display text, compared exactly and in catalogue order against the texts
// the session gives now (a term row is built even for an empty term); 0 when nothing matches.
int FillinCode(const QString& sFillin);

// Puts the catalogue into a freshly loaded combo box, the code as each row's item data. A
// failing row is reported and the rest of the list still comes.
void LoadFillins(ComboBox& cbo);

} // namespace steplets::modTasks
