#include "print_option.h"

namespace orm {

bool takePrintOption(QStringList& arguments, std::optional<PrintRequest>& request, QString& error)
{
    const QString usage = QStringLiteral("--print needs a Graph number and a PDF file, as in --print 1 graph.pdf");
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments[i] != QLatin1String("--print"))
            continue;
        if (i + 2 >= arguments.size()) {
            error = usage;
            return false;
        }
        bool ok = false;
        const int graph = arguments[i + 1].toInt(&ok);
        if (!ok || graph < 1) {
            error = QStringLiteral("--print needs a Graph number above 0, not \"%1\"").arg(arguments[i + 1]);
            return false;
        }
        if (arguments[i + 2].isEmpty() || arguments[i + 2].startsWith(QLatin1String("--"))) {
            error = usage;
            return false;
        }
        request = PrintRequest{graph, arguments[i + 2]};
        arguments.remove(i, 3);
        return true;
    }
    return true;
}

}  // namespace orm
