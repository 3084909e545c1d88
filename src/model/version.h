// Names and version of the product, as the log header and the messages show them.
#pragma once

#ifndef ORMIVANE_VERSION
#define ORMIVANE_VERSION "1.0.0"
#endif

namespace orm {

inline constexpr const char* CompanyName = "Vendrake";
inline constexpr const char* ProductName = "Ormivane";
// Every feature of the newest system family is on.
inline constexpr int SystemVersionCode = 8;

}  // namespace orm
