// PrintGraph: one Line or Bar Graph on a page, with the key of its Nodes and a
// footer, sent to a target that is a printer or a PDF file.
#pragma once

#include "model/graph_view.h"
#include "model/model.h"

#include <QDate>
#include <QSaveFile>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QPagedPaintDevice;
class QPdfWriter;

namespace orm {

// The status label's text while a Graph prints.
QString printingGraphText();

// Where the page goes.
class PrintTarget {
public:
    virtual ~PrintTarget() = default;
    // A device ready for the first page of a document of this title; null, with
    // `error` saying why, when there is none.
    virtual QPagedPaintDevice* begin(const QString& title, QString& error) = 0;
    // The page is painted and the painter ended: hands the document on. `done`
    // runs exactly once, at once or later, with an empty text on success, else
    // with the reason it failed.
    virtual void finish(std::function<void(const QString& error)> done) = 0;
};

// A PDF file on A4, written whole or not at all: a file already there stays as
// it was when the new one cannot be written.
class PdfFileTarget final : public PrintTarget {
public:
    explicit PdfFileTarget(QString path);
    ~PdfFileTarget() override;
    QPagedPaintDevice* begin(const QString& title, QString& error) override;
    void finish(std::function<void(const QString& error)> done) override;

private:
    QString path_;
    QSaveFile file_;
    std::unique_ptr<QPdfWriter> writer_;
};

struct PrintResult {
    enum Outcome {
        Printed,       // the target took the page
        Started,       // the page went to the target, whose answer comes later
        NotPrintable,  // a Text, Systray Icon or Gadget Graph: nothing happened
        Failed,        // `error` says why; nothing was printed
    };
    Outcome outcome = Failed;
    QString error;
};

// The status label: a text to show, or empty to clear it.
using PrintStatus = std::function<void(const QString& text)>;

// PrintGraph(intSensorToPrint): the picture that the Graph's view holds now
// (the last frame, for a hidden window), the key and "Printed by" with `today`.
// The status shows printingGraphText() until the target is done, then is
// cleared, or shows why printing failed.
PrintResult PrintGraph(const std::vector<Graph>& sensors, const std::vector<std::unique_ptr<GraphView>>& views,
                       int intSensorToPrint, const QDate& today, PrintTarget& target, const PrintStatus& status);

}  // namespace orm
