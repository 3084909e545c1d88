// QString in test failure messages as text.
#pragma once

#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
