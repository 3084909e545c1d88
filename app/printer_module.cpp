// The printer module: the default printer with Qt's print support (and CUPS
// behind it), loaded when the first page goes to the printer.
#include "shell/graph_printer.h"

extern "C" Q_DECL_EXPORT orm::PrintTarget* ormivaneNewPrinterJob(QObject* jobs)
{
    return orm::newDefaultPrinterJob(jobs);
}
