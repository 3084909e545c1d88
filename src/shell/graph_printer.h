// The program's one way of printing a Graph. The graph menu's "Print Graph"
// and the Alerts' print action call printGraph; the command line writes the
// same page into a PDF file.
#pragma once

#include "display/print_graph.h"

#include <QObject>

namespace orm {

class GraphWindows;
class Monitor;

class GraphPrinter {
public:
    // `status` is the control panel's status label (printing texts and errors);
    // it may be empty.
    explicit GraphPrinter(Monitor& monitor, PrintStatus status = {});

    // The windows, so that a window shows the picture it prints (the
    // cross-hair goes); none when headless.
    void setWindows(GraphWindows* windows) { windows_ = windows; }

    // PrintGraph(intSensorToPrint) on the default printer: the Graph at
    // `graphIndex` in Sensors, from 0. Returns at once; the status is cleared
    // when the queue has taken the job and says why when it has not. Text,
    // Systray Icon and Gadget Graphs do nothing and show no status. Without any
    // printer the status says "No printer is set up" and nothing else changes.
    PrintResult printGraph(int graphIndex);

    // The same page into a PDF file, complete when this returns; the result
    // says all, the status is left alone.
    PrintResult printGraphToPdf(int graphIndex, const QString& file);

private:
    PrintResult print(int graphIndex, PrintTarget& target, const PrintStatus& status);

    Monitor& monitor_;
    PrintStatus status_;
    GraphWindows* windows_ = nullptr;
    QObject jobs_;  // the printer jobs still waiting for the queue's answer
};

}  // namespace orm
