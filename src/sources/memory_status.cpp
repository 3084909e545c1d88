#include "sources/memory_status.h"
#include "sources/platform_file.h"

#include <QFile>
#include <utility>

namespace orm {

MemoryStatus::MemoryStatus(QString procRoot)
    : path_(std::move(procRoot) + QStringLiteral("/meminfo"))
{
}

void MemoryStatus::GetMemoryStatus()
{
    const auto text = readPlatformFile(path_);
    if (!text)
        return;  // the figures keep their last values
    if (const auto m = parseMeminfo(*text))
        figures = *m;
}

}  // namespace orm
