#include "sources/memory_status.h"

#include <QFile>
#include <utility>

namespace orm {

MemoryStatus::MemoryStatus(QString procRoot)
    : path_(std::move(procRoot) + QStringLiteral("/meminfo"))
{
}

void MemoryStatus::GetMemoryStatus()
{
    QFile f(path_);
    if (!f.open(QIODevice::ReadOnly))
        return;
    if (const auto m = parseMeminfo(f.readAll()))
        figures = *m;
}

}  // namespace orm
