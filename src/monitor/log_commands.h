// The log readers from the command line: the columns of a Log Graph's range,
// or its export, beside a running monitor on the same data folder. Nothing is
// written but LogExport.csv, and no instance lock is taken.
#pragma once

#include <QString>
#include <cstdio>

namespace orm {

class Monitor;

struct LogCommand {
    enum Kind { Headers, Export };
    Kind kind = Headers;
    int graphNumber = 0;  // 1-based, as the user counts Graphs
    bool redraw = false;  // also draw the Log Graph from its range (for a snapshot)
};

// Loads the stored Graphs and runs the command: for Headers, "(n) Records
// Found" and a line per column, its name, a tab and its description, on `out`.
// Errors go to `err`. The exit status: 0, 1 when the export could not be
// written, 2 when there is no such Log Graph.
int runLogCommand(Monitor& monitor, const LogCommand& command, FILE* out, FILE* err);

}  // namespace orm
