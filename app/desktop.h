// The program with its windows: splash, control panel, graph windows, tray.
#pragma once

namespace orm {
class Monitor;
class KeyValueStore;

// Starts the monitor with its windows and runs until it unloads; the exit status.
int runDesktop(Monitor& monitor, KeyValueStore& store, long maxTicks);
}  // namespace orm
