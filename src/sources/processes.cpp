#include "sources/processes.h"

#include "model/debug_log.h"

#include <algorithm>
#include <limits>

namespace orm {

ProcessTable::ProcessTable(QString procRoot, qint64 pageSize) : reader_(std::move(procRoot), pageSize) {}

qint16 ProcessTable::RefreshProcessList(bool freshNames)
{
    if (!reader_.scan(folders_))
        return 0;
    const bool readAll = freshNames || ++snapshots_ % NameCheckEvery == 0;
    nextRows_.clear();
    nextInodes_.clear();
    nextNameReads_.clear();
    bool same = folders_.size() == rows_.size();
    size_t old = 0;
    for (const ProcFolder& f : folders_) {
        while (old < rows_.size() && rows_[old].th32ProcessID < f.pid)
            ++old;
        // The same number in the same folder is the same process.
        const bool known = old < rows_.size() && rows_[old].th32ProcessID == f.pid && inodes_[old] == f.inode;
        const quint8 reads = known ? nameReads_[old] : 0;
        if (readAll || reads < 2) {
            auto name = reader_.name(f.pid);
            if (!name)
                continue;  // ended between the listing and the read
            same = same && known && *name == rows_[old].szExeFile;
            nextRows_.push_back(ProcessEntry{f.pid, std::move(*name)});
        } else {
            nextRows_.push_back(rows_[old]);
        }
        same = same && known && old == nextInodes_.size();
        nextInodes_.push_back(f.inode);
        nextNameReads_.push_back(quint8(std::min(reads + 1, 2)));
    }
    // The tables are cut down by the first row of a new snapshot, so one
    // that finds no process at all leaves the old rows in place.
    if (nextRows_.empty())
        return 0;
    rows_.swap(nextRows_);
    inodes_.swap(nextInodes_);
    nameReads_.swap(nextNameReads_);
    memory_.assign(rows_.size(), NotRead);
    // The statm files of processes gone are closed.
    std::erase_if(statm_, [this](const KeptStatm& k) {
        const auto at = std::lower_bound(folders_.begin(), folders_.end(), k.pid,
                                         [](const ProcFolder& f, quint32 pid) { return f.pid < pid; });
        return at == folders_.end() || at->pid != k.pid || at->inode != k.inode;
    });
    if (!same)
        ++generation_;
    return qint16(std::min<size_t>(rows_.size(), std::numeric_limits<qint16>::max()));
}

qint64 ProcessTable::readMemory(size_t row) const
{
    const quint32 pid = rows_[row].th32ProcessID;
    auto kept = std::find_if(statm_.begin(), statm_.end(), [&](const KeptStatm& k) { return k.pid == pid; });
    if (kept != statm_.end() && kept->inode != inodes_[row]) {
        statm_.erase(kept);  // the number went to another process
        kept = statm_.end();
    }
    if (kept == statm_.end()) {
        statm_.push_back({pid, inodes_[row], KernelFile(reader_.pidPath(pid, "statm"))});
        kept = statm_.end() - 1;
    }
    return reader_.residentBytes(kept->file.read());
}

void ProcessTable::RefreshProcessMemory(qint16 index)
{
    if (index < 0 || index > upperBound())
        return;
    memory_[size_t(index)] = readMemory(size_t(index));
}

qint64 ProcessTable::memoryAt(int index) const
{
    if (index < 0 || size_t(index) >= memory_.size())
        return 0;
    if (memory_[size_t(index)] == NotRead)
        memory_[size_t(index)] = readMemory(size_t(index));
    return memory_[size_t(index)];
}

void ProcessTable::erase()
{
    rows_.clear();
    inodes_.clear();
    nameReads_.clear();
    memory_.clear();
    statm_.clear();
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
