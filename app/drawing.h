// What a run asks of the part of the program that draws: the windows, the
// pictures, the printed page. That part is the module ormivane_drawing, loaded
// only by a run that draws (RunMode Windows or Drawing), so that a run that
// only counts maps no GUI library.
#pragma once

#include "print_option.h"

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QCoreApplication;

namespace orm {

class GraphViewFactory;
class KeyValueStore;
class Monitor;
class ProgramAlertHost;
struct Graph;

class Drawing {
public:
    virtual ~Drawing() = default;

    // The application of the run: QApplication with windows, else a
    // QGuiApplication that draws off-screen. It is kept here, and goes after
    // the views and the printer.
    virtual QCoreApplication& application(int& argc, char** argv, bool windows) = 0;

    // The views that draw each Graph's picture: while its window can be seen
    // (`whenSeen`), else on every tick. One set per run; `bind` names the
    // Graphs once the monitor holds them.
    virtual GraphViewFactory& views(const QString& commandLine, const QString& dataDir, bool whenSeen) = 0;
    virtual void bind(std::vector<Graph>& sensors) = 0;

    // Each Graph's picture into `folder`; false when they could not be saved.
    virtual bool saveSnapshots(Monitor& monitor, const QString& folder) = 0;

    // The Alerts' printing without windows (failures told on standard error,
    // each once), the desktop's handler for the documents they open, and the
    // page of --print, written as the monitor unloads (a failure sets `printFailed`).
    virtual void serveAlerts(Monitor& monitor, ProgramAlertHost& alertHost, const std::optional<PrintRequest>& print,
                             bool& printFailed) = 0;

    // Starts the monitor with its windows and runs until it unloads; the exit
    // status. `afterStartUp` runs once start-up has succeeded.
    virtual int runDesktop(Monitor& monitor, KeyValueStore& store, long maxTicks, ProgramAlertHost& alertHost,
                           const std::function<void()>& afterStartUp) = 0;
};

// The module's entry: a new Drawing.
inline constexpr char NewDrawingEntry[] = "ormivaneNewDrawing";

}  // namespace orm
