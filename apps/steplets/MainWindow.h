#pragma once
// The desktop program's own part of the session's main window, kept out of the component's
// windows: a Help menu (the help pages, the data folder, About with the version and the data
// folder), and the window's place, remembered between starts in the program's own settings file.
#include "HostOptions.h"
#include <QString>

class QWidget;

namespace steplets::qt { class QtUiHost; }

namespace steplets::desktop {

// The program's own settings (not the component's): desktop.ini in a folder "steplets" of the
// configuration folder that the session's settings use.
QString desktopSettingsFile(const HostOptions& options, const QString& home);

// Hands the host what it adds to the main window when the session shows it.
void dressMainWindow(qt::QtUiHost& host, const HostOptions& options, const QString& home);

// The About box: version, the data folder and a button that opens it.
void showAbout(QWidget* parent, const QString& home);
// Opens the data folder in the desktop's file manager; says where it is when nothing can.
void openDataFolder(QWidget* parent, const QString& home);

} // namespace steplets::desktop
