// `ormivane --speedtest-server [ADDR:]PORT [--variations FILE]`: the program
// runs as the speed test endpoint instead of as the monitor.
#pragma once

// The command line asks for the endpoint.
bool wantsSpeedTestServer(int argc, char* argv[]);

// Serves until the process is stopped; the exit status.
int runSpeedTestServer(int argc, char* argv[]);
