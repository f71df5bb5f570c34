#pragma once
// Session start-up: the settings, then the two databases and the four shared recordsets.
#include <QString>

namespace steplets::modInitialize {

inline const QString kRootPath = QStringLiteral("\\HKEY_CURRENT_USER\\Software\\Brackenfell Software\\Ordivane for Office\\");
inline const QString kKeyName = QStringLiteral("Steplets");

bool GetRegSettings();
bool OpenDB();
void RefreshLinks(QString& sProvider);

} // namespace steplets::modInitialize
