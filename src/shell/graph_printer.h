// The program's one way of printing a Graph. The graph menu's "Print Graph"
// and the Alerts' print action call printGraph; the command line writes the
// same page into a PDF file.
#pragma once

#include "display/print_graph.h"

#include <QObject>
#include <functional>

namespace orm {

class GraphWindows;
class Monitor;

// Makes a document for the default printer, a child of `jobs`; it deletes
// itself once the queue has answered.
using NewPrintJob = std::function<PrintTarget*(QObject* jobs)>;
// The job of shell/default_printer, linked in with Qt's print support.
PrintTarget* newDefaultPrinterJob(QObject* jobs);
// The same job from the printer module, loaded when the first page prints, so
// that a run that never prints maps no print support. A module that cannot be
// loaded gives a job that fails, saying why.
NewPrintJob printerModuleJobs();

class GraphPrinter {
public:
    // `status` is the control panel's status label (printing texts and errors);
    // it may be empty.
    explicit GraphPrinter(Monitor& monitor, PrintStatus status = {}, NewPrintJob newJob = newDefaultPrinterJob);

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
    NewPrintJob newJob_;
    GraphWindows* windows_ = nullptr;
    QObject jobs_;  // the printer jobs still waiting for the queue's answer
};

}  // namespace orm
