#include "display/print_graph.h"

#include "model/debug_log.h"
#include "model/version.h"
#include "display/displayed_graph.h"
#include "display/graph_page.h"

#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <optional>

namespace orm {

QString printingGraphText()
{
    return QStringLiteral("Printing Graph. Please Wait...");
}

PdfFileTarget::PdfFileTarget(QString path) : path_(std::move(path)), file_(path_) {}

PdfFileTarget::~PdfFileTarget() = default;

QPagedPaintDevice* PdfFileTarget::begin(const QString& title, QString& error)
{
    if (!file_.open(QIODevice::WriteOnly)) {
        error = QStringLiteral("Cannot write %1: %2").arg(path_, file_.errorString());
        return nullptr;
    }
    writer_ = std::make_unique<QPdfWriter>(&file_);
    writer_->setTitle(title);
    writer_->setCreator(QLatin1String(ProductName));
    // A4 with half-inch margins.
    writer_->setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(36, 36, 36, 36),
                                       QPageLayout::Point));
    return writer_.get();
}

void PdfFileTarget::finish(std::function<void(const QString& error)> done)
{
    writer_.reset();
    if (file_.commit())
        done({});
    else
        done(QStringLiteral("Cannot write %1: %2").arg(path_, file_.errorString()));
}

PrintResult PrintGraph(const std::vector<Graph>& sensors, const std::vector<std::unique_ptr<GraphView>>& views,
                       int intSensorToPrint, const QDate& today, PrintTarget& target, const PrintStatus& status)
{
    const auto fail = [&status](const QString& error) {
        if (status)
            status(error);
        return PrintResult{PrintResult::Failed, error};
    };
    if (intSensorToPrint < 0 || size_t(intSensorToPrint) >= sensors.size())
        return fail(QStringLiteral("There is no Graph %1 to print").arg(qint64(intSensorToPrint) + 1));
    const Graph& graph = sensors[size_t(intSensorToPrint)];
    if (graph.GraphType != LineGraph && graph.GraphType != BarGraph)
        return {PrintResult::NotPrintable, {}};
    auto* view = size_t(intSensorToPrint) < views.size()
                     ? dynamic_cast<DisplayedGraph*>(views[size_t(intSensorToPrint)].get())
                     : nullptr;
    if (!view)
        return fail(QStringLiteral("Graph %1 has no picture to print").arg(intSensorToPrint + 1));
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return fail(QStringLiteral("Cannot print: the program runs without drawing"));

    debugLog().enter(QStringLiteral("PrintGraph"));
    if (status)
        status(printingGraphText());

    QString name = graph.Name;
    name.remove(QChar(0));
    const QString title = QLatin1String(ProductName) + QStringLiteral(" - ") +
                          (name.isEmpty() ? QStringLiteral("Graph %1").arg(intSensorToPrint + 1) : name);
    QString error;
    QPagedPaintDevice* device = target.begin(title, error);
    QPainter painter;
    if (device && !painter.begin(device))
        error = QStringLiteral("The page for %1 could not be started").arg(title);
    if (!painter.isActive()) {
        debugLog().leave(QStringLiteral("PrintGraph"));
        return fail(error);
    }
    // A Graph nobody sees has no picture drawn: it is made from the history now.
    view->makePicture();
    composeGraphPage(painter, *device, view->windowPicture(), graphKey(graph), printedByLine(today));
    painter.end();
    // A file is done at once; a printer queue answers later.
    auto answer = std::make_shared<std::optional<QString>>();
    target.finish([status, answer](const QString& e) {
        *answer = e;
        if (status)
            status(e);
    });
    debugLog().leave(QStringLiteral("PrintGraph"));
    if (!*answer)
        return {PrintResult::Started, {}};
    if ((*answer)->isEmpty())
        return {PrintResult::Printed, {}};
    return {PrintResult::Failed, **answer};
}

}  // namespace orm
