// zMemory: the machine's memory figures, refreshed on demand.
#pragma once

#include "sources/kernel_file.h"
#include "sources/meminfo.h"
#include "sources/unsigned_double.h"

#include <QString>

namespace orm {

class MemoryStatus {
public:
    explicit MemoryStatus(QString procRoot = QStringLiteral("/proc"));
    // Reads <procRoot>/meminfo; an unreadable or unusable file leaves the
    // figures as they were.
    void GetMemoryStatus();
    MemoryFigures figures;

private:
    KernelFile meminfo_;
};

}  // namespace orm
