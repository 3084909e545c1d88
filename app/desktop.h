// The program with its windows: splash, control panel, graph windows, tray.
#pragma once

namespace orm {
class Monitor;
class KeyValueStore;
class ProgramAlertHost;

// Starts the monitor with its windows and runs until it unloads; the exit status.
// The Alerts' notices and questions go to its notification window.
int runDesktop(Monitor& monitor, KeyValueStore& store, long maxTicks, ProgramAlertHost& alertHost);
}  // namespace orm
