#include "sources/processes.h"

#include "model/debug_log.h"

#include <algorithm>
#include <limits>

namespace orm {

ProcessTable::ProcessTable(QString procRoot, qint64 pageSize) : reader_(std::move(procRoot), pageSize) {}

qint16 ProcessTable::RefreshProcessList()
{
    const auto pids = reader_.pids();
    if (!pids)
        return 0;
    std::vector<ProcessEntry> rows;
    std::vector<qint64> memory;
    rows.reserve(pids->size());
    memory.reserve(pids->size());
    for (quint32 pid : *pids) {
        const auto name = reader_.name(pid);
        if (!name)
            continue;  // ended between the listing and the read
        rows.push_back(ProcessEntry{pid, *name});
        memory.push_back(reader_.residentBytes(pid));
    }
    // The tables are cut down by the first row of a new snapshot, so one
    // that finds no process at all leaves the old rows in place.
    if (rows.empty())
        return 0;
    rows_ = std::move(rows);
    memory_ = std::move(memory);
    ++generation_;
    return qint16(std::min<size_t>(rows_.size(), std::numeric_limits<qint16>::max()));
}

void ProcessTable::RefreshProcessMemory(qint16 index)
{
    if (index < 0 || index > upperBound())
        return;
    memory_[size_t(index)] = reader_.residentBytes(rows_[size_t(index)].th32ProcessID);
}

qint64 ProcessTable::memoryAt(int index) const
{
    if (index < 0 || size_t(index) >= memory_.size())
        return 0;
    return memory_[size_t(index)];
}

void ProcessTable::erase()
{
    rows_.clear();
    memory_.clear();
    ++generation_;
}

namespace {

QString cutAtNul(const QString& name)
{
    const qsizetype nul = name.indexOf(QChar(u'\0'));
    return nul < 0 ? name : name.left(nul);
}

}  // namespace

void ProcessIndexes(std::vector<Graph>& sensors, const ProcessTable& table)
{
    debugLog().enter(QStringLiteral("ProcessIndexes"));
    const auto& rows = table.rows();
    for (Graph& graph : sensors) {
        for (Node& node : graph.Nodes) {
            node.ProcessIndex = -1;
            for (size_t row = 0; row < rows.size(); ++row)
                if (cutAtNul(rows[row].szExeFile) == node.ProcessMonitoring)
                    node.ProcessIndex = qint16(row);
        }
    }
    debugLog().leave(QStringLiteral("ProcessIndexes"));
}

bool linkedToItsProcess(const Node& node, const ProcessTable& table)
{
    const auto& rows = table.rows();
    return node.ProcessIndex >= 0 && size_t(node.ProcessIndex) < rows.size() &&
           cutAtNul(rows[size_t(node.ProcessIndex)].szExeFile) == node.ProcessMonitoring;
}

}  // namespace orm
