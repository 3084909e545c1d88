// How a run is set up before its application is made: with windows, or
// without; and without windows, whether anything is drawn at all.
#pragma once

namespace orm {

enum class RunMode {
    Windows,   // the desktop: QApplication
    Drawing,   // no windows, pictures drawn off-screen: QGuiApplication
    Counting,  // no windows, no picture: QCoreApplication, no platform plugin, no fonts
};

// Headless, a log command, or no display to open run without windows. Without
// windows a picture is drawn only for a snapshot or a page printed at exit, a
// Gadget Graph, or an Alert that prints a Graph; the settings file (--config,
// else the default one) is looked at for the last two. A file that cannot be
// read asks for nothing.
RunMode runMode(int argc, char* argv[]);

}  // namespace orm
