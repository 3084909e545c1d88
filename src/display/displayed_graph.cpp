#include "display/displayed_graph.h"

#include <QDir>
#include <QFile>
#include <QPainter>

namespace orm {

DisplayedGraph::DisplayedGraph(std::vector<Graph>& sensors, int index, QString commandLine, QString dataDir,
                               Pictures pictures)
    : GraphPicture(sensors, index, std::move(commandLine)), sensors_(sensors),
      dataDir_(std::move(dataDir)), pictures_(pictures)
{
    onBarTick = [this](const std::vector<double>& v) { barTick(v); };
    onTrayTick = [this](const std::vector<double>& v) { trayTick(v); };
    onSetUpNodes = [this](bool clearAllData) { setUpNodeBars(clearAllData); };
    followWhoSees();
}

void DisplayedGraph::setUpNodeBars(bool clearAllData)
{
    // Every Graph keeps its bars ready, so a Graph turned into bars shows them
    // at once; until a sample comes they stand full and tell "No Data".
    const Graph& g = sensors_[size_t(index())];
    const bool fresh = clearAllData || !bars_.writtenToGraph;
    std::vector<double> newest;
    for (int k = 1; k <= int(g.Nodes.size()); ++k)
        newest.push_back(GetAvg(k, 0, 0, false, true, true));
    setUpBars(bars_, g, maxValue(), clearAllData, newest);
    if (fresh)
        for (int i = 0; i < int(bars_.bars.size()); ++i)
            bars_.bars[size_t(i)].ToolTipText = barNoDataTip(sensors_, index(), i);
}

void DisplayedGraph::followWhoSees()
{
    bool draw = true;
    if (pictures_ == Pictures::OnRequest)
        draw = false;
    else if (pictures_ == Pictures::WhenSeen)
        draw = shown_ || (valid() && graph().GraphType == SystrayIcon);
    setDrawing(draw);
}

void DisplayedGraph::WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                                int labelEvery)
{
    followWhoSees();  // the Graph may have become a tray Graph since the last tick
    GraphPicture::WriteGraph(values, label, gridSeconds, labelEvery);
}

void DisplayedGraph::setShown(bool shown)
{
    shown_ = shown;
    followWhoSees();
}

void DisplayedGraph::makePicture()
{
    // Until the next tick looks again at who sees the Graph.
    setDrawing(true);
}

void DisplayedGraph::barTick(const std::vector<double>& displayValues)
{
    // Bars and tray icons are pictures too: drawn only while the lines are.
    if (!drawing())
        return;
    const Graph& g = sensors_[size_t(index())];
    if (bars_.bars.size() != g.Nodes.size())
        setUpBars(bars_, g, maxValue(), true, displayValues);
    orm::barTick(bars_, sensors_, index(), displayValues, maxValue(), geometry().pHeight);
}

void DisplayedGraph::trayTick(const std::vector<double>& displayValues)
{
    if (!drawing())
        return;
    // The history strip needs each Node's display value for the stored columns.
    TrayInput input;
    input.displayValues = displayValues;
    const NodeHistory& h = history();
    for (size_t k = 1; k <= displayValues.size(); ++k) {
        std::vector<double> columns;
        if (int(k) <= h.sampleListCount()) {
            const int count = h.samples(int(k)).count();
            for (int pos = std::max(1, count - IconHistoryColumns + 1); pos <= count; ++pos)
                columns.push_back(GetAvg(int(k), pos, 0, false, true, true));
        }
        input.columns.push_back(std::move(columns));
    }
    icons_ = orm::trayTick(sensors_, index(), input, maxValue());
    // The picture goes through the scratch icon file, as the shell loads it from there.
    if (!icons_.empty() && !dataDir_.isEmpty())
        writeTempIco(dataDir_, icons_.back().picture);
}

QImage DisplayedGraph::windowPicture() const
{
    if (sensors_[size_t(index())].GraphType != BarGraph)
        return picture();
    QImage image = picture().copy();
    drawBars(image, bars_, sensors_[size_t(index())], geometry().pHeight);
    return image;
}

void DisplayedGraph::paintWindowPicture(QPainter& painter) const
{
    const QImage& image = picture();
    painter.drawImage(0, 0, image);
    const Graph& g = sensors_[size_t(index())];
    if (g.GraphType != BarGraph)
        return;
    const QRect area = barsArea(bars_, g, geometry().pHeight, image.width()) & image.rect();
    if (area.isEmpty())
        return;
    QImage part = image.copy(area);
    drawBars(part, bars_, g, geometry().pHeight, area.topLeft());
    painter.drawImage(area.topLeft(), part);
}

bool DisplayedGraph::saveSnapshot(const QString& folder, int graphNumber)
{
    makePicture();
    const int type = sensors_[size_t(index())].GraphType;
    const QString base = folder + QStringLiteral("/Graph%1").arg(graphNumber);
    if (type == LineGraph || type == BarGraph)
        return windowPicture().save(base + QStringLiteral(".png"));
    if (type == SystrayIcon) {
        bool ok = true;
        for (size_t k = 0; k < icons_.size(); ++k) {
            QFile f(base + QStringLiteral("-icon%1.ico").arg(k + 1));
            ok = f.open(QIODevice::WriteOnly) && f.write(icons_[k].picture) == icons_[k].picture.size() && ok;
        }
        return ok;
    }
    return true;  // Text and Gadget Graphs draw nothing
}

std::unique_ptr<GraphView> DisplayedGraphFactory::make(int graphIndex)
{
    auto view = std::make_unique<DisplayedGraph>(*sensors_, graphIndex, commandLine_, dataDir_, pictures_);
    view->onStatus = [status = status_](const QString& text) {
        if (*status)
            (*status)(text);
    };
    return view;
}

bool saveSnapshots(const std::vector<std::unique_ptr<GraphView>>& views, const QString& folder)
{
    if (!QDir().mkpath(folder))
        return false;
    bool ok = true;
    for (size_t i = 0; i < views.size(); ++i)
        if (auto* g = dynamic_cast<DisplayedGraph*>(views[i].get()))
            ok = g->saveSnapshot(folder, int(i) + 1) && ok;
    return ok;
}

}  // namespace orm
