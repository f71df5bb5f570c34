#pragma once
// Opening the user options dialog: part of modInitialize, here beside the dialog it creates.
namespace steplets::modInitialize {

// Shows frmOptions modally and unloads it. Marks the session as having opened the dialog, a
// mark nothing reads and nothing clears.
void OpenOptions();

} // namespace steplets::modInitialize
