// --print G FILE: at the end of the run, Graph G (counted from 1) printed into
// a PDF file, the same page as on the default printer.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace orm {

class GraphPrinter;
class Monitor;

struct PrintRequest {
    int graph = 0;  // from 1
    QString file;
};

// Takes "--print G FILE" out of the arguments, so that the rest is parsed as
// usual. False, with `error` said, when the option is there but incomplete or G
// is not a whole number above 0.
bool takePrintOption(QStringList& arguments, std::optional<PrintRequest>& request, QString& error);

// Prints as the monitor unloads, after whatever it did there before, while
// every view still stands. A page that could not be written is told on
// standard error and sets `failed`.
void printAtUnload(Monitor& monitor, GraphPrinter& printer, const PrintRequest& request, bool& failed);

}  // namespace orm
