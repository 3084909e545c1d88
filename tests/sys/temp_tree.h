// Small helpers for tests that point a reader at a folder of their own.
#pragma once

#include "../store/store_files.h"

namespace orm::test {

inline QString fixture(const QString& relative) { return QStringLiteral(ORM_FIXTURES "/sys/") + relative; }

}  // namespace orm::test
