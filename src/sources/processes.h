// The process table: a snapshot of the running processes with the working set
// of each row beside it. A Processes Node reads its upper bound, a Process Node
// one row's memory, found through ProcessIndexes. A snapshot is one listing of
// the process folders. A process keeps the name read when it was first seen
// (read once more on the next snapshot, after a fork has become the program it
// starts, and every NameCheckEvery snapshots); a working set is read only for
// the rows asked for.
#pragma once

#include "model/model.h"
#include "sources/kernel_file.h"
#include "sources/proc_pid.h"

#include <QString>
#include <QtGlobal>
#include <vector>

namespace orm {

// One row of the snapshot, after the system's process record.
struct ProcessEntry {
    quint32 th32ProcessID = 0;
    QString szExeFile;  // the executable's name, at most MaxProcessNameLength characters
};

class ProcessTable {
public:
    // Snapshots between two readings of every name, for a process that starts
    // another program long after it was first seen.
    static constexpr unsigned NameCheckEvery = 60;

    explicit ProcessTable(QString procRoot = QStringLiteral("/proc"), qint64 pageSize = 0);

    // Rebuilds the rows; gives the number of rows, 0 when no snapshot could be
    // made. A snapshot without a single process leaves the tables as they were.
    // `freshNames` reads every name again.
    qint16 RefreshProcessList(bool freshNames = false);

    // Re-reads the working set of one row; a process that has ended reads 0
    // and keeps its row. An index outside the table changes nothing.
    void RefreshProcessMemory(qint16 index);

    // The rows, in snapshot order (ascending process id).
    const std::vector<ProcessEntry>& rows() const { return rows_; }

    // count - 1: what a Processes Node and the PROCS column show; -1 when empty.
    int upperBound() const { return int(rows_.size()) - 1; }
    // The working set of a row in bytes, read if it was not since the
    // snapshot; 0 for a row outside the table or a process that has ended.
    qint64 memoryAt(int index) const;

    // Shut-down empties both tables.
    void erase();

    // Changes when the rows change: every Node's ProcessIndex must then be
    // linked again. A snapshot of the same processes under the same names
    // keeps it.
    quint64 generation() const { return generation_; }

private:
    static constexpr qint64 NotRead = -1;
    // The working set from a statm file kept open while the row's process lives.
    qint64 readMemory(size_t row) const;

    ProcPidReader reader_;
    std::vector<ProcFolder> folders_;
    std::vector<ProcessEntry> rows_;
    std::vector<quint64> inodes_;     // of each row's folder: a reused number has another
    std::vector<quint8> nameReads_;   // how often the row's name was read, up to 2
    mutable std::vector<qint64> memory_;  // NotRead until asked for
    // The next snapshot is built here, so that the room is kept between ticks.
    std::vector<ProcessEntry> nextRows_;
    std::vector<quint64> nextInodes_;
    std::vector<quint8> nextNameReads_;
    struct KeptStatm {
        quint32 pid;
        quint64 inode;
        KernelFile file;
    };
    mutable std::vector<KeptStatm> statm_;
    unsigned snapshots_ = 0;
    quint64 generation_ = 0;
};

// Points each Node's ProcessIndex at the row whose name equals its
// ProcessMonitoring. Rows are walked upward, so with two processes of one name
// the last row wins. A Node that matches no row points at none (-1): an
// earlier index would show the memory of whatever process stands there now.
void ProcessIndexes(std::vector<Graph>& sensors, const ProcessTable& table);

// True when the Node's ProcessIndex is a row holding a process of its name.
bool linkedToItsProcess(const Node& node, const ProcessTable& table);

}  // namespace orm
