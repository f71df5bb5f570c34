#pragma once
// The numbers the windows and modules pass to each other and to the run-time, named once.
namespace steplets {

// Message box flags and answers, and the keyboard, as the run-time numbers them.
namespace vb {
inline constexpr long vbOKOnly = 0;
inline constexpr long vbOKCancel = 1;
inline constexpr long vbYesNo = 4;
inline constexpr long vbCritical = 16;
inline constexpr long vbQuestion = 32;
inline constexpr long vbExclamation = 48;
inline constexpr long vbInformation = 64;
inline constexpr long vbSystemModal = 4096;
inline constexpr int vbOK = 1;
inline constexpr int vbCancel = 2;
inline constexpr int vbYes = 6;
inline constexpr int vbNo = 7;
inline constexpr int vbKeyC = 67;
inline constexpr int vbShiftMask = 1;
inline constexpr int vbCtrlMask = 2;
inline constexpr int vbAltMask = 4;
} // namespace vb

// How the chosen contacts take part in a run (iContactMode).
namespace contactMode {
inline constexpr int OneOrNone = 0;       // the one contact of the name box, if any
inline constexpr int Linked = 1;          // every chosen contact linked to each task
inline constexpr int SeparatePasses = 2;  // the templates run once per chosen contact
} // namespace contactMode

// The modes of frmPrompt's PromptDialog.
namespace promptMode {
inline constexpr int TemplateOptions = 1;
inline constexpr int GroupOptions = 2;
inline constexpr int NewGroup = 3;
inline constexpr int NewTemplateHelp = 4;
inline constexpr int Input = 5;
inline constexpr int CommonInputQuestion = 6;
} // namespace promptMode

// A template's date rule (DateType).
namespace dateType {
inline constexpr int Fixed = 0;
inline constexpr int Relative = 1;
inline constexpr int Anchor = 2;
} // namespace dateType

} // namespace steplets
