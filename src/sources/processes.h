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

private:
    ProcPidReader reader_;
    std::vector<ProcessEntry> rows_;
    std::vector<qint64> memory_;
};

// Points each Node's ProcessIndex at the row whose name equals its
// ProcessMonitoring. Rows are walked upward, so with two processes of one name
// the last row wins; a Node that matches no row keeps its earlier index.
void ProcessIndexes(std::vector<Graph>& sensors, const ProcessTable& table);

}  // namespace orm
