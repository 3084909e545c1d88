// --print G FILE: at the end of the run, Graph G (counted from 1) printed into
// a PDF file, the same page as on the default printer.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace orm {

struct PrintRequest {
    int graph = 0;  // from 1
    QString file;
};

// Takes "--print G FILE" out of the arguments, so that the rest is parsed as
// usual. False, with `error` said, when the option is there but incomplete or G
// is not a whole number above 0.
bool takePrintOption(QStringList& arguments, std::optional<PrintRequest>& request, QString& error);

}  // namespace orm
