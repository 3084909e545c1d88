// The process table: a snapshot of the running processes with the working set
// of each row beside it. A Processes Node reads its upper bound, a Process Node
// one row's memory, found through ProcessIndexes.
#pragma once

#include "model/model.h"
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
    explicit ProcessTable(QString procRoot = QStringLiteral("/proc"), qint64 pageSize = 0);

    // Rebuilds the rows and their memory; gives the number of rows, 0 when no
    // snapshot could be made. A snapshot without a single process leaves the
    // tables as they were.
    qint16 RefreshProcessList();

    // Re-reads the working set of one row; a process that has ended reads 0
    // and keeps its row. An index outside the table changes nothing.
    void RefreshProcessMemory(qint16 index);

    // The rows, in snapshot order (ascending process id).
    const std::vector<ProcessEntry>& rows() const { return rows_; }
    // Working set in bytes of each row, in step with rows(); 0 when not known.
    const std::vector<qint64>& ProcessMemory() const { return memory_; }

    // count - 1: what a Processes Node and the PROCS column show; -1 when empty.
    int upperBound() const { return int(rows_.size()) - 1; }
    // The memory of a row; 0 for a row outside the table.
    qint64 memoryAt(int index) const;

    // Shut-down empties both tables.
    void erase();

    // Counts the rebuilds: rows may have moved whenever it changes, and every
    // Node's ProcessIndex must be linked again.
    quint64 generation() const { return generation_; }

private:
    ProcPidReader reader_;
    std::vector<ProcessEntry> rows_;
    std::vector<qint64> memory_;
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
