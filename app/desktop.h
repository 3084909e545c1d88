// The program with its windows: splash, control panel, graph windows, tray.
#pragma once

#include <functional>

namespace orm {
class Monitor;
class KeyValueStore;
class ProgramAlertHost;
class DisplayedGraphFactory;

// Starts the monitor with its windows and runs until it unloads; the exit status.
// `views` made the Graphs' pictures; they tell the panel what they are busy with.
// The Alerts' notices and questions go to its notification window. `afterStartUp`
// runs once start-up has succeeded, before its notices are shown.
int runDesktop(Monitor& monitor, KeyValueStore& store, DisplayedGraphFactory& views, long maxTicks,
               ProgramAlertHost& alertHost, const std::function<void()>& afterStartUp = {});
}  // namespace orm
