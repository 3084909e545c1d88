#include "sources/memory_status.h"

namespace orm {

MemoryStatus::MemoryStatus(QString procRoot)
    : meminfo_(procRoot + QStringLiteral("/meminfo"))
{
}

void MemoryStatus::GetMemoryStatus()
{
    const auto text = meminfo_.read();
    if (!text)
        return;  // the figures keep their last values
    if (const auto m = parseMeminfo(*text))
        figures = *m;
}

}  // namespace orm
