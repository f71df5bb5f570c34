#pragma once
// Lets GoogleTest show texts as texts when an expectation on a QString fails.
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
